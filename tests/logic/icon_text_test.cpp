#include "tray/icon_text.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

namespace kestrane {
namespace {

constexpr std::int32_t Least = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Most = std::numeric_limits<std::int32_t>::max();

TEST(ClampTextRows, FirstTheTopThenTheBottomBelowIt) {
    struct Row {
        std::int32_t top, bottom, clampedTop, clampedBottom;
    };
    const std::vector<Row> rows = {
        {0, 16, 0, 16},  {4, 16, 4, 16}, {-1, 17, 0, 16},  {5, 3, 5, 5},         {16, 16, 16, 16},
        {17, 3, 16, 16}, {-4, -2, 0, 0}, {20, 30, 16, 16}, {Least, Most, 0, 16}, {Most, Least, 16, 16},
    };
    for (const Row& row : rows) {
        const TextRows clamped = ClampTextRows(16, row.top, row.bottom);
        EXPECT_EQ(clamped.top, row.clampedTop) << row.top << " " << row.bottom;
        EXPECT_EQ(clamped.bottom, row.clampedBottom) << row.top << " " << row.bottom;
    }
}

TEST(TextFits, NeedsTheWidthOfTheIconAndTheInkOfTheRows) {
    struct Row {
        TextExtent extent;
        TextRows rows;
        bool fits;
    };
    const std::vector<Row> rows = {
        {{16, 20, 15, 3}, {4, 16}, true},   // exactly both
        {{17, 20, 15, 3}, {4, 16}, false},  // a column too wide
        {{16, 20, 16, 3}, {4, 16}, false},  // a row too high
        {{16, 20, 16, 4}, {4, 16}, true},   // the leading is not ink
        {{0, 0, 0, 0}, {16, 16}, true},    {{1, 1, 1, 0}, {16, 16}, false},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(TextFits(row.extent, 16, row.rows), row.fits) << row.extent.width << " " << row.extent.ascent;
    }
}

TEST(TextLineTop, PutsTheInkAndNotTheLine) {
    struct Row {
        TextExtent extent;
        TextRows rows;
        bool alignBottom;
        std::int32_t top;
    };
    const std::vector<Row> rows = {
        {{16, 14, 11, 3}, {4, 16}, true, 5},   // ink 8: rows 8 to 15, the line 3 above
        {{16, 14, 11, 3}, {4, 16}, false, 3},  // two rows free above and below
        {{16, 14, 12, 3}, {4, 16}, false, 2},  // ink 9 of 12: 1.5 rows free, one of them above
        {{16, 14, 11, 3}, {0, 16}, false, 1},  {{16, 30, 20, 3}, {4, 16}, true, -4},  // too high: clipped at the top
        {{16, 30, 20, 3}, {4, 16}, false, -1},  // five rows too many: -2.5 towards zero
        {{16, 14, 11, 0}, {16, 16}, true, 5},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(TextLineTop(row.extent, row.rows, row.alignBottom), row.top)
            << row.extent.ascent << " " << row.rows.top << " " << row.alignBottom;
    }
}

std::uint32_t Composed(std::uint32_t base, std::uint32_t mask, ColorValue color) {
    std::array<std::uint32_t, 1> pixel = {base};
    const std::array<std::uint32_t, 1> coverage = {mask};
    ComposeCoverage(pixel, coverage, color);
    return pixel[0];
}

TEST(ComposeCoverage, OnePixelOfEachKind) {
    struct Row {
        std::uint32_t base;
        std::uint32_t mask;
        ColorValue color;
        std::uint32_t result;
    };
    const std::vector<Row> rows = {
        {0xFF102030, 0xFF000000, 0xFFFFFF, 0xFF102030},  // not covered
        {0x00000000, 0xFF000000, 0xFFFFFF, 0x00000000},
        {0x40102030, 0xFFFFFF00, 0xFFFFFF, 0x40102030},  // only the blue byte counts
        {0xFF102030, 0xFFFFFFFF, 0xAABBCC, 0xFFAABBCC},  // fully covered
        {0x00000000, 0xFFFFFFFF, 0xAABBCC, 0xFFAABBCC},
        {0x80FFFFFF, 0x000000FF, 0xAABBCC, 0xFFAABBCC},
        {0x00000000, 0xFF000080, 0xAABBCC, 0x80AABBCC},  // a soft edge on nothing: the text's own colour
        {0x00FFFFFF, 0xFF000001, 0xAABBCC, 0x01AABBCC},  // a transparent pixel's hidden colour does not show
        {0xFF000000, 0xFF000080, 0xFFFFFF, 0xFF808080},  // 255 * 128 / 255
        {0xFFFFFFFF, 0xFF000080, 0x000000, 0xFF7F7F7F},
        {0xFFFF0000, 0xFF000033, 0x0000FF, 0xFFCC0033},  // a fifth of the way
        {0x80FF0000, 0xFF000080, 0x0000FF, 0xC05500AA},  // alpha 0.752; red 0.25 of it, blue 0.502
        {0xFF123456, 0xFF000001, 0x123456, 0xFF123456},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(Composed(row.base, row.mask, row.color), row.result)
            << std::hex << row.base << " " << row.mask << " " << row.color;
    }
}

TEST(ComposeCoverage, OnOpaqueItIsAPlainBlendAndOnNothingThePlainColour) {
    for (std::uint32_t coverage = 0; coverage <= 255; ++coverage) {
        const std::uint32_t grey = coverage;
        EXPECT_EQ(Composed(0xFF000000, coverage, 0xFFFFFF), 0xFF000000 | grey << 16U | grey << 8U | grey) << coverage;
        EXPECT_EQ(Composed(0, coverage, 0x0A1B2C), coverage == 0 ? 0 : coverage << 24U | 0x0A1B2C) << coverage;
    }
}

TEST(ComposeCoverage, EachPixelByItself) {
    std::vector<std::uint32_t> base = {0xFF000000, 0, 0xFF000000};
    const std::vector<std::uint32_t> mask = {0xFF, 0x80, 0};
    ComposeCoverage(base, mask, 0x112233);
    EXPECT_EQ(base, (std::vector<std::uint32_t>{0xFF112233, 0x80112233, 0xFF000000}));
}

}  // namespace
}  // namespace kestrane
