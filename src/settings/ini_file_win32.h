#pragma once
// The settings file: `kestrane.ini` in the folder `kestrane` of the user's roaming application data, read and written
// key by key through the profile API (GetPrivateProfileString). UI thread only.
#include <string>

#include "settings/app_settings.h"
#include "settings/ini_settings.h"

namespace kestrane {

/// The path of the settings file, whether or not it exists, computed at each call. If the system, asked twice, does not
/// tell the application data folder, it is in the temporary folder; without that either, throws std::runtime_error.
std::wstring IniPath();

/// Creates the folders above `path`. On failure logs a debug line and returns false.
bool EnsureIniFolder(const std::wstring& path);

/// A complete record, whatever the file holds and even without one. Writes nothing.
AppSettings LoadSettings();
/// The settings dialog's last position and tab; zero if the file has none. Writes nothing.
DialogState LoadDialogState();

// Each save creates the folder if needed, writes only its own keys, and returns true if every write succeeded. Those of
// more than one key also log a debug line on failure.

/// A tab's keys, colours first and then rows, in an order in which each reads as old or new at any time
/// (write_order.h); a failed key does not stop the others.
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
