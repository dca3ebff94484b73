// The layout of the settings dialog, and everything that changes it: the tab, the hardware and the language.
#include "dialog/settings_dialog_win32.h"

#include <windows.h>

#include "base/geometry_win32.h"
#include "dialog/dialog_units_win32.h"
#include "dialog/hardware_layout.h"
#include "dialog/hardware_painter_win32.h"
#include "hardware/hardware_facts_win32.h"
#include "metrics/value_text_win32.h"
#include "text/translation.h"

namespace kestrane {
namespace {

/// Nothing of a visible window is painted while one exists, and all of it afterwards.
class PaintLater {
  public:
    explicit PaintLater(HWND window) : window_(IsWindowVisible(window) ? window : nullptr) {
        if (window_ != nullptr) SendMessageW(window_, WM_SETREDRAW, FALSE, 0);
    }
    PaintLater(const PaintLater&) = delete;
    PaintLater& operator=(const PaintLater&) = delete;
    ~PaintLater() {
        if (window_ == nullptr) return;
        SendMessageW(window_, WM_SETREDRAW, TRUE, 0);
        RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_FRAME);
    }

  private:
    HWND window_;
};

}  // namespace

void SettingsDialog::LayoutDialog() {
    {
        const GroupLayout layout = LayoutGroups(settings_, heights_, tab_);
        const PaintLater later(window_);
        controls_.Place(layout, heights_);
        PlaceBoxes(layout);
        ResizeWindow(layout.content_height);
    }
    LeaveHiddenControl();
}

/// A hidden control that kept the focus would swallow the keyboard, so the next one gets it.
void SettingsDialog::LeaveHiddenControl() {
    const HWND focus = GetFocus();
    if (IsChild(window_, focus) && !IsWindowVisible(focus)) SendMessageW(window_, WM_NEXTDLGCTL, 0, FALSE);
}

void SettingsDialog::PlaceBoxes(const GroupLayout& layout) {
    const auto toPixels = [this](const Rect& units) {
        return units == Rect{} ? Rect{} : DialogUnitsToPixels(window_, units);
    };
    for (std::size_t i = 0; i < HardwareCount; ++i)
        hardware_boxes_[i] = toPixels(HardwareBox(static_cast<SettingsTab>(i), layout, heights_));
    for (const GraphKind kind : GraphKinds)
        graph_boxes_[IndexOf(kind)] = toPixels(GraphBox(kind, layout));
}

void SettingsDialog::ResizeWindow(std::int32_t contentHeight) {
    RECT outer = ToPlatform(DialogUnitsToPixels(window_, ClientArea(contentHeight)));
    AdjustWindowRectExForDpi(&outer, static_cast<DWORD>(GetWindowLongPtrW(window_, GWL_STYLE)), FALSE,
                             static_cast<DWORD>(GetWindowLongPtrW(window_, GWL_EXSTYLE)), Dpi());
    RECT window{};
    GetWindowRect(window_, &window);
    const Rect workArea = WorkAreaOf(MonitorFromWindow(window_, MONITOR_DEFAULTTONEAREST));
    const Rect resized =
        ResizedDialog(FromPlatform(window), workArea, outer.right - outer.left, outer.bottom - outer.top);
    SetWindowPos(window_, nullptr, resized.left, resized.top, RectWidth(resized), RectHeight(resized),
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void SettingsDialog::SelectTab(SettingsTab tab) {
    if (tab == tab_) return;
    tab_ = tab;
    LayoutDialog();
    for (const DialogTab& row : DialogTabs)
        InvalidateControl(row.button);
    InvalidateSamples();
    TellStates();
}

/// Reads the machine afresh, in the language of now.
void SettingsDialog::LoadHardwareRows(SettingsTab tab) {
    std::vector<HardwareRow>& rows = hardware_rows_[IndexOf(tab)];
    if (tab == SettingsTab::Cpu) rows = BuildCpuSummary(ReadCpuFacts(), DecimalSeparatorChar());
    if (tab == SettingsTab::Disk) rows = BuildDiskSummary(ReadDiskFacts(), DecimalSeparatorChar());
    if (tab == SettingsTab::Memory) rows = BuildMemorySummary(ReadMemoryFacts());
}

void SettingsDialog::MeasureHeights() {
    heights_.disks_height = controls_.DisksHeight();
    for (std::size_t i = 0; i < HardwareCount; ++i)
        MeasureHardware(static_cast<SettingsTab>(i));
}

void SettingsDialog::MeasureHardware(SettingsTab tab) {
    const ControlRow* control = controls_.Find(HardwarePanels[IndexOf(tab)].text);
    if (control == nullptr) return;
    const Rect item = DialogUnitsToPixels(window_, {0, 0, control->row.w, 8});
    const ScreenDc screen;
    const std::int32_t height = PaintHardwareRows(screen.Get(), HardwareTextArea(item, Dpi()),
                                                  hardware_rows_[IndexOf(tab)], Fonts(), Dpi(), false);
    heights_.hardware_height[IndexOf(tab)] = HardwareHeight(height, RectHeight(item), Dpi());
}

void SettingsDialog::Retranslate() {
    SetWindowTextW(window_, Tr(SettingsDialogTitle));
    controls_.Retranslate();
    NameWells();
    {
        const Filling filling(*this);
        combos_->Retranslate();
        for (std::size_t i = 0; i < HardwareCount; ++i)
            LoadHardwareRows(static_cast<SettingsTab>(i));
        FillInterfaceList();
    }
    MeasureHeights();
    LayoutDialog();
    RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

}  // namespace kestrane
