#include "graph/pixel_buffer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

#include "support/graph_picture.h"

namespace kestrane {
namespace {

constexpr std::int32_t Lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();
const Letters Plain = {{0x000000, '.'}, {0xFF0000, 'r'}, {0x00FF00, 'g'}, {0x111111, '0'}};

TEST(FillPixels, ClipsToTheBuffer) {
    struct Row {
        const char* reason;
        std::int32_t left, top, right, bottom;
        Strings picture;
    };
    const std::vector<Row> rows = {
        {"inside, right and bottom exclusive", 1, 1, 3, 2, {"....", ".rr.", "...."}},
        {"beyond every side", -5, -5, 50, 50, {"rrrr", "rrrr", "rrrr"}},
        {"the whole range of numbers", Lowest, Lowest, Highest, Highest, {"rrrr", "rrrr", "rrrr"}},
        {"empty", 2, 1, 2, 2, {"....", "....", "...."}},
        {"left and right the wrong way round", 3, 0, 1, 3, {"....", "....", "...."}},
        {"top and bottom the wrong way round", 0, 2, 4, 1, {"....", "....", "...."}},
        {"left of the buffer", -9, 0, 0, 3, {"....", "....", "...."}},
        {"right of the buffer", 4, 0, 9, 3, {"....", "....", "...."}},
        {"below the buffer", 0, 3, 4, 9, {"....", "....", "...."}},
    };
    for (const Row& row : rows) {
        Picture picture(4, 3);
        FillPixels(picture.Buffer(), {row.left, row.top, row.right, row.bottom}, 0xFF0000);
        EXPECT_EQ(picture.Rows(Plain), row.picture) << row.reason;
    }
}

TEST(FillPixels, WritesTheLow24BitsAndBlackForTransparent) {
    Picture picture(2, 1, 0x111111);
    FillPixels(picture.Buffer(), {0, 0, 1, 1}, ColorNone);
    FillPixels(picture.Buffer(), {1, 0, 2, 1}, 0xFF123456);
    EXPECT_EQ(picture.At(0, 0), 0U);
    EXPECT_EQ(picture.At(1, 0), 0x123456U);
}

TEST(PutPixel, SkipsTransparentAndPlacesOutside) {
    Picture picture(2, 2, 0x111111);
    PutPixel(picture.Buffer(), 0, 0, 0xFFFF0000);
    PutPixel(picture.Buffer(), 1, 0, ColorNone);
    for (const std::int32_t outside : {-1, 2, Lowest, Highest}) {
        PutPixel(picture.Buffer(), outside, 1, 0xFF0000);
        PutPixel(picture.Buffer(), 1, outside, 0xFF0000);
    }
    EXPECT_EQ(picture.Rows(Plain), (Strings{"r0", "00"}));
}

TEST(BlendColumn, StaysWithinItsColumnAndTheBuffer) {
    struct Row {
        const char* reason;
        std::int32_t x, top, bottom;
        Strings picture;
    };
    const std::vector<Row> rows = {
        {"inside", 1, 1, 3, {"...", ".r.", ".r.", "..."}},
        {"beyond top and bottom", 2, -7, 70, {"..r", "..r", "..r", "..r"}},
        {"the whole range of numbers", 0, Lowest, Highest, {"r..", "r..", "r..", "r.."}},
        {"empty", 0, 2, 2, {"...", "...", "...", "..."}},
        {"below the buffer", 0, 4, 9, {"...", "...", "...", "..."}},
        {"left of the buffer", -1, 0, 4, {"...", "...", "...", "..."}},
        {"right of the buffer", 3, 0, 4, {"...", "...", "...", "..."}},
    };
    for (const Row& row : rows) {
        Picture picture(3, 4);
        BlendColumn(picture.Buffer(), row.x, row.top, row.bottom, 0xFF0000, 1.0);
        EXPECT_EQ(picture.Rows(Plain), row.picture) << row.reason;
    }
}

// Runs of equal pixels share one blended value; it must be BlendColor's for every pixel, in any sequence of runs.
TEST(BlendColumn, MixesEachPixelAsBlendColorDoes) {
    const std::vector<std::uint32_t> column = {0, 0, 0x767676, 0, 0xFFFFFF, 0xFFFFFF, 0x123456, 0x0000FF, 0};
    for (const double alpha : {-1.0, 0.0, 0.25, 0.5, 0.75, 1.0, 2.0}) {
        Picture picture(1, static_cast<std::int32_t>(column.size()));
        for (std::size_t y = 0; y < column.size(); ++y)
            picture.Buffer().bits[y] = column[y];
        BlendColumn(picture.Buffer(), 0, 0, 100, 0xCE8B00, alpha);
        for (std::size_t y = 0; y < column.size(); ++y) {
            EXPECT_EQ(picture.At(0, static_cast<std::int32_t>(y)), BlendColor(column[y], 0xCE8B00, alpha))
                << "row " << y << " at " << alpha;
        }
    }
}

TEST(DrawDottedRow, EverySecondPixelFromTheLeftInclusive) {
    Picture picture(7, 3);
    DrawDottedRow(picture.Buffer(), 0, 1, 5, 0xFF0000);
    DrawDottedRow(picture.Buffer(), 1, -3, 400, 0x00FF00);  // stays in step across the edge
    DrawDottedRow(picture.Buffer(), 2, 4, 3, 0xFF0000);
    DrawDottedRow(picture.Buffer(), 3, 0, 6, 0xFF0000);
    EXPECT_EQ(picture.Rows(Plain), (Strings{".r.r.r.", ".g.g.g.", "......."}));
}

TEST(DrawDottedColumn, EverySecondPixelFromTheTopBottomExclusive) {
    Picture picture(3, 5);
    DrawDottedColumn(picture.Buffer(), 0, 0, 4, 0xFF0000);
    DrawDottedColumn(picture.Buffer(), 1, -1, 90, 0x00FF00);
    DrawDottedColumn(picture.Buffer(), 2, 3, 3, 0xFF0000);
    EXPECT_EQ(picture.Rows(Plain), (Strings{"r..", ".g.", "r..", ".g.", "..."}));
}

TEST(DrawFrame, OnePixelAllRound) {
    Picture picture(5, 4);
    DrawFrame(picture.Buffer(), 0xFF0000);
    EXPECT_EQ(picture.Rows(Plain), (Strings{"rrrrr", "r...r", "r...r", "rrrrr"}));
    Picture dot(1, 1);
    DrawFrame(dot.Buffer(), 0xFF0000);
    EXPECT_EQ(dot.Rows(Plain), (Strings{"r"}));
    Picture none(0, 0);
    DrawFrame(none.Buffer(), 0xFF0000);
    EXPECT_EQ(none.Rows(Plain), Strings{});
}

TEST(DrawCrosshair, DottedLineUnderOutlinedSquares) {
    Picture picture(9, 12, 0x202020);
    const Letters letters = {{0x202020, '.'}, {0x939393, ':'}, {0x000000, '#'}, {0xFF0000, 'r'}, {0x00FF00, 'g'}};
    DrawCrosshair(picture.Buffer(), 4, 0, 11, {{3, 0xFF0000}, {8, 0x00FF00}}, 0xE0E0E0, 0x202020, 1);
    EXPECT_EQ(picture.Rows(letters), (Strings{
                                         "....:....",
                                         "..#####..",
                                         "..#rrr#..",
                                         "..#rrr#..",
                                         "..#rrr#..",
                                         "..#####..",
                                         "..#####..",
                                         "..#ggg#..",
                                         "..#ggg#..",
                                         "..#ggg#..",
                                         "..#####..",
                                         ".........",
                                     }));
}

TEST(DrawCrosshair, IsCutOffByTheBuffer) {
    Picture picture(4, 4, 0x202020);
    const Letters letters = {{0x202020, '.'}, {0x939393, ':'}, {0x000000, '#'}, {0xFF0000, 'r'}};
    DrawCrosshair(picture.Buffer(), 0, 1, 90, {{0, 0xFF0000}}, 0xE0E0E0, 0x202020, 1);
    EXPECT_EQ(picture.Rows(letters), (Strings{"rr#.", "rr#.", "###.", ":..."}));
}

}  // namespace
}  // namespace kestrane
