#include "tray/canvas.h"

#include <algorithm>
#include <cstddef>

namespace kestrane {
namespace {

std::size_t PixelCount(std::int32_t edge) {
    return static_cast<std::size_t>(edge) * static_cast<std::size_t>(edge);
}

}  // namespace

Canvas::Canvas(std::int32_t edge) : size(std::max(edge, 1)), pixels(PixelCount(size), 0xFF000000U) {}

std::uint32_t PixelOf(ColorValue color) {
    return color == ColorNone ? 0 : color | 0xFF000000U;
}

void Clear(Canvas& canvas, ColorValue color) {
    std::fill(canvas.pixels.begin(), canvas.pixels.end(), PixelOf(color));
}

void SetPixel(Canvas& canvas, std::int32_t x, std::int32_t y, ColorValue color) {
    if (x < 0 || y < 0 || x >= canvas.size || y >= canvas.size) return;
    canvas.pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(canvas.size) + static_cast<std::size_t>(x)] =
        PixelOf(color);
}

void FillRectangle(Canvas& canvas, const Rect& rect, ColorValue color) {
    const std::int32_t right = std::min(rect.right, canvas.size);
    const std::int32_t bottom = std::min(rect.bottom, canvas.size);
    for (std::int32_t y = std::max(rect.top, 0); y < bottom; ++y) {
        for (std::int32_t x = std::max(rect.left, 0); x < right; ++x)
            SetPixel(canvas, x, y, color);
    }
}

void VerticalLine(Canvas& canvas, std::int32_t x, std::int32_t y0, std::int32_t y1, ColorValue color) {
    const std::int32_t bottom = std::min(std::max(y0, y1), canvas.size - 1);
    for (std::int32_t y = std::max(std::min(y0, y1), 0); y <= bottom; ++y)
        SetPixel(canvas, x, y, color);
}

void DrawOutline(Canvas& canvas, const Rect& rect, ColorValue color) {
    const auto [left, top, right, bottom] = rect;
    if (left >= right || top >= bottom) return;
    FillRectangle(canvas, {left, top, right, top + 1}, color);
    FillRectangle(canvas, {left, bottom - 1, right, bottom}, color);
    FillRectangle(canvas, {left, top, left + 1, bottom}, color);
    FillRectangle(canvas, {right - 1, top, right, bottom}, color);
}

void DrawBorder(Canvas& canvas, ColorValue color) {
    DrawOutline(canvas, {0, 0, canvas.size, canvas.size}, color);
}

}  // namespace kestrane
