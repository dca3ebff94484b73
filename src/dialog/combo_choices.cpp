#include "dialog/combo_choices.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "dialog/control_ids.h"
#include "settings/app_settings.h"
#include "text/number_text.h"
#include "text/translation.h"

namespace kestrane {
namespace {

using enum ComboContent;

struct ComboRow {
    ControlId id;
    ComboContent content;
};

constexpr auto Combos = std::to_array<ComboRow>({
    {IdCpuRefresh, Refresh},     {IdDiskRefresh, Refresh},   {IdMemRefresh, Refresh},     {IdNetRefresh, Refresh},
    {IdCpuOpacity, Opacity},     {IdDiskOpacity, Opacity},   {IdNetOpacity, Opacity},     {IdCpuMargin, Margin},
    {IdDiskMargin, Margin},      {IdNetMargin, Margin},      {IdCpuSmoothing, Smoothing}, {IdDiskSmoothing, Smoothing},
    {IdNetSmoothing, Smoothing}, {IdCpuFill, Fill},          {IdDiskFill, Fill},          {IdNetFill, Fill},
    {IdCpuFontSize, FontSize},   {IdDiskFontSize, FontSize}, {IdMemFontSize, FontSize},   {IdNetFontSize, FontSize},
    {IdLanguage, Language},
});

constexpr std::array FontCombos{IdCpuFont, IdDiskFont, IdMemFont, IdNetFont};

std::wstring FillText(std::int32_t percent) {
    return percent == 0 ? Tr(L"Sin relleno") : FormatInteger(percent) + L" %";
}

}  // namespace

std::optional<ComboContent> ContentOfCombo(std::int32_t id) {
    const auto* const row = std::ranges::find(Combos, id, &ComboRow::id);
    return row != Combos.end() ? std::optional(row->content) : std::nullopt;
}

bool IsFontCombo(std::int32_t id) {
    return std::ranges::find(FontCombos, id) != FontCombos.end();
}

std::size_t ChoiceCount(ComboContent content) {
    switch (content) {
        case Refresh:
            return RefreshChoices.size();
        case Opacity:
            return OpacityChoices.size();
        case Margin:
            return MarginChoices.size();
        case Smoothing:
            return SmoothingChoices.size();
        case Fill:
            return FillChoices.size();
        case FontSize:
            return FontSizeChoices.size();
        case Language:
            break;
    }
    return LanguageChoices.size();
}

std::wstring ChoiceText(ComboContent content, std::size_t index) {
    switch (content) {
        case Refresh:
            return RefreshLabel(index);
        case Opacity:
            return FormatText(L"{0} % visible", {FormatInteger(OpacityChoices[index])});
        case Margin:
            return FormatInteger(MarginChoices[index]) + L" px";
        case Smoothing:
            return Tr(SmoothingChoices[index]);
        case Fill:
            return FillText(FillChoices[index]);
        case FontSize:
            return FormatInteger(FontSizeChoices[index]);
        case Language:
            break;
    }
    return Tr(LanguageChoices[index]);
}

std::size_t ClampChoice(ComboContent content, std::int32_t index) {
    return std::min(static_cast<std::size_t>(std::max(index, 0)), ChoiceCount(content) - 1);
}

bool LazyCombos::IsFilled(std::int32_t id) const {
    return std::ranges::find(filled_combos_, id) != filled_combos_.end();
}

void LazyCombos::MarkFilled(std::int32_t id) {
    filled_combos_.push_back(id);
}

void LazyCombos::MarkEmpty(std::int32_t id) {
    std::erase(filled_combos_, id);
}

void LazyCombos::Choose(std::int32_t id, std::int32_t index) {
    const auto choice = std::ranges::find(combo_choices_, id, &Choice::id);
    if (choice != combo_choices_.end()) {
        choice->index = index;
    } else {
        combo_choices_.push_back({id, index});
    }
}

std::int32_t LazyCombos::Chosen(std::int32_t id) const {
    const auto choice = std::ranges::find(combo_choices_, id, &Choice::id);
    return choice != combo_choices_.end() ? choice->index : -1;
}

std::vector<std::int32_t> LazyCombos::Ids() const {
    std::vector<std::int32_t> ids;
    std::ranges::transform(combo_choices_, std::back_inserter(ids), &Choice::id);
    return ids;
}

}  // namespace kestrane
