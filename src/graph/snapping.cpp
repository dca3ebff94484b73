#include "graph/snapping.h"

#include <algorithm>
#include <cstdlib>

namespace kestrane {
namespace {

/// One axis of a moved window: the step that brings its nearer side to an edge, or 0.
std::int32_t MoveSnap(const std::vector<std::int32_t>& candidates, std::int32_t low, std::int32_t high,
                      std::int32_t distance) {
    const auto lowStep = NearestSnap(candidates, low, distance);
    const auto highStep = NearestSnap(candidates, high, distance);
    if (lowStep && highStep) return std::abs(*highStep) < std::abs(*lowStep) ? *highStep : *lowStep;
    return lowStep.value_or(highStep.value_or(0));
}

/// One axis of a resize; `low` and `high` are the two sides.
void SizeSides(std::int32_t& low, std::int32_t& high, bool moveLow, bool moveHigh, std::int32_t step,
               std::int32_t minimum) {
    if (moveLow) low = std::min(SubtractSaturated(high, minimum), AddSaturated(low, step));
    if (moveHigh) high = std::max(AddSaturated(high, step), AddSaturated(low, minimum));
}

void SnapSides(std::int32_t& low, std::int32_t& high, bool moveLow, bool moveHigh,
               const std::vector<std::int32_t>& candidates, std::int32_t distance, std::int32_t minimum) {
    const auto length = [&] { return std::int64_t{high} - low; };
    if (moveLow) {
        const auto step = NearestSnap(candidates, low, distance);
        if (step && length() - *step >= minimum) low = AddSaturated(low, *step);
    }
    if (moveHigh) {
        const auto step = NearestSnap(candidates, high, distance);
        if (step && length() + *step >= minimum) high = AddSaturated(high, *step);
    }
}

}  // namespace

Rect MovedRect(const Rect& start, std::int32_t dx, std::int32_t dy) {
    return {AddSaturated(start.left, dx), AddSaturated(start.top, dy), AddSaturated(start.right, dx),
            AddSaturated(start.bottom, dy)};
}

Rect SizedRect(const Rect& start, std::uint32_t edges, std::int32_t dx, std::int32_t dy, std::int32_t minWidth,
               std::int32_t minHeight) {
    Rect rect = start;
    SizeSides(rect.left, rect.right, (edges & EdgeLeft) != 0, (edges & EdgeRight) != 0, dx, minWidth);
    SizeSides(rect.top, rect.bottom, (edges & EdgeTop) != 0, (edges & EdgeBottom) != 0, dy, minHeight);
    return rect;
}

std::optional<std::int32_t> NearestSnap(const std::vector<std::int32_t>& candidates, std::int32_t position,
                                        std::int32_t distance) {
    std::optional<std::int32_t> nearest;
    for (const std::int32_t candidate : candidates) {
        const std::int64_t step = std::int64_t{candidate} - position;
        if (std::abs(step) > distance) continue;
        if (!nearest || std::abs(step) < std::abs(*nearest)) nearest = static_cast<std::int32_t>(step);
    }
    return nearest;
}

void CollectSnapEdges(const std::vector<Rect>& otherRects, const Rect& workArea, std::vector<std::int32_t>& xs,
                      std::vector<std::int32_t>& ys) {
    xs = {workArea.left, workArea.right};
    ys = {workArea.top, workArea.bottom};
    for (const Rect& other : otherRects) {
        xs.insert(xs.end(), {other.left, other.right});
        ys.insert(ys.end(), {other.top, other.bottom});
    }
}

Rect SnapMovedRect(const Rect& rect, const std::vector<std::int32_t>& xs, const std::vector<std::int32_t>& ys,
                   std::int32_t distance) {
    return MovedRect(rect, MoveSnap(xs, rect.left, rect.right, distance),
                     MoveSnap(ys, rect.top, rect.bottom, distance));
}

Rect SnapSizedRect(const Rect& rect, std::uint32_t edges, const std::vector<std::int32_t>& xs,
                   const std::vector<std::int32_t>& ys, std::int32_t distance, std::int32_t minWidth,
                   std::int32_t minHeight) {
    Rect snapped = rect;
    SnapSides(snapped.left, snapped.right, (edges & EdgeLeft) != 0, (edges & EdgeRight) != 0, xs, distance, minWidth);
    SnapSides(snapped.top, snapped.bottom, (edges & EdgeTop) != 0, (edges & EdgeBottom) != 0, ys, distance, minHeight);
    return snapped;
}

}  // namespace kestrane
