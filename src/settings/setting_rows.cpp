#include "settings/setting_rows.h"

#include <algorithm>
#include <array>

namespace kestrane {
namespace {

constexpr std::array<SettingRow, 1> One(const SettingRow& row) {
    return {row};
}

template <std::size_t... Sizes>
constexpr std::array<SettingRow, (Sizes + ...)> Join(const std::array<SettingRow, Sizes>&... parts) {
    std::array<SettingRow, (Sizes + ...)> rows{};
    auto* next = rows.begin();
    ((next = std::copy(parts.begin(), parts.end(), next)), ...);
    return rows;
}

constexpr const auto& Show(MetricKind kind) {
    return ShowRows[IndexOf(kind)];
}
constexpr const auto& Refresh(MetricKind kind) {
    return RefreshRows[IndexOf(kind)];
}
constexpr const auto& Style(GraphKind kind) {
    return StyleRows[IndexOf(kind)];
}

constexpr auto CpuTab =
    Join(One(Show(MetricKind::Cpu)), One(Refresh(MetricKind::Cpu)), Style(GraphKind::Cpu), One(PerCoreRow));
constexpr auto DiskTab = Join(One(Show(MetricKind::Disk)), One(Refresh(MetricKind::Disk)), Style(GraphKind::Disk),
                              One(ActivityRow), One(DisksRow));
constexpr auto MemoryTab =
    Join(One(Show(MetricKind::Memory)), ThresholdRows, MemoryRows, One(Refresh(MetricKind::Memory)));
constexpr auto NetworkTab = Join(One(Show(MetricKind::Network)), One(InterfacesRow), One(AliasesRow),
                                 One(Refresh(MetricKind::Network)), Style(GraphKind::Network));

}  // namespace

ColorRange TabColors(SettingsTab tab) {
    const SettingsTab owner = std::min(tab, SettingsTab::Network);
    const auto* const first = std::ranges::lower_bound(IconColors, owner, {}, &IconColor::tab);
    const auto* const end = std::ranges::upper_bound(IconColors, owner, {}, &IconColor::tab);
    return {static_cast<std::size_t>(first - IconColors.begin()), static_cast<std::size_t>(end - IconColors.begin())};
}

SettingRows TabRows(SettingsTab tab) {
    switch (tab) {
        case SettingsTab::Cpu:
            return CpuTab;
        case SettingsTab::Disk:
            return DiskTab;
        case SettingsTab::Memory:
            return MemoryTab;
        case SettingsTab::Network:
            return NetworkTab;
        case SettingsTab::General:
            break;
    }
    return {};
}

}  // namespace kestrane
