#include "dialog/hardware_layout.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "support/geometry_print.h"

namespace kestrane {
namespace {

constexpr std::int32_t Line = 16;
constexpr std::int32_t Right = 400;
constexpr Point Corner{10, 100};
constexpr HardwareTextWidths Widths{.badge = 12, .value = 50};

HardwareRowLayout LayoutAt(const HardwareRow& row, std::uint32_t dpi = 96) {
    return LayoutHardwareRow(row, Widths, Corner, Right, Line, dpi);
}

TEST(HardwareLayout, ALineIsAPixelHigherThanItsText) {
    EXPECT_EQ(HardwareLineHeight(15, 96), 16);
    EXPECT_EQ(HardwareLineHeight(23, 144), 25);
    EXPECT_EQ(HardwareLineHeight(30, 192), 32);
}

// The badge and the value are as wide as their texts; the bar has its own width.
TEST(HardwareLayout, PartsFollowEachOtherFromTheEndOfTheFirstColumn) {
    HardwareRow row;
    row.label = L"Memoria";
    row.badge = 2;
    row.value = L"C:";
    row.percent = 50;
    row.after = L"libres";
    const HardwareRowLayout layout = LayoutAt(row);
    EXPECT_EQ(layout.label, Corner);
    EXPECT_EQ(layout.chip, (Rect{74, 101, 92, 115})) << "12 + 6 wide";
    EXPECT_EQ(layout.value, (Point{97, 100}));
    EXPECT_EQ(layout.track, (Rect{152, 105, 208, 111})) << "56 by 6, in the middle of the line";
    EXPECT_EQ(layout.filled, (Rect{152, 105, 180, 111}));
    EXPECT_EQ(layout.after, (Point{213, 100}));
    EXPECT_EQ(layout.note, Rect{});
}

TEST(HardwareLayout, TheFirstColumnIsAsWideWithALongLabelAsWithNone) {
    HardwareRow row;
    row.value = L"C:";
    const HardwareRowLayout without = LayoutAt(row);
    row.label = L"A label that is far wider than the column in which it stands";
    EXPECT_EQ(LayoutAt(row), without);
    EXPECT_EQ(without.value, (Point{74, 100}));
}

TEST(HardwareLayout, WhatARowDoesNotShowTakesNoSpace) {
    HardwareRow row;
    row.note = L"8 núcleos";
    const HardwareRowLayout layout = LayoutAt(row);
    EXPECT_EQ(layout.chip, Rect{});
    EXPECT_EQ(layout.track, Rect{});
    EXPECT_EQ(layout.filled, Rect{});
    EXPECT_EQ(layout.note, (Rect{74, 100, Right, 100}));
    row.badge = 0;
    EXPECT_EQ(LayoutAt(row).note.left, 74 + 18 + 5) << "zero is a badge";
    row.badge = -1;
    row.value = L"x";
    EXPECT_EQ(LayoutAt(row).note.left, 74 + 50 + 5);
    row.value.clear();
    row.percent = 0;
    EXPECT_EQ(LayoutAt(row).note.left, 74 + 56 + 5) << "an empty bar is a bar";
}

TEST(HardwareLayout, TheTextBehindTheBarDoesNotMoveTheNote) {
    HardwareRow row;
    row.percent = 10;
    row.note = L"note";
    const HardwareRowLayout without = LayoutAt(row);
    row.after = L"12 GB libres de 500 GB";
    EXPECT_EQ(LayoutAt(row), without);
}

TEST(HardwareLayout, ANoteKeepsSomeWidthWhereNoneIsLeft) {
    HardwareRow row;
    row.note = L"note";
    const auto noteRight = [&row](std::int32_t right) {
        return LayoutHardwareRow(row, Widths, Corner, right, Line, 96).note.right;
    };
    EXPECT_EQ(noteRight(115), 115);
    EXPECT_EQ(noteRight(114), 114);
    EXPECT_EQ(noteRight(113), 114) << "74 + 40";
    EXPECT_EQ(noteRight(0), 114);
}

TEST(HardwareLayout, TheBarIsFilledByItsShareBetweenNothingAndAll) {
    struct Row {
        std::int32_t percent;
        std::int32_t width;
    };
    const std::vector<Row> rows = {{0, 0},   {1, 0},   {2, 1},    {50, 28},  {84, 47},
                                   {85, 47}, {99, 55}, {100, 56}, {101, 56}, {150, 56}};
    for (const Row& expected : rows) {
        HardwareRow row;
        row.percent = expected.percent;
        const HardwareRowLayout layout = LayoutAt(row);
        EXPECT_EQ(RectWidth(layout.filled), expected.width) << expected.percent;
        EXPECT_EQ(RectWidth(layout.track), 56) << expected.percent;
    }
    HardwareRow none;
    none.percent = -1;
    EXPECT_EQ(LayoutAt(none).track, Rect{});
}

TEST(HardwareLayout, TheBarIsRedFrom85) {
    EXPECT_EQ(BarColor(0), 0x3B82C4U);
    EXPECT_EQ(BarColor(84), 0x3B82C4U);
    EXPECT_EQ(BarColor(85), 0xD9534FU);
    EXPECT_EQ(BarColor(150), 0xD9534FU);
}

TEST(HardwareLayout, GrowsWithTheDpi) {
    HardwareRow row;
    row.badge = 2;
    row.value = L"C:";
    row.percent = 100;
    row.note = L"note";
    struct Row {
        std::uint32_t dpi;
        Rect chip;
        Point value;
        Rect track;
        Rect note;
    };
    const std::vector<Row> rows = {
        {144, {106, 102, 127, 114}, {135, 100}, {193, 103, 277, 112}, {285, 100, 400, 100}},
        {192, {138, 102, 162, 114}, {172, 100}, {232, 102, 344, 114}, {354, 100, 434, 100}},
    };
    for (const Row& expected : rows) {
        const HardwareRowLayout layout = LayoutAt(row, expected.dpi);
        EXPECT_EQ(layout.chip, expected.chip) << expected.dpi;
        EXPECT_EQ(layout.value, expected.value) << expected.dpi;
        EXPECT_EQ(layout.track, expected.track) << expected.dpi;
        EXPECT_EQ(layout.filled, expected.track) << expected.dpi;
        EXPECT_EQ(layout.note, expected.note) << expected.dpi;
    }
}

TEST(HardwareLayout, OnlyANoteOfSeveralLinesMakesARowHigher) {
    EXPECT_EQ(HardwareRowHeight(16, 0, 96), 16) << "no note";
    EXPECT_EQ(HardwareRowHeight(16, 15, 96), 16) << "one line";
    EXPECT_EQ(HardwareRowHeight(16, 16, 96), 17);
    EXPECT_EQ(HardwareRowHeight(16, 30, 96), 31);
    EXPECT_EQ(HardwareRowHeight(32, 60, 192), 62);
}

TEST(HardwareLayout, TheTextKeepsClearOfTheItemsSides) {
    EXPECT_EQ(HardwareTextArea({100, 50, 300, 90}, 96), (Rect{106, 50, 294, 90}));
    EXPECT_EQ(HardwareTextArea({100, 50, 300, 90}, 144), (Rect{109, 50, 291, 90}));
    EXPECT_EQ(HardwareTextArea({100, 50, 300, 90}, 192), (Rect{112, 50, 288, 90}));
}

}  // namespace
}  // namespace kestrane
