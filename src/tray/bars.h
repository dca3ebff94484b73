#pragma once
// Histories as one-pixel columns, and the level bar. The newest sample is the rightmost column; if there are fewer
// samples than columns, the left part is not touched.
#include <cstdint>

#include "history/metric_ring.h"
#include "settings/color.h"
#include "tray/canvas.h"

namespace kestrane {

/// One history of percentages. Any value above 0 shows at least one pixel on the bottom row, 100 fills the column, and
/// 0 draws nothing.
void DrawBars(Canvas& canvas, const MetricRing<std::int32_t>& ring, ColorValue color);

/// Two histories of percentages, aligned by their newest sample: in each column the shorter is in front of the taller,
/// or B if they are equal.
void DrawPairedBars(Canvas& canvas, const MetricRing<std::int32_t>& ringA, ColorValue colorA,
                    const MetricRing<std::int32_t>& ringB, ColorValue colorB);

/// A rate as a number of rows, 0 to `height`: `value / scale` times `percent` % of `height`, rounded. 0 if `scale` is 0
/// or `height` is below 1.
std::int32_t ScaleToHeight(std::uint64_t value, std::uint64_t scale, std::int32_t height, std::int32_t percent);

/// Two histories of rates, with `scale` as full height. The part that both reach is drawn in `colorBoth`, the rest of
/// the taller above it. Unlike the percentages, a height of 0 draws nothing and ColorNone keeps the background.
void DrawNetworkBars(Canvas& canvas, const MetricRing<std::uint64_t>& down, const MetricRing<std::uint64_t>& up,
                     std::uint64_t scale, ColorValue colorDown, ColorValue colorUp, ColorValue colorBoth);

/// The height of the level bar on this canvas.
std::int32_t LevelBarHeight(const Canvas& canvas);

/// A horizontal gauge: an outline, and the leftmost `percent` % of the columns inside filled; the rest is not touched.
/// Draws nothing if width or height is below 3.
void DrawLevelBar(Canvas& canvas, const Rect& bar, std::int32_t percent, ColorValue trackColor, ColorValue fillColor);

}  // namespace kestrane
