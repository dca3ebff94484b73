// A graph window's lifetime, style and placement, with real windows.
#include "graph/graph_window_win32.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "support/fake_graph_window_win32.h"
#include "text/translation.h"

namespace kestrane {
namespace {

constexpr std::int32_t Lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();

LONG_PTR ExStyleOf(HWND window) {
    return GetWindowLongPtrW(window, GWL_EXSTYLE);
}

using GraphWindowLife = GraphWindowTest;

TEST_F(GraphWindowLife, NothingOfTheSystemBeforeTheFirstShow) {
    GraphWindow& graph = Graph(GraphKind::Cpu);
    const GraphSeries series;
    graph.BindSource(&series);
    graph.ApplyStyle();
    graph.Invalidate();
    graph.RecoverIfOffScreen();
    graph.SetShown(false);
    EXPECT_FALSE(graph.IsShown());
    EXPECT_FALSE(graph.IsCovered());
    EXPECT_TRUE(world.classes.empty());
    EXPECT_TRUE(world.creations.empty());
    EXPECT_TRUE(world.positions.empty());
    EXPECT_EQ(world.invalidations, 0);
    EXPECT_TRUE(host_.changes.empty());
}

TEST_F(GraphWindowLife, TheFirstShowMakesABorderlessToolWindow) {
    world.classUnknown = true;
    Graph(GraphKind::Cpu).SetShown(true);
    ASSERT_EQ(world.classes.size(), 1U);
    const WNDCLASSEXW& info = world.classes[0];
    EXPECT_EQ(info.cbSize, sizeof(WNDCLASSEXW));
    EXPECT_STREQ(info.lpszClassName, L"kestrane.graph");
    EXPECT_EQ(info.style, 0U);
    EXPECT_EQ(info.hCursor, LoadCursorW(nullptr, IDC_ARROW));
    EXPECT_EQ(info.hbrBackground, nullptr);
    EXPECT_EQ(info.hInstance, GetModuleHandleW(nullptr));
    ASSERT_EQ(world.creations.size(), 1U);
    const CreateCall& created = world.creations[0];
    EXPECT_EQ(created.exStyle, 0x08080080U);
    EXPECT_EQ(created.style, 0x80040000U);
    EXPECT_EQ(created.className, L"kestrane.graph");
    EXPECT_EQ(created.rect, (Rect{0, 0, 490, 150}));
    EXPECT_EQ(created.parent, nullptr);
    EXPECT_EQ(created.menu, nullptr);
    EXPECT_EQ(created.instance, GetModuleHandleW(nullptr));
    EXPECT_TRUE(Graph(GraphKind::Cpu).IsShown());
}

TEST_F(GraphWindowLife, AKnownClassIsNotRegisteredAgain) {
    Graph(GraphKind::Cpu).SetShown(true);
    world.classes.clear();
    Graph(GraphKind::Disk).SetShown(true);
    EXPECT_TRUE(world.classes.empty());
}

TEST_F(GraphWindowLife, TitlesAreForTools) {
    for (const GraphKind kind : GraphKinds)
        Graph(kind).SetShown(true);
    SetLanguage(ActiveEnglish);
    for (const GraphKind kind : GraphKinds) {
        graphs_[IndexOf(kind)].reset();
        Graph(kind).SetShown(true);
    }
    SetLanguage(ActiveSpanish);
    std::vector<std::wstring> titles;
    for (const CreateCall& call : world.creations)
        titles.push_back(call.title);
    EXPECT_EQ(titles, (std::vector<std::wstring>{L"kestrane - red", L"kestrane - CPU", L"kestrane - disco",
                                                 L"kestrane - network", L"kestrane - CPU", L"kestrane - disk"}));
}

TEST_F(GraphWindowLife, ARefusedClassIsToldToTheDebugger) {
    world.classUnknown = true;
    world.refuseClass = true;
    settings_.cpu.graph = true;
    Graph(GraphKind::Cpu).SetShown(true);
    EXPECT_EQ(world.debugTexts, std::vector<std::wstring>{L"kestrane: no se pudo registrar la clase de la grafica\n"});
    EXPECT_TRUE(world.creations.empty());
    EXPECT_FALSE(Graph(GraphKind::Cpu).IsShown());
    EXPECT_TRUE(settings_.cpu.graph) << "the settings stay";
    world.refuseClass = false;
    Graph(GraphKind::Cpu).SetShown(true);
    EXPECT_TRUE(Graph(GraphKind::Cpu).IsShown());
}

TEST_F(GraphWindowLife, ARefusedWindowIsToldToTheDebuggerAndTriedAgain) {
    world.refuseWindow = true;
    settings_.disk.graph = true;
    Graph(GraphKind::Disk).SetShown(true);
    Graph(GraphKind::Disk).SetShown(true);
    const std::wstring text = L"kestrane: no se pudo crear la ventana de la grafica\n";
    EXPECT_EQ(world.debugTexts, (std::vector<std::wstring>{text, text}));
    EXPECT_FALSE(Graph(GraphKind::Disk).IsShown());
    EXPECT_TRUE(settings_.disk.graph);
    EXPECT_TRUE(world.positions.empty());
    world.refuseWindow = false;
    Graph(GraphKind::Disk).SetShown(true);
    EXPECT_TRUE(Graph(GraphKind::Disk).IsShown());
}

TEST_F(GraphWindowLife, ShowsWithoutTheFocusAndRaisesOnce) {
    settings_.cpu.topmost = true;
    Graph(GraphKind::Cpu).SetShown(true);
    EXPECT_EQ(world.showCommands, std::vector<int>{SW_SHOWNOACTIVATE});
    EXPECT_EQ(world.positions.back().after, HWND_TOPMOST);
    EXPECT_EQ(world.positions.back().flags, 19U);
    EXPECT_NE(GetForegroundWindow(), world.windows.back());

    world.positions.clear();
    world.invalidations = 0;
    Graph(GraphKind::Cpu).SetShown(true);
    EXPECT_EQ(world.showCommands.size(), 1U) << "shown already";
    EXPECT_TRUE(world.positions.empty());
    EXPECT_EQ(world.invalidations, 1);
    Graph(GraphKind::Cpu).SetShown(false);
    EXPECT_EQ(world.showCommands.back(), SW_HIDE);
    EXPECT_FALSE(Graph(GraphKind::Cpu).IsShown());
    Graph(GraphKind::Cpu).SetShown(true);
    EXPECT_EQ(world.creations.size(), 1U) << "the window is kept";
}

TEST_F(GraphWindowLife, InvalidatesOnlyWhenShown) {
    Show(GraphKind::Cpu);
    Graph(GraphKind::Cpu).Invalidate();
    EXPECT_EQ(world.invalidations, 1);
    const GraphSeries series;
    Graph(GraphKind::Cpu).BindSource(&series);
    EXPECT_EQ(world.invalidations, 2);
    Graph(GraphKind::Cpu).SetShown(false);
    Graph(GraphKind::Cpu).Invalidate();
    EXPECT_EQ(world.invalidations, 2);
}

TEST_F(GraphWindowLife, PaintsWhatItIsBoundTo) {
    const HWND window = Show(GraphKind::Disk);
    world.dpi = 144;
    SendMessageW(window, WM_PAINT, 0, 0);
    GraphSeries series;
    series.periodMs = 3000;
    Graph(GraphKind::Disk).BindSource(&series);
    SendMessageW(window, WM_PAINT, 0, 0);
    Graph(GraphKind::Disk).BindSource(nullptr);
    SendMessageW(window, WM_PAINT, 0, 0);
    ASSERT_EQ(world.paints.size(), 3U);
    const PaintCall& paint = world.paints[1];
    EXPECT_EQ(paint.width, 490);
    EXPECT_EQ(paint.height, 150);
    EXPECT_EQ(paint.kind, GraphKind::Disk);
    EXPECT_EQ(paint.settings, &settings_);
    EXPECT_EQ(paint.periodMs, 3000U);
    EXPECT_EQ(paint.dpi, 144U);
    EXPECT_EQ(paint.hover, HoverState{});
    EXPECT_EQ(world.paints[0].periodMs, 1000U) << "without a record, an empty one";
    EXPECT_EQ(world.paints[2].periodMs, 1000U);
}

TEST_F(GraphWindowLife, GoesWithItsWindow) {
    const HWND window = Show(GraphKind::Cpu);
    graphs_[IndexOf(GraphKind::Cpu)].reset();
    EXPECT_FALSE(IsWindow(window));
}

TEST_F(GraphWindowLife, ComesBackAfterItsWindowWasDestroyed) {
    const HWND window = Show(GraphKind::Cpu);
    DestroyWindow(window);
    EXPECT_FALSE(Graph(GraphKind::Cpu).IsShown());
    Graph(GraphKind::Cpu).Invalidate();
    Graph(GraphKind::Cpu).RecoverIfOffScreen();
    Graph(GraphKind::Cpu).SetShown(true);
    EXPECT_TRUE(Graph(GraphKind::Cpu).IsShown());
    EXPECT_EQ(world.windows.size(), 2U);
}

TEST_F(GraphWindowLife, OneHookForAllGraphs) {
    Graph(GraphKind::Network);
    Graph(GraphKind::Cpu);
    Graph(GraphKind::Disk);
    EXPECT_EQ(world.hooks, 1);
    graphs_[IndexOf(GraphKind::Network)].reset();
    graphs_[IndexOf(GraphKind::Disk)].reset();
    EXPECT_EQ(world.unhooks, 0);
    graphs_[IndexOf(GraphKind::Cpu)].reset();
    EXPECT_EQ(world.unhooks, 1);
    Graph(GraphKind::Cpu);
    EXPECT_EQ(world.hooks, 2);
}

TEST_F(GraphWindowLife, ARefusedHookIsTriedAgainAndNeverRemoved) {
    world.refuseHook = true;
    Graph(GraphKind::Network);
    Graph(GraphKind::Cpu);
    EXPECT_EQ(world.hooks, 2);
    graphs_[IndexOf(GraphKind::Network)].reset();
    graphs_[IndexOf(GraphKind::Cpu)].reset();
    EXPECT_EQ(world.unhooks, 0);
}

using GraphWindowStyle = GraphWindowTest;

TEST_F(GraphWindowStyle, OpacityIsHeldBetween10And100Percent) {
    Show(GraphKind::Cpu);
    for (const auto& [opacity, alpha] : {std::pair{5, 25},
                                         {10, 25},
                                         {50, 127},
                                         {90, 229},
                                         {100, 255},
                                         {101, 255},
                                         {0, 25},
                                         {-7, 25},
                                         {Lowest, 25},
                                         {Highest, 255}}) {
        settings_.cpu.opacity = opacity;
        Graph(GraphKind::Cpu).ApplyStyle();
        EXPECT_EQ(world.alphas.back(), alpha) << opacity;
    }
}

TEST_F(GraphWindowStyle, PinnedIsClickThroughAndOnTop) {
    const HWND window = Show(GraphKind::Cpu);
    for (const auto& [pinned, topmost] : {std::pair{true, false}, {false, false}, {false, true}, {true, true}}) {
        settings_.cpu.pinned = pinned;
        settings_.cpu.topmost = topmost;
        world.positions.clear();
        world.invalidations = 0;
        Graph(GraphKind::Cpu).ApplyStyle();
        EXPECT_EQ((ExStyleOf(window) & WS_EX_TRANSPARENT) != 0, pinned);
        EXPECT_EQ(ExStyleOf(window) & 0x08080080, 0x08080080) << "the other bits stay";
        ASSERT_EQ(world.positions.size(), 1U);
        EXPECT_EQ(world.positions[0].after, pinned || topmost ? HWND_TOPMOST : HWND_NOTOPMOST);
        EXPECT_EQ(world.positions[0].flags, 51U);
        EXPECT_EQ((ExStyleOf(window) & WS_EX_TOPMOST) != 0, pinned || topmost);
        EXPECT_EQ(world.invalidations, 1);
    }
}

TEST_F(GraphWindowStyle, RaisingLeavesItTopmostOnlyIfTheSettingsSaySo) {
    const HWND window = Show(GraphKind::Cpu);
    for (const auto& [pinned, topmost] : {std::pair{true, false}, {false, true}, {false, false}}) {
        settings_.cpu.pinned = pinned;
        settings_.cpu.topmost = topmost;
        world.positions.clear();
        Graph(GraphKind::Cpu).Raise();
        ASSERT_EQ(world.positions.size(), pinned || topmost ? 1U : 2U);
        EXPECT_EQ(world.positions[0].after, HWND_TOPMOST);
        EXPECT_EQ(world.positions.back().after, pinned || topmost ? HWND_TOPMOST : HWND_NOTOPMOST);
        for (const PosCall& call : world.positions)
            EXPECT_EQ(call.flags, 19U);
        EXPECT_EQ((ExStyleOf(window) & WS_EX_TOPMOST) != 0, pinned || topmost);
    }
}

using GraphWindowPlace = GraphWindowTest;

TEST_F(GraphWindowPlace, AGraphThatHasNoPlaceStandsAtTheTaskbar) {
    struct Row {
        const char* reason;
        UINT edge;
        GraphKind kind;
        Rect place;  // as x, y, width, height
    };
    const std::vector<Row> rows = {
        {"bottom", 3, GraphKind::Network, {1430, 890, 490, 150}},
        {"bottom: twice the height", 3, GraphKind::Cpu, {1430, 740, 490, 300}},
        {"bottom: three times", 3, GraphKind::Disk, {1430, 590, 490, 450}},
        {"left", 0, GraphKind::Network, {0, 890, 490, 150}},
        {"right", 2, GraphKind::Network, {1430, 890, 490, 150}},
        {"top", 1, GraphKind::Network, {1430, 0, 490, 150}},
        {"top: the height falls", 1, GraphKind::Cpu, {1430, 150, 490, 0}},
        {"top: the height falls further", 1, GraphKind::Disk, {1430, 300, 490, -150}},
        {"an edge that is none counts as the bottom", 77, GraphKind::Network, {1430, 890, 490, 150}},
    };
    for (const Row& row : rows) {
        graphs_[IndexOf(row.kind)].reset();
        world.positions.clear();
        world.monitorPoints.clear();
        world.taskbar = APPBARDATA{0, nullptr, 0, row.edge, {100, 1040, 300, 1080}, 0};
        Graph(row.kind).SetShown(true);
        ASSERT_FALSE(world.positions.empty()) << row.reason;
        EXPECT_EQ(world.positions[0].rect, row.place) << row.reason;
        EXPECT_EQ(world.positions[0].flags, 20U) << row.reason;
        ASSERT_EQ(world.monitorPoints.size(), 1U) << row.reason;
        EXPECT_EQ(FromPlatform(world.monitorPoints[0]), (Point{200, 1060})) << row.reason;
    }
    EXPECT_EQ(settings_.cpu.width, 0) << "a first place is not stored";
}

TEST_F(GraphWindowPlace, TheMinimumSizeTakesThePlaceOfNoHeight) {
    world.taskbar = APPBARDATA{0, nullptr, 0, 1, {0, 0, 1280, 40}, 0};
    world.workArea = {0, 40, 1280, 800};
    Graph(GraphKind::Cpu).SetShown(true);
    EXPECT_EQ(RectHeight(PlaceOf(world.windows.back())), 80);
}

TEST_F(GraphWindowPlace, WithoutAnAnswerOfTheShellAtTheBottomOfTheFirstMonitor) {
    Graph(GraphKind::Network).SetShown(true);
    EXPECT_EQ(world.positions[0].rect, (Rect{1430, 890, 490, 150}));
    EXPECT_EQ(FromPlatform(world.monitorPoints[0]), (Point{0, 0}));
}

TEST_F(GraphWindowPlace, SizesFollowTheDpi) {
    world.dpi = 144;
    Graph(GraphKind::Network).SetShown(true);
    EXPECT_EQ(world.positions[0].rect, (Rect{1185, 815, 735, 225}));
}

TEST_F(GraphWindowPlace, AStoredPlaceIsTakenAsItIs) {
    settings_.cpu.x = 33;
    settings_.cpu.y = 44;
    settings_.cpu.width = 300;
    settings_.cpu.height = 120;
    Graph(GraphKind::Cpu).SetShown(true);
    EXPECT_EQ(world.positions[0].rect, (Rect{33, 44, 300, 120}));
    EXPECT_EQ(world.positions[0].flags, 20U);
    EXPECT_EQ(PlaceOf(world.windows.back()), (Rect{33, 44, 333, 164}));
    EXPECT_TRUE(world.monitorPoints.empty());
    EXPECT_TRUE(host_.changes.empty());
}

TEST_F(GraphWindowPlace, AWidthBelowOneIsNoPlace) {
    settings_.network.x = 33;
    settings_.network.width = -5;
    settings_.network.height = 120;
    Graph(GraphKind::Network).SetShown(true);
    EXPECT_EQ(world.positions[0].rect, (Rect{1430, 890, 490, 150}));
}

// Whatever a hand-edited file says, the window ends up on a monitor.
TEST_F(GraphWindowPlace, AnyStoredNumbersEndOnTheScreen) {
    world.workArea = {0, 0, 1280, 800};
    for (const std::int32_t place : {Lowest, Lowest + 1, -40000, 40000, Highest - 1, Highest}) {
        for (const std::int32_t size : {1, 490, Highest}) {
            graphs_[IndexOf(GraphKind::Network)].reset();
            settings_.network.x = place;
            settings_.network.y = place;
            settings_.network.width = size;
            settings_.network.height = size;
            Graph(GraphKind::Network).SetShown(true);
            const RECT rect = ToPlatform(PlaceOf(world.windows.back()));
            EXPECT_NE(MonitorFromRect(&rect, MONITOR_DEFAULTTONULL), nullptr) << place << " and " << size;
        }
    }
}

TEST_F(GraphWindowPlace, AMonitorThatIsGoneIsReplacedAndStored) {
    world.offScreen = true;
    settings_.network.x = 5000;
    settings_.network.y = 5000;
    settings_.network.width = 300;
    settings_.network.height = 120;
    Graph(GraphKind::Network).SetShown(true);
    ASSERT_GE(world.positions.size(), 2U);
    EXPECT_EQ(world.positions[0].rect, (Rect{5000, 5000, 300, 120}));
    EXPECT_EQ(world.positions[1].rect, (Rect{1430, 890, 490, 150}));
    EXPECT_EQ(settings_.network.x, 1430);
    EXPECT_EQ(settings_.network.y, 890);
    EXPECT_EQ(settings_.network.width, 490);
    EXPECT_EQ(settings_.network.height, 150);
    EXPECT_TRUE(host_.changes.empty()) << "a later action saves it";
}

TEST_F(GraphWindowPlace, ADisplayChangeBringsItBackAndSaves) {
    Show(GraphKind::Disk);
    Graph(GraphKind::Disk).RecoverIfOffScreen();
    EXPECT_TRUE(host_.changes.empty()) << "partly visible";
    EXPECT_TRUE(world.positions.empty());
    world.offScreen = true;
    Graph(GraphKind::Disk).RecoverIfOffScreen();
    EXPECT_EQ(host_.changes, std::vector<GraphKind>{GraphKind::Disk});
    EXPECT_EQ(settings_.disk.y, 590);
    EXPECT_EQ(settings_.disk.height, 450);
    Graph(GraphKind::Disk).SetShown(false);
    Graph(GraphKind::Disk).RecoverIfOffScreen();
    EXPECT_EQ(host_.changes.size(), 2U) << "a hidden window too";
}

TEST_F(GraphWindowPlace, AStoredPlaceOnAMonitorOfAnotherDpiKeepsItsSize) {
    settings_.cpu.x = 33;
    settings_.cpu.y = 44;
    settings_.cpu.width = 300;
    settings_.cpu.height = 120;
    world.onMove = CrossToLargerDpi;
    Graph(GraphKind::Cpu).SetShown(true);
    EXPECT_EQ(PlaceOf(world.windows.back()), (Rect{33, 44, 333, 164}));
    EXPECT_EQ(StoredRect(GraphKind::Cpu), (Rect{33, 44, 333, 164})) << "the intermediate place is not stored";
    EXPECT_TRUE(host_.changes.empty());
}

TEST_F(GraphWindowPlace, AFirstPlaceOnAMonitorOfAnotherDpiIsNotStored) {
    world.onMove = CrossToLargerDpi;
    Graph(GraphKind::Network).SetShown(true);
    EXPECT_EQ(PlaceOf(world.windows.back()), (Rect{1185, 815, 1920, 1040}));
    EXPECT_EQ(settings_.network.width, 0);
    EXPECT_TRUE(host_.changes.empty());
}

TEST_F(GraphWindowPlace, ANewDpiWhileTheShellIsAskedIsNotStored) {
    world.whileShellAsked = [] { CrossToLargerDpi(world.windows.back()); };
    Graph(GraphKind::Network).SetShown(true);
    EXPECT_EQ(PlaceOf(world.windows.back()), (Rect{1185, 815, 1920, 1040}));
    EXPECT_EQ(settings_.network.width, 0);
    EXPECT_TRUE(host_.changes.empty());
}

TEST_F(GraphWindowPlace, ANewDpiIsStoredAndSaved) {
    const HWND window = Show(GraphKind::Disk, {100, 100, 590, 250});
    CrossToLargerDpi(window);
    EXPECT_EQ(PlaceOf(window), (Rect{100, 100, 835, 325}));
    EXPECT_EQ(StoredRect(GraphKind::Disk), (Rect{100, 100, 835, 325}));
    EXPECT_EQ(host_.changes, std::vector<GraphKind>{GraphKind::Disk});
    const RECT same = ToPlatform(PlaceOf(window));
    SendMessageW(window, WM_DPICHANGED, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&same));
    EXPECT_EQ(host_.changes.size(), 1U) << "nothing new";
}

TEST_F(GraphWindowPlace, ARecoveryToAMonitorOfAnotherDpiHasItsSize) {
    const HWND window = Show(GraphKind::Network);
    world.offScreen = true;
    world.workArea = {0, 0, 1000, 700};
    world.onMove = CrossToLargerDpi;
    Graph(GraphKind::Network).RecoverIfOffScreen();
    EXPECT_EQ(PlaceOf(window), (Rect{1000 - 735, 700 - 225, 1000, 700}));
    EXPECT_EQ(StoredRect(GraphKind::Network), PlaceOf(window));
    EXPECT_EQ(host_.changes, std::vector<GraphKind>{GraphKind::Network}) << "once";
}

// Messages arrive while the shell is asked, and one of them can end the program.
TEST_F(GraphWindowPlace, TheGraphMayEndWhileTheShellIsAsked) {
    world.whileShellAsked = [this] { graphs_[IndexOf(GraphKind::Network)].reset(); };
    Graph(GraphKind::Network).SetShown(true);
    EXPECT_FALSE(IsWindow(world.windows.back())) << "a first place";

    world.offScreen = true;
    settings_.network.width = 300;
    settings_.network.height = 120;
    Graph(GraphKind::Network).SetShown(true);
    EXPECT_FALSE(IsWindow(world.windows.back())) << "a place that no monitor shows";
    EXPECT_TRUE(world.showCommands.empty());
    EXPECT_EQ(settings_.network.width, 300) << "nothing is stored";

    world.offScreen = false;
    const HWND window = Show(GraphKind::Network);
    world.offScreen = true;
    Graph(GraphKind::Network).RecoverIfOffScreen();
    EXPECT_FALSE(IsWindow(window)) << "a recovery";
    EXPECT_TRUE(host_.changes.empty());
    EXPECT_TRUE(world.positions.empty());
}

class GraphWindowCover : public GraphWindowTest {
  protected:
    GraphWindowCover() {
        Show(GraphKind::Cpu, {100, 100, 400, 200});
        Show(GraphKind::Disk, {500, 100, 800, 200});
    }
    ~GraphWindowCover() override {
        if (other_ != nullptr) DestroyWindow(other_);
        if (owner_ != nullptr) DestroyWindow(owner_);
    }

    /// Another program's window, as far as the graphs can tell.
    HWND Other(const Rect& place, DWORD style = WS_POPUP | WS_VISIBLE) {
        if (other_ != nullptr) DestroyWindow(other_);
        static const auto create = REAL(L"user32", CreateWindowExW);
        other_ = create(0, L"STATIC", L"", style, place.left, place.top, RectWidth(place), RectHeight(place), nullptr,
                        nullptr, nullptr, nullptr);
        return other_;
    }
    /// The same, with its own class, and inside `parent` if given.
    HWND Named(const wchar_t* className, HWND parent = nullptr) {
        if (other_ != nullptr) DestroyWindow(other_);
        static const auto create = REAL(L"user32", CreateWindowExW);
        static const auto registerClass = REAL(L"user32", RegisterClassExW);
        WNDCLASSEXW info = {};
        info.cbSize = sizeof info;
        info.lpfnWndProc = DefWindowProcW;
        info.hInstance = GetModuleHandleW(nullptr);
        info.lpszClassName = className;
        registerClass(&info);
        other_ = create(0, className, L"", (parent != nullptr ? WS_CHILD : WS_POPUP) | WS_VISIBLE, 0, 0, 1000, 500,
                        parent, nullptr, info.hInstance, nullptr);
        return other_;
    }
    bool IsCoveredBy(HWND window) {
        Graph(GraphKind::Cpu).Raise();
        Foreground(window);
        return Graph(GraphKind::Cpu).IsCovered();
    }
    /// As the program's hidden window has the foreground while a menu is open.
    void TakeForeground() {
        static const auto create = REAL(L"user32", CreateWindowExW);
        owner_ = create(0, L"STATIC", L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
        SetForegroundWindow(owner_);
        EXPECT_EQ(GetForegroundWindow(), owner_);
    }
    /// Those of the windows that are there, in the order in which they stand.
    static std::vector<HWND> FrontToBack(const std::vector<HWND>& windows) {
        std::vector<HWND> stack;
        for (HWND next = GetTopWindow(nullptr); next != nullptr; next = GetWindow(next, GW_HWNDNEXT)) {
            if (std::ranges::find(windows, next) != windows.end()) stack.push_back(next);
        }
        return stack;
    }
    static void Foreground(HWND window, LONG object = OBJID_WINDOW) {
        world.hookProc(nullptr, EVENT_SYSTEM_FOREGROUND, window, object, 0, 0, 0);
    }

    HWND other_ = nullptr;
    HWND owner_ = nullptr;
};

TEST_F(GraphWindowCover, AWindowOverItMarksIt) {
    Foreground(Other({390, 150, 450, 300}));
    EXPECT_TRUE(Graph(GraphKind::Cpu).IsCovered());
    EXPECT_FALSE(Graph(GraphKind::Disk).IsCovered()) << "not under that window";
    Foreground(Other({0, 0, 10, 10}));
    EXPECT_TRUE(Graph(GraphKind::Cpu).IsCovered()) << "only raising clears it";
    Graph(GraphKind::Cpu).Raise();
    EXPECT_FALSE(Graph(GraphKind::Cpu).IsCovered());
}

TEST_F(GraphWindowCover, NoGraphCoversItselfOrAnother) {
    ASSERT_EQ(world.windows.size(), 2U);
    for (const HWND window : world.windows) {
        Foreground(window);
        EXPECT_FALSE(Graph(GraphKind::Cpu).IsCovered());
        EXPECT_FALSE(Graph(GraphKind::Disk).IsCovered());
    }
}

TEST_F(GraphWindowCover, OnlyAWindowThatCanBeSeenCounts) {
    const Rect over = {0, 0, 1000, 500};
    Foreground(Other({400, 100, 500, 200}));  // exactly between the two
    Foreground(nullptr);
    Foreground(Other(over), OBJID_CLIENT);
    Foreground(Other(over, WS_POPUP));
    Foreground(Other(over, WS_OVERLAPPEDWINDOW | WS_VISIBLE | WS_MINIMIZE));
    const HWND gone = Other(over);
    DestroyWindow(std::exchange(other_, nullptr));
    Foreground(gone);
    EXPECT_FALSE(Graph(GraphKind::Cpu).IsCovered());
    EXPECT_FALSE(Graph(GraphKind::Disk).IsCovered());
}

TEST_F(GraphWindowCover, AHiddenGraphIsNotCovered) {
    Graph(GraphKind::Cpu).SetShown(false);
    Foreground(Other({0, 0, 1000, 500}));
    EXPECT_FALSE(Graph(GraphKind::Cpu).IsCovered());
    EXPECT_TRUE(Graph(GraphKind::Disk).IsCovered());
}

// A click on an icon nearly always brings one of these to the foreground first.
TEST_F(GraphWindowCover, SurfacesOfTheShellDoNotCount) {
    EXPECT_FALSE(IsCoveredBy(Named(L"NotifyIconOverflowWindow")));
    EXPECT_FALSE(IsCoveredBy(Named(L"Shell_TrayWnd")));
    EXPECT_TRUE(IsCoveredBy(Named(L"CabinetWClass"))) << "a file window";
}

TEST_F(GraphWindowCover, SomeSurfacesAreOfTheShellOnlyInItsProcess) {
    world.shellWindow = GetDesktopWindow();
    EXPECT_TRUE(IsCoveredBy(Named(L"WorkerW")));
    world.shellWindow = nullptr;
    EXPECT_TRUE(IsCoveredBy(Named(L"WorkerW"))) << "there is no shell";
    world.shellWindow = world.windows.back();  // as if this were the shell
    EXPECT_FALSE(IsCoveredBy(Named(L"WorkerW")));
    EXPECT_TRUE(IsCoveredBy(Named(L"CabinetWClass"))) << "a file window of the shell's own process";
}

// As Win+D has it. A click on an icon then brings the graph back at once.
TEST_F(GraphWindowCover, TheDesktopCoversWhatStandsBehindIt) {
    const HWND desktop = Named(L"Progman");
    Graph(GraphKind::Cpu).Raise();
    BringWindowToTop(desktop);
    Graph(GraphKind::Disk).Raise();
    Foreground(desktop);
    EXPECT_TRUE(Graph(GraphKind::Cpu).IsCovered());
    EXPECT_FALSE(Graph(GraphKind::Disk).IsCovered());
}

TEST_F(GraphWindowCover, StartCountsNotAndAnAppInItsFrameDoes) {
    EXPECT_FALSE(IsCoveredBy(Named(L"Windows.UI.Core.CoreWindow")));
    static const auto create = REAL(L"user32", CreateWindowExW);
    const HWND frame =
        create(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 1000, 500, nullptr, nullptr, nullptr, nullptr);
    EXPECT_TRUE(IsCoveredBy(Named(L"Windows.UI.Core.CoreWindow", frame)));
    DestroyWindow(std::exchange(other_, nullptr));
    DestroyWindow(frame);
}

// A window comes to the front with the foreground, at once or when its program gets round to it.
TEST_F(GraphWindowCover, GraphsStayInFrontOfAWindowThatIsGivenTheForeground) {
    const HWND other = Other({0, 0, 1000, 500});
    Foreground(other);
    Graph(GraphKind::Cpu).Raise();
    const HWND cpu = world.windows[0];
    const HWND disk = world.windows[1];
    ASSERT_EQ(FrontToBack({cpu, disk, other}), (std::vector<HWND>{cpu, other, disk}));
    TakeForeground();
    world.positions.clear();
    GraphWindow::GiveForeground(other);
    EXPECT_EQ(GetForegroundWindow(), other);
    ASSERT_FALSE(world.positions.empty()) << "raised at once";
    EXPECT_EQ(world.positions.front().window, cpu);
    EXPECT_EQ(FrontToBack({cpu, disk, other}), (std::vector<HWND>{cpu, other, disk}));
    BringWindowToTop(other);
    Foreground(other);
    EXPECT_EQ(FrontToBack({cpu, disk, other}), (std::vector<HWND>{cpu, other, disk}));
    EXPECT_FALSE(Graph(GraphKind::Cpu).IsCovered());
    EXPECT_TRUE(Graph(GraphKind::Disk).IsCovered());

    // Later it comes over them like any other.
    Foreground(other);
    EXPECT_TRUE(Graph(GraphKind::Cpu).IsCovered());
}

TEST_F(GraphWindowCover, GraphsInFrontKeepTheirOrder) {
    const HWND other = Other({0, 0, 1000, 500});
    Graph(GraphKind::Disk).Raise();
    Graph(GraphKind::Cpu).Raise();
    TakeForeground();
    GraphWindow::GiveForeground(other);
    const HWND cpu = world.windows[0];
    const HWND disk = world.windows[1];
    EXPECT_EQ(FrontToBack({cpu, disk, other}), (std::vector<HWND>{cpu, disk, other}));
}

TEST_F(GraphWindowCover, TheDesktopGetsTheForegroundWithoutAChange) {
    const HWND desktop = Named(L"Progman");
    Graph(GraphKind::Cpu).Raise();
    TakeForeground();
    world.positions.clear();
    GraphWindow::GiveForeground(desktop);
    Foreground(desktop);
    EXPECT_EQ(GetForegroundWindow(), desktop);
    EXPECT_TRUE(world.positions.empty());
    EXPECT_FALSE(Graph(GraphKind::Cpu).IsCovered());
}

TEST_F(GraphWindowCover, AGraphMayEndBeforeTheEventOfTheForeground) {
    const HWND other = Other({0, 0, 1000, 500});
    Graph(GraphKind::Cpu).Raise();
    Graph(GraphKind::Disk).Raise();
    TakeForeground();
    GraphWindow::GiveForeground(other);
    Graph(GraphKind::Disk).SetShown(false);
    graphs_[IndexOf(GraphKind::Cpu)].reset();
    Show(GraphKind::Cpu);  // another one, perhaps at the same address
    Foreground(other);
    EXPECT_TRUE(world.positions.empty());
}

TEST_F(GraphWindowCover, ShowingItAgainRaisesIt) {
    Foreground(Other({0, 0, 1000, 500}));
    Graph(GraphKind::Cpu).SetShown(false);
    Graph(GraphKind::Cpu).SetShown(true);
    EXPECT_FALSE(Graph(GraphKind::Cpu).IsCovered());
}

}  // namespace
}  // namespace kestrane
