// `App` behind its real hidden window, with shell, timers, hotkey and counters replaced: the order of start and end,
// message handling, which timers are restarted, and what a tick changes.
#include <windows.h>
#include <winsock2.h>
#include <ws2ipdef.h>

#include <iphlpapi.h>
#include <pdh.h>
#include <pdhmsg.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "app/app_win32.h"
#include "app/hidden_window_win32.h"
#include "app/timers.h"
#include "app/tray_events.h"
#include "hardware/hardware_facts_win32.h"
#include "support/call_log.h"
#include "support/icon_pixels_win32.h"
#include "text/translation.h"
#include "tray/icon_painting.h"
#include "tray/icon_render_win32.h"
#include "tray/promotion_win32.h"

namespace {

using kestrane::test::Calls;
using kestrane::test::CountCalls;
using kestrane::test::NoteCall;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr UINT FakeTaskbarCreated = 0xC0DE;

struct World {
    bool hotkeyFree = true;
    bool systemTimesWork = true;
    std::uint64_t idle = 0;
    std::uint64_t total = 0;
    int iconSize = 16;
    std::wstring lastTip[5];
    kestrane::IconPixels lastImage[5];
    bool memoryWorks = true;
    std::uint64_t clockMs = 1000000;
    std::uint64_t inOctets = 0;
    std::uint64_t outOctets = 0;
    bool tableWorks = true;
    std::set<UINT> onTaskbar;       // ids that were added and not deleted
    std::string interrupted;        // the call to the shell during which
    std::function<void()> sending;  // this is sent, once
    HWND filtered = nullptr;        // the window whose message filter was changed
    bool filterIsChanged = true;
};
World world;

std::string Number(std::uint64_t value) {
    return std::to_string(value);
}

BOOL WINAPI FakeShell_NotifyIconW(DWORD message, PNOTIFYICONDATAW data) {
    static const char* const Names[] = {"add", "modify", "delete", "setfocus", "setversion"};
    const UINT id = data->uID;
    const std::string call = std::string("icon ") + Names[message] + " " + Number(id);
    NoteCall(call);
    if (message == NIM_ADD) world.onTaskbar.insert(id);
    if (message == NIM_DELETE) world.onTaskbar.erase(id);
    if (world.sending && call == world.interrupted) {
        std::exchange(world.sending, nullptr)();
        NoteCall("the shell answers");
    }
    if (message != NIM_DELETE && id < 5) {
        world.lastTip[id] = data->szTip;
        if ((data->uFlags & NIF_ICON) != 0) world.lastImage[id] = kestrane::ReadIconPixels(data->hIcon);
    }
    return TRUE;
}

UINT_PTR WINAPI FakeSetTimer(HWND, UINT_PTR id, UINT period, TIMERPROC procedure) {
    EXPECT_EQ(procedure, nullptr);
    NoteCall("SetTimer " + Number(id) + " " + Number(period));
    return id;
}

BOOL WINAPI FakeKillTimer(HWND, UINT_PTR id) {
    NoteCall("KillTimer " + Number(id));
    return TRUE;
}

BOOL WINAPI FakeRegisterHotKey(HWND, int id, UINT modifiers, UINT key) {
    NoteCall("RegisterHotKey " + Number(static_cast<unsigned>(id)) + " " + Number(modifiers) + " " + Number(key));
    return world.hotkeyFree ? TRUE : FALSE;
}

BOOL WINAPI FakeUnregisterHotKey(HWND, int id) {
    NoteCall("UnregisterHotKey " + Number(static_cast<unsigned>(id)));
    return TRUE;
}

void WINAPI FakePostQuitMessage(int exitCode) {
    NoteCall("PostQuitMessage " + Number(static_cast<unsigned>(exitCode)));
}

void WINAPI FakeOutputDebugStringW(LPCWSTR text) {
    std::string narrow;
    for (; *text != 0; ++text)
        narrow.push_back(static_cast<char>(*text));
    NoteCall(narrow);
}

FILETIME FileTimeOf(std::uint64_t units) {
    return {static_cast<DWORD>(units), static_cast<DWORD>(units >> 32)};
}

BOOL WINAPI FakeGlobalMemoryStatusEx(LPMEMORYSTATUSEX status) {
    NoteCall("memory");
    if (!world.memoryWorks) return FALSE;
    status->dwMemoryLoad = 12;
    status->ullTotalPhys = 8ULL << 30;
    status->ullAvailPhys = 7ULL << 30;
    return TRUE;
}

int WINAPI FakeGetSystemMetricsForDpi(int index, UINT) {
    EXPECT_EQ(index, SM_CXSMICON);
    return world.iconSize;
}

ULONGLONG WINAPI FakeGetTickCount64() {
    return world.clockMs;
}

/// No taskbar position, which the program must handle anyway.
UINT_PTR WINAPI FakeSHAppBarMessage(DWORD, PAPPBARDATA) {
    NoteCall("taskbar?");
    if (world.interrupted == "taskbar?" && world.sending) std::exchange(world.sending, nullptr)();
    return 0;
}

/// Records which message is let through to which window, and that this comes before the first icon.
BOOL WINAPI FakeChangeWindowMessageFilterEx(HWND window, UINT message, DWORD action, PCHANGEFILTERSTRUCT status) {
    EXPECT_TRUE(IsWindow(window));
    EXPECT_EQ(message, FakeTaskbarCreated);
    EXPECT_EQ(action, DWORD{MSGFLT_ALLOW});
    EXPECT_EQ(status, nullptr);
    EXPECT_THAT(world.onTaskbar, IsEmpty());
    world.filtered = window;
    return world.filterIsChanged ? TRUE : FALSE;
}

UINT WINAPI FakeRegisterWindowMessageW(LPCWSTR) {
    return FakeTaskbarCreated;
}

}  // namespace

extern "C" {
decltype(&Shell_NotifyIconW) __imp_Shell_NotifyIconW = &FakeShell_NotifyIconW;
decltype(&SetTimer) __imp_SetTimer = &FakeSetTimer;
decltype(&KillTimer) __imp_KillTimer = &FakeKillTimer;
decltype(&RegisterHotKey) __imp_RegisterHotKey = &FakeRegisterHotKey;
decltype(&UnregisterHotKey) __imp_UnregisterHotKey = &FakeUnregisterHotKey;
decltype(&PostQuitMessage) __imp_PostQuitMessage = &FakePostQuitMessage;
decltype(&OutputDebugStringW) __imp_OutputDebugStringW = &FakeOutputDebugStringW;
decltype(&GlobalMemoryStatusEx) __imp_GlobalMemoryStatusEx = &FakeGlobalMemoryStatusEx;
decltype(&GetSystemMetricsForDpi) __imp_GetSystemMetricsForDpi = &FakeGetSystemMetricsForDpi;
decltype(&SHAppBarMessage) __imp_SHAppBarMessage = &FakeSHAppBarMessage;
decltype(&GetTickCount64) __imp_GetTickCount64 = &FakeGetTickCount64;
decltype(&ChangeWindowMessageFilterEx) __imp_ChangeWindowMessageFilterEx = &FakeChangeWindowMessageFilterEx;
decltype(&RegisterWindowMessageW) __imp_RegisterWindowMessageW = &FakeRegisterWindowMessageW;

// Declared without dllimport, so the function itself is replaced.
BOOL WINAPI GetSystemTimes(PFILETIME idle, PFILETIME kernel, PFILETIME user) {
    if (!world.systemTimesWork) return FALSE;
    *idle = FileTimeOf(world.idle);
    *kernel = FileTimeOf(world.total);
    *user = FileTimeOf(0);
    return TRUE;
}

// One Ethernet adapter.
NETIO_STATUS WINAPI GetIfTable2(PMIB_IF_TABLE2* table) {
    static MIB_IF_TABLE2 one{};
    one = {};
    one.NumEntries = 1;
    MIB_IF_ROW2& row = one.Table[0];
    row.InterfaceLuid.Value = 0x6000000000000;
    row.OperStatus = IfOperStatusUp;
    row.InterfaceAndOperStatusFlags.HardwareInterface = 1;
    row.InOctets = world.inOctets;
    row.OutOctets = world.outOctets;
    *table = world.tableWorks ? &one : nullptr;
    return world.tableWorks ? NO_ERROR : ERROR_NOT_ENOUGH_MEMORY;
}
VOID WINAPI FreeMibTable(PVOID) {}

// A machine without performance counters.
PDH_STATUS WINAPI PdhOpenQueryW(LPCWSTR, DWORD_PTR, PDH_HQUERY*) {
    NoteCall("PdhOpenQuery");
    return static_cast<PDH_STATUS>(PDH_INVALID_ARGUMENT);
}
}

namespace kestrane {

// A machine of three processors and two disks.
CpuFacts ReadCpuFacts() {
    NoteCall("processor?");
    CpuFacts facts;
    facts.isPerformanceThread = {1, 0, 1};
    return facts;
}
void PromoteIcons() {
    NoteCall("promote");
}
std::vector<DiskFacts> ReadDiskFacts() {
    NoteCall("disks?");
    std::vector<DiskFacts> disks(2);
    disks[0].number = 2;
    disks[1].number = 5;
    return disks;
}

namespace {

class AppTest : public testing::Test {
  protected:
    AppTest() {
        SetLanguage(1);
        MakeApp();
    }

    ~AppTest() override {
        if (app->window != nullptr && IsWindow(app->window)) DestroyWindow(app->window);
        UnregisterClassW(HiddenWindowClass, app->instance);
        SetLanguage(0);
    }

    void MakeApp() {
        world = World{};
        app = std::make_unique<App>();
        app->instance = GetModuleHandleW(nullptr);
        app->settings = MakeDefaultSettings();
        app->settings.check_updates = false;
        app->taskbarCreatedMessage = FakeTaskbarCreated;
        UnregisterClassW(HiddenWindowClass, app->instance);
        Calls().clear();
    }

    void Start() {
        ASSERT_TRUE(CreateHiddenWindow(*app));
        started = Calls();
        Calls().clear();
    }

    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        return SendMessageW(app->window, message, wParam, lParam);
    }

    /// One CPU tick that counts, at the given load.
    void CpuTick(std::uint64_t percent) {
        world.total += 1000;
        world.idle += 10 * (100 - percent);
        Send(WM_TIMER, CpuTimer);
    }

    /// WM_CLOSE from another process arrives during this call to the shell.
    void EndDuring(const std::string& call) {
        world.interrupted = call;
        world.sending = [this] { Send(WM_CLOSE); };
    }

    /// No icon is left, and shutdown touched none before the interrupted call returned.
    void ExpectEndedAfterTheAnswer() {
        EXPECT_FALSE(IsWindow(app->window));
        EXPECT_FALSE(app->trayIcons);
        EXPECT_THAT(world.onTaskbar, IsEmpty());
        EXPECT_EQ(CountCalls("PostQuitMessage 0"), 1);
        const auto answer = std::find(Calls().begin(), Calls().end(), "the shell answers");
        EXPECT_EQ(std::count(Calls().begin(), answer, "icon delete 4"), 0);
        EXPECT_EQ(std::count(answer, Calls().end(), "icon delete 4"), 1);
    }

    std::unique_ptr<App> app;
    std::vector<std::string> started;
};

std::vector<std::string> Without(const std::vector<std::string>& calls, const std::string& left) {
    std::vector<std::string> kept;
    for (const std::string& call : calls) {
        if (call.rfind(left, 0) != 0) kept.push_back(call);
    }
    return kept;
}

TEST_F(AppTest, ConstructionOpensTheCountersAndTouchesNothingElse) {
    const App fresh;
    EXPECT_THAT(Without(Calls(), "kestrane: "), ElementsAre("PdhOpenQuery", "PdhOpenQuery"));
    EXPECT_EQ(fresh.iconRingSize, 16U);
    EXPECT_EQ(fresh.cpuIconRing.data.size(), 16U);
    EXPECT_EQ(fresh.cpuRing.data.size(), 4096U);
    EXPECT_EQ(fresh.netDownRing.data.size(), 4096U);
    EXPECT_TRUE(fresh.coreRings.empty());
    EXPECT_EQ(fresh.window, nullptr);
    EXPECT_FALSE(fresh.trayIcons);
}

TEST_F(AppTest, StartsInTheRequiredOrder) {
    Start();
    EXPECT_THAT(started,
                ElementsAre("processor?", "disks?", "icon add 1", "icon setversion 1", "icon add 2",
                            "icon setversion 2", "icon add 3", "icon setversion 3", "icon add 4", "icon setversion 4",
                            "memory", "icon modify 4", "icon modify 1", "icon modify 2", "icon modify 3",
                            "icon modify 4", "SetTimer 1 1500", "SetTimer 5 1500", "SetTimer 3 1500", "SetTimer 4 1500",
                            "RegisterHotKey 1 16390 66", "SetTimer 2 2000"));
    EXPECT_TRUE(app->hotkeyRegistered);
    EXPECT_EQ(app->cpuIconRing.count, 0U);  // the first readings add no points
}

TEST_F(AppTest, AnElevatedProgramHearsOfANewTaskbarToo) {
    for (const bool filterIsChanged : {true, false}) {
        if (app->window != nullptr) DestroyWindow(app->window);
        MakeApp();
        world.filterIsChanged = filterIsChanged;
        Start();
        EXPECT_EQ(world.filtered, app->window);
        EXPECT_THAT(started, Contains("SetTimer 2 2000")) << "a refusal changes nothing";
    }
}

TEST_F(AppTest, TheStartKeepsWhatSamplersAndGraphsNeedOfTheMachine) {
    Start();
    EXPECT_THAT(app->coreClasses, ElementsAre(1, 0, 1));
    EXPECT_EQ(app->fixedDisks.size(), 2U);
    EXPECT_THAT(app->fixedDiskNumbers, ElementsAre(2, 5));
}

TEST_F(AppTest, HiddenIconsAreNotAdded) {
    app->settings.show = {false, true, false, true};
    Start();
    EXPECT_THAT(started, Not(Contains("icon add 1")));
    EXPECT_THAT(started, Contains("icon add 2"));
    EXPECT_THAT(started, Not(Contains("icon add 3")));
    EXPECT_THAT(started, Contains("icon add 4"));
    EXPECT_THAT(started, Contains("SetTimer 1 1500"));  // hiding an icon does not stop its sampling
}

TEST_F(AppTest, EndsInTheRequiredOrder) {
    Start();
    DestroyWindow(app->window);
    EXPECT_THAT(Calls(),
                ElementsAre("KillTimer 1", "KillTimer 5", "KillTimer 3", "KillTimer 4", "UnregisterHotKey 1",
                            "icon delete 1", "icon delete 2", "icon delete 3", "icon delete 4", "PostQuitMessage 0"));
    EXPECT_TRUE(app->shuttingDown);
    EXPECT_FALSE(app->trayIcons);
}

TEST_F(AppTest, AWindowWithoutAppEndsItsTimersAndTheLoop) {
    HiddenWindowProc(nullptr, WM_DESTROY, 0, 0);
    EXPECT_THAT(Calls(), ElementsAre("KillTimer 1", "KillTimer 5", "KillTimer 3", "KillTimer 4", "PostQuitMessage 0"));
}

TEST_F(AppTest, WithTheShortcutTakenTheStartGoesOn) {
    world.hotkeyFree = false;
    Start();
    EXPECT_FALSE(app->hotkeyRegistered);
    EXPECT_THAT(started, Contains("kestrane: Ctrl+Shift+B ya lo usa otro programa; sin atajo para la grafica\n"));
    EXPECT_EQ(started.back(), "SetTimer 2 2000");
    DestroyWindow(app->window);
    EXPECT_EQ(CountCalls("UnregisterHotKey 1"), 0);
}

TEST_F(AppTest, TheShortcutIsTakenEvenWhileTheNetworkIconIsHidden) {
    app->settings.show[3] = false;
    Start();
    EXPECT_THAT(started, Contains("RegisterHotKey 1 16390 66"));
    EXPECT_TRUE(app->hotkeyRegistered);
}

TEST_F(AppTest, CloseIsLeftToTheDefaultWhichDestroys) {
    Start();
    Send(WM_CLOSE);
    EXPECT_EQ(CountCalls("PostQuitMessage 0"), 1);
    EXPECT_FALSE(IsWindow(app->window));
}

TEST_F(AppTest, SessionEnd) {
    Start();
    EXPECT_EQ(Send(WM_QUERYENDSESSION), 1);
    EXPECT_EQ(Send(WM_ENDSESSION, FALSE), 0);
    EXPECT_TRUE(Calls().empty());  // the session goes on, and so do the icons
    EXPECT_EQ(Send(WM_ENDSESSION, TRUE), 0);
    EXPECT_THAT(Calls(), ElementsAre("icon delete 1", "icon delete 2", "icon delete 3", "icon delete 4"));
}

TEST_F(AppTest, ShellRestartBringsTheWantedIconsBackInOrder) {
    app->settings.show[1] = false;
    Start();
    EXPECT_EQ(Send(FakeTaskbarCreated), 0);
    EXPECT_THAT(Calls(), ElementsAre("icon add 1", "icon setversion 1", "icon add 3", "icon setversion 3", "icon add 4",
                                     "icon setversion 4", "icon modify 1", "icon modify 3", "icon modify 4"));
}

TEST_F(AppTest, AnUnregisteredBroadcastDoesNotTurnTheNullMessageIntoOne) {
    Start();
    app->taskbarCreatedMessage = 0;
    Send(WM_NULL);
    EXPECT_TRUE(Calls().empty());
}

TEST_F(AppTest, ADpiChangeResizesTheRingsOnceAndAllIcons) {
    Start();
    for (const std::uint64_t load : {10U, 20U, 30U})
        CpuTick(load);
    world.iconSize = 32;
    EXPECT_EQ(Send(WM_DPICHANGED), 0);
    EXPECT_EQ(app->iconRingSize, 32U);
    for (const auto* ring : {&app->cpuIconRing, &app->diskReadIconRing, &app->diskWriteIconRing}) {
        EXPECT_EQ(ring->data.size(), 32U);
    }
    EXPECT_EQ(SampleAtAge(app->cpuIconRing, 2), 10);
    for (int id = 1; id <= 4; ++id)
        EXPECT_EQ(world.lastImage[id].width, 32) << id;
}

TEST_F(AppTest, EveryRefreshFollowsTheIconSize) {
    struct Row {
        int id;
        void (App::*refresh)();
        std::uint32_t size;
    };
    const Row rows[] = {
        {1, &App::RefreshCpuIcon, 20},
        {2, &App::RefreshDiskIcon, 24},
        {3, &App::RefreshMemoryIcon, 32},
        {4, &App::RefreshNetworkIcon, 48},
    };
    Start();
    for (const Row& row : rows) {
        world.iconSize = static_cast<int>(row.size);
        (app.get()->*row.refresh)();
        EXPECT_EQ(app->iconRingSize, row.size);
        EXPECT_EQ(app->cpuIconRing.data.size(), row.size);
        EXPECT_EQ(world.lastImage[row.id].width, static_cast<int>(row.size));
    }
}

TEST_F(AppTest, AnIconSizeThatMakesNoSenseIsSixteen) {
    world.iconSize = 0;
    Start();
    EXPECT_EQ(app->iconRingSize, 16U);
}

TEST_F(AppTest, WhatIsSentWhileTheEndWaitsForTheShellFindsNothing) {
    Start();
    world.interrupted = "icon delete 2";
    world.sending = [this] {
        for (const WPARAM id : {CpuTimer, PromotionTimer, MemoryTimer, NetworkTimer, DiskTimer})
            Send(WM_TIMER, id);
        for (const LPARAM event : {EventSelect, EventContextMenu})
            Send(WM_TRAY_NOTIFY, 0, event | 1 << 16);
        Send(WM_HOTKEY, GraphHotkeyId);
        for (const UINT message :
             {UINT{WM_SETTINGCHANGE}, UINT{WM_DISPLAYCHANGE}, UINT{WM_DPICHANGED}, FakeTaskbarCreated})
            Send(message);
        Send(WM_ENDSESSION, TRUE);
    };
    DestroyWindow(app->window);
    EXPECT_THAT(Calls(), ElementsAre("KillTimer 1", "KillTimer 5", "KillTimer 3", "KillTimer 4", "UnregisterHotKey 1",
                                     "icon delete 1", "icon delete 2", "the shell answers", "icon delete 3",
                                     "icon delete 4", "PostQuitMessage 0"));
}

TEST_F(AppTest, AnEndThatComesWhileTheShellIsAskedLetsItAnswerFirst) {
    struct Row {
        const char* interrupted;
        std::function<void()> act;
    };
    const Row rows[] = {
        {"icon modify 3", [this] { Send(WM_TIMER, MemoryTimer); }},
        {"icon modify 1", [this] { Send(WM_DPICHANGED); }},
        {"icon add 3", [this] { Send(FakeTaskbarCreated); }},
        {"icon delete 1", [this] { app->settings.show[0] = false, app->OnSettingsChanged(); }},
        {"icon delete 2", [this] { Send(WM_ENDSESSION, TRUE); }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.interrupted);
        MakeApp();
        Start();
        EndDuring(row.interrupted);
        row.act();
        ExpectEndedAfterTheAnswer();
    }
}

TEST_F(AppTest, AnEndThatComesDuringTheStartStopsIt) {
    for (const char* interrupted : {"icon add 2", "icon setversion 4", "icon modify 4", "icon modify 3"}) {
        SCOPED_TRACE(interrupted);
        MakeApp();
        EndDuring(interrupted);
        CreateHiddenWindow(*app);
        ExpectEndedAfterTheAnswer();
        EXPECT_EQ(CountCalls("RegisterHotKey 1 16390 66"), 0);
    }
}

TEST_F(AppTest, AnEndThatComesWhileAGraphAsksForTheTaskbarStopsTheStart) {
    app->settings.network.graph = true;
    app->settings.cpu.graph = true;
    EndDuring("taskbar?");
    CreateHiddenWindow(*app);
    EXPECT_FALSE(IsWindow(app->window));
    EXPECT_THAT(world.onTaskbar, IsEmpty());
    EXPECT_EQ(CountCalls("taskbar?"), 1);
    EXPECT_EQ(Calls().back(), "PostQuitMessage 0");
}

TEST_F(AppTest, OnlyChangedPeriodsAreSetAnew) {
    Start();
    app->ApplyTimers();
    EXPECT_TRUE(Calls().empty());
    app->settings.refresh_ms[2] = 3000;
    app->ApplyTimers();
    EXPECT_THAT(Calls(), ElementsAre("SetTimer 3 3000"));
    Calls().clear();
    app->settings.refresh_ms = {500, 1000, 3000, 10000};
    app->ApplyTimers();
    EXPECT_THAT(Calls(), ElementsAre("SetTimer 1 500", "SetTimer 5 1000", "SetTimer 4 10000"));
}

TEST_F(AppTest, UnknownTimersDoNothing) {
    Start();
    for (const WPARAM id : {WPARAM{0}, WPARAM{6}, WPARAM{1000}, ~WPARAM{0}})
        EXPECT_EQ(Send(WM_TIMER, id), 0);
    EXPECT_TRUE(Calls().empty());
}

TEST_F(AppTest, ThePromotionComesOnce) {
    Start();
    EXPECT_EQ(Send(WM_TIMER, PromotionTimer), 0);
    EXPECT_THAT(Calls(), ElementsAre("KillTimer 2", "promote"));
}

TEST_F(AppTest, ACpuTickPushesDrawsAndTells) {
    Start();
    CpuTick(7);
    EXPECT_THAT(Calls(), ElementsAre("icon modify 1"));
    EXPECT_EQ(world.lastTip[1], L"CPU: 7 %");
    EXPECT_EQ(app->cpuIconRing.count, 1U);
    EXPECT_EQ(SampleAtAge(app->cpuRing, 0), 7.0);
}

TEST_F(AppTest, ATickGrowsTheRingBeforeItPushes) {
    Start();
    for (int tick = 0; tick < 16; ++tick)
        CpuTick(50);
    world.iconSize = 32;
    CpuTick(50);
    EXPECT_EQ(app->cpuIconRing.count, 17U);  // nothing was pushed out of the smaller ring
}

TEST_F(AppTest, EachIconShowsItsOwnRingsAndFigures) {
    Start();
    for (const std::int32_t percent : {20, 60, 90}) {
        PushSample(app->cpuIconRing, percent);
        PushSample(app->diskReadIconRing, percent / 2);
        PushSample(app->diskWriteIconRing, percent / 3);
        PushSample(app->netDownRing, static_cast<std::uint64_t>(percent) * 1000);
        PushSample(app->netUpRing, static_cast<std::uint64_t>(percent) * 400);
    }
    app->sample.memoryPercent = 77;
    for (const bool valid : {false, true}) {
        app->sample.diskValid = valid;
        app->RefreshAllIcons();
        EXPECT_EQ(world.lastImage[1].pixels, PaintCpuIcon(app->settings, app->cpuIconRing, 16).pixels);
        EXPECT_EQ(world.lastImage[2].pixels,
                  PaintDiskIcon(app->settings, app->diskReadIconRing, app->diskWriteIconRing, valid, 16).pixels);
        EXPECT_EQ(world.lastImage[3].pixels, ReadIconPixels(RenderMemoryIcon(app->settings, 77, 16).Get()).pixels);
        EXPECT_EQ(world.lastImage[4].pixels,
                  PaintNetworkIcon(app->settings, app->netDownRing, app->netUpRing, 16).pixels);
    }
}

TEST_F(AppTest, ARefusedCpuTickChangesNothing) {
    Start();
    CpuTick(7);
    Calls().clear();
    world.systemTimesWork = false;
    CpuTick(80);
    EXPECT_TRUE(Calls().empty());
    EXPECT_EQ(app->cpuIconRing.count, 1U);
    EXPECT_EQ(app->cpuRing.count, 1U);
    world.systemTimesWork = true;
    CpuTick(80);
    EXPECT_EQ(app->cpuRing.count, 2U);  // the timer goes on, and the next tick counts again
}

TEST_F(AppTest, AnEmptyReadingDropsTheHistoryOfTheProcessors) {
    Start();
    app->coreRings.assign(8, MetricRing<double>(1024));
    CpuTick(50);
    EXPECT_TRUE(app->coreRings.empty());
}

TEST_F(AppTest, AMemoryTickShowsTheMemoryOnly) {
    Start();
    EXPECT_EQ(Send(WM_TIMER, MemoryTimer), 0);
    EXPECT_THAT(Calls(), ElementsAre("memory", "icon modify 3"));
    EXPECT_EQ(world.lastTip[3], L"Memory: 12 % (1.0 / 8.0 GB)");
    world.memoryWorks = false;
    Send(WM_TIMER, MemoryTimer);
    EXPECT_EQ(world.lastTip[3], L"Memory: 12 % (1.0 / 8.0 GB)");  // the last good figures stay
}

TEST_F(AppTest, ChangedSettingsShowInOrder) {
    Start();
    app->settings.show[0] = false;
    app->settings.refresh_ms[3] = 500;
    app->OnSettingsChanged();
    EXPECT_THAT(Calls(),
                ElementsAre("icon delete 1", "SetTimer 4 500", "icon modify 2", "icon modify 3", "icon modify 4"));
}

TEST_F(AppTest, ChangedSettingsDuringTheEndDoNothing) {
    Start();
    DestroyWindow(app->window);
    Calls().clear();
    app->settings.show[0] = false;
    app->OnSettingsChanged();
    EXPECT_TRUE(Calls().empty());
}

TEST_F(AppTest, AHiddenIconTakesOnNewTextAndShowsItWhenItComesBack) {
    app->settings.show[0] = false;
    Start();
    CpuTick(33);
    EXPECT_TRUE(Calls().empty());
    app->settings.show[0] = true;
    app->OnSettingsChanged();
    EXPECT_EQ(Calls().front(), "icon add 1");
    EXPECT_EQ(world.lastTip[1], L"CPU: 33 %");
}

TEST_F(AppTest, NetworkTicksGiveRatesFromTheThirdReadingOn) {
    Start();
    EXPECT_EQ(world.lastTip[4], L"All connections");
    for (int tick = 0; tick < 3; ++tick) {
        world.clockMs += 1000;
        world.inOctets += 125000;
        world.outOctets += 1000;
        Send(WM_TIMER, NetworkTimer);
    }
    EXPECT_THAT(Calls(), Contains("icon modify 4"));
    EXPECT_EQ(world.lastTip[4], L"All connections\nDown: 1.0 Mbps  Up: 8.0 kbps");
    // The reading at the start and the first tick settle; only the two after them gave points.
    EXPECT_EQ(app->netDownRing.count, 2U);
    EXPECT_EQ(SampleAtAge(app->netDownRing, 0), 1000000U);
    EXPECT_EQ(SampleAtAge(app->netUpRing, 0), 8000U);
}

TEST_F(AppTest, ANetworkTickWithTheConnectionDownStillShows) {
    app->settings.interfaces = {42};
    app->settings.interface_aliases = {L"Ethernet 3"};
    Start();
    Calls().clear();
    Send(WM_TIMER, NetworkTimer);
    EXPECT_THAT(Calls(), ElementsAre("icon modify 4"));
    EXPECT_EQ(world.lastTip[4], L"Ethernet 3: disconnected");
}

TEST_F(AppTest, AnInterfaceWithoutANameIsTheNetwork) {
    app->settings.interfaces = {42};
    Start();
    EXPECT_EQ(world.lastTip[4], L"Network: disconnected");
}

TEST_F(AppTest, ADiskTickWithoutCountersChangesNothing) {
    Start();
    Send(WM_TIMER, DiskTimer);
    EXPECT_TRUE(Calls().empty());
    EXPECT_TRUE(app->diskHistories.empty());
    EXPECT_EQ(app->diskReadIconRing.count, 0U);
    EXPECT_EQ(world.lastTip[2], L"Disk: no data (PDH)");
}

}  // namespace
}  // namespace kestrane
