#pragma once
// The row of text under the plot: its entries and their positions.
#include <cstdint>
#include <vector>

#include "graph/graph_view.h"
#include "graph/plot_scale.h"

namespace kestrane {

/// The greatest raw value of the newest `n` points of both series, and each series' newest raw value. Raw even when the
/// graph is smoothed, so the maximum can exceed the curve.
std::vector<TextLine> PlotLegend(const GraphView& view, std::uint64_t n, wchar_t decimal);

/// The greatest percentage shown in the grid, and the newest total percentage.
std::vector<TextLine> CoreGridLegend(const GraphView& view, double coreMax);

/// The left edge of each entry of the given widths: centred between frameLeft and frameRight with a gap between
/// entries, left-aligned if they do not fit.
std::vector<std::int32_t> LegendPositions(const std::vector<std::int32_t>& widths, std::int32_t frameLeft,
                                          std::int32_t frameRight, std::int32_t textHeight);

}  // namespace kestrane
