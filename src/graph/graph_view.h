#pragma once
// What a graph shows, decided from settings and series before anything is measured or painted.
#include <cstdint>
#include <string>

#include "history/series.h"
#include "settings/app_settings.h"
#include "settings/color.h"

namespace kestrane {

struct GraphView {
    GraphKind kind = GraphKind::Network;
    bool perCore = false;        // a grid of small plots instead of one
    bool isPercent = false;      // the scale is 0 to 100
    bool twoSeries = false;      // `second` is used
    bool lines = false;          // lines, otherwise bars
    double alpha = 0;            // weight of the fill under a line, 0 to 1
    std::int32_t smoothing = 0;  // level of the drawn curve; 0 for bars
    SeriesRef first;
    SeriesRef second;
    ColorValue background = 0;
    ColorValue contrast = 0;
    ColorValue gridColor = 0;
    ColorValue firstColor = 0;
    ColorValue secondColor = 0;
    ColorValue bothColor = 0;  // where both bars of the network graph overlap
    ColorValue firstLegendColor = 0;
    ColorValue secondLegendColor = 0;
    std::wstring firstName;
    std::wstring secondName;
};

/// A transparent background becomes black, a transparent series takes the background's colour.
GraphView MakeGraphView(GraphKind kind, const AppSettings& settings, const GraphSeries& series);

/// The colour at `key`, or `background` if that is transparent.
ColorValue OpaqueColor(const AppSettings& settings, ColorKey key, ColorValue background);

/// The number of points available to the graph: those of its longer series.
std::uint64_t PlotHistory(const GraphView& view);

/// One piece of text in its colour: an entry of the legend, or a line of the readout.
struct TextLine {
    std::wstring text;
    ColorValue color = 0;

    bool operator==(const TextLine&) const = default;
};

}  // namespace kestrane
