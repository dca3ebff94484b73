#pragma once
// The centred moving average over a graph's visible window. A NaN turns its neighbours and all later points to NaN,
// since they come from the same running sums, until it leaves the window.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "history/series.h"

namespace kestrane {

/// The width of the average in points at a smoothing level, clamped to 0..3.
std::int32_t SmoothingWidth(std::int32_t level);

/// The centred average at each point. The averaging window shrinks at both ends, so the last point averages only itself
/// and half a width of older points.
std::vector<double> BoxSmooth(const std::vector<double>& values, std::int32_t level);

/// The newest `n` points, oldest first, smoothed. Always `n` values: a history shorter than that is padded with zeros,
/// which pull down the earliest real points.
std::vector<double> SmoothedWindow(const SeriesRef& ref, std::size_t n, std::int32_t level);

}  // namespace kestrane
