#pragma once
// The pixels of the per-core view: one small plot per logical processor on a fixed scale of 0 to 100, without axes or
// labels. The colour shows the processor's class.
#include <cstdint>
#include <optional>
#include <vector>

#include "graph/graph_plot.h"
#include "graph/graph_view.h"
#include "graph/hover.h"
#include "graph/pixel_buffer.h"

namespace kestrane {

struct CoreGridDrawing {
    std::vector<PlotLine> polylines;  // one per cell in line style
    double coreMax = 0;               // the greatest visible raw percentage of all processors
    std::optional<HoverReadout> readout;
};

/// Draws cells, baseline and frame over a buffer filled with the background. `view.perCore` must be set; `gap` is the
/// distance between cells.
CoreGridDrawing DrawCoreGrid(const PixelBuffer& buffer, const GraphView& view, const AppSettings& settings,
                             const GraphSeries& series, const PlotFrame& frame, std::int32_t gap,
                             const HoverState& hover);

/// Processors without an entry in the class table are performance processors.
bool IsPerformanceCore(const std::vector<std::uint8_t>* coreClasses, std::size_t processor);

}  // namespace kestrane
