#include "graph/pixel_buffer.h"

#include <algorithm>
#include <cstddef>

namespace kestrane {
namespace {

std::uint32_t* PixelAt(const PixelBuffer& buffer, std::int32_t x, std::int32_t y) {
    return buffer.bits + static_cast<std::ptrdiff_t>(y) * buffer.width + x;
}

}  // namespace

void FillPixels(const PixelBuffer& buffer, const Rect& rect, ColorValue color) {
    const std::int32_t firstX = std::max(rect.left, 0);
    const std::int32_t endX = std::min(rect.right, buffer.width);
    const std::int32_t endY = std::min(rect.bottom, buffer.height);
    if (firstX >= endX) return;
    const std::uint32_t pixel = color & 0xFFFFFF;  // turns ColorNone into black
    for (std::int32_t y = std::max(rect.top, 0); y < endY; ++y) {
        std::fill_n(PixelAt(buffer, firstX, y), endX - firstX, pixel);
    }
}

void PutPixel(const PixelBuffer& buffer, std::int32_t x, std::int32_t y, ColorValue color) {
    if (color == ColorNone || x < 0 || y < 0 || x >= buffer.width || y >= buffer.height) return;
    *PixelAt(buffer, x, y) = color & 0xFFFFFF;
}

void BlendColumn(const PixelBuffer& buffer, std::int32_t x, std::int32_t top, std::int32_t bottom, ColorValue color,
                 double alpha) {
    if (x < 0 || x >= buffer.width) return;
    const std::int32_t firstY = std::max(top, 0);
    const std::int32_t endY = std::min(bottom, buffer.height);
    if (firstY >= endY) return;
    // A column is nearly all one colour, so blend once per run of equal pixels.
    std::uint32_t* pixel = PixelAt(buffer, x, firstY);
    std::uint32_t from = *pixel;
    std::uint32_t mixed = BlendColor(from, color, alpha);
    for (std::int32_t y = firstY; y < endY; ++y, pixel += buffer.width) {
        if (*pixel != from) {
            from = *pixel;
            mixed = BlendColor(from, color, alpha);
        }
        *pixel = mixed;
    }
}

void DrawDottedRow(const PixelBuffer& buffer, std::int32_t y, std::int32_t left, std::int32_t right, ColorValue color) {
    const std::int32_t last = std::min(right, buffer.width - 1);
    for (std::int32_t x = left; x <= last; x += 2)
        PutPixel(buffer, x, y, color);
}

void DrawDottedColumn(const PixelBuffer& buffer, std::int32_t x, std::int32_t top, std::int32_t bottom,
                      ColorValue color) {
    const std::int32_t end = std::min(bottom, buffer.height);
    for (std::int32_t y = top; y < end; y += 2)
        PutPixel(buffer, x, y, color);
}

void DrawOutline(const PixelBuffer& buffer, const Rect& rect, ColorValue color) {
    const auto [left, top, right, bottom] = rect;
    FillPixels(buffer, {left, top, right, top + 1}, color);
    FillPixels(buffer, {left, bottom - 1, right, bottom}, color);
    FillPixels(buffer, {left, top, left + 1, bottom}, color);
    FillPixels(buffer, {right - 1, top, right, bottom}, color);
}

void DrawFrame(const PixelBuffer& buffer, ColorValue color) {
    DrawOutline(buffer, {0, 0, buffer.width, buffer.height}, color);
}

void DrawCrosshair(const PixelBuffer& buffer, std::int32_t x, std::int32_t top, std::int32_t bottom,
                   const std::vector<HoverMarker>& markers, ColorValue contrast, ColorValue background,
                   std::int32_t radius) {
    DrawDottedColumn(buffer, x, top, bottom, BlendColor(background, contrast, 0.6));
    for (const auto& [y, color] : markers) {
        const std::int32_t outer = radius + 1;
        FillPixels(buffer, {x - outer, y - outer, x + outer + 1, y + outer + 1}, 0);
        FillPixels(buffer, {x - radius, y - radius, x + radius + 1, y + radius + 1}, color);
    }
}

}  // namespace kestrane
