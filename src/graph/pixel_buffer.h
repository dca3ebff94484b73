#pragma once
// The pixels of a graph, written one by one. A pixel is 0x00RRGGBB like a ColorValue, top row first, rows without gaps.
// All operations clip to the buffer, and need nothing of it but width, height and bits.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/geometry.h"
#include "settings/color.h"

// The platform's handles, as its own headers declare them.
struct HDC__;      // NOLINT(bugprone-reserved-identifier,readability-identifier-naming)
struct HBITMAP__;  // NOLINT(bugprone-reserved-identifier,readability-identifier-naming)

namespace kestrane {

struct PixelBuffer {
    std::int32_t width = 0;
    std::int32_t height = 0;
    HDC__* dc = nullptr;                  // memory context
    HBITMAP__* bitmap = nullptr;          // the DIB section
    HBITMAP__* previousBitmap = nullptr;  // to select back
    std::uint32_t* bits = nullptr;        // width * height pixels
};

/// The part of a buffer from row `top` to `bottom`, exclusive, as a buffer with rows counted from its own top. Both lie
/// within the buffer.
inline PixelBuffer BandOf(const PixelBuffer& buffer, std::int32_t top, std::int32_t bottom) {
    PixelBuffer band = buffer;
    band.height = bottom - top;
    band.bits += static_cast<std::ptrdiff_t>(top) * buffer.width;
    return band;
}

/// What is drawn column by column is better drawn in bands of so many rows, each across all columns: down a whole
/// screen every pixel lies in another line of the processor's cache, and the line is gone again before the next column
/// comes. Few rows, because rows of a screen's width compete for the same few places in the cache: 256 gain nothing.
inline constexpr std::int32_t BandRows = 32;

/// Calls `draw(band, top)` for every band of the rows from `top` to `bottom`, exclusive and clipped to the buffer.
/// `draw` draws the whole and leaves it to the band to clip it; row y of the buffer is row y - top of the band.
template <typename Draw>
void DrawInBands(const PixelBuffer& buffer, std::int32_t top, std::int32_t bottom, const Draw& draw) {
    const std::int32_t end = std::min(bottom, buffer.height);
    for (std::int32_t row = std::max(top, 0); row < end; row += BandRows)
        draw(BandOf(buffer, row, std::min(row + BandRows, end)), row);
}

/// The grey of the frame and the baseline, on every background.
inline constexpr ColorValue FrameColor = 0x6D6D6D;

/// A small square that marks where the readout's values lie.
struct HoverMarker {
    std::int32_t y = 0;
    ColorValue color = 0;
};

/// Fills a rectangle. ColorNone writes black.
void FillPixels(const PixelBuffer& buffer, const Rect& rect, ColorValue color);

/// Writes one pixel; ColorNone and places outside the buffer write nothing.
void PutPixel(const PixelBuffer& buffer, std::int32_t x, std::int32_t y, ColorValue color);

/// Mixes `color` into the pixels of column `x` from `top` to `bottom`, exclusive, with the weight `alpha` (0 to 1).
void BlendColumn(const PixelBuffer& buffer, std::int32_t x, std::int32_t top, std::int32_t bottom, ColorValue color,
                 double alpha);

/// Every second pixel of row `y` from `left` to `right`, both inclusive, beginning with `left`.
void DrawDottedRow(const PixelBuffer& buffer, std::int32_t y, std::int32_t left, std::int32_t right, ColorValue color);

/// Every second pixel of column `x` from `top` to `bottom`, exclusive, beginning with `top`.
void DrawDottedColumn(const PixelBuffer& buffer, std::int32_t x, std::int32_t top, std::int32_t bottom,
                      ColorValue color);

/// One pixel all round the buffer.
void DrawFrame(const PixelBuffer& buffer, ColorValue color);

/// The hover's dotted line through the plot, and on it the markers: squares of `radius` pixels each way from the
/// middle, outlined in black.
void DrawCrosshair(const PixelBuffer& buffer, std::int32_t x, std::int32_t top, std::int32_t bottom,
                   const std::vector<HoverMarker>& markers, ColorValue contrast, ColorValue background,
                   std::int32_t radius);

}  // namespace kestrane
