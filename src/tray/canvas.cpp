#include "tray/canvas.h"

#include <algorithm>
#include <cstddef>

namespace kestrane {
namespace {

std::size_t PixelCount(std::int32_t edge) {
    return static_cast<std::size_t>(edge) * static_cast<std::size_t>(edge);
}

/// The positions from `first` on, `length` of them, that lie on an edge of `size` pixels: first and one past the last.
struct Span {
    std::int32_t first;
    std::int32_t end;
};

Span Clip(std::int32_t first, std::int32_t length, std::int32_t size) {
    const std::int64_t end = std::int64_t{first} + length;
    return {std::max(first, 0), static_cast<std::int32_t>(std::clamp<std::int64_t>(end, 0, size))};
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

void FillRectangle(Canvas& canvas, std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                   ColorValue color) {
    const Span columns = Clip(x, width, canvas.size);
    const Span rows = Clip(y, height, canvas.size);
    for (std::int32_t row = rows.first; row < rows.end; ++row) {
        for (std::int32_t column = columns.first; column < columns.end; ++column) {
            SetPixel(canvas, column, row, color);
        }
    }
}

void VerticalLine(Canvas& canvas, std::int32_t x, std::int32_t y0, std::int32_t y1, ColorValue color) {
    const std::int32_t bottom = std::min(std::max(y0, y1), canvas.size - 1);
    for (std::int32_t y = std::max(std::min(y0, y1), 0); y <= bottom; ++y)
        SetPixel(canvas, x, y, color);
}

void DrawOutline(Canvas& canvas, std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                 ColorValue color) {
    if (width < 1 || height < 1) return;
    FillRectangle(canvas, x, y, width, 1, color);
    FillRectangle(canvas, x, y + height - 1, width, 1, color);
    FillRectangle(canvas, x, y, 1, height, color);
    FillRectangle(canvas, x + width - 1, y, 1, height, color);
}

void DrawBorder(Canvas& canvas, ColorValue color) {
    DrawOutline(canvas, 0, 0, canvas.size, canvas.size, color);
}

}  // namespace kestrane
