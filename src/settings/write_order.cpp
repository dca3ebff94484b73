#include "settings/write_order.h"

#include <algorithm>
#include <functional>
#include <span>

#include "settings/ini_values.h"

namespace kestrane {
namespace {

bool IsAbsent(const SettingRow& row, const ReadValue& read) {
    return read(row.section, row.key).empty();
}

}  // namespace

bool FillsInAbsentKeys(const AppSettings& before, const AppSettings& settings, SettingsTab tab, const ReadValue& read) {
    if (tab == SettingsTab::Cpu) {
        constexpr std::size_t cpu = IndexOf(MetricKind::Cpu);
        if (before.refresh_ms[cpu] != settings.refresh_ms[cpu] && IsAbsent(PerCoreRow, read)) return true;
    }
    const ColorRange range = TabColors(tab);
    return std::ranges::any_of(ColorLinks, [&](const ColorLink& link) {
        return link.target >= range.first && link.target < range.end &&
               before.colors[link.source] != settings.colors[link.source] &&
               !ParseColor(read(ColorSection, IconColors[link.target].key));
    });
}

std::vector<const SettingRow*> RowOrder(const AppSettings& before, const AppSettings& settings, SettingsTab tab,
                                        const ReadValue& read) {
    std::vector<const SettingRow*> rows;
    for (const SettingRow& row : TabRows(tab))
        rows.push_back(&row);

    const auto first = std::ranges::find(rows, LoadGroup::Thresholds, &SettingRow::group);
    if (first == rows.end()) return rows;
    const std::span thresholds(first, settings.thresholds.size());
    if (std::ranges::any_of(thresholds, [&](const SettingRow* row) { return IsAbsent(*row, read); })) return rows;
    const SettingRow* firstRow = *first;
    const auto rises = [&](const SettingRow* row) {
        const auto number = static_cast<std::size_t>(row - firstRow);
        return before.thresholds[number] < settings.thresholds[number];
    };
    std::reverse(std::stable_partition(thresholds.begin(), thresholds.end(), std::not_fn(rises)), thresholds.end());
    return rows;
}

}  // namespace kestrane
