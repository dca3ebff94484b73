#include "settings/app_settings.h"

#include <algorithm>
#include <cstdlib>

#include "settings/setting_rows.h"

namespace kestrane {
namespace {

constexpr std::size_t DefaultRefreshIndex = 2;
constexpr std::size_t DefaultOpacityIndex = 1;
constexpr std::int32_t FillFlagOfOlderFiles = 1;
constexpr std::int32_t FillFlagMeaning = 50;

constexpr ColorValue Linked = 0;  // ColorLinks gives the colour

/// Shared by the const and the mutable accessor.
template <typename Settings>
auto& GraphIn(Settings& settings, GraphKind kind) {
    switch (kind) {
        case GraphKind::Cpu:
            return settings.cpu;
        case GraphKind::Disk:
            return settings.disk;
        case GraphKind::Network:
            break;
    }
    return settings.network;
}

}  // namespace

const std::array<IconColor, ColorCount> IconColors{{
    {L"cpu_bg", SettingsTab::Cpu, 0xCCEEFF},           {L"cpu_fg", SettingsTab::Cpu, 0x007BB7},
    {L"cpu_graph_bg", SettingsTab::Cpu, 0x000000},     {L"cpu_border", SettingsTab::Cpu, ColorNone},
    {L"cpu_graph_fg", SettingsTab::Cpu, Linked},       {L"cpu_graph_perf", SettingsTab::Cpu, Linked},
    {L"cpu_graph_eff", SettingsTab::Cpu, 0x2EBD72},    {L"disk_bg", SettingsTab::Disk, 0xFFF5E1},
    {L"disk_read", SettingsTab::Disk, 0xCE8B00},       {L"disk_write", SettingsTab::Disk, 0x167B04},
    {L"disk_graph_bg", SettingsTab::Disk, 0x000000},   {L"disk_border", SettingsTab::Disk, ColorNone},
    {L"disk_graph_read", SettingsTab::Disk, Linked},   {L"disk_graph_write", SettingsTab::Disk, Linked},
    {L"mem_bg", SettingsTab::Memory, ColorNone},       {L"mem_text", SettingsTab::Memory, 0xFFFFFF},
    {L"mem1_bg", SettingsTab::Memory, ColorNone},      {L"mem1_text", SettingsTab::Memory, 0xFFFFFF},
    {L"mem2_bg", SettingsTab::Memory, ColorNone},      {L"mem2_text", SettingsTab::Memory, 0xFFFF28},
    {L"mem3_bg", SettingsTab::Memory, ColorNone},      {L"mem3_text", SettingsTab::Memory, 0xFF5555},
    {L"mem_border", SettingsTab::Memory, ColorNone},   {L"mem1_border", SettingsTab::Memory, ColorNone},
    {L"mem2_border", SettingsTab::Memory, ColorNone},  {L"mem3_border", SettingsTab::Memory, ColorNone},
    {L"net_bg", SettingsTab::Network, 0x000000},       {L"net_down", SettingsTab::Network, 0xFF0000},
    {L"net_up", SettingsTab::Network, 0x009D00},       {L"net_both", SettingsTab::Network, 0xFFFF00},
    {L"net_graph_bg", SettingsTab::Network, 0x000000}, {L"net_border", SettingsTab::Network, ColorNone},
    {L"net_graph_down", SettingsTab::Network, Linked}, {L"net_graph_up", SettingsTab::Network, Linked},
    {L"net_graph_both", SettingsTab::Network, Linked},
}};

GraphSettings& GraphSettingsOf(AppSettings& settings, GraphKind kind) {
    return GraphIn(settings, kind);
}

const GraphSettings& GraphSettingsOf(const AppSettings& settings, GraphKind kind) {
    return GraphIn(settings, kind);
}

AppSettings MakeDefaultSettings() {
    AppSettings settings;
    std::transform(IconColors.begin(), IconColors.end(), settings.colors.begin(),
                   [](const IconColor& row) { return row.value; });
    for (const auto& [target, source] : ColorLinks)
        settings.colors[target] = settings.colors[source];
    for (const SettingRow& row : AllRows())
        row.read(settings, row.defaultText);
    return settings;
}

std::size_t RefreshIndex(std::uint32_t ms) {
    const auto* const found = std::find_if(RefreshChoices.begin(), RefreshChoices.end(),
                                           [ms](const RefreshChoice& choice) { return choice.ms == ms; });
    if (found == RefreshChoices.end()) return DefaultRefreshIndex;
    return static_cast<std::size_t>(found - RefreshChoices.begin());
}

const wchar_t* RefreshLabel(std::size_t index) {
    return Tr(RefreshChoices[index < RefreshChoices.size() ? index : DefaultRefreshIndex].text);
}

std::size_t OpacityIndex(std::int32_t percent) {
    const auto* const found = std::find(OpacityChoices.begin(), OpacityChoices.end(), percent);
    if (found == OpacityChoices.end()) return DefaultOpacityIndex;
    return static_cast<std::size_t>(found - OpacityChoices.begin());
}

std::size_t FillIndex(std::int32_t percent) {
    const auto distance = [percent](std::int32_t choice) { return std::abs(std::int64_t{choice} - percent); };
    const auto* const nearest =
        std::min_element(FillChoices.begin(), FillChoices.end(),
                         [&distance](std::int32_t a, std::int32_t b) { return distance(a) < distance(b); });
    return static_cast<std::size_t>(nearest - FillChoices.begin());
}

std::int32_t NormalizeFill(std::int32_t value) {
    if (value == FillFlagOfOlderFiles) return FillFlagMeaning;
    return FillChoices[FillIndex(std::clamp(value, 0, 100))];
}

std::int32_t ClampFontSize(std::int32_t value) {
    return std::clamp(value, FontSizeChoices.front(), FontSizeChoices.back());
}

std::int32_t ClampMargin(std::int32_t value) {
    return std::clamp(value, MarginChoices.front(), MarginChoices.back());
}

std::int32_t ClampSmoothing(std::int32_t value) {
    return std::clamp(value, 0, static_cast<std::int32_t>(SmoothingChoices.size()) - 1);
}

bool ValidThresholds(const std::array<std::int32_t, 3>& thresholds) {
    std::int32_t previous = 0;
    for (const std::int32_t threshold : thresholds) {
        if (threshold <= previous || threshold > 100) return false;
        previous = threshold;
    }
    return true;
}

std::size_t MemoryLevel(const AppSettings& settings, std::int32_t percent) {
    std::size_t level = 0;
    for (std::size_t i = 0; i < settings.thresholds.size(); ++i) {
        if (percent >= settings.thresholds[i]) level = i + 1;
    }
    return level;
}

MemoryColors MemoryLevelColors(const AppSettings& settings, std::int32_t percent) {
    static_assert(Mem1Bg == MemBg + 2 && Mem2Bg == MemBg + 4 && Mem3Bg == MemBg + 6);
    static_assert(Mem1Text == MemText + 2 && Mem2Text == MemText + 4 && Mem3Text == MemText + 6);
    static_assert(Mem1Border == MemBorder + 1 && Mem2Border == MemBorder + 2 && Mem3Border == MemBorder + 3);
    const std::size_t level = MemoryLevel(settings, percent);
    return {settings.colors[MemBg + 2 * level], settings.colors[MemText + 2 * level],
            settings.colors[MemBorder + level]};
}

}  // namespace kestrane
