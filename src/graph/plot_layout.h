#pragma once
// Where the parts of a graph stand and what a value means in pixels:
//
//     +---------------------------------------+
//     |  100 %-|                              |  <- plotTop
//     |   50 %-| . . . . . . . . . . . . ||:  |
//     |        |                       ||||:  |
//     |  ------+----------------------------  |  <- plotBottom: the baseline
//     |             (Max: 97 %)  CPU: 12 %    |  <- legendY
//     +---------------------------------------+
//        ^    ^ ^                          ^
//        |    | axisX                      plotRight
//        |    labelRight
//        frameLeft
#include <cstdint>
#include <string>
#include <vector>

#include "settings/app_settings.h"

namespace kestrane {

/// All in client pixels.
struct PlotLayout {
    std::int32_t axisX = 0;       // column of the vertical axis
    std::int32_t plotLeft = 0;    // first column of the plot
    std::int32_t plotRight = 0;   // last column of the plot, inclusive
    std::int32_t plotBottom = 0;  // row of the baseline; a value 0 stands on this row
    std::int32_t plotTop = 0;     // row of full scale
    std::int32_t legendY = 0;     // top of the legend row
    std::int32_t labelRight = 0;  // one column left of where the axis labels end
    std::int32_t frameLeft = 0;   // left end of the baseline
    std::int32_t frameRight = 0;  // right end of the baseline, exclusive

    bool operator==(const PlotLayout&) const = default;
};

/// `labelWidth` is that of the widest label of the axis. In a window too low for a plot, plotBottom is plotTop; in one
/// too narrow, plotRight lies left of plotLeft.
PlotLayout ComputePlotLayout(std::int32_t width, std::int32_t height, std::int32_t margin, std::int32_t textHeight,
                             std::int32_t labelWidth);

/// How many columns the plot has, 0 if the window is too narrow for one.
std::int32_t PlotColumns(const PlotLayout& layout);

/// The height of `value` in pixels where `maximum` is `height` pixels high: rounded, and within 0 and `height` whatever
/// the figures are. 0 for what is not above 0, not-a-number included.
std::int32_t ValueToHeight(double value, double maximum, std::int32_t height);

/// The row of a curve at a height over the baseline `bottom`. A zero value runs one pixel above the baseline, so that
/// the baseline does not hide it.
std::int32_t CurveRow(std::int32_t bottom, std::int32_t height);

/// How many ticks the axis of a rate has: 1 to 8, as the labels fit.
std::int32_t RateTickCount(std::int32_t plotHeight, std::int32_t textHeight);

/// The ticks of a percentage axis: 25, 50, 75, 100, or 50, 100, or 100 alone, as the labels fit.
std::vector<std::int32_t> PercentTicks(std::int32_t plotHeight, std::int32_t textHeight);

/// A value as axis, legend and readout show it: a percentage, bits per second on the network graph, or bytes per
/// second. `decimal` stands for the point.
std::wstring FormatAxisValue(double value, bool isPercent, GraphKind kind, wchar_t decimal);

}  // namespace kestrane
