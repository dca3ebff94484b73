#pragma once
// Whether the running executable may be replaced, and how: two renames, with the way back. Windows lets a running file
// be renamed, but neither deleted nor overwritten. UI thread.
#include <cstdint>
#include <string>

namespace kestrane {

/// Empty if the executable can be replaced; otherwise why not, for the user.
std::wstring CheckSelfUpdatePossible(const std::wstring& executable);

/// Whether a file can be created in a folder, by creating one that goes at once.
bool ProbeFolderWritable(const std::wstring& folder);

/// Sets the running file aside and puts the new one in its place. On failure false with the system's error in `code`,
/// and the running file has its name again, unless another program keeps it from that: then it stands under
/// OldFilePath.
bool ReplaceRunningExecutable(const std::wstring& executable, std::uint32_t& code);

/// Starts the executable, now the new version, which waits for this one to end. False with a debug line if it cannot.
bool StartNewVersion(const std::wstring& executable);

/// Deletes what an update leaves beside the executable, if it can.
void CleanUpdateLeftovers(const std::wstring& executable);

/// Deletes a downloaded file that is not wanted any more.
void DeleteNewFile(const std::wstring& executable);

}  // namespace kestrane
