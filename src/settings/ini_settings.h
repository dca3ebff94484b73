#pragma once
// The layout of the settings file, and tolerance for files of any age: each key is checked on its own, and a bad value
// only falls back to that key's default. The file itself is behind two functions, so these rules run anywhere.
#include <cstdint>
#include <functional>
#include <string>

#include "settings/app_settings.h"
#include "settings/setting_rows.h"

namespace kestrane {

inline constexpr const wchar_t* ColorSection = L"colors";

/// The value of a key, or empty text if there is none.
using ReadValue = std::function<std::wstring(const wchar_t* section, const wchar_t* key)>;
/// Replaces or appends one key and touches no other; false on failure.
using WriteValue = std::function<bool(const wchar_t* section, const wchar_t* key, const std::wstring& value)>;

/// What the settings dialog remembers about itself, apart from AppSettings.
struct DialogState {
    bool has_position = false;
    std::int32_t x = 0;     // screen pixels, 0 without a position
    std::int32_t y = 0;     // screen pixels, 0 without a position
    std::uint32_t tab = 0;  // SettingsTab

    bool operator==(const DialogState&) const = default;
};

/// The defaults, overridden by every well-formed value. Keys of older files fill in for missing current ones.
AppSettings ReadSettings(const ReadValue& read);
/// A position needs both coordinates, each within -99999..99999; a tab is 0 to 4. Anything else stays 0.
DialogState ReadDialogState(const ReadValue& read);

/// Attempts every key of the tab, in an order in which each reads as old or new at any time (write_order.h); true if
/// all were written.
bool WriteSettingsTab(const AppSettings& settings, SettingsTab tab, const ReadValue& read, const WriteValue& write);
/// Writes one key; true on success.
bool WriteSetting(const SettingRow& row, const AppSettings& settings, const WriteValue& write);
/// Stops after the first graph with a failed key; later graphs are not attempted.
bool WriteGraphWindows(const AppSettings& settings, const WriteValue& write);
/// Writes the position and the tab. `has_position` has no key: the presence of x and y implies it.
bool WriteDialogState(const DialogState& state, const WriteValue& write);

}  // namespace kestrane
