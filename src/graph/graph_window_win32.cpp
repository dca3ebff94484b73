// Lifetime and public interface of a graph window.
#include "graph/graph_window_win32.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/geometry_win32.h"
#include "graph/shell_surface.h"

namespace kestrane {
namespace {

ShellSurface ShellSurfaceOf(HWND window) {
    wchar_t className[257] = {};  // the longest class name and its terminator
    const int length = GetClassNameW(window, className, static_cast<int>(std::size(className)));
    DWORD process = 0;
    DWORD shellProcess = 0;
    GetWindowThreadProcessId(window, &process);
    GetWindowThreadProcessId(GetShellWindow(), &shellProcess);
    const bool ofShell = process != 0 && process == shellProcess;
    const bool framed = GetAncestor(window, GA_PARENT) != GetDesktopWindow();
    return ShellSurfaceOf(ForegroundWindow{{className, static_cast<std::size_t>(length)}, ofShell, framed});
}

}  // namespace

GraphWindow::GraphWindow(HINSTANCE instance, AppSettings* settings, GraphWindowHost* host, GraphKind kind)
    : instance_(instance), settings_(settings), host_(host), kind_(kind) {
    allGraphWindows.push_back(this);
    if (foregroundHook != nullptr) return;
    // Windows of this process are skipped, so that a dialog or another graph does not count as covering one.
    foregroundHook = SetWinEventHook(EVENT_SYSTEM_FOREGROUND, EVENT_SYSTEM_FOREGROUND, nullptr, OnForegroundEvent, 0, 0,
                                     WINEVENT_OUTOFCONTEXT | WINEVENT_SKIPOWNPROCESS);
}

GraphWindow::~GraphWindow() {
    std::erase(allGraphWindows, this);
    std::erase(keptInFront, this);
    if (allGraphWindows.empty() && foregroundHook != nullptr) {
        UnhookWinEvent(foregroundHook);
        foregroundHook = nullptr;
    }
    if (hwnd_ != nullptr) DestroyWindow(hwnd_);
}

void GraphWindow::BindSource(const GraphSeries* source) {
    source_ = source;
    Invalidate();
}

void GraphWindow::SetShown(bool shown) {
    if (shown && hwnd_ == nullptr && !Create()) return;
    if (hwnd_ == nullptr) return;
    if (!shown) {
        hover_.active = false;
        ShowWindow(hwnd_, SW_HIDE);
        return;
    }
    if (!IsShown()) {
        ShowWindow(hwnd_, SW_SHOWNOACTIVATE);
        Raise();
    }
    Invalidate();
}

bool GraphWindow::IsShown() const {
    return hwnd_ != nullptr && IsWindowVisible(hwnd_) != FALSE;
}

void GraphWindow::Invalidate() {
    if (IsShown()) InvalidateRect(hwnd_, nullptr, FALSE);
}

void GraphWindow::Raise() {
    constexpr UINT flags = SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE;
    SetWindowPos(hwnd_, HWND_TOPMOST, 0, 0, 0, 0, flags);
    if (!Settings().pinned && !Settings().topmost) SetWindowPos(hwnd_, HWND_NOTOPMOST, 0, 0, 0, 0, flags);
    covered_ = false;
}

std::vector<GraphWindow*> GraphWindow::InFrontOf(HWND window) {
    struct Walk {
        HWND end;
        std::vector<GraphWindow*> found;
    };
    Walk walk{window, {}};
    const auto visit = [](HWND next, LPARAM param) noexcept -> BOOL {
        auto& [end, found] = *reinterpret_cast<Walk*>(param);
        if (next == end) return FALSE;
        std::ranges::copy_if(allGraphWindows, std::back_inserter(found),
                             [next](const GraphWindow* graph) { return graph->hwnd_ == next && graph->IsShown(); });
        return TRUE;
    };
    EnumWindows(visit, reinterpret_cast<LPARAM>(&walk));
    return std::move(walk.found);
}

void GraphWindow::RaiseKept() {
    // From the back to the front, so that they keep their order.
    std::for_each(keptInFront.rbegin(), keptInFront.rend(), [](GraphWindow* graph) {
        if (graph->IsShown()) graph->Raise();
    });
}

/// The window comes to the front at once, or only when its own program looks at what has come for it. So the graphs are
/// raised now, and again when the system tells of the new foreground. A surface of the shell covers none.
void GraphWindow::GiveForeground(HWND window) {
    const bool covers = ShellSurfaceOf(window) == ShellSurface::None;
    keptInFront = covers ? InFrontOf(window) : std::vector<GraphWindow*>();
    if (!SetForegroundWindow(window)) return;
    foregroundGiven = window;
    RaiseKept();
}

void GraphWindow::RecoverIfOffScreen() {
    if (hwnd_ != nullptr && EnsureOnScreen()) host_->GraphStateChanged(kind_);
}

void CALLBACK GraphWindow::OnForegroundEvent(HWINEVENTHOOK, DWORD, HWND window, LONG object, LONG, DWORD,
                                             DWORD) noexcept {
    RECT rect = {};
    if (object != OBJID_WINDOW || window == nullptr) return;
    if (window == std::exchange(foregroundGiven, nullptr)) {
        RaiseKept();
        return;
    }
    // When another program's foreground window goes, its thread may give the foreground to a graph: such an event comes
    // in spite of WINEVENT_SKIPOWNPROCESS, which goes by the thread.
    if (std::ranges::any_of(allGraphWindows, [window](const GraphWindow* graph) { return graph->hwnd_ == window; }))
        return;
    if (!IsWindowVisible(window) || IsIconic(window) || !GetWindowRect(window, &rect)) return;
    const ShellSurface surface = ShellSurfaceOf(window);
    if (surface == ShellSurface::Other) return;
    // The desktop covers what stands behind it, which is nothing while it stands behind all windows.
    std::vector<GraphWindow*> inFront;
    if (surface == ShellSurface::Desktop) inFront = InFrontOf(window);
    for (GraphWindow* graph : allGraphWindows) {
        if (!graph->IsShown() || std::ranges::find(inFront, graph) != inFront.end()) continue;
        const RECT own = ToPlatform(graph->WindowRect());
        RECT common = {};
        if (IntersectRect(&common, &own, &rect)) graph->covered_ = true;
    }
}

void GraphWindow::MoveTo(const Rect& rect) {
    SetWindowPos(hwnd_, nullptr, rect.left, rect.top, RectWidth(rect), RectHeight(rect), SWP_NOZORDER | SWP_NOACTIVATE);
}

std::int32_t GraphWindow::Scaled(std::int32_t value) const {
    return ScaleForDpi(value, hwnd_ != nullptr ? GetDpiForWindow(hwnd_) : GetDpiForSystem());
}

Rect GraphWindow::WindowRect() const {
    RECT rect = {};
    GetWindowRect(hwnd_, &rect);
    return FromPlatform(rect);
}

}  // namespace kestrane
