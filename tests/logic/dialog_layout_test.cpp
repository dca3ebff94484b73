#include "dialog/dialog_layout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include "support/geometry_print.h"

namespace kestrane {
namespace {

constexpr std::int32_t Lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();

constexpr std::array Tabs{SettingsTab::Cpu, SettingsTab::Disk, SettingsTab::Memory, SettingsTab::Network,
                          SettingsTab::General};

AppSettings WithLines(const std::set<GraphKind>& graphs) {
    AppSettings settings;
    for (const GraphKind kind : GraphKinds)
        GraphSettingsOf(settings, kind).style = graphs.contains(kind) ? 1 : 0;
    return settings;
}

std::vector<std::int32_t> TopsOf(const GroupLayout& layout, std::size_t first, std::size_t last) {
    return {layout.group_top.begin() + static_cast<std::ptrdiff_t>(first),
            layout.group_top.begin() + static_cast<std::ptrdiff_t>(last) + 1};
}

const DialogRow& RowOf(std::int32_t id) {
    return *std::ranges::find(DialogRows, id, &DialogRow::id);
}

TEST(LayoutGroups, StacksTheGroupsOfEachTab) {
    using Tops = std::vector<std::int32_t>;
    const GroupLayout layout = LayoutGroups(WithLines({GraphKind::Disk}), {{40, 25, 70}, 29}, SettingsTab::Cpu);
    EXPECT_EQ(TopsOf(layout, 0, 8), (Tops{21, 35, 50, 90, 142, 157, 187, 187, 276})) << "CPU, bars";
    EXPECT_EQ(TopsOf(layout, 9, 19), (Tops{21, 35, 50, 75, 127, 142, 172, 201, 216, 231, 320})) << "disk, lines";
    EXPECT_EQ(TopsOf(layout, 20, 24), (Tops{21, 35, 50, 120, 222})) << "memory";
    EXPECT_EQ(TopsOf(layout, 25, 31), (Tops{21, 35, 187, 202, 232, 232, 321})) << "network, bars";
    EXPECT_EQ(TopsOf(layout, 32, 35), (Tops{21, 29, 67, 96})) << "General";
}

TEST(LayoutGroups, OnlyTheCurrentTabIsVisible) {
    struct Row {
        SettingsTab current;
        std::set<GraphKind> lines;
        std::string visible;  // one sign per group
    };
    const std::vector<Row> rows = {
        {SettingsTab::Cpu, {}, "XXXXXX.XX..........................."},
        {SettingsTab::Cpu, {GraphKind::Cpu}, "XXXXXXXXX..........................."},
        {SettingsTab::Cpu, {GraphKind::Disk, GraphKind::Network}, "XXXXXX.XX..........................."},
        {SettingsTab::Disk, {}, ".........XXXXXXXX.XX................"},
        {SettingsTab::Disk, {GraphKind::Disk}, ".........XXXXXXXXXXX................"},
        {SettingsTab::Memory, {GraphKind::Cpu}, "....................XXXXX..........."},
        {SettingsTab::Network, {}, ".........................XXXX.XX...."},
        {SettingsTab::Network, {GraphKind::Network}, ".........................XXXXXXX...."},
        {SettingsTab::General, {GraphKind::Network}, "................................XXXX"},
    };
    for (const Row& row : rows) {
        std::string visible;
        for (const bool isVisible : LayoutGroups(WithLines(row.lines), {}, row.current).group_visible)
            visible += isVisible ? 'X' : '.';
        EXPECT_EQ(visible, row.visible);
    }
}

TEST(LayoutGroups, TheTallestTabGivesTheHeightOfAll) {
    using enum GraphKind;
    struct Row {
        const char* reason;
        std::set<GraphKind> lines;
        MeasuredHeights heights;
        std::int32_t contentHeight;
    };
    const std::vector<Row> rows = {
        {"nothing measured yet: network", {}, {}, 343},
        {"network with lines", {Network}, {}, 358},
        {"lines of a lower tab change nothing", {Cpu, Disk}, {}, 343},
        {"disk, a unit lower than network", {Disk}, {{10, 39, 10}, 15}, 343},
        {"disk, just as high", {Disk}, {{10, 40, 10}, 15}, 343},
        {"disk, a unit higher", {Disk}, {{10, 41, 10}, 15}, 344},
        {"disk, the tallest, with bars", {}, {{10, 80, 10}, 15}, 368},
        {"and with lines, 15 higher", {Disk}, {{10, 80, 10}, 15}, 383},
        {"many disks", {}, {{10, 10, 10}, 435}, 718},
        {"a processor of many lines", {Cpu}, {{200, 10, 10}, 15}, 473},
        {"many memory slots", {}, {{10, 10, 300}, 15}, 474},
        {"at the end of the range", {}, {{Highest, 10, 10}, 15}, Highest},
        {"a height below any sense", {}, {{Lowest, Lowest, Lowest}, Lowest}, 343},
    };
    for (const Row& row : rows) {
        for (const SettingsTab tab : Tabs)
            EXPECT_EQ(LayoutGroups(WithLines(row.lines), row.heights, tab).content_height, row.contentHeight)
                << row.reason;
    }
}

TEST(HardwareHeight, IsRoundedUpToDialogUnits) {
    struct Row {
        const char* reason;
        std::int32_t pixels, unit;
        std::uint32_t dpi;
        std::int32_t height;
    };
    const std::vector<Row> rows = {
        {"3 lines of 16: 54 pixels are 28.8 units", 48, 15, 96, 36},
        {"exactly 8 units", 9, 15, 96, 15},
        {"a pixel more", 10, 15, 96, 16},
        {"at 144 DPI 9 pixels around", 72, 24, 144, 34},
        {"at 192 DPI 12", 96, 30, 192, 36},
        {"no rows", 0, 15, 96, 11},
        {"a unit of no height counts as one pixel", 10, 0, 96, 135},
        {"at the end of the range", Highest, 1, 96, Highest},
    };
    for (const Row& row : rows)
        EXPECT_EQ(HardwareHeight(row.pixels, row.unit, row.dpi), row.height) << row.reason;
}

TEST(PlaceControl, StandsInItsGroup) {
    struct Row {
        const char* reason;
        std::int32_t id;
        SettingsTab current;
        ControlPlace place;
    };
    using enum SettingsTab;
    const std::vector<Row> rows = {
        {"a well in group 3, at 90", IdCpuBg, Cpu, {true, {50, 104, 62, 116}, {}}},
        {"above the top of its group", IdCpuShow, Cpu, {true, {201, 20, 253, 30}, {}}},
        {"on another tab", IdCpuBg, Disk, {false, {50, 104, 62, 116}, {}}},
        {"a tab's title is never shown", IdCpuTitle, Cpu, {false, {11, 23, 259, 43}, {}}},
        {"nor is its icon", IdCpuTabIcon, Cpu, {false, {16, 21, 26, 31}, {}}},
        {"a text as high as measured", IdCpuHardware, Cpu, {true, {15, 50, 255, 84}, {}}},
        {"another height on the memory tab", IdMemHardware, Memory, {true, {15, 50, 255, 114}, {}}},
        {"a list in its dropped height", IdCpuRefresh, Cpu, {true, {51, 120, 141, 200}, {}}},
        {"bars need no smoothing", IdCpuSmoothing, Cpu, {false, {53, 187, 117, 267}, {}}},
        {"lines do", IdDiskSmoothing, Disk, {true, {53, 216, 117, 296}, {}}},
    };
    const MeasuredHeights heights{{40, 25, 70}, 29};
    for (const Row& row : rows) {
        const GroupLayout layout = LayoutGroups(WithLines({GraphKind::Disk}), heights, row.current);
        const ControlPlace place = PlaceControl(RowOf(row.id), layout, heights);
        EXPECT_EQ(place.shown, row.place.shown) << row.reason;
        EXPECT_EQ(place.rect, row.place.rect) << row.reason;
        EXPECT_EQ(place.frame, row.place.frame) << row.reason;
    }
}

TEST(PlaceControl, ABoxTitleBreaksTheTopOfItsFrame) {
    const DialogRow& box = *std::ranges::find(DialogRows, ControlType::BoxTitle, &DialogRow::type);
    EXPECT_EQ(PlaceControl(box, LayoutGroups({}, {}, SettingsTab::General), {}),
              (ControlPlace{true, {20, 29, 262, 38}, {14, 33, 256, 63}}));
    EXPECT_EQ(PlaceControl(box, LayoutGroups({}, {}, SettingsTab::Cpu), {}),
              (ControlPlace{false, {20, 29, 262, 38}, {}}));
}

TEST(BoxTitleRect, IsAsWideAsItsText) {
    EXPECT_EQ(BoxTitleRect({35, 54, 459, 71}, 52, 96), (Rect{35, 54, 93, 71}));
    EXPECT_EQ(BoxTitleRect({55, 87, 720, 114}, 78, 144), (Rect{55, 87, 142, 114}));
    EXPECT_EQ(BoxTitleRect({70, 109, 917, 142}, 104, 192), (Rect{70, 109, 186, 142}));
    EXPECT_EQ(BoxTitleRect({0, 0, 10, 10}, Highest, 96), (Rect{0, 0, Highest, 10}));
}

TEST(TabIconRect, IsASquareInTheMiddle) {
    EXPECT_EQ(TabIconRect({28, 39, 46, 58}, 96), (Rect{29, 40, 45, 56}));
    EXPECT_EQ(TabIconRect({40, 60, 70, 90}, 144), (Rect{43, 63, 67, 87}));
    EXPECT_EQ(TabIconRect({10, 10, 20, 20}, 192), (Rect{-1, -1, 31, 31})) << "larger than the rectangle";
}

TEST(Boxes, AreThoseOfTheCurrentTab) {
    const MeasuredHeights heights{{40, 25, 70}, 29};
    const AppSettings settings = WithLines({GraphKind::Disk});
    struct Row {
        SettingsTab current;
        std::array<Rect, HardwareCount> hardware;
        std::array<Rect, GraphCount> graphs;  // network, CPU, disk
    };
    const std::vector<Row> rows = {
        {SettingsTab::Cpu, {{{14, 35, 256, 85}}}, {{{}, {14, 142, 256, 275}}}},
        {SettingsTab::Disk, {{{}, {14, 35, 256, 70}}}, {{{}, {}, {14, 127, 256, 319}}}},
        {SettingsTab::Memory, {{{}, {}, {14, 35, 256, 115}}}, {}},
        {SettingsTab::Network, {}, {{{14, 187, 256, 320}}}},
        {SettingsTab::General, {}, {}},
    };
    for (const Row& row : rows) {
        const GroupLayout layout = LayoutGroups(settings, heights, row.current);
        for (std::size_t i = 0; i < HardwareCount; ++i)
            EXPECT_EQ(HardwareBox(Tabs.at(i), layout, heights), row.hardware.at(i)) << IndexOf(row.current);
        EXPECT_EQ(HardwareBox(SettingsTab::Network, layout, heights), Rect{});
        EXPECT_EQ(HardwareBox(SettingsTab::General, layout, heights), Rect{});
        for (const GraphKind kind : GraphKinds)
            EXPECT_EQ(GraphBox(kind, layout), row.graphs.at(IndexOf(kind))) << IndexOf(row.current);
    }
}

TEST(NoteRects, FollowTheContent) {
    EXPECT_EQ(NoteRects(343), (std::array<Rect, 2>{{{11, 344, 259, 353}, {11, 354, 259, 375}}}));
    EXPECT_EQ(ClientArea(343), (Rect{0, 0, 270, 379}));
    EXPECT_EQ(ClientArea(Highest), (Rect{0, 0, 270, Highest}));
}

TEST(TabButtonRects, ShareWhatTheirTextsLeave) {
    using Buttons = std::array<Rect, TabCount>;
    struct Row {
        const char* reason;
        Rect band;
        std::array<std::int32_t, TabCount> texts;
        std::uint32_t dpi;
        Buttons buttons;
    };
    const std::vector<Row> rows = {
        {"175 for the padding and 150 for the texts leave 109, or 21 each",
         {19, 6, 453, 34},
         {26, 33, 52, 20, 19},
         96,
         {{{19, 6, 101, 34}, {101, 6, 190, 34}, {190, 6, 298, 34}, {298, 6, 374, 34}, {374, 6, 449, 34}}}},
        {"53 each at 144 DPI",
         {30, 9, 710, 54},
         {40, 50, 78, 30, 62},
         144,
         {{{30, 9, 154, 54}, {154, 9, 288, 54}, {288, 9, 450, 54}, {450, 9, 564, 54}, {564, 9, 710, 54}}}},
        {"70 each at 192 DPI",
         {39, 11, 907, 68},
         {50, 60, 100, 40, 90},
         192,
         {{{39, 11, 194, 68}, {194, 11, 359, 68}, {359, 11, 564, 68}, {564, 11, 709, 68}, {709, 11, 904, 68}}}},
        {"too long for the band",
         {0, 0, 100, 10},
         {10, 10, 10, 10, 10},
         96,
         {{{0, 0, 45, 10}, {45, 0, 90, 10}, {90, 0, 135, 10}, {135, 0, 180, 10}, {180, 0, 225, 10}}}},
        {"at the end of the range",
         {0, 0, 100, 10},
         {Highest, Highest, Highest, Highest, Highest},
         96,
         {{{0, 0, Highest, 10},
           {Highest, 0, Highest, 10},
           {Highest, 0, Highest, 10},
           {Highest, 0, Highest, 10},
           {Highest, 0, Highest, 10}}}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(TabButtonRects(row.band, row.texts, row.dpi), row.buttons) << row.reason;
}

TEST(WidthInUnits, IsRoundedUp) {
    EXPECT_EQ(WidthInUnits(0, 7), 0);
    EXPECT_EQ(WidthInUnits(7, 7), 4);
    EXPECT_EQ(WidthInUnits(8, 7), 5);
    EXPECT_EQ(WidthInUnits(70, 7), 40);
    EXPECT_EQ(WidthInUnits(71, 7), 41);
    EXPECT_EQ(WidthInUnits(10, 0), 40) << "a unit of no width counts as one pixel";
    EXPECT_EQ(WidthInUnits(Highest, 1), Highest);
}

std::string PlacesOf(const DiskBoxes& boxes) {
    std::string places;
    for (const DialogRow& row : boxes.rows) {
        places += std::to_string(row.id) + ":" + std::to_string(row.x) + "," + std::to_string(row.y) + " " +
                  std::to_string(row.w) + "x" + std::to_string(row.h) + " ";
    }
    return places + "height " + std::to_string(boxes.disks_height);
}

TEST(FlowDiskBoxes, FillsLineByLine) {
    struct Row {
        const char* reason;
        std::vector<std::int32_t> texts;
        std::string places;
    };
    const std::vector<Row> rows = {
        {"no disk", {50}, "1264:36,1 64x10 height 15"},
        {"two on a line", {50, 100}, "1264:36,1 64x10 1270:106,1 114x10 height 15"},
        {"ends at 242", {50, 122}, "1264:36,1 64x10 1270:106,1 136x10 height 15"},
        {"would reach 243", {50, 123}, "1264:36,1 64x10 1270:36,15 137x10 height 29"},
        {"each on its own line",
         {50, 130, 140, 10},
         "1264:36,1 64x10 1270:36,15 144x10 1271:36,29 154x10 1272:196,29 24x10 height 43"},
        {"a long name is cut, and stays on the line it starts",
         {50, 300, 20},
         "1264:36,1 64x10 1270:36,15 206x10 1271:36,29 34x10 height 43"},
        {"a first text that is too long", {300}, "1264:36,1 206x10 height 15"},
        {"at the end of the range", {Highest, Highest}, "1264:36,1 206x10 1270:36,15 206x10 height 29"},
        {"no text at all", {}, "height 15"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(PlacesOf(FlowDiskBoxes(row.texts)), row.places) << row.reason;
}

TEST(FlowDiskBoxes, OffersTheFirst30Disks) {
    const DiskBoxes boxes = FlowDiskBoxes(std::vector<std::int32_t>(40, 200));
    ASSERT_EQ(boxes.rows.size(), 31U);
    EXPECT_EQ(boxes.rows.back().id, 1299);
    EXPECT_EQ(boxes.rows.back().y, 1 + 30 * 14);
    EXPECT_EQ(boxes.disks_height, 435);
    for (const DialogRow& row : boxes.rows) {
        EXPECT_EQ(row.type, ControlType::CheckBox);
        EXPECT_EQ(row.group, 15);
        EXPECT_STREQ(row.text, L"");
    }
    EXPECT_EQ(DialogGroups.at(15).kind, GroupKind::DiskList);
}

TEST(ResizedDialog, MovesUpButNotAboveTheWorkArea) {
    const Rect workArea{0, 40, 1920, 1040};
    struct Row {
        const char* reason;
        Rect window;
        std::int32_t height;
        Rect resized;
    };
    const std::vector<Row> rows = {
        {"fits", {100, 200, 500, 600}, 700, {100, 200, 550, 900}},
        {"just fits", {100, 340, 500, 600}, 700, {100, 340, 550, 1040}},
        {"a pixel too high", {100, 341, 500, 600}, 700, {100, 340, 550, 1040}},
        {"higher than the work area", {100, 200, 500, 600}, 1200, {100, 40, 550, 1240}},
        {"exactly the work area", {100, 200, 500, 600}, 1000, {100, 40, 550, 1040}},
        {"lower than before stays in place", {100, 340, 500, 1040}, 300, {100, 340, 550, 640}},
        {"above the work area stays there while it fits", {100, -60, 500, 300}, 400, {100, -60, 550, 340}},
        {"and while it just fits", {100, -60, 500, 300}, 1100, {100, -60, 550, 1040}},
        {"beside the work area stays there", {-900, 200, -500, 600}, 700, {-900, 200, -450, 900}},
        {"at the end of the range", {100, Highest - 10, 500, Highest}, 700, {100, 340, 550, 1040}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(ResizedDialog(row.window, workArea, 450, row.height), row.resized) << row.reason;
}

TEST(OpeningPlace, IsWhereTheDialogWasLeftOrAtTheClick) {
    EXPECT_EQ(OpeningPlace({false, 0, 0, 0}, {1900, 1060}, 480, 700), (DialogPlace{{1420, 360}, {1900, 1060}}));
    EXPECT_EQ(OpeningPlace({true, -300, 50, 4}, {1900, 1060}, 480, 700), (DialogPlace{{-300, 50}, {-300, 50}}));
    EXPECT_EQ(OpeningPlace({true, 0, 0, 0}, {1900, 1060}, 480, 700), (DialogPlace{{0, 0}, {0, 0}}));
    EXPECT_EQ(OpeningPlace({}, {Lowest, Lowest}, 480, 700), (DialogPlace{{Lowest, Lowest}, {Lowest, Lowest}}));
}

TEST(MovedIntoWorkArea, KeepsTheWholeWindowThere) {
    struct Row {
        const char* reason;
        Point corner;
        Rect workArea;
        Point moved;
    };
    const Rect fullHd{0, 0, 1920, 1040};
    const std::vector<Row> rows = {
        {"inside stays", {100, 200}, fullHd, {100, 200}},
        {"a click on the taskbar", {1420, 360}, fullHd, {1420, 340}},
        {"beyond the right edge", {1500, 100}, fullHd, {1440, 100}},
        {"beyond the left and top edge", {-10, -20}, fullHd, {0, 0}},
        {"beyond all monitors", {99999, -99999}, fullHd, {1440, 0}},
        {"beyond all monitors, on a second one at the left", {-99999, 99999}, {-1280, 0, 0, 1024}, {-1280, 324}},
        {"a taskbar at the left and at the top", {0, 0}, {60, 40, 1920, 1080}, {60, 40}},
        {"a work area smaller than the window", {300, 300}, {100, 50, 500, 600}, {100, 50}},
        {"a work area just as large", {300, 300}, {100, 50, 580, 750}, {100, 50}},
        {"the ends of the range", {Lowest, Highest}, fullHd, {0, 340}},
        {"no work area", {10, 10}, {}, {0, 0}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(MovedIntoWorkArea(row.corner, row.workArea, 480, 700), row.moved) << row.reason;
}

// The pages as they appear, at several DPIs.

/// A DPI, and the average character of the dialog font there.
struct Screen {
    std::uint32_t dpi;
    std::int32_t charWidth;
    std::int32_t charHeight;
};
constexpr std::array<Screen, 3> Screens{{{96, 7, 15}, {144, 10, 24}, {192, 14, 30}}};

/// As MapDialogRect.
Rect ToPixels(const Rect& units, const Screen& screen) {
    const auto scale = [](std::int32_t value, std::int32_t base, std::int32_t parts) {
        return (value * base + parts / 2) / parts;
    };
    return {scale(units.left, screen.charWidth, 4), scale(units.top, screen.charHeight, 8),
            scale(units.right, screen.charWidth, 4), scale(units.bottom, screen.charHeight, 8)};
}

bool Overlap(const Rect& a, const Rect& b) {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

bool Contains(const Rect& outer, const Rect& inner) {
    return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
           inner.bottom <= outer.bottom;
}

/// The samples of neighbouring memory levels: each is higher than its line, and their margins overlap.
bool AreNeighbouringLevels(const DialogRow& a, const DialogRow& b) {
    return a.id >= IdMemSample && b.id == a.id + 1 && b.id <= IdMem3Sample;
}

struct Page {
    GroupLayout layout;
    MeasuredHeights heights;
    std::vector<DialogRow> rows;  // those that are shown, lists closed

    Rect RectOfRow(const DialogRow& row) const { return PlaceControl(row, layout, heights).rect; }
};

/// A page on a machine with several disks.
Page MakePage(SettingsTab tab, bool lines) {
    const DiskBoxes disks = FlowDiskBoxes(std::vector<std::int32_t>{45, 90, 110, 70, 300, 20});
    Page page;
    page.heights = {{37, 25, 61}, disks.disks_height};
    page.layout =
        LayoutGroups(lines ? WithLines({GraphKinds.begin(), GraphKinds.end()}) : WithLines({}), page.heights, tab);
    std::vector<DialogRow> rows(DialogRows.begin(), DialogRows.end());
    rows.insert(rows.end(), disks.rows.begin(), disks.rows.end());
    for (DialogRow& row : rows) {
        if (!PlaceControl(row, page.layout, page.heights).shown) continue;
        const bool isCombo = row.type == ControlType::Combo || row.type == ControlType::FontCombo;
        if (isCombo) row.h = 13;
        page.rows.push_back(row);
    }
    return page;
}

template <typename Check>
void ForEveryPage(const Check& check) {
    for (const SettingsTab tab : Tabs) {
        for (const bool lines : {false, true}) {
            const Page page = MakePage(tab, lines);
            ASSERT_FALSE(page.rows.empty());
            for (const Screen& screen : Screens) {
                SCOPED_TRACE("tab " + std::to_string(IndexOf(tab)) + (lines ? ", lines, " : ", bars, ") +
                             std::to_string(screen.dpi) + " DPI");
                check(page, screen);
            }
        }
    }
}

TEST(Pages, HoldAllTheirControls) {
    ForEveryPage([](const Page& page, const Screen& screen) {
        const std::int32_t contentHeight = page.layout.content_height;
        const Rect area = ToPixels({11, TabBand.bottom, 259, contentHeight}, screen);
        for (const DialogRow& row : page.rows) {
            Rect rect = ToPixels(page.RectOfRow(row), screen);
            if (row.type == ControlType::BoxTitle) rect = BoxTitleRect(rect, 8 * screen.charWidth, screen.dpi);
            EXPECT_PRED2(Contains, area, rect) << row.id << " in group " << row.group;
        }
        const Rect client = ToPixels(ClientArea(contentHeight), screen);
        for (const Rect& note : NoteRects(contentHeight)) {
            EXPECT_PRED2(Contains, client, ToPixels(note, screen));
            EXPECT_FALSE(Overlap(area, ToPixels(note, screen)));
        }
        EXPECT_PRED2(Contains, client, ToPixels(TabBand, screen));
    });
}

TEST(Pages, NoControlCoversAnother) {
    ForEveryPage([](const Page& page, const Screen& screen) {
        for (std::size_t i = 0; i < page.rows.size(); ++i) {
            for (std::size_t j = i + 1; j < page.rows.size(); ++j) {
                const DialogRow& a = page.rows[i];
                const DialogRow& b = page.rows[j];
                EXPECT_EQ(Overlap(ToPixels(page.RectOfRow(a), screen), ToPixels(page.RectOfRow(b), screen)),
                          AreNeighbouringLevels(a, b))
                    << a.id << " and " << b.id << " in groups " << a.group << " and " << b.group;
            }
        }
    });
}

TEST(Pages, EachControlStaysInItsGroup) {
    ForEveryPage([](const Page& page, const Screen& screen) {
        for (const DialogRow& row : page.rows) {
            const auto group = static_cast<std::size_t>(row.group);
            const bool isLast =
                group + 1 == DialogGroups.size() || DialogGroups.at(group + 1).tab != DialogGroups.at(group).tab;
            const std::int32_t bottom = isLast ? page.layout.content_height : page.layout.group_top.at(group + 1);
            const std::int32_t top = page.layout.group_top.at(group) - (row.type == ControlType::ShowSwitch ? 1 : 0);
            EXPECT_PRED2(Contains, ToPixels({0, top, 270, bottom}, screen), ToPixels(page.RectOfRow(row), screen))
                << row.id << " in group " << row.group;
        }
    });
}

TEST(Pages, BoxesHoldTheirControlsAndNoOthers) {
    ForEveryPage([](const Page& page, const Screen& screen) {
        const auto check = [&](const Rect& box, std::size_t first, std::size_t last) {
            for (const DialogRow& row : page.rows) {
                const auto group = static_cast<std::size_t>(row.group);
                const Rect rect = ToPixels(page.RectOfRow(row), screen);
                if (group >= first && group <= last) {
                    EXPECT_PRED2(Contains, ToPixels(box, screen), rect) << row.id << " in group " << group;
                } else {
                    EXPECT_FALSE(Overlap(ToPixels(box, screen), rect)) << row.id << " in group " << group;
                }
            }
        };
        for (std::size_t i = 0; i < HardwareCount; ++i) {
            const Rect box = HardwareBox(Tabs.at(i), page.layout, page.heights);
            if (box != Rect{}) check(box, HardwarePanels.at(i).first_group, HardwarePanels.at(i).last_group);
        }
        for (const GraphKind kind : GraphKinds) {
            const GraphPanel& panel = GraphPanels.at(IndexOf(kind));
            const Rect box = GraphBox(kind, page.layout);
            if (box != Rect{}) check(box, panel.first_group, panel.last_group);
        }
    });
}

}  // namespace
}  // namespace kestrane
