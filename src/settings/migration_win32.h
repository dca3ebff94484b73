#pragma once
// The program's former name was "orvalite". At each start, what still goes by that name is taken over, quietly: the
// settings file if there is none yet, and the value by which the program starts with Windows.
#include <windows.h>

#include <string>

namespace kestrane {

/// Before the settings are loaded. Whatever fails stays as it is, and the next start tries again.
void MigrateFormerInstall();

/// Copies the former settings file, which stays, unless there is a present one. True if a copy was made.
bool CopyFormerSettings(const std::wstring& formerPath, const std::wstring& iniPath);

/// Replaces the former value under the Run key of HKEY_CURRENT_USER or HKEY_LOCAL_MACHINE by the present one, with the
/// running file's path. Without the right to write there, nothing happens.
void MigrateRunValue(HKEY root);

}  // namespace kestrane
