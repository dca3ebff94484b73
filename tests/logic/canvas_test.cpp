#include "tray/canvas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "support/pixel_picture.h"

namespace kestrane {
namespace {

constexpr std::int32_t Least = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Most = std::numeric_limits<std::int32_t>::max();
constexpr ColorValue Red = 0xFF0000;

std::string Picture(const Canvas& canvas) {
    return PixelPicture(canvas.pixels, static_cast<std::size_t>(canvas.size),
                        {{0xFF000000, '.'}, {0xFFFF0000, '#'}, {0, ' '}});
}

TEST(Canvas, StartsOpaqueBlackWithAtLeastOnePixel) {
    for (const std::int32_t edge : {Least, -1, 0, 1, 2, 3, 16, 20, 24, 32, 48}) {
        const Canvas canvas(edge);
        const std::int32_t size = std::max(edge, 1);
        EXPECT_EQ(canvas.size, size);
        EXPECT_EQ(canvas.pixels, std::vector<std::uint32_t>(static_cast<std::size_t>(size * size), 0xFF000000));
    }
}

TEST(PixelOf, MakesEveryColourOpaqueButNone) {
    EXPECT_EQ(PixelOf(ColorNone), 0U);
    EXPECT_EQ(PixelOf(0), 0xFF000000U);
    EXPECT_EQ(PixelOf(0x123456), 0xFF123456U);
    EXPECT_EQ(PixelOf(0xFFFFFF), 0xFFFFFFFFU);
}

TEST(Clear, SetsEveryPixel) {
    Canvas canvas(3);
    Clear(canvas, 0x123456);
    EXPECT_EQ(canvas.pixels, std::vector<std::uint32_t>(9, 0xFF123456));
    Clear(canvas, ColorNone);
    EXPECT_EQ(canvas.pixels, std::vector<std::uint32_t>(9, 0));
}

TEST(SetPixel, IgnoresWhatIsOutside) {
    Canvas canvas(3);
    for (const std::int32_t far : {Least, -1, 3, 4, Most}) {
        for (const std::int32_t near : {0, 1, 2}) {
            SetPixel(canvas, far, near, Red);
            SetPixel(canvas, near, far, Red);
            SetPixel(canvas, far, far, Red);
        }
    }
    EXPECT_EQ(Picture(canvas), Picture(Canvas(3)));
    SetPixel(canvas, 2, 0, Red);
    SetPixel(canvas, 0, 2, ColorNone);
    EXPECT_EQ(Picture(canvas), R"(
..#
...
 ..
)");
}

TEST(VerticalLine, GoesBothWaysAndIncludesBothEnds) {
    Canvas canvas(6);
    VerticalLine(canvas, 0, 1, 4, Red);
    VerticalLine(canvas, 1, 4, 1, Red);
    VerticalLine(canvas, 2, 3, 3, Red);
    VerticalLine(canvas, 3, -5, 1, Red);
    VerticalLine(canvas, 4, 4, 99, Red);
    VerticalLine(canvas, 5, Most, Least, Red);
    VerticalLine(canvas, 6, 0, 5, Red);
    VerticalLine(canvas, -1, 0, 5, Red);
    EXPECT_EQ(Picture(canvas), R"(
...#.#
##.#.#
##...#
###..#
##..##
....##
)");
}

TEST(VerticalLine, DrawsNothingAboveOrBelow) {
    Canvas canvas(3);
    VerticalLine(canvas, 1, -9, -1, Red);
    VerticalLine(canvas, 1, 3, 9, Red);
    EXPECT_EQ(Picture(canvas), Picture(Canvas(3)));
}

TEST(FillRectangle, IsCutByTheCanvas) {
    struct Row {
        std::int32_t x, y, width, height;
        const char* picture;
    };
    const std::vector<Row> rows = {
        {1, 1, 2, 1, "\n....\n.##.\n....\n....\n"},        {-1, -1, 2, 2, "\n#...\n....\n....\n....\n"},
        {3, 2, 9, 9, "\n....\n....\n...#\n...#\n"},        {Most, 0, Most, 4, "\n....\n....\n....\n....\n"},
        {Least, 0, Most, 4, "\n....\n....\n....\n....\n"}, {0, 0, 0, 4, "\n....\n....\n....\n....\n"},
        {2, 2, -2, 4, "\n....\n....\n....\n....\n"},       {-2, -2, Most, Most, "\n####\n####\n####\n####\n"},
    };
    for (const Row& row : rows) {
        Canvas canvas(4);
        FillRectangle(canvas, RectOf(row.x, row.y, row.width, row.height), Red);
        EXPECT_EQ(Picture(canvas), row.picture) << row.x << " " << row.y << " " << row.width << " " << row.height;
    }
}

TEST(DrawBorder, IsTheOutermostRing) {
    const std::vector<std::pair<std::int32_t, const char*>> rows = {
        {1, "\n#\n"},
        {2, "\n##\n##\n"},
        {3, "\n###\n#.#\n###\n"},
        {4, "\n####\n#..#\n#..#\n####\n"},
    };
    for (const auto& [size, picture] : rows) {
        Canvas canvas(size);
        DrawBorder(canvas, Red);
        EXPECT_EQ(Picture(canvas), picture);
    }
}

TEST(DrawOutline, IsNothingWithoutWidthOrHeight) {
    Canvas canvas(4);
    DrawOutline(canvas, RectOf(1, 1, 0, 2), Red);
    DrawOutline(canvas, RectOf(1, 1, 2, 0), Red);
    EXPECT_EQ(Picture(canvas), Picture(Canvas(4)));
    DrawOutline(canvas, RectOf(2, 1, 1, 3), Red);
    EXPECT_EQ(Picture(canvas), R"(
....
..#.
..#.
..#.
)");
}

}  // namespace
}  // namespace kestrane
