// The rows of a hardware box, painted into memory.
#include "dialog/hardware_painter_win32.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/painted_surface_win32.h"

namespace kestrane {
namespace {

constexpr std::uint32_t Dpi = 96;
constexpr std::int32_t Line = FakeLine + 1;
constexpr ColorValue Blue = 0x3B82C4;
constexpr ColorValue Red = 0xD9534F;
constexpr ColorValue Empty = 0xE3E3E3;
constexpr ColorValue Chip = 0xE6EDF5;

/// From the first column on, with room for 50 characters behind it.
constexpr Rect Area{10, 4, 374, 200};

class HardwareRows : public testing::Test {
  protected:
    HardwareRows() { world = {}; }

    std::int32_t Paint(const Surface& surface, const std::vector<HardwareRow>& rows, bool draw = true,
                       std::uint32_t dpi = Dpi) {
        std::int32_t height = 0;
        surface.Painted([&](HDC dc) {
            height = PaintHardwareRows(dc, Area, rows, {regular_.Get(), bold_.Get()}, dpi, draw);
        });
        return height;
    }

    const UniqueFont regular_ = MakeFont(L"Tahoma", 12, false, DEFAULT_QUALITY);
    const UniqueFont bold_ = MakeFont(L"Tahoma", 12, true, DEFAULT_QUALITY);
};

HardwareRow Row(const wchar_t* label, const wchar_t* value, const std::wstring& note) {
    HardwareRow row;
    row.label = label;
    row.value = value;
    row.note = note;
    return row;
}

HardwareRow Bar(std::int32_t percent) {
    HardwareRow row;
    row.percent = percent;
    return row;
}

TEST_F(HardwareRows, PartsStandSideBySide) {
    HardwareRow row = Row(L"Disco", L"C:", L"");
    row.badge = 12;
    row.percent = 50;
    row.after = L"libre";
    const Surface surface(400, 60);
    EXPECT_EQ(Paint(surface, {row}), Line);
    // The badge is 12 wide and its chip 18, the value 14, the bar 56, with gaps of 5.
    EXPECT_EQ(world.texts, (std::vector<DrawnText>{
                               {L"Disco", {10, 4, 10, 4}, 0, 0x777777, false},
                               {L"12", {74, 5, 92, 19}, DT_SINGLELINE | DT_CENTER | DT_VCENTER, 0x334455, false},
                               {L"C:", {97, 4, 97, 4}, 0, 0x333333, true},
                               {L"libre", {177, 4, 177, 4}, 0, 0x333333, false},
                           }));
    EXPECT_EQ(surface.CountOf(Chip), 18 * 14);
    EXPECT_EQ(surface.At(74, 5), Chip);
    EXPECT_EQ(surface.At(91, 18), Chip);
    EXPECT_EQ(surface.At(116, 9), Blue);
    EXPECT_EQ(surface.At(143, 14), Blue);
    EXPECT_EQ(surface.At(144, 9), Empty);
    EXPECT_EQ(surface.At(171, 14), Empty);
}

TEST_F(HardwareRows, WhatIsMissingIsNotDrawn) {
    const Surface surface(400, 60);
    EXPECT_EQ(Paint(surface, {HardwareRow{}}), Line) << "an empty row takes its line";
    EXPECT_EQ(Paint(surface, {}), 0);
    EXPECT_TRUE(world.texts.empty());
    EXPECT_TRUE(surface.IsUntouched());
}

TEST_F(HardwareRows, TextBehindABarNeedsTheBar) {
    HardwareRow row = Bar(-1);
    row.after = L"libre";
    const Surface surface(400, 60);
    Paint(surface, {row});
    EXPECT_TRUE(world.texts.empty());
    EXPECT_TRUE(surface.IsUntouched());
}

TEST_F(HardwareRows, TheBarIsAsLongAsItsShareAndRedWhenNearlyFull) {
    struct Case {
        std::int32_t percent, blue, red, empty;  // pixels of width
    };
    const std::vector<Case> cases = {{0, 0, 0, 56},  {50, 28, 0, 28}, {84, 47, 0, 9},
                                     {85, 0, 47, 9}, {100, 0, 56, 0}, {150, 0, 56, 0}};
    for (const Case& expected : cases) {
        const Surface surface(400, 60);
        Paint(surface, {Bar(expected.percent)});
        EXPECT_EQ(surface.CountOf(Blue), expected.blue * 6) << expected.percent;
        EXPECT_EQ(surface.CountOf(Red), expected.red * 6) << expected.percent;
        EXPECT_EQ(surface.CountOf(Empty), expected.empty * 6) << expected.percent;
        EXPECT_EQ(surface.CountOf(Untouched), 400 * 60 - 56 * 6) << expected.percent;
    }
}

TEST_F(HardwareRows, ANoteThatFitsTakesOneLine) {
    const Surface surface(400, 60);
    EXPECT_EQ(Paint(surface, {Row(L"", L"", std::wstring(50, L'n'))}), Line);
    EXPECT_EQ(world.texts,
              (std::vector<DrawnText>{
                  {std::wstring(50, L'n'), {74, 4, 374, 19}, DT_WORDBREAK | DT_NOPREFIX, 0x888888, false}}));
}

TEST_F(HardwareRows, ALongNoteMakesItsRowHigherAndMovesTheRest) {
    const Surface surface(400, 100);
    const std::wstring note(51, L'n');
    EXPECT_EQ(Paint(surface, {Row(L"a", L"", note), Row(L"b", L"", L""), Row(L"c", L"", L"")}),
              2 * FakeLine + 1 + 2 * Line);
    ASSERT_EQ(world.texts.size(), 4U);
    EXPECT_EQ(world.texts[1].where, (Rect{74, 4, 374, 34}));
    EXPECT_EQ(world.texts[2].where.top, 4 + 31) << "the second row";
    EXPECT_EQ(world.texts[3].where.top, 4 + 31 + 16);
}

// Behind a value of 43 bold letters only 2 letters are left of a line, and the note gets 40 pixels.
TEST_F(HardwareRows, ANoteWithoutRoomGoesBeyondTheEdge) {
    const Surface surface(400, 100);
    const std::wstring value(43, L'v');
    EXPECT_EQ(Paint(surface, {Row(L"", value.c_str(), L"123456 890")}), 2 * FakeLine + 1);
    ASSERT_EQ(world.texts.size(), 2U);
    EXPECT_EQ(world.texts[1].where, (Rect{380, 4, 420, 34}));
}

TEST_F(HardwareRows, MeasuringPaintsNothing) {
    HardwareRow full = Row(L"Disco", L"C:", std::wstring(120, L'n'));
    full.badge = 1;
    full.percent = 90;
    full.after = L"libre";
    const std::vector<HardwareRow> rows = {full, Bar(10), Row(L"a", L"b", L"c")};
    const Surface measured(400, 200);
    const std::int32_t height = Paint(measured, rows, false);
    EXPECT_TRUE(measured.IsUntouched());
    EXPECT_TRUE(world.texts.empty());
    const Surface painted(400, 200);
    EXPECT_EQ(Paint(painted, rows, true), height);
    EXPECT_FALSE(painted.IsUntouched());
    EXPECT_GT(height, 3 * Line);
}

TEST_F(HardwareRows, GrowWithTheDpi) {
    HardwareRow row = Row(L"Disco", L"C:", L"");
    row.percent = 100;
    const Surface surface(400, 60);
    EXPECT_EQ(Paint(surface, {row}, true, 192), FakeLine + 2);
    EXPECT_EQ(world.texts.at(1).where.left, 10 + 128);
    EXPECT_EQ(surface.CountOf(Red), 112 * 12);
}

TEST_F(HardwareRows, TheControlIsWhiteWithTheTextInset) {
    const Surface surface(400, 60);
    surface.Painted([&](HDC dc) {
        PaintHardwareText(dc, {20, 10, 380, 50}, {Row(L"a", L"", std::wstring(100, L'n'))},
                          {regular_.Get(), bold_.Get()}, Dpi);
    });
    EXPECT_EQ(surface.CountOf(0xFFFFFF), 360 * 40);
    EXPECT_EQ(surface.At(20, 10), 0xFFFFFFU);
    EXPECT_EQ(surface.At(379, 49), 0xFFFFFFU);
    ASSERT_EQ(world.texts.size(), 2U);
    EXPECT_EQ(world.texts[0].where, (Rect{26, 10, 26, 10}));
    EXPECT_EQ(world.texts[1].where.left, 90);
    EXPECT_EQ(world.texts[1].where.right, 374);
}

}  // namespace
}  // namespace kestrane
