#pragma once
// The rectangle of a dragged window: where the cursor has taken it, always measured from the start of the drag, then
// snapped to nearby edges. An edge attracts within `distance`; the nearest wins.
#include <cstdint>
#include <optional>
#include <vector>

#include "base/geometry.h"

namespace kestrane {

/// The range in which an edge attracts, at 96 DPI.
inline constexpr std::int32_t SnapDistance = 10;

/// The sides that a resize moves, as bits.
inline constexpr std::uint32_t EdgeLeft = 1;
inline constexpr std::uint32_t EdgeTop = 2;
inline constexpr std::uint32_t EdgeRight = 4;
inline constexpr std::uint32_t EdgeBottom = 8;

/// `start` moved as a whole by `dx`, `dy`.
Rect MovedRect(const Rect& start, std::int32_t dx, std::int32_t dy);

/// `start` with the sides in `edges` moved by `dx` or `dy`, each stopping where the minimum size is reached.
Rect SizedRect(const Rect& start, std::uint32_t edges, std::int32_t dx, std::int32_t dy, std::int32_t minWidth,
               std::int32_t minHeight);

/// The step from `position` to the nearest candidate within `distance`, the first on a tie; none if all are further
/// away.
std::optional<std::int32_t> NearestSnap(const std::vector<std::int32_t>& candidates, std::int32_t position,
                                        std::int32_t distance);

/// The edges to snap to: those of the work area, then both sides of each other window, in order. Replaces `xs`, `ys`.
void CollectSnapEdges(const std::vector<Rect>& otherRects, const Rect& workArea, std::vector<std::int32_t>& xs,
                      std::vector<std::int32_t>& ys);

/// Snaps a moved window on each axis by whichever side is nearer to an edge (left or top on a tie). The size stays.
Rect SnapMovedRect(const Rect& rect, const std::vector<std::int32_t>& xs, const std::vector<std::int32_t>& ys,
                   std::int32_t distance);

/// Snaps a resized window: each side in `edges` on its own, unless the window would become smaller than the minimum.
Rect SnapSizedRect(const Rect& rect, std::uint32_t edges, const std::vector<std::int32_t>& xs,
                   const std::vector<std::int32_t>& ys, std::int32_t distance, std::int32_t minWidth,
                   std::int32_t minHeight);

}  // namespace kestrane
