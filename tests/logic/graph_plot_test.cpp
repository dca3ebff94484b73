#include "graph/graph_plot.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "support/geometry_print.h"
#include "support/graph_picture.h"
#include "support/graph_series_fixture.h"

namespace kestrane {
namespace {

using Values = std::vector<double>;
using Points = std::vector<Point>;

constexpr ColorValue Background = 0x101010;
constexpr ColorValue Contrast = 0xE0E0E0;
constexpr ColorValue Grid = 0x6E6E6E;
constexpr ColorValue First = 0xFF0000;
constexpr ColorValue Second = 0x00FF00;
constexpr ColorValue Both = 0xFFFF00;

// Background, vertical axis, baseline and frame, grid, the two series and their overlap.
const Letters Legend = {{Background, '.'}, {Contrast, '|'}, {FrameColor, '+'}, {Grid, '-'},
                        {First, '1'},      {Second, '2'},   {Both, 'b'}};

/// A window of 16 by 12: margin 0, text 2 pixels high, labels 3 wide. The plot's columns are 6 to 14, its rows 2 to 7
/// above the baseline in row 8.
class PlotPicture : public testing::Test {
  protected:
    PlotPicture() {
        view_.twoSeries = true;
        view_.background = Background;
        view_.contrast = Contrast;
        view_.gridColor = Grid;
        view_.firstColor = First;
        view_.secondColor = Second;
        view_.bothColor = Both;
        scale_.layout = ComputePlotLayout(16, 12, 0, 2, 3);
        scale_.plotHeight = scale_.layout.plotBottom - scale_.layout.plotTop;
        scale_.columns = PlotColumns(scale_.layout);
        scale_.maximum = 6;
        scale_.ticks = {{3, L"3-"}, {6, L"6-"}};
    }

    void SetSeries(const Values& first, const Values& second) {
        first_ = RingOf(first);
        second_ = RingOf(second);
        view_.first = RefTo(first_);
        view_.second = RefTo(second_);
    }

    std::vector<PlotLine> Draw() {
        return DrawPlot(picture_.Buffer(), view_, scale_, MakePlotWindow(view_, scale_), 0);
    }

    Strings Rows() { return picture_.Rows(Legend); }

    GraphView view_;
    PlotScale scale_;
    MetricRing<double> first_;
    MetricRing<double> second_;
    Picture picture_{16, 12, Background};
};

TEST_F(PlotPicture, EmptyIsGridAxesAndFrame) {
    EXPECT_TRUE(Draw().empty());
    EXPECT_EQ(Rows(), (Strings{
                          "++++++++++++++++",
                          "+....|.........+",
                          "+....|-.-.-.-.-+",
                          "+....|.........+",
                          "+....|.........+",
                          "+....|-.-.-.-.-+",
                          "+....|.........+",
                          "+....|.........+",
                          "++++++++++++++++",
                          "+..............+",
                          "+..............+",
                          "++++++++++++++++",
                      }));
}

TEST_F(PlotPicture, OneSeriesOfBars) {
    view_.twoSeries = false;
    view_.kind = GraphKind::Cpu;
    SetSeries({1, 6, 0, 3}, {6, 6, 6, 6});
    EXPECT_TRUE(Draw().empty());
    EXPECT_EQ(Rows(), (Strings{
                          "++++++++++++++++",
                          "+....|.........+",
                          "+....|-.-.-.1.-+",
                          "+....|......1..+",
                          "+....|......1..+",
                          "+....|-.-.-.1.1+",
                          "+....|......1.1+",
                          "+....|.....11.1+",
                          "++++++++++++++++",
                          "+..............+",
                          "+..............+",
                          "++++++++++++++++",
                      }));
}

// The overlap has its own colour, and the part above it that of the taller bar.
TEST_F(PlotPicture, NetworkBars) {
    view_.kind = GraphKind::Network;
    SetSeries({1, 6, 4, 0, 3}, {5, 2, 4, 2, 0});
    Draw();
    EXPECT_EQ(Rows(), (Strings{
                          "++++++++++++++++",
                          "+....|.........+",
                          "+....|-.-.-1-.-+",
                          "+....|....21...+",
                          "+....|....21b..+",
                          "+....|-.-.21b.1+",
                          "+....|....2bb21+",
                          "+....|....bbb21+",
                          "++++++++++++++++",
                          "+..............+",
                          "+..............+",
                          "++++++++++++++++",
                      }));
}

// The shorter is in front; if both are equal, the second hides the first.
TEST_F(PlotPicture, DiskBars) {
    view_.kind = GraphKind::Disk;
    SetSeries({1, 6, 4, 0, 3}, {5, 2, 4, 2, 0});
    Draw();
    EXPECT_EQ(Rows(), (Strings{
                          "++++++++++++++++",
                          "+....|.........+",
                          "+....|-.-.-1-.-+",
                          "+....|....21...+",
                          "+....|....212..+",
                          "+....|-.-.212.1+",
                          "+....|....22221+",
                          "+....|....12221+",
                          "++++++++++++++++",
                          "+..............+",
                          "+..............+",
                          "++++++++++++++++",
                      }));
}

// A network graph with little download and much upload.
TEST_F(PlotPicture, UpOverDownAtOneScale) {
    view_.kind = GraphKind::Network;
    scale_.maximum = 4000;
    scale_.ticks.clear();
    SetSeries({1000}, {4000});
    Draw();
    for (std::int32_t y = 2; y < 8; ++y)
        EXPECT_EQ(picture_.At(14, y), y < 6 ? Second : Both) << "row " << y;
}

TEST_F(PlotPicture, MorePointsThanColumnsShowTheNewest) {
    view_.twoSeries = false;
    SetSeries({6, 6, 6, 6, 6, 6, 6, 6, 6, 1, 2, 1, 1, 1, 1, 1, 1, 3}, {});
    Draw();
    EXPECT_EQ(Rows()[2], "+....|-.-.-.-.-+");
    EXPECT_EQ(Rows()[5], "+....|-.-.-.-.1+");
    EXPECT_EQ(Rows()[6], "+....|.1......1+");
    EXPECT_EQ(Rows()[7], "+....|111111111+");
}

// A new graph fills from the right and is not stretched: to the left there is only the grid.
TEST_F(PlotPicture, FiftyPointsStandAtTheRightOfFourHundredColumns) {
    view_.twoSeries = false;
    scale_.layout = ComputePlotLayout(407, 12, 0, 2, 3);
    scale_.columns = PlotColumns(scale_.layout);
    ASSERT_EQ(scale_.columns, 400);
    SetSeries(Values(50, 6), {});
    Picture wide(407, 12, Background);
    DrawPlot(wide.Buffer(), view_, scale_, MakePlotWindow(view_, scale_), 0);
    const std::int32_t last = scale_.layout.plotRight;
    for (std::int32_t x = scale_.layout.plotLeft; x <= last; ++x) {
        const bool isDot = (x - scale_.layout.plotLeft) % 2 == 0;
        for (std::int32_t y = 2; y < 8; ++y) {
            const ColorValue behind = (y == 2 || y == 5) && isDot ? Grid : Background;
            ASSERT_EQ(wide.At(x, y), x > last - 50 ? First : behind) << "column " << x << ", row " << y;
        }
    }
}

TEST_F(PlotPicture, TheMarginStaysFree) {
    scale_.layout = ComputePlotLayout(30, 20, 3, 2, 3);
    Picture picture(30, 20, Background);
    DrawPlot(picture.Buffer(), view_, scale_, MakePlotWindow(view_, scale_), 3);
    const std::int32_t axis = scale_.layout.axisX;
    EXPECT_EQ(picture.At(axis, 3), Background);
    EXPECT_EQ(picture.At(axis, 4), Contrast) << "the axis starts below the margin";
    EXPECT_EQ(picture.At(3, scale_.layout.plotBottom), Background);
    EXPECT_EQ(picture.At(4, scale_.layout.plotBottom), FrameColor) << "and so does the baseline beside it";
    EXPECT_EQ(picture.At(25, scale_.layout.plotBottom), FrameColor);
    EXPECT_EQ(picture.At(26, scale_.layout.plotBottom), Background);
}

TEST_F(PlotPicture, TheLongerSeriesRulesTheWindow) {
    SetSeries({6}, {1, 2, 1});
    const PlotWindow window = MakePlotWindow(view_, scale_);
    EXPECT_EQ(window.n, 3);
    EXPECT_EQ(window.firstX, 12);
    EXPECT_EQ(window.first, (Values{0, 0, 6}));
    EXPECT_EQ(window.second, (Values{1, 2, 1}));
}

TEST_F(PlotPicture, LinesAreGivenBackSecondSeriesFirst) {
    view_.lines = true;
    SetSeries({0, 1, 2, 9}, {6, 6, 0, 0});
    const auto lines = Draw();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].color, Second);
    EXPECT_EQ(lines[0].points, (Points{{11, 2}, {12, 2}, {13, 7}, {14, 7}}));
    EXPECT_EQ(lines[1].color, First);
    // A value of 0 is drawn one pixel above the baseline, like a value of 1.
    EXPECT_EQ(lines[1].points, (Points{{11, 7}, {12, 7}, {13, 6}, {14, 2}}));
    EXPECT_EQ(Rows()[7], "+....|.........+") << "no fill, no pixels";
}

TEST_F(PlotPicture, LinesAreSmoothedAndOfOneSeriesForOne) {
    view_.lines = true;
    view_.twoSeries = false;
    view_.smoothing = 1;
    SetSeries({0, 0, 6, 0, 0}, {});
    const auto lines = Draw();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].points, (Points{{10, 7}, {11, 6}, {12, 6}, {13, 6}, {14, 7}}));
}

TEST_F(PlotPicture, BothLinesAreSmoothed) {
    view_.lines = true;
    view_.smoothing = 1;
    SetSeries({0, 0, 6, 0, 0}, {6, 6, 0, 6, 6});
    const auto lines = Draw();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].points, (Points{{10, 4}, {11, 4}, {12, 4}, {13, 4}, {14, 2}}));
    EXPECT_EQ(lines[1].points, (Points{{10, 7}, {11, 6}, {12, 6}, {13, 6}, {14, 7}}));
}

// The taller fill goes under the shorter one, so where both overlap, the shorter is blended over the taller one's
// blend.
TEST_F(PlotPicture, FillsMixWhatTheyCover) {
    view_.lines = true;
    view_.alpha = 0.5;
    scale_.ticks.clear();
    SetSeries({2, 4, 3}, {4, 2, 3});
    Draw();
    const ColorValue first = BlendColor(Background, First, 0.5);
    const ColorValue second = BlendColor(Background, Second, 0.5);
    const Letters letters = {{Background, '.'},
                             {Contrast, '|'},
                             {FrameColor, '+'},
                             {first, '1'},
                             {second, '2'},
                             {BlendColor(second, First, 0.5), 'a'},
                             {BlendColor(first, Second, 0.5), 'b'}};
    EXPECT_EQ(picture_.Rows(letters), (Strings{
                                          "++++++++++++++++",
                                          "+....|.........+",
                                          "+....|.........+",
                                          "+....|.........+",
                                          "+....|......21.+",
                                          "+....|......21b+",
                                          "+....|......abb+",
                                          "+....|......abb+",
                                          "++++++++++++++++",
                                          "+..............+",
                                          "+..............+",
                                          "++++++++++++++++",
                                      }));
}

TEST_F(PlotPicture, FillOfOneSeriesLiesOverTheGrid) {
    view_.lines = true;
    view_.alpha = 0.25;
    view_.twoSeries = false;
    SetSeries({6, 6}, {});
    Draw();
    EXPECT_EQ(picture_.At(14, 2), BlendColor(Grid, First, 0.25));
    EXPECT_EQ(picture_.At(13, 2), BlendColor(Background, First, 0.25));
    EXPECT_EQ(picture_.At(12, 2), Grid);
}

TEST_F(PlotPicture, WhatIsNotANumberDrawsNothing) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    view_.twoSeries = false;
    SetSeries({nan, -infinity, infinity, 1e300}, {});
    Draw();
    EXPECT_EQ(Rows()[7], "+....|.......11+");
    EXPECT_EQ(Rows()[2], "+....|-.-.-.-11+");
}

// Margin and labels leave no room for a plot: the axis is outside, and nothing is written out of bounds.
TEST_F(PlotPicture, HoldsWithoutAPlot) {
    SetSeries({6, 6, 6}, {6, 6, 6});
    for (std::int32_t size = 1; size <= 14; ++size) {
        Picture small(size, size, Background);
        for (const std::int32_t margin : {0, 3, 20}) {
            scale_.layout = ComputePlotLayout(size, size, margin, 9, 30);
            scale_.plotHeight = scale_.layout.plotBottom - scale_.layout.plotTop;
            scale_.columns = PlotColumns(scale_.layout);
            for (const bool lines : {false, true}) {
                view_.lines = lines;
                view_.alpha = 0.5;
                const PlotWindow window = MakePlotWindow(view_, scale_);
                EXPECT_EQ(window.n, 0);
                for (const PlotLine& line : DrawPlot(small.Buffer(), view_, scale_, window, margin)) {
                    EXPECT_TRUE(line.points.empty());
                }
                EXPECT_EQ(small.At(0, 0), FrameColor);
            }
        }
    }
}

TEST_F(PlotPicture, ReadoutOfThePointUnderTheMouse) {
    view_.kind = GraphKind::Network;
    view_.firstName = L"Bajada";
    view_.secondName = L"Subida";
    SetSeries({1, 2, 6, 3}, {0, 5, 1, 3});
    GraphSeries series;
    series.periodMs = 1000;
    const PlotWindow window = MakePlotWindow(view_, scale_);
    struct Row {
        const char* reason;
        HoverState hover;
        bool found;
        std::int32_t firstY, secondY;
    };
    const std::vector<Row> rows = {
        {"the newest", {true, 14, 5}, true, 5, 5},
        {"one before, wherever the mouse is in its column", {true, 13, -9}, true, 2, 7},
        {"two before", {true, 12, 5}, true, 6, 3},
        {"the oldest: a 0 lies one pixel over the baseline", {true, 11, 5}, true, 7, 7},
        {"no history yet", {true, 10, 5}, false, 0, 0},
        {"in the margin", {true, 15, 5}, false, 0, 0},
        {"not over the graph", {false, 14, 5}, false, 0, 0},
    };
    for (const Row& row : rows) {
        const auto readout = ReadPlot(view_, series, scale_, window, row.hover, L',');
        ASSERT_EQ(readout.has_value(), row.found) << row.reason;
        if (!row.found) continue;
        EXPECT_EQ(readout->x, row.hover.x) << row.reason;
        EXPECT_EQ(readout->top, scale_.layout.plotTop) << row.reason;
        EXPECT_EQ(readout->bottom, scale_.layout.plotBottom) << row.reason;
        ASSERT_EQ(readout->markers.size(), 2U) << row.reason;
        EXPECT_EQ(readout->markers[0].y, row.firstY) << row.reason;
        EXPECT_EQ(readout->markers[1].y, row.secondY) << row.reason;
        EXPECT_EQ(readout->markers[0].color, ReadableColor(First, Background)) << row.reason;
        EXPECT_EQ(readout->markers[1].color, ReadableColor(Second, Background)) << row.reason;
        EXPECT_EQ(readout->boxY, std::min(row.firstY, row.secondY)) << row.reason;
        EXPECT_EQ(readout->lines.back().text, L"hace " + std::to_wstring(14 - row.hover.x) + L" s") << row.reason;
    }
}

// The marker sits on the smoothed curve, the text shows the raw sample.
TEST_F(PlotPicture, ReadoutOfALine) {
    view_.kind = GraphKind::Cpu;
    view_.isPercent = true;
    view_.twoSeries = false;
    view_.lines = true;
    view_.smoothing = 1;
    view_.firstName = L"CPU";
    SetSeries({0, 0, 6, 0, 0}, {});
    const PlotWindow window = MakePlotWindow(view_, scale_);
    const auto readout = ReadPlot(view_, {}, scale_, window, {true, 12, 5}, L',');
    ASSERT_TRUE(readout.has_value());
    ASSERT_EQ(readout->markers.size(), 1U);
    EXPECT_EQ(readout->markers[0].y, 6);
    EXPECT_EQ(readout->boxY, 6);
    EXPECT_EQ(readout->lines[0].text, L"CPU: 6 %");
}

TEST_F(PlotPicture, NoReadoutWithoutPoints) {
    EXPECT_FALSE(ReadPlot(view_, {}, scale_, MakePlotWindow(view_, scale_), {true, 14, 5}, L',').has_value());
}

}  // namespace
}  // namespace kestrane
