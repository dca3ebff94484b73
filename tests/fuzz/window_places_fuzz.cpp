// Graph windows, other windows, monitors and the mouse anywhere, as other programs and the settings file can place
// them: nothing overflows, a snap never exceeds its distance, and no drag makes a window too small.
#include <algorithm>
#include <cstdlib>

#include "fuzz/fuzz_target.h"
#include "graph/placement.h"
#include "graph/snapping.h"

namespace kestrane {
namespace {

using fuzz::ByteSource;
using fuzz::Require;

constexpr std::int32_t MinWidth = 100;
constexpr std::int32_t MinHeight = 50;

/// Mostly a coordinate on a realistic desktop, rarely any number.
std::int32_t Coordinate(ByteSource& source) {
    return source.Byte() < 16 ? static_cast<std::int32_t>(source.Bits(4)) : source.Number(-8000, 8000);
}

Rect MakeRect(ByteSource& source) {
    return {Coordinate(source), Coordinate(source), Coordinate(source), Coordinate(source)};
}

bool IsNear(std::int32_t a, std::int32_t b, std::int32_t distance) {
    return std::abs(std::int64_t{a} - b) <= distance;
}

bool IsNear(const Rect& a, const Rect& b, std::int32_t distance) {
    return IsNear(a.left, b.left, distance) && IsNear(a.top, b.top, distance) && IsNear(a.right, b.right, distance) &&
           IsNear(a.bottom, b.bottom, distance);
}

bool IsLargeEnough(const Rect& rect) {
    return RectWidth(rect) >= MinWidth && RectHeight(rect) >= MinHeight;
}

void CheckDrag(ByteSource& source, const Rect& start) {
    const std::int32_t distance = source.Number(0, 40);
    const Rect workArea = MakeRect(source);
    const std::int32_t dx = Coordinate(source);
    const std::int32_t dy = Coordinate(source);
    const std::uint32_t edges = ResizeEdgesFromSizing(source.Byte() % 10);
    std::vector<Rect> others;
    while (!source.Empty())
        others.push_back(MakeRect(source));
    std::vector<std::int32_t> xs;
    std::vector<std::int32_t> ys;
    CollectSnapEdges(others, workArea, xs, ys);

    const Rect moved = MovedRect(start, dx, dy);
    Require(IsNear(SnapMovedRect(moved, xs, ys, distance), moved, distance));
    const Rect sized = SizedRect(start, edges, dx, dy, MinWidth, MinHeight);
    const Rect snapped = SnapSizedRect(sized, edges, xs, ys, distance, MinWidth, MinHeight);
    Require(IsNear(snapped, sized, distance));
    if (IsLargeEnough(start)) Require(IsLargeEnough(sized) && IsLargeEnough(snapped));
}

void CheckHit(const Rect& rect, const Point& point, std::int32_t border) {
    const std::int32_t code = HitTestGraph(rect, point, border);
    Require(code == 2 || (code >= 10 && code <= 17));
}

void CheckFirstPlace(std::uint32_t edge, const Rect& workArea, std::int32_t width, std::int32_t height) {
    for (const GraphKind kind : GraphKinds) {
        const Rect rect = StackedGraphRect(edge, workArea, width, height, kind);
        Require(rect.top >= workArea.top && (workArea.top > workArea.bottom || rect.top <= workArea.bottom));
    }
}

}  // namespace
}  // namespace kestrane

FUZZ_TARGET(window_places) {
    using namespace kestrane;
    fuzz::ByteSource source(input);
    const Rect rect = MakeRect(source);
    CheckHit(rect, {Coordinate(source), Coordinate(source)}, source.Number(0, 64));
    CheckFirstPlace(source.Byte(), rect, ScaleForDpi(400, static_cast<std::uint32_t>(source.Bits(4))),
                    source.Number(0, 1000));
    CheckDrag(source, rect);
}
