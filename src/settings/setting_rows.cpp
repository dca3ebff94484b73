#include "settings/setting_rows.h"

#include <algorithm>
#include <array>
#include <optional>

#include "settings/ini_values.h"
#include "text/number_text.h"

namespace kestrane {
namespace {

using enum SettingOwner;
using enum LoadGroup;

template <typename Value>
bool Assign(Value& field, const std::optional<Value>& value) {
    if (value) field = *value;
    return value.has_value();
}

// The four functions of a row, so that it names its field once. A pointer to member will not do: it reaches neither
// array elements nor nested fields.
#define FIELD(field, Parse, Format)                                                      \
    [](AppSettings& s, std::wstring_view text) { return Assign(s.field, Parse(text)); }, \
        [](const AppSettings& s) { return Format(s.field); },                            \
        [](AppSettings& dest, const AppSettings& source) { dest.field = source.field; }, \
        [](const AppSettings& a, const AppSettings& b) { return a.field == b.field; }

// Owner, section, key, default, field with its grammar, and the load group if any. Rows are grouped by owner, in the
// order of saving. The three graphs' defaults differ on purpose. clang-format off
constexpr auto Rows = std::to_array<SettingRow>({
    {Cpu, L"icons", L"show_cpu", L"1", FIELD(show[0], ParseFlag, FormatFlag), ShownIcons},
    {Cpu, L"cpu", L"refresh_ms", L"1500", FIELD(refresh_ms[0], ParseRefresh, FormatInteger)},
    {Cpu, L"cpu", L"opacity", L"90", FIELD(cpu.opacity, ParseOpacity, FormatInteger)},
    {Cpu, L"cpu", L"margin", L"3", FIELD(cpu.margin, ParseMargin, FormatInteger)},
    {Cpu, L"cpu", L"font_name", L"Segoe UI", FIELD(cpu.font_name, ParseFontName, FormatFontName)},
    {Cpu, L"cpu", L"font_size", L"12", FIELD(cpu.font_size, ParseFontSize, FormatInteger)},
    {Cpu, L"cpu", L"font_bold", L"0", FIELD(cpu.font_bold, ParseFlag, FormatFlag)},
    {Cpu, L"cpu", L"style", L"bars", FIELD(cpu.style, ParseGraphStyle, FormatGraphStyle)},
    {Cpu, L"cpu", L"smoothing", L"2", FIELD(cpu.smoothing, ParseSmoothing, FormatInteger)},
    {Cpu, L"cpu", L"fill", L"50", FIELD(cpu.fill, ParseFill, FormatInteger)},
    {Cpu, L"cpu", L"topmost", L"1", FIELD(cpu.topmost, ParseFlag, FormatFlag)},
    {Cpu, L"cpu", L"per_core", L"0", FIELD(per_core, ParseFlag, FormatFlag)},

    {Disk, L"icons", L"show_disk", L"1", FIELD(show[1], ParseFlag, FormatFlag), ShownIcons},
    {Disk, L"disk", L"refresh_ms", L"1500", FIELD(refresh_ms[1], ParseRefresh, FormatInteger)},
    {Disk, L"disk", L"opacity", L"90", FIELD(disk.opacity, ParseOpacity, FormatInteger)},
    {Disk, L"disk", L"margin", L"3", FIELD(disk.margin, ParseMargin, FormatInteger)},
    {Disk, L"disk", L"font_name", L"Segoe UI", FIELD(disk.font_name, ParseFontName, FormatFontName)},
    {Disk, L"disk", L"font_size", L"12", FIELD(disk.font_size, ParseFontSize, FormatInteger)},
    {Disk, L"disk", L"font_bold", L"0", FIELD(disk.font_bold, ParseFlag, FormatFlag)},
    {Disk, L"disk", L"style", L"lines", FIELD(disk.style, ParseGraphStyle, FormatGraphStyle)},
    {Disk, L"disk", L"smoothing", L"2", FIELD(disk.smoothing, ParseSmoothing, FormatInteger)},
    {Disk, L"disk", L"fill", L"25", FIELD(disk.fill, ParseFill, FormatInteger)},
    {Disk, L"disk", L"topmost", L"1", FIELD(disk.topmost, ParseFlag, FormatFlag)},
    {Disk, L"disk", L"activity", L"0", FIELD(activity, ParseFlag, FormatFlag)},
    {Disk, L"disk", L"disks", L"*", FIELD(disks, ParseDisks, FormatDisks)},

    {Memory, L"icons", L"show_mem", L"1", FIELD(show[2], ParseFlag, FormatFlag), ShownIcons},
    {Memory, L"memory", L"threshold1", L"50", FIELD(thresholds[0], ParseThreshold, FormatInteger), Thresholds},
    {Memory, L"memory", L"threshold2", L"75", FIELD(thresholds[1], ParseThreshold, FormatInteger), Thresholds},
    {Memory, L"memory", L"threshold3", L"90", FIELD(thresholds[2], ParseThreshold, FormatInteger), Thresholds},
    {Memory, L"memory", L"font_name", L"Segoe UI", FIELD(font_name, ParseFontName, FormatFontName)},
    {Memory, L"memory", L"font_size", L"12", FIELD(font_size, ParseMemoryFontSize, FormatInteger)},
    {Memory, L"memory", L"font_bold", L"0", FIELD(font_bold, ParseFlag, FormatFlag)},
    {Memory, L"memory", L"bar", L"1", FIELD(bar, ParseFlag, FormatFlag)},
    {Memory, L"memory", L"refresh_ms", L"1500", FIELD(refresh_ms[2], ParseRefresh, FormatInteger)},

    {Network, L"icons", L"show_net", L"1", FIELD(show[3], ParseFlag, FormatFlag), ShownIcons},
    {Network, L"network", L"interfaces", L"*", FIELD(interfaces, ParseInterfaces, FormatInterfaces)},
    {Network, L"network", L"interface_aliases", L"", FIELD(interface_aliases, ParseAliases, FormatAliases), Aliases},
    {Network, L"network", L"refresh_ms", L"1500", FIELD(refresh_ms[3], ParseRefresh, FormatInteger)},
    {Network, L"network", L"opacity", L"90", FIELD(network.opacity, ParseOpacity, FormatInteger)},
    {Network, L"network", L"margin", L"4", FIELD(network.margin, ParseMargin, FormatInteger)},
    {Network, L"network", L"font_name", L"Segoe UI", FIELD(network.font_name, ParseFontName, FormatFontName)},
    {Network, L"network", L"font_size", L"11", FIELD(network.font_size, ParseFontSize, FormatInteger)},
    {Network, L"network", L"font_bold", L"0", FIELD(network.font_bold, ParseFlag, FormatFlag)},
    {Network, L"network", L"style", L"bars", FIELD(network.style, ParseGraphStyle, FormatGraphStyle)},
    {Network, L"network", L"smoothing", L"2", FIELD(network.smoothing, ParseSmoothing, FormatInteger)},
    {Network, L"network", L"fill", L"50", FIELD(network.fill, ParseFill, FormatInteger)},
    {Network, L"network", L"topmost", L"1", FIELD(network.topmost, ParseFlag, FormatFlag)},

    {NetworkWindow, L"network", L"graph", L"0", FIELD(network.graph, ParseFlag, FormatFlag)},
    {NetworkWindow, L"network", L"pinned", L"0", FIELD(network.pinned, ParseFlag, FormatFlag)},
    {NetworkWindow, L"network", L"x", L"", FIELD(network.x, ParseInteger, FormatInteger), Placement},
    {NetworkWindow, L"network", L"y", L"", FIELD(network.y, ParseInteger, FormatInteger), Placement},
    {NetworkWindow, L"network", L"width", L"", FIELD(network.width, ParseGraphWidth, FormatInteger), Placement},
    {NetworkWindow, L"network", L"height", L"", FIELD(network.height, ParseGraphHeight, FormatInteger), Placement},

    {CpuWindow, L"cpu", L"graph", L"0", FIELD(cpu.graph, ParseFlag, FormatFlag)},
    {CpuWindow, L"cpu", L"pinned", L"0", FIELD(cpu.pinned, ParseFlag, FormatFlag)},
    {CpuWindow, L"cpu", L"x", L"", FIELD(cpu.x, ParseInteger, FormatInteger), Placement},
    {CpuWindow, L"cpu", L"y", L"", FIELD(cpu.y, ParseInteger, FormatInteger), Placement},
    {CpuWindow, L"cpu", L"width", L"", FIELD(cpu.width, ParseGraphWidth, FormatInteger), Placement},
    {CpuWindow, L"cpu", L"height", L"", FIELD(cpu.height, ParseGraphHeight, FormatInteger), Placement},

    {DiskWindow, L"disk", L"graph", L"0", FIELD(disk.graph, ParseFlag, FormatFlag)},
    {DiskWindow, L"disk", L"pinned", L"0", FIELD(disk.pinned, ParseFlag, FormatFlag)},
    {DiskWindow, L"disk", L"x", L"", FIELD(disk.x, ParseInteger, FormatInteger), Placement},
    {DiskWindow, L"disk", L"y", L"", FIELD(disk.y, ParseInteger, FormatInteger), Placement},
    {DiskWindow, L"disk", L"width", L"", FIELD(disk.width, ParseGraphWidth, FormatInteger), Placement},
    {DiskWindow, L"disk", L"height", L"", FIELD(disk.height, ParseGraphHeight, FormatInteger), Placement},

    {General, L"general", L"check_updates", L"1", FIELD(check_updates, ParseFlag, FormatFlag)},
    {General, L"general", L"language", L"0", FIELD(language, ParseLanguage, FormatInteger)},
    {General, L"general", L"install_id", L"", FIELD(install_id, ParseInstallId, FormatInstallId)},
});
// clang-format on
#undef FIELD

/// For the tabs up to Network.
constexpr SettingOwner OwnerOf(SettingsTab tab) {
    return static_cast<SettingOwner>(tab);
}
static_assert(OwnerOf(SettingsTab::Cpu) == Cpu && OwnerOf(SettingsTab::Disk) == Disk &&
              OwnerOf(SettingsTab::Memory) == Memory && OwnerOf(SettingsTab::Network) == Network);

static_assert(std::ranges::is_sorted(Rows, {}, &SettingRow::owner));

SettingRows RowsOf(SettingOwner owner) {
    return {std::ranges::lower_bound(Rows, owner, {}, &SettingRow::owner),
            std::ranges::upper_bound(Rows, owner, {}, &SettingRow::owner)};
}

/// Compiles only if the row exists: a constant expression may not read past the end.
consteval const SettingRow& RowOf(std::wstring_view section, std::wstring_view key) {
    const SettingRow* row = Rows.data();
    while (row->section != section || row->key != key)
        ++row;
    return *row;
}

}  // namespace

SettingRows AllRows() {
    return Rows;
}

SettingRows TabRows(SettingsTab tab) {
    static_assert(static_cast<SettingOwner>(SettingsTab::Cpu) == Cpu &&
                  static_cast<SettingOwner>(SettingsTab::Disk) == Disk &&
                  static_cast<SettingOwner>(SettingsTab::Memory) == Memory &&
                  static_cast<SettingOwner>(SettingsTab::Network) == Network);
    if (tab > SettingsTab::Network) return {};
    return RowsOf(OwnerOf(tab));
}

SettingRows WindowRows(GraphKind kind) {
    constexpr std::array<SettingOwner, GraphCount> Windows{NetworkWindow, CpuWindow, DiskWindow};
    return RowsOf(Windows[IndexOf(kind)]);
}

constinit const SettingRow& PerCoreRow = RowOf(L"cpu", L"per_core");
constinit const SettingRow& ActivityRow = RowOf(L"disk", L"activity");
constinit const SettingRow& CheckUpdatesRow = RowOf(L"general", L"check_updates");
constinit const SettingRow& LanguageRow = RowOf(L"general", L"language");
constinit const SettingRow& InstallIdRow = RowOf(L"general", L"install_id");

ColorRange TabColors(SettingsTab tab) {
    const SettingsTab owner = std::min(tab, SettingsTab::Network);
    const auto* const first = std::ranges::lower_bound(IconColors, owner, {}, &IconColor::tab);
    const auto* const end = std::ranges::upper_bound(IconColors, owner, {}, &IconColor::tab);
    return {static_cast<std::size_t>(first - IconColors.begin()), static_cast<std::size_t>(end - IconColors.begin())};
}

}  // namespace kestrane
