#pragma once
// Every setting with a key of its own, one row each: owner, section, key, default, and the field with the grammar that
// reads and writes it. Defaults, loading, saving, copying and comparing all walk this table. Colours have their own
// table, IconColors.
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "settings/app_settings.h"

namespace kestrane {

/// Who saves a row: a tab of the settings dialog, a graph window, or, for General, the row's own save function. Tabs
/// have their SettingsTab numbers.
enum class SettingOwner { Cpu, Disk, Memory, Network, NetworkWindow, CpuWindow, DiskWindow, General };

/// Rows that a load accepts or rejects together; None stands for rows on their own.
enum class LoadGroup { None, Thresholds, ShownIcons, Placement, Aliases };

struct SettingRow {
    SettingOwner owner;
    const wchar_t* section;
    const wchar_t* key;
    /// As it would appear in the file. Empty: the field keeps its initial value.
    const wchar_t* defaultText;
    /// False for malformed text; the field is then unchanged.
    bool (*read)(AppSettings& settings, std::wstring_view text);
    std::wstring (*write)(const AppSettings& settings);
    void (*copy)(AppSettings& dest, const AppSettings& source);
    bool (*equal)(const AppSettings& a, const AppSettings& b);
    LoadGroup group = LoadGroup::None;
};
using SettingRows = std::span<const SettingRow>;

SettingRows AllRows();

/// The settings of a tab, without its colours, in the order of saving; none for a tab beyond Network. The graphs'
/// window state belongs to no tab.
SettingRows TabRows(SettingsTab tab);

/// The window state of a graph, in the order of saving.
SettingRows WindowRows(GraphKind kind);

extern const SettingRow& PerCoreRow;

// The rows that are also saved individually.
extern const SettingRow& ActivityRow;
extern const SettingRow& CheckUpdatesRow;
extern const SettingRow& LanguageRow;
extern const SettingRow& InstallIdRow;

/// Colours `first` to `end - 1`.
struct ColorRange {
    std::size_t first;
    std::size_t end;
};

/// The colours of a tab; those of Network for any tab beyond it.
ColorRange TabColors(SettingsTab tab);

}  // namespace kestrane
