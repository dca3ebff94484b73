#include "dialog/page_edits.h"

#include <algorithm>
#include <cstddef>

#include "dialog/font_list.h"
#include "settings/ini_values.h"

namespace kestrane {
namespace {

/// The choice at `index`, or null.
template <typename Choice, std::size_t Count>
const Choice* ChoiceAt(const std::array<Choice, Count>& choices, std::int32_t index) {
    if (index < 0 || static_cast<std::size_t>(index) >= Count) return nullptr;
    return &choices[static_cast<std::size_t>(index)];
}

}  // namespace

std::optional<std::array<std::int32_t, 3>> ParseThresholds(const std::array<std::wstring, 3>& texts) {
    std::array<std::int32_t, 3> thresholds{};
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const std::optional<std::int32_t> threshold = ParseThreshold(texts[i]);
        if (!threshold) return {};
        thresholds[i] = *threshold;
    }
    return ValidThresholds(thresholds) ? std::optional(thresholds) : std::nullopt;
}

std::vector<std::int32_t> DisksOfBoxes(std::span<const DiskBox> boxes) {
    std::vector<std::int32_t> disks;
    for (const auto& [number, ticked] : boxes) {
        const bool storable = number >= 0 && number <= LastDisk;
        if (ticked && storable && std::ranges::find(disks, number) == disks.end()) disks.push_back(number);
    }
    return disks;
}

bool IsDiskTicked(const AppSettings& settings, std::int32_t number) {
    return std::ranges::find(settings.disks, number) != settings.disks.end();
}

void ApplyFont(const FontEdit& edit, std::wstring& font_name, std::int32_t& font_size, bool& font_bold) {
    if (IsStorableFontName(edit.name)) font_name = edit.name;
    if (edit.sizeIndex >= 0) {
        const std::size_t last = FontSizeChoices.size() - 1;
        font_size = FontSizeChoices[std::min(static_cast<std::size_t>(edit.sizeIndex), last)];
    }
    font_bold = edit.bold;
}

std::int32_t FontSizeChoiceIndex(std::int32_t size) {
    return ClampFontSize(size) - FontSizeChoices.front();
}

bool ApplyPeriod(AppSettings& settings, MetricKind metric, std::int32_t index) {
    const RefreshChoice* const choice = ChoiceAt(RefreshChoices, index);
    if (choice != nullptr) settings.refresh_ms[IndexOf(metric)] = choice->ms;
    return choice != nullptr;
}

bool ApplyOpacity(GraphSettings& graph, std::int32_t index) {
    const std::int32_t* const percent = ChoiceAt(OpacityChoices, index);
    if (percent != nullptr) graph.opacity = *percent;
    return percent != nullptr;
}

bool ApplyFill(GraphSettings& graph, std::int32_t index) {
    const std::int32_t* const percent = ChoiceAt(FillChoices, index);
    if (percent != nullptr) graph.fill = *percent;
    return percent != nullptr;
}

}  // namespace kestrane
