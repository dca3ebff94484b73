#pragma once
// The names of the files of an update, all beside the executable, and what its path says about whether it may be
// replaced.
#include <cstdint>
#include <string>
#include <string_view>

namespace kestrane {

/// The downloaded file, and the running file once it has been set aside.
std::wstring NewFilePath(std::wstring_view executable);
std::wstring OldFilePath(std::wstring_view executable);

/// True if the path has a folder called "build", in any case: then it is a developer's copy.
bool IsDevelopmentCopy(std::wstring_view executable);

/// The path up to its last slash of either kind, without it; "." if there is none.
std::wstring FolderOfExecutable(std::wstring_view executable);

/// A name in `folder` that no other file has, to try whether files can be created there.
std::wstring WriteProbePath(std::wstring_view folder, std::uint32_t processId, std::uint64_t tickCount);

/// The command line that starts the new version, with the switch that makes it wait for the old one to end.
std::wstring RestartCommandLine(std::wstring_view executable);

}  // namespace kestrane
