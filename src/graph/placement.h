#pragma once
// The position of a graph window, and the hit-testing of its surface.
#include <cstdint>

#include "base/geometry.h"
#include "settings/app_settings.h"

namespace kestrane {

/// Initial and minimum size of a graph window at 96 DPI.
inline constexpr std::int32_t GraphDefaultWidth = 490;
inline constexpr std::int32_t GraphDefaultHeight = 150;
inline constexpr std::int32_t GraphMinWidth = 200;
inline constexpr std::int32_t GraphMinHeight = 80;
/// The width of a graph window's sizing border, at 96 DPI.
inline constexpr std::int32_t GraphBorderWidth = 5;

/// The screen edge of the taskbar, as numbered by ABM_GETTASKBARPOS.
inline constexpr std::uint32_t TaskbarLeft = 0;
inline constexpr std::uint32_t TaskbarTop = 1;
inline constexpr std::uint32_t TaskbarRight = 2;
inline constexpr std::uint32_t TaskbarBottom = 3;

/// A window in the corner of the work area nearest to the notification area: bottom right, bottom left for a taskbar on
/// the left, top right for one at the top.
Rect TaskbarAnchorRect(std::uint32_t edge, const Rect& workArea, std::int32_t width, std::int32_t height);

/// The initial position of a graph. Each kind's top is one `height` further from the taskbar than that of the kind
/// before it, within the work area, and all keep the anchor's bottom: a stacked window is taller, not shifted. With the
/// taskbar at the top the height drops to 0 and below, and the window gets its minimum size.
Rect StackedGraphRect(std::uint32_t edge, const Rect& workArea, std::int32_t width, std::int32_t height,
                      GraphKind kind);

/// The centre of a rectangle at any position.
Point RectCenter(const Rect& rect);

/// The sides that a WMSZ_ value moves, as Edge bits; 0 for any other value.
std::uint32_t ResizeEdgesFromSizing(std::uint64_t sizing);

/// The hit-test code of `point` on a window at `rect` whose border is `border` wide:
///
///     13 12 14        HTTOPLEFT     HTTOP     HTTOPRIGHT
///     10  2 11        HTLEFT        HTCAPTION HTRIGHT
///     16 15 17        HTBOTTOMLEFT  HTBOTTOM  HTBOTTOMRIGHT
///
/// Where the bands overlap, left wins over right and top over bottom.
std::int32_t HitTestGraph(const Rect& rect, const Point& point, std::int32_t border);

}  // namespace kestrane
