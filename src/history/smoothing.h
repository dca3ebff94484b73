#pragma once
// The centred moving average over the window that a graph shows. A figure that is not a number spoils the points that
// it is averaged with and all later ones, which come from the same running sums, until it leaves the window.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "history/series.h"

namespace kestrane {

/// The width in points of the average at a level of smoothing; a level outside 0..3 is taken as the nearest.
std::int32_t SmoothingWidth(std::int32_t level);

/// The centred average of each point. The window shrinks at both ends, so the last point is the mean of itself and
/// half a width of older points only.
std::vector<double> BoxSmooth(const std::vector<double>& values, std::int32_t level);

/// The newest `n` points, oldest first, smoothed. Exactly `n` values: where the history is shorter than the window
/// there are zeros, and the earliest real points are pulled towards them.
std::vector<double> SmoothedWindow(const SeriesRef& ref, std::size_t n, std::int32_t level);

}  // namespace kestrane
