// Paints graphs for bench_paint.py, which measures the cost from outside. Each line on the standard input is one job,
// answered by "done":
//
//     SIDE VIEW STYLE WIDTH HEIGHT COUNT
//
// SIDE is "paint" for PaintGraph, "floor" for filling an existing buffer and blitting it, "fresh" for the same with a
// new buffer each time, which every paint needs. The target is a bitmap in memory.
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

#include "graph/graph_bitmap_win32.h"
#include "graph/graph_painter_win32.h"

namespace kestrane {
namespace {

constexpr std::uint32_t Dpi = 96;
constexpr ColorValue Background = 0x101820;

template <typename Value>
MetricRing<Value> MakeRing(std::uint64_t capacity, std::uint64_t seed, std::uint64_t limit) {
    MetricRing<Value> ring(capacity);
    for (std::uint64_t i = 0; i < capacity; ++i)
        PushSample(ring, static_cast<Value>((i * i / 37 + seed * 101) % limit));
    return ring;
}

/// All rings are full, so that no column of any graph is empty.
struct History {
    MetricRing<std::uint64_t> down = MakeRing<std::uint64_t>(SeriesCapacity, 1, 90'000'000);
    MetricRing<std::uint64_t> up = MakeRing<std::uint64_t>(SeriesCapacity, 2, 50'000'000);
    MetricRing<double> percent = MakeRing<double>(SeriesCapacity, 3, 101);
    MetricRing<double> read = MakeRing<double>(SeriesCapacity, 4, 200'000'000);
    MetricRing<double> write = MakeRing<double>(SeriesCapacity, 5, 90'000'000);
    std::vector<MetricRing<double>> cores;
};

struct Graph {
    GraphKind kind = GraphKind::Network;
    bool lines = false;
    bool activity = false;
    std::uint64_t processors = 0;  // 0: no grid
};

/// "network bars", "cpu lines", "activity bars" of the disks, "grid64 lines"
Graph ParseGraph(const std::string& view, const std::string& style) {
    Graph graph;
    graph.lines = style == "lines";
    graph.activity = view == "activity";
    if (view != "network") graph.kind = view == "disk" || graph.activity ? GraphKind::Disk : GraphKind::Cpu;
    if (view.starts_with("grid")) graph.processors = std::stoull(view.substr(4));
    return graph;
}

AppSettings MakeSettings(const Graph& graph) {
    AppSettings settings = MakeDefaultSettings();
    GraphSettingsOf(settings, graph.kind).style = graph.lines ? 1 : 0;
    settings.per_core = graph.processors > 0;
    settings.activity = graph.activity;
    return settings;
}

GraphSeries MakeSeries(const Graph& graph, History& history) {
    GraphSeries series;
    if (graph.kind == GraphKind::Network) {
        series.primary.counterRing = &history.down;
        series.secondary.counterRing = &history.up;
    } else if (graph.kind == GraphKind::Disk) {
        series.primary.valueRing = &history.read;
        series.secondary.valueRing = &history.write;
        series.activityRead.valueRing = &history.percent;
        series.activityWrite.valueRing = &history.percent;
    } else {
        series.primary.valueRing = &history.percent;
    }
    while (history.cores.size() < graph.processors)
        history.cores.push_back(MakeRing<double>(CoreSeriesCapacity, history.cores.size(), 101));
    history.cores.resize(static_cast<std::size_t>(graph.processors));
    series.cores = &history.cores;
    return series;
}

void FillAndBlit(const GraphBitmap& buffer, HDC target, int width, int height) {
    FillPixels(buffer.Pixels(), {0, 0, width, height}, Background);
    BitBlt(target, 0, 0, width, height, buffer.Pixels().dc, 0, 0, SRCCOPY);
}

struct Job {
    std::string side;
    Graph graph;
    int width = 0;
    int height = 0;
    int count = 0;
};

void Run(const Job& job, History& history) {
    const GraphBitmap target(nullptr, job.width, job.height);
    const GraphBitmap buffer(nullptr, job.width, job.height);
    const HDC dc = target.Pixels().dc;
    const AppSettings settings = MakeSettings(job.graph);
    const GraphSeries series = MakeSeries(job.graph, history);
    FillAndBlit(buffer, dc, job.width, job.height);
    for (int i = 0; i < job.count; ++i) {
        if (job.side == "paint") {
            PaintGraph(dc, job.width, job.height, job.graph.kind, settings, series, Dpi, {});
        } else if (job.side == "fresh") {
            FillAndBlit(GraphBitmap(dc, job.width, job.height), dc, job.width, job.height);
        } else {
            FillAndBlit(buffer, dc, job.width, job.height);
        }
    }
}

}  // namespace
}  // namespace kestrane

int main() {
    kestrane::History history;
    char side[16];
    char view[16];
    char style[16];
    kestrane::Job job;
    while (std::scanf("%15s %15s %15s %d %d %d", side, view, style, &job.width, &job.height, &job.count) == 6) {
        job.side = side;
        job.graph = kestrane::ParseGraph(view, style);
        kestrane::Run(job, history);
        std::puts("done");
        std::fflush(stdout);
    }
    return 0;
}
