#include "graph/graph_plot.h"

#include <algorithm>

#include "history/smoothing.h"

namespace kestrane {
namespace {

/// A series as drawn: its values and colour.
struct Curve {
    const std::vector<double>& values;
    ColorValue color;
};

std::int32_t HeightAt(const Curve& curve, std::size_t index, const PlotScale& scale) {
    return ValueToHeight(curve.values[index], scale.maximum, scale.plotHeight);
}

std::int32_t ColumnOf(const PlotWindow& window, std::size_t index) {
    return window.firstX + static_cast<std::int32_t>(index);
}

void DrawGridLines(const PixelBuffer& buffer, const GraphView& view, const PlotScale& scale) {
    const PlotLayout& layout = scale.layout;
    for (const AxisTick& tick : scale.ticks) {
        const std::int32_t y = layout.plotBottom - ValueToHeight(tick.value, scale.maximum, scale.plotHeight);
        DrawDottedRow(buffer, y, layout.plotLeft, layout.plotRight, view.gridColor);
    }
}

void DrawBar(const PixelBuffer& buffer, std::int32_t x, std::int32_t bottom, std::int32_t height, ColorValue color) {
    FillPixels(buffer, {x, bottom - height, x + 1, bottom}, color);
}

/// Two bars in one column. The part that both cover has the `both` colour on the network graph; on the disk graph it
/// has that of the shorter bar, which is in front, or of the second if they are equal.
void DrawBarPair(const PixelBuffer& buffer, const GraphView& view, std::int32_t x, std::int32_t bottom,
                 std::int32_t firstHeight, std::int32_t secondHeight) {
    const bool firstIsTall = firstHeight >= secondHeight;
    const ColorValue tallColor = firstIsTall ? view.firstColor : view.secondColor;
    const ColorValue shortColor = firstIsTall ? view.secondColor : view.firstColor;
    DrawBar(buffer, x, bottom, std::max(firstHeight, secondHeight), tallColor);
    DrawBar(buffer, x, bottom, std::min(firstHeight, secondHeight),
            view.kind == GraphKind::Network ? view.bothColor : shortColor);
}

/// The bar heights per column, computed once rather than once per band.
struct ColumnHeights {
    std::vector<std::int32_t> first;
    std::vector<std::int32_t> second;  // empty without a second series
};

std::vector<std::int32_t> HeightsOf(const std::vector<double>& values, const PlotScale& scale) {
    std::vector<std::int32_t> heights;
    heights.reserve(values.size());
    for (const double value : values)
        heights.push_back(ValueToHeight(value, scale.maximum, scale.plotHeight));
    return heights;
}

void DrawBars(const PixelBuffer& buffer, const GraphView& view, const PlotWindow& window, const ColumnHeights& heights,
              std::int32_t bottom) {
    for (std::size_t i = 0; i < heights.first.size(); ++i) {
        const std::int32_t x = ColumnOf(window, i);
        if (view.twoSeries) {
            DrawBarPair(buffer, view, x, bottom, heights.first[i], heights.second[i]);
        } else {
            DrawBar(buffer, x, bottom, heights.first[i], view.firstColor);
        }
    }
}

/// The taller fill goes under the shorter one, so pixels covered by both are a blend of the two.
void DrawFills(const PixelBuffer& buffer, const GraphView& view, const PlotWindow& window, const ColumnHeights& heights,
               std::int32_t bottom) {
    for (std::size_t i = 0; i < heights.first.size(); ++i) {
        const auto blend = [&](std::int32_t height, ColorValue color) {
            BlendColumn(buffer, ColumnOf(window, i), bottom - height, bottom, color, view.alpha);
        };
        const bool secondIsTall = view.twoSeries && heights.first[i] < heights.second[i];
        if (secondIsTall) blend(heights.second[i], view.secondColor);
        blend(heights.first[i], view.firstColor);
        if (view.twoSeries && !secondIsTall) blend(heights.second[i], view.secondColor);
    }
}

void DrawColumns(const PixelBuffer& buffer, const GraphView& view, const PlotScale& scale, const PlotWindow& window) {
    const ColumnHeights heights = {HeightsOf(window.first, scale), HeightsOf(window.second, scale)};
    const PlotLayout& layout = scale.layout;
    DrawInBands(buffer, layout.plotTop, layout.plotBottom, [&](const PixelBuffer& band, std::int32_t top) {
        const auto draw = view.lines ? DrawFills : DrawBars;
        draw(band, view, window, heights, layout.plotBottom - top);
    });
}

PlotLine CurveLine(const Curve& curve, const PlotScale& scale, const PlotWindow& window) {
    PlotLine line = {{}, curve.color};
    line.points.reserve(curve.values.size());
    for (std::size_t i = 0; i < curve.values.size(); ++i) {
        line.points.push_back({ColumnOf(window, i), CurveRow(scale.layout.plotBottom, HeightAt(curve, i, scale))});
    }
    return line;
}

std::vector<PlotLine> CurveLines(const GraphView& view, const PlotScale& scale, const PlotWindow& window) {
    std::vector<PlotLine> lines;
    if (view.twoSeries) lines.push_back(CurveLine({window.second, view.secondColor}, scale, window));
    lines.push_back(CurveLine({window.first, view.firstColor}, scale, window));
    return lines;
}

void DrawAxes(const PixelBuffer& buffer, const GraphView& view, const PlotLayout& layout, std::int32_t margin) {
    FillPixels(buffer, {layout.axisX, margin + 1, layout.axisX + 1, layout.plotBottom}, view.contrast);
    FillPixels(buffer, {layout.frameLeft, layout.plotBottom, layout.frameRight, layout.plotBottom + 1}, FrameColor);
    DrawFrame(buffer, FrameColor);
}

}  // namespace

PlotWindow MakePlotWindow(const GraphView& view, const PlotScale& scale) {
    PlotWindow window;
    const auto columns = static_cast<std::uint64_t>(std::max(scale.columns, 0));
    window.n = static_cast<std::int32_t>(std::min(PlotHistory(view), columns));
    window.firstX = scale.layout.plotRight - window.n + 1;
    const auto n = static_cast<std::size_t>(window.n);
    window.first = SmoothedWindow(view.first, n, view.smoothing);
    if (view.twoSeries) window.second = SmoothedWindow(view.second, n, view.smoothing);
    return window;
}

std::vector<PlotLine> DrawPlot(const PixelBuffer& buffer, const GraphView& view, const PlotScale& scale,
                               const PlotWindow& window, std::int32_t margin) {
    DrawGridLines(buffer, view, scale);
    if (!view.lines || view.alpha > 0) DrawColumns(buffer, view, scale, window);
    DrawAxes(buffer, view, scale.layout, margin);
    return view.lines ? CurveLines(view, scale, window) : std::vector<PlotLine>();
}

std::optional<HoverReadout> ReadPlot(const GraphView& view, const GraphSeries& series, const PlotScale& scale,
                                     const PlotWindow& window, const HoverState& hover, wchar_t decimal) {
    if (!hover.active || window.n == 0) return std::nullopt;
    const PlotLayout& layout = scale.layout;
    const auto count = static_cast<std::uint64_t>(window.n);
    const std::int32_t index = HoverColumnIndex(hover.x, window.firstX, layout.plotRight, count);
    if (index < 0) return std::nullopt;

    const auto markerAt = [&](const Curve& curve) {
        const std::int32_t height = HeightAt(curve, static_cast<std::size_t>(index), scale);
        return HoverMarker{CurveRow(layout.plotBottom, height), ReadableColor(curve.color, view.background)};
    };
    HoverReadout readout = {hover.x, layout.plotTop, layout.plotBottom, {markerAt({window.first, view.firstColor})}, 0,
                            {}};
    if (view.twoSeries) readout.markers.push_back(markerAt({window.second, view.secondColor}));
    readout.boxY = std::min(readout.markers.front().y, readout.markers.back().y);
    readout.lines = PlotReadoutLines(view, series, count - static_cast<std::uint64_t>(index) - 1, decimal);
    return readout;
}

}  // namespace kestrane
