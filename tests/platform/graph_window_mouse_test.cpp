// A graph window and the mouse: hit tests, hover, clicks, menus and drags.
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <new>
#include <ostream>
#include <string>
#include <vector>

#include "graph/graph_window_win32.h"
#include "support/fake_graph_window_win32.h"
#include "support/program_end_win32.h"

namespace kestrane {
namespace {

LPARAM At(std::int32_t x, std::int32_t y) {
    return MAKELPARAM(static_cast<WORD>(x), static_cast<WORD>(y));
}

POINT Cursor(LONG x, LONG y) {
    return {x, y};
}

using GraphWindowMessages = GraphWindowTest;

TEST_F(GraphWindowMessages, AnswersThatNeverChange) {
    const HWND window = Show(GraphKind::Cpu);
    EXPECT_EQ(SendMessageW(window, WM_ERASEBKGND, 0, 0), 1);
    EXPECT_EQ(SendMessageW(window, WM_MOUSEACTIVATE, 0, 0), MA_NOACTIVATE);
    RECT rect = {10, 20, 110, 70};
    EXPECT_EQ(SendMessageW(window, WM_NCCALCSIZE, TRUE, reinterpret_cast<LPARAM>(&rect)), 0);
    EXPECT_EQ(FromPlatform(rect), (Rect{10, 20, 110, 70})) << "no frame";
    EXPECT_EQ(SendMessageW(window, WM_SIZE, 0, 0), 0);
    EXPECT_EQ(world.invalidations, 1);
}

TEST_F(GraphWindowMessages, TheClientAreaIsTheWholeWindow) {
    const HWND window = Show(GraphKind::Cpu, {100, 100, 590, 250});
    RECT client = {};
    GetClientRect(window, &client);
    EXPECT_EQ(FromPlatform(client), (Rect{0, 0, 490, 150}));
}

TEST_F(GraphWindowMessages, TheLeastSizeFollowsTheDpi) {
    const HWND window = Show(GraphKind::Cpu);
    for (const auto& [dpi, width, height] : {std::tuple{96U, 200, 80}, {144U, 300, 120}, {120U, 250, 100}}) {
        world.dpi = dpi;
        MINMAXINFO info = {};
        EXPECT_EQ(SendMessageW(window, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info)), 0);
        EXPECT_EQ(info.ptMinTrackSize.x, width);
        EXPECT_EQ(info.ptMinTrackSize.y, height);
    }
}

TEST_F(GraphWindowMessages, TakesTheRectangleOfANewDpi) {
    const HWND window = Show(GraphKind::Cpu);
    const RECT suggested = {50, 60, 785, 285};
    EXPECT_EQ(SendMessageW(window, WM_DPICHANGED, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&suggested)), 0);
    ASSERT_EQ(world.positions.size(), 1U);
    EXPECT_EQ(world.positions[0].rect, (Rect{50, 60, 735, 225}));
    EXPECT_EQ(world.positions[0].flags, 20U);
    EXPECT_EQ(PlaceOf(window), FromPlatform(suggested));
    EXPECT_GE(world.invalidations, 1);
}

TEST_F(GraphWindowMessages, NothingIsPaintedInAWindowTooSmall) {
    const HWND window = Show(GraphKind::Cpu);
    // Smaller than the minimum size, which SetWindowPos can still do.
    static const auto setPos = REAL(L"user32", SetWindowPos);
    for (const auto& [width, height, paints] : {std::tuple{2, 50, 0U}, {50, 2, 0U}, {3, 3, 1U}}) {
        world.paints.clear();
        setPos(window, nullptr, 0, 0, width, height, SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOSENDCHANGING);
        RECT client = {};
        GetClientRect(window, &client);
        ASSERT_EQ(FromPlatform(client), (Rect{0, 0, width, height}));
        SendMessageW(window, WM_PAINT, 0, 0);
        EXPECT_EQ(world.paints.size(), paints) << width << " by " << height;
    }
}

TEST_F(GraphWindowMessages, HitTestsDivideTheSurface) {
    const HWND window = Show(GraphKind::Cpu, {100, 200, 590, 350});
    struct Row {
        std::int32_t x, y;
        LRESULT code;
    };
    const std::vector<Row> rows = {
        {100, 200, HTTOPLEFT},    {300, 200, HTTOP},     {589, 200, HTTOPRIGHT},    {104, 250, HTLEFT},
        {105, 250, HTCAPTION},    {300, 250, HTCAPTION}, {584, 250, HTCAPTION},     {585, 250, HTRIGHT},
        {100, 349, HTBOTTOMLEFT}, {300, 345, HTBOTTOM},  {589, 349, HTBOTTOMRIGHT}, {300, 344, HTCAPTION},
    };
    for (const Row& row : rows)
        EXPECT_EQ(SendMessageW(window, WM_NCHITTEST, 0, At(row.x, row.y)), row.code);
    world.dpi = 192;
    EXPECT_EQ(SendMessageW(window, WM_NCHITTEST, 0, At(109, 250)), HTLEFT) << "the border grows with the DPI";
    EXPECT_EQ(SendMessageW(window, WM_NCHITTEST, 0, At(110, 250)), HTCAPTION);
    settings_.cpu.pinned = true;
    for (const Row& row : rows)
        EXPECT_EQ(SendMessageW(window, WM_NCHITTEST, 0, At(row.x, row.y)), HTCLIENT);
}

TEST_F(GraphWindowMessages, HitTestsLeftOfTheFirstMonitor) {
    const HWND window = Show(GraphKind::Cpu, {-300, -100, 200, 80});
    EXPECT_EQ(SendMessageW(window, WM_NCHITTEST, 0, At(-300, -100)), HTTOPLEFT);
    EXPECT_EQ(SendMessageW(window, WM_NCHITTEST, 0, At(-100, 0)), HTCAPTION);
}

using GraphWindowHover = GraphWindowTest;

TEST_F(GraphWindowHover, FollowsTheMouseInClientPixels) {
    const HWND window = Show(GraphKind::Cpu, {100, 200, 590, 350});
    SendMessageW(window, WM_NCMOUSEMOVE, HTCAPTION, At(130, 250));
    EXPECT_EQ(world.invalidations, 1);
    EXPECT_EQ(HoverOf(window), (HoverState{true, 30, 50}));
    SendMessageW(window, WM_NCMOUSEMOVE, HTCAPTION, At(130, 250));
    EXPECT_EQ(world.invalidations, 1) << "nothing new";
    SendMessageW(window, WM_NCMOUSEMOVE, HTCAPTION, At(130, 251));
    EXPECT_EQ(world.invalidations, 2);
    SendMessageW(window, WM_NCMOUSEMOVE, HTLEFT, At(101, 251));
    EXPECT_EQ(HoverOf(window), HoverState{}) << "on the border";
    EXPECT_EQ(world.trackingFlags, std::vector<DWORD>{18}) << "asked for once";
}

TEST_F(GraphWindowHover, EndsWhenTheMouseLeaves) {
    const HWND window = Show(GraphKind::Cpu, {100, 200, 590, 350});
    SendMessageW(window, WM_NCMOUSEMOVE, HTCAPTION, At(130, 250));
    EXPECT_EQ(SendMessageW(window, WM_NCMOUSELEAVE, 0, 0), 0);
    EXPECT_EQ(HoverOf(window), HoverState{});
    SendMessageW(window, WM_NCMOUSEMOVE, HTCAPTION, At(131, 250));
    EXPECT_EQ(world.trackingFlags.size(), 2U) << "each leave ends the request";
}

TEST_F(GraphWindowHover, ARefusedRequestIsMadeAgain) {
    const HWND window = Show(GraphKind::Cpu, {100, 200, 590, 350});
    world.refuseTracking = true;
    SendMessageW(window, WM_NCMOUSEMOVE, HTCAPTION, At(130, 250));
    SendMessageW(window, WM_NCMOUSEMOVE, HTCAPTION, At(131, 250));
    EXPECT_EQ(world.trackingFlags.size(), 2U);
    EXPECT_EQ(HoverOf(window), (HoverState{true, 31, 50}));
}

TEST_F(GraphWindowHover, TheNextWindowBeginsWithoutIt) {
    const HWND first = Show(GraphKind::Cpu, {100, 200, 590, 350});
    SendMessageW(first, WM_NCMOUSEMOVE, HTCAPTION, At(130, 250));
    DestroyWindow(first);
    const HWND second = Show(GraphKind::Cpu, {100, 200, 590, 350});
    EXPECT_EQ(HoverOf(second), HoverState{});
    SendMessageW(second, WM_NCMOUSEMOVE, HTCAPTION, At(130, 250));
    EXPECT_EQ(world.trackingFlags.size(), 2U) << "the request ended with its window";
}

TEST_F(GraphWindowHover, NotWhenPinnedHiddenOrDragged) {
    const HWND window = Show(GraphKind::Cpu, {100, 200, 590, 350});
    const auto hover = [&] { SendMessageW(window, WM_NCMOUSEMOVE, HTCAPTION, At(130, 250)); };

    hover();
    settings_.cpu.pinned = true;
    Graph(GraphKind::Cpu).ApplyStyle();
    EXPECT_FALSE(HoverOf(window).active) << "pinning ends it";
    hover();
    EXPECT_FALSE(HoverOf(window).active) << "pinned";
    settings_.cpu.pinned = false;

    hover();
    EXPECT_TRUE(HoverOf(window).active);
    Graph(GraphKind::Cpu).SetShown(false);
    EXPECT_FALSE(HoverOf(window).active) << "hidden";
    Graph(GraphKind::Cpu).SetShown(true);

    hover();
    SendMessageW(window, WM_ENTERSIZEMOVE, 0, 0);
    EXPECT_FALSE(HoverOf(window).active) << "the drag ends it";
    hover();
    EXPECT_FALSE(HoverOf(window).active) << "during the drag";
    SendMessageW(window, WM_EXITSIZEMOVE, 0, 0);
    hover();
    EXPECT_TRUE(HoverOf(window).active);
}

using GraphWindowClick = GraphWindowTest;

TEST_F(GraphWindowClick, APressThatDoesNotMoveIsAClick) {
    const HWND window = Show(GraphKind::Disk);
    EXPECT_EQ(SendMessageW(window, WM_NCLBUTTONDOWN, HTCAPTION, At(130, 150)), 0);
    EXPECT_EQ(host_.clicks, std::vector<GraphKind>{GraphKind::Disk});
    // The system's move loop begins and ends without a move.
    world.moveLoop = [window] {
        SendMessageW(window, WM_ENTERSIZEMOVE, 0, 0);
        SendMessageW(window, WM_EXITSIZEMOVE, 0, 0);
    };
    SendMessageW(window, WM_NCLBUTTONDOWN, HTCAPTION, At(130, 150));
    EXPECT_EQ(host_.clicks.size(), 2U);
    EXPECT_TRUE(host_.changes.empty()) << "a click leaves the place as it was";
}

TEST_F(GraphWindowClick, TheSecondOfTwoQuickPressesIsAClickToo) {
    const HWND window = Show(GraphKind::Disk);
    SendMessageW(window, WM_NCLBUTTONDOWN, HTCAPTION, At(130, 150));
    EXPECT_EQ(SendMessageW(window, WM_NCLBUTTONDBLCLK, HTCAPTION, At(130, 150)), 0);
    EXPECT_EQ(host_.clicks.size(), 2U);
    SendMessageW(window, WM_NCLBUTTONDBLCLK, HTLEFT, At(101, 150));
    EXPECT_EQ(host_.clicks.size(), 2U);
}

TEST_F(GraphWindowClick, ADragOfOnePixelIsNone) {
    const HWND window = Show(GraphKind::Disk);
    world.cursor = Cursor(130, 150);
    world.moveLoop = [window] {
        SendMessageW(window, WM_ENTERSIZEMOVE, 0, 0);
        world.cursor = Cursor(131, 150);
        RECT rect = {101, 100, 591, 250};
        SendMessageW(window, WM_MOVING, 0, reinterpret_cast<LPARAM>(&rect));
        SendMessageW(window, WM_EXITSIZEMOVE, 0, 0);
    };
    SendMessageW(window, WM_NCLBUTTONDOWN, HTCAPTION, At(130, 150));
    EXPECT_TRUE(host_.clicks.empty());
    EXPECT_EQ(host_.changes, std::vector<GraphKind>{GraphKind::Disk});
}

TEST_F(GraphWindowClick, OnlyTheSurfaceIsClicked) {
    const HWND window = Show(GraphKind::Disk);
    SendMessageW(window, WM_NCLBUTTONDOWN, HTLEFT, At(101, 150));
    SendMessageW(window, WM_NCLBUTTONDOWN, HTBOTTOMRIGHT, At(589, 249));
    EXPECT_TRUE(host_.clicks.empty());
    // Pinned while the button was down.
    world.moveLoop = [this] { settings_.disk.pinned = true; };
    SendMessageW(window, WM_NCLBUTTONDOWN, HTCAPTION, At(130, 150));
    EXPECT_TRUE(host_.clicks.empty());
}

// The program can end inside the system's loop and take the window with it.
TEST_F(GraphWindowClick, TheWindowMayEndWhileItIsPressed) {
    const HWND window = Show(GraphKind::Disk);
    world.moveLoop = [this] { graphs_[IndexOf(GraphKind::Disk)].reset(); };
    EXPECT_EQ(SendMessageW(window, WM_NCLBUTTONDOWN, HTCAPTION, At(130, 150)), 0);
    EXPECT_TRUE(host_.clicks.empty());
    EXPECT_FALSE(IsWindow(window));
}

// The system would swallow it, or let it go where nobody expects it.
TEST_F(GraphWindowClick, AnExceptionInAMessageEndsTheProgram) {
    host_.onMenu = [] { throw std::bad_alloc(); };
    EXPECT_TRUE(test::EndsTheProgram([this] {
        const HWND window = Show(GraphKind::Cpu);
        SendMessageW(window, WM_NCRBUTTONUP, HTCAPTION, At(130, 150));
    }));
}

TEST_F(GraphWindowClick, ARightClickAsksForTheMenu) {
    const HWND window = Show(GraphKind::Network);
    SendMessageW(window, WM_NCMOUSEMOVE, HTCAPTION, At(130, 150));
    bool hoverAtMenu = true;
    host_.onMenu = [&] { hoverAtMenu = HoverOf(window).active; };
    EXPECT_EQ(SendMessageW(window, WM_NCRBUTTONUP, HTCAPTION, At(-130, 150)), 0);
    EXPECT_FALSE(hoverAtMenu);
    world.cursor = Cursor(-5, 700);
    EXPECT_EQ(SendMessageW(window, WM_CONTEXTMENU, 0, At(20, 30)), 0);
    EXPECT_EQ(SendMessageW(window, WM_CONTEXTMENU, 0, -1), 0) << "the menu key: at the cursor";
    const std::vector<std::pair<GraphKind, Point>> expected = {
        {GraphKind::Network, {-130, 150}}, {GraphKind::Network, {20, 30}}, {GraphKind::Network, {-5, 700}}};
    EXPECT_EQ(host_.menus, expected);
}

TEST_F(GraphWindowClick, TheMenuMayEndTheProgram) {
    const HWND window = Show(GraphKind::Network);
    host_.onMenu = [this] { graphs_[IndexOf(GraphKind::Network)].reset(); };
    EXPECT_EQ(SendMessageW(window, WM_NCRBUTTONUP, HTCAPTION, At(130, 150)), 0);
    EXPECT_FALSE(IsWindow(window));
    const HWND again = Show(GraphKind::Network);
    EXPECT_EQ(SendMessageW(again, WM_CONTEXTMENU, 0, At(130, 150)), 0);
    EXPECT_FALSE(IsWindow(again));
}

class GraphWindowDrag : public GraphWindowTest {
  protected:
    GraphWindowDrag() {
        window_ = Show(GraphKind::Cpu, {300, 300, 790, 450});
        world.cursor = Cursor(500, 400);
        SendMessageW(window_, WM_ENTERSIZEMOVE, 0, 0);
    }

    /// The rectangle with the mouse at `dx`, `dy` from the start; the system's proposal does not matter.
    Rect Move(LONG dx, LONG dy) { return Drag(WM_MOVING, 0, dx, dy); }
    Rect Size(WPARAM edge, LONG dx, LONG dy) { return Drag(WM_SIZING, edge, dx, dy); }
    Rect Drag(UINT message, WPARAM edge, LONG dx, LONG dy) {
        world.cursor = Cursor(500 + dx, 400 + dy);
        RECT rect = {1, 2, 3, 4};
        EXPECT_EQ(SendMessageW(window_, message, edge, reinterpret_cast<LPARAM>(&rect)), 1);
        return FromPlatform(rect);
    }

    HWND window_ = nullptr;
};

TEST_F(GraphWindowDrag, MovesWithTheMouseFromTheStart) {
    EXPECT_EQ(Move(17, -20), (Rect{317, 280, 807, 430}));
    EXPECT_EQ(Move(100, 100), (Rect{400, 400, 890, 550})) << "not from the last step";
    EXPECT_EQ(Move(0, 0), (Rect{300, 300, 790, 450}));
}

TEST_F(GraphWindowDrag, SnapsToTheWorkArea) {
    EXPECT_EQ(Move(-293, -306), (Rect{0, 0, 490, 150}));
    EXPECT_EQ(Move(1130 - 8, 590 + 9), (Rect{1430, 890, 1920, 1040}));
    EXPECT_EQ(Move(-289, -289), (Rect{11, 11, 501, 161})) << "11 away is too far";
    world.dpi = 192;
    EXPECT_EQ(Move(-289, -289), (Rect{0, 0, 490, 150})) << "the range grows with the DPI";
}

TEST_F(GraphWindowDrag, SnapsToShownSisters) {
    Graph(GraphKind::Disk);
    Show(GraphKind::Disk, {900, 300, 1200, 400});
    EXPECT_EQ(Move(113, 6), (Rect{410, 300, 900, 450})) << "outside, at its left";
    EXPECT_EQ(Move(604, 0).left, 900) << "inside, at its left";
    EXPECT_EQ(Move(0, 94).top, 400) << "below it";
    Graph(GraphKind::Disk).SetShown(false);
    EXPECT_EQ(Move(113, 6), (Rect{413, 306, 903, 456})) << "a hidden one does not attract";
}

TEST_F(GraphWindowDrag, SizesTheDraggedSides) {
    EXPECT_EQ(Size(WMSZ_LEFT, -50, 70), (Rect{250, 300, 790, 450}));
    EXPECT_EQ(Size(WMSZ_TOPLEFT, -50, -70), (Rect{250, 230, 790, 450}));
    EXPECT_EQ(Size(WMSZ_BOTTOMRIGHT, 50, 70), (Rect{300, 300, 840, 520}));
    EXPECT_EQ(Size(WMSZ_LEFT, 1000, 0), (Rect{590, 300, 790, 450})) << "the minimum width";
    EXPECT_EQ(Size(WMSZ_BOTTOM, 0, -1000), (Rect{300, 300, 790, 380})) << "the minimum height";
    EXPECT_EQ(Size(WMSZ_LEFT, -293, 0), (Rect{0, 300, 790, 450})) << "it snaps";
    EXPECT_EQ(Size(WMSZ_BOTTOM, 0, 582), (Rect{300, 300, 790, 1040}));
    EXPECT_EQ(Size(99, 50, 50), (Rect{300, 300, 790, 450})) << "not a valid side";
    world.dpi = 144;
    EXPECT_EQ(Size(WMSZ_RIGHT, -1000, 0), (Rect{300, 300, 600, 450})) << "the minimum size grows with the DPI";
}

TEST_F(GraphWindowDrag, AltTurnsSnappingOff) {
    world.altDown = true;
    EXPECT_EQ(Move(-293, -306), (Rect{7, -6, 497, 144}));
    EXPECT_EQ(Size(WMSZ_LEFT, -293, 0), (Rect{7, 300, 790, 450}));
    EXPECT_EQ(Size(WMSZ_LEFT, 1000, 0), (Rect{590, 300, 790, 450})) << "the minimum size still applies";
}

TEST_F(GraphWindowDrag, EachStepIsSeen) {
    Move(17, -20);
    EXPECT_EQ(PlaceOf(window_), (Rect{317, 280, 807, 430}));
    Size(WMSZ_TOPLEFT, -50, -70);
    EXPECT_EQ(PlaceOf(window_), (Rect{250, 230, 790, 450}));
    ASSERT_EQ(world.positions.size(), 2U);
    for (const PosCall& call : world.positions)
        EXPECT_EQ(call.flags, 20U);
    EXPECT_TRUE(host_.changes.empty());
}

// The new rectangle keeps the window under the mouse. From there the drag goes on.
TEST_F(GraphWindowDrag, ANewDpiBeginsItAnew) {
    Move(100, 0);
    world.dpi = 144;
    const RECT suggested = {350, 290, 1085, 515};
    SendMessageW(window_, WM_DPICHANGED, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&suggested));
    EXPECT_EQ(PlaceOf(window_), FromPlatform(suggested));
    EXPECT_EQ(Move(100, 0), FromPlatform(suggested));
    EXPECT_EQ(Move(110, 5), (Rect{360, 295, 1095, 520}));
    EXPECT_EQ(Size(WMSZ_RIGHT, 80, 5), (Rect{350, 290, 1065, 515}));
    EXPECT_TRUE(host_.changes.empty()) << "the end saves it";
    SendMessageW(window_, WM_EXITSIZEMOVE, 0, 0);
    EXPECT_EQ(StoredRect(GraphKind::Cpu), (Rect{350, 290, 1065, 515}));
    EXPECT_EQ(host_.changes, std::vector<GraphKind>{GraphKind::Cpu});
}

TEST_F(GraphWindowDrag, AStepToAMonitorOfAnotherDpiKeepsTheNewSize) {
    world.onMove = CrossToLargerDpi;
    EXPECT_EQ(Move(100, 100), (Rect{400, 400, 1135, 625})) << "the system must take the actual rectangle";
    EXPECT_EQ(PlaceOf(window_), (Rect{400, 400, 1135, 625}));
    EXPECT_EQ(Move(120, 90), (Rect{420, 390, 1155, 615}));
}

TEST_F(GraphWindowDrag, TheEndStoresThePlaceAndSavesIt) {
    static const auto setPos = REAL(L"user32", SetWindowPos);
    setPos(window_, nullptr, 40, 50, 333, 222, SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_TRUE(host_.changes.empty());
    EXPECT_EQ(SendMessageW(window_, WM_EXITSIZEMOVE, 0, 0), 0);
    EXPECT_EQ(settings_.cpu.x, 40);
    EXPECT_EQ(settings_.cpu.y, 50);
    EXPECT_EQ(settings_.cpu.width, 333);
    EXPECT_EQ(settings_.cpu.height, 222);
    EXPECT_EQ(host_.changes, std::vector<GraphKind>{GraphKind::Cpu});
}

TEST_F(GraphWindowDrag, TheCursorMayBeAnywhere) {
    constexpr LONG highest = std::numeric_limits<LONG>::max();
    world.cursor = Cursor(highest, highest);
    RECT rect = {};
    SendMessageW(window_, WM_MOVING, 0, reinterpret_cast<LPARAM>(&rect));
    EXPECT_EQ(rect.left, highest - 200);
    EXPECT_EQ(rect.right, highest) << "clamped to the end of the range";
}

/// The ways into the system's modal move loop: the mouse, and a command sent by another program.
struct Entrance {
    const char* name;
    UINT message;
    WPARAM wParam;
    UINT step;  // the message for each mouse move
    WPARAM edge;
    Rect place;  // after a step of 50, 40
};

void PrintTo(const Entrance& entrance, std::ostream* out) {
    *out << entrance.name;
}

constexpr Entrance Entrances[] = {
    {"the surface", WM_NCLBUTTONDOWN, HTCAPTION, WM_MOVING, 0, {350, 340, 840, 490}},
    {"the right border", WM_NCLBUTTONDOWN, HTRIGHT, WM_SIZING, WMSZ_RIGHT, {300, 300, 840, 450}},
    {"the top left corner", WM_NCLBUTTONDOWN, HTTOPLEFT, WM_SIZING, WMSZ_TOPLEFT, {350, 340, 790, 450}},
    {"a second press", WM_NCLBUTTONDBLCLK, HTCAPTION, WM_MOVING, 0, {350, 340, 840, 490}},
    {"a second press on a border", WM_NCLBUTTONDBLCLK, HTRIGHT, WM_SIZING, WMSZ_RIGHT, {300, 300, 840, 450}},
    {"the command to move", WM_SYSCOMMAND, SC_MOVE, WM_MOVING, 0, {350, 340, 840, 490}},
    {"the command to size", WM_SYSCOMMAND, SC_SIZE, WM_SIZING, WMSZ_BOTTOM, {300, 300, 790, 490}},
};

constexpr Rect LoopStart = {300, 300, 790, 450};

class GraphWindowLoop : public GraphWindowTest, public testing::WithParamInterface<Entrance> {
  protected:
    GraphWindowLoop() {
        window_ = Show(GraphKind::Disk, LoopStart);
        world.cursor = Cursor(500, 400);
    }

    /// A drag in the system's own loop; `after` runs between WM_EXITSIZEMOVE and the loop's return.
    void Drag(LONG dx, LONG dy, const std::function<void()>& after = {}) {
        world.moveLoop = [=, this] {
            SendMessageW(window_, WM_ENTERSIZEMOVE, 0, 0);
            Step(dx, dy);
            SendMessageW(window_, WM_EXITSIZEMOVE, 0, 0);
            EXPECT_TRUE(host_.changes.empty()) << "the loop has not returned";
            if (after) after();
        };
        Enter();
    }
    void Step(LONG dx, LONG dy) {
        world.cursor = Cursor(500 + dx, 400 + dy);
        RECT rect = {1, 2, 3, 4};
        SendMessageW(window_, GetParam().step, GetParam().edge, reinterpret_cast<LPARAM>(&rect));
        world.cursor = Cursor(500, 400);
    }
    void Enter() { EXPECT_EQ(SendMessageW(window_, GetParam().message, GetParam().wParam, At(500, 400)), 0); }

    void PutBackByTheSystem() {
        SetWindowPos(window_, nullptr, LoopStart.left, LoopStart.top, RectWidth(LoopStart), RectHeight(LoopStart),
                     SWP_NOZORDER | SWP_NOACTIVATE);
    }

    HWND window_ = nullptr;
};

INSTANTIATE_TEST_SUITE_P(Entrances, GraphWindowLoop, testing::ValuesIn(Entrances), [](const auto& row) {
    std::string name = row.param.name;
    std::erase(name, ' ');
    return name;
});

TEST_P(GraphWindowLoop, WhatStandsAfterItIsStoredAndSavedOnce) {
    Drag(50, 40);
    EXPECT_EQ(PlaceOf(window_), GetParam().place);
    EXPECT_EQ(StoredRect(GraphKind::Disk), GetParam().place);
    EXPECT_EQ(host_.changes, std::vector<GraphKind>{GraphKind::Disk});
}

// A loop ended by Esc puts the window back after WM_EXITSIZEMOVE.
TEST_P(GraphWindowLoop, WhatEscHasUndoneIsNotSaved) {
    Drag(50, 40, [this] { PutBackByTheSystem(); });
    EXPECT_EQ(PlaceOf(window_), LoopStart);
    EXPECT_EQ(StoredRect(GraphKind::Disk), LoopStart);
    EXPECT_TRUE(host_.changes.empty());
    EXPECT_TRUE(host_.clicks.empty());
}

// A system that moves the window only at the end of a drag has nothing to put back.
TEST_P(GraphWindowLoop, EscPutsItBackWhereTheSystemDoesNot) {
    Drag(50, 40, [] { world.escRead = true; });
    EXPECT_EQ(PlaceOf(window_), LoopStart);
    EXPECT_EQ(StoredRect(GraphKind::Disk), LoopStart);
    EXPECT_TRUE(host_.changes.empty());
}

// The release of the key that ended the previous drag goes to the window that has the focus by then.
TEST_P(GraphWindowLoop, AnOlderEscDoesNotCount) {
    world.escRead = true;
    Drag(50, 40);
    EXPECT_EQ(PlaceOf(window_), GetParam().place);
    EXPECT_EQ(StoredRect(GraphKind::Disk), GetParam().place);
    EXPECT_EQ(host_.changes, std::vector<GraphKind>{GraphKind::Disk});
}

TEST_P(GraphWindowLoop, ADragThatComesBackSavesNothing) {
    world.moveLoop = [this] {
        SendMessageW(window_, WM_ENTERSIZEMOVE, 0, 0);
        Step(50, 40);
        Step(0, 0);
        SendMessageW(window_, WM_EXITSIZEMOVE, 0, 0);
    };
    Enter();
    EXPECT_EQ(PlaceOf(window_), LoopStart);
    EXPECT_TRUE(host_.changes.empty());
    EXPECT_TRUE(host_.clicks.empty()) << "nor is it a click";
}

TEST_P(GraphWindowLoop, AFirstPlaceIsNotFixedByAPress) {
    settings_.disk.width = 0;
    world.moveLoop = [this] {
        SendMessageW(window_, WM_ENTERSIZEMOVE, 0, 0);
        SendMessageW(window_, WM_EXITSIZEMOVE, 0, 0);
    };
    Enter();
    EXPECT_EQ(settings_.disk.width, 0);
    EXPECT_TRUE(host_.changes.empty());
}

// From a monitor of another DPI, the system resizes the window on its way back.
TEST_P(GraphWindowLoop, EscPutsItBackInItsSizeFromAnyMonitor) {
    world.dpi = 144;
    Drag(50, 40, [this] {
        world.escRead = true;
        PutBackByTheSystem();
        world.dpi = 96;
        const RECT smaller = {300, 300, 627, 400};
        SendMessageW(window_, WM_DPICHANGED, MAKEWPARAM(96, 96), reinterpret_cast<LPARAM>(&smaller));
    });
    EXPECT_EQ(PlaceOf(window_), LoopStart);
    EXPECT_TRUE(host_.changes.empty());
}

TEST_P(GraphWindowLoop, EscDoesNotLeadBackToAMonitorThatIsGone) {
    world.workArea = {0, 0, 1280, 800};
    Drag(50, 40, [] {
        world.escRead = true;
        world.offScreen = true;
    });
    EXPECT_EQ(PlaceOf(window_), (Rect{790, 350, 1280, 800})) << "at the taskbar";
    EXPECT_EQ(StoredRect(GraphKind::Disk), PlaceOf(window_));
    EXPECT_EQ(host_.changes, std::vector<GraphKind>{GraphKind::Disk});
}

TEST_P(GraphWindowLoop, TheProgramMayEndInIt) {
    world.moveLoop = [this] {
        SendMessageW(window_, WM_ENTERSIZEMOVE, 0, 0);
        Step(50, 40);
        graphs_[IndexOf(GraphKind::Disk)].reset();
    };
    Enter();
    EXPECT_FALSE(IsWindow(window_));
    EXPECT_TRUE(host_.changes.empty());
    EXPECT_TRUE(host_.clicks.empty());
}

// Another program may close the window during the drag; the graph can be shown again.
TEST_P(GraphWindowLoop, ItsWindowMayEndInItAndTheNextIsAsGood) {
    world.moveLoop = [this] {
        SendMessageW(window_, WM_ENTERSIZEMOVE, 0, 0);
        DestroyWindow(window_);
    };
    Enter();
    EXPECT_TRUE(host_.changes.empty());
    window_ = Show(GraphKind::Disk, LoopStart);
    SendMessageW(window_, WM_NCMOUSEMOVE, HTCAPTION, At(400, 350));
    EXPECT_TRUE(HoverOf(window_).active);
    Drag(50, 40);
    EXPECT_EQ(StoredRect(GraphKind::Disk), GetParam().place);
    EXPECT_EQ(host_.changes, std::vector<GraphKind>{GraphKind::Disk});
}

}  // namespace
}  // namespace kestrane
