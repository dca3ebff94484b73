// What the settings dialog paints by hand, the samples included: those are drawn by the renderers of the tray and of
// the graphs, straight from the settings that are being edited.
#include "dialog/settings_dialog_win32.h"

#include <windows.h>

#include <algorithm>
#include <string>

#include "base/geometry_win32.h"
#include "dialog/gdi_paint_win32.h"
#include "dialog/hardware_painter_win32.h"
#include "dialog/item_layout.h"
#include "dialog/owner_drawn_win32.h"
#include "dialog/page_background.h"
#include "graph/graph_painter_win32.h"
#include "tray/icon_render_win32.h"

namespace kestrane {
namespace {

constexpr std::array SampleIds{IdCpuIconSample,   IdDiskIconSample, IdNetIconSample, IdNetGraphSample, IdCpuGraphSample,
                               IdDiskGraphSample, IdMemSample,      IdMem1Sample,    IdMem2Sample,     IdMem3Sample};
/// By memory level.
constexpr std::array MemorySamples{IdMemSample, IdMem1Sample, IdMem2Sample, IdMem3Sample};

constexpr std::int32_t BackdropMargin = 3;  // pixels at 96 DPI
constexpr ColorValue LightTaskbar = 0xEEEEEE;
constexpr ColorValue DarkTaskbar = 0x1C1C1C;
constexpr int LongestSwitchText = 95;

/// The colour behind an icon: about that of the taskbar.
ColorValue TaskbarColor() {
    DWORD light = 0;
    DWORD size = sizeof light;
    const LSTATUS status =
        RegGetValueW(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize",
                     L"SystemUsesLightTheme", RRF_RT_REG_DWORD, nullptr, &light, &size);
    return status == ERROR_SUCCESS && light != 0 ? LightTaskbar : DarkTaskbar;
}

ItemState StateOf(const DRAWITEMSTRUCT& item) {
    return {(item.itemState & ODS_DISABLED) == 0,
            (item.itemState & ODS_FOCUS) != 0 && (item.itemState & ODS_NOFOCUSRECT) == 0};
}

}  // namespace

void SettingsDialog::OnPaint() {
    const auto rectOf = [this](HWND control) {
        RECT rect{};
        GetWindowRect(control, &rect);
        MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&rect), 2);
        return FromPlatform(rect);
    };
    PageBackground background;
    background.accent = DialogTabs[IndexOf(tab_)].accent;
    background.first_tab = rectOf(Control(DialogTabs.front().button));
    background.current_tab = rectOf(Control(DialogTabs[IndexOf(tab_)].button));
    background.last_tab = rectOf(Control(DialogTabs.back().button));
    for (const ControlRow& control : controls_.Rows()) {
        if (control.row.type == ControlType::BoxTitle)
            background.titled_frames.push_back({control.frame, control.rect});
    }
    background.hardware_boxes.assign(hardware_boxes_.begin(), hardware_boxes_.end());
    background.graph_boxes.assign(graph_boxes_.begin(), graph_boxes_.end());
    const WindowPaint paint(window_);
    if (paint.Dc() != nullptr) PaintPageBackground(paint.Dc(), background, Dpi());
}

/// An answered message does not reach the system, so the text gets its colour here, too.
HBRUSH SettingsDialog::OnControlColor(HDC dc, HWND control) {
    const std::int32_t id = GetDlgCtrlID(control);
    const bool isNote = std::ranges::any_of(PageNotes, [id](const PageNote& note) { return note.id == id; });
    const ControlRow* row = controls_.Find(id);
    if (!isNote && (row == nullptr || row->window != control)) return nullptr;
    const bool isGrey = isNote || row->row.type == ControlType::Note;
    SetTextColor(dc, GetSysColor(isGrey ? COLOR_GRAYTEXT : COLOR_BTNTEXT));
    SetBkMode(dc, TRANSPARENT);
    if (isNote) return GetSysColorBrush(COLOR_BTNFACE);
    if (row->row.type == ControlType::TabTitle || row->row.type == ControlType::BoxTitle)
        return static_cast<HBRUSH>(GetStockObject(NULL_BRUSH));
    const std::size_t tab = IndexOf(DialogGroups[static_cast<std::size_t>(row->row.group)].tab);
    SetBkColor(dc, tab_colors_[tab]);
    return tab_brushes_[tab].Get();
}

/// The system's colours can change while the dialog is open.
void SettingsDialog::RebuildTabBrushes() {
    bool changed = false;
    for (std::size_t i = 0; i < TabCount; ++i) {
        const COLORREF color = GetSysColor(COLOR_BTNFACE);
        if (tab_brushes_[i] && tab_colors_[i] == color) continue;
        tab_colors_[i] = color;
        tab_brushes_[i].Reset(CreateSolidBrush(color));
        changed = true;
    }
    if (changed) RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

bool SettingsDialog::OnMeasureItem(MEASUREITEMSTRUCT& item) const {
    if (item.CtlID != IdInterfaces) return false;
    item.itemHeight = static_cast<UINT>(InterfaceItemHeight(Dpi()));
    return true;
}

/// A button is also drawn when it gets or loses the focus.
bool SettingsDialog::OnDrawItem(const DRAWITEMSTRUCT& item) {
    if (item.CtlType == ODT_BUTTON) TellStates();
    const auto id = static_cast<std::int32_t>(item.CtlID);
    for (std::size_t i = 0; i < TabCount; ++i) {
        if (id != DialogTabs[i].button) continue;
        DrawTabButton(item, static_cast<SettingsTab>(i));
        return true;
    }
    const ControlRow* control = controls_.Find(id);
    if (control == nullptr) return false;
    const Rect rect = FromPlatform(item.rcItem);
    const SettingsTab tab = DialogGroups[static_cast<std::size_t>(control->row.group)].tab;
    switch (control->row.type) {
        case ControlType::ShowSwitch:
            PaintSwitch(item.hDC, rect, WindowText(item.hwndItem, LongestSwitchText), settings_.show[IndexOf(tab)],
                        StateOf(item).focus, Fonts().regular, Dpi());
            return true;
        case ControlType::ColorWell:
            if (const auto key = ColorOfWell(id)) PaintColorWell(item.hDC, rect, settings_.colors[*key], StateOf(item));
            return true;
        case ControlType::Sample:
            DrawSample(item);
            return true;
        case ControlType::InterfaceList:
            DrawInterface(item);
            return true;
        case ControlType::SectionTitle:
            DrawSectionTitle(item);
            return true;
        case ControlType::HardwareText:
            PaintHardwareText(item.hDC, rect, hardware_rows_[IndexOf(tab)], Fonts(), Dpi());
            return true;
        default:
            return false;
    }
}

void SettingsDialog::DrawTabButton(const DRAWITEMSTRUCT& item, SettingsTab tab) {
    PaintTabButton(item.hDC, FromPlatform(item.rcItem), WindowText(item.hwndItem, LongestTabText),
                   tab_icons_[IndexOf(tab)].Get(), DialogTabs[IndexOf(tab)].accent, tab == tab_, StateOf(item).focus,
                   Fonts(), Dpi());
}

void SettingsDialog::DrawSectionTitle(const DRAWITEMSTRUCT& item) {
    const auto id = static_cast<std::int32_t>(item.CtlID);
    const bool isHardware =
        std::ranges::any_of(HardwarePanels, [id](const HardwarePanel& panel) { return panel.title == id; });
    const HBRUSH background = isHardware ? static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)) : TabBrush();
    PaintSectionTitle(item.hDC, FromPlatform(item.rcItem), WindowText(item.hwndItem, LongestSectionText),
                      isHardware ? hardware_icon_.Get() : graph_icon_.Get(), background,
                      SectionTextColor(isHardware, StateOf(item).enabled), bold_font_.Get(), Dpi());
}

/// The columns start below their heads.
void SettingsDialog::DrawInterface(const DRAWITEMSTRUCT& item) {
    if (item.itemID >= ListedItems(interfaces_)) return;
    const auto columnOf = [&](ControlId head) {
        POINT corner{};
        MapWindowPoints(Control(head), item.hwndItem, &corner, 1);
        return static_cast<std::int32_t>(corner.x);
    };
    PaintInterfaceItem(item.hDC, FromPlatform(item.rcItem), InterfaceItemAt(interfaces_, item.itemID), StateOf(item),
                       Fonts().regular, columnOf(IdInterfaceNames), columnOf(IdInterfaceAddresses), Dpi());
}

void SettingsDialog::DrawSample(const DRAWITEMSTRUCT& item) {
    const auto id = static_cast<std::int32_t>(item.CtlID);
    for (const GraphKind kind : GraphKinds) {
        if (id != GraphPanels[IndexOf(kind)].sample) continue;
        PaintGraph(item.hDC, item.rcItem.right - item.rcItem.left, item.rcItem.bottom - item.rcItem.top, kind,
                   settings_, samples_.sampleSeries[IndexOf(kind)], Dpi(), HoverState{});
        return;
    }
    DrawIconSample(item);
}

/// On a backdrop as the taskbar has, which shows through where the icon is transparent.
void SettingsDialog::DrawIconSample(const DRAWITEMSTRUCT& item) {
    const Rect rect = FromPlatform(item.rcItem);
    FillRect(item.hDC, &item.rcItem, TabBrush());
    const auto size = static_cast<std::int32_t>(IconPixelSize(window_));
    const Rect place = CentredAt(rect.left + (RectWidth(rect) - size) / 2, rect, size, size);
    FillSolid(item.hDC, Inset(place, -ScaleForDpi(BackdropMargin, Dpi())), TaskbarColor());
    const UniqueIcon icon = RenderIconSample(static_cast<std::int32_t>(item.CtlID), static_cast<std::uint32_t>(size));
    DrawIconIn(item.hDC, place, icon.Get());
}

UniqueIcon SettingsDialog::RenderIconSample(std::int32_t id, std::uint32_t size) const {
    if (id == IdCpuIconSample) return RenderCpuIcon(settings_, samples_.sampleCpuIcon, size);
    if (id == IdDiskIconSample) {
        return RenderDiskIcon(settings_, samples_.sampleDiskReadIcon, samples_.sampleDiskWriteIcon, true, size);
    }
    if (id == IdNetIconSample)
        return RenderNetworkIcon(settings_, samples_.sampleNetDownIcon, samples_.sampleNetUpIcon, size);
    const auto* const level = std::ranges::find(MemorySamples, id);
    if (level == MemorySamples.end()) return {};
    return RenderMemoryIcon(settings_, samples_.sampleMemory[static_cast<std::size_t>(level - MemorySamples.begin())],
                            size);
}

void SettingsDialog::InvalidateSamples() {
    for (const ControlId id : SampleIds)
        InvalidateControl(id);
}

void SettingsDialog::InvalidateControl(std::int32_t id) {
    const HWND control = Control(id);
    if (control != nullptr && IsWindowVisible(control)) InvalidateRect(control, nullptr, FALSE);
}

}  // namespace kestrane
