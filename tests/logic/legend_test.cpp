#include "graph/legend.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "support/graph_series_fixture.h"
#include "text/translation.h"

namespace kestrane {
namespace {

using Lines = std::vector<TextLine>;
using Numbers = std::vector<std::int32_t>;

TEST(PlotLegend, GreatestAndNewestRawValues) {
    const auto down = RingOf<std::uint64_t>({9000000, 5000, 20000, 3000});
    const auto up = RingOf<std::uint64_t>({50000, 1000});
    AppSettings settings = MakeDefaultSettings();
    GraphSeries series;
    series.primary = RefTo(down);
    series.secondary = RefTo(up);
    settings.network.style = 1;  // lines: the legend stays raw
    const GraphView view = MakeGraphView(GraphKind::Network, settings, series);
    struct Row {
        const char* reason;
        std::uint64_t n;
        std::wstring greatest;
    };
    const std::vector<Row> rows = {
        {"all points", 4, L"(Máx: 9,0 Mbps)"},
        {"the peak has left: the other series", 3, L"(Máx: 50,0 kbps)"},
        {"the newest alone", 1, L"(Máx: 3,0 kbps)"},
        {"no points", 0, L"(Máx: 0,0 kbps)"},
    };
    for (const Row& row : rows) {
        const Lines expected = {{row.greatest, 0xE0E0E0},
                                {L"Bajada: 3,0 kbps", ReadableColor(0xFF0000, 0)},
                                {L"Subida: 1,0 kbps", ReadableColor(0x009D00, 0)}};
        EXPECT_EQ(PlotLegend(view, row.n, L','), expected) << row.reason;
    }
}

TEST(PlotLegend, CpuHasTwoEntries) {
    const auto cpu = RingOf<double>({80, std::numeric_limits<double>::quiet_NaN(), 12.5});
    GraphSeries series;
    const auto unused = RingOf<double>({99});
    series.primary = RefTo(cpu);
    series.secondary = RefTo(unused);
    const GraphView view = MakeGraphView(GraphKind::Cpu, MakeDefaultSettings(), series);
    const Lines expected = {{L"(Máx: 80 %)", 0xE0E0E0}, {L"CPU: 13 %", ReadableColor(0x007BB7, 0)}};
    EXPECT_EQ(PlotLegend(view, 3, L','), expected);
}

TEST(PlotLegend, IsAllZerosWithoutPoints) {
    const GraphView view = MakeGraphView(GraphKind::Disk, MakeDefaultSettings(), GraphSeries{});
    const Lines lines = PlotLegend(view, 0, L',');
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0].text, L"(Máx: 0 KB/s)");
    EXPECT_EQ(lines[1].text, L"Lectura: 0 KB/s");
    EXPECT_EQ(lines[2].text, L"Escritura: 0 KB/s");
}

TEST(PlotLegend, SpeaksEnglish) {
    SetLanguage(ActiveEnglish);
    const GraphView disk = MakeGraphView(GraphKind::Disk, MakeDefaultSettings(), GraphSeries{});
    const GraphView network = MakeGraphView(GraphKind::Network, MakeDefaultSettings(), GraphSeries{});
    EXPECT_EQ(PlotLegend(disk, 0, L'.')[0].text, L"(Max: 0 KB/s)");
    EXPECT_EQ(PlotLegend(disk, 0, L'.')[1].text, L"Read: 0 KB/s");
    EXPECT_EQ(PlotLegend(disk, 0, L'.')[2].text, L"Write: 0 KB/s");
    EXPECT_EQ(PlotLegend(network, 0, L'.')[1].text, L"Down: 0.0 kbps");
    EXPECT_EQ(PlotLegend(network, 0, L'.')[2].text, L"Up: 0.0 kbps");
    EXPECT_EQ(CoreGridLegend(network, 7)[0].text, L"(Max core: 7 %)");
    SetLanguage(ActiveSpanish);
}

TEST(CoreGridLegend, GreatestOfAllAndTheWholeProcessor) {
    const auto cpu = RingOf<double>({80, 12});
    GraphSeries series;
    series.primary = RefTo(cpu);
    const GraphView view = MakeGraphView(GraphKind::Cpu, MakeDefaultSettings(), series);
    const Lines expected = {{L"(Máx núcleo: 97 %)", 0xE0E0E0}, {L"CPU: 12 %", ReadableColor(0x007BB7, 0)}};
    EXPECT_EQ(CoreGridLegend(view, 97.2), expected);
}

TEST(LegendPositions, CentredOrFlushLeft) {
    struct Row {
        const char* reason;
        Numbers widths;
        std::int32_t frameLeft, frameRight, textHeight;
        Numbers positions;
    };
    const std::vector<Row> rows = {
        {"centred, gap 7", {50, 30, 40}, 5, 485, 15, {178, 235, 272}},
        {"the gap is at least 6", {50, 30}, 0, 100, 8, {7, 63}},
        {"half a pixel is lost", {51, 30}, 0, 100, 8, {6, 63}},
        {"exactly as wide as the frame", {50, 44}, 0, 100, 8, {0, 56}},
        {"wider than the frame", {80, 60}, 5, 95, 15, {5, 92}},
        {"no frame", {10, 10}, 21, -20, 15, {21, 38}},
        {"no entries", {}, 5, 95, 15, {}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(LegendPositions(row.widths, row.frameLeft, row.frameRight, row.textHeight), row.positions)
            << row.reason;
    }
}

}  // namespace
}  // namespace kestrane
