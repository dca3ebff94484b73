#pragma once
// Where a graph window stands and what its surface means to the mouse.
#include <cstdint>

#include "base/geometry.h"
#include "settings/app_settings.h"

namespace kestrane {

/// Sizes of a graph window at 96 DPI: the one it begins with, and the least it can be dragged to.
inline constexpr std::int32_t GraphDefaultWidth = 490;
inline constexpr std::int32_t GraphDefaultHeight = 150;
inline constexpr std::int32_t GraphMinWidth = 200;
inline constexpr std::int32_t GraphMinHeight = 80;
/// The band along the edges of a graph window that sizes it, at 96 DPI.
inline constexpr std::int32_t GraphBorderWidth = 5;

/// The side of the screen that the taskbar keeps, as ABM_GETTASKBARPOS numbers it.
inline constexpr std::uint32_t TaskbarLeft = 0;
inline constexpr std::uint32_t TaskbarTop = 1;
inline constexpr std::uint32_t TaskbarRight = 2;
inline constexpr std::uint32_t TaskbarBottom = 3;

/// The corner of the work area nearest to the notification area: bottom right, bottom left beside a taskbar at the
/// left, top right under one at the top.
Rect TaskbarAnchorRect(std::uint32_t edge, const Rect& workArea, std::int32_t width, std::int32_t height);

/// The first place of a graph. Each kind starts one `height` further from the taskbar than the kind before it, within
/// the work area, and all keep the bottom of the anchor: a stacked window is taller, not shifted. Under a taskbar at
/// the top the height falls to 0 and below, and the window's minimum size takes its place.
Rect StackedGraphRect(std::uint32_t edge, const Rect& workArea, std::int32_t width, std::int32_t height,
                      GraphKind kind);

/// The middle of a rectangle, wherever it stands.
Point RectCenter(const Rect& rect);

/// The sides that a WMSZ_ value moves, as the bits of snapping.h; 0 for a value that is none.
std::uint32_t ResizeEdgesFromSizing(std::uint64_t sizing);

/// What `point` is on a window at `rect` whose border is `border` wide, as a hit-test code:
///
///     13 12 14        HTTOPLEFT     HTTOP     HTTOPRIGHT
///     10  2 11        HTLEFT        HTCAPTION HTRIGHT
///     16 15 17        HTBOTTOMLEFT  HTBOTTOM  HTBOTTOMRIGHT
///
/// Left wins over right and top over bottom where the bands meet.
std::int32_t HitTestGraph(const Rect& rect, const Point& point, std::int32_t border);

}  // namespace kestrane
