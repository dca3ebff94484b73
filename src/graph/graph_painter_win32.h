#pragma once
// One whole graph into a device context. Nothing is kept between paints: scale, layout and texts come from the rings
// and the settings of this moment.
#include <windows.h>

#include <cstdint>

#include "graph/hover.h"
#include "history/series.h"
#include "settings/app_settings.h"

namespace kestrane {

/// Fills `width` by `height` pixels of `hdc` from its point 0,0. `dpi` is the scale of the window. If the off-screen
/// picture cannot be made, the target keeps what it shows.
void PaintGraph(HDC hdc, std::int32_t width, std::int32_t height, GraphKind kind, const AppSettings& settings,
                const GraphSeries& series, std::uint32_t dpi, const HoverState& hover);

}  // namespace kestrane
