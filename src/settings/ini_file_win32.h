#pragma once
// The settings file: `kestrane.ini` in the folder `kestrane` of the user's roaming application data, read and written
// key by key through the system's profile operations. All of this runs on the user-interface thread.
#include <string>

#include "settings/app_settings.h"
#include "settings/ini_settings.h"

namespace kestrane {

/// Where the settings file is, or would be. Computed anew at each call. Without an application data folder it is in the
/// temporary folder; without that too, std::runtime_error is thrown.
std::wstring IniPath();

/// Creates the folders above `path`. False, and a line for the debugger, when that failed.
bool EnsureIniFolder(const std::wstring& path);

/// A whole record, whatever the file holds and even without a file. Writes nothing.
AppSettings LoadSettings();
/// Where and on which tab the settings dialog was left; zeros where the file does not say. Writes nothing.
DialogState LoadDialogState();

// Each save makes the folder if need be, writes its own keys and no others, and is true when every write succeeded.
// Those of more than one key also tell the debugger when they failed.

/// The keys of a tab, its colours first and then its rows; a failed key does not stop the others.
bool SaveSettingsTab(const AppSettings& settings, SettingsTab tab);
bool SaveCheckUpdates(const AppSettings& settings);
bool SaveLanguage(const AppSettings& settings);
bool SaveInstallId(const AppSettings& settings);
bool SaveDiskActivity(const AppSettings& settings);
/// The window state of the three graphs; stops after the first graph with a failed key.
bool SaveGraphWindows(const AppSettings& settings);
/// Position and tab of the settings dialog; a failed key does not stop the others.
bool SaveDialogState(const DialogState& state);

}  // namespace kestrane
