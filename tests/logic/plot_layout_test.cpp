#include "graph/plot_layout.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace kestrane {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

TEST(ComputePlotLayout, PlacesEveryPart) {
    const PlotLayout layout = ComputePlotLayout(490, 150, 4, 15, 60);
    EXPECT_EQ(layout.axisX, 66);
    EXPECT_EQ(layout.plotLeft, 67);
    EXPECT_EQ(layout.plotRight, 484);
    EXPECT_EQ(layout.plotBottom, 125);
    EXPECT_EQ(layout.plotTop, 12);
    EXPECT_EQ(layout.legendY, 130);
    EXPECT_EQ(layout.labelRight, 65);
    EXPECT_EQ(layout.frameLeft, 5);
    EXPECT_EQ(layout.frameRight, 485);
    EXPECT_EQ(PlotColumns(layout), 418);
}

TEST(ComputePlotLayout, LiftsTheBottomToTheTopInALowWindow) {
    for (std::int32_t height = 0; height <= 60; ++height) {
        const PlotLayout layout = ComputePlotLayout(490, height, 4, 15, 60);
        EXPECT_EQ(layout.plotTop, 12);
        EXPECT_EQ(layout.plotBottom, height <= 37 ? 12 : height - 25) << "height " << height;
    }
}

TEST(PlotColumns, AreNoneInANarrowWindow) {
    // The plot starts at 67 and ends 6 columns before the width.
    EXPECT_EQ(PlotColumns(ComputePlotLayout(73, 150, 4, 15, 60)), 1);
    EXPECT_EQ(PlotColumns(ComputePlotLayout(72, 150, 4, 15, 60)), 0);
    EXPECT_EQ(PlotColumns(ComputePlotLayout(3, 3, 20, 15, 60)), 0);
}

TEST(ValueToHeight, RoundsAndStaysWithinTheHeight) {
    struct Row {
        const char* reason;
        double value;
        double maximum;
        std::int32_t height;
        std::int32_t expected;
    };
    const std::vector<Row> rows = {
        {"50.5 rounds up", 50, 100, 101, 51},
        {"50.49 rounds down", 49.99, 100, 101, 50},
        {"over the maximum", 500, 100, 80, 80},
        {"over the maximum by less than a pixel", 101, 100, 80, 80},
        {"below zero", -3, 100, 80, 0},
        {"zero", 0, 100, 80, 0},
        {"the maximum itself", 100, 100, 80, 80},
        {"too little for a pixel", 0.6, 100, 80, 0},
        {"just enough for a pixel", 0.625, 100, 80, 1},
        {"the last number below a half", 0.49999999999999994, 1, 1, 0},
        {"no maximum", 5, 0, 80, 0},
        {"a negative maximum", 5, -100, 80, 0},
        {"no height", 5, 100, 0, 0},
        {"a negative height", 5, 100, -1, 0},
        {"the lowest height", 100, 100, 1, 1},
        {"not a number", NotANumber, 100, 80, 0},
        {"a maximum that is not a number", 5, NotANumber, 80, 0},
        {"endless", Infinity, 100, 80, 80},
        {"endless below zero", -Infinity, 100, 80, 0},
        {"an endless maximum", 5, Infinity, 80, 0},
        {"endless of endless", Infinity, Infinity, 80, 80},
        {"huge", 1e300, 100, 80, 80},
        {"huge of huge", 1e300, 2e300, 80, 40},
        {"beyond the range of numbers", 1.7e308, 1.7e308, 80, 80},
        {"the greatest height", 100, 100, std::numeric_limits<std::int32_t>::max(),
         std::numeric_limits<std::int32_t>::max()},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(ValueToHeight(row.value, row.maximum, row.height), row.expected) << row.reason;
    }
}

TEST(CurveRow, StaysAboveTheBaseline) {
    EXPECT_EQ(CurveRow(125, 0), 124);
    EXPECT_EQ(CurveRow(125, 1), 124);
    EXPECT_EQ(CurveRow(125, 2), 123);
    EXPECT_EQ(CurveRow(125, 100), 25);
}

TEST(RateTickCount, IsOneToEight) {
    struct Row {
        std::int32_t plotHeight;
        std::int32_t textHeight;
        std::int32_t count;
    };
    const std::vector<Row> rows = {
        {10, 20, 1},    // 0, raised
        {1000, 10, 8},  // 66, lowered
        {119, 10, 7},   // just short of 8
        {120, 10, 8},   //
        {45, 15, 2},    // 15 * 3 / 2 is 22
        {43, 15, 1},    //
        {0, 15, 1},     //
        {-100, 15, 1},  //
        {3, 0, 3},      // a text height of 0 counts as one pixel
        {100, -5, 8},   //
    };
    for (const Row& row : rows) {
        EXPECT_EQ(RateTickCount(row.plotHeight, row.textHeight), row.count)
            << row.plotHeight << " with " << row.textHeight;
    }
}

TEST(PercentTicks, AsTheLabelsFit) {
    using Ticks = std::vector<std::int32_t>;
    EXPECT_EQ(PercentTicks(59, 10), (Ticks{50, 100}));
    EXPECT_EQ(PercentTicks(60, 10), (Ticks{25, 50, 75, 100}));
    EXPECT_EQ(PercentTicks(30, 10), (Ticks{50, 100}));
    EXPECT_EQ(PercentTicks(29, 10), (Ticks{100}));
    EXPECT_EQ(PercentTicks(0, 10), (Ticks{100}));
    // Half pixels count for an odd text height: 15 * 1.5 * 4 is 90.
    EXPECT_EQ(PercentTicks(90, 15), (Ticks{25, 50, 75, 100}));
    EXPECT_EQ(PercentTicks(89, 15), (Ticks{50, 100}));
}

TEST(FormatAxisValue, HasTheUnitOfItsGraph) {
    struct Row {
        const char* reason;
        double value;
        bool isPercent;
        GraphKind kind;
        std::wstring text;
    };
    const std::vector<Row> rows = {
        {"a percentage", 99.5, true, GraphKind::Cpu, L"100 %"},
        {"a percentage of the disk", 12, true, GraphKind::Disk, L"12 %"},
        {"bits", 1260000, false, GraphKind::Network, L"1,3 Mbps"},
        {"bits are whole: 999949.9 is cut", 999949.9, false, GraphKind::Network, L"999,9 kbps"},
        {"no negative bits", -5, false, GraphKind::Network, L"0,0 kbps"},
        {"bits that are not a number", NotANumber, false, GraphKind::Network, L"0,0 kbps"},
        {"more bits than the type holds", 1e300, false, GraphKind::Network, L"18446744073,71 Gbps"},
        {"endless bits", Infinity, false, GraphKind::Network, L"18446744073,71 Gbps"},
        {"bytes", 512, false, GraphKind::Disk, L"0,5 KB/s"},
        {"no negative bytes", -5, false, GraphKind::Disk, L"0 KB/s"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(FormatAxisValue(row.value, row.isPercent, row.kind, L','), row.text) << row.reason;
    }
}

}  // namespace
}  // namespace kestrane
