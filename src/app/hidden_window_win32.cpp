#include "app/hidden_window_win32.h"

#include "app/app_win32.h"
#include "app/timers.h"
#include "tray/promotion_win32.h"

namespace kestrane {
namespace {

App* AppOf(HWND window) {
    return reinterpret_cast<App*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

/// Not passed on to DefWindowProcW: the window is never shown, so its title and frame do not matter. A window that
/// cannot find its `App` is none.
LRESULT BindApp(HWND window, LPARAM lParam) {
    const auto* create = reinterpret_cast<const CREATESTRUCTW*>(lParam);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(create->lpCreateParams));
    return AppOf(window) == create->lpCreateParams ? TRUE : FALSE;
}

/// UIPI would otherwise block messages from the shell, which runs unelevated, if this program is elevated. If it is
/// not, they pass anyway, so a failure does not matter.
void LetTaskbarCreatedThrough(HWND window, UINT message) {
    ChangeWindowMessageFilterEx(window, message, MSGFLT_ALLOW, nullptr);
}

void OnTimer(App& app, WPARAM id) {
    switch (id) {
        case CpuTimer:
            app.OnCpuTick();
            break;
        case PromotionTimer:
            KillTimer(app.window, PromotionTimer);
            PromoteIcons();
            break;
        case MemoryTimer:
            app.OnMemoryTick();
            break;
        case NetworkTimer:
            app.OnNetworkTick();
            break;
        case DiskTimer:
            app.OnDiskTick();
            break;
        default:
            break;
    }
}

/// Handles the messages that need `App`; false if DefWindowProcW must still process the message.
bool HandleForApp(App& app, UINT message, WPARAM wParam, LPARAM lParam) {
    // The shell sends its messages, so they can still arrive while shutdown waits for it to remove the icons.
    if (app.shuttingDown) return false;
    switch (message) {
        case WM_TIMER:
            OnTimer(app, wParam);
            return true;
        case WM_SETTINGCHANGE:
        case WM_DISPLAYCHANGE:
            app.RecoverGraphs();
            return false;
        case WM_HOTKEY:
            if (wParam == GraphHotkeyId && app.settings.show[IconPosition(GraphKind::Network)]) {
                app.ToggleGraph(GraphKind::Network);
            }
            return true;
        case WM_TRAY_NOTIFY:
            app.OnTrayNotify(wParam, lParam);
            return true;
        case WM_UPDATE_STATE:
            app.OnUpdateState();
            return true;
        case WM_DPICHANGED:
            app.RefreshAllIcons();
            return true;
        default:
            break;
    }
    if (message != WM_NULL && message == app.taskbarCreatedMessage && app.trayIcons) {
        app.OnTaskbarCreated();
        return true;
    }
    return false;
}

}  // namespace

LRESULT CALLBACK HiddenWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    App* app = AppOf(window);
    switch (message) {
        case WM_NCCREATE:
            return BindApp(window, lParam);
        case WM_CREATE:
            if (app == nullptr) return 0;
            LetTaskbarCreatedThrough(window, app->taskbarCreatedMessage);
            app->OnCreate(window);
            return 0;
        case WM_DESTROY:
            OnDestroy(window, app);
            return 0;
        case WM_QUERYENDSESSION:
            return TRUE;  // the program never objects
        case WM_ENDSESSION:
            if (wParam != 0 && app != nullptr && app->trayIcons) app->HeldIcons()->RemoveAll();
            return 0;
        default:
            break;
    }
    if (app != nullptr && HandleForApp(*app, message, wParam, lParam)) return 0;
    return DefWindowProcW(window, message, wParam, lParam);
}

bool CreateHiddenWindow(App& app) {
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = HiddenWindowProc;
    windowClass.hInstance = app.instance;
    windowClass.lpszClassName = HiddenWindowClass;
    if (RegisterClassExW(&windowClass) == 0) return false;
    return CreateWindowExW(WS_EX_TOOLWINDOW, HiddenWindowClass, HiddenWindowTitle, 0, 0, 0, 0, 0, nullptr, nullptr,
                           app.instance, &app) != nullptr;
}

}  // namespace kestrane
