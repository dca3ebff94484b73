// Creation, window styles and placement of a graph window.
#include "graph/graph_window_win32.h"

#include <windows.h>

#include <shellapi.h>

#include <algorithm>

#include "base/debug_log_win32.h"
#include "base/geometry_win32.h"
#include "graph/placement.h"
#include "text/translation.h"

namespace kestrane {
namespace {

constexpr wchar_t ClassName[] = L"kestrane.graph";

/// The taskbar's screen edge and centre. If unknown, the bottom of the primary monitor.
struct TaskbarPlace {
    std::uint32_t edge = TaskbarBottom;
    Point center;
};

TaskbarPlace ReadTaskbarPlace() {
    APPBARDATA data = {};
    data.cbSize = sizeof data;
    if (SHAppBarMessage(ABM_GETTASKBARPOS, &data) == 0) return {};
    return {std::min<std::uint32_t>(data.uEdge, TaskbarBottom), RectCenter(FromPlatform(data.rc))};
}

/// Moves the window, twice if it ends up on a monitor of another DPI, because the system resizes it on the way
/// (WM_DPICHANGED).
template <typename Move>
void MoveAcrossMonitors(HWND window, const Move& move) {
    const UINT dpi = GetDpiForWindow(window);
    move();
    if (GetDpiForWindow(window) != dpi) move();
}

}  // namespace

bool GraphWindow::RegisterWindowClass() const {
    WNDCLASSEXW windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    if (GetClassInfoExW(instance_, ClassName, &windowClass)) return true;
    windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = WindowProc;
    windowClass.hInstance = instance_;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.lpszClassName = ClassName;
    return RegisterClassExW(&windowClass) != 0;
}

const wchar_t* GraphWindow::Title() const {
    if (kind_ == GraphKind::Cpu) return L"kestrane - CPU";
    return kind_ == GraphKind::Disk ? Tr(L"kestrane - disco") : Tr(L"kestrane - red");
}

bool GraphWindow::Create() {
    if (!RegisterWindowClass()) {
        LogDebug(L"kestrane: no se pudo registrar la clase de la grafica\n");
        return false;
    }
    // WM_NCCREATE sets hwnd_ before CreateWindowExW returns.
    const HWND created = CreateWindowExW(WS_EX_NOACTIVATE | WS_EX_LAYERED | WS_EX_TOOLWINDOW, ClassName, Title(),
                                         WS_POPUP | WS_THICKFRAME, 0, 0, GraphDefaultWidth, GraphDefaultHeight, nullptr,
                                         nullptr, instance_, this);
    if (created == nullptr) {
        LogDebug(L"kestrane: no se pudo crear la ventana de la grafica\n");
        return false;
    }
    const PlaceChange placing(*this);
    const GraphSettings& stored = Settings();
    if (stored.width >= 1) {
        PlaceAt(RectOf(stored.x, stored.y, stored.width, stored.height));
        EnsureOnScreen();
    } else {
        PlaceAtTaskbar();
    }
    if (Of(created) != this) return false;
    ApplyStyle();
    return true;
}

void GraphWindow::ApplyStyle() {
    if (hwnd_ == nullptr) return;
    const GraphSettings& settings = Settings();
    const std::int32_t opacity = std::clamp(settings.opacity, 10, 100);
    SetLayeredWindowAttributes(hwnd_, 0, static_cast<BYTE>(opacity * 255 / 100), LWA_ALPHA);

    const LONG_PTR style = GetWindowLongPtrW(hwnd_, GWL_EXSTYLE);
    constexpr LONG_PTR clickThrough = WS_EX_TRANSPARENT;
    SetWindowLongPtrW(hwnd_, GWL_EXSTYLE, settings.pinned ? style | clickThrough : style & ~clickThrough);
    SetWindowPos(hwnd_, settings.pinned || settings.topmost ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
                 SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    if (settings.pinned) hover_.active = false;
    Invalidate();
}

bool GraphWindow::PlaceAtTaskbar() {
    const HWND window = hwnd_;
    const PlaceChange placing(*this);
    const TaskbarPlace taskbar = ReadTaskbarPlace();
    if (Of(window) != this) return false;
    const Rect workArea = WorkAreaOf(MonitorFromPoint(ToPlatform(taskbar.center), MONITOR_DEFAULTTOPRIMARY));
    MoveAcrossMonitors(hwnd_, [&] {
        MoveTo(StackedGraphRect(taskbar.edge, workArea, Scaled(GraphDefaultWidth), Scaled(GraphDefaultHeight), kind_));
    });
    return true;
}

void GraphWindow::PlaceAt(const Rect& rect) {
    MoveAcrossMonitors(hwnd_, [&] { MoveTo(rect); });
}

bool GraphWindow::EnsureOnScreen() {
    const RECT rect = ToPlatform(WindowRect());
    if (MonitorFromRect(&rect, MONITOR_DEFAULTTONULL) != nullptr) return false;
    if (!PlaceAtTaskbar()) return false;
    StoreRect();
    return true;
}

void GraphWindow::StoreRect() {
    RECT window = {};
    if (!GetWindowRect(hwnd_, &window)) return;
    const Rect rect = FromPlatform(window);
    GraphSettings& settings = Settings();
    settings.x = rect.left;
    settings.y = rect.top;
    settings.width = RectWidth(rect);
    settings.height = RectHeight(rect);
}

void GraphWindow::SaveIfMoved(const Rect& from) {
    if (inSizeMove_ || placeChanges_ > 0 || WindowRect() == from) return;
    StoreRect();
    host_->GraphStateChanged(kind_);
}

}  // namespace kestrane
