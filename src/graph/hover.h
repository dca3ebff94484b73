#pragma once
// The readout of the point under the mouse: which point it is, how long ago, and the text lines. The text shows raw
// samples even when the curve is smoothed; the markers sit on the visible curve.
#include <cstdint>
#include <string>
#include <vector>

#include "base/geometry.h"
#include "graph/graph_view.h"
#include "graph/pixel_buffer.h"

namespace kestrane {

struct HoverState {
    bool active = false;  // the mouse is over the graph and readouts are allowed
    std::int32_t x = 0;   // client pixels
    std::int32_t y = 0;

    bool operator==(const HoverState&) const = default;
};

/// The box is dark on every graph, so its text is made readable against this colour.
inline constexpr ColorValue HoverBoxColor = 0x202020;
inline constexpr ColorValue HoverBoxFrameColor = 0x8A8A8A;

/// Everything drawn for one point: the crosshair from `top` to `bottom` (exclusive) at column `x` with its markers, and
/// a box with `lines` above (`x`, `boxY`).
struct HoverReadout {
    std::int32_t x = 0;
    std::int32_t top = 0;
    std::int32_t bottom = 0;
    std::vector<HoverMarker> markers;
    std::int32_t boxY = 0;
    std::vector<TextLine> lines;
};

/// The index, from the oldest, of the point at column `x` when `count` points end at column `lastX`; -1 outside columns
/// `firstX` to `lastX` and where there is no point. The point's age is `lastX - x`.
std::int32_t HoverColumnIndex(std::int32_t x, std::int32_t firstX, std::int32_t lastX, std::uint64_t count);

/// Seconds between point `index` of `length` and the newest, rounded; 0 for an invalid index.
std::uint64_t SecondsAgo(std::uint64_t length, std::int64_t index, std::uint32_t periodMs);

/// "hace 12 s".
std::wstring TimeAgoText(std::uint64_t length, std::int64_t index, std::uint32_t periodMs);

/// The readout lines of the ordinary view for the point `age` points before the newest.
std::vector<TextLine> PlotReadoutLines(const GraphView& view, const GraphSeries& series, std::uint64_t age,
                                       wchar_t decimal);

/// The readout lines of one processor in the per-core view. `color` is that of its class.
std::vector<TextLine> CoreReadoutLines(const MetricRing<double>& ring, std::size_t processor, bool isPerformance,
                                       ColorValue color, std::uint64_t age, std::uint32_t periodMs);

/// The text metrics of a box: number and height of the lines, width of the widest, and distance from text to edge.
struct HoverBoxText {
    std::int32_t lineCount = 0;
    std::int32_t lineHeight = 0;
    std::int32_t maxWidth = 0;
    std::int32_t inset = 0;
};

/// Places the box above the point and to its right, or to its left if it does not fit there, clamped into a window of
/// `width` by `height`.
Rect PlaceHoverBox(std::int32_t width, std::int32_t height, const Point& point, const HoverBoxText& text);

}  // namespace kestrane
