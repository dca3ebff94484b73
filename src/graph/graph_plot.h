#pragma once
// The pixels of the ordinary view. One point is one pixel column; the newest stands at the right end of the plot, and a
// young graph fills from the right. Lines are not drawn here but given back as point lists.
#include <cstdint>
#include <optional>
#include <vector>

#include "base/geometry.h"
#include "graph/graph_view.h"
#include "graph/hover.h"
#include "graph/pixel_buffer.h"
#include "graph/plot_scale.h"

namespace kestrane {

/// A curve to be drawn one line width thick. Of fewer than 2 points nothing shows.
struct PlotLine {
    std::vector<Point> points;
    ColorValue color = 0;
};

/// The points that are shown, oldest first, as they are drawn: smoothed for lines, raw for bars.
struct PlotWindow {
    std::int32_t n = 0;
    std::int32_t firstX = 0;     // column of the oldest
    std::vector<double> first;   // n values
    std::vector<double> second;  // n values, none without a second series
};

PlotWindow MakePlotWindow(const GraphView& view, const PlotScale& scale);

/// Grid, data, axes and frame over a buffer that holds the background. Gives back the curves in the order in which they
/// are to be drawn, the first series last and so on top; none for bars.
std::vector<PlotLine> DrawPlot(const PixelBuffer& buffer, const GraphView& view, const PlotScale& scale,
                               const PlotWindow& window, std::int32_t margin);

/// The readout of the point under the mouse, if the mouse is over one.
std::optional<HoverReadout> ReadPlot(const GraphView& view, const GraphSeries& series, const PlotScale& scale,
                                     const PlotWindow& window, const HoverState& hover, wchar_t decimal);

}  // namespace kestrane
