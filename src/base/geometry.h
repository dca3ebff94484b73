#pragma once
// Screen points, rectangles and sizes, with arithmetic that cannot overflow: a position in a hand-edited file may be
// any 32-bit number.
#include <algorithm>
#include <cstdint>
#include <limits>

namespace kestrane {

struct Point {
    std::int32_t x = 0;
    std::int32_t y = 0;
    bool operator==(const Point&) const = default;
};

/// Right and bottom are exclusive.
struct Rect {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;
    bool operator==(const Rect&) const = default;
};

/// `value`, clamped to the 32-bit range.
constexpr std::int32_t SaturateToInt32(std::int64_t value) {
    constexpr std::int64_t lowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t highest = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(value, lowest, highest));
}

constexpr std::int32_t AddSaturated(std::int64_t a, std::int64_t b) {
    return SaturateToInt32(a + b);
}

constexpr std::int32_t SubtractSaturated(std::int64_t a, std::int64_t b) {
    return SaturateToInt32(a - b);
}

/// The rectangle with this top-left corner and size.
constexpr Rect RectOf(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height) {
    return {x, y, AddSaturated(x, width), AddSaturated(y, height)};
}

constexpr std::int32_t RectWidth(const Rect& rect) {
    return SubtractSaturated(rect.right, rect.left);
}

constexpr std::int32_t RectHeight(const Rect& rect) {
    return SubtractSaturated(rect.bottom, rect.top);
}

constexpr bool IsEmptyRect(const Rect& rect) {
    return rect.left >= rect.right || rect.top >= rect.bottom;
}

/// Scales a size at 96 DPI to `dpi` as MulDiv does: rounded to nearest, halves away from zero, and -1 beyond the 32-bit
/// range.
constexpr std::int32_t ScaleForDpi(std::int32_t value, std::uint32_t dpi) {
    constexpr std::int64_t base = 96;
    const std::int64_t product = std::int64_t{value} * dpi;
    // Divide before rounding: adding half a step to the product could overflow 64 bits.
    const std::int64_t remainder = product % base;
    std::int64_t scaled = product / base;
    if (remainder >= base / 2) ++scaled;
    if (remainder <= -base / 2) --scaled;
    return SaturateToInt32(scaled) == scaled ? static_cast<std::int32_t>(scaled) : -1;
}

}  // namespace kestrane
