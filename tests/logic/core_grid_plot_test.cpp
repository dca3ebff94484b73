#include "graph/core_grid_plot.h"

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

constexpr ColorValue Background = 0x000000;
constexpr ColorValue Contrast = 0xE0E0E0;
constexpr ColorValue Border = 0x434343;  // BlendColor(0, 0xE0E0E0, 0.3)
constexpr ColorValue Performance = 0xFF0000;
constexpr ColorValue Efficiency = 0x00FF00;
const Letters Legend = {{Background, '.'}, {Contrast, '#'},    {FrameColor, '+'},
                        {Border, 'o'},     {Performance, 'p'}, {Efficiency, 'e'}};

/// A window of 32 by 22 without margin, text 2 pixels high, a gap of 2: the grid is 30 by 15 at (1, 1) and the baseline
/// in row 18. Two processors are side by side, in cells of 14 by 15, whose plots are 12 by 13.
class CoreGridPicture : public testing::Test {
  protected:
    CoreGridPicture() {
        settings_.per_core = true;
        settings_.cpu.style = 0;
        settings_.colors[CpuGraphPerf] = Performance;
        settings_.colors[CpuGraphEff] = Efficiency;
        series_.cores = &cores_;
        series_.periodMs = 1000;
    }

    void SetCores(const std::vector<Values>& cores) {
        cores_.clear();
        for (const Values& values : cores)
            cores_.push_back(RingOf(values, CoreSeriesCapacity));
    }

    CoreGridDrawing Draw(const HoverState& hover = {}) {
        const GraphView view = MakeGraphView(GraphKind::Cpu, settings_, series_);
        return DrawCoreGrid(picture_.Buffer(), view, settings_, series_, {32, 22, 0, 2, L','}, 2, hover);
    }

    AppSettings settings_ = MakeDefaultSettings();
    std::vector<MetricRing<double>> cores_;
    std::vector<std::uint8_t> classes_;
    GraphSeries series_;
    Picture picture_{32, 22, Background};
};

TEST_F(CoreGridPicture, BarsInTheColourOfTheClass) {
    SetCores({{100, 50, 25, 0}, {100, 100, 100, 100, 100, 100, 100, 100, 100, 100, 100, 100, 50}});
    classes_ = {1, 0};
    series_.coreClasses = &classes_;
    const CoreGridDrawing drawing = Draw();
    EXPECT_TRUE(drawing.polylines.empty());
    EXPECT_EQ(drawing.coreMax, 100);
    EXPECT_FALSE(drawing.readout.has_value());
    // clang-format off
    const Strings expected = {
        "++++++++++++++++++++++++++++++++",
        "+oooooooooooooo..oooooooooooooo+",
        "+o........p...o..oeeeeeeeeeee.o+",
        "+o........p...o..oeeeeeeeeeee.o+",
        "+o........p...o..oeeeeeeeeeee.o+",
        "+o........p...o..oeeeeeeeeeee.o+",
        "+o........p...o..oeeeeeeeeeee.o+",
        "+o........p...o..oeeeeeeeeeee.o+",
        "+o........pp..o..oeeeeeeeeeeeeo+",
        "+o........pp..o..oeeeeeeeeeeeeo+",
        "+o........pp..o..oeeeeeeeeeeeeo+",
        "+o........pp..o..oeeeeeeeeeeeeo+",
        "+o........ppp.o..oeeeeeeeeeeeeo+",
        "+o........ppp.o..oeeeeeeeeeeeeo+",
        "+o........ppp.o..oeeeeeeeeeeeeo+",
        "+oooooooooooooo..oooooooooooooo+",
        "+..............................+",
        "+..............................+",
        "++++++++++++++++++++++++++++++++",
        "+..............................+",
        "+..............................+",
        "++++++++++++++++++++++++++++++++",
    };
    // clang-format on
    EXPECT_EQ(picture_.Rows(Legend), expected);
}

TEST_F(CoreGridPicture, TheGreatestIsOfVisiblePointsOnly) {
    Values old(13, 10);
    old[0] = 99;  // one column too far back
    SetCores({old, {20, std::numeric_limits<double>::quiet_NaN()}});
    EXPECT_EQ(Draw().coreMax, 20);
    SetCores({{}, {}});
    EXPECT_EQ(Draw().coreMax, 0);
}

TEST_F(CoreGridPicture, LinesOnlyWhereThereIsHistory) {
    settings_.cpu.style = 1;
    settings_.cpu.smoothing = 0;
    settings_.cpu.fill = 0;
    SetCores({{0, 100, 50}, {}});
    const CoreGridDrawing drawing = Draw();
    ASSERT_EQ(drawing.polylines.size(), 2U);
    EXPECT_EQ(drawing.polylines[0].color, Performance);
    EXPECT_EQ(drawing.polylines[0].points, (Points{{11, 14}, {12, 2}, {13, 8}}));
    EXPECT_TRUE(drawing.polylines[1].points.empty());
    EXPECT_EQ(picture_.Rows(Legend)[14], "+o............o..o............o+") << "no fill, no pixels";
}

TEST_F(CoreGridPicture, LinesAreSmoothedAndFilled) {
    settings_.cpu.style = 1;
    settings_.cpu.smoothing = 1;
    settings_.cpu.fill = 50;
    SetCores({{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 100, 100, 100, 0}, {}});
    const CoreGridDrawing drawing = Draw();
    const auto& points = drawing.polylines[0].points;
    ASSERT_EQ(points.size(), 12U);
    EXPECT_EQ(points[11], (Point{13, 8}));  // the mean of 100 and 0
    EXPECT_EQ(points[10], (Point{12, 6}));  // the mean of 100, 100 and 0
    EXPECT_EQ(points[9], (Point{11, 2}));
    EXPECT_EQ(drawing.coreMax, 100) << "raw";
    const Letters letters = {
        {Background, '.'}, {FrameColor, '+'}, {Border, 'o'}, {BlendColor(Background, Performance, 0.5), 'p'}};
    EXPECT_EQ(picture_.Rows(letters)[2], "+o.........p..o..o............o+");
    EXPECT_EQ(picture_.Rows(letters)[14], "+o.......pppppo..o............o+");
}

TEST_F(CoreGridPicture, ProcessorsWithoutAClassArePerformance) {
    classes_ = {0, 1, 7};
    EXPECT_FALSE(IsPerformanceCore(&classes_, 0));
    EXPECT_TRUE(IsPerformanceCore(&classes_, 1));
    EXPECT_TRUE(IsPerformanceCore(&classes_, 2)) << "any class but 0";
    EXPECT_TRUE(IsPerformanceCore(&classes_, 3)) << "beyond the table";
    EXPECT_TRUE(IsPerformanceCore(nullptr, 0)) << "no table";
    SetCores({{100}, {100}});
    classes_ = {0};
    series_.coreClasses = &classes_;
    Draw();
    EXPECT_EQ(picture_.At(13, 14), Efficiency);
    EXPECT_EQ(picture_.At(29, 14), Performance);
}

TEST_F(CoreGridPicture, TransparentClassesTakeTheBackground) {
    settings_.colors[CpuGraphPerf] = ColorNone;
    settings_.colors[CpuGraphBg] = 0x000000;
    SetCores({{100}, {100}});
    Draw();
    EXPECT_EQ(picture_.At(13, 14), Background);
}

TEST_F(CoreGridPicture, TheCellUnderTheMouseIsOutlinedAndRead) {
    SetCores({{100}, {10, 50, 20}});
    classes_ = {1, 0};
    series_.coreClasses = &classes_;
    const auto drawing = Draw({true, 28, 5});
    EXPECT_EQ(picture_.Rows(Legend)[1], "+oooooooooooooo..##############+");
    EXPECT_EQ(picture_.Rows(Legend)[15], "+oooooooooooooo..##############+");
    EXPECT_EQ(picture_.Rows(Legend)[2], "+o...........po..#............#+");
    ASSERT_TRUE(drawing.readout.has_value());
    EXPECT_EQ(drawing.readout->x, 28);
    EXPECT_EQ(drawing.readout->top, 2);
    EXPECT_EQ(drawing.readout->bottom, 15);
    ASSERT_EQ(drawing.readout->markers.size(), 1U);
    EXPECT_EQ(drawing.readout->markers[0].y, 8);
    EXPECT_EQ(drawing.readout->markers[0].color, Efficiency);
    EXPECT_EQ(drawing.readout->boxY, 8);
    ASSERT_EQ(drawing.readout->lines.size(), 2U);
    EXPECT_EQ(drawing.readout->lines[0].text, L"Hilo 1 (eficiencia): 50 %");
    EXPECT_EQ(drawing.readout->lines[1].text, L"hace 1 s");
}

TEST_F(CoreGridPicture, TheOutlineStaysWhereThereIsNothingToRead) {
    SetCores({{100}, {10, 50, 20}});
    struct Row {
        const char* reason;
        HoverState hover;
        bool firstOutlined, secondOutlined, isRead;
    };
    const std::vector<Row> rows = {
        {"before the history", {true, 25, 5}, false, true, false},
        {"on the cell's border", {true, 30, 5}, false, true, false},
        {"the oldest point", {true, 27, 5}, false, true, true},
        {"in the gap", {true, 15, 5}, false, false, false},
        {"on the legend", {true, 28, 20}, false, false, false},
        {"in the first cell", {true, 13, 1}, true, false, true},
        {"not over the graph", {false, 28, 5}, false, false, false},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(Draw(row.hover).readout.has_value(), row.isRead) << row.reason;
        EXPECT_EQ(picture_.At(1, 1) == Contrast, row.firstOutlined) << row.reason;
        EXPECT_EQ(picture_.At(30, 1) == Contrast, row.secondOutlined) << row.reason;
    }
}

// The readout of a line shows the raw sample, and its marker sits on the smoothed curve.
TEST_F(CoreGridPicture, ReadoutOfALine) {
    settings_.cpu.style = 1;
    settings_.cpu.smoothing = 1;
    SetCores({{0, 0, 0, 100, 0, 0}, {}});
    const auto drawing = Draw({true, 11, 5});
    ASSERT_TRUE(drawing.readout.has_value());
    EXPECT_EQ(drawing.coreMax, 100) << "raw as well";
    EXPECT_EQ(drawing.readout->lines[0].text, L"Hilo 0 (rendimiento): 100 %");
    EXPECT_EQ(drawing.readout->markers[0].y, 11);  // a third of 13 above the border in row 15
}

// A number without a processor still has a cell. Its ring holds zeros.
TEST_F(CoreGridPicture, HolesHaveCellsThatShowZero) {
    classes_ = {0};
    series_.coreClasses = &classes_;
    SetCores({{100, 100}, {0, 0}});
    const auto drawing = Draw({true, 29, 5});
    for (std::int32_t y = 2; y < 15; ++y)
        EXPECT_EQ(picture_.Rows(Legend)[static_cast<std::size_t>(y)].substr(17), "#............#+");
    ASSERT_TRUE(drawing.readout.has_value());
    EXPECT_EQ(drawing.readout->lines[0].text, L"Hilo 1 (rendimiento): 0 %");
    EXPECT_EQ(drawing.readout->markers[0].y, 14) << "one above the border";
}

TEST_F(CoreGridPicture, AHoleIsOfTheClassThatTheTableSays) {
    classes_ = {1, 0};
    series_.coreClasses = &classes_;
    SetCores({{100, 100}, {0, 0}});
    const auto drawing = Draw({true, 29, 5});
    ASSERT_TRUE(drawing.readout.has_value());
    EXPECT_EQ(drawing.readout->lines[0].text, L"Hilo 1 (eficiencia): 0 %");
    EXPECT_EQ(drawing.readout->lines[0].color, ReadableColor(Efficiency, HoverBoxColor));
    EXPECT_EQ(drawing.readout->markers[0].color, Efficiency);
    settings_.cpu.style = 1;
    const auto lines = Draw().polylines;
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[1].color, Efficiency);
    EXPECT_EQ(lines[1].points, (Points{{28, 14}, {29, 14}}));
}

// The marker is on the curve and has its colour; the text is on the dark box and must be readable there.
TEST_F(CoreGridPicture, TheMarkerHasTheColourOfTheClassAsItStands) {
    settings_.colors[CpuGraphPerf] = 0x111111;
    SetCores({{100}, {}});
    const auto drawing = Draw({true, 13, 5});
    ASSERT_TRUE(drawing.readout.has_value());
    EXPECT_EQ(drawing.readout->markers[0].color, 0x111111U);
    EXPECT_EQ(drawing.readout->lines[0].color, ReadableColor(0x111111, HoverBoxColor));
}

// From one processor to more than fit, at any window size: nothing is written out of bounds.
TEST_F(CoreGridPicture, HoldsForEveryNumberAndSize) {
    classes_ = {0, 1, 0};
    series_.coreClasses = &classes_;
    for (const std::size_t count : {1U, 2U, 3U, 7U, 64U, 256U}) {
        SetCores(std::vector<Values>(count, Values(40, 70)));
        for (const std::int32_t size : {1, 2, 3, 5, 30, 100}) {
            for (const std::int32_t style : {0, 1}) {
                settings_.cpu.style = style;
                Picture picture(size, size, Background);
                const GraphView view = MakeGraphView(GraphKind::Cpu, settings_, series_);
                const auto drawing = DrawCoreGrid(picture.Buffer(), view, settings_, series_, {size, size, 4, 9, L','},
                                                  3, {true, size / 2, size / 2});
                EXPECT_EQ(drawing.polylines.size(), style == 1 ? count : 0U);
                EXPECT_EQ(picture.At(0, 0), FrameColor);
            }
        }
    }
}

}  // namespace
}  // namespace kestrane
