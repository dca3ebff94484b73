#include "graph/plot_scale.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "support/graph_series_fixture.h"

namespace kestrane {
namespace {

using Counters = std::vector<std::uint64_t>;
using Values = std::vector<double>;

/// Made-up metrics: every character is 6 pixels wide.
std::int32_t SixPerCharacter(const std::wstring& text) {
    return static_cast<std::int32_t>(text.size()) * 6;
}

GraphView ViewOf(GraphKind kind, SeriesRef first, SeriesRef second = {}) {
    GraphView view;
    view.kind = kind;
    view.isPercent = kind == GraphKind::Cpu;
    view.twoSeries = kind != GraphKind::Cpu;
    view.first = first;
    view.second = second;
    return view;
}

std::vector<std::wstring> LabelsOf(const PlotScale& scale) {
    std::vector<std::wstring> labels;
    for (const AxisTick& tick : scale.ticks)
        labels.push_back(tick.label);
    return labels;
}

TEST(ScaleMaximum, IsTheGreatestVisibleValueOverAFloor) {
    const auto down = RingOf<std::uint64_t>({900000, 5000, 20000, 3000});
    const auto up = RingOf<std::uint64_t>({50000, 1000});
    const auto empty = RingOf<std::uint64_t>({});
    const auto values = RingOf<double>({5e6, 2e6, std::numeric_limits<double>::quiet_NaN(), 1});
    struct Row {
        const char* reason;
        GraphView view;
        std::size_t samples;
        double maximum;
    };
    const std::vector<Row> rows = {
        {"all points", ViewOf(GraphKind::Network, RefTo(down), RefTo(up)), 4, 900000},
        {"more than there are", ViewOf(GraphKind::Network, RefTo(down), RefTo(up)), 100, 900000},
        {"the peak has left the window: the other series rules", ViewOf(GraphKind::Network, RefTo(down), RefTo(up)), 3,
         50000},
        {"the network's floor", ViewOf(GraphKind::Network, RefTo(down), RefTo(up)), 1, NetworkScaleFloor},
        {"no window", ViewOf(GraphKind::Network, RefTo(down), RefTo(up)), 0, NetworkScaleFloor},
        {"no points", ViewOf(GraphKind::Network, RefTo(empty), RefTo(empty)), 100, NetworkScaleFloor},
        {"no series", ViewOf(GraphKind::Disk, {}), 100, DiskScaleFloor},
        {"the disk's floor", ViewOf(GraphKind::Disk, RefTo(down), RefTo(up)), 4, DiskScaleFloor},
        {"what is not a number plays no part", ViewOf(GraphKind::Disk, RefTo(values)), 4, 5e6},
        {"a percentage", ViewOf(GraphKind::Cpu, RefTo(values)), 4, 100},
    };
    for (const Row& row : rows)
        EXPECT_EQ(ScaleMaximum(row.view, row.samples), row.maximum) << row.reason;

    GraphView alone = ViewOf(GraphKind::Network, RefTo(down), RefTo(up));
    alone.twoSeries = false;
    EXPECT_EQ(ScaleMaximum(alone, 3), 20000) << "an unused second series does not count";
}

TEST(ScaleMaximum, FollowsTheCurveThatIsDrawn) {
    const auto values = RingOf<double>({0, 3e6, 3e6, 9e6, 3e6, 3e6, 0});
    GraphView view = ViewOf(GraphKind::Disk, RefTo(values));
    view.smoothing = 1;
    EXPECT_DOUBLE_EQ(ScaleMaximum(view, 7), 5e6);
}

TEST(MakeAxisTicks, AreFractionsOfTheMaximumWithAHyphen) {
    const PlotFrame frame = {490, 150, 4, 10, L','};
    const auto ticks = MakeAxisTicks(ViewOf(GraphKind::Network, {}), 60, 1000000, frame);
    ASSERT_EQ(ticks.size(), 4U);
    EXPECT_EQ(ticks[0].value, 250000);
    EXPECT_EQ(ticks[0].label, L"250,0 kbps-");
    EXPECT_EQ(ticks[3].value, 1000000);
    EXPECT_EQ(ticks[3].label, L"1,0 Mbps-");

    const auto percents = MakeAxisTicks(ViewOf(GraphKind::Cpu, {}), 30, 100, frame);
    ASSERT_EQ(percents.size(), 2U);
    EXPECT_EQ(percents[0].label, L"50 %-");
    EXPECT_EQ(percents[1].label, L"100 %-");
}

TEST(AxisLabelWidth, IsThatOfTheWidestLabel) {
    EXPECT_EQ(AxisLabelWidth({}, SixPerCharacter), 0);
    EXPECT_EQ(AxisLabelWidth({{1, L"abc"}, {2, L"abcdef"}, {3, L"a"}}, SixPerCharacter), 36);
}

TEST(ComputePlotScale, PercentagesNeedNoPoints) {
    const PlotScale scale = ComputePlotScale(ViewOf(GraphKind::Cpu, {}), {490, 150, 4, 15, L','}, SixPerCharacter);
    // "100 %-" is 36 wide.
    EXPECT_EQ(scale.layout, ComputePlotLayout(490, 150, 4, 15, 36));
    EXPECT_EQ(scale.plotHeight, 113);
    EXPECT_EQ(scale.columns, 442);
    EXPECT_EQ(scale.maximum, 100);
    EXPECT_EQ(LabelsOf(scale), (std::vector<std::wstring>{L"25 %-", L"50 %-", L"75 %-", L"100 %-"}));
}

// The window is 100 wide. A peak 90 points ago counts in the first pass, which looks at as many points as the window
// has columns. The resulting plot is narrower, so in the second pass the peak is gone.
TEST(ComputePlotScale, ThePlotsOwnWidthDecides) {
    Counters points(100, 20000);
    points[9] = 500000000;
    const auto down = RingOf(points);
    const PlotFrame frame = {100, 40, 0, 10, L','};
    const PlotScale scale = ComputePlotScale(ViewOf(GraphKind::Network, RefTo(down)), frame, SixPerCharacter);
    // First pass: "500,0 Mbps-" is 66 wide, which leaves columns 69 to 98.
    EXPECT_EQ(scale.columns, 30);
    EXPECT_EQ(scale.maximum, 20000);
    // Second pass: "20,0 kbps-" is 60 wide.
    EXPECT_EQ(scale.layout, ComputePlotLayout(100, 40, 0, 10, 60));
    EXPECT_EQ(LabelsOf(scale), (std::vector<std::wstring>{L"20,0 kbps-"}));
}

TEST(ComputePlotScale, PointsBeyondTheColumnsDoNotCount) {
    Counters points(4096, 20000);
    const PlotFrame frame = {400 + 63 + 1, 40, 0, 10, L','};
    points[4096 - 401] = 90000000;
    const auto outside = RingOf(points);
    EXPECT_EQ(ComputePlotScale(ViewOf(GraphKind::Network, RefTo(outside)), frame, SixPerCharacter).columns, 400);
    EXPECT_EQ(ComputePlotScale(ViewOf(GraphKind::Network, RefTo(outside)), frame, SixPerCharacter).maximum, 20000);
    points[4096 - 400] = 90000000;
    const auto inside = RingOf(points);
    EXPECT_EQ(ComputePlotScale(ViewOf(GraphKind::Network, RefTo(inside)), frame, SixPerCharacter).maximum, 90000000);
}

TEST(ComputePlotScale, HoldsInWindowsTooSmallForAPlot) {
    const auto down = RingOf<std::uint64_t>({20000, 90000000});
    for (std::int32_t size = 0; size <= 40; ++size) {
        const PlotScale scale =
            ComputePlotScale(ViewOf(GraphKind::Network, RefTo(down)), {size, size, 20, 15, L','}, SixPerCharacter);
        EXPECT_EQ(scale.columns, 0) << size;
        EXPECT_EQ(scale.plotHeight, 0) << size;
        EXPECT_EQ(scale.maximum, NetworkScaleFloor) << size;
        EXPECT_EQ(scale.ticks.size(), 1U) << size;
    }
}

}  // namespace
}  // namespace kestrane
