#pragma once
// Between the platform's points and rectangles and ours.
#include <windows.h>

#include "graph/geometry.h"

namespace kestrane {

inline Rect FromPlatform(const RECT& rect) {
    return {rect.left, rect.top, rect.right, rect.bottom};
}

inline RECT ToPlatform(const Rect& rect) {
    return {rect.left, rect.top, rect.right, rect.bottom};
}

inline Point FromPlatform(const POINT& point) {
    return {point.x, point.y};
}

/// The point that a mouse message carries: two signed halves, negative left of and above the first monitor.
inline Point PointFromMessage(LPARAM lParam) {
    return {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
}

}  // namespace kestrane
