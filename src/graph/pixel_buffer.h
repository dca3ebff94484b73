#pragma once
// Direct pixel drawing for graphs. A pixel is 0x00RRGGBB like a ColorValue; top row first, no padding between rows. All
// operations clip to the buffer and use only its width, height and bits.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/geometry.h"
#include "settings/color.h"

// HDC and HBITMAP, declared as in the platform's headers.
struct HDC__;      // NOLINT(bugprone-reserved-identifier,readability-identifier-naming)
struct HBITMAP__;  // NOLINT(bugprone-reserved-identifier,readability-identifier-naming)

namespace kestrane {

struct PixelBuffer {
    std::int32_t width = 0;
    std::int32_t height = 0;
    HDC__* dc = nullptr;                  // memory context
    HBITMAP__* bitmap = nullptr;          // the DIB section
    HBITMAP__* previousBitmap = nullptr;  // to restore
    std::uint32_t* bits = nullptr;        // width * height pixels
};

/// Rows `top` to `bottom`, exclusive, as a buffer of their own that starts at row 0. Both must lie within the buffer.
inline PixelBuffer BandOf(const PixelBuffer& buffer, std::int32_t top, std::int32_t bottom) {
    PixelBuffer band = buffer;
    band.height = bottom - top;
    band.bits += static_cast<std::ptrdiff_t>(top) * buffer.width;
    return band;
}

/// Columns are drawn in bands of this many rows, each band across all columns: down a whole screen every pixel of a
/// column is on another cache line, which is evicted before the next column is drawn. Few rows, because rows of a
/// screen's width compete for the same few cache sets: 256 gain nothing.
inline constexpr std::int32_t BandRows = 32;

/// Calls `draw(band, top)` for every band of rows `top` to `bottom`, exclusive and clipped to the buffer. `draw` draws
/// everything and the band clips it; row y of the buffer is row y - top of the band.
template <typename Draw>
void DrawInBands(const PixelBuffer& buffer, std::int32_t top, std::int32_t bottom, const Draw& draw) {
    const std::int32_t end = std::min(bottom, buffer.height);
    for (std::int32_t row = std::max(top, 0); row < end; row += BandRows)
        draw(BandOf(buffer, row, std::min(row + BandRows, end)), row);
}

/// The grey of the frame and the baseline, on every background.
inline constexpr ColorValue FrameColor = 0x6D6D6D;

/// A small square that marks one of the readout's values.
struct HoverMarker {
    std::int32_t y = 0;
    ColorValue color = 0;
};

/// Fills a rectangle. ColorNone writes black.
void FillPixels(const PixelBuffer& buffer, const Rect& rect, ColorValue color);

/// Writes one pixel; does nothing for ColorNone or outside the buffer.
void PutPixel(const PixelBuffer& buffer, std::int32_t x, std::int32_t y, ColorValue color);

/// Blends `color` into the pixels of column `x` from `top` to `bottom`, exclusive, with weight `alpha` (0 to 1).
void BlendColumn(const PixelBuffer& buffer, std::int32_t x, std::int32_t top, std::int32_t bottom, ColorValue color,
                 double alpha);

/// Every second pixel of row `y` from `left` to `right`, both inclusive, starting at `left`.
void DrawDottedRow(const PixelBuffer& buffer, std::int32_t y, std::int32_t left, std::int32_t right, ColorValue color);

/// Every second pixel of column `x` from `top` to `bottom`, exclusive, starting at `top`.
void DrawDottedColumn(const PixelBuffer& buffer, std::int32_t x, std::int32_t top, std::int32_t bottom,
                      ColorValue color);

/// The outermost pixels of a rectangle, one pixel wide.
void DrawOutline(const PixelBuffer& buffer, const Rect& rect, ColorValue color);

/// A one-pixel frame along the buffer's edges.
void DrawFrame(const PixelBuffer& buffer, ColorValue color);

/// The hover's dotted vertical line and the markers on it: squares extending `radius` pixels each way from the centre,
/// outlined in black.
void DrawCrosshair(const PixelBuffer& buffer, std::int32_t x, std::int32_t top, std::int32_t bottom,
                   const std::vector<HoverMarker>& markers, ColorValue contrast, ColorValue background,
                   std::int32_t radius);

}  // namespace kestrane
