#pragma once
// Points and rectangles of the screen, with arithmetic that cannot overflow: a place in a hand-edited file may be any
// 32-bit number.
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

/// `value`, held within the 32-bit range.
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

constexpr std::int32_t RectWidth(const Rect& rect) {
    return SubtractSaturated(rect.right, rect.left);
}

constexpr std::int32_t RectHeight(const Rect& rect) {
    return SubtractSaturated(rect.bottom, rect.top);
}

}  // namespace kestrane
