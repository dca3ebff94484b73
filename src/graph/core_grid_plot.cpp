#include "graph/core_grid_plot.h"

#include <algorithm>

#include "graph/core_grid.h"
#include "graph/plot_layout.h"
#include "history/smoothing.h"

namespace kestrane {
namespace {

constexpr double FullScale = 100;

/// One processor's cell: its history, its class, and where it is drawn.
struct CorePlot {
    std::size_t processor = 0;
    const MetricRing<double>* ring = nullptr;
    bool isPerformance = true;
    ColorValue color = 0;
    Rect cell;                          // including its one-pixel border
    Rect plot;                          // inside the border; `bottom` is the row below the bars
    std::int32_t plotHeight = 0;        // of a value of 100
    std::vector<double> raw;            // one value per column, zero where there is no history
    std::vector<std::int32_t> heights;  // the drawn heights in pixels, smoothed
};

void PlaceCell(CorePlot& plot, const GridCell& cell, const Point& origin) {
    plot.cell = RectOf(origin.x + cell.x, origin.y + cell.y, cell.width, cell.height);
    plot.plot = {plot.cell.left + 1, plot.cell.top + 1, plot.cell.right - 1, plot.cell.bottom - 1};
    plot.plotHeight = std::max(0, RectHeight(plot.plot));
}

void ReadCell(CorePlot& plot, std::int32_t smoothing) {
    const auto columns = static_cast<std::size_t>(std::max(0, RectWidth(plot.plot)));
    const SeriesRef ref = {nullptr, plot.ring};
    plot.raw = SmoothedWindow(ref, columns, 0);
    for (const double value : smoothing == 0 ? plot.raw : SmoothedWindow(ref, columns, smoothing))
        plot.heights.push_back(ValueToHeight(value, FullScale, plot.plotHeight));
}

/// The first column that has a point.
std::size_t FirstVisible(const CorePlot& plot) {
    const std::size_t columns = plot.raw.size();
    return columns - static_cast<std::size_t>(std::min<std::uint64_t>(plot.ring->count, columns));
}

std::int32_t ColumnOf(const CorePlot& plot, std::size_t index) {
    return plot.plot.left + static_cast<std::int32_t>(index);
}

double RaiseToVisible(double maximum, const CorePlot& plot) {
    for (std::size_t i = FirstVisible(plot); i < plot.raw.size(); ++i) {
        if (plot.raw[i] > maximum) maximum = plot.raw[i];
    }
    return maximum;
}

void DrawCoreBars(const PixelBuffer& buffer, const CorePlot& plot) {
    DrawInBands(buffer, plot.plot.top, plot.plot.bottom, [&plot](const PixelBuffer& band, std::int32_t top) {
        for (std::size_t i = FirstVisible(plot); i < plot.heights.size(); ++i) {
            const std::int32_t bottom = plot.plot.bottom - top;
            const std::int32_t x = ColumnOf(plot, i);
            FillPixels(band, {x, bottom - plot.heights[i], x + 1, bottom}, plot.color);
        }
    });
}

void BlendCoreFill(const PixelBuffer& buffer, const CorePlot& plot, double alpha) {
    DrawInBands(buffer, plot.plot.top, plot.plot.bottom, [&plot, alpha](const PixelBuffer& band, std::int32_t top) {
        for (std::size_t i = FirstVisible(plot); i < plot.heights.size(); ++i) {
            const std::int32_t bottom = plot.plot.bottom - top;
            BlendColumn(band, ColumnOf(plot, i), bottom - plot.heights[i], bottom, plot.color, alpha);
        }
    });
}

PlotLine CoreLine(const CorePlot& plot) {
    PlotLine line = {{}, plot.color};
    for (std::size_t i = FirstVisible(plot); i < plot.heights.size(); ++i)
        line.points.push_back({ColumnOf(plot, i), CurveRow(plot.plot.bottom, plot.heights[i])});
    return line;
}

std::optional<HoverReadout> ReadCore(const CorePlot& plot, std::int32_t x, std::uint32_t periodMs) {
    const std::uint64_t count = plot.ring->count;
    const std::int32_t index = HoverColumnIndex(x, plot.plot.left, plot.plot.right - 1, count);
    if (index < 0) return std::nullopt;
    const std::uint64_t age = count - static_cast<std::uint64_t>(index) - 1;
    const std::int32_t y =
        CurveRow(plot.plot.bottom, plot.heights[plot.heights.size() - 1 - static_cast<std::size_t>(age)]);
    const auto lines = CoreReadoutLines(*plot.ring, plot.processor, plot.isPerformance, plot.color, age, periodMs);
    return HoverReadout{x, plot.plot.top, plot.plot.bottom, {{y, plot.color}}, y, lines};
}

/// Draws one cell and adds its maximum and line to the drawing.
void DrawCore(const PixelBuffer& buffer, const CorePlot& plot, const GraphView& view, CoreGridDrawing& drawing) {
    drawing.coreMax = RaiseToVisible(drawing.coreMax, plot);
    if (view.lines) {
        if (view.alpha > 0) BlendCoreFill(buffer, plot, view.alpha);
        drawing.polylines.push_back(CoreLine(plot));
    } else {
        DrawCoreBars(buffer, plot);
    }
}

/// The rectangle of the whole grid: from frame left to frame right, below the margin and a gap above the baseline.
Rect GridArea(const PlotLayout& layout, std::int32_t margin, std::int32_t gap) {
    return {layout.frameLeft, margin + 1, layout.frameRight, layout.plotBottom - gap};
}

CorePlot MakeCorePlot(std::size_t processor, const GridCell& cell, const Point& origin, const GraphView& view,
                      const AppSettings& settings, const GraphSeries& series) {
    CorePlot plot;
    plot.processor = processor;
    plot.ring = &(*series.cores)[processor];
    plot.isPerformance = IsPerformanceCore(series.coreClasses, processor);
    plot.color = OpaqueColor(settings, plot.isPerformance ? CpuGraphPerf : CpuGraphEff, view.background);
    PlaceCell(plot, cell, origin);
    ReadCell(plot, view.smoothing);
    return plot;
}

}  // namespace

bool IsPerformanceCore(const std::vector<std::uint8_t>* coreClasses, std::size_t processor) {
    return coreClasses == nullptr || processor >= coreClasses->size() || (*coreClasses)[processor] != 0;
}

CoreGridDrawing DrawCoreGrid(const PixelBuffer& buffer, const GraphView& view, const AppSettings& settings,
                             const GraphSeries& series, const PlotFrame& frame, std::int32_t gap,
                             const HoverState& hover) {
    const PlotLayout layout = ComputePlotLayout(frame.width, frame.height, frame.margin, frame.textHeight, 0);
    const Rect area = GridArea(layout, frame.margin, gap);
    const std::vector<GridCell> cells =
        ComputeCoreGrid(static_cast<std::int32_t>(series.cores->size()), RectWidth(area), RectHeight(area), gap);
    const std::int32_t hoverCell = hover.active ? CellAtPoint(cells, hover.x - area.left, hover.y - area.top) : -1;
    const ColorValue borderColor = BlendColor(view.background, view.contrast, 0.3);

    CoreGridDrawing drawing;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const CorePlot plot = MakeCorePlot(i, cells[i], {area.left, area.top}, view, settings, series);
        const bool isHovered = static_cast<std::int32_t>(i) == hoverCell;
        DrawCore(buffer, plot, view, drawing);
        DrawOutline(buffer, plot.cell, isHovered ? view.contrast : borderColor);
        if (isHovered) drawing.readout = ReadCore(plot, hover.x, series.periodMs);
    }
    FillPixels(buffer, {layout.frameLeft, layout.plotBottom, layout.frameRight, layout.plotBottom + 1}, FrameColor);
    DrawFrame(buffer, FrameColor);
    return drawing;
}

}  // namespace kestrane
