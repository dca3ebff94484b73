#pragma once
// Converts the platform's points, rectangles and monitors to ours and back.
#include <windows.h>

#include "base/geometry.h"

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

inline POINT ToPlatform(const Point& point) {
    return {point.x, point.y};
}

/// The point in a mouse message: two signed 16-bit halves, negative to the left of or above the primary monitor.
inline Point PointFromMessage(LPARAM lParam) {
    return {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
}

/// A monitor's work area; empty if the handle is not valid.
inline Rect WorkAreaOf(HMONITOR monitor) {
    MONITORINFO info = {};
    info.cbSize = sizeof info;
    GetMonitorInfoW(monitor, &info);
    return FromPlatform(info.rcWork);
}

}  // namespace kestrane
