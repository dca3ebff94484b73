#include "app/tray_events.h"

#include <gtest/gtest.h>

namespace kestrane {
namespace {

TEST(DecodeTrayNotification, TakesBothParametersApart) {
    const TrayNotification click = DecodeTrayNotification(0x0320'0500, 0x0004'0400);
    EXPECT_EQ(click.event, EventSelect);
    EXPECT_EQ(click.iconId, 4U);
    EXPECT_EQ(click.x, 0x500);
    EXPECT_EQ(click.y, 0x320);
    // A taskbar on a monitor left of and above the first: both halves are signed.
    const TrayNotification left = DecodeTrayNotification(0xFFF6'FF38, 0x0001'007B);
    EXPECT_EQ(left.x, -200);
    EXPECT_EQ(left.y, -10);
    EXPECT_EQ(left.event, EventContextMenu);
}

TEST(RouteTrayNotification, GoesByEventThenByIcon) {
    struct Row {
        std::uint32_t event;
        std::uint32_t iconId;
        TrayAction action;
    };
    const Row rows[] = {
        {EventBalloonClick, 1, TrayAction::OpenUpdate},  // whatever the icon
        {EventBalloonClick, 3, TrayAction::OpenUpdate},
        {EventContextMenu, 2, TrayAction::ShowMenu},
        {EventContextMenu, 3, TrayAction::ShowMenu},
        {EventSelect, 1, TrayAction::ClickGraphIcon},
        {EventDoubleClick, 2, TrayAction::ClickGraphIcon},
        {EventKeySelect, 4, TrayAction::ClickGraphIcon},
        {EventSelect, 3, TrayAction::None},  // memory has no graph
        {EventKeySelect, 3, TrayAction::None},
        {EventDoubleClick, 3, TrayAction::OpenTaskManager},
        {EventSelect, 0, TrayAction::None},  // not one of our icons
        {0x200, 3, TrayAction::None},        // a mouse move
    };
    for (const Row& row : rows) {
        EXPECT_EQ(RouteTrayNotification({row.event, row.iconId, 0, 0}), row.action)
            << std::hex << row.event << " on icon " << row.iconId;
    }
}

TEST(TaskManagerPage, IsThatOfTheIconsMetric) {
    MetricSample sample;
    sample.busiestReadDisk = L"4 E:";
    sample.busiestWriteDisk = L"2 D:";
    sample.diskInstanceCount = 6;
    struct Row {
        std::uint32_t iconId;
        std::int64_t page;
    };
    const Row rows[] = {
        {1, 0}, {2, 6}, {3, 1}, {4, 8}, {0, 0}, {5, 0}, {6, 0}, {0xFFFF, 0}, {0xFFFF'FFFF, 0},
    };
    for (const Row& row : rows)
        EXPECT_EQ(TaskManagerPage(row.iconId, sample), row.page) << "icon " << row.iconId;
}

TEST(TaskManagerPage, OfTheDiskIsThatOfTheBusierSide) {
    struct Row {
        std::int32_t readPercent;
        std::int32_t writePercent;
        std::int64_t page;
    };
    const Row rows[] = {
        {0, 0, 6},   {50, 49, 6}, {50, 50, 6},  // reading wins on a tie
        {50, 51, 4}, {0, 1, 4},   {1, 0, 6},   {100, 100, 6}, {0, 100, 4},
    };
    for (const Row& row : rows) {
        MetricSample sample;
        sample.busiestReadDisk = L"4 E:";
        sample.busiestWriteDisk = L"2 D:";
        sample.diskReadPercent = row.readPercent;
        sample.diskWritePercent = row.writePercent;
        EXPECT_EQ(TaskManagerPage(2, sample), row.page) << row.readPercent << " and " << row.writePercent;
    }
}

TEST(TaskManagerPage, OfAMachineOfWhichNothingIsKnown) {
    EXPECT_EQ(TaskManagerPage(1, {}), 0);
    EXPECT_EQ(TaskManagerPage(2, {}), 2);
    EXPECT_EQ(TaskManagerPage(3, {}), 1);
    EXPECT_EQ(TaskManagerPage(4, {}), 2);
    MetricSample sample;
    sample.diskInstanceCount = 0xFFFF'FFFF;
    EXPECT_EQ(TaskManagerPage(4, sample), 4294967297);
}

TEST(PassesClickFilter, LetsTheFirstOfADoubleClickThrough) {
    std::uint64_t next = 0;
    EXPECT_TRUE(PassesClickFilter(EventSelect, 1000, 500, next));
    EXPECT_EQ(next, 1500U);
    EXPECT_FALSE(PassesClickFilter(EventDoubleClick, 1200, 500, next));
    EXPECT_FALSE(PassesClickFilter(EventSelect, 1499, 500, next));
    EXPECT_EQ(next, 1500U);  // an ignored click does not prolong the wait
    EXPECT_TRUE(PassesClickFilter(EventKeySelect, 1500, 500, next));
    EXPECT_EQ(next, 2000U);
    EXPECT_TRUE(PassesClickFilter(EventDoubleClick, 2000, 500, next));
}

TEST(PassesClickFilter, IgnoresAllOtherEvents) {
    std::uint64_t next = 0;
    for (const std::uint32_t event : {0U, 0x200U, 0x201U, 0x202U, 0x402U, EventContextMenu, EventBalloonClick}) {
        EXPECT_FALSE(PassesClickFilter(event, 1000, 500, next)) << std::hex << event;
    }
    EXPECT_EQ(next, 0U);
}

TEST(DecideToggle, OpensHidesRaisesOrStays) {
    struct Row {
        bool shown;
        bool covered;
        bool pinned;
        bool topmost;
        GraphToggle toggle;
    };
    const Row rows[] = {
        {false, false, false, false, GraphToggle::Open},
        {false, true, true, true, GraphToggle::Open},  // a hidden one opens, pinned or not
        {true, false, false, false, GraphToggle::Hide},
        {true, true, false, false, GraphToggle::Raise},
        {true, true, false, true, GraphToggle::Hide},  // topmost, so not really covered
        {true, true, true, false, GraphToggle::Stay},
        {true, false, true, true, GraphToggle::Stay},
    };
    for (const Row& row : rows) {
        GraphSettings settings;
        settings.pinned = row.pinned;
        settings.topmost = row.topmost;
        EXPECT_EQ(DecideToggle(settings, row.shown, row.covered), row.toggle) << "row " << &row - rows;
    }
}

}  // namespace
}  // namespace kestrane
