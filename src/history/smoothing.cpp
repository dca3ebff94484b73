#include "history/smoothing.h"

#include <algorithm>
#include <array>

namespace kestrane {
namespace {

constexpr std::array<std::int32_t, 4> Widths = {1, 3, 7, 15};

std::size_t HalfWidth(std::int32_t level) {
    return static_cast<std::size_t>(SmoothingWidth(level)) / 2;
}

std::vector<double> RunningSums(const std::vector<double>& values) {
    std::vector<double> sums(values.size() + 1);
    for (std::size_t i = 0; i < values.size(); ++i)
        sums[i + 1] = sums[i] + values[i];
    return sums;
}

}  // namespace

std::int32_t SmoothingWidth(std::int32_t level) {
    return Widths.at(static_cast<std::size_t>(std::clamp(level, 0, 3)));
}

std::vector<double> BoxSmooth(const std::vector<double>& values, std::int32_t level) {
    const std::size_t half = HalfWidth(level);
    if (half == 0 || values.size() < 2) return values;
    const std::vector<double> sums = RunningSums(values);
    std::vector<double> smoothed(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::size_t low = i - std::min(i, half);
        const std::size_t high = std::min(i + half, values.size() - 1);
        smoothed[i] = (sums[high + 1] - sums[low]) / static_cast<double>(high - low + 1);
    }
    return smoothed;
}

std::vector<double> SmoothedWindow(const SeriesRef& ref, std::size_t n, std::int32_t level) {
    // The extra points are older than the window, so that its left edge is smoothed with real data.
    const std::size_t extra = HalfWidth(level);
    std::vector<double> values(n + extra);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = ValueAtAge(ref, values.size() - i - 1);
    if (extra == 0) return values;
    values = BoxSmooth(values, level);
    values.erase(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(extra));
    return values;
}

}  // namespace kestrane
