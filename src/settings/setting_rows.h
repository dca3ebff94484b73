#pragma once
// Every setting that has a key, one row each: whose it is, its section and key, its default, and the field with the
// grammar that reads and writes it. Defaults, loading, saving, copying and comparing only walk this table. Colours
// have a table of their own, IconColors.
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "settings/app_settings.h"

namespace kestrane {

/// Who saves a row: a tab of the settings dialog, a graph window, or, for General, its own edit alone. The tabs have
/// the numbers of SettingsTab.
enum class SettingOwner { Cpu, Disk, Memory, Network, NetworkWindow, CpuWindow, DiskWindow, General };

/// Which rows a load judges together; None is judged alone.
enum class LoadGroup { None, Thresholds, ShownIcons, Placement, Aliases };

struct SettingRow {
    SettingOwner owner;
    const wchar_t* section;
    const wchar_t* key;
    /// As the file would say it. Empty: nothing, as in a bare record.
    const wchar_t* defaultText;
    /// False for a text that is not well-formed; the field then stays as it was.
    bool (*read)(AppSettings& settings, std::wstring_view text);
    std::wstring (*write)(const AppSettings& settings);
    void (*copy)(AppSettings& dest, const AppSettings& source);
    bool (*equal)(const AppSettings& a, const AppSettings& b);
    LoadGroup group = LoadGroup::None;
};
using SettingRows = std::span<const SettingRow>;

SettingRows AllRows();

/// The settings of a tab but for its colours, in the order of saving; none for a tab beyond Network. The window state
/// of the graphs belongs to no tab.
SettingRows TabRows(SettingsTab tab);

/// The window state of a graph, in the order of saving.
SettingRows WindowRows(GraphKind kind);

// The rows that are also saved one by one.
extern const SettingRow& ActivityRow;
extern const SettingRow& CheckUpdatesRow;
extern const SettingRow& LanguageRow;
extern const SettingRow& InstallIdRow;

/// Positions `first` to `end - 1` of the colours.
struct ColorRange {
    std::size_t first;
    std::size_t end;
};

/// The colours of a tab. A tab beyond Network answers with those of Network.
ColorRange TabColors(SettingsTab tab);

}  // namespace kestrane
