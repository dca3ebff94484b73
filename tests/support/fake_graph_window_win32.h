#pragma once
// Fakes of a graph window's calls: passed on to the system, recorded, and answered differently where a test asks for
// it. Painting is replaced by a record of its arguments. Include in one file of a test program only.
#include <windows.h>

#include <shellapi.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/geometry_win32.h"
#include "graph/graph_painter_win32.h"
#include "graph/graph_window_win32.h"
#include "support/geometry_print.h"
#include "support/real_call_win32.h"

namespace kestrane {

struct CreateCall {
    DWORD exStyle, style;
    std::wstring className, title;
    Rect rect;  // as x, y, width, height
    HWND parent;
    HMENU menu;
    HINSTANCE instance;
};

struct PosCall {
    HWND window, after;
    Rect rect;  // as x, y, width, height
    UINT flags;
};

struct PaintCall {
    std::int32_t width, height;
    GraphKind kind;
    const AppSettings* settings;
    std::uint32_t periodMs;  // of the series
    std::uint32_t dpi;
    HoverState hover;
};

/// What the fake calls recorded, and how they respond.
struct World {
    bool classUnknown = false;  // GetClassInfoExW knows no class
    bool refuseClass = false;
    bool refuseWindow = false;
    UINT dpi = 96;
    std::optional<APPBARDATA> taskbar;   // none: the shell does not answer
    Rect workArea = {0, 0, 1920, 1040};  // of every monitor
    bool offScreen = false;              // no monitor shows the window
    std::optional<POINT> cursor;         // none: the real one
    bool altDown = false;
    bool escRead = false;  // Esc is the last key that this thread has read
    bool refuseTracking = false;
    bool refuseHook = false;
    HWND shellWindow = nullptr;
    std::function<void()> moveLoop;         // the system's modal move and resize loop
    std::function<void(HWND)> onMove;       // runs once, during a move or resize
    std::function<void()> whileShellAsked;  // runs during SHAppBarMessage
    std::vector<std::wstring> debugTexts;
    std::vector<WNDCLASSEXW> classes;
    std::vector<CreateCall> creations;
    std::vector<HWND> windows;
    std::vector<PosCall> positions;
    std::vector<int> showCommands;
    std::vector<BYTE> alphas;
    std::vector<PaintCall> paints;
    std::vector<POINT> monitorPoints;  // passed to MonitorFromPoint
    std::vector<DWORD> trackingFlags;
    int invalidations = 0;
    int hooks = 0, unhooks = 0;
    WINEVENTPROC hookProc = nullptr;
};
inline World world;

inline void WINAPI FakeOutputDebugStringW(LPCWSTR text) {
    world.debugTexts.emplace_back(text);
}

inline BOOL WINAPI FakeGetClassInfoExW(HINSTANCE instance, LPCWSTR name, LPWNDCLASSEXW info) {
    static const auto real = REAL(L"user32", GetClassInfoExW);
    return world.classUnknown ? FALSE : real(instance, name, info);
}

inline ATOM WINAPI FakeRegisterClassExW(const WNDCLASSEXW* info) {
    static const auto real = REAL(L"user32", RegisterClassExW);
    world.classes.push_back(*info);
    if (world.refuseClass) return 0;
    // The class lives as long as the process; a later test that registers it again finds it there.
    const ATOM atom = real(info);
    return atom != 0 || !world.classUnknown ? atom : ATOM{1};
}

inline HWND WINAPI FakeCreateWindowExW(DWORD exStyle, LPCWSTR className, LPCWSTR title, DWORD style, int x, int y,
                                       int width, int height, HWND parent, HMENU menu, HINSTANCE instance,
                                       LPVOID parameter) {
    static const auto real = REAL(L"user32", CreateWindowExW);
    world.creations.push_back({exStyle, style, className, title, {x, y, width, height}, parent, menu, instance});
    if (world.refuseWindow) return nullptr;
    const HWND window = real(exStyle, className, title, style, x, y, width, height, parent, menu, instance, parameter);
    world.windows.push_back(window);
    return window;
}

inline BOOL WINAPI FakeSetWindowPos(HWND window, HWND after, int x, int y, int width, int height, UINT flags) {
    static const auto real = REAL(L"user32", SetWindowPos);
    world.positions.push_back({window, after, {x, y, width, height}, flags});
    const BOOL done = real(window, after, x, y, width, height, flags);
    if (world.onMove) std::exchange(world.onMove, nullptr)(window);
    return done;
}

inline BOOL WINAPI FakeShowWindow(HWND window, int command) {
    static const auto real = REAL(L"user32", ShowWindow);
    world.showCommands.push_back(command);
    return real(window, command);
}

inline BOOL WINAPI FakeSetLayeredWindowAttributes(HWND window, COLORREF key, BYTE alpha, DWORD flags) {
    static const auto real = REAL(L"user32", SetLayeredWindowAttributes);
    EXPECT_EQ(key, 0U);
    EXPECT_EQ(flags, static_cast<DWORD>(LWA_ALPHA));
    world.alphas.push_back(alpha);
    return real(window, key, alpha, flags);
}

inline BOOL WINAPI FakeInvalidateRect(HWND window, const RECT* rect, BOOL erase) {
    static const auto real = REAL(L"user32", InvalidateRect);
    EXPECT_EQ(rect, nullptr);
    EXPECT_FALSE(erase);
    ++world.invalidations;
    return real(window, rect, erase);
}

inline UINT WINAPI FakeGetDpiForWindow(HWND) {
    return world.dpi;
}

inline UINT WINAPI FakeGetDpiForSystem() {
    return world.dpi;
}

inline UINT_PTR WINAPI FakeSHAppBarMessage(DWORD message, PAPPBARDATA data) {
    EXPECT_EQ(message, static_cast<DWORD>(ABM_GETTASKBARPOS));
    EXPECT_EQ(data->cbSize, sizeof(APPBARDATA));
    if (world.whileShellAsked) world.whileShellAsked();
    if (!world.taskbar) return 0;
    data->uEdge = world.taskbar->uEdge;
    data->rc = world.taskbar->rc;
    return 1;
}

inline HMONITOR WINAPI FakeMonitorFromPoint(POINT point, DWORD flags) {
    static const auto real = REAL(L"user32", MonitorFromPoint);
    EXPECT_EQ(flags, static_cast<DWORD>(MONITOR_DEFAULTTOPRIMARY));
    world.monitorPoints.push_back(point);
    return real(point, flags);
}

inline HMONITOR WINAPI FakeMonitorFromRect(const RECT* rect, DWORD flags) {
    static const auto real = REAL(L"user32", MonitorFromRect);
    if (flags == MONITOR_DEFAULTTONULL && world.offScreen) return nullptr;
    return real(rect, flags);
}

inline BOOL WINAPI FakeGetMonitorInfoW(HMONITOR, LPMONITORINFO info) {
    EXPECT_GE(info->cbSize, sizeof(MONITORINFO));
    info->rcWork = ToPlatform(world.workArea);
    info->rcMonitor = {-1, -1, -1, -1};
    return TRUE;
}

inline BOOL WINAPI FakeGetCursorPos(LPPOINT point) {
    static const auto real = REAL(L"user32", GetCursorPos);
    if (!world.cursor) return real(point);
    *point = *world.cursor;
    return TRUE;
}

inline SHORT WINAPI FakeGetAsyncKeyState(int key) {
    EXPECT_EQ(key, VK_MENU);
    return world.altDown ? static_cast<SHORT>(-32768) : SHORT{1};  // pressed since the last query, not down
}

inline SHORT WINAPI FakeGetKeyState(int key) {
    EXPECT_EQ(key, VK_ESCAPE);
    return world.escRead ? static_cast<SHORT>(-128) : SHORT{1};  // toggled, not down
}

inline BOOL WINAPI FakeTrackMouseEvent(LPTRACKMOUSEEVENT request) {
    EXPECT_EQ(request->cbSize, sizeof(TRACKMOUSEEVENT));
    world.trackingFlags.push_back(request->dwFlags);
    return !world.refuseTracking;
}

inline HWINEVENTHOOK WINAPI FakeSetWinEventHook(DWORD first, DWORD last, HMODULE module, WINEVENTPROC proc,
                                                DWORD process, DWORD thread, DWORD flags) {
    EXPECT_EQ(first, 3U);
    EXPECT_EQ(last, 3U);
    EXPECT_EQ(module, nullptr);
    EXPECT_EQ(process, 0U);
    EXPECT_EQ(thread, 0U);
    EXPECT_EQ(flags, 2U);
    ++world.hooks;
    world.hookProc = proc;
    if (world.refuseHook) return nullptr;
    return reinterpret_cast<HWINEVENTHOOK>(static_cast<std::uintptr_t>(0x5005));
}

inline BOOL WINAPI FakeUnhookWinEvent(HWINEVENTHOOK hook) {
    EXPECT_EQ(hook, reinterpret_cast<HWINEVENTHOOK>(static_cast<std::uintptr_t>(0x5005)));
    ++world.unhooks;
    return TRUE;
}

inline HWND WINAPI FakeGetShellWindow() {
    return world.shellWindow;
}

inline LRESULT WINAPI FakeDefWindowProcW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    static const auto real = REAL(L"user32", DefWindowProcW);
    if (message == WM_NCLBUTTONDOWN) {
        const WPARAM command = wParam == HTCAPTION ? SC_MOVE | HTCAPTION : SC_SIZE | (wParam - HTLEFT + WMSZ_LEFT);
        return SendMessageW(window, WM_SYSCOMMAND, command, lParam);
    }
    if (message != WM_SYSCOMMAND) return real(window, message, wParam, lParam);
    if (world.moveLoop) world.moveLoop();
    return 0;
}

/// Replaces the painter.
void PaintGraph(HDC hdc, std::int32_t width, std::int32_t height, GraphKind kind, const AppSettings& settings,
                const GraphSeries& series, std::uint32_t dpi, const HoverState& hover) {
    EXPECT_NE(hdc, nullptr);
    world.paints.push_back({width, height, kind, &settings, series.periodMs, dpi, hover});
}

struct Host : GraphWindowHost {
    void ShowGraphMenu(GraphKind kind, Point screenPoint) override {
        menus.emplace_back(kind, screenPoint);
        if (onMenu) onMenu();
    }
    void GraphClicked(GraphKind kind) override { clicks.push_back(kind); }
    void GraphStateChanged(GraphKind kind) override { changes.push_back(kind); }

    std::vector<std::pair<GraphKind, Point>> menus;
    std::vector<GraphKind> clicks;
    std::vector<GraphKind> changes;
    std::function<void()> onMenu;
};

/// The window moves to a monitor of 144 DPI, and the system suggests a size half as large again.
inline void CrossToLargerDpi(HWND window) {
    world.dpi = 144;
    RECT rect = {};
    GetWindowRect(window, &rect);
    rect.right += (rect.right - rect.left) / 2;
    rect.bottom += (rect.bottom - rect.top) / 2;
    SendMessageW(window, WM_DPICHANGED, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&rect));
}

/// Graphs with one settings record and one host, created on demand.
class GraphWindowTest : public testing::Test {
  protected:
    GraphWindowTest() { world = World{}; }

    GraphWindow& Graph(GraphKind kind) {
        auto& graph = graphs_[IndexOf(kind)];
        if (!graph) graph = std::make_unique<GraphWindow>(GetModuleHandleW(nullptr), &settings_, &host_, kind);
        return *graph;
    }

    /// Shows the graph at `place` and clears the record of the calls that took.
    HWND Show(GraphKind kind, const Rect& place = {100, 100, 590, 250}) {
        GraphSettings& stored = GraphSettingsOf(settings_, kind);
        stored.x = place.left;
        stored.y = place.top;
        stored.width = RectWidth(place);
        stored.height = RectHeight(place);
        stored.topmost = false;
        Graph(kind).SetShown(true);
        const HWND window = world.windows.back();
        world.positions.clear();
        world.showCommands.clear();
        world.alphas.clear();
        world.paints.clear();
        world.invalidations = 0;
        return window;
    }

    static Rect PlaceOf(HWND window) {
        RECT rect = {};
        GetWindowRect(window, &rect);
        return FromPlatform(rect);
    }

    Rect StoredRect(GraphKind kind) {
        const GraphSettings& stored = GraphSettingsOf(settings_, kind);
        return {stored.x, stored.y, stored.x + stored.width, stored.y + stored.height};
    }

    /// The hover state that a paint would get now.
    static HoverState HoverOf(HWND window) {
        SendMessageW(window, WM_PAINT, 0, 0);
        return world.paints.empty() ? HoverState{true, -1, -1} : world.paints.back().hover;
    }

    AppSettings settings_ = MakeDefaultSettings();
    Host host_;
    std::unique_ptr<GraphWindow> graphs_[GraphCount];
};

}  // namespace kestrane

extern "C" {
decltype(&OutputDebugStringW) __imp_OutputDebugStringW = &kestrane::FakeOutputDebugStringW;
decltype(&GetClassInfoExW) __imp_GetClassInfoExW = &kestrane::FakeGetClassInfoExW;
decltype(&RegisterClassExW) __imp_RegisterClassExW = &kestrane::FakeRegisterClassExW;
decltype(&CreateWindowExW) __imp_CreateWindowExW = &kestrane::FakeCreateWindowExW;
decltype(&SetWindowPos) __imp_SetWindowPos = &kestrane::FakeSetWindowPos;
decltype(&ShowWindow) __imp_ShowWindow = &kestrane::FakeShowWindow;
decltype(&SetLayeredWindowAttributes) __imp_SetLayeredWindowAttributes = &kestrane::FakeSetLayeredWindowAttributes;
decltype(&InvalidateRect) __imp_InvalidateRect = &kestrane::FakeInvalidateRect;
decltype(&GetDpiForWindow) __imp_GetDpiForWindow = &kestrane::FakeGetDpiForWindow;
decltype(&GetDpiForSystem) __imp_GetDpiForSystem = &kestrane::FakeGetDpiForSystem;
decltype(&SHAppBarMessage) __imp_SHAppBarMessage = &kestrane::FakeSHAppBarMessage;
decltype(&MonitorFromPoint) __imp_MonitorFromPoint = &kestrane::FakeMonitorFromPoint;
decltype(&MonitorFromRect) __imp_MonitorFromRect = &kestrane::FakeMonitorFromRect;
decltype(&GetMonitorInfoW) __imp_GetMonitorInfoW = &kestrane::FakeGetMonitorInfoW;
decltype(&GetCursorPos) __imp_GetCursorPos = &kestrane::FakeGetCursorPos;
decltype(&GetAsyncKeyState) __imp_GetAsyncKeyState = &kestrane::FakeGetAsyncKeyState;
decltype(&GetKeyState) __imp_GetKeyState = &kestrane::FakeGetKeyState;
decltype(&TrackMouseEvent) __imp_TrackMouseEvent = &kestrane::FakeTrackMouseEvent;
decltype(&SetWinEventHook) __imp_SetWinEventHook = &kestrane::FakeSetWinEventHook;
decltype(&UnhookWinEvent) __imp_UnhookWinEvent = &kestrane::FakeUnhookWinEvent;
decltype(&GetShellWindow) __imp_GetShellWindow = &kestrane::FakeGetShellWindow;
decltype(&DefWindowProcW) __imp_DefWindowProcW = &kestrane::FakeDefWindowProcW;
}
