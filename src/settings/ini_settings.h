#pragma once
// What stands where in the settings file, and how a file of any age is forgiven: every key is judged alone, and a bad
// value costs only that key's default. The file itself is behind two functions, so that these rules run anywhere.
#include <cstdint>
#include <functional>
#include <string>

#include "settings/app_settings.h"
#include "settings/setting_rows.h"

namespace kestrane {

/// The value of a key, or the empty text when there is none.
using ReadValue = std::function<std::wstring(const wchar_t* section, const wchar_t* key)>;
/// Replaces or appends one key and touches no other; false when it could not.
using WriteValue = std::function<bool(const wchar_t* section, const wchar_t* key, const std::wstring& value)>;

/// What the settings dialog remembers of itself, apart from AppSettings.
struct DialogState {
    bool has_position = false;
    std::int32_t x = 0;     // screen pixels, 0 without a position
    std::int32_t y = 0;     // screen pixels, 0 without a position
    std::uint32_t tab = 0;  // SettingsTab

    bool operator==(const DialogState&) const = default;
};

/// The defaults, and over them what is well-formed. Keys of older files fill in where those of today are absent.
AppSettings ReadSettings(const ReadValue& read);
/// A position needs both coordinates, each within -99999..99999; a tab is 0 to 4. What is not so stays 0.
DialogState ReadDialogState(const ReadValue& read);

/// Attempts every key of the tab; true when all were written.
bool WriteSettingsTab(const AppSettings& settings, SettingsTab tab, const WriteValue& write);
/// Writes one key; true when it was written.
bool WriteSetting(const SettingRow& row, const AppSettings& settings, const WriteValue& write);
/// Stops at the first graph whose keys were not all written; the later graphs are not attempted.
bool WriteGraphWindows(const AppSettings& settings, const WriteValue& write);
/// Writes the position and the tab, and no `has_position`: where there is a position, there are its keys.
bool WriteDialogState(const DialogState& state, const WriteValue& write);

}  // namespace kestrane
