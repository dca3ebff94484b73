#include "tray/icon_text.h"

#include <algorithm>
#include <cstddef>

namespace kestrane {
namespace {

constexpr std::uint32_t AlphaShift = 24;

std::uint32_t ByteAt(std::uint32_t pixel, std::uint32_t shift) {
    return pixel >> shift & 0xFFU;
}

std::uint32_t RoundHalfUp(double value) {
    const double shifted = value + 0.5;
    return static_cast<std::uint32_t>(shifted);
}

/// Source-over of the opaque `color` at coverage `a` (above 0) on one pixel.
std::uint32_t Cover(std::uint32_t pixel, ColorValue color, double a) {
    const double below = ByteAt(pixel, AlphaShift) / 255.0;
    const double alpha = (1 - a) * below + a;
    std::uint32_t result = RoundHalfUp(alpha * 255) << AlphaShift;
    for (const std::uint32_t shift : {16U, 8U, 0U}) {
        const double mixed = below * ByteAt(pixel, shift) * (1 - a) + a * ByteAt(color, shift);
        result |= RoundHalfUp(mixed / alpha) << shift;
    }
    return result;
}

}  // namespace

TextRows ClampTextRows(std::int32_t size, std::int32_t top, std::int32_t bottom) {
    const std::int32_t first = std::clamp(top, 0, size);
    return {first, std::clamp(bottom, first, size)};
}

std::int32_t InkHeight(const TextExtent& extent) {
    return extent.ascent - extent.internalLeading;
}

bool TextFits(const TextExtent& extent, std::int32_t size, const TextRows& rows) {
    return extent.width <= size && InkHeight(extent) <= rows.bottom - rows.top;
}

std::int32_t TextLineTop(const TextExtent& extent, const TextRows& rows, bool alignBottom) {
    const std::int32_t ink = InkHeight(extent);
    const std::int32_t inkTop = alignBottom ? rows.bottom - ink : (rows.bottom - rows.top - ink) / 2 + rows.top;
    return inkTop - extent.internalLeading;
}

void ComposeCoverage(std::span<std::uint32_t> base, std::span<const std::uint32_t> mask, ColorValue color) {
    for (std::size_t i = 0; i < base.size(); ++i) {
        const std::uint32_t coverage = ByteAt(mask[i], 0);
        if (coverage != 0) base[i] = Cover(base[i], color, coverage / 255.0);
    }
}

}  // namespace kestrane
