#include "settings/ini_settings.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "settings/ini_values.h"
#include "settings/write_order.h"
#include "text/number_text.h"

namespace kestrane {
namespace {

constexpr const wchar_t* DialogSection = L"dialog";
constexpr std::int32_t DialogPositionLimit = 99999;
constexpr std::int32_t LastTab = static_cast<std::int32_t>(SettingsTab::General);

/// Reads the rows of one group. True if all were well-formed.
bool ReadGroup(const ReadValue& read, SettingRows rows, LoadGroup group, AppSettings& settings) {
    bool whole = true;
    for (const SettingRow& row : rows) {
        if (row.group == group) whole = row.read(settings, read(row.section, row.key)) && whole;
    }
    return whole;
}

void ReadColors(const ReadValue& read, AppSettings& settings) {
    std::array<bool, ColorCount> found{};
    for (std::size_t i = 0; i < ColorCount; ++i) {
        const std::optional<ColorValue> color = ParseColor(read(ColorSection, IconColors[i].key));
        found[i] = color.has_value();
        if (color) settings.colors[i] = *color;
    }
    for (const auto& [target, source] : ColorLinks) {
        if (!found[target]) settings.colors[target] = settings.colors[source];
    }
}

// Older files had a flag for the network icon's border instead of a colour. Off means transparent, which is also
// today's default.
void ReadOlderNetworkBorder(const ReadValue& read, AppSettings& settings) {
    if (read(ColorSection, IconColors[NetBorder].key).empty() && read(L"network", L"icon_border") == L"0") {
        settings.colors[NetBorder] = ColorNone;
    }
}

// The oldest files have one common period, which never applied to the network icon. In later ones the CPU period also
// applied to the disk; they are recognised by the absence of `per_core`. Periods with their own key are read after this
// and win.
void ReadOlderRefreshPeriods(const ReadValue& read, AppSettings& settings) {
    auto& periods = settings.refresh_ms;
    if (const auto common = ParseRefresh(read(L"general", L"refresh_ms"))) {
        for (const MetricKind kind : {MetricKind::Cpu, MetricKind::Disk, MetricKind::Memory}) {
            periods[IndexOf(kind)] = *common;
        }
    }
    const auto cpu = ParseRefresh(read(L"cpu", L"refresh_ms"));
    if (cpu && read(L"cpu", L"per_core").empty()) periods[IndexOf(MetricKind::Disk)] = *cpu;
}

// One bad threshold discards all three.
void ReadThresholds(const ReadValue& read, AppSettings& settings) {
    AppSettings candidate = settings;
    if (ReadGroup(read, AllRows(), LoadGroup::Thresholds, candidate) && ValidThresholds(candidate.thresholds)) {
        settings = candidate;
    }
}

// Without an icon the program could not be reached, so a file that hides all four hides none.
void ReadShownIcons(const ReadValue& read, AppSettings& settings) {
    AppSettings candidate = settings;
    ReadGroup(read, AllRows(), LoadGroup::ShownIcons, candidate);
    if (std::ranges::count(candidate.show, true) > 0) settings = candidate;
}

// A window takes its whole placement from the file or none of it.
void ReadPlacement(const ReadValue& read, GraphKind kind, AppSettings& settings) {
    AppSettings candidate = settings;
    if (ReadGroup(read, WindowRows(kind), LoadGroup::Placement, candidate)) settings = candidate;
}

// One name per interface, however many the file has.
void ReadAliases(const ReadValue& read, AppSettings& settings) {
    if (settings.interfaces.empty()) return;
    ReadGroup(read, AllRows(), LoadGroup::Aliases, settings);
    settings.interface_aliases.resize(settings.interfaces.size());
}

bool WriteColor(std::size_t color, const AppSettings& settings, const WriteValue& write) {
    return write(ColorSection, IconColors[color].key, FormatColor(settings.colors[color]));
}

/// Writes the keys of a tab that a load fills in, with what it fills in. True if all were written.
bool WriteAbsentKeys(const AppSettings& settings, SettingsTab tab, const ReadValue& read, const WriteValue& write) {
    bool written = true;
    const ColorRange colors = TabColors(tab);
    for (std::size_t color = colors.first; color < colors.end; ++color) {
        if (!ParseColor(read(ColorSection, IconColors[color].key)))
            written = WriteColor(color, settings, write) && written;
    }
    for (const SettingRow& row : TabRows(tab)) {
        if (read(row.section, row.key).empty()) written = WriteSetting(row, settings, write) && written;
    }
    return written;
}

bool WriteRows(SettingRows rows, const AppSettings& settings, const WriteValue& write) {
    bool written = true;
    for (const SettingRow& row : rows)
        written = WriteSetting(row, settings, write) && written;
    return written;
}

}  // namespace

AppSettings ReadSettings(const ReadValue& read) {
    AppSettings settings = MakeDefaultSettings();
    ReadColors(read, settings);
    ReadOlderNetworkBorder(read, settings);
    ReadOlderRefreshPeriods(read, settings);
    ReadGroup(read, AllRows(), LoadGroup::None, settings);
    ReadThresholds(read, settings);
    ReadShownIcons(read, settings);
    for (const GraphKind kind : GraphKinds)
        ReadPlacement(read, kind, settings);
    ReadAliases(read, settings);
    return settings;
}

DialogState ReadDialogState(const ReadValue& read) {
    const auto readWithin = [&read](const wchar_t* key, std::int32_t low, std::int32_t high) {
        return ParseIntegerWithin(read(DialogSection, key), low, high);
    };
    DialogState state;
    const auto x = readWithin(L"x", -DialogPositionLimit, DialogPositionLimit);
    const auto y = readWithin(L"y", -DialogPositionLimit, DialogPositionLimit);
    if (x && y) {
        state.has_position = true;
        state.x = *x;
        state.y = *y;
    }
    state.tab = static_cast<std::uint32_t>(readWithin(L"tab", 0, LastTab).value_or(0));
    return state;
}

bool WriteSettingsTab(const AppSettings& settings, SettingsTab tab, const ReadValue& read, const WriteValue& write) {
    const AppSettings before = ReadSettings(read);
    bool written = true;
    if (FillsInAbsentKeys(before, settings, tab, read)) written = WriteAbsentKeys(before, tab, read, write);
    const ColorRange colors = TabColors(tab);
    for (std::size_t color = colors.first; color < colors.end; ++color)
        written = WriteColor(color, settings, write) && written;
    for (const SettingRow* row : RowOrder(before, settings, tab, read))
        written = WriteSetting(*row, settings, write) && written;
    return written;
}

bool WriteSetting(const SettingRow& row, const AppSettings& settings, const WriteValue& write) {
    return write(row.section, row.key, row.write(settings));
}

bool WriteGraphWindows(const AppSettings& settings, const WriteValue& write) {
    return std::ranges::all_of(GraphKinds,
                               [&](GraphKind kind) { return WriteRows(WindowRows(kind), settings, write); });
}

bool WriteDialogState(const DialogState& state, const WriteValue& write) {
    bool written = write(DialogSection, L"x", FormatInteger(state.x));
    written = write(DialogSection, L"y", FormatInteger(state.y)) && written;
    return write(DialogSection, L"tab", FormatInteger(state.tab)) && written;
}

}  // namespace kestrane
