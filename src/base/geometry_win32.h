#pragma once
// Between the platform's points, rectangles and monitors and ours.
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

/// The point that a mouse message carries: two signed halves, negative left of and above the first monitor.
inline Point PointFromMessage(LPARAM lParam) {
    return {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
}

/// What the taskbar leaves of a monitor; empty if the system does not know it.
inline Rect WorkAreaOf(HMONITOR monitor) {
    MONITORINFO info = {};
    info.cbSize = sizeof info;
    GetMonitorInfoW(monitor, &info);
    return FromPlatform(info.rcWork);
}

}  // namespace kestrane
