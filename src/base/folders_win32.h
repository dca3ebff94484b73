#pragma once
#include <windows.h>

#include <string>

namespace kestrane {

/// The path of a known folder such as FOLDERID_RoamingAppData, with flags such as KF_FLAG_DONT_VERIFY; empty on
/// failure.
std::wstring KnownFolder(const GUID& id, DWORD flags = 0);

/// Creates a folder and any missing parents. True if it exists afterwards, even if another process created it; false if
/// it cannot be created or something else has its name.
bool CreateFolders(const std::wstring& path);

/// The folder for temporary files, which exists. Throws std::runtime_error if the system has none.
std::wstring TemporaryFolder();

}  // namespace kestrane
