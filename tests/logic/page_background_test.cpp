#include "dialog/page_background.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "support/geometry_print.h"
#include "support/graph_picture.h"

namespace kestrane {
namespace {

constexpr Rect FirstTab{10, 3, 60, 30};
constexpr Rect MiddleTab{110, 3, 160, 30};
constexpr Rect LastTab{210, 3, 260, 30};

PageBackground WithTab(const Rect& current) {
    PageBackground background;
    background.first_tab = FirstTab;
    background.current_tab = current;
    background.last_tab = LastTab;
    return background;
}

TEST(AccentLine, LeavesTheCurrentTabOpen) {
    const auto [left, right] = AccentLine(WithTab(MiddleTab), 96);
    EXPECT_EQ(left, (Rect{10, 30, 110, 32}));
    EXPECT_EQ(right, (Rect{160, 30, 260, 32}));
}

TEST(AccentLine, HasOnePieceBesideTheFirstAndTheLastTab) {
    const auto [beforeFirst, afterFirst] = AccentLine(WithTab(FirstTab), 96);
    EXPECT_TRUE(IsEmptyRect(beforeFirst));
    EXPECT_EQ(afterFirst, (Rect{60, 30, 260, 32}));
    const auto [beforeLast, afterLast] = AccentLine(WithTab(LastTab), 96);
    EXPECT_EQ(beforeLast, (Rect{10, 30, 210, 32}));
    EXPECT_TRUE(IsEmptyRect(afterLast));
}

TEST(AccentLine, IsTwoPixelsThickAtLeast) {
    const auto thickness = [](std::uint32_t dpi) { return RectHeight(AccentLine(WithTab(MiddleTab), dpi)[0]); };
    EXPECT_EQ(thickness(48), 2);
    EXPECT_EQ(thickness(96), 2);
    EXPECT_EQ(thickness(144), 3);
    EXPECT_EQ(thickness(192), 4);
}

Strings FramePicture(const TitledFrame& titled) {
    Picture picture(12, 6);
    for (const Rect& line : FrameLines(titled)) {
        EXPECT_FALSE(IsEmptyRect(line));
        FillPixels(picture.Buffer(), line, 0xA8A8A8);
    }
    return picture.Rows({{0, '.'}, {0xA8A8A8, '#'}});
}

TEST(FrameLines, TheTopEdgeIsBrokenUnderTheTitle) {
    EXPECT_EQ(FramePicture({{1, 1, 11, 5}, {3, 0, 7, 3}}), (Strings{
                                                               "............",
                                                               ".##....####.",
                                                               ".#........#.",
                                                               ".#........#.",
                                                               ".##########.",
                                                               "............",
                                                           }));
}

TEST(FrameLines, ATitleWiderThanItsFrameCoversTheWholeTopEdge) {
    EXPECT_EQ(FramePicture({{1, 1, 11, 5}, {1, 0, 12, 3}}), (Strings{
                                                                "............",
                                                                ".#........#.",
                                                                ".#........#.",
                                                                ".#........#.",
                                                                ".##########.",
                                                                "............",
                                                            }));
}

TEST(FrameLines, AHiddenBoxHasNone) {
    EXPECT_TRUE(FrameLines({{}, {3, 0, 7, 3}}).empty());
    EXPECT_TRUE(FrameLines({{1, 5, 11, 5}, {3, 0, 7, 3}}).empty());
}

}  // namespace
}  // namespace kestrane
