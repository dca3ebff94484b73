#include "graph/plot_scale.h"

#include <algorithm>

#include "history/smoothing.h"

namespace kestrane {
namespace {

/// The greatest of `maximum` and the points of the series, ignoring NaN.
double RaiseTo(double maximum, const SeriesRef& series, std::size_t samples, std::int32_t smoothing) {
    for (const double value : SmoothedWindow(series, samples, smoothing)) {
        if (value > maximum) maximum = value;
    }
    return maximum;
}

std::vector<double> TickValues(const GraphView& view, std::int32_t plotHeight, double maximum,
                               std::int32_t textHeight) {
    if (view.isPercent) {
        const std::vector<std::int32_t> percents = PercentTicks(plotHeight, textHeight);
        return {percents.begin(), percents.end()};
    }
    const std::int32_t count = RateTickCount(plotHeight, textHeight);
    std::vector<double> values;
    for (std::int32_t i = 1; i <= count; ++i)
        values.push_back(i * maximum / count);
    return values;
}

PlotLayout LayoutFor(const PlotFrame& frame, std::int32_t labelWidth) {
    return ComputePlotLayout(frame.width, frame.height, frame.margin, frame.textHeight, labelWidth);
}

/// One pass: the maximum of the newest `samples` points, its labels, and the resulting layout.
void ScaleTo(PlotScale& scale, std::int32_t samples, const GraphView& view, const PlotFrame& frame,
             const MeasureText& measure) {
    scale.maximum = ScaleMaximum(view, static_cast<std::size_t>(std::max(samples, 0)));
    scale.ticks = MakeAxisTicks(view, scale.plotHeight, scale.maximum, frame);
    scale.layout = LayoutFor(frame, AxisLabelWidth(scale.ticks, measure));
    scale.plotHeight = scale.layout.plotBottom - scale.layout.plotTop;
}

}  // namespace

double ScaleMaximum(const GraphView& view, std::size_t samples) {
    if (view.isPercent) return 100;
    double maximum = view.kind == GraphKind::Network ? NetworkScaleFloor : DiskScaleFloor;
    maximum = RaiseTo(maximum, view.first, samples, view.smoothing);
    return view.twoSeries ? RaiseTo(maximum, view.second, samples, view.smoothing) : maximum;
}

std::vector<AxisTick> MakeAxisTicks(const GraphView& view, std::int32_t plotHeight, double maximum,
                                    const PlotFrame& frame) {
    std::vector<AxisTick> ticks;
    for (const double value : TickValues(view, plotHeight, maximum, frame.textHeight)) {
        ticks.push_back({value, FormatAxisValue(value, view.isPercent, view.kind, frame.decimal) + L"-"});
    }
    return ticks;
}

std::int32_t AxisLabelWidth(const std::vector<AxisTick>& ticks, const MeasureText& measure) {
    std::int32_t widest = 0;
    for (const AxisTick& tick : ticks)
        widest = std::max(widest, measure(tick.label));
    return widest;
}

PlotScale ComputePlotScale(const GraphView& view, const PlotFrame& frame, const MeasureText& measure) {
    PlotScale scale;
    scale.layout = LayoutFor(frame, 0);
    scale.plotHeight = scale.layout.plotBottom - scale.layout.plotTop;
    ScaleTo(scale, frame.width, view, frame, measure);
    scale.columns = PlotColumns(scale.layout);
    ScaleTo(scale, scale.columns, view, frame, measure);
    return scale;
}

}  // namespace kestrane
