#include "dialog/well_names.h"

#include <algorithm>
#include <string_view>

#include "dialog/control_table.h"
#include "dialog/dialog_panels.h"
#include "text/number_text.h"
#include "text/translation.h"

namespace kestrane {
namespace {

const DialogRow& RowOf(std::int32_t id) {
    return *std::ranges::find(DialogRows, id, &DialogRow::id);
}

bool OnOneLine(const DialogRow& a, const DialogRow& b) {
    return a.group == b.group && a.y < b.y + b.h && b.y < a.y + a.h;
}

bool IsAbove(const DialogRow& head, const DialogRow& well) {
    const std::int32_t middle = well.x + well.w / 2;
    return head.group == well.group && head.y + head.h <= well.y && head.x <= middle && middle < head.x + head.w;
}

/// The head of the well's column; null without one.
const DialogRow* HeadOf(const DialogRow& well) {
    for (const DialogRow& row : DialogRows) {
        if (row.type == ControlType::ColumnHead && IsAbove(row, well)) return &row;
    }
    return nullptr;
}

/// The label at the start of the well's line.
const DialogRow& LabelOf(const DialogRow& well) {
    const DialogRow* row = DialogRows.data();
    while (row->type != ControlType::Label || !OnOneLine(*row, well))
        ++row;
    return *row;
}

/// The box around the well; null outside of one.
const GraphPanel* PanelOf(const DialogRow& well) {
    const auto group = static_cast<std::size_t>(well.group);
    for (const GraphPanel& panel : GraphPanels) {
        if (group >= panel.first_group && group <= panel.last_group) return &panel;
    }
    return nullptr;
}

/// The title of a graph's box, without the hint in parentheses.
std::wstring_view ShortTitle(const GraphPanel& panel) {
    const std::wstring_view title = Tr(TextOf(RowOf(panel.title)));
    return title.substr(0, title.find(L'(') - 1);
}

}  // namespace

std::wstring WellName(ColorKey key, const std::array<std::int32_t, 3>& thresholds) {
    const DialogRow& well = RowOf(ColorWells[key]);
    const DialogRow* head = HeadOf(well);
    const DialogRow& label = LabelOf(well);
    const GraphPanel* panel = PanelOf(well);
    std::wstring name(panel != nullptr ? ShortTitle(*panel) : Tr(TextOf(label)));
    for (std::size_t i = 0; i < ThresholdFields.size(); ++i) {
        if (OnOneLine(RowOf(ThresholdFields[i]), well))
            name.append(L" ").append(FormatInteger(thresholds[i])).append(L" %");
    }
    return name.append(L", ").append(Tr(TextOf(head != nullptr ? *head : label)));
}

}  // namespace kestrane
