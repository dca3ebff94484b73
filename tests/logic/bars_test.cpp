#include "tray/bars.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "support/pixel_picture.h"

namespace kestrane {
namespace {

constexpr ColorValue A = 0xAA0000;
constexpr ColorValue B = 0x00BB00;
constexpr ColorValue Both = 0x0000CC;
constexpr std::int32_t Least = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Most = std::numeric_limits<std::int32_t>::max();
constexpr std::uint64_t MostRate = std::numeric_limits<std::uint64_t>::max();

std::string Picture(const Canvas& canvas) {
    return PixelPicture(canvas.pixels, static_cast<std::size_t>(canvas.size),
                        {{0xFF000000, '.'}, {0xFFAA0000, 'a'}, {0xFF00BB00, 'b'}, {0xFF0000CC, 'c'}, {0, ' '}});
}

template <typename T>
MetricRing<T> RingWith(const std::vector<T>& values, std::uint64_t capacity = 64) {
    MetricRing<T> ring(capacity);
    for (const T value : values)
        PushSample(ring, value);
    return ring;
}
const auto Percentages = RingWith<std::int32_t>;
const auto Rates = RingWith<std::uint64_t>;

/// The number of contiguous pixels, from the bottom of the rightmost column, that differ from the background.
std::int32_t RightColumnHeight(const Canvas& canvas) {
    std::int32_t height = 0;
    const auto size = static_cast<std::size_t>(canvas.size);
    while (height < canvas.size && canvas.pixels[(size - static_cast<std::size_t>(height)) * size - 1] != 0xFF000000) {
        ++height;
    }
    return height;
}

std::string Bars(std::int32_t size, const std::vector<std::int32_t>& values) {
    Canvas canvas(size);
    DrawBars(canvas, Percentages(values, 64), A);
    return Picture(canvas);
}

std::string Paired(std::int32_t size, const std::vector<std::int32_t>& a, const std::vector<std::int32_t>& b) {
    Canvas canvas(size);
    DrawPairedBars(canvas, Percentages(a, 64), A, Percentages(b, 64), B);
    return Picture(canvas);
}

std::string Network(std::int32_t size, const std::vector<std::uint64_t>& down, const std::vector<std::uint64_t>& up,
                    ColorValue colorDown = A, ColorValue colorUp = B, ColorValue colorBoth = Both,
                    std::uint64_t scale = 100) {
    Canvas canvas(size);
    DrawNetworkBars(canvas, Rates(down, 64), Rates(up, 64), scale, colorDown, colorUp, colorBoth);
    return Picture(canvas);
}

TEST(DrawBars, EveryPercentageAtEverySize) {
    for (const std::int32_t size : {1, 2, 3, 16, 20, 24, 32, 48}) {
        for (std::int32_t value = -2; value <= 102; ++value) {
            Canvas canvas(size);
            DrawBars(canvas, Percentages({value}, 1), A);
            const std::int32_t clamped = std::clamp(value, 0, 100);
            const std::int32_t height = clamped == 0 ? 0 : ((size - 1) * clamped + 50) / 100 + 1;
            EXPECT_EQ(RightColumnHeight(canvas), height) << size << " " << value;
        }
    }
}

TEST(DrawBars, OneShowsAPixelAndAHundredFillsTheColumn) {
    EXPECT_EQ(Bars(16, {0, 1, 3, 4, 50, 99, 100, 101, Least, Most}), R"(
...........aaa.a
...........aaa.a
...........aaa.a
...........aaa.a
...........aaa.a
...........aaa.a
...........aaa.a
..........aaaa.a
..........aaaa.a
..........aaaa.a
..........aaaa.a
..........aaaa.a
..........aaaa.a
..........aaaa.a
.........aaaaa.a
.......aaaaaaa.a
)");
}

TEST(DrawBars, AnEmptyHistoryDrawsNothing) {
    EXPECT_EQ(Bars(4, {}), Picture(Canvas(4)));
}

TEST(DrawBars, TheNewestIsAtTheRightAndTheLeftStays) {
    EXPECT_EQ(Bars(4, {100}), R"(
...a
...a
...a
...a
)");
    EXPECT_EQ(Bars(4, {0, 34, 67, 100}), R"(
...a
..aa
.aaa
.aaa
)");
    EXPECT_EQ(Bars(4, {100, 100, 0, 34, 67, 100}), Bars(4, {0, 34, 67, 100})) << "older samples are not shown";
}

TEST(DrawBars, ReadsARingThatHasWrapped) {
    Canvas canvas(4);
    DrawBars(canvas, Percentages({1, 2, 3, 100, 0, 34}, 3), A);
    EXPECT_EQ(Picture(canvas), R"(
.a..
.a..
.a.a
.a.a
)");
}

TEST(DrawBars, WithoutAColourPunchesHoles) {
    Canvas canvas(3);
    DrawBars(canvas, Percentages({50, 100}, 8), ColorNone);
    EXPECT_EQ(Picture(canvas), "\n.. \n.  \n.  \n");
}

TEST(DrawPairedBars, TheShorterStandsInFront) {
    EXPECT_EQ(Paired(6, {20, 100, 60, 0, 60, 0}, {100, 20, 60, 60, 0, 0}), R"(
ba....
ba....
babba.
babba.
abbba.
abbba.
)");
}

TEST(DrawPairedBars, EqualValuesShowOnlyTheSecond) {
    for (const std::int32_t value : {1, 50, 100}) {
        EXPECT_EQ(Paired(8, {value}, {value}), Paired(8, {}, {value})) << value;
    }
}

TEST(DrawPairedBars, HistoriesAreAlignedByTheirNewestSample) {
    EXPECT_EQ(Paired(4, {100}, {34, 34, 34}), R"(
...a
...a
.bbb
.bbb
)");
    EXPECT_EQ(Paired(4, {34, 34, 34}, {100}), R"(
...b
...b
.aaa
.aaa
)");
    EXPECT_EQ(Paired(4, {}, {}), Picture(Canvas(4)));
}

TEST(DrawPairedBars, ClampsBeforeComparing) {
    EXPECT_EQ(Paired(3, {Most}, {101}), Paired(3, {}, {100})) << "both are 100, so the second is in front";
    EXPECT_EQ(Paired(3, {Least}, {-1}), Picture(Canvas(3)));
}

TEST(DrawPairedBars, WithoutAColourPunchesHoles) {
    Canvas canvas(3);
    DrawPairedBars(canvas, Percentages({100}, 8), ColorNone, Percentages({50}, 8), B);
    EXPECT_EQ(Picture(canvas), "\n.. \n..b\n..b\n");
}

TEST(ScaleToHeight, RoundsAndClamps) {
    struct Row {
        std::uint64_t value;
        std::uint64_t scale;
        std::int32_t height;
        std::int32_t percent;
        std::int32_t rows;
    };
    const std::vector<Row> rows = {
        {50, 0, 16, 100, 0},  // no scale
        {50, 100, 0, 100, 0},
        {50, 100, -1, 100, 0},
        {50, 100, Least, 100, 0},
        {0, 100, 16, 100, 0},
        {3, 100, 16, 100, 0},  // 0.48
        {4, 100, 16, 100, 1},  // 0.64
        {50, 100, 16, 100, 8},
        {99, 100, 16, 100, 16},
        {100, 100, 16, 100, 16},
        {101, 100, 16, 100, 16},
        {MostRate, 1, 16, 100, 16},
        {MostRate, MostRate, 16, 100, 16},
        {MostRate / 2, MostRate, 16, 100, 8},
        {1, MostRate, 16, 100, 0},
        {100, 100, 16, 50, 8},
        {100, 100, 16, 0, 0},
        {100, 100, 16, -50, 0},
        {100, 100, 16, 200, 16},
        {1, 2, 1, 100, 1},  // half a row rounds up
        {49, 100, 1, 100, 0},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(ScaleToHeight(row.value, row.scale, row.height, row.percent), row.rows)
            << row.value << " of " << row.scale << " on " << row.height << " at " << row.percent;
    }
}

TEST(ScaleToHeight, WalksUpRowByRow) {
    for (const std::int32_t size : {1, 2, 16, 20, 24, 32, 48}) {
        for (std::uint64_t value = 0; value <= 1000; ++value) {
            const auto rounded =
                static_cast<std::int32_t>((value * static_cast<std::uint64_t>(size) * 2 + 1000) / 2000);
            EXPECT_EQ(ScaleToHeight(value, 1000, size, 100), rounded) << value << " on " << size;
        }
    }
}

TEST(DrawNetworkBars, WhatBothReachHasItsOwnColour) {
    EXPECT_EQ(Network(5, {20, 80, 60, 0, 10}, {100, 40, 60, 40, 9}), R"(
b....
ba...
bac..
bccb.
cccba
)");
}

TEST(DrawNetworkBars, ASmallRateVanishesAndAGreatOneIsCut) {
    EXPECT_EQ(Network(4, {12, 13, 100, 900}, {}), R"(
..aa
..aa
..aa
.aaa
)");
}

TEST(DrawNetworkBars, AColourThatIsNoneLeavesTheBackground) {
    EXPECT_EQ(Network(4, {100, 50}, {50, 100}, ColorNone, B, Both), "\n...b\n...b\n..cc\n..cc\n");
    EXPECT_EQ(Network(4, {100, 50}, {50, 100}, A, ColorNone, Both), "\n..a.\n..a.\n..cc\n..cc\n");
    EXPECT_EQ(Network(4, {100, 50}, {50, 100}, A, B, ColorNone), "\n..ab\n..ab\n....\n....\n");
}

TEST(DrawNetworkBars, HistoriesAreAlignedByTheirNewestSample) {
    EXPECT_EQ(Network(4, {100}, {25, 25, 25, 25, 25}), "\n...a\n...a\n...a\nbbbc\n");
    EXPECT_EQ(Network(4, {25, 25, 25, 25, 25}, {100}), "\n...b\n...b\n...b\naaac\n");
    EXPECT_EQ(Network(4, {}, {}), Picture(Canvas(4)));
    EXPECT_EQ(Network(4, {100}, {100}, A, B, Both, 0), Picture(Canvas(4))) << "no scale, no height";
}

TEST(LevelBarHeight, IsAQuarterAndAtLeastFour) {
    const std::vector<std::pair<std::int32_t, std::int32_t>> rows = {{1, 4},  {4, 4},  {15, 4}, {16, 4},  {19, 4},
                                                                     {20, 5}, {24, 6}, {32, 8}, {47, 11}, {48, 12}};
    for (const auto& [size, height] : rows)
        EXPECT_EQ(LevelBarHeight(Canvas(size)), height) << size;
}

std::string Level(std::int32_t size, std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                  std::int32_t percent) {
    Canvas canvas(size);
    DrawLevelBar(canvas, RectOf(x, y, width, height), percent, A, B);
    return Picture(canvas);
}

TEST(DrawLevelBar, FromTheBareOutlineToFull) {
    EXPECT_EQ(Level(8, 0, 1, 8, 4, 0), R"(
........
aaaaaaaa
a......a
a......a
aaaaaaaa
........
........
........
)");
    EXPECT_EQ(Level(8, 0, 1, 8, 4, 50), R"(
........
aaaaaaaa
abbb...a
abbb...a
aaaaaaaa
........
........
........
)");
    EXPECT_EQ(Level(8, 0, 1, 8, 4, 100), R"(
........
aaaaaaaa
abbbbbba
abbbbbba
aaaaaaaa
........
........
........
)");
}

TEST(DrawLevelBar, EveryPercentage) {
    for (const std::int32_t size : {3, 4, 16, 20, 24, 32, 48}) {
        for (std::int32_t percent = -2; percent <= 102; ++percent) {
            Canvas canvas(size);
            DrawLevelBar(canvas, RectOf(0, 0, size, 3), percent, A, B);
            const auto* const row = &canvas.pixels[static_cast<std::size_t>(size)];
            const auto filled = std::count(row, row + size, 0xFF00BB00);
            EXPECT_EQ(filled, ((size - 2) * std::clamp(percent, 0, 100) + 50) / 100) << size << " " << percent;
        }
    }
}

TEST(DrawLevelBar, NeedsThreeByThree) {
    for (const auto& [width, height] : {std::pair{2, 4}, {4, 2}, {0, 0}, {-1, 4}, {4, Least}}) {
        EXPECT_EQ(Level(4, 0, 0, width, height, 100), Picture(Canvas(4))) << width << " " << height;
    }
    EXPECT_EQ(Level(4, 1, 0, 3, 3, 100), "\n.aaa\n.aba\n.aaa\n....\n");
}

TEST(DrawLevelBar, IsCutByTheCanvasAndCanPunchHoles) {
    EXPECT_EQ(Level(4, -1, -1, 5, 4, 100), "\nbbba\nbbba\naaaa\n....\n");
    Canvas canvas(4);
    DrawLevelBar(canvas, RectOf(0, 0, 4, 4), 50, ColorNone, B);
    EXPECT_EQ(Picture(canvas), "\n    \n b. \n b. \n    \n");
}

}  // namespace
}  // namespace kestrane
