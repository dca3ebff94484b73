#include "graph/graph_view.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/graph_series_fixture.h"

namespace kestrane {
namespace {

class GraphViewOf : public testing::Test {
  protected:
    GraphViewOf() {
        series_.primary = RefTo(primary_);
        series_.secondary = RefTo(secondary_);
        series_.activityRead = RefTo(activityRead_);
        series_.activityWrite = RefTo(activityWrite_);
    }
    GraphView View(GraphKind kind) { return MakeGraphView(kind, settings_, series_); }

    MetricRing<double> primary_ = RingOf<double>({1, 2, 3});
    MetricRing<double> secondary_ = RingOf<double>({1, 2, 3, 4, 5});
    MetricRing<double> activityRead_ = RingOf<double>({1});
    MetricRing<double> activityWrite_ = RingOf<double>({1, 2});
    AppSettings settings_ = MakeDefaultSettings();
    GraphSeries series_;
};

TEST_F(GraphViewOf, NetworkIsTwoRatesInThreeColours) {
    const GraphView view = View(GraphKind::Network);
    EXPECT_TRUE(view.twoSeries);
    EXPECT_FALSE(view.isPercent);
    EXPECT_FALSE(view.perCore);
    EXPECT_EQ(view.firstName, L"Bajada");
    EXPECT_EQ(view.secondName, L"Subida");
    EXPECT_EQ(view.firstColor, 0xFF0000U);
    EXPECT_EQ(view.secondColor, 0x009D00U);
    EXPECT_EQ(view.bothColor, 0xFFFF00U);
    EXPECT_EQ(view.background, 0U);
    EXPECT_EQ(view.contrast, 0xE0E0E0U);
    EXPECT_EQ(view.gridColor, BlendColor(0, 0xE0E0E0, 0.45));
    EXPECT_EQ(view.firstLegendColor, ReadableColor(0xFF0000, 0));
    EXPECT_EQ(view.secondLegendColor, ReadableColor(0x009D00, 0));
    EXPECT_EQ(PlotHistory(view), 5U) << "the longer of the two";
}

TEST_F(GraphViewOf, CpuIsOnePercentage) {
    const GraphView view = View(GraphKind::Cpu);
    EXPECT_FALSE(view.twoSeries);
    EXPECT_TRUE(view.isPercent);
    EXPECT_EQ(view.firstName, L"CPU");
    EXPECT_EQ(view.secondName, L"");
    EXPECT_EQ(view.firstColor, 0x007BB7U);
    EXPECT_EQ(PlotHistory(view), 3U) << "the first alone";
}

TEST_F(GraphViewOf, DiskIsRatesOrActivity) {
    const GraphView rates = View(GraphKind::Disk);
    EXPECT_TRUE(rates.twoSeries);
    EXPECT_FALSE(rates.isPercent);
    EXPECT_EQ(rates.first.valueRing, &primary_);
    EXPECT_EQ(rates.second.valueRing, &secondary_);
    EXPECT_EQ(rates.firstName, L"Lectura");
    EXPECT_EQ(rates.secondName, L"Escritura");
    EXPECT_EQ(rates.firstColor, 0xCE8B00U);
    EXPECT_EQ(rates.secondColor, 0x167B04U);
    settings_.activity = true;
    const GraphView activity = View(GraphKind::Disk);
    EXPECT_TRUE(activity.isPercent);
    EXPECT_EQ(activity.first.valueRing, &activityRead_);
    EXPECT_EQ(activity.second.valueRing, &activityWrite_);
    EXPECT_FALSE(View(GraphKind::Network).isPercent) << "the flag is the disk graph's alone";
}

TEST_F(GraphViewOf, PerCoreNeedsProcessors) {
    std::vector<MetricRing<double>> cores;
    settings_.per_core = true;
    EXPECT_FALSE(View(GraphKind::Cpu).perCore) << "no vector";
    series_.cores = &cores;
    EXPECT_FALSE(View(GraphKind::Cpu).perCore) << "an empty one";
    cores.emplace_back(CoreSeriesCapacity);
    EXPECT_TRUE(View(GraphKind::Cpu).perCore);
    EXPECT_FALSE(View(GraphKind::Disk).perCore) << "not the processor's graph";
    settings_.per_core = false;
    EXPECT_FALSE(View(GraphKind::Cpu).perCore);
}

TEST_F(GraphViewOf, StyleAndFill) {
    settings_.cpu.style = 1;
    settings_.cpu.smoothing = 3;
    settings_.cpu.fill = 25;
    EXPECT_TRUE(View(GraphKind::Cpu).lines);
    EXPECT_EQ(View(GraphKind::Cpu).smoothing, 3);
    EXPECT_EQ(View(GraphKind::Cpu).alpha, 0.25);
    settings_.cpu.style = 0;
    EXPECT_FALSE(View(GraphKind::Cpu).lines);
    EXPECT_EQ(View(GraphKind::Cpu).smoothing, 0) << "bars are not smoothed";
    settings_.cpu.style = 2;
    EXPECT_FALSE(View(GraphKind::Cpu).lines) << "only 1 is lines";
}

TEST_F(GraphViewOf, TransparentIsBlackBehindAndTheBackgroundInFront) {
    settings_.colors[NetGraphBg] = ColorNone;
    settings_.colors[NetGraphDown] = ColorNone;
    EXPECT_EQ(View(GraphKind::Network).background, 0U);
    EXPECT_EQ(View(GraphKind::Network).firstColor, 0U);
    settings_.colors[NetGraphBg] = 0xFFFFFF;
    settings_.colors[NetGraphUp] = ColorNone;
    settings_.colors[NetGraphBoth] = ColorNone;
    const GraphView white = View(GraphKind::Network);
    EXPECT_EQ(white.background, 0xFFFFFFU);
    EXPECT_EQ(white.contrast, 0x202020U);
    EXPECT_EQ(white.secondColor, 0xFFFFFFU);
    EXPECT_EQ(white.bothColor, 0xFFFFFFU);
    EXPECT_EQ(white.secondLegendColor, ReadableColor(0xFFFFFF, 0xFFFFFF)) << "and its text is readable";
}

}  // namespace
}  // namespace kestrane
