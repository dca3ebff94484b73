#include "graph/graph_view.h"

#include <algorithm>
#include <array>

#include "text/translation.h"

namespace kestrane {
namespace {

/// What differs between graphs. A null `secondName` means no second series; if `translated` is off, the name is the
/// same in every language.
struct KindRow {
    ColorKey background;
    ColorKey first;
    ColorKey second;
    ColorKey both;
    const wchar_t* firstName;
    const wchar_t* secondName;
    bool translated;
};

// By GraphKind. Only the network graph has a `both` colour of its own.
constexpr std::array<KindRow, GraphCount> KindRows{
    {{NetGraphBg, NetGraphDown, NetGraphUp, NetGraphBoth, L"Bajada", L"Subida", true},
     {CpuGraphBg, CpuGraphFg, CpuGraphFg, CpuGraphFg, L"CPU", nullptr, false},
     {DiskGraphBg, DiskGraphRead, DiskGraphWrite, DiskGraphWrite, L"Lectura", L"Escritura", true}}};

void SetColors(GraphView& view, const AppSettings& settings, const KindRow& row) {
    view.background = OpaqueColor(settings, row.background, 0);
    view.contrast = ContrastColor(view.background);
    view.gridColor = BlendColor(view.background, view.contrast, 0.45);
    view.firstColor = OpaqueColor(settings, row.first, view.background);
    view.secondColor = OpaqueColor(settings, row.second, view.background);
    view.bothColor = OpaqueColor(settings, row.both, view.background);
    view.firstLegendColor = ReadableColor(view.firstColor, view.background);
    view.secondLegendColor = ReadableColor(view.secondColor, view.background);
}

void SetSeries(GraphView& view, const KindRow& row, const GraphSeries& series, bool activity) {
    view.twoSeries = row.secondName != nullptr;
    view.first = activity ? series.activityRead : series.primary;
    view.second = activity ? series.activityWrite : series.secondary;
    view.firstName = row.translated ? Tr(row.firstName) : row.firstName;
    if (view.twoSeries) view.secondName = Tr(row.secondName);
}

}  // namespace

ColorValue OpaqueColor(const AppSettings& settings, ColorKey key, ColorValue background) {
    const ColorValue color = settings.colors.at(key);
    return color == ColorNone ? background : color;
}

std::uint64_t PlotHistory(const GraphView& view) {
    const std::uint64_t first = SeriesCount(view.first);
    return view.twoSeries ? std::max(first, SeriesCount(view.second)) : first;
}

GraphView MakeGraphView(GraphKind kind, const AppSettings& settings, const GraphSeries& series) {
    const GraphSettings& style = GraphSettingsOf(settings, kind);
    const KindRow& row = KindRows.at(IndexOf(kind));
    const bool isCpu = kind == GraphKind::Cpu;
    const bool activity = kind == GraphKind::Disk && settings.activity;

    GraphView view;
    view.kind = kind;
    view.perCore = isCpu && settings.per_core && series.cores != nullptr && !series.cores->empty();
    view.isPercent = isCpu || activity;
    view.lines = style.style == 1;
    view.alpha = style.fill / 100.0;
    view.smoothing = view.lines ? style.smoothing : 0;
    SetSeries(view, row, series, activity);
    SetColors(view, settings, row);
    return view;
}

}  // namespace kestrane
