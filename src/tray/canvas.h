#pragma once
// The image of an icon: a small square of pixels and simple drawing operations. They overwrite and never blend, so
// drawing with ColorNone punches a transparent hole.
#include <cstdint>
#include <vector>

#include "base/geometry.h"
#include "settings/color.h"

namespace kestrane {

struct Canvas {
    std::int32_t size;                  // edge length, at least 1
    std::vector<std::uint32_t> pixels;  // size * size, top row first; 0xAARRGGBB with straight alpha

    /// Opaque black. A size below 1 becomes 1.
    explicit Canvas(std::int32_t edge);
};

/// ColorNone is the fully transparent pixel, any other colour is opaque.
std::uint32_t PixelOf(ColorValue color);

void Clear(Canvas& canvas, ColorValue color);

/// A position outside the canvas is ignored.
void SetPixel(Canvas& canvas, std::int32_t x, std::int32_t y, ColorValue color);

/// Fills a rectangle, clipped to the canvas; nothing if it is empty.
void FillRectangle(Canvas& canvas, const Rect& rect, ColorValue color);

/// From the smaller to the larger of `y0` and `y1`, both included.
void VerticalLine(Canvas& canvas, std::int32_t x, std::int32_t y0, std::int32_t y1, ColorValue color);

/// The rectangle's outermost pixels, one pixel wide; nothing if it is empty.
void DrawOutline(Canvas& canvas, const Rect& rect, ColorValue color);

/// The outermost ring of pixels, one pixel wide.
void DrawBorder(Canvas& canvas, ColorValue color);

}  // namespace kestrane
