#include "dialog/owner_drawn_win32.h"

#include <algorithm>

#include "base/font_win32.h"
#include "base/geometry_win32.h"
#include "base/handles_win32.h"
#include "base/high_contrast_win32.h"
#include "dialog/gdi_paint_win32.h"
#include "dialog/item_layout.h"
#include "dialog/switch_pixels.h"
#include "dialog/well_pixels.h"
#include "graph/graph_bitmap_win32.h"

namespace kestrane {
namespace {

constexpr ColorValue Black = 0x000000;
constexpr ColorValue White = 0xFFFFFF;
constexpr ColorValue TabEdge = 0x8A8A8A;
constexpr ColorValue SectionText = 0x444444;
constexpr ColorValue BoxFrame = 0xA8A8A8;
constexpr double UnselectedTabShade = 0.09;

constexpr std::int32_t WellFocusInset = 2;  // pixels at any DPI

constexpr UINT OneLine = DT_SINGLELINE | DT_VCENTER;

ColorValue TextColor(bool enabled, ColorValue color) {
    return enabled ? color : SystemColor(COLOR_GRAYTEXT);
}

void DrawSwitchTrack(HDC dc, const Rect& track, const SwitchImage& image) {
    const GraphBitmap bitmap(dc, image.width, image.height);
    if (!bitmap) return;
    std::ranges::copy(image.pixels, bitmap.Pixels().bits);
    BitBlt(dc, track.left, track.top, image.width, image.height, bitmap.Pixels().dc, 0, 0, SRCCOPY);
}

}  // namespace

void PaintTabButton(HDC dc, const Rect& item, const std::wstring& text, HICON icon, ColorValue accent, bool selected,
                    bool focus, const DialogFonts& fonts, std::uint32_t dpi) {
    const SavedDc saved(dc);
    SelectObject(dc, selected ? fonts.bold : fonts.regular);
    const std::wstring shown = text.substr(0, LongestTabText);
    const TabButtonLayout layout = LayoutTabButton(item, TextWidth(dc, shown), selected, dpi);
    const ColorValue face = SystemColor(COLOR_BTNFACE);
    FillSolid(dc, item, face);
    FillSolid(dc, layout.tab, selected ? SystemColor(COLOR_WINDOW) : BlendColor(face, Black, UnselectedTabShade));
    for (const Rect& edge : {layout.top_edge, layout.left_edge, layout.right_edge})
        FillSolid(dc, edge, TabEdge);
    FillSolid(dc, layout.strip, accent);
    DrawIconIn(dc, layout.icon, icon);
    DrawTextIn(dc, layout.text, shown, TextColor(selected, SystemColor(COLOR_WINDOWTEXT)), OneLine | DT_NOPREFIX);
    if (focus) DrawFocus(dc, layout.focus);
}

void PaintColorWell(HDC dc, const Rect& item, ColorValue color, ItemState state) {
    const SavedDc saved(dc);
    if (color == ColorNone) {
        FillSolid(dc, item, ChequerLight);
        for (const Rect& cell : ChequerCells(item))
            FillSolid(dc, cell, ChequerDark);
    } else {
        FillSolid(dc, item, WellColor(color, state.enabled, SystemColor(COLOR_BTNFACE)));
    }
    FrameSolid(dc, item, TextColor(state.enabled, SystemColor(COLOR_WINDOWTEXT)));
    if (state.focus) DrawFocus(dc, Inset(item, WellFocusInset));
}

void PaintSwitch(HDC dc, const Rect& item, const std::wstring& text, bool on, bool focus, HFONT font,
                 std::uint32_t dpi) {
    if (IsEmptyRect(item)) return;
    const SavedDc saved(dc);
    SelectObject(dc, font);
    const SwitchLayout layout = LayoutSwitch(item, dpi);
    const ColorValue face = SystemColor(COLOR_BTNFACE);
    FillSolid(dc, item, face);
    DrawTextIn(dc, layout.text, text, SystemColor(COLOR_BTNTEXT), OneLine | DT_RIGHT | DT_NOPREFIX);
    DrawSwitchTrack(dc, layout.track, PaintSwitchTrack(on, face, dpi));
    if (focus) DrawFocus(dc, layout.focus);
}

void PaintSectionTitle(HDC dc, const Rect& item, const std::wstring& text, HICON icon, HBRUSH background,
                       ColorValue color, HFONT boldFont, std::uint32_t dpi) {
    const SavedDc saved(dc);
    SelectObject(dc, boldFont);
    const SectionTitleLayout layout = LayoutSectionTitle(item, dpi);
    const RECT filled = ToPlatform(item);
    FillRect(dc, &filled, background);
    DrawIconIn(dc, layout.icon, icon);
    DrawTextIn(dc, layout.text, text.substr(0, LongestSectionText), color, OneLine | DT_NOPREFIX);
}

ColorValue SectionTextColor(bool onWhite, bool enabled) {
    return TextColor(enabled, !onWhite && IsHighContrast() ? SystemColor(COLOR_BTNTEXT) : SectionText);
}

void PaintInterfaceItem(HDC dc, const Rect& item, const InterfaceItem& shown, ItemState state, HFONT font,
                        std::int32_t nameLeft, std::int32_t ipLeft, std::uint32_t dpi) {
    const SavedDc saved(dc);
    SelectObject(dc, font);
    const InterfaceItemLayout layout = LayoutInterfaceItem(item, nameLeft, ipLeft, dpi);
    FillSolid(dc, item, SystemColor(COLOR_WINDOW));
    RECT check = ToPlatform(layout.check);
    DrawFrameControl(
        dc, &check, DFC_BUTTON,
        DFCS_BUTTONCHECK | DFCS_FLAT | (shown.checked ? DFCS_CHECKED : 0U) | (state.enabled ? 0U : DFCS_INACTIVE));
    const ColorValue color = TextColor(state.enabled, SystemColor(COLOR_WINDOWTEXT));
    DrawTextIn(dc, layout.number, shown.number, color, OneLine);
    DrawTextIn(dc, layout.name, shown.name, color, OneLine | DT_NOPREFIX | DT_END_ELLIPSIS);
    DrawTextIn(dc, layout.ip, shown.ip, color, OneLine | DT_NOPREFIX);
    if (state.focus) DrawFocus(dc, item);
}

void PaintPageBackground(HDC dc, const PageBackground& background, std::uint32_t dpi) {
    const SavedDc saved(dc);
    for (const Rect& piece : AccentLine(background, dpi))
        FillSolid(dc, piece, background.accent);
    for (const TitledFrame& titled : background.titled_frames) {
        for (const Rect& line : FrameLines(titled))
            FillSolid(dc, line, BoxFrame);
    }
    for (const Rect& box : background.hardware_boxes) {
        FillSolid(dc, box, White);
        FrameSolid(dc, box, BoxFrame);
    }
    for (const Rect& box : background.graph_boxes)
        FrameSolid(dc, box, BoxFrame);
}

}  // namespace kestrane
