#include "dialog/hardware_painter_win32.h"

#include "base/font_win32.h"
#include "base/geometry_win32.h"
#include "base/handles_win32.h"
#include "dialog/gdi_paint_win32.h"
#include "dialog/hardware_layout.h"
#include "text/number_text.h"

namespace kestrane {
namespace {

constexpr ColorValue LabelColor = 0x777777;
constexpr ColorValue ChipColor = 0xE6EDF5;
constexpr ColorValue ChipTextColor = 0x334455;
constexpr ColorValue ValueColor = 0x333333;
constexpr ColorValue TrackColor = 0xE3E3E3;
constexpr ColorValue NoteColor = 0x888888;
constexpr ColorValue White = 0xFFFFFF;

constexpr UINT Wrapped = DT_WORDBREAK | DT_NOPREFIX;

std::wstring BadgeText(const HardwareRow& row) {
    return row.badge >= 0 ? FormatInteger(row.badge) : std::wstring();
}

HardwareTextWidths MeasureTexts(HDC dc, const HardwareRow& row, const DialogFonts& fonts) {
    return {TextWidth(dc, fonts.regular, BadgeText(row)), TextWidth(dc, fonts.bold, row.value)};
}

/// The height of a note that wraps within `rect`, 0 for an empty one.
std::int32_t NoteHeight(HDC dc, const std::wstring& note, const Rect& rect) {
    if (note.empty()) return 0;
    RECT measured = ToPlatform(rect);
    DrawTextW(dc, note.c_str(), static_cast<int>(note.size()), &measured, Wrapped | DT_CALCRECT);
    return measured.bottom - measured.top;
}

void WriteText(HDC dc, const Point& at, const std::wstring& text, ColorValue color) {
    if (text.empty()) return;
    SetTextColor(dc, SwapRedBlue(color));
    SetBkMode(dc, TRANSPARENT);
    SetTextAlign(dc, TA_LEFT | TA_TOP);
    TextOutW(dc, at.x, at.y, text.c_str(), static_cast<int>(text.size()));
}

void PaintBar(HDC dc, const HardwareRow& row, const HardwareRowLayout& layout) {
    if (row.percent < 0) return;
    FillSolid(dc, layout.track, TrackColor);
    FillSolid(dc, layout.filled, BarColor(row.percent));
    WriteText(dc, layout.after, row.after, ValueColor);
}

void PaintRow(HDC dc, const HardwareRow& row, const HardwareRowLayout& layout, HFONT boldFont) {
    WriteText(dc, layout.label, row.label, LabelColor);
    FillSolid(dc, layout.chip, ChipColor);
    DrawTextIn(dc, layout.chip, BadgeText(row), ChipTextColor, DT_SINGLELINE | DT_CENTER | DT_VCENTER);
    {
        const SelectedObject selected(dc, boldFont);
        WriteText(dc, layout.value, row.value, ValueColor);
    }
    PaintBar(dc, row, layout);
    DrawTextIn(dc, layout.note, row.note, NoteColor, Wrapped);
}

}  // namespace

std::int32_t PaintHardwareRows(HDC dc, const Rect& rect, const std::vector<HardwareRow>& rows, const DialogFonts& fonts,
                               std::uint32_t dpi, bool draw) {
    const SavedDc saved(dc);
    SelectObject(dc, fonts.regular);
    const std::int32_t line = HardwareLineHeight(TextHeight(dc), dpi);
    std::int32_t y = rect.top;
    for (const HardwareRow& row : rows) {
        HardwareRowLayout layout =
            LayoutHardwareRow(row, MeasureTexts(dc, row, fonts), {rect.left, y}, rect.right, line, dpi);
        const std::int32_t noteHeight = NoteHeight(dc, row.note, layout.note);
        layout.note.bottom = layout.note.top + noteHeight;
        if (draw) PaintRow(dc, row, layout, fonts.bold);
        y += HardwareRowHeight(line, noteHeight, dpi);
    }
    return y - rect.top;
}

void PaintHardwareText(HDC dc, const Rect& item, const std::vector<HardwareRow>& rows, const DialogFonts& fonts,
                       std::uint32_t dpi) {
    {
        const SavedDc saved(dc);
        FillSolid(dc, item, White);
    }
    PaintHardwareRows(dc, HardwareTextArea(item, dpi), rows, fonts, dpi, true);
}

}  // namespace kestrane
