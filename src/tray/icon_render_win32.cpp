#include "tray/icon_render_win32.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "base/debug_log_win32.h"
#include "base/font_win32.h"
#include "tray/digits.h"
#include "tray/icon_painting.h"
#include "tray/taskbar_win32.h"

namespace kestrane {
namespace {

constexpr int FallbackIconSize = 16;
constexpr COLORREF White = 0xFFFFFF;

Dib MakeBitmap(HDC screen, const Canvas& canvas) {
    Dib dib = MakeDib(screen, canvas.size, canvas.size, DibFormat::Argb);
    if (dib) {
        std::copy(canvas.pixels.begin(), canvas.pixels.end(), dib.pixels);
    } else {
        LogDebug(L"kestrane: CreateDIBSection ha fallado\n");
    }
    return dib;
}

/// Icons are drawn by alpha, but an image whose alpha is all zero counts as having none, and then the mask decides.
UniqueBitmap MakeTransparentMask(std::int32_t size) {
    const auto edge = static_cast<std::size_t>(size);
    const std::size_t rowBytes = (edge + 15) / 16 * 2;  // rows of a monochrome bitmap are 16-bit aligned
    const std::vector<std::uint8_t> ones(rowBytes * edge, 0xFF);
    return UniqueBitmap(CreateBitmap(size, size, 1, 1, ones.data()));
}

TextExtent MeasureText(HDC dc, const std::wstring& text) {
    SIZE extent{};
    GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &extent);
    TEXTMETRICW metrics{};
    GetTextMetricsW(dc, &metrics);
    return {extent.cx, metrics.tmHeight, metrics.tmAscent, metrics.tmInternalLeading};
}

/// A text and its place on an icon of `size` pixels.
struct PlacedText {
    const std::wstring& text;
    const TextFont& font;
    std::int32_t size;
    TextRows rows;
    bool alignBottom;
};

void DrawLine(HDC dc, const PlacedText& placed, const TextExtent& extent) {
    const std::int32_t top = TextLineTop(extent, placed.rows, placed.alignBottom);
    RECT line{0, top, placed.size, top + extent.height};
    DrawTextW(dc, placed.text.c_str(), static_cast<int>(placed.text.size()), &line,
              DT_CENTER | DT_SINGLELINE | DT_NOCLIP | DT_NOPREFIX);
}

/// Draws in white, in the largest font that fits, from the wanted height down. Without a font nothing is drawn.
void DrawFittedText(HDC dc, const PlacedText& placed) {
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, White);
    for (std::int32_t height = std::max(placed.font.height, 1);; --height) {
        const UniqueFont font = MakeFont(placed.font.name, height, placed.font.bold, ANTIALIASED_QUALITY);
        if (!font) return;
        const SelectedObject selected(dc, font.Get());
        const TextExtent extent = MeasureText(dc, placed.text);
        if (height > MinTextHeight && !TextFits(extent, placed.size, placed.rows)) continue;
        DrawLine(dc, placed, extent);
        return;
    }
}

/// White text on a black bitmap, flushed for reading; empty on failure.
Dib MakeTextMask(HDC screen, const PlacedText& placed) {
    Dib mask = MakeBitmap(screen, Canvas(placed.size));
    if (!mask) return {};
    {
        const UniqueMemoryDc dc(CreateCompatibleDC(nullptr));
        if (!dc) return {};
        const SelectedObject selected(dc.Get(), mask.bitmap.Get());
        if (!selected) return {};
        DrawFittedText(dc.Get(), placed);
    }
    GdiFlush();  // GDI batches drawing, and the pixels are read directly
    return mask;
}

}  // namespace

std::uint32_t IconPixelSize(HWND window) {
    const HWND taskbar = FindTaskbar();
    const UINT dpi = GetDpiForWindow(taskbar != nullptr ? taskbar : window);
    const int size = GetSystemMetricsForDpi(SM_CXSMICON, dpi);
    return static_cast<std::uint32_t>(size < 1 ? FallbackIconSize : size);
}

Dib CanvasToBitmap(const Canvas& canvas) {
    const ScreenDc screen;
    return MakeBitmap(screen.Get(), canvas);
}

UniqueIcon BitmapToIcon(HBITMAP bitmap, std::int32_t size) {
    const UniqueBitmap mask = MakeTransparentMask(size);
    ICONINFO info{TRUE, 0, 0, mask.Get(), bitmap};
    UniqueIcon icon(CreateIconIndirect(&info));
    if (!icon) LogDebug(L"kestrane: CreateIconIndirect ha fallado\n");
    return icon;
}

UniqueIcon CanvasToIcon(const Canvas& canvas) {
    const Dib painted = CanvasToBitmap(canvas);
    return painted ? BitmapToIcon(painted.bitmap.Get(), canvas.size) : UniqueIcon();
}

UniqueIcon DrawIconText(const Canvas& canvas, const std::wstring& text, const TextFont& font, ColorValue textColor,
                        std::int32_t top, std::int32_t bottom, bool alignBottom) {
    const ScreenDc screen;  // for both bitmaps: getting it costs more than creating one
    const Dib base = MakeBitmap(screen.Get(), canvas);
    if (!base) return {};
    if (textColor != ColorNone && !text.empty()) {
        const TextRows rows = ClampTextRows(canvas.size, top, bottom);
        const Dib mask = MakeTextMask(screen.Get(), {text, font, canvas.size, rows, alignBottom});
        if (!mask) return {};
        const std::size_t count = canvas.pixels.size();
        ComposeCoverage(std::span(base.pixels, count), std::span<const std::uint32_t>(mask.pixels, count), textColor);
    }
    return BitmapToIcon(base.bitmap.Get(), canvas.size);
}

UniqueIcon RenderCpuIcon(const AppSettings& settings, const MetricRing<std::int32_t>& ring, std::uint32_t size) {
    return CanvasToIcon(PaintCpuIcon(settings, ring, size));
}

UniqueIcon RenderDiskIcon(const AppSettings& settings, const MetricRing<std::int32_t>& readRing,
                          const MetricRing<std::int32_t>& writeRing, bool valid, std::uint32_t size) {
    return CanvasToIcon(PaintDiskIcon(settings, readRing, writeRing, valid, size));
}

UniqueIcon RenderMemoryIcon(const AppSettings& settings, std::int32_t percent, std::uint32_t size) {
    MemoryIconPainting painting = PaintMemoryIcon(settings, percent, size);
    UniqueIcon icon = DrawIconText(painting.canvas, painting.text, painting.font, painting.textColor,
                                   painting.textRows.top, painting.textRows.bottom, painting.alignBottom);
    if (icon) return icon;
    DrawBitmapNumber(painting.canvas, percent, painting.textColor);
    return CanvasToIcon(painting.canvas);
}

UniqueIcon RenderNetworkIcon(const AppSettings& settings, const MetricRing<std::uint64_t>& downRing,
                             const MetricRing<std::uint64_t>& upRing, std::uint32_t size) {
    return CanvasToIcon(PaintNetworkIcon(settings, downRing, upRing, size));
}

}  // namespace kestrane
