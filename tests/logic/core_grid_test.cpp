#include "graph/core_grid.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <vector>

namespace kestrane {

static void PrintTo(const GridCell& cell, std::ostream* out) {
    *out << "(" << cell.x << ", " << cell.y << ", " << cell.width << ", " << cell.height << ")";
}

namespace {

using Numbers = std::vector<std::int32_t>;
constexpr std::int32_t Lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();

TEST(ChooseGridRows, ComesNearestToTheWantedShape) {
    struct Row {
        const char* reason;
        std::int32_t count, width, height, gap;
        std::int32_t rows;
    };
    const std::vector<Row> rows = {
        {"scores 3.2, 1.32, 2.74", 8, 470, 100, 3, 2},
        {"a single processor", 1, 470, 100, 3, 1},
        {"none", 0, 470, 100, 3, 1},
        {"fewer than none", -5, 470, 100, 3, 1},
        {"no cell of at least 12 by 8", 100, 30, 20, 3, 1},
        {"exactly 12 by 8 passes", 4, 24, 16, 0, 2},
        {"11.5 wide does not", 4, 23, 16, 0, 1},
        {"a high and narrow window", 4, 30, 400, 3, 4},
        {"a wide and low window", 4, 800, 20, 3, 1},
        {"no window", 8, 0, 0, 3, 1},
        {"a window turned inside out", 8, -100, -100, 3, 1},
        {"the ends of the range", 256, Highest, Lowest, Highest, 1},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(ChooseGridRows(row.count, row.width, row.height, row.gap), row.rows) << row.reason;
    }
}

TEST(ChooseGridRows, BetweenEqualScoresTheGreaterAreaWins) {
    // 1 row of 180 by 200 and 2 rows of 360 by 100 both score 2 and cover the same: the first stays.
    EXPECT_EQ(ChooseGridRows(2, 360, 200, 0), 1);
    // 2 rows of 52 by 52 and 3 rows of 108 by 33.3 both score 1.8, and the latter cover more.
    EXPECT_EQ(ChooseGridRows(3, 108, 108, 4), 3);
}

TEST(SplitIntoRows, LongerRowsComeFirst) {
    EXPECT_EQ(SplitIntoRows(10, 3), (Numbers{4, 3, 3}));
    EXPECT_EQ(SplitIntoRows(3, 7), (Numbers{1, 1, 1}));
    EXPECT_EQ(SplitIntoRows(8, 2), (Numbers{4, 4}));
    EXPECT_EQ(SplitIntoRows(5, 0), (Numbers{5}));
    EXPECT_EQ(SplitIntoRows(5, -9), (Numbers{5}));
    EXPECT_EQ(SplitIntoRows(0, 3), Numbers{});
    EXPECT_EQ(SplitIntoRows(-1, 3), Numbers{});
}

TEST(EdgePositions, RoundsEachPositionByItself) {
    struct Row {
        const char* reason;
        std::int32_t length, parts, gap;
        Numbers edges;
    };
    const std::vector<Row> rows = {
        {"size 23.5", 100, 4, 2, {0, 26, 51, 77, 102}},
        {"a single part", 100, 1, 5, {0, 105}},
        {"no gap", 10, 3, 0, {0, 3, 7, 10}},
        {"no part", 100, 0, 2, {0}},
        {"fewer than none", 100, -1, 2, {}},
        {"the gaps alone are longer", 5, 4, 3, {0, 3, 6, 9, 12}},
        {"no length", 0, 2, 0, {0, 0, 0}},
        {"a negative length", -50, 2, 3, {0, 3, 6}},
        {"the ends of the range", Highest, 2, Highest, {0, Highest, Highest}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(EdgePositions(row.length, row.parts, row.gap), row.edges) << row.reason;
    EXPECT_EQ(EdgePositions(1, 98, 0).at(49), 0) << "49 / 98 as doubles is just below a half";
}

TEST(ComputeCoreGrid, LaysCellsRowByRow) {
    using Cells = std::vector<GridCell>;
    EXPECT_EQ(ComputeCoreGrid(1, 100, 50, 3), (Cells{{0, 0, 100, 50}}));
    EXPECT_EQ(ComputeCoreGrid(0, 100, 50, 3), Cells{});
    EXPECT_EQ(ComputeCoreGrid(-1, 100, 50, 3), Cells{});
    // Five in two rows: the cells of the shorter row are wider, and each row ends at the full width.
    EXPECT_EQ(ComputeCoreGrid(5, 100, 50, 2),
              (Cells{{0, 0, 32, 24}, {34, 0, 32, 24}, {68, 0, 32, 24}, {0, 26, 49, 24}, {51, 26, 49, 24}}));
    EXPECT_EQ(ComputeCoreGrid(2, 100, 20, -7), (Cells{{0, 0, 50, 20}, {50, 0, 50, 20}}))
        << "a negative gap counts as 0";
    EXPECT_EQ(ComputeCoreGrid(2, 0, 0, 3), (Cells{{0, 0, 1, 1}, {3, 0, 1, 1}})) << "at least 1 by 1";
}

// At any size: one cell per processor, each at least 1 by 1, and if they fit, all are inside and do not overlap.
TEST(ComputeCoreGrid, HoldsForEveryNumberOfProcessors) {
    for (std::int32_t count = 1; count <= 256; ++count) {
        for (const auto& [width, height] : {std::pair{470, 100}, {1900, 1000}, {200, 80}, {5, 5}, {-20, 3}}) {
            const auto cells = ComputeCoreGrid(count, width, height, 3);
            ASSERT_EQ(cells.size(), static_cast<std::size_t>(count));
            for (std::size_t i = 0; i < cells.size(); ++i) {
                const GridCell& cell = cells[i];
                ASSERT_GE(cell.width, 1);
                ASSERT_GE(cell.height, 1);
                if (width < 1900 || count > 64) continue;
                ASSERT_LE(cell.x + cell.width, width);
                ASSERT_LE(cell.y + cell.height, height);
                ASSERT_EQ(CellAtPoint(cells, cell.x, cell.y), static_cast<std::int32_t>(i));
            }
        }
    }
    EXPECT_EQ(ComputeCoreGrid(256, Highest, Highest, Highest).size(), 256U);
    EXPECT_EQ(ComputeCoreGrid(256, Lowest, Lowest, Lowest).size(), 256U);
}

TEST(CellAtPoint, LeftAndTopInclusiveRightAndBottomExclusive) {
    const std::vector<GridCell> cells = {{0, 0, 10, 5}, {12, 0, 10, 5}, {5, 3, 10, 5}};
    struct Row {
        const char* reason;
        std::int32_t x, y;
        std::int32_t index;
    };
    const std::vector<Row> rows = {
        {"first corner", 0, 0, 0},
        {"last pixel", 9, 4, 0},
        {"in the gap", 10, 0, -1},
        {"second cell", 12, 0, 1},
        {"the first of two that overlap", 6, 4, 0},
        {"only in the third", 6, 5, 2},
        {"below", 0, 5, -1},
        {"left of all", -1, 0, -1},
        {"above all", 0, -1, -1},
        {"the ends of the range", Highest, Lowest, -1},
    };
    for (const Row& row : rows)
        EXPECT_EQ(CellAtPoint(cells, row.x, row.y), row.index) << row.reason;
    EXPECT_EQ(CellAtPoint({}, 0, 0), -1);
    EXPECT_EQ(CellAtPoint({{Highest - 1, 0, Highest, 1}}, Highest, 0), 0) << "a cell beyond the range";
}

}  // namespace
}  // namespace kestrane
