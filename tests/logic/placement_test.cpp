#include "graph/placement.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "support/geometry_print.h"

namespace kestrane {
namespace {

constexpr std::int32_t Lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();
constexpr Rect FullHd = {0, 0, 1920, 1040};

TEST(TaskbarAnchorRect, StandsAtTheCornerOfTheNotificationArea) {
    struct Row {
        const char* reason;
        std::uint32_t edge;
        Rect workArea;
        Rect anchor;
    };
    const std::vector<Row> rows = {
        {"bottom", TaskbarBottom, FullHd, {1430, 890, 1920, 1040}},
        {"left", TaskbarLeft, FullHd, {0, 890, 490, 1040}},
        {"top", TaskbarTop, FullHd, {1430, 0, 1920, 150}},
        {"right, as at the bottom", TaskbarRight, FullHd, {1430, 890, 1920, 1040}},
        {"a monitor left of and above the first", TaskbarBottom, {-1920, -1080, 0, 0}, {-490, -150, 0, 0}},
        {"no work area at all", TaskbarBottom, {0, 0, 0, 0}, {-490, -150, 0, 0}},
        {"at the start of the range",
         TaskbarBottom,
         {Lowest, Lowest, Lowest, Lowest},
         {Lowest, Lowest, Lowest + 490, Lowest + 150}},
        {"at the end of the range",
         TaskbarTop,
         {Highest, Highest, Highest, Highest},
         {Highest - 490, Highest, Highest, Highest}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(TaskbarAnchorRect(row.edge, row.workArea, 490, 150), row.anchor) << row.reason;
    }
}

TEST(StackedGraphRect, EachKindStartsOneStepFurther) {
    struct Row {
        const char* reason;
        std::uint32_t edge;
        Rect workArea;
        GraphKind kind;
        Rect place;
    };
    const std::vector<Row> rows = {
        {"network at the anchor", TaskbarBottom, FullHd, GraphKind::Network, {1430, 890, 1920, 1040}},
        {"twice the height", TaskbarBottom, FullHd, GraphKind::Cpu, {1430, 740, 1920, 1040}},
        {"three times the height", TaskbarBottom, FullHd, GraphKind::Disk, {1430, 590, 1920, 1040}},
        {"beside a taskbar at the left", TaskbarLeft, FullHd, GraphKind::Cpu, {0, 740, 490, 1040}},
        {"under a taskbar at the top", TaskbarTop, {0, 40, 1920, 1080}, GraphKind::Network, {1430, 40, 1920, 190}},
        {"the height falls to nothing", TaskbarTop, {0, 40, 1920, 1080}, GraphKind::Cpu, {1430, 190, 1920, 190}},
        {"and below it", TaskbarTop, {0, 40, 1920, 1080}, GraphKind::Disk, {1430, 340, 1920, 190}},
        {"held at the top of a low screen", TaskbarBottom, {0, 10, 800, 240}, GraphKind::Cpu, {310, 10, 800, 240}},
        {"held above the bottom of a low screen", TaskbarTop, {0, 0, 800, 240}, GraphKind::Cpu, {310, 90, 800, 150}},
        {"a screen lower than the window", TaskbarBottom, {0, 0, 800, 100}, GraphKind::Network, {310, 0, 800, 100}},
        {"at the start of the range",
         TaskbarBottom,
         {Lowest, Lowest, Lowest, Lowest},
         GraphKind::Disk,
         {Lowest, Lowest, Lowest + 490, Lowest + 150}},
        {"at the end of the range",
         TaskbarTop,
         {Highest, Highest, Highest, Highest},
         GraphKind::Disk,
         {Highest - 490, Highest, Highest, Highest}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(StackedGraphRect(row.edge, row.workArea, 490, 150, row.kind), row.place) << row.reason;
    }
}

TEST(RectCenter, HoldsForAnyRectangle) {
    EXPECT_EQ(RectCenter({0, 1040, 1920, 1080}), (Point{960, 1060}));
    EXPECT_EQ(RectCenter({-1920, -40, 0, 0}), (Point{-960, -20}));
    EXPECT_EQ(RectCenter({Lowest, Highest, Highest, Highest}), (Point{-1, Highest}));
}

TEST(ResizeEdgesFromSizing, NamesTheSidesOfEachSizingValue) {
    const std::vector<std::uint32_t> edges = {0, 1, 4, 2, 3, 6, 8, 9, 12, 0, 0};
    for (std::size_t sizing = 0; sizing < edges.size(); ++sizing) {
        EXPECT_EQ(ResizeEdgesFromSizing(sizing), edges[sizing]) << "WMSZ_ value " << sizing;
    }
    EXPECT_EQ(ResizeEdgesFromSizing(0xFFFFFFFFFFFFFFFFU), 0U);
}

TEST(HitTestGraph, DividesTheSurfaceIntoNineParts) {
    const Rect rect = {100, 200, 300, 300};
    struct Row {
        const char* reason;
        Point point;
        std::int32_t code;
    };
    const std::vector<Row> rows = {
        {"top left", {100, 200}, 13},
        {"top left, last of the bands", {104, 204}, 13},
        {"top", {105, 204}, 12},
        {"top, last", {294, 200}, 12},
        {"top right", {295, 204}, 14},
        {"left", {104, 205}, 10},
        {"left, last", {104, 294}, 10},
        {"middle, first", {105, 205}, 2},
        {"middle, last", {294, 294}, 2},
        {"right", {295, 205}, 11},
        {"bottom left", {104, 295}, 16},
        {"bottom", {105, 295}, 15},
        {"bottom right", {295, 295}, 17},
        {"left of the window", {-5000, 250}, 10},
        {"below the window", {200, 5000}, 15},
        {"the ends of the range", {Lowest, Highest}, 16},
    };
    for (const Row& row : rows)
        EXPECT_EQ(HitTestGraph(rect, row.point, 5), row.code) << row.reason;
}

TEST(HitTestGraph, LeftAndTopWinOnATinyWindow) {
    EXPECT_EQ(HitTestGraph({0, 0, 4, 4}, {3, 3}, 5), 13);
    EXPECT_EQ(HitTestGraph({0, 0, 4, 100}, {3, 50}, 5), 10);
    EXPECT_EQ(HitTestGraph({0, 0, 100, 4}, {50, 3}, 5), 12);
    EXPECT_EQ(HitTestGraph({Lowest, Lowest, Lowest, Lowest}, {Highest, Highest}, 5), 17);
}

}  // namespace
}  // namespace kestrane
