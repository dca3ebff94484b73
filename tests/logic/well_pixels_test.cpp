#include "dialog/well_pixels.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "support/geometry_print.h"
#include "support/graph_picture.h"

namespace kestrane {
namespace {

/// The cells of `item` on a surface of this size.
Strings Chequer(std::int32_t width, std::int32_t height, const Rect& item) {
    Picture picture(width, height);
    for (const Rect& cell : ChequerCells(item))
        FillPixels(picture.Buffer(), cell, 0xA0A0A0);
    return picture.Rows({{0, '.'}, {0xA0A0A0, '#'}});
}

TEST(ChequerCells, AreFourPixelsWideAndStartDark) {
    EXPECT_EQ(Chequer(8, 8, {0, 0, 8, 8}), (Strings{
                                               "####....",
                                               "####....",
                                               "####....",
                                               "####....",
                                               "....####",
                                               "....####",
                                               "....####",
                                               "....####",
                                           }));
}

// Twelve dialog units are often not a multiple of four pixels.
TEST(ChequerCells, TheLastOnesAreCutAtTheItemsEdge) {
    EXPECT_EQ(Chequer(12, 8, {0, 0, 11, 6}), (Strings{
                                                 "####....###.",
                                                 "####....###.",
                                                 "####....###.",
                                                 "####....###.",
                                                 "....####....",
                                                 "....####....",
                                                 "............",
                                                 "............",
                                             }));
}

TEST(ChequerCells, CountFromTheItemsCorner) {
    EXPECT_EQ(Chequer(9, 7, {2, 1, 8, 6}), (Strings{
                                               ".........",
                                               "..####...",
                                               "..####...",
                                               "..####...",
                                               "..####...",
                                               "......##.",
                                               ".........",
                                           }));
}

TEST(ChequerCells, AnEmptyItemHasNone) {
    EXPECT_TRUE(ChequerCells({}).empty());
    EXPECT_TRUE(ChequerCells({5, 5, 5, 9}).empty());
    EXPECT_TRUE(ChequerCells({5, 5, 9, 4}).empty());
}

TEST(WellColor, IsPaleWhenDisabled) {
    EXPECT_EQ(WellColor(0x123456, true, 0xF0F0F0), 0x123456U);
    // 0 + 0.65 * 240 = 156
    EXPECT_EQ(WellColor(0x000000, false, 0xF0F0F0), 0x9C9C9CU);
    EXPECT_EQ(WellColor(0xF0F0F0, false, 0xF0F0F0), 0xF0F0F0U);
}

TEST(WellColor, TransparentStaysTransparentWhenDisabled) {
    EXPECT_EQ(WellColor(ColorNone, true, 0xF0F0F0), ColorNone);
    EXPECT_EQ(WellColor(ColorNone, false, 0xF0F0F0), ColorNone);
}

}  // namespace
}  // namespace kestrane
