#include "settings/color.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

namespace kestrane {
namespace {

TEST(Color, LuminanceWeighsTheChannels) {
    const struct {
        ColorValue color;
        std::int32_t luminance;
    } cases[] = {
        {0x000000, 0},   {0xFFFFFF, 255}, {0xFF0000, 76},  // 76.245
        {0x00FF00, 149},                                   // 149.685: truncated, not rounded
        {0x0000FF, 29},                                    // 29.07
        {0xFF0005, 76},                                    // 76.815
        {0x808080, 128}, {0x7F7F7F, 127}, {0x010101, 1},
        {0x010100, 0},   {0xCCEEFF, 229},  // 60.996 + 139.706 + 29.07 = 229.772
        {ColorNone, 0},                    // transparent has no channels
    };
    for (const auto& [color, luminance] : cases)
        EXPECT_EQ(Luminance(color), luminance) << std::hex << color;
}

TEST(Color, BlendRoundsEachChannelToTheNearest) {
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    const struct {
        ColorValue from;
        ColorValue to;
        double t;
        ColorValue blended;
    } cases[] = {
        {0x102030, 0xA0B0C0, 0.0, 0x102030},        {0x102030, 0xA0B0C0, 1.0, 0xA0B0C0},
        {0x000000, 0xFFFFFF, 0.5, 0x808080},   // 127.5 rounds up
        {0xFFFFFF, 0x000000, 0.5, 0x808080},   // and does so on the way down
        {0x000000, 0x0A0A0A, 0.25, 0x030303},  // 2.5
        {0x0A0A0A, 0x000000, 0.25, 0x080808},  // 7.5
        {0x000000, 0x0A0A0A, 0.24, 0x020202},  // 2.4
        {0xFF0000, 0x0000FF, 0.45, 0x8C0073},  // 140.25, 0, 114.75
        {0x102030, 0xA0B0C0, -3.0, 0x102030},       {0x102030, 0xA0B0C0, 7.0, 0xA0B0C0},
        {0x102030, 0xA0B0C0, -infinity, 0x102030},  {0x102030, 0xA0B0C0, infinity, 0xA0B0C0},
        {0x102030, 0xA0B0C0, notANumber, 0x102030},
    };
    for (const auto& [from, to, t, blended] : cases) {
        EXPECT_EQ(BlendColor(from, to, t), blended) << std::hex << from << ' ' << to << ' ' << t;
    }
}

TEST(Color, BlendNeverLeavesTheTwoEnds) {
    for (ColorValue from = 0; from < 256; from += 5) {
        for (ColorValue to = 0; to < 256; to += 5) {
            for (int step = 0; step <= 20; ++step) {
                const ColorValue blended = BlendColor(from, to, step / 20.0);
                EXPECT_LE(blended, std::max(from, to));
                EXPECT_GE(blended, std::min(from, to));
            }
        }
    }
}

TEST(Color, ContrastTurnsAtLuminance128) {
    EXPECT_EQ(ContrastColor(0x000000), 0xE0E0E0U);
    EXPECT_EQ(ContrastColor(0x7F7F7F), 0xE0E0E0U);
    EXPECT_EQ(ContrastColor(0x808080), 0x202020U);
    EXPECT_EQ(ContrastColor(0xFFFFFF), 0x202020U);
}

TEST(Color, ReadableKeepsWhatStandsOutAndPullsTheRest) {
    const struct {
        ColorValue color;
        ColorValue background;
        ColorValue readable;
    } cases[] = {
        {0x5A5A5A, 0x000000, 0x5A5A5A},  // a difference of exactly 90
        {0x595959, 0x000000, 0x969696},  // 89: 89 + (224 - 89) * 0.45 = 149.75
        {0x000000, 0x5A5A5A, 0x000000},  // the difference counts either way
        {0x000000, 0x000000, 0x656565},  // 224 * 0.45 = 100.8
        {0xFFFFFF, 0xFFFFFF, 0x9B9B9B},  // 255 - 223 * 0.45 = 154.65
        {0x000000, 0x202020, 0x656565},  // black is not readable on dark grey
        {0xFFFFFF, 0x000000, 0xFFFFFF},  // white on black is
    };
    for (const auto& [color, background, readable] : cases) {
        EXPECT_EQ(ReadableColor(color, background), readable) << std::hex << color << " on " << background;
    }
}

TEST(Color, SwappingRedAndBlueTwiceGivesTheColourBack) {
    EXPECT_EQ(SwapRedBlue(0x123456), 0x563412U);
    EXPECT_EQ(SwapRedBlue(SwapRedBlue(0x00ABCDEF)), 0x00ABCDEFU);
    EXPECT_EQ(SwapRedBlue(ColorNone), 0U);
}

}  // namespace
}  // namespace kestrane
