#pragma once
// The pixels of the ordinary view. One point is one pixel column; the newest is at the right end of the plot, and a new
// graph fills from the right. Lines are not drawn here but returned as point lists.
#include <cstdint>
#include <optional>
#include <vector>

#include "base/geometry.h"
#include "graph/graph_view.h"
#include "graph/hover.h"
#include "graph/pixel_buffer.h"
#include "graph/plot_scale.h"

namespace kestrane {

/// A curve to be drawn one line width thick. Nothing is drawn for fewer than 2 points.
struct PlotLine {
    std::vector<Point> points;
    ColorValue color = 0;
};

/// The visible points, oldest first, as drawn: smoothed for lines, raw for bars.
struct PlotWindow {
    std::int32_t n = 0;
    std::int32_t firstX = 0;     // column of the oldest
    std::vector<double> first;   // n values
    std::vector<double> second;  // n values, empty without a second series
};

PlotWindow MakePlotWindow(const GraphView& view, const PlotScale& scale);

/// Draws grid, data, axes and frame over a buffer filled with the background. Returns the curves in drawing order, the
/// first series last and so on top; none for bars.
std::vector<PlotLine> DrawPlot(const PixelBuffer& buffer, const GraphView& view, const PlotScale& scale,
                               const PlotWindow& window, std::int32_t margin);

/// The readout of the point under the mouse, if any.
std::optional<HoverReadout> ReadPlot(const GraphView& view, const GraphSeries& series, const PlotScale& scale,
                                     const PlotWindow& window, const HoverState& hover, wchar_t decimal);

}  // namespace kestrane
