#pragma once
// Paints a whole graph into a device context. Nothing is cached between paints: scale, layout and texts are computed
// from the current rings and settings.
#include <windows.h>

#include <cstdint>

#include "graph/hover.h"
#include "history/series.h"
#include "settings/app_settings.h"

namespace kestrane {

/// Fills `width` by `height` pixels of `hdc` from 0,0. `dpi` is that of the window. If the off-screen bitmap cannot be
/// created, the target is left as it is.
void PaintGraph(HDC hdc, std::int32_t width, std::int32_t height, GraphKind kind, const AppSettings& settings,
                const GraphSeries& series, std::uint32_t dpi, const HoverState& hover);

}  // namespace kestrane
