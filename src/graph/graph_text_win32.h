#pragma once
// The text of a graph, drawn in the font selected into the DC. The background mode must be transparent.
#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "base/handles_win32.h"
#include "graph/graph_view.h"
#include "graph/hover.h"
#include "graph/plot_scale.h"
#include "settings/app_settings.h"

namespace kestrane {

/// The font from a graph's settings at `dpi`; empty on failure, and then the DC's own font is used.
UniqueFont CreateGraphFont(const GraphSettings& settings, std::uint32_t dpi);

/// The axis labels, right-aligned to the axis, each beside its grid line.
void DrawTickLabels(HDC dc, const PlotScale& scale, std::int32_t textHeight, ColorValue color);

/// The row of entries under the plot.
void DrawLegend(HDC dc, const std::vector<TextLine>& entries, const PlotLayout& layout, std::int32_t textHeight);

/// The readout's dark box near `point`, inside a window of `width` by `height`. Draws nothing without lines.
void DrawHoverBox(HDC dc, std::int32_t width, std::int32_t height, const Point& point,
                  const std::vector<TextLine>& lines, std::int32_t lineHeight);

}  // namespace kestrane
