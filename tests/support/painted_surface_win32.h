#pragma once
// A device context in memory whose pixels a test can read, and fakes of the calls that depend on fonts and themes. Text
// is recorded instead of drawn: a character is 6 pixels wide, in a bold font 7, and a line is 15 high. Everything else
// is really drawn, so that every pixel is known. Include in one file of a test program only.
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/font_win32.h"
#include "base/geometry_win32.h"
#include "dialog/owner_drawn_win32.h"
#include "graph/graph_bitmap_win32.h"
#include "support/geometry_print.h"
#include "support/graph_picture.h"
#include "support/real_call_win32.h"

namespace kestrane {

/// A text that was drawn: by DrawTextW in a rectangle, or by TextOutW at a point, whose flags are the alignment: 0 for
/// the top left.
struct DrawnText {
    std::wstring text;
    Rect where;
    UINT flags;
    ColorValue color;
    bool bold;

    bool operator==(const DrawnText&) const = default;
};

inline void PrintTo(const DrawnText& drawn, std::ostream* out) {
    *out << testing::PrintToString(drawn.text) << " in ";
    PrintTo(drawn.where, out);
    *out << " flags " << std::hex << drawn.flags << " color " << drawn.color << std::dec << (drawn.bold ? " bold" : "");
}

struct FrameControlCall {
    Rect where;
    UINT type, state;
};

/// What the fake calls recorded, and how they respond.
struct PaintWorld {
    std::vector<DrawnText> texts;
    std::vector<FrameControlCall> controls;
    std::multiset<void*> live;  // GDI objects and memory contexts
    bool refuseDib = false;
};
inline PaintWorld world;

constexpr std::int32_t FakeLine = 15;

/// No two of these are equal, and none reads the same with red and blue swapped.
inline const std::map<int, ColorValue> FakeSystemColors = {
    {COLOR_BTNFACE, 0xF0E8E0}, {COLOR_WINDOW, 0xFFFEF8},   {COLOR_WINDOWTEXT, 0x100804},
    {COLOR_BTNTEXT, 0x201008}, {COLOR_GRAYTEXT, 0x706860},
};
inline ColorValue Sys(int index) {
    return FakeSystemColors.at(index);
}

inline bool IsBoldIn(HDC dc) {
    LOGFONTW font{};
    GetObjectW(GetCurrentObject(dc, OBJ_FONT), sizeof font, &font);
    return font.lfWeight >= FW_BOLD;
}

inline DWORD WINAPI FakeGetSysColor(int index) {
    return SwapRedBlue(Sys(index));
}

inline BOOL WINAPI FakeGetTextMetricsW(HDC, LPTEXTMETRICW metrics) {
    *metrics = {};
    metrics->tmHeight = FakeLine;
    return TRUE;
}

inline BOOL WINAPI FakeGetTextExtentPoint32W(HDC dc, LPCWSTR, int length, LPSIZE size) {
    *size = {(IsBoldIn(dc) ? 7 : 6) * length, FakeLine};
    return TRUE;
}

/// Wraps by characters, not by words.
inline int WINAPI FakeDrawTextW(HDC dc, LPCWSTR text, int length, LPRECT rect, UINT flags) {
    if ((flags & DT_CALCRECT) == 0) {
        EXPECT_EQ(GetBkMode(dc), TRANSPARENT);
        world.texts.push_back({std::wstring(text, static_cast<std::size_t>(length)), FromPlatform(*rect), flags,
                               SwapRedBlue(GetTextColor(dc)), IsBoldIn(dc)});
        return FakeLine;
    }
    EXPECT_EQ(flags & DT_WORDBREAK, static_cast<UINT>(DT_WORDBREAK));
    const int perLine = std::max(1L, (rect->right - rect->left) / 6);
    rect->bottom = rect->top + (length + perLine - 1) / perLine * FakeLine;
    return rect->bottom - rect->top;
}

inline BOOL WINAPI FakeTextOutW(HDC dc, int x, int y, LPCWSTR text, int length) {
    EXPECT_EQ(GetBkMode(dc), TRANSPARENT);
    world.texts.push_back({std::wstring(text, static_cast<std::size_t>(length)),
                           {x, y, x, y},
                           GetTextAlign(dc),
                           SwapRedBlue(GetTextColor(dc)),
                           IsBoldIn(dc)});
    return TRUE;
}

inline BOOL WINAPI FakeDrawFrameControl(HDC dc, LPRECT rect, UINT type, UINT state) {
    world.controls.push_back({FromPlatform(*rect), type, state});
    static const auto real = REAL(L"user32", DrawFrameControl);
    return real(dc, rect, type, state);
}

/// On Windows the dots have these two colours; Wine inverts whatever they are.
inline BOOL WINAPI FakeDrawFocusRect(HDC dc, const RECT* rect) {
    EXPECT_EQ(GetTextColor(dc), RGB(0, 0, 0));
    EXPECT_EQ(GetBkColor(dc), RGB(255, 255, 255));
    static const auto real = REAL(L"user32", DrawFocusRect);
    return real(dc, rect);
}

inline HBITMAP WINAPI FakeCreateDIBSection(HDC dc, const BITMAPINFO* info, UINT usage, void** bits, HANDLE section,
                                           DWORD offset) {
    static const auto real = REAL(L"gdi32", CreateDIBSection);
    if (world.refuseDib) return nullptr;
    const HBITMAP bitmap = real(dc, info, usage, bits, section, offset);
    world.live.insert(bitmap);
    return bitmap;
}

inline HDC WINAPI FakeCreateCompatibleDC(HDC dc) {
    static const auto real = REAL(L"gdi32", CreateCompatibleDC);
    const HDC made = real(dc);
    world.live.insert(made);
    return made;
}

inline HBRUSH WINAPI FakeCreateSolidBrush(COLORREF color) {
    static const auto real = REAL(L"gdi32", CreateSolidBrush);
    const HBRUSH brush = real(color);
    world.live.insert(brush);
    return brush;
}

inline BOOL WINAPI FakeDeleteObject(HGDIOBJ object) {
    world.live.erase(object);
    static const auto real = REAL(L"gdi32", DeleteObject);
    const BOOL deleted = real(object);
    EXPECT_TRUE(deleted) << "an object must not be deleted while selected";
    return deleted;
}

inline BOOL WINAPI FakeDeleteDC(HDC dc) {
    world.live.erase(dc);
    static const auto real = REAL(L"gdi32", DeleteDC);
    return real(dc);
}

/// Everything in a device context that a painter may change.
struct DcState {
    HGDIOBJ font, brush, pen, bitmap;
    COLORREF text, background, brushColor;
    int mode, operation;
    UINT align;

    explicit DcState(HDC dc)
        : font(GetCurrentObject(dc, OBJ_FONT)),
          brush(GetCurrentObject(dc, OBJ_BRUSH)),
          pen(GetCurrentObject(dc, OBJ_PEN)),
          bitmap(GetCurrentObject(dc, OBJ_BITMAP)),
          text(GetTextColor(dc)),
          background(GetBkColor(dc)),
          brushColor(GetDCBrushColor(dc)),
          mode(GetBkMode(dc)),
          operation(GetROP2(dc)),
          align(GetTextAlign(dc)) {}
    bool operator==(const DcState&) const = default;
};

constexpr ColorValue Untouched = 0x123456;

/// A surface of one colour, in a device context with unusual settings.
class Surface {
  public:
    Surface(std::int32_t width, std::int32_t height) : bitmap_(nullptr, width, height) {
        FillPixels(bitmap_.Pixels(), {0, 0, width, height}, Untouched);
        SetTextColor(Dc(), RGB(1, 2, 3));
        SetBkColor(Dc(), RGB(4, 5, 6));
        SetDCBrushColor(Dc(), RGB(7, 8, 9));
        SetBkMode(Dc(), OPAQUE);
    }

    /// Calls `paint(dc)`, which must leave the device context as it was and keep no object.
    template <typename Paint>
    const Surface& Painted(const Paint& paint) const {
        const DcState before(Dc());
        const std::multiset<void*> live = world.live;
        paint(Dc());
        GdiFlush();
        EXPECT_EQ(DcState(Dc()), before) << "the device context is left as it was";
        EXPECT_EQ(world.live, live) << "every object is released";
        return *this;
    }

    HDC Dc() const { return bitmap_.Pixels().dc; }
    const PixelBuffer& Pixels() const { return bitmap_.Pixels(); }
    std::int32_t Width() const { return Pixels().width; }
    std::int32_t Height() const { return Pixels().height; }
    /// As 0xRRGGBB; icons leave an alpha in the highest byte.
    std::uint32_t At(std::int32_t x, std::int32_t y) const {
        return Pixels().bits[static_cast<std::ptrdiff_t>(y) * Width() + x] & 0xFFFFFF;
    }
    bool IsUntouched() const { return CountOf(Untouched) == Width() * Height(); }
    std::int32_t CountOf(ColorValue color) const {
        std::int32_t count = 0;
        for (std::int32_t y = 0; y < Height(); ++y) {
            for (std::int32_t x = 0; x < Width(); ++x)
                count += At(x, y) == color ? 1 : 0;
        }
        return count;
    }

  private:
    GraphBitmap bitmap_;
};

/// The places where two surfaces differ: their smallest rectangle, and how many they are.
struct Difference {
    Rect bounds;
    std::int32_t count = 0;
};

inline Difference DifferenceOf(const Surface& a, const Surface& b) {
    Difference difference;
    Rect& bounds = difference.bounds;
    for (std::int32_t y = 0; y < a.Height(); ++y) {
        for (std::int32_t x = 0; x < a.Width(); ++x) {
            if (a.At(x, y) == b.At(x, y)) continue;
            if (difference.count++ == 0) bounds = {x, y, x + 1, y + 1};
            bounds = {std::min(bounds.left, x), bounds.top, std::max(bounds.right, x + 1), y + 1};
        }
    }
    return difference;
}

/// That `focused` is `plain` with a dotted rectangle of exactly these bounds.
inline void ExpectFocusRect(const Surface& focused, const Surface& plain, const Rect& rect) {
    const Difference difference = DifferenceOf(focused, plain);
    EXPECT_EQ(difference.bounds, rect);
    const std::int32_t outline = 2 * (RectWidth(rect) + RectHeight(rect)) - 4;
    EXPECT_NEAR(difference.count, outline / 2, 4) << "every second pixel of the outline";
    for (std::int32_t y = rect.top + 1; y < rect.bottom - 1; ++y) {
        for (std::int32_t x = rect.left + 1; x < rect.right - 1; ++x)
            ASSERT_EQ(focused.At(x, y), plain.At(x, y)) << "inside, at " << x << ", " << y;
    }
}

}  // namespace kestrane

extern "C" {
decltype(&GetSysColor) __imp_GetSysColor = &kestrane::FakeGetSysColor;
decltype(&GetTextMetricsW) __imp_GetTextMetricsW = &kestrane::FakeGetTextMetricsW;
decltype(&GetTextExtentPoint32W) __imp_GetTextExtentPoint32W = &kestrane::FakeGetTextExtentPoint32W;
decltype(&DrawTextW) __imp_DrawTextW = &kestrane::FakeDrawTextW;
decltype(&TextOutW) __imp_TextOutW = &kestrane::FakeTextOutW;
decltype(&DrawFocusRect) __imp_DrawFocusRect = &kestrane::FakeDrawFocusRect;
decltype(&DrawFrameControl) __imp_DrawFrameControl = &kestrane::FakeDrawFrameControl;
decltype(&CreateDIBSection) __imp_CreateDIBSection = &kestrane::FakeCreateDIBSection;
decltype(&CreateCompatibleDC) __imp_CreateCompatibleDC = &kestrane::FakeCreateCompatibleDC;
decltype(&CreateSolidBrush) __imp_CreateSolidBrush = &kestrane::FakeCreateSolidBrush;
decltype(&DeleteObject) __imp_DeleteObject = &kestrane::FakeDeleteObject;
decltype(&DeleteDC) __imp_DeleteDC = &kestrane::FakeDeleteDC;
}
