#include "settings/write_order.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <numeric>

#include "settings/ini_values.h"

namespace kestrane {

std::vector<std::size_t> ColorOrder(const AppSettings& before, const AppSettings& settings, SettingsTab tab,
                                    const ReadValue& read) {
    const ColorRange range = TabColors(tab);
    std::vector<std::size_t> colors(range.end - range.first);
    std::iota(colors.begin(), colors.end(), range.first);
    const auto comesFirst = [&](std::size_t color) {
        return std::ranges::any_of(ColorLinks, [&](const ColorLink& link) {
            return link.target == color && before.colors[link.source] != settings.colors[link.source] &&
                   !ParseColor(read(ColorSection, IconColors[color].key));
        });
    };
    std::stable_partition(colors.begin(), colors.end(), comesFirst);
    return colors;
}

std::vector<const SettingRow*> RowOrder(const AppSettings& before, const AppSettings& settings, SettingsTab tab,
                                        const ReadValue& read) {
    std::vector<const SettingRow*> rows;
    for (const SettingRow& row : TabRows(tab))
        rows.push_back(&row);

    constexpr std::size_t cpu = IndexOf(MetricKind::Cpu);
    const bool isFilledIn =
        before.refresh_ms[cpu] != settings.refresh_ms[cpu] && read(PerCoreRow.section, PerCoreRow.key).empty();
    std::stable_partition(rows.begin(), rows.end(),
                          [&](const SettingRow* row) { return isFilledIn && row == &PerCoreRow; });

    const auto first = std::ranges::find(rows, LoadGroup::Thresholds, &SettingRow::group);
    if (first == rows.end()) return rows;
    const auto end = first + static_cast<std::ptrdiff_t>(settings.thresholds.size());
    const SettingRow* firstRow = *first;
    const auto rises = [&](const SettingRow* row) {
        const auto number = static_cast<std::size_t>(row - firstRow);
        return before.thresholds[number] < settings.thresholds[number];
    };
    std::reverse(std::stable_partition(first, end, std::not_fn(rises)), end);
    return rows;
}

}  // namespace kestrane
