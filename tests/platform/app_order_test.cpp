// The order of what `App` does, where it matters: start and end, changed settings, a new taskbar, saving, and a window
// without an `App`. Shell, timers, hotkey, counters and the settings file are replaced; the graph windows are real, and
// their changes are recorded between the calls.
#include <windows.h>
#include <winsock2.h>
#include <ws2ipdef.h>

#include <iphlpapi.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/app_win32.h"
#include "app/hidden_window_win32.h"
#include "app/timers.h"
#include "app/tray_events.h"
#include "app/tray_menu.h"
#include "hardware/hardware_facts_win32.h"
#include "support/call_log.h"
#include "support/fake_pdh.h"
#include "support/fake_window_record_win32.h"
#include "support/fake_worker_win32.h"
#include "support/real_call_win32.h"

namespace {

using kestrane::test::Calls;
using kestrane::test::NoteCall;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;

constexpr UINT FakeTaskbarCreated = 0xC0DE;

/// What the user sees of a graph: nothing, the graph, or nothing because it is off every monitor.
enum class Sight { None, Shown, Lost };

struct World {
    BOOL menuAnswer = 0;
    std::array<Sight, kestrane::GraphCount> graphs{};  // at the last call
    std::array<bool, kestrane::GraphCount> clickThrough{};
};
World world;

constexpr std::array<const wchar_t*, kestrane::GraphCount> GraphTitles = {L"kestrane - red", L"kestrane - CPU",
                                                                          L"kestrane - disco"};
constexpr std::array<const char*, kestrane::GraphCount> GraphNames = {"network", "cpu", "disk"};

HWND GraphWindowOf(std::size_t graph) {
    return FindWindowW(L"kestrane.graph", GraphTitles.at(graph));
}

Sight SightOf(HWND window) {
    if (window == nullptr || !IsWindowVisible(window)) return Sight::None;
    return MonitorFromWindow(window, MONITOR_DEFAULTTONULL) == nullptr ? Sight::Lost : Sight::Shown;
}

/// Records how the graphs have changed since the last call.
void NoteGraphs() {
    for (std::size_t graph = 0; graph < kestrane::GraphCount; ++graph) {
        const HWND window = GraphWindowOf(graph);
        const std::string name = GraphNames.at(graph);
        const Sight now = SightOf(window);
        const Sight before = std::exchange(world.graphs.at(graph), now);
        if (now == Sight::Shown && before == Sight::None) NoteCall(name + " opens");
        if (now == Sight::Shown && before == Sight::Lost) NoteCall(name + " comes back");
        if (now == Sight::None && before != Sight::None) NoteCall(name + " goes");
        const bool through = now == Sight::Shown && (GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_TRANSPARENT) != 0;
        if (std::exchange(world.clickThrough.at(graph), through) != through && now == Sight::Shown) {
            NoteCall(name + (through ? " lets the mouse through" : " takes the mouse"));
        }
    }
}

void Note(const std::string& call) {
    NoteGraphs();
    NoteCall(call);
}

std::string Number(std::uint64_t value) {
    return std::to_string(value);
}

BOOL WINAPI FakeShell_NotifyIconW(DWORD message, PNOTIFYICONDATAW data) {
    static const char* const Names[] = {"add", "modify", "delete", "setfocus", "setversion"};
    if (message != NIM_SETVERSION) Note(std::string("icon ") + Names[message] + " " + Number(data->uID));
    return TRUE;
}
UINT_PTR WINAPI FakeSetTimer(HWND, UINT_PTR id, UINT period, TIMERPROC) {
    Note("SetTimer " + Number(id) + " " + Number(period));
    return id;
}
BOOL WINAPI FakeKillTimer(HWND, UINT_PTR id) {
    Note("KillTimer " + Number(id));
    return TRUE;
}
BOOL WINAPI FakeRegisterHotKey(HWND, int, UINT, UINT) {
    Note("RegisterHotKey");
    return TRUE;
}
BOOL WINAPI FakeUnregisterHotKey(HWND, int) {
    Note("UnregisterHotKey");
    return TRUE;
}
void WINAPI FakePostQuitMessage(int) {
    Note("PostQuitMessage");
}
int WINAPI FakeGetSystemMetricsForDpi(int, UINT) {
    return 16;
}
/// No taskbar position, which the program must handle anyway.
UINT_PTR WINAPI FakeSHAppBarMessage(DWORD, PAPPBARDATA) {
    return 0;
}
BOOL WINAPI FakeTrackPopupMenuEx(HMENU, UINT, int, int, HWND, LPTPMPARAMS) {
    return world.menuAnswer;
}
BOOL WINAPI FakeWritePrivateProfileStringW(LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR) {
    Note("save");
    return TRUE;
}
BOOL WINAPI FakeDeleteFileW(LPCWSTR path) {
    const std::wstring name(path);
    for (const char* ending : {".old", ".new"}) {
        if (name.ends_with(std::wstring(L".exe") + std::wstring(ending, ending + 4)))
            Note(std::string("delete ") + ending);
    }
    return FALSE;
}
BOOL WINAPI FakeShowWindow(HWND window, int command) {
    static const auto real = REAL(L"user32", ShowWindow);
    const BOOL result = real(window, command);
    NoteGraphs();
    return result;
}
BOOL WINAPI FakeDestroyWindow(HWND window) {
    static const auto real = REAL(L"user32", DestroyWindow);
    const BOOL result = real(window);
    NoteGraphs();
    return result;
}
BOOL WINAPI FakeGlobalMemoryStatusEx(LPMEMORYSTATUSEX) {
    Note("read memory");
    return TRUE;
}

}  // namespace

extern "C" {
decltype(&Shell_NotifyIconW) __imp_Shell_NotifyIconW = &FakeShell_NotifyIconW;
decltype(&SetTimer) __imp_SetTimer = &FakeSetTimer;
decltype(&KillTimer) __imp_KillTimer = &FakeKillTimer;
decltype(&RegisterHotKey) __imp_RegisterHotKey = &FakeRegisterHotKey;
decltype(&UnregisterHotKey) __imp_UnregisterHotKey = &FakeUnregisterHotKey;
decltype(&PostQuitMessage) __imp_PostQuitMessage = &FakePostQuitMessage;
decltype(&GetSystemMetricsForDpi) __imp_GetSystemMetricsForDpi = &FakeGetSystemMetricsForDpi;
decltype(&SHAppBarMessage) __imp_SHAppBarMessage = &FakeSHAppBarMessage;
decltype(&TrackPopupMenuEx) __imp_TrackPopupMenuEx = &FakeTrackPopupMenuEx;
decltype(&WritePrivateProfileStringW) __imp_WritePrivateProfileStringW = &FakeWritePrivateProfileStringW;
decltype(&DeleteFileW) __imp_DeleteFileW = &FakeDeleteFileW;
decltype(&ShowWindow) __imp_ShowWindow = &FakeShowWindow;
decltype(&DestroyWindow) __imp_DestroyWindow = &FakeDestroyWindow;
decltype(&GlobalMemoryStatusEx) __imp_GlobalMemoryStatusEx = &FakeGlobalMemoryStatusEx;

// Declared without dllimport, so the function itself is replaced.
BOOL WINAPI GetSystemTimes(PFILETIME, PFILETIME, PFILETIME) {
    Note("read processor");
    return TRUE;
}
NETIO_STATUS WINAPI GetIfTable2(PMIB_IF_TABLE2*) {
    Note("read network");
    return ERROR_NOT_ENOUGH_MEMORY;
}
}

namespace kestrane {

// A machine without any facts.
CpuFacts ReadCpuFacts() {
    return {};
}
std::vector<DiskFacts> ReadDiskFacts() {
    return {};
}

namespace {

class AppOrderTest : public testing::Test {
  protected:
    AppOrderTest() {
        world = World{};
        keepsNoRecord = false;
        fakePdh = FakePdh{};
        MakeApp();
    }
    ~AppOrderTest() override {
        if (IsWindow(app->window)) DestroyWindow(app->window);
        UnregisterClassW(HiddenWindowClass, app->instance);
    }

    void MakeApp() {
        app = std::make_unique<App>();
        app->instance = GetModuleHandleW(nullptr);
        app->settings = MakeDefaultSettings();
        app->settings.install_id = "01234567-89ab-4def-8123-456789abcdef";
        app->taskbarCreatedMessage = FakeTaskbarCreated;
    }

    void OpenGraphs() {
        for (const GraphKind kind : GraphKinds)
            GraphSettingsOf(app->settings, kind).graph = true;
    }

    void Start() {
        ASSERT_TRUE(CreateHiddenWindow(*app));
        NoteGraphs();
        Calls().clear();
    }

    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        return SendMessageW(app->window, message, wParam, lParam);
    }

    /// Opens the menu and chooses the command.
    void Choose(std::uint32_t command) {
        world.menuAnswer = static_cast<BOOL>(command);
        Send(WM_TRAY_NOTIFY, 0, EventContextMenu | 1 << 16);
    }

    /// Everything recorded, including the graphs' changes by the last call; values saved together count once.
    static std::vector<std::string> NotedInShort() {
        NoteGraphs();
        std::vector<std::string> calls;
        for (const std::string& call : Calls()) {
            if (call != "save" || calls.empty() || calls.back() != "save") calls.push_back(call);
        }
        return calls;
    }

    static bool IsNoIconCall(const std::string& call) { return call.rfind("icon ", 0) != 0; }

    std::unique_ptr<App> app;
};

TEST_F(AppOrderTest, TheFirstReadingsComeBetweenTheIconsAndTheirImages) {
    fakePdh.counters[disk_paths::Idle].array = [](DWORD*, DWORD*, PDH_FMT_COUNTERVALUE_ITEM_W*) {
        Note("read disks");
        return static_cast<PDH_STATUS>(PDH_NO_DATA);
    };
    Calls().clear();
    ASSERT_TRUE(CreateHiddenWindow(*app));
    Calls().resize(12);
    EXPECT_THAT(Calls(), ElementsAre("icon add 1", "icon add 2", "icon add 3", "icon add 4", "read memory",
                                     "read processor", "read disks", "read network", "icon modify 4", "icon modify 1",
                                     "icon modify 2", "icon modify 3"));
}

TEST_F(AppOrderTest, AHiddenWindowThatCannotFindItsAppIsNotMade) {
    keepsNoRecord = true;
    Calls().clear();
    EXPECT_FALSE(CreateHiddenWindow(*app));
    EXPECT_THAT(Calls(), IsEmpty());
    EXPECT_EQ(FindWindowW(HiddenWindowClass, nullptr), nullptr);
}

TEST_F(AppOrderTest, AGraphThatCannotFindItsObjectIsNotMade) {
    Start();
    keepsNoRecord = true;
    app->ToggleGraph(GraphKind::Cpu);
    EXPECT_EQ(GraphWindowOf(IndexOf(GraphKind::Cpu)), nullptr);
    EXPECT_FALSE(app->graphs[IndexOf(GraphKind::Cpu)]->IsShown());
    keepsNoRecord = false;
    app->ToggleGraph(GraphKind::Cpu);
    EXPECT_TRUE(app->graphs[IndexOf(GraphKind::Cpu)]->IsShown());
}

TEST_F(AppOrderTest, TheGraphsOpenAfterTheTimersAndBeforeTheShortcut) {
    OpenGraphs();
    Calls().clear();
    ASSERT_TRUE(CreateHiddenWindow(*app));
    Calls().erase(Calls().begin(), std::find(Calls().begin(), Calls().end(), "SetTimer 4 1500"));
    EXPECT_THAT(Calls(), ElementsAre("SetTimer 4 1500", "network opens", "cpu opens", "disk opens", "RegisterHotKey",
                                     "SetTimer 2 2000", "delete .old", "delete .new", "worker starts"));
}

TEST_F(AppOrderTest, TheIdentityIsSavedBeforeTheFirstWorkerStarts) {
    app->settings.install_id.clear();
    Calls().clear();
    ASSERT_TRUE(CreateHiddenWindow(*app));
    Calls().erase(Calls().begin(), std::find(Calls().begin(), Calls().end(), "delete .new"));
    EXPECT_THAT(Calls(), ElementsAre("delete .new", "save", "worker starts"));
}

TEST_F(AppOrderTest, AtTheEndTheGraphsGoAfterWorkerAndShortcutAndBeforeTheIcons) {
    OpenGraphs();
    Start();
    DestroyWindow(app->window);
    EXPECT_THAT(Calls(), ElementsAre("KillTimer 1", "KillTimer 5", "KillTimer 3", "KillTimer 4", "worker stops",
                                     "UnregisterHotKey", "network goes", "cpu goes", "disk goes", "icon delete 1",
                                     "icon delete 2", "icon delete 3", "icon delete 4", "PostQuitMessage"));
}

TEST_F(AppOrderTest, ChangedSettingsReachIconsThenTimersThenGraphsThenImagesThenTheWorker) {
    app->settings.network.graph = true;
    Start();
    app->settings.show[0] = false;
    app->settings.refresh_ms[3] = 500;
    app->settings.network.graph = false;
    app->settings.disk.graph = true;
    app->settings.check_updates = false;
    app->OnSettingsChanged();
    EXPECT_THAT(Calls(), ElementsAre("icon delete 1", "SetTimer 4 500", "network goes", "disk opens", "icon modify 2",
                                     "icon modify 3", "icon modify 4", "worker stops"));
}

TEST_F(AppOrderTest, OnANewTaskbarTheIconsComeBackBeforeTheGraphs) {
    OpenGraphs();
    Start();
    for (std::size_t graph = 0; graph < GraphCount; ++graph) {
        SetWindowPos(GraphWindowOf(graph), nullptr, -30000, -30000, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    NoteGraphs();
    ASSERT_THAT(Calls(), IsEmpty());
    Send(FakeTaskbarCreated);
    const std::vector<std::string> calls = NotedInShort();
    const auto icons = std::find_if(calls.begin(), calls.end(), IsNoIconCall);
    EXPECT_THAT(std::vector(calls.begin(), icons), IsSupersetOf({"icon add 1", "icon add 4", "icon modify 4"}));
    EXPECT_THAT(std::vector(icons, calls.end()),
                ElementsAre("network comes back", "save", "cpu comes back", "save", "disk comes back", "save"));
}

TEST_F(AppOrderTest, AToggledGraphIsSavedAsItThenStands) {
    Start();
    Send(WM_HOTKEY, GraphHotkeyId);
    EXPECT_THAT(NotedInShort(), ElementsAre("network opens", "save"));
    Calls().clear();
    Send(WM_HOTKEY, GraphHotkeyId);
    EXPECT_THAT(NotedInShort(), ElementsAre("network goes", "save"));
}

TEST_F(AppOrderTest, APinIsSavedAfterItHolds) {
    app->settings.cpu.graph = true;
    Start();
    Choose(CommandPinFirst + IndexOf(GraphKind::Cpu));
    EXPECT_THAT(NotedInShort(), ElementsAre("cpu lets the mouse through", "save"));
    Calls().clear();
    Choose(CommandPinFirst + IndexOf(GraphKind::Cpu));
    EXPECT_THAT(NotedInShort(), ElementsAre("cpu takes the mouse", "save"));
}

/// A window with the hidden window's procedure but not created by `CreateHiddenWindow`, so without an `App`.
class WindowWithoutApp {
  public:
    WindowWithoutApp() {
        WNDCLASSEXW windowClass{};
        windowClass.cbSize = sizeof windowClass;
        windowClass.lpfnWndProc = HiddenWindowProc;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = HiddenWindowClass;
        RegisterClassExW(&windowClass);
        window_ =
            CreateWindowExW(0, HiddenWindowClass, L"", 0, 0, 0, 0, 0, nullptr, nullptr, windowClass.hInstance, nullptr);
        Calls().clear();
    }
    WindowWithoutApp(const WindowWithoutApp&) = delete;
    WindowWithoutApp& operator=(const WindowWithoutApp&) = delete;
    ~WindowWithoutApp() { DestroyWindow(window_); }

    HWND Get() const { return window_; }
    /// Called directly, because the system may swallow a crash in a window procedure.
    LRESULT Send(UINT message, WPARAM wParam) const { return HiddenWindowProc(window_, message, wParam, 0); }

  private:
    HWND window_;
};

TEST_F(AppOrderTest, AWindowWithoutAppDoesNothing) {
    const WindowWithoutApp window;
    ASSERT_TRUE(IsWindow(window.Get()));
    struct Row {
        UINT message;
        WPARAM wParam;
        LRESULT result;
    };
    const Row rows[] = {
        {WM_CREATE, 0, 0},
        {WM_QUERYENDSESSION, 0, 1},
        {WM_ENDSESSION, TRUE, 0},
        {WM_SETTINGCHANGE, 0, 0},
        {WM_DISPLAYCHANGE, 32, 0},
        {WM_TIMER, CpuTimer, 0},
        {WM_TIMER, PromotionTimer, 0},
        {WM_TIMER, MemoryTimer, 0},
        {WM_TIMER, NetworkTimer, 0},
        {WM_TIMER, DiskTimer, 0},
        {WM_DPICHANGED, MAKEWPARAM(192, 192), 0},
        {WM_HOTKEY, GraphHotkeyId, 0},
        {WM_TRAY_NOTIFY, 0, 0},
        {WM_UPDATE_STATE, 0, 0},
        {FakeTaskbarCreated, 0, 0},
        {WM_NULL, 0, 0},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(window.Send(row.message, row.wParam), row.result) << row.message << " " << row.wParam;
        EXPECT_THAT(Calls(), IsEmpty()) << row.message << " " << row.wParam;
    }
}

TEST_F(AppOrderTest, BeforeItsCreationAppHasNeitherIconsNorGraphsToTouch) {
    const WindowWithoutApp window;
    SetWindowLongPtrW(window.Get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(app.get()));
    app->updateChecker.offer.available = true;
    for (const UINT message :
         {UINT{WM_ENDSESSION}, UINT{WM_SETTINGCHANGE}, UINT{WM_DISPLAYCHANGE}, WM_UPDATE_STATE, FakeTaskbarCreated})
        EXPECT_EQ(window.Send(message, TRUE), 0) << message;
    EXPECT_THAT(Calls(), IsEmpty());
    SetWindowLongPtrW(window.Get(), GWLP_USERDATA, 0);
}

}  // namespace
}  // namespace kestrane
