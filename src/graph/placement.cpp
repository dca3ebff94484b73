#include "graph/placement.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>

#include "graph/snapping.h"

namespace kestrane {
namespace {

/// 0 in the low band, 2 in the high band, 1 between them.
std::size_t BandOf(std::int64_t position, std::int64_t low, std::int64_t high, std::int64_t border) {
    if (position < low + border) return 0;
    return position >= high - border ? 2 : 1;
}

}  // namespace

Rect TaskbarAnchorRect(std::uint32_t edge, const Rect& workArea, std::int32_t width, std::int32_t height) {
    const std::int32_t left = edge == TaskbarLeft ? workArea.left : SubtractSaturated(workArea.right, width);
    const std::int32_t top = edge == TaskbarTop ? workArea.top : SubtractSaturated(workArea.bottom, height);
    return RectOf(left, top, width, height);
}

Rect StackedGraphRect(std::uint32_t edge, const Rect& workArea, std::int32_t width, std::int32_t height,
                      GraphKind kind) {
    Rect rect = TaskbarAnchorRect(edge, workArea, width, height);
    const std::int64_t step = edge == TaskbarTop ? std::int64_t{height} : -std::int64_t{height};
    static_assert(IndexOf(GraphKind::Network) == 0, "the first graph stands at the anchor itself");
    const std::int64_t y = rect.top + step * static_cast<std::int64_t>(IndexOf(kind));
    const std::int64_t lowest = std::max<std::int64_t>(workArea.top, std::int64_t{workArea.bottom} - height);
    rect.top = SaturateToInt32(std::clamp<std::int64_t>(y, workArea.top, lowest));
    return rect;
}

Point RectCenter(const Rect& rect) {
    const auto middle = [](std::int64_t low, std::int64_t high) { return SaturateToInt32(low + (high - low) / 2); };
    return {middle(rect.left, rect.right), middle(rect.top, rect.bottom)};
}

std::uint32_t ResizeEdgesFromSizing(std::uint64_t sizing) {
    constexpr std::array<std::uint32_t, 9> edges = {0,
                                                    EdgeLeft,
                                                    EdgeRight,
                                                    EdgeTop,
                                                    EdgeTop | EdgeLeft,
                                                    EdgeTop | EdgeRight,
                                                    EdgeBottom,
                                                    EdgeBottom | EdgeLeft,
                                                    EdgeBottom | EdgeRight};
    return sizing < edges.size() ? edges[static_cast<std::size_t>(sizing)] : 0;
}

std::int32_t HitTestGraph(const Rect& rect, const Point& point, std::int32_t border) {
    constexpr std::array<std::array<std::int32_t, 3>, 3> codes = {{{13, 12, 14}, {10, 2, 11}, {16, 15, 17}}};
    return codes[BandOf(point.y, rect.top, rect.bottom, border)][BandOf(point.x, rect.left, rect.right, border)];
}

}  // namespace kestrane
