// User actions on the icons and graphs, through the real window procedure: clicks, the menu and its commands, the
// hotkey. The shell, the clock, the menu's tracking and the settings file are replaced; the graph windows are real.
#include <windows.h>

#include <gmock/gmock.h>

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/app_win32.h"
#include "app/hidden_window_win32.h"
#include "app/timers.h"
#include "app/tray_events.h"
#include "app/tray_menu.h"
#include "base/version.h"
#include "dialog/settings_dialog_win32.h"
#include "graph/graph_painter_win32.h"
#include "settings/ini_file_win32.h"
#include "settings/task_manager_win32.h"
#include "support/call_log.h"
#include "support/icon_pixels_win32.h"
#include "support/real_call_win32.h"
#include "text/translation.h"
#include "update/update_dialog_win32.h"

namespace {

using kestrane::test::Calls;
using kestrane::test::CountCalls;
using kestrane::test::NoteCall;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

struct MenuItem {
    UINT id;
    std::wstring text;
    UINT state;
    HBITMAP image;
};

struct World {
    HWND window = nullptr;  // the hidden one
    std::uint64_t clockMs = 100000;
    UINT doubleClickMs = 500;
    BOOL menuAnswer = 0;
    int dropAlignment = 0;
    std::function<void()> whileMenuIsOpen;
    std::function<void()> whileFocusIsGiven;
    std::vector<MenuItem> menu;
    std::vector<kestrane::IconPixels> menuImages;  // of the entries that have one
    UINT menuDefault = 0;
    UINT menuFlags = 0;
    POINT menuPoint{};
    int imageSize = 0;
    bool imagesLoad = true;
    bool bitmapsAreMade = true;
    HMENU menuHandle = nullptr;
    WINEVENTPROC foregroundEvent = nullptr;
    HWND foreground = nullptr;
    const kestrane::GraphSeries* paintedSeries = nullptr;
    HWND settingsDialog = nullptr;
    kestrane::Point settingsAnchor{};
    std::function<void()> whileSettingsAreOpen;
    std::function<void()> whileUpdateDialogIsOpen;
    std::vector<UINT> refreshedIcons;
    std::wstring boxText;
    std::wstring boxCaption;
    UINT boxType = 0;
};
World world;

BOOL WINAPI FakeShell_NotifyIconW(DWORD message, PNOTIFYICONDATAW data) {
    if (message == NIM_MODIFY) world.refreshedIcons.push_back(data->uID);
    if (message != NIM_SETFOCUS) return TRUE;
    NoteCall("focus " + std::to_string(data->uID));
    if (world.whileFocusIsGiven) world.whileFocusIsGiven();
    return TRUE;
}
ULONGLONG WINAPI FakeGetTickCount64() {
    return world.clockMs;
}
UINT WINAPI FakeGetDoubleClickTime() {
    return world.doubleClickMs;
}

int WINAPI FakeGetSystemMetrics(int index) {
    static const auto real = REAL(L"user32", GetSystemMetrics);
    return index == SM_MENUDROPALIGNMENT ? world.dropAlignment : real(index);
}

BOOL WINAPI FakeSetForegroundWindow(HWND window) {
    NoteCall("SetForegroundWindow");
    world.foreground = window;
    return TRUE;
}
HWND WINAPI FakeGetForegroundWindow() {
    return world.foreground;
}

std::vector<MenuItem> ReadMenu(HMENU menu) {
    std::vector<MenuItem> items;
    const int count = GetMenuItemCount(menu);
    for (int i = 0; i < count; ++i) {
        wchar_t text[128] = {};
        MENUITEMINFOW info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_ID | MIIM_STATE | MIIM_STRING | MIIM_BITMAP | MIIM_FTYPE;
        info.dwTypeData = text;
        info.cch = 128;
        GetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &info);
        items.push_back({info.wID, (info.fType & MFT_SEPARATOR) != 0 ? L"-" : text, info.fState, info.hbmpItem});
    }
    return items;
}

BOOL WINAPI FakeTrackPopupMenuEx(HMENU menu, UINT flags, int x, int y, HWND window, LPTPMPARAMS parameters) {
    EXPECT_EQ(window, world.window);
    EXPECT_EQ(world.foreground, world.window);  // otherwise the menu would not close on a click elsewhere
    EXPECT_EQ(parameters, nullptr);
    NoteCall("TrackPopupMenu");
    world.menuHandle = menu;
    world.menu = ReadMenu(menu);
    for (const MenuItem& item : world.menu) {
        if (item.image != nullptr) world.menuImages.push_back(kestrane::BitmapPixels(item.image));
    }
    world.menuDefault = GetMenuDefaultItem(menu, FALSE, 0);
    world.menuFlags = flags;
    world.menuPoint = {x, y};
    if (world.whileMenuIsOpen) world.whileMenuIsOpen();
    return world.menuAnswer;
}

// An image of the requested size, since a test program has none of the program's resources.
HANDLE WINAPI FakeLoadImageW(HINSTANCE, LPCWSTR name, UINT type, int width, int height, UINT) {
    EXPECT_EQ(type, UINT{IMAGE_ICON});
    EXPECT_EQ(width, height);
    NoteCall("image " + std::to_string(reinterpret_cast<std::uintptr_t>(name)));
    world.imageSize = width;
    if (!world.imagesLoad) return nullptr;
    return CopyImage(LoadIconW(nullptr, IDI_APPLICATION), IMAGE_ICON, width, height, 0);
}

HBITMAP WINAPI FakeCreateDIBSection(HDC dc, const BITMAPINFO* info, UINT usage, void** bits, HANDLE section,
                                    DWORD offset) {
    EXPECT_LT(info->bmiHeader.biHeight, 0) << "top row first";
    EXPECT_EQ(info->bmiHeader.biBitCount, 32);
    static const auto real = REAL(L"gdi32", CreateDIBSection);
    return world.bitmapsAreMade ? real(dc, info, usage, bits, section, offset) : nullptr;
}

BOOL WINAPI FakePostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    EXPECT_EQ(window, world.window);
    EXPECT_EQ(wParam, 0U);
    EXPECT_EQ(lParam, 0);
    NoteCall("post " + std::to_string(message));
    return TRUE;
}

HWINEVENTHOOK WINAPI FakeSetWinEventHook(DWORD, DWORD, HMODULE, WINEVENTPROC procedure, DWORD, DWORD, DWORD) {
    world.foregroundEvent = procedure;
    return reinterpret_cast<HWINEVENTHOOK>(std::uintptr_t{0x5005});
}
BOOL WINAPI FakeUnhookWinEvent(HWINEVENTHOOK) {
    return TRUE;
}

int WINAPI FakeMessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type) {
    EXPECT_EQ(owner, world.window);
    world.boxText = text;
    world.boxCaption = caption;
    world.boxType = type;
    return IDOK;
}

BOOL WINAPI FakeWritePrivateProfileStringW(LPCWSTR section, LPCWSTR key, LPCWSTR value, LPCWSTR) {
    std::string call;
    for (const wchar_t* part : {section, L" ", key, L"=", value}) {
        for (const wchar_t* character = part; *character != 0; ++character)
            call.push_back(static_cast<char>(*character));
    }
    NoteCall("write " + call);
    return TRUE;
}

void WINAPI FakePostQuitMessage(int) {
    NoteCall("PostQuitMessage");
}

}  // namespace

extern "C" {
decltype(&Shell_NotifyIconW) __imp_Shell_NotifyIconW = &FakeShell_NotifyIconW;
decltype(&GetTickCount64) __imp_GetTickCount64 = &FakeGetTickCount64;
decltype(&GetDoubleClickTime) __imp_GetDoubleClickTime = &FakeGetDoubleClickTime;
decltype(&GetSystemMetrics) __imp_GetSystemMetrics = &FakeGetSystemMetrics;
decltype(&SetForegroundWindow) __imp_SetForegroundWindow = &FakeSetForegroundWindow;
decltype(&GetForegroundWindow) __imp_GetForegroundWindow = &FakeGetForegroundWindow;
decltype(&TrackPopupMenuEx) __imp_TrackPopupMenuEx = &FakeTrackPopupMenuEx;
decltype(&LoadImageW) __imp_LoadImageW = &FakeLoadImageW;
decltype(&CreateDIBSection) __imp_CreateDIBSection = &FakeCreateDIBSection;
decltype(&PostMessageW) __imp_PostMessageW = &FakePostMessageW;
decltype(&SetWinEventHook) __imp_SetWinEventHook = &FakeSetWinEventHook;
decltype(&UnhookWinEvent) __imp_UnhookWinEvent = &FakeUnhookWinEvent;
decltype(&MessageBoxW) __imp_MessageBoxW = &FakeMessageBoxW;
decltype(&WritePrivateProfileStringW) __imp_WritePrivateProfileStringW = &FakeWritePrivateProfileStringW;
decltype(&PostQuitMessage) __imp_PostQuitMessage = &FakePostQuitMessage;
}

namespace kestrane {

/// Replaces the painter.
void PaintGraph(HDC, std::int32_t, std::int32_t, GraphKind, const AppSettings&, const GraphSeries& series,
                std::uint32_t, const HoverState&) {
    world.paintedSeries = &series;
}

/// Replaces the settings dialog, whose own tests show it.
void ShowSettingsDialog(HINSTANCE instance, HWND owner, const Point& anchor, AppSettings&, SettingsDialogHost&) {
    EXPECT_EQ(instance, GetModuleHandleW(nullptr));
    EXPECT_EQ(owner, world.window);
    NoteCall("settings dialog");
    world.settingsAnchor = anchor;
    if (world.whileSettingsAreOpen) world.whileSettingsAreOpen();
}
HWND OpenSettingsDialog() {
    return world.settingsDialog;
}

/// Replaces the update dialog. Nothing has been downloaded.
bool ShowUpdateDialog(HINSTANCE, HWND, const UpdateInfo& info) {
    NoteCall("update dialog " + info.version);
    if (world.whileUpdateDialogIsOpen) std::exchange(world.whileUpdateDialogIsOpen, nullptr)();
    return false;
}

/// Replaces the real one, which would start a program.
void OpenTaskManager(std::int64_t page) {
    NoteCall("Task Manager " + std::to_string(page));
}

namespace {

class TrayCommandsTest : public testing::Test {
  protected:
    TrayCommandsTest() {
        world = World{};
        SetLanguage(1);
        MakeApp();
    }
    ~TrayCommandsTest() override {
        if (IsWindow(app->window)) DestroyWindow(app->window);
        UnregisterClassW(HiddenWindowClass, app->instance);
        SetLanguage(0);
    }

    void MakeApp() {
        app = std::make_unique<App>();
        app->instance = GetModuleHandleW(nullptr);
        app->settings = MakeDefaultSettings();
        app->settings.check_updates = false;
        app->taskbarCreatedMessage = 0xC0DE;
    }

    void Start() {
        ASSERT_TRUE(CreateHiddenWindow(*app));
        world.window = app->window;
        Calls().clear();
    }

    void Event(std::uint32_t iconId, std::uint32_t event, int x = 0, int y = 0) {
        const LRESULT result = SendMessageW(app->window, WM_TRAY_NOTIFY, MAKEWPARAM(x, y), MAKELPARAM(event, iconId));
        EXPECT_EQ(result, 0);
    }

    /// Opens the menu of an icon and chooses the command.
    void Choose(std::uint32_t command, std::uint32_t iconId = 1) {
        world.menuAnswer = static_cast<BOOL>(command);
        Event(iconId, EventContextMenu);
        world.menuAnswer = 0;
    }

    void OfferVersion(const char* version) {
        app->updateChecker.offer.available = true;
        app->updateChecker.offer.info.version = version;
    }

    GraphWindow& Graph(GraphKind kind) { return *app->graphs[IndexOf(kind)]; }

    static HWND WindowOf(GraphKind kind) {
        constexpr std::array<const wchar_t*, GraphCount> Titles{L"kestrane - network", L"kestrane - CPU",
                                                                L"kestrane - disk"};
        return FindWindowW(L"kestrane.graph", Titles[IndexOf(kind)]);
    }

    static bool IsClickThrough(GraphKind kind) {
        return (GetWindowLongPtrW(WindowOf(kind), GWL_EXSTYLE) & WS_EX_TRANSPARENT) != 0;
    }

    /// Simulates another program's window that comes to the foreground over the graph.
    static void Cover(GraphKind kind) {
        RECT rect{};
        GetWindowRect(WindowOf(kind), &rect);
        const HWND over = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, rect.left, rect.top, 10, 10,
                                          nullptr, nullptr, nullptr, nullptr);
        world.foregroundEvent(nullptr, EVENT_SYSTEM_FOREGROUND, over, OBJID_WINDOW, 0, 0, 0);
        DestroyWindow(over);
    }

    std::unique_ptr<App> app;
};

TEST_F(TrayCommandsTest, ADoubleClickOpensTheGraphOnce) {
    Start();
    Event(1, EventSelect);
    EXPECT_TRUE(Graph(GraphKind::Cpu).IsShown());
    world.clockMs += 120;
    Event(1, EventDoubleClick);
    Event(1, EventSelect);
    EXPECT_TRUE(Graph(GraphKind::Cpu).IsShown());
    EXPECT_TRUE(app->settings.cpu.graph);
}

TEST_F(TrayCommandsTest, TwoSlowClicksOpenAndHideIt) {
    Start();
    Event(2, EventSelect);
    EXPECT_TRUE(Graph(GraphKind::Disk).IsShown());
    EXPECT_THAT(Calls(), Contains("write disk graph=1"));
    Calls().clear();
    world.clockMs += 500;
    Event(2, EventKeySelect);
    EXPECT_FALSE(Graph(GraphKind::Disk).IsShown());
    EXPECT_THAT(Calls(), Contains("write disk graph=0"));
}

TEST_F(TrayCommandsTest, TheFilterIsPerIcon) {
    Start();
    Event(1, EventSelect);
    Event(2, EventSelect);
    Event(4, EventSelect);
    for (const GraphKind kind : GraphKinds)
        EXPECT_TRUE(Graph(kind).IsShown()) << IndexOf(kind);
}

TEST_F(TrayCommandsTest, OtherEventsAndTheMemoryIconDoNothing) {
    Start();
    Event(1, WM_MOUSEMOVE);
    Event(1, EventBalloonClick);
    Event(3, EventSelect);
    Event(3, EventKeySelect);
    Event(0, EventSelect);
    for (const GraphKind kind : GraphKinds)
        EXPECT_FALSE(Graph(kind).IsShown());
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(TrayCommandsTest, APinnedGraphStays) {
    app->settings.cpu.graph = true;
    app->settings.cpu.pinned = true;
    Start();
    EXPECT_TRUE(Graph(GraphKind::Cpu).IsShown());
    Event(1, EventSelect);
    EXPECT_TRUE(Graph(GraphKind::Cpu).IsShown());
    EXPECT_TRUE(app->settings.cpu.graph);
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(TrayCommandsTest, AGraphThatWasOpenOpensAgainOnlyWithItsIcon) {
    app->settings.cpu.graph = true;
    app->settings.disk.graph = true;
    app->settings.show[1] = false;
    Start();
    EXPECT_TRUE(Graph(GraphKind::Cpu).IsShown());
    EXPECT_FALSE(Graph(GraphKind::Disk).IsShown());
    app->settings.show[1] = true;
    app->settings.show[0] = false;
    app->OnSettingsChanged();
    EXPECT_TRUE(Graph(GraphKind::Disk).IsShown());
    EXPECT_FALSE(Graph(GraphKind::Cpu).IsShown());
    EXPECT_TRUE(app->settings.cpu.graph);  // it comes back with the icon
}

TEST_F(TrayCommandsTest, TheShortcutTogglesTheNetworkGraphWithoutTheFilter) {
    Start();
    for (const bool shown : {true, false, true}) {
        EXPECT_EQ(SendMessageW(app->window, WM_HOTKEY, GraphHotkeyId, 0), 0);
        EXPECT_EQ(Graph(GraphKind::Network).IsShown(), shown);
    }
    SendMessageW(app->window, WM_HOTKEY, 2, 0);  // not our id
    EXPECT_TRUE(Graph(GraphKind::Network).IsShown());
}

TEST_F(TrayCommandsTest, TheShortcutDoesNothingWithoutTheIconButTheMenuComes) {
    app->settings.show[3] = false;
    Start();
    SendMessageW(app->window, WM_HOTKEY, GraphHotkeyId, 0);
    EXPECT_FALSE(Graph(GraphKind::Network).IsShown());
    EXPECT_FALSE(app->settings.network.graph);
    Event(1, EventContextMenu);
    EXPECT_EQ(CountCalls("TrackPopupMenu"), 1);
}

std::vector<std::wstring> TextsOf(const std::vector<MenuItem>& items) {
    std::vector<std::wstring> texts;
    for (const MenuItem& item : items)
        texts.push_back(item.text);
    return texts;
}

TEST_F(TrayCommandsTest, TheMenuStandsWhereTheUserIsWithImagesAndADefault) {
    app->settings.disk.graph = true;
    app->settings.disk.pinned = true;
    app->settings.network.graph = true;
    Start();
    Event(3, EventContextMenu, -20, 700);
    EXPECT_THAT(TextsOf(world.menu), ElementsAre(L"Performance", L"-", L"Pin disk graph", L"Pin network graph", L"-",
                                                 L"Settings...", L"-", L"About kestrane...", L"Exit"));
    EXPECT_EQ(world.menu[2].id, 106U);
    EXPECT_NE(world.menu[2].state & MFS_CHECKED, 0U);
    EXPECT_EQ(world.menu[3].state & MFS_CHECKED, 0U);
    for (const std::size_t row : {0U, 5U, 7U, 8U})
        EXPECT_NE(world.menu[row].image, nullptr) << row;
    for (const std::size_t row : {2U, 3U})
        EXPECT_EQ(world.menu[row].image, nullptr) << row;
    EXPECT_EQ(world.menuDefault, 103U);
    EXPECT_EQ(world.menuFlags, 0x182U);
    EXPECT_EQ(world.menuPoint.x, -20);
    EXPECT_EQ(world.menuPoint.y, 700);
    EXPECT_EQ(world.imageSize, static_cast<int>(app->iconRingSize));
    EXPECT_THAT(Calls(), ElementsAre("image 201", "image 202", "image 203", "image 204", "SetForegroundWindow",
                                     "TrackPopupMenu", "post 0", "focus 3"));
}

TEST_F(TrayCommandsTest, ANewerVersionStandsAtTheTopOfTheMenuForAsLongAsItIsOffered) {
    Start();
    OfferVersion("0.2.0");
    Event(1, EventContextMenu);
    EXPECT_THAT(TextsOf(world.menu), ElementsAre(L"New version 0.2.0 available...", L"-", L"Performance", L"-",
                                                 L"Settings...", L"-", L"About kestrane...", L"Exit"));
    EXPECT_EQ(world.menu[0].id, 110U);
    EXPECT_NE(world.menu[0].image, nullptr);
    EXPECT_EQ(world.menuDefault, 103U) << "a double click on an icon does not mean an update";
    EXPECT_EQ(CountCalls("image 215"), 1);
    app->updateChecker.offer.available = false;
    Event(1, EventContextMenu);
    EXPECT_EQ(world.menu.size(), 6U);
    EXPECT_EQ(CountCalls("image 215"), 1);
}

TEST_F(TrayCommandsTest, TheMenusNewerVersionOpensTheUpdateDialog) {
    Start();
    OfferVersion("0.2.0");
    Choose(CommandUpdate);
    EXPECT_EQ(Calls().back(), "update dialog 0.2.0");
    EXPECT_EQ(CountCalls("focus 1"), 0) << "the user has chosen something";
}

TEST_F(TrayCommandsTest, AVersionThatIsTakenBackUnderTheMenuOpensNoDialog) {
    Start();
    OfferVersion("0.2.0");
    world.whileMenuIsOpen = [this] { app->updateChecker.offer.available = false; };
    Choose(CommandUpdate);
    EXPECT_EQ(CountCalls("update dialog 0.2.0"), 0);
}

TEST_F(TrayCommandsTest, TheIconsWorkWhileTheUpdateDialogIsOpen) {
    Start();
    OfferVersion("0.2.0");
    world.whileUpdateDialogIsOpen = [this] {
        Event(1, EventSelect);
        EXPECT_TRUE(Graph(GraphKind::Cpu).IsShown());
        Choose(CommandSettings);
        Choose(CommandUpdate);
    };
    Choose(CommandUpdate);
    EXPECT_EQ(CountCalls("TrackPopupMenu"), 3);
    EXPECT_EQ(CountCalls("settings dialog"), 1);
    EXPECT_EQ(CountCalls("update dialog 0.2.0"), 1) << "it is open";
}

TEST_F(TrayCommandsTest, ExitEndsTheProgramWhileTheUpdateDialogIsOpen) {
    Start();
    OfferVersion("0.2.0");
    world.whileUpdateDialogIsOpen = [this] { Choose(CommandExit); };
    Choose(CommandUpdate);
    EXPECT_FALSE(IsWindow(app->window));
    EXPECT_EQ(CountCalls("PostQuitMessage"), 1);
    EXPECT_EQ(CountCalls("focus 1"), 0);
}

TEST_F(TrayCommandsTest, TheImagesAreThoseOfTheIconsOnNothing) {
    Start();
    Event(1, EventContextMenu);
    const UniqueIcon icon(
        static_cast<HICON>(FakeLoadImageW(nullptr, nullptr, IMAGE_ICON, world.imageSize, world.imageSize, 0)));
    const IconPixels expected = ReadIconPixels(icon.Get());
    ASSERT_EQ(world.menuImages.size(), 4U);
    for (const IconPixels& image : world.menuImages) {
        EXPECT_EQ(image.width, world.imageSize);
        ASSERT_EQ(image.pixels.size(), expected.pixels.size());
        for (std::size_t i = 0; i < image.pixels.size(); ++i)
            EXPECT_EQ(image.pixels[i] >> 24, expected.pixels[i] >> 24) << i;
    }
}

TEST_F(TrayCommandsTest, TheMenuAndItsImagesAreGivenBack) {
    Start();
    Event(1, EventContextMenu);
    EXPECT_FALSE(IsMenu(world.menuHandle));
    for (const MenuItem& item : world.menu)
        EXPECT_EQ(GetObjectType(item.image), 0U) << item.id;
}

TEST_F(TrayCommandsTest, AMenuLeftWithoutAChoiceGivesTheKeyboardBackToItsIcon) {
    Start();
    for (const std::uint32_t id : {1U, 2U, 3U, 4U}) {
        Calls().clear();
        Event(id, EventContextMenu);
        EXPECT_EQ(Calls().back(), "focus " + std::to_string(id)) << "after the menu";
    }
    for (const std::uint32_t command : {CommandPinFirst, CommandAbout, CommandPerformance}) {
        Calls().clear();
        Choose(command);
        EXPECT_EQ(CountCalls("focus 1"), 0) << command;
    }
}

TEST_F(TrayCommandsTest, OnlyAnIconThatIsThereGetsTheKeyboard) {
    app->settings.show[1] = false;
    Start();
    for (const std::uint32_t id : {0U, 2U, 5U, 65535U}) {
        Calls().clear();
        Event(id, EventContextMenu);
        EXPECT_EQ(Calls().back(), "post 0") << id;
    }
}

TEST_F(TrayCommandsTest, TheEndCanComeWhileTheShellTakesTheKeyboard) {
    Start();
    const std::weak_ptr<TrayIconSet> icons = app->trayIcons;
    world.whileFocusIsGiven = [&] {
        SendMessageW(app->window, WM_CLOSE, 0, 0);
        EXPECT_FALSE(icons.expired()) << "a call is in progress";
    };
    Event(1, EventContextMenu);
    EXPECT_TRUE(app->shuttingDown);
    EXPECT_TRUE(icons.expired());
}

TEST_F(TrayCommandsTest, MenusThatDropLeftAreAlignedRight) {
    world.dropAlignment = 1;
    Start();
    Event(1, EventContextMenu);
    EXPECT_EQ(world.menuFlags, 0x18AU);
}

TEST_F(TrayCommandsTest, EntriesWithoutAnImageStillWork) {
    Start();
    for (const bool imagesLoad : {false, true}) {
        world.imagesLoad = imagesLoad;
        world.bitmapsAreMade = !imagesLoad;
        Event(1, EventContextMenu);
        EXPECT_EQ(world.menu.size(), 6U);
        for (const MenuItem& item : world.menu)
            EXPECT_EQ(item.image, nullptr) << item.id;
    }
}

TEST_F(TrayCommandsTest, ASecondMenuDoesNotOpenOverTheFirstButClicksWork) {
    Start();
    world.whileMenuIsOpen = [this] {
        Event(2, EventContextMenu);
        Event(1, EventSelect);
    };
    Event(1, EventContextMenu);
    EXPECT_EQ(CountCalls("TrackPopupMenu"), 1);
    EXPECT_TRUE(Graph(GraphKind::Cpu).IsShown());
    EXPECT_FALSE(app->menuOpen);
    world.whileMenuIsOpen = nullptr;
    Event(2, EventContextMenu);
    EXPECT_EQ(CountCalls("TrackPopupMenu"), 2);
}

TEST_F(TrayCommandsTest, PinningKeepsTheGraphOpenAndIsSaved) {
    app->settings.cpu.graph = true;
    Start();
    Choose(CommandPinFirst + IndexOf(GraphKind::Cpu));
    EXPECT_TRUE(app->settings.cpu.pinned);
    EXPECT_TRUE(app->settings.cpu.graph);
    EXPECT_TRUE(Graph(GraphKind::Cpu).IsShown());
    EXPECT_THAT(Calls(), Contains("write cpu pinned=1"));
    EXPECT_TRUE(IsClickThrough(GraphKind::Cpu));
    Choose(CommandPinFirst + IndexOf(GraphKind::Cpu));
    EXPECT_FALSE(app->settings.cpu.pinned);
    EXPECT_THAT(Calls(), Contains("write cpu pinned=0"));
    EXPECT_FALSE(IsClickThrough(GraphKind::Cpu));
}

TEST_F(TrayCommandsTest, NothingChosenDoesNothing) {
    Start();
    for (const std::uint32_t command : {0U, 99U, 107U, 1000U})
        Choose(command);
    EXPECT_TRUE(IsWindow(app->window));
    EXPECT_EQ(world.boxText, L"");
    EXPECT_THAT(Calls(), Not(Contains(HasSubstr("write"))));
    EXPECT_THAT(Calls(), Not(Contains(HasSubstr("Task Manager"))));
}

/// Four disks, of which the third is read and the fourth is written to.
void UseDisks(MetricSample& sample, std::int32_t readPercent, std::int32_t writePercent) {
    sample.diskInstanceCount = 4;
    sample.diskReadPercent = readPercent;
    sample.diskWritePercent = writePercent;
    sample.busiestReadDisk = L"2 D:";
    sample.busiestWriteDisk = L"3 E:";
}

TEST_F(TrayCommandsTest, PerformanceOpensThePageOfTheIcon) {
    Start();
    UseDisks(app->sample, 20, 10);
    const char* const pages[] = {"Task Manager 0", "Task Manager 4", "Task Manager 1", "Task Manager 6"};
    for (std::uint32_t icon = 1; icon <= 4; ++icon) {
        Calls().clear();
        Choose(CommandPerformance, icon);
        EXPECT_EQ(Calls().back(), pages[icon - 1]);
        EXPECT_EQ(CountCalls(pages[icon - 1]), 1);
    }
}

TEST_F(TrayCommandsTest, PerformanceOfTheDiskIsThatOfTheMomentOfTheChoice) {
    Start();
    UseDisks(app->sample, 20, 10);
    world.whileMenuIsOpen = [this] { UseDisks(app->sample, 20, 21); };
    Choose(CommandPerformance, 2);
    EXPECT_EQ(Calls().back(), "Task Manager 5");
}

TEST_F(TrayCommandsTest, PerformanceFromAGraphIsThatOfItsIcon) {
    Start();
    UseDisks(app->sample, 0, 0);
    const std::pair<GraphKind, const char*> rows[] = {{GraphKind::Cpu, "Task Manager 0"},
                                                      {GraphKind::Disk, "Task Manager 4"},
                                                      {GraphKind::Network, "Task Manager 6"}};
    world.menuAnswer = static_cast<BOOL>(CommandPerformance);
    for (const auto& [kind, page] : rows) {
        app->ShowGraphMenu(kind, {12, 34});
        EXPECT_EQ(Calls().back(), page);
    }
}

TEST_F(TrayCommandsTest, ADoubleClickOnTheMemoryIconOpensItsPage) {
    Start();
    Event(3, EventSelect);
    EXPECT_THAT(Calls(), IsEmpty());
    Event(3, EventDoubleClick);
    Event(3, EventSelect);
    EXPECT_THAT(Calls(), ElementsAre("Task Manager 1"));
    Event(3, EventDoubleClick);  // no filter here: each one counts
    EXPECT_THAT(Calls(), ElementsAre("Task Manager 1", "Task Manager 1"));
}

TEST_F(TrayCommandsTest, NoOtherIconOpensTaskManagerByADoubleClick) {
    Start();
    for (const std::uint32_t icon : {1U, 2U, 4U})
        Event(icon, EventDoubleClick);
    EXPECT_THAT(Calls(), Not(Contains(HasSubstr("Task Manager"))));
}

TEST_F(TrayCommandsTest, ExitDestroysTheWindow) {
    Start();
    Choose(CommandExit);
    EXPECT_FALSE(IsWindow(app->window));
    EXPECT_TRUE(app->shuttingDown);
    EXPECT_EQ(CountCalls("PostQuitMessage"), 1);
}

TEST_F(TrayCommandsTest, AWindowThatGoesAwayUnderTheMenuRunsNoCommand) {
    for (const std::uint32_t command :
         {CommandPinFirst, CommandPerformance, CommandAbout, CommandExit, CommandUpdate}) {
        MakeApp();
        UnregisterClassW(HiddenWindowClass, app->instance);
        Start();
        OfferVersion("0.2.0");
        world.whileMenuIsOpen = [this] { SendMessageW(app->window, WM_CLOSE, 0, 0); };
        Choose(command);
        EXPECT_FALSE(IsWindow(app->window));
        EXPECT_EQ(world.boxText, L"");
        EXPECT_FALSE(app->settings.network.pinned);
        EXPECT_THAT(Calls(), Not(Contains(HasSubstr("Task Manager"))));
        EXPECT_THAT(Calls(), Not(Contains(HasSubstr("update dialog"))));
        EXPECT_EQ(CountCalls("PostQuitMessage"), 1);
    }
}

TEST_F(TrayCommandsTest, AboutNamesVersionAndSettingsFile) {
    Start();
    Choose(CommandAbout);
    EXPECT_EQ(world.boxCaption, L"About kestrane");
    EXPECT_EQ(world.boxType, UINT{MB_ICONINFORMATION});
    EXPECT_EQ(world.boxText,
              std::wstring(L"kestrane ") + ProgramVersion +
                  L"\n\nCPU, disk, memory and network monitor for the tray.\nRight-click an icon to "
                  L"open the settings.\nClick the CPU, disk or network icon: its graph.\nCtrl+Shift+B: network "
                  L"graph.\n\nSettings: " +
                  IniPath() + L"\n\nIcons: Fugue Icons by Marlo Tesshin (CC BY 3.0).");
    EXPECT_NE(IniPath().find(L"\\kestrane\\kestrane.ini"), std::wstring::npos);
    SetLanguage(0);
    Choose(CommandAbout);
    EXPECT_EQ(world.boxCaption, L"Acerca de kestrane");
    EXPECT_EQ(world.boxText, std::wstring(L"kestrane ") + ProgramVersion +
                                 L"\n\nMonitor de CPU, disco, memoria y red en la bandeja.\nClic derecho sobre un "
                                 L"icono para abrir los ajustes.\nClic en el icono de CPU, disco o red: su gráfica.\n"
                                 L"Ctrl+Shift+B: gráfica de red.\n\nAjustes: " +
                                 IniPath() + L"\n\nIconos: Fugue Icons de Marlo Tesshin (CC BY 3.0).");
}

/// A window that stands for the settings dialog, or for a box on top of it, for as long as this lives.
class StandIn {
  public:
    explicit StandIn(HWND owner, DWORD style = 0)
        : window_(CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE | style, 0, 0, 300, 200, owner,
                                  nullptr, nullptr, nullptr)) {}
    StandIn(const StandIn&) = delete;
    StandIn& operator=(const StandIn&) = delete;
    ~StandIn() { DestroyWindow(window_); }

    HWND Get() const { return window_; }

  private:
    HWND window_;
};

TEST_F(TrayCommandsTest, TheSettingsOpenWhereTheUserIsAndAllIconsAreFreshAfterwards) {
    Start();
    world.whileSettingsAreOpen = [this] {
        EXPECT_TRUE(app->settingsOpen);
        EXPECT_FALSE(app->menuOpen);
        world.refreshedIcons.clear();
    };
    world.menuAnswer = static_cast<BOOL>(CommandSettings);
    Event(2, EventContextMenu, -20, 700);
    EXPECT_EQ(CountCalls("settings dialog"), 1);
    EXPECT_EQ(world.settingsAnchor, (Point{-20, 700}));
    EXPECT_FALSE(app->settingsOpen);
    EXPECT_THAT(world.refreshedIcons, ElementsAre(1, 2, 3, 4));
    Event(2, EventContextMenu, -20, 700);
    EXPECT_EQ(CountCalls("settings dialog"), 2) << "and can open again";
}

TEST_F(TrayCommandsTest, TheEndCanComeWhileTheSettingsAreOpen) {
    Start();
    world.whileSettingsAreOpen = [this] {
        SendMessageW(app->window, WM_CLOSE, 0, 0);
        world.refreshedIcons.clear();
    };
    Choose(CommandSettings);
    EXPECT_TRUE(app->shuttingDown);
    EXPECT_THAT(world.refreshedIcons, testing::IsEmpty());
    EXPECT_EQ(CountCalls("focus 1"), 0);
}

TEST_F(TrayCommandsTest, NoDialogIsFetchedThatIsNotOpen) {
    Start();
    EXPECT_FALSE(app->FocusSettingsDialog());
    EXPECT_THAT(Calls(), testing::IsEmpty());
}

TEST_F(TrayCommandsTest, EveryWayToTheMenuFetchesTheOpenDialog) {
    Start();
    world.whileSettingsAreOpen = [this] {
        const StandIn dialog(world.window);
        world.settingsDialog = dialog.Get();
        const std::vector<std::pair<const char*, std::function<void()>>> ways = {
            {"a right click on an icon", [this] { Event(1, EventContextMenu); }},
            {"a right click on a graph",
             [this] {
                 app->ShowGraphMenu(GraphKind::Cpu, Point{1, 2});
             }},
            {"a click on the notification", [this] { Event(3, EventBalloonClick); }},
        };
        for (const auto& [name, way] : ways) {
            Calls().clear();
            world.foreground = nullptr;
            way();
            EXPECT_EQ(world.foreground, dialog.Get()) << name;
            EXPECT_THAT(Calls(), ElementsAre("SetForegroundWindow")) << name << ": no menu and no second dialog";
        }
        world.settingsDialog = nullptr;
    };
    Choose(CommandSettings);
}

TEST_F(TrayCommandsTest, NoSecondDialogOpensWhenOneHasOpenedUnderTheMenu) {
    Start();
    world.whileMenuIsOpen = [this] { app->settingsOpen = true; };
    Choose(CommandSettings);
    EXPECT_EQ(CountCalls("settings dialog"), 0);
}

TEST_F(TrayCommandsTest, ADialogThatIsJustBeingCreatedIsLeftAlone) {
    Start();
    world.whileSettingsAreOpen = [this] {
        Calls().clear();
        Event(1, EventContextMenu);
        EXPECT_TRUE(app->FocusSettingsDialog());
        EXPECT_THAT(Calls(), testing::IsEmpty());
    };
    Choose(CommandSettings);
}

TEST_F(TrayCommandsTest, AMinimisedDialogIsRestored) {
    Start();
    world.whileSettingsAreOpen = [this] {
        const StandIn dialog(world.window, WS_MINIMIZE);
        world.settingsDialog = dialog.Get();
        ASSERT_TRUE(IsIconic(dialog.Get()));
        Event(1, EventContextMenu);
        EXPECT_FALSE(IsIconic(dialog.Get()));
        EXPECT_EQ(world.foreground, dialog.Get());
    };
    Choose(CommandSettings);
}

TEST_F(TrayCommandsTest, ABoxOnTopOfTheDialogIsFetchedInItsPlace) {
    Start();
    world.whileSettingsAreOpen = [this] {
        const StandIn dialog(world.window);
        const StandIn box(dialog.Get());
        world.settingsDialog = dialog.Get();
        Event(1, EventContextMenu);
        EXPECT_EQ(world.foreground, box.Get());
    };
    Choose(CommandSettings);
}

TEST_F(TrayCommandsTest, AnIconsClickStillTogglesItsGraphWhileTheSettingsAreOpen) {
    Start();
    world.whileSettingsAreOpen = [this] { Event(1, EventSelect); };
    Choose(CommandSettings);
    EXPECT_TRUE(Graph(GraphKind::Cpu).IsShown());
}

TEST_F(TrayCommandsTest, TheDiskGraphKeepsItsViewWhileTheSettingsAreOpen) {
    Start();
    world.whileSettingsAreOpen = [this] {
        Calls().clear();
        app->GraphClicked(GraphKind::Disk);
        EXPECT_FALSE(app->settings.activity) << "the dialog edits it, and knows nothing of a change from elsewhere";
        EXPECT_THAT(Calls(), testing::IsEmpty());
    };
    Choose(CommandSettings);
    app->GraphClicked(GraphKind::Disk);
    EXPECT_TRUE(app->settings.activity);
}

TEST_F(TrayCommandsTest, ClickingTheDiskGraphSwitchesItsViewAndNoOther) {
    Start();
    app->GraphClicked(GraphKind::Cpu);
    app->GraphClicked(GraphKind::Network);
    EXPECT_FALSE(app->settings.activity);
    EXPECT_THAT(Calls(), IsEmpty());
    app->GraphClicked(GraphKind::Disk);
    EXPECT_TRUE(app->settings.activity);
    EXPECT_THAT(Calls(), ElementsAre("write disk activity=1"));
}

TEST_F(TrayCommandsTest, AGraphsMenuIsThatOfItsIcon) {
    Start();
    app->ShowGraphMenu(GraphKind::Network, {12, -34});
    EXPECT_EQ(CountCalls("TrackPopupMenu"), 1);
    EXPECT_EQ(world.menuPoint.x, 12);
    EXPECT_EQ(world.menuPoint.y, -34);
}

/// The window that the user works with.
HWND MakeUsersWindow() {
    return CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr, nullptr, nullptr, nullptr);
}

TEST_F(TrayCommandsTest, AGraphsMenuGivesTheForegroundBack) {
    struct Row {
        const char* why;
        std::uint32_t command;
        std::function<void(HWND)> whileMenuIsOpen;
        bool back;
    };
    const std::vector<Row> rows = {
        {"nothing chosen", 0, nullptr, true},
        {"a command done at once", CommandPinFirst, nullptr, true},
        {"a box that is closed again", CommandAbout, nullptr, true},
        {"another program that comes to the front by itself", CommandPerformance, nullptr, false},
        {"the window is gone", 0, DestroyWindow, false},
        {"the window is hidden", 0, [](HWND window) { ShowWindow(window, SW_HIDE); }, false},
        {"a box of its own stands before it", 0, [](HWND window) { EnableWindow(window, FALSE); }, false},
        {"the user is elsewhere by now", 0, [](HWND) { world.foreground = GetDesktopWindow(); }, false},
        {"nobody has it", 0, [](HWND) { world.foreground = nullptr; }, false},
    };
    Start();
    for (const Row& row : rows) {
        const HWND users = MakeUsersWindow();
        world.foreground = users;
        world.menuAnswer = static_cast<BOOL>(row.command);
        world.whileMenuIsOpen = [&] {
            EXPECT_EQ(world.foreground, app->window) << row.why;
            if (row.whileMenuIsOpen) row.whileMenuIsOpen(users);
        };
        Calls().clear();
        app->ShowGraphMenu(GraphKind::Network, {12, -34});
        EXPECT_EQ(world.foreground == users, row.back) << row.why;
        EXPECT_EQ(CountCalls("SetForegroundWindow"), row.back ? 2 : 1) << row.why;
        EXPECT_EQ(CountCalls("focus 4"), 0) << row.why << ": it is no icon's menu";
        if (IsWindow(users)) DestroyWindow(users);
    }
}

TEST_F(TrayCommandsTest, AnIconsMenuThatAClickElsewhereEndsLeavesTheKeyboardThere) {
    Start();
    const HWND users = MakeUsersWindow();
    world.whileMenuIsOpen = [users] { world.foreground = users; };
    Event(1, EventContextMenu);
    EXPECT_EQ(CountCalls("focus 1"), 0);
    EXPECT_EQ(world.foreground, users);
    DestroyWindow(users);
}

TEST_F(TrayCommandsTest, AGraphsMenuThatDoesNotOpenLeavesTheForegroundAlone) {
    Start();
    const HWND users = MakeUsersWindow();
    world.foreground = users;
    world.whileMenuIsOpen = [this] { app->ShowGraphMenu(GraphKind::Cpu, {1, 2}); };
    Event(1, EventContextMenu);
    EXPECT_EQ(CountCalls("SetForegroundWindow"), 1);
    EXPECT_EQ(CountCalls("focus 1"), 1);
    DestroyWindow(users);
}

TEST_F(TrayCommandsTest, TheEndUnderAMenuGivesNothingBack) {
    for (const bool ofIcon : {true, false}) {
        MakeApp();
        UnregisterClassW(HiddenWindowClass, app->instance);
        Start();
        const HWND users = MakeUsersWindow();
        world.foreground = users;
        world.whileMenuIsOpen = [this] { SendMessageW(app->window, WM_CLOSE, 0, 0); };
        if (ofIcon) Event(1, EventContextMenu);
        if (!ofIcon) app->ShowGraphMenu(GraphKind::Cpu, {1, 2});
        EXPECT_EQ(CountCalls("SetForegroundWindow"), 1);
        EXPECT_EQ(CountCalls("focus 1"), 0);
        DestroyWindow(users);
    }
}

TEST_F(TrayCommandsTest, EveryStateOfAGraphIsSavedInTheirOrder) {
    Start();
    app->GraphStateChanged(GraphKind::Disk);
    EXPECT_EQ(Calls().front(), "write network graph=0");
    EXPECT_EQ(Calls().back(), "write disk height=0");
    EXPECT_EQ(Calls().size(), 18U);
}

TEST_F(TrayCommandsTest, GraphsReadTheRingsOfTheirMetricAtItsPeriod) {
    app->settings.refresh_ms = {500, 1000, 1500, 3000};
    Start();
    const GraphSeries& network = app->graphSources[0];
    EXPECT_EQ(network.primary.counterRing, &app->netDownRing);
    EXPECT_EQ(network.secondary.counterRing, &app->netUpRing);
    EXPECT_EQ(network.periodMs, 3000U);
    const GraphSeries& cpu = app->graphSources[1];
    EXPECT_EQ(cpu.primary.valueRing, &app->cpuRing);
    EXPECT_EQ(cpu.secondary.valueRing, nullptr);
    EXPECT_EQ(cpu.cores, &app->coreRings);
    EXPECT_EQ(cpu.coreClasses, &app->coreClasses);
    EXPECT_EQ(cpu.periodMs, 500U);
    const GraphSeries& disk = app->graphSources[2];
    EXPECT_EQ(disk.primary.valueRing, &app->diskReadBytesRing);
    EXPECT_EQ(disk.secondary.valueRing, &app->diskWriteBytesRing);
    EXPECT_EQ(disk.activityRead.valueRing, &app->diskReadPercentRing);
    EXPECT_EQ(disk.activityWrite.valueRing, &app->diskWritePercentRing);
    EXPECT_EQ(disk.disks, &app->diskHistories);
    EXPECT_EQ(disk.periodMs, 1000U);
    app->settings.refresh_ms[1] = 5000;
    app->ApplyTimers();
    EXPECT_EQ(disk.periodMs, 5000U);
}

TEST_F(TrayCommandsTest, AChangedStyleReachesAnOpenGraph) {
    app->settings.cpu.graph = true;
    Start();
    app->settings.cpu.pinned = true;
    app->OnSettingsChanged();
    EXPECT_TRUE(IsClickThrough(GraphKind::Cpu));
}

TEST_F(TrayCommandsTest, EachGraphPaintsItsOwnSeries) {
    for (const GraphKind kind : GraphKinds)
        GraphSettingsOf(app->settings, kind).graph = true;
    Start();
    for (const GraphKind kind : GraphKinds) {
        world.paintedSeries = nullptr;
        InvalidateRect(WindowOf(kind), nullptr, FALSE);
        UpdateWindow(WindowOf(kind));
        EXPECT_EQ(world.paintedSeries, &app->graphSources[IndexOf(kind)]) << IndexOf(kind);
    }
}

TEST_F(TrayCommandsTest, EqualPeriodsStillReachTheGraphs) {
    Start();
    for (GraphSeries& series : app->graphSources)
        series.periodMs = 7;
    app->ApplyTimers();
    for (const GraphSeries& series : app->graphSources)
        EXPECT_EQ(series.periodMs, 1500U);
}

TEST_F(TrayCommandsTest, ACoveredGraphIsFetchedAndTheNextClickHidesIt) {
    app->settings.disk.graph = true;
    app->settings.disk.topmost = false;
    Start();
    Cover(GraphKind::Disk);
    Event(2, EventSelect);
    EXPECT_TRUE(Graph(GraphKind::Disk).IsShown());
    EXPECT_FALSE(Graph(GraphKind::Disk).IsCovered());
    EXPECT_THAT(Calls(), IsEmpty());
    world.clockMs += 500;
    Event(2, EventSelect);
    EXPECT_FALSE(Graph(GraphKind::Disk).IsShown());
}

TEST_F(TrayCommandsTest, AChangedScreenBringsLostGraphsBack) {
    app->settings.cpu.graph = true;
    app->settings.network.graph = true;
    Start();
    for (const UINT message : {UINT{WM_SETTINGCHANGE}, UINT{WM_DISPLAYCHANGE}, app->taskbarCreatedMessage}) {
        for (const GraphKind kind : {GraphKind::Network, GraphKind::Cpu}) {
            SetWindowPos(WindowOf(kind), nullptr, -30000, -30000, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        }
        SendMessageW(app->window, message, 0, 0);
        for (const GraphKind kind : {GraphKind::Network, GraphKind::Cpu}) {
            RECT rect{};
            GetWindowRect(WindowOf(kind), &rect);
            EXPECT_GE(rect.left, 0) << message << " " << IndexOf(kind);
        }
        EXPECT_THAT(Calls(), Contains("write cpu x=" + std::to_string(app->settings.cpu.x)));
        Calls().clear();
    }
}

TEST_F(TrayCommandsTest, ATickRepaintsItsGraphAndNoOther) {
    for (const GraphKind kind : GraphKinds)
        GraphSettingsOf(app->settings, kind).graph = true;
    Start();
    const auto repainted = [this](const std::function<void()>& tick) {
        for (const GraphKind kind : GraphKinds)
            ValidateRect(WindowOf(kind), nullptr);
        tick();
        std::vector<GraphKind> kinds;
        for (const GraphKind kind : GraphKinds) {
            if (GetUpdateRect(WindowOf(kind), nullptr, FALSE)) kinds.push_back(kind);
        }
        return kinds;
    };
    const auto timer = [this](WPARAM id) { return [this, id] { SendMessageW(app->window, WM_TIMER, id, 0); }; };
    EXPECT_THAT(repainted(timer(CpuTimer)), ElementsAre(GraphKind::Cpu));
    EXPECT_THAT(repainted(timer(MemoryTimer)), IsEmpty());
    EXPECT_THAT(repainted(timer(NetworkTimer)), ElementsAre(GraphKind::Network));
    EXPECT_THAT(repainted([this] { app->RefreshDiskIcon(); }), ElementsAre(GraphKind::Disk));
    EXPECT_THAT(repainted([this] { app->GraphClicked(GraphKind::Disk); }), ElementsAre(GraphKind::Disk));
}

TEST_F(TrayCommandsTest, NoGraphIsLeftAfterTheEnd) {
    app->settings.cpu.graph = true;
    Start();
    DestroyWindow(app->window);
    for (const auto& graph : app->graphs)
        EXPECT_FALSE(graph);
    // A late message is harmless.
    app->RecoverGraphs();
    SendMessageW(app->window, WM_DISPLAYCHANGE, 0, 0);
}

}  // namespace
}  // namespace kestrane
