#pragma once
#include <windows.h>

#include <string>

namespace kestrane {

/// A folder that the system knows by id (FOLDERID_RoamingAppData), with flags such as KF_FLAG_DONT_VERIFY; empty if it
/// has none to give.
std::wstring KnownFolder(const GUID& id, DWORD flags = 0);

/// Creates a folder and all that are missing above it. True if it is there afterwards, whoever made it; false if
/// anything else has its name.
bool CreateFolders(const std::wstring& path);

/// The folder for temporary files, which exists. Throws std::runtime_error if the system has none.
std::wstring TemporaryFolder();

}  // namespace kestrane
