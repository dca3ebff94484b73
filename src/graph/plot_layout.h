#pragma once
// The layout of a graph, and the conversion of values to pixels:
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
    std::int32_t plotBottom = 0;  // row of the baseline
    std::int32_t plotTop = 0;     // row of full scale
    std::int32_t legendY = 0;     // top of the legend row
    std::int32_t labelRight = 0;  // one column left of the axis labels' end
    std::int32_t frameLeft = 0;   // left end of the baseline
    std::int32_t frameRight = 0;  // right end of the baseline, exclusive

    bool operator==(const PlotLayout&) const = default;
};

/// `labelWidth` is that of the widest axis label. In a window too low for a plot, plotBottom equals plotTop; in one too
/// narrow, plotRight lies left of plotLeft.
PlotLayout ComputePlotLayout(std::int32_t width, std::int32_t height, std::int32_t margin, std::int32_t textHeight,
                             std::int32_t labelWidth);

/// The number of columns in the plot, 0 if the window is too narrow.
std::int32_t PlotColumns(const PlotLayout& layout);

/// The height of `value` in pixels if `maximum` is `height` pixels high: rounded and clamped to 0..`height`. 0 if
/// `value` or `maximum` is not above 0, including NaN.
std::int32_t ValueToHeight(double value, double maximum, std::int32_t height);

/// The row of a curve at `height` above the baseline `bottom`. A zero value is drawn one pixel above the baseline,
/// which would hide it.
std::int32_t CurveRow(std::int32_t bottom, std::int32_t height);

/// The number of ticks on a rate axis: 1 to 8, as many as the labels allow.
std::int32_t RateTickCount(std::int32_t plotHeight, std::int32_t textHeight);

/// The ticks of a percentage axis: 25, 50, 75, 100, or 50, 100, or 100 alone, as the labels allow.
std::vector<std::int32_t> PercentTicks(std::int32_t plotHeight, std::int32_t textHeight);

/// A value as shown by axis, legend and readout: a percentage, bits per second on the network graph, or bytes per
/// second, with `decimal` for the point.
std::wstring FormatAxisValue(double value, bool isPercent, GraphKind kind, wchar_t decimal);

}  // namespace kestrane
