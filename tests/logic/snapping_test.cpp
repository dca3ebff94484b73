#include "graph/snapping.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <vector>

#include "support/geometry_print.h"

namespace kestrane {
namespace {

using Edges = std::vector<std::int32_t>;
constexpr std::int32_t Lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();

TEST(NearestSnap, TakesTheNearestWithinReach) {
    struct Row {
        const char* reason;
        Edges candidates;
        std::int32_t position;
        std::int32_t distance;
        std::optional<std::int32_t> step;
    };
    const std::vector<Row> rows = {
        {"the nearest lies before", {0, 1920, 100}, 105, 10, -5},
        {"just out of reach", {0, 1920, 100}, 111, 10, std::nullopt},
        {"the reach is inclusive before", {100}, 110, 10, -10},
        {"the reach is inclusive behind", {100}, 90, 10, 10},
        {"equally near: the first stays", {95, 105}, 100, 10, -5},
        {"equally near, the other order", {105, 95}, 100, 10, 5},
        {"a later one replaces only when strictly nearer", {95, 104}, 100, 10, 4},
        {"on the edge already", {100}, 100, 10, 0},
        {"nothing to snap to", {}, 100, 10, std::nullopt},
        {"no reach at all but on the edge", {99, 100}, 100, 0, 0},
        {"a negative reach holds nothing", {100}, 100, -1, std::nullopt},
        {"the whole range apart", {Lowest}, Highest, 10, std::nullopt},
        {"the whole range apart, backwards", {Highest}, Lowest, 10, std::nullopt},
        {"at the end of the range", {Highest}, Highest - 3, 10, 3},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(NearestSnap(row.candidates, row.position, row.distance), row.step) << row.reason;
    }
}

TEST(CollectSnapEdges, WorkAreaFirstThenBothSidesOfEachWindow) {
    Edges xs = {7};  // replaced, not appended to
    Edges ys;
    CollectSnapEdges({{10, 20, 30, 40}, {50, 60, 70, 80}}, {0, 1, 1920, 1040}, xs, ys);
    EXPECT_EQ(xs, (Edges{0, 1920, 10, 30, 50, 70}));
    EXPECT_EQ(ys, (Edges{1, 1040, 20, 40, 60, 80}));
    CollectSnapEdges({}, {0, 0, 800, 600}, xs, ys);
    EXPECT_EQ(xs, (Edges{0, 800}));
    EXPECT_EQ(ys, (Edges{0, 600}));
}

TEST(SnapMovedRect, MovesTheNearerSideAndKeepsTheSize) {
    struct Row {
        const char* reason;
        Rect rect;
        Edges xs;
        Edges ys;
        Rect snapped;
    };
    const std::vector<Row> rows = {
        {"left side only", {3, 100, 493, 250}, {0, 1920}, {0, 1040}, {0, 100, 490, 250}},
        {"right side only", {1425, 100, 1915, 250}, {0, 1920}, {0, 1040}, {1430, 100, 1920, 250}},
        {"both sides equally near: the left one's", {104, 50, 196, 90}, {100, 200}, {}, {100, 50, 192, 90}},
        {"both sides, the right one nearer", {105, 50, 197, 90}, {100, 200}, {}, {108, 50, 200, 90}},
        {"both sides, the left one nearer", {103, 50, 195, 90}, {100, 200}, {}, {100, 50, 192, 90}},
        {"top side only", {50, 8, 90, 100}, {}, {0, 1040}, {50, 0, 90, 92}},
        {"bottom side only", {50, 900, 90, 1035}, {}, {0, 1040}, {50, 905, 90, 1040}},
        {"top and bottom equally near: the top one's", {50, 104, 90, 196}, {}, {100, 200}, {50, 100, 90, 192}},
        {"both axes at once", {9, 1000, 109, 1031}, {0, 1920}, {0, 1040}, {0, 1009, 100, 1040}},
        {"out of reach", {11, 100, 501, 250}, {0, 1920}, {0, 1040}, {11, 100, 501, 250}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(SnapMovedRect(row.rect, row.xs, row.ys, 10), row.snapped) << row.reason;
    }
}

TEST(SnapSizedRect, MovesOnlyTheSidesThatAreDragged) {
    struct Row {
        const char* reason;
        Rect rect;
        std::uint32_t edges;
        Rect snapped;
    };
    const std::vector<Row> rows = {
        {"left", {3, 100, 493, 250}, EdgeLeft, {0, 100, 493, 250}},
        {"right", {300, 100, 995, 250}, EdgeRight, {300, 100, 1000, 250}},
        {"top", {100, 4, 400, 250}, EdgeTop, {100, 0, 400, 250}},
        {"bottom", {100, 100, 400, 792}, EdgeBottom, {100, 100, 400, 800}},
        {"a corner: each side by itself", {4, 5, 400, 250}, EdgeLeft | EdgeTop, {0, 0, 400, 250}},
        {"the side that is not dragged stays", {3, 4, 400, 250}, EdgeRight | EdgeBottom, {3, 4, 400, 250}},
        {"no side at all", {3, 4, 997, 796}, 0, {3, 4, 997, 796}},
        {"nothing in reach", {300, 100, 900, 250}, EdgeLeft | EdgeTop, {300, 100, 900, 250}},
        {"left: the snap would leave 199, so it is dropped", {-4, 100, 199, 250}, EdgeLeft, {-4, 100, 199, 250}},
        {"left: the snap leaves exactly 200", {-4, 100, 200, 250}, EdgeLeft, {0, 100, 200, 250}},
        {"right: dropped", {801, 100, 1004, 250}, EdgeRight, {801, 100, 1004, 250}},
        {"right: exactly 200", {800, 100, 1004, 250}, EdgeRight, {800, 100, 1000, 250}},
        {"top: dropped", {100, -6, 400, 79}, EdgeTop, {100, -6, 400, 79}},
        {"top: exactly 80", {100, -6, 400, 80}, EdgeTop, {100, 0, 400, 80}},
        {"bottom: dropped", {100, 721, 400, 805}, EdgeBottom, {100, 721, 400, 805}},
        {"bottom: exactly 80", {100, 720, 400, 805}, EdgeBottom, {100, 720, 400, 800}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(SnapSizedRect(row.rect, row.edges, {0, 1000}, {0, 800}, 10, 200, 80), row.snapped) << row.reason;
    }
}

TEST(MovedRect, ShiftsAllSidesWithoutOverflow) {
    EXPECT_EQ(MovedRect({10, 20, 30, 40}, -5, 7), (Rect{5, 27, 25, 47}));
    EXPECT_EQ(MovedRect({10, 20, 30, 40}, Highest, Lowest), (Rect{Highest, Lowest + 20, Highest, Lowest + 40}));
}

TEST(SizedRect, StopsAtTheMinimumSize) {
    struct Row {
        const char* reason;
        std::uint32_t edges;
        std::int32_t dx;
        std::int32_t dy;
        Rect sized;
    };
    const std::vector<Row> rows = {
        {"left outwards", EdgeLeft, -50, 9, {50, 100, 590, 250}},
        {"left inwards", EdgeLeft, 50, 9, {150, 100, 590, 250}},
        {"left stops 200 before the right side", EdgeLeft, 400, 0, {390, 100, 590, 250}},
        {"right outwards", EdgeRight, 50, 9, {100, 100, 640, 250}},
        {"right stops 200 behind the left side", EdgeRight, -400, 0, {100, 100, 300, 250}},
        {"top outwards", EdgeTop, 9, -50, {100, 50, 590, 250}},
        {"top stops 80 above the bottom", EdgeTop, 0, 100, {100, 170, 590, 250}},
        {"bottom outwards", EdgeBottom, 9, 50, {100, 100, 590, 300}},
        {"bottom stops 80 below the top", EdgeBottom, 0, -100, {100, 100, 590, 180}},
        {"a corner moves two sides", EdgeRight | EdgeBottom, 1, 2, {100, 100, 591, 252}},
        {"no side", 0, 50, 50, {100, 100, 590, 250}},
        {"as far as numbers go", EdgeLeft | EdgeTop, Lowest, Lowest, {Lowest + 100, Lowest + 100, 590, 250}},
        {"and the other way", EdgeRight | EdgeBottom, Highest, Highest, {100, 100, Highest, Highest}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(SizedRect({100, 100, 590, 250}, row.edges, row.dx, row.dy, 200, 80), row.sized) << row.reason;
    }
}

// A rectangle from a hand-edited file can be at either end of the range, where nothing may overflow.
TEST(Snapping, HoldsAtTheEndsOfTheRange) {
    const Rect far = {Highest - 100, Highest - 100, Highest, Highest};
    EXPECT_EQ(SnapMovedRect(far, {Lowest, Highest}, {Lowest, Highest}, 10), far);
    EXPECT_EQ(SizedRect({Lowest, Lowest, Lowest + 10, Lowest + 10}, EdgeLeft | EdgeTop, -5, -5, 200, 80),
              (Rect{Lowest, Lowest, Lowest + 10, Lowest + 10}));
    EXPECT_EQ(SnapSizedRect({Lowest, Lowest, Highest, Highest}, 15, {Lowest, Highest}, {Lowest, Highest}, 10, 200, 80),
              (Rect{Lowest, Lowest, Highest, Highest}));
}

}  // namespace
}  // namespace kestrane
