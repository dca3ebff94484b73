#include "dialog/gdi_paint_win32.h"

#include "base/geometry_win32.h"

namespace kestrane {
namespace {

/// The brush that has the colour of the device context. It need not be created, so it cannot fail.
HBRUSH ColoredBrush(HDC dc, ColorValue color) {
    SetDCBrushColor(dc, SwapRedBlue(color));
    return static_cast<HBRUSH>(GetStockObject(DC_BRUSH));
}

}  // namespace

ColorValue SystemColor(int index) {
    return SwapRedBlue(GetSysColor(index));
}

// FillRect fills a rectangle even if its edges are the wrong way round; FrameRect does not.
void FillSolid(HDC dc, const Rect& rect, ColorValue color) {
    if (IsEmptyRect(rect)) return;
    const RECT filled = ToPlatform(rect);
    FillRect(dc, &filled, ColoredBrush(dc, color));
}

void FrameSolid(HDC dc, const Rect& rect, ColorValue color) {
    const RECT framed = ToPlatform(rect);
    FrameRect(dc, &framed, ColoredBrush(dc, color));
}

void DrawFocus(HDC dc, const Rect& rect) {
    if (IsEmptyRect(rect)) return;
    // The dots are a monochrome pattern in these two colours, and only these invert every second pixel.
    SetTextColor(dc, RGB(0, 0, 0));
    SetBkColor(dc, RGB(255, 255, 255));
    const RECT focus = ToPlatform(rect);
    DrawFocusRect(dc, &focus);
}

void DrawIconIn(HDC dc, const Rect& rect, HICON icon) {
    if (icon == nullptr || IsEmptyRect(rect)) return;
    DrawIconEx(dc, rect.left, rect.top, icon, RectWidth(rect), RectHeight(rect), 0, nullptr, DI_NORMAL);
}

void DrawTextIn(HDC dc, const Rect& rect, const std::wstring& text, ColorValue color, UINT flags) {
    if (text.empty() || IsEmptyRect(rect)) return;
    SetTextColor(dc, SwapRedBlue(color));
    SetBkMode(dc, TRANSPARENT);
    RECT place = ToPlatform(rect);
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &place, flags);
}

}  // namespace kestrane
