#pragma once
// The row of text under the plot: which entries it has, and where each begins.
#include <cstdint>
#include <vector>

#include "graph/graph_view.h"
#include "graph/plot_scale.h"

namespace kestrane {

/// The greatest raw value of the newest `n` points of both series, and each series' newest raw value. Raw even where
/// the graph is smoothed, so the greatest can stand above the curve.
std::vector<TextLine> PlotLegend(const GraphView& view, std::uint64_t n, wchar_t decimal);

/// The greatest percentage that the grid shows, and the newest of the whole processor.
std::vector<TextLine> CoreGridLegend(const GraphView& view, double coreMax);

/// Where each entry of the given width begins: centred between frameLeft and frameRight with a gap between entries,
/// flush left if they do not fit.
std::vector<std::int32_t> LegendPositions(const std::vector<std::int32_t>& widths, std::int32_t frameLeft,
                                          std::int32_t frameRight, std::int32_t textHeight);

}  // namespace kestrane
