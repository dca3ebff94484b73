#pragma once
// The text of a graph, written with the font that is selected into the context. The background mode is transparent
// throughout.
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

/// The font of a graph's settings at `dpi`; empty if the system gives none, and then the context's own font stands in.
UniqueFont CreateGraphFont(const GraphSettings& settings, std::uint32_t dpi);

/// The height of a line of text, at least 1.
std::int32_t TextHeight(HDC dc);

/// In pixels; 0 if the system gives no answer.
std::int32_t TextWidth(HDC dc, const std::wstring& text);

/// The labels of the axis, ending where the axis begins, each beside its grid line.
void DrawTickLabels(HDC dc, const PlotScale& scale, std::int32_t textHeight, ColorValue color);

/// The row of entries under the plot.
void DrawLegend(HDC dc, const std::vector<TextLine>& entries, const PlotLayout& layout, std::int32_t textHeight);

/// The dark box of the readout near `point`, inside a window of `width` by `height`. Nothing without lines.
void DrawHoverBox(HDC dc, std::int32_t width, std::int32_t height, const Point& point,
                  const std::vector<TextLine>& lines, std::int32_t lineHeight);

}  // namespace kestrane
