#pragma once
// The scale of the ordinary view. The plot's width depends on the width of the axis labels, the labels on the maximum,
// and the maximum on how many points fit; so it is computed in two passes.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "graph/graph_view.h"
#include "graph/plot_layout.h"

namespace kestrane {

/// The full scale of an idle rate graph: bits per second for the network, bytes per second for disks.
inline constexpr double NetworkScaleFloor = 10000;
inline constexpr double DiskScaleFloor = 1048576;

/// The width of a text in the graph's font, in pixels.
using MeasureText = std::function<std::int32_t(const std::wstring&)>;

struct AxisTick {
    double value = 0;
    std::wstring label;  // ends in the hyphen that is the tick mark
};

struct PlotScale {
    PlotLayout layout;
    std::int32_t plotHeight = 0;
    std::int32_t columns = 0;  // the most points that the plot can show
    double maximum = 0;        // the value that is plotHeight pixels high
    std::vector<AxisTick> ticks;
};

/// Everything but the data: the window's size, the scaled margin, the line height, the decimal mark.
struct PlotFrame {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t margin = 0;
    std::int32_t textHeight = 1;
    wchar_t decimal = L'.';
};

/// 100 for percentages; for rates the greatest of the newest `samples` points as drawn, but not below the floor. The
/// scale follows the visible points at once: no decay, no rounding to nice steps.
double ScaleMaximum(const GraphView& view, std::size_t samples);

/// The ticks of an axis, lowest first.
std::vector<AxisTick> MakeAxisTicks(const GraphView& view, std::int32_t plotHeight, double maximum,
                                    const PlotFrame& frame);

/// The width of the widest label, 0 without ticks.
std::int32_t AxisLabelWidth(const std::vector<AxisTick>& ticks, const MeasureText& measure);

PlotScale ComputePlotScale(const GraphView& view, const PlotFrame& frame, const MeasureText& measure);

}  // namespace kestrane
