#include "base/geometry.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "support/geometry_print.h"

namespace kestrane {
namespace {

constexpr std::int32_t Lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();

TEST(ScaleForDpi, RoundsHalvesAwayFromZero) {
    struct Row {
        std::int32_t value;
        std::uint32_t dpi;
        std::int32_t scaled;
    };
    const std::vector<Row> rows = {
        {490, 96, 490},
        {490, 120, 613},  // 612.5
        {-490, 120, -613},
        {150, 144, 225},
        {5, 120, 6},    // 6.25
        {-5, 120, -6},  // -6.25
        {1, 48, 1},     // 0.5
        {-1, 48, -1},
        {1, 47, 0},
        {-1, 47, 0},
        {10, 0, 0},
        {0, 192, 0},
        {Highest, 96, Highest},
        {Lowest, 96, Lowest},
        {Highest, 97, -1},  // beyond 32 bits, like MulDiv
        {Lowest, 97, -1},
        {Highest, 4294967295U, -1},
        {Lowest, 4294967295U, -1},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(ScaleForDpi(row.value, row.dpi), row.scaled) << row.value << " at " << row.dpi;
    }
}

TEST(Rect, IsMadeByCornerAndSizeAndStopsAtTheEndOfTheRange) {
    EXPECT_EQ(RectOf(-10, 20, 30, 40), (Rect{-10, 20, 20, 60}));
    EXPECT_EQ(RectOf(Highest - 1, Highest - 2, 5, 6), (Rect{Highest - 1, Highest - 2, Highest, Highest}));
    EXPECT_EQ(RectOf(Lowest, Lowest, -1, -2), (Rect{Lowest, Lowest, Lowest, Lowest}));
}

TEST(Rect, HasASizeThatStopsAtTheEndOfTheRange) {
    EXPECT_EQ(RectWidth({-10, 0, 20, 0}), 30);
    EXPECT_EQ(RectHeight({0, -10, 0, 20}), 30);
    EXPECT_EQ(RectWidth({Lowest, 0, Highest, 0}), Highest);
    EXPECT_EQ(RectHeight({0, Lowest, 0, Highest}), Highest);
    EXPECT_EQ(RectWidth({Highest, 0, Lowest, 0}), Lowest);
    EXPECT_EQ(RectHeight({0, Highest, 0, Lowest}), Lowest);
}

}  // namespace
}  // namespace kestrane
