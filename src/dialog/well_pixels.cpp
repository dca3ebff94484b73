#include "dialog/well_pixels.h"

#include <algorithm>
#include <cstdint>

namespace kestrane {
namespace {

constexpr std::int32_t CellSize = 4;  // at any DPI
constexpr double DisabledPull = 0.65;

}  // namespace

std::vector<Rect> ChequerCells(const Rect& item) {
    std::vector<Rect> cells;
    bool firstIsDark = true;
    for (std::int32_t y = item.top; y < item.bottom; y += CellSize) {
        for (std::int32_t x = firstIsDark ? item.left : item.left + CellSize; x < item.right; x += 2 * CellSize)
            cells.push_back({x, y, std::min(x + CellSize, item.right), std::min(y + CellSize, item.bottom)});
        firstIsDark = !firstIsDark;
    }
    return cells;
}

ColorValue WellColor(ColorValue color, bool enabled, ColorValue face) {
    if (color == ColorNone || enabled) return color;
    return BlendColor(color, face, DisabledPull);
}

}  // namespace kestrane
