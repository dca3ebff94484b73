// The controls of the settings dialog's pages, as the settings say.
#include "dialog/settings_dialog_win32.h"

#include <windows.h>

#include <algorithm>

#include "dialog/page_edits.h"

namespace kestrane {
namespace {

constexpr std::int32_t DiskBoxId(std::size_t index) {
    return IdFirstDisk + static_cast<std::int32_t>(index);
}

}  // namespace

void SettingsDialog::FillControls() {
    const Filling filling(*this);
    combos_->ChooseFontName(IdMemFont, settings_.font_name);
    combos_->Choose(IdMemFontSize, FontSizeChoiceIndex(settings_.font_size));
    Tick(IdMemFontBold, settings_.font_bold);
    Tick(IdMemBar, settings_.bar);
    for (const MetricKind metric : MetricKinds) {
        const std::size_t choice = RefreshIndex(settings_.refresh_ms[IndexOf(metric)]);
        combos_->Choose(RefreshCombos[IndexOf(metric)], static_cast<std::int32_t>(choice));
    }
    for (const GraphKind kind : GraphKinds)
        FillGraphPanel(kind);
    Tick(IdCpuPerCore, settings_.per_core);
    Tick(IdDiskActivity, settings_.activity);
    FillDisks();
    for (std::size_t i = 0; i < ThresholdFields.size(); ++i)
        SetDlgItemInt(window_, ThresholdFields[i], static_cast<UINT>(settings_.thresholds[i]), FALSE);
    for (const ControlId well : ColorWells)
        InvalidateControl(well);
    interfaces_ = BuildInterfaceChoice(settings_, host_.ListInterfaces());
    FillInterfaceList();
}

void SettingsDialog::FillGraphPanel(GraphKind kind) {
    const GraphPanel& panel = GraphPanels[IndexOf(kind)];
    const GraphSettings& graph = GraphSettingsOf(settings_, kind);
    combos_->ChooseFontName(panel.font, graph.font_name);
    combos_->Choose(panel.size, FontSizeChoiceIndex(graph.font_size));
    Tick(panel.bold, graph.font_bold);
    combos_->Choose(panel.opacity, static_cast<std::int32_t>(OpacityIndex(graph.opacity)));
    combos_->Choose(panel.margin, graph.margin);
    combos_->Choose(panel.smoothing, graph.smoothing);
    Tick(panel.lines, graph.style == 1);
    combos_->Choose(panel.fill, static_cast<std::int32_t>(FillIndex(graph.fill)));
    Tick(panel.topmost, graph.topmost);
}

void SettingsDialog::FillDisks() {
    Tick(IdAllDisks, settings_.disks.empty());
    const std::vector<DiskBox> boxes = ShownDisks();
    for (std::size_t i = 0; i < boxes.size(); ++i)
        Tick(DiskBoxId(i), IsDiskTicked(settings_, boxes[i].number));
}

/// The list stays where it was scrolled to, and so does the keyboard's place in it.
void SettingsDialog::FillInterfaceList() {
    const HWND list = Control(IdInterfaces);
    const LRESULT top = SendMessageW(list, LB_GETTOPINDEX, 0, 0);
    const LRESULT caret = SendMessageW(list, LB_GETCARETINDEX, 0, 0);
    const auto count = static_cast<LRESULT>(ListedItems(interfaces_));
    SendMessageW(list, LB_RESETCONTENT, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        const std::wstring name = InterfaceItemAt(interfaces_, static_cast<std::size_t>(i)).name;
        SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
    }
    const auto listed = [count](LRESULT item) { return static_cast<WPARAM>(std::clamp<LRESULT>(item, 0, count - 1)); };
    SendMessageW(list, LB_SETTOPINDEX, listed(top), 0);
    SendMessageW(list, LB_SETCARETINDEX, listed(caret), FALSE);
}

std::vector<DiskBox> SettingsDialog::ShownDisks() const {
    std::vector<DiskBox> boxes;
    for (const DiskFacts& disk : host_.FixedDisks()) {
        if (boxes.size() == MaxDiskBoxes) break;
        boxes.push_back({static_cast<std::int32_t>(disk.number), IsTicked(DiskBoxId(boxes.size()))});
    }
    return boxes;
}

}  // namespace kestrane
