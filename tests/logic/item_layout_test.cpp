#include "dialog/item_layout.h"

#include <gtest/gtest.h>

#include "support/geometry_print.h"

namespace kestrane {
namespace {

TEST(ItemLayout, CentresVertically) {
    EXPECT_EQ(CentredAt(5, {0, 10, 100, 30}, 16, 16), (Rect{5, 12, 21, 28}));
    EXPECT_EQ(CentredAt(5, {0, 10, 100, 31}, 16, 16), (Rect{5, 12, 21, 28})) << "the odd pixel goes below";
    EXPECT_EQ(CentredAt(5, {0, 10, 100, 20}, 16, 16), (Rect{5, 7, 21, 23})) << "higher than the item";
}

TEST(ItemLayout, InsetMovesEveryEdge) {
    EXPECT_EQ(Inset({1, 2, 30, 40}, 3), (Rect{4, 5, 27, 37}));
    EXPECT_EQ(Inset({1, 2, 30, 40}, -2), (Rect{-1, 0, 32, 42}));
}

TEST(TabButtonLayout, TheSelectedTabFillsItsButtonUnderAStrip) {
    const TabButtonLayout layout = LayoutTabButton({10, 5, 110, 33}, 30, true, 96);
    EXPECT_EQ(layout.tab, (Rect{10, 5, 110, 33}));
    EXPECT_EQ(layout.top_edge, (Rect{10, 5, 110, 6}));
    EXPECT_EQ(layout.left_edge, (Rect{10, 5, 11, 33}));
    EXPECT_EQ(layout.right_edge, (Rect{109, 5, 110, 33}));
    EXPECT_EQ(layout.strip, (Rect{10, 5, 110, 8}));
    // 100 - 30 - 5 - 16 = 49, of which 24 are left of the icon.
    EXPECT_EQ(layout.icon, (Rect{34, 12, 50, 28})) << "a pixel below the middle";
    EXPECT_EQ(layout.text, (Rect{55, 5, 110, 33}));
    EXPECT_EQ(layout.focus, (Rect{13, 8, 107, 30}));
}

TEST(TabButtonLayout, TheOthersAreLowerAndHaveNoStrip) {
    const TabButtonLayout layout = LayoutTabButton({10, 5, 110, 33}, 30, false, 96);
    EXPECT_EQ(layout.tab, (Rect{10, 8, 110, 33}));
    EXPECT_EQ(layout.top_edge, (Rect{10, 8, 110, 9}));
    EXPECT_EQ(layout.left_edge, (Rect{10, 8, 11, 33}));
    EXPECT_EQ(layout.right_edge, (Rect{109, 8, 110, 33}));
    EXPECT_EQ(layout.strip, Rect{});
    EXPECT_EQ(layout.icon, (Rect{34, 12, 50, 28}));
    EXPECT_EQ(layout.text, (Rect{55, 8, 110, 33}));
    EXPECT_EQ(layout.focus, (Rect{13, 11, 107, 30}));
}

TEST(TabButtonLayout, GrowsWithTheDpiButForItsLines) {
    const TabButtonLayout normal = LayoutTabButton({0, 0, 150, 42}, 45, true, 144);
    EXPECT_EQ(normal.strip, (Rect{0, 0, 150, 5}));
    // 150 - 45 - 8 - 24 = 73
    EXPECT_EQ(normal.icon, (Rect{36, 11, 60, 35}));
    EXPECT_EQ(normal.text, (Rect{68, 0, 150, 42}));
    EXPECT_EQ(normal.left_edge, (Rect{0, 0, 1, 42}));
    EXPECT_EQ(normal.focus, (Rect{3, 3, 147, 39}));

    const TabButtonLayout large = LayoutTabButton({0, 0, 200, 56}, 60, false, 192);
    EXPECT_EQ(large.tab, (Rect{0, 6, 200, 56}));
    EXPECT_EQ(large.top_edge, (Rect{0, 6, 200, 7}));
    EXPECT_EQ(large.icon, (Rect{49, 15, 81, 47}));
    EXPECT_EQ(large.text, (Rect{91, 6, 200, 56}));
}

TEST(SwitchLayout, TheTrackIsAtTheRightAndTheTextLeftOfIt) {
    const SwitchLayout layout = LayoutSwitch({100, 10, 200, 30}, 96);
    EXPECT_EQ(layout.track, (Rect{172, 12, 200, 28}));
    EXPECT_EQ(layout.text, (Rect{100, 10, 167, 30}));
    EXPECT_EQ(layout.focus, (Rect{170, 10, 202, 30}));
    EXPECT_EQ(LayoutSwitch({100, 10, 200, 40}, 144).track, (Rect{158, 13, 200, 37}));
    EXPECT_EQ(LayoutSwitch({100, 10, 200, 40}, 144).text.right, 150);
    EXPECT_EQ(LayoutSwitch({100, 10, 200, 50}, 192).track, (Rect{144, 14, 200, 46}));
    EXPECT_EQ(LayoutSwitch({100, 10, 200, 50}, 192).focus, (Rect{142, 12, 202, 48}));
}

TEST(SectionTitleLayout, TheTextFollowsTheIcon) {
    const SectionTitleLayout normal = LayoutSectionTitle({10, 20, 200, 40}, 96);
    EXPECT_EQ(normal.icon, (Rect{14, 22, 30, 38}));
    EXPECT_EQ(normal.text, (Rect{35, 20, 200, 40}));
    const SectionTitleLayout wide = LayoutSectionTitle({10, 20, 200, 50}, 144);
    EXPECT_EQ(wide.icon, (Rect{16, 23, 40, 47}));
    EXPECT_EQ(wide.text, (Rect{48, 20, 200, 50}));
    const SectionTitleLayout large = LayoutSectionTitle({10, 20, 200, 60}, 192);
    EXPECT_EQ(large.icon, (Rect{18, 24, 50, 56}));
    EXPECT_EQ(large.text, (Rect{60, 20, 200, 60}));
}

TEST(InterfaceItemLayout, TheColumnsStandUnderTheirHeads) {
    const InterfaceItemLayout normal = LayoutInterfaceItem({2, 40, 302, 60}, 50, 200, 96);
    EXPECT_EQ(normal.check, (Rect{6, 43, 19, 56}));
    EXPECT_EQ(normal.number, (Rect{23, 40, 48, 60}));
    EXPECT_EQ(normal.name, (Rect{52, 40, 198, 60}));
    EXPECT_EQ(normal.ip, (Rect{202, 40, 298, 60}));
    const InterfaceItemLayout wide = LayoutInterfaceItem({2, 40, 302, 70}, 60, 200, 144);
    EXPECT_EQ(wide.check, (Rect{8, 45, 28, 65}));
    EXPECT_EQ(wide.number, (Rect{34, 40, 56, 70}));
    EXPECT_EQ(wide.name, (Rect{62, 40, 196, 70}));
    EXPECT_EQ(wide.ip, (Rect{202, 40, 296, 70}));
    const InterfaceItemLayout large = LayoutInterfaceItem({2, 40, 302, 80}, 80, 200, 192);
    EXPECT_EQ(large.check, (Rect{10, 47, 36, 73}));
    EXPECT_EQ(large.number, (Rect{44, 40, 74, 80}));
}

TEST(InterfaceItemLayout, AnItemIsTwentyPixelsHigh) {
    EXPECT_EQ(InterfaceItemHeight(96), 20);
    EXPECT_EQ(InterfaceItemHeight(144), 30);
    EXPECT_EQ(InterfaceItemHeight(192), 40);
}

}  // namespace
}  // namespace kestrane
