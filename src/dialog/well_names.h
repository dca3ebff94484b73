#pragma once
// What a screen reader calls the colour wells, which have no text of their own: the words that stand beside and above
// them.
#include <array>
#include <cstdint>
#include <string>

#include "settings/app_settings.h"

namespace kestrane {

/// In the active language: "CPU, Fondo" in the table of an icon's colours, "Desde 60 %, Texto" at a level of the
/// memory icon, "Gráfica de red, Subida" in the box of a graph.
std::wstring WellName(ColorKey key, const std::array<std::int32_t, 3>& thresholds);

}  // namespace kestrane
