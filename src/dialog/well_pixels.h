#pragma once
// What a colour well shows: its colour, or a chequer for "transparent".
#include <vector>

#include "base/geometry.h"
#include "settings/color.h"

namespace kestrane {

/// The chequer is grey cells on white.
inline constexpr ColorValue ChequerLight = 0xFFFFFF;
inline constexpr ColorValue ChequerDark = 0xA0A0A0;

/// The dark cells, counted from the item's top left and cut at its right and bottom edge.
std::vector<Rect> ChequerCells(const Rect& item);

/// The colour of a well, paler and towards `face` when it is disabled. ColorNone stays as it is.
ColorValue WellColor(ColorValue color, bool enabled, ColorValue face);

}  // namespace kestrane
