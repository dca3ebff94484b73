// A graph of any size, style and history with the mouse anywhere: every pixel is in the buffer, which the sanitizer
// checks, every curve is within the plot, and a readout belongs to the column under the mouse.
#include <algorithm>
#include <bit>

#include "fuzz/fuzz_target.h"
#include "graph/core_grid_plot.h"
#include "graph/graph_plot.h"
#include "graph/legend.h"

namespace kestrane {
namespace {

using fuzz::ByteSource;
using fuzz::Require;

/// The data of a graph: integers, percentages, or doubles with any bits.
struct History {
    MetricRing<std::uint64_t> down{SeriesCapacity};
    MetricRing<std::uint64_t> up{SeriesCapacity};
    MetricRing<double> percent{SeriesCapacity};
    DiskHistory disk;
    std::vector<MetricRing<double>> cores;
    std::vector<std::uint8_t> classes;
    std::vector<DiskHistory> disks;
};

AppSettings MakeSettings(ByteSource& source, GraphKind kind) {
    AppSettings settings = MakeDefaultSettings();
    GraphSettings& graph = GraphSettingsOf(settings, kind);
    graph.style = source.Flag() ? 1 : 0;
    graph.smoothing = source.Number(0, 3);
    graph.fill = source.Number(0, 100);
    settings.per_core = source.Flag();
    settings.activity = source.Flag();
    settings.colors[source.Byte() % ColorCount] = ColorNone;
    return settings;
}

void AddSample(ByteSource& source, History& history) {
    const std::uint8_t shape = source.Byte();
    const double percent = source.Number(0, 100);
    const std::uint64_t bits = shape % 4 == 0 ? source.Bits(8) : source.Bits(2);
    const double figure = shape % 4 == 0 ? std::bit_cast<double>(bits) : static_cast<double>(bits);
    for (int repeats = shape / 4; repeats >= 0; --repeats) {
        PushSample(history.down, bits);
        PushSample(history.up, bits / 3);
        PushSample(history.percent, percent);
        PushSample(history.disk.read, figure);
        PushSample(history.disk.write, percent);
        for (MetricRing<double>& core : history.cores)
            PushSample(core, percent);
    }
}

History MakeHistory(ByteSource& source) {
    History history;
    history.cores.resize(source.Byte(), MetricRing<double>(CoreSeriesCapacity));
    history.classes.resize(history.cores.size() / 2, source.Byte());
    while (!source.Empty())
        AddSample(source, history);
    history.disks = {history.disk, history.disk};
    return history;
}

GraphSeries MakeSeries(const History& history, GraphKind kind) {
    GraphSeries series;
    if (kind == GraphKind::Network) {
        series.primary.counterRing = &history.down;
        series.secondary.counterRing = &history.up;
    } else if (kind == GraphKind::Cpu) {
        series.primary.valueRing = &history.percent;
    } else {
        series.primary.valueRing = &history.disk.read;
        series.secondary.valueRing = &history.disk.write;
        series.activityRead.valueRing = &history.percent;
        series.activityWrite.valueRing = &history.percent;
    }
    series.cores = &history.cores;
    series.coreClasses = &history.classes;
    series.disks = &history.disks;
    return series;
}

PlotFrame MakeFrame(ByteSource& source) {
    return {source.Number(1, 700), source.Number(1, 500), source.Number(0, 100), source.Number(1, 160), L','};
}

HoverState MakeHover(ByteSource& source, const PlotFrame& frame) {
    return {source.Flag(), source.Number(-2, frame.width + 1), source.Number(-2, frame.height + 1)};
}

/// In a window without room for a plot, a curve is still drawn in the row above the baseline.
void CheckLines(const std::vector<PlotLine>& lines, const PlotLayout& layout, const PlotFrame& frame) {
    const std::int32_t top = std::min(layout.plotTop, layout.plotBottom - 1);
    for (const PlotLine& line : lines)
        Require(std::ranges::all_of(line.points, [&](const Point& p) {
            return p.x >= 0 && p.x < frame.width && p.y >= top && p.y < layout.plotBottom;
        }));
}

void CheckReadout(const std::optional<HoverReadout>& readout, const PixelBuffer& buffer, const GraphView& view,
                  const HoverState& hover) {
    if (!readout) return;
    Require(hover.active && readout->x == hover.x && !readout->markers.empty() && readout->lines.size() >= 2);
    DrawCrosshair(buffer, readout->x, readout->top, readout->bottom, readout->markers, view.contrast, view.background,
                  2);
}

void CheckGrid(const PixelBuffer& buffer, const GraphView& view, const AppSettings& settings, const GraphSeries& series,
               const PlotFrame& frame, const HoverState& hover) {
    const CoreGridDrawing drawing = DrawCoreGrid(buffer, view, settings, series, frame, 3, hover);
    Require(drawing.polylines.size() == (view.lines ? series.cores->size() : 0));
    Require(drawing.coreMax >= 0 && drawing.coreMax <= 100);
    CheckReadout(drawing.readout, buffer, view, hover);
    Require(CoreGridLegend(view, drawing.coreMax).size() == 2);
}

void CheckPlot(const PixelBuffer& buffer, const GraphView& view, const GraphSeries& series, const PlotFrame& frame,
               const HoverState& hover) {
    const PlotScale scale = ComputePlotScale(
        view, frame, [&](const std::wstring& text) { return static_cast<std::int32_t>(text.size()) * 7; });
    Require(!scale.ticks.empty() && scale.columns >= 0 && scale.columns <= frame.width);
    const PlotWindow window = MakePlotWindow(view, scale);
    CheckLines(DrawPlot(buffer, view, scale, window, frame.margin), scale.layout, frame);
    CheckReadout(ReadPlot(view, series, scale, window, hover, frame.decimal), buffer, view, hover);
    Require(!PlotLegend(view, static_cast<std::uint64_t>(window.n), frame.decimal).empty());
}

}  // namespace
}  // namespace kestrane

FUZZ_TARGET(graph_pictures) {
    using namespace kestrane;
    fuzz::ByteSource source(input);
    const GraphKind kind = GraphKinds[source.Byte() % GraphCount];
    const AppSettings settings = MakeSettings(source, kind);
    const PlotFrame frame = MakeFrame(source);
    const HoverState hover = MakeHover(source, frame);
    const History history = MakeHistory(source);
    const GraphSeries series = MakeSeries(history, kind);
    const GraphView view = MakeGraphView(kind, settings, series);

    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(frame.height));
    PixelBuffer buffer;
    buffer.width = frame.width;
    buffer.height = frame.height;
    buffer.bits = pixels.data();
    if (view.perCore) {
        CheckGrid(buffer, view, settings, series, frame, hover);
    } else {
        CheckPlot(buffer, view, series, frame, hover);
    }
}
