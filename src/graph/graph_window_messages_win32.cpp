// The window procedure of a graph.
#include "graph/graph_window_win32.h"

#include <windows.h>

#include <utility>

#include "base/callback_win32.h"
#include "base/geometry_win32.h"
#include "base/handles_win32.h"
#include "graph/graph_painter_win32.h"
#include "graph/placement.h"
#include "graph/snapping.h"

namespace kestrane {
namespace {

constexpr LONG MinPaintSize = 3;

/// Whether a system command moves or sizes the window. Its low four bits are reserved for the system.
bool IsDragCommand(WPARAM command) {
    const WPARAM kind = command & 0xFFF0;
    return kind == SC_MOVE || kind == SC_SIZE;
}

}  // namespace

GraphWindow* GraphWindow::Of(HWND window) {
    return reinterpret_cast<GraphWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

LRESULT CALLBACK GraphWindow::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (message == WM_NCCREATE) {
        auto* graph = static_cast<GraphWindow*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(graph));
        if (Of(window) != graph) return FALSE;  // it would not be told of its window's end
        graph->hwnd_ = window;
    }
    GraphWindow* graph = Of(window);
    return graph != nullptr ? Answer(graph->OnMessage(message, wParam, lParam))
                            : DefWindowProcW(window, message, wParam, lParam);
}

LRESULT GraphWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    const HWND window = hwnd_;
    switch (message) {
        case WM_SIZE:
            InvalidateRect(window, nullptr, FALSE);
            return 0;
        case WM_PAINT:
            OnPaint();
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_MOUSEACTIVATE:
            return MA_NOACTIVATE;
        case WM_GETMINMAXINFO:
            OnGetMinMaxInfo(*reinterpret_cast<MINMAXINFO*>(lParam));
            return 0;
        case WM_NCCALCSIZE:
            // No frame at all: the client area is the whole window.
            if (wParam != 0) return 0;
            break;
        case WM_NCHITTEST:
            return OnHitTest(PointFromMessage(lParam));
        case WM_NCMOUSEMOVE:
            OnMouseMove(wParam, PointFromMessage(lParam));
            break;
        case WM_NCMOUSELEAVE:
            trackingMouse_ = false;
            SetHover(false);
            return 0;
        case WM_NCLBUTTONDOWN:
            if (wParam != HTCAPTION) break;
            OnCaptionPress(wParam, lParam);
            return 0;
        case WM_NCLBUTTONDBLCLK:
            // The second of two quick presses is one like the first: there is nothing to maximise.
            return OnMessage(WM_NCLBUTTONDOWN, wParam, lParam);
        case WM_NCRBUTTONDOWN:
            // DefWindowProcW may wait for the release here and consume it: Wine does.
            return 0;
        case WM_NCRBUTTONUP:
            ShowMenu(PointFromMessage(lParam));
            return 0;
        case WM_CONTEXTMENU:
            OnContextMenu(lParam);
            return 0;
        case WM_SYSCOMMAND:
            if (!IsDragCommand(wParam)) break;
            OnDragCommand(wParam, lParam);
            return 0;
        case WM_ENTERSIZEMOVE:
            OnEnterSizeMove();
            break;
        case WM_MOVING:
            clickPending_ = false;
            OnDragStep(*reinterpret_cast<RECT*>(lParam), 0, true);
            return 1;
        case WM_SIZING:
            OnDragStep(*reinterpret_cast<RECT*>(lParam), ResizeEdgesFromSizing(wParam), false);
            return 1;
        case WM_EXITSIZEMOVE:
            OnExitSizeMove();
            return 0;
        case WM_DPICHANGED:
            OnDpiChanged(*reinterpret_cast<const RECT*>(lParam));
            return 0;
        case WM_NCDESTROY:
            SetWindowLongPtrW(window, GWLP_USERDATA, 0);
            hwnd_ = nullptr;
            // Anything in progress ends with this window; another may be created later.
            inSizeMove_ = false;
            placeChanges_ = 0;
            trackingMouse_ = false;
            hover_ = {};
            break;
        default:
            break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

void GraphWindow::OnPaint() {
    static const GraphSeries emptySeries;
    const WindowPaint paint(hwnd_);
    RECT client = {};
    GetClientRect(hwnd_, &client);
    if (client.right >= MinPaintSize && client.bottom >= MinPaintSize) {
        PaintGraph(paint.Dc(), client.right, client.bottom, kind_, *settings_,
                   source_ != nullptr ? *source_ : emptySeries, GetDpiForWindow(hwnd_), hover_);
    }
}

void GraphWindow::OnGetMinMaxInfo(MINMAXINFO& info) const {
    info.ptMinTrackSize = {Scaled(GraphMinWidth), Scaled(GraphMinHeight)};
}

LRESULT GraphWindow::OnHitTest(const Point& screenPoint) const {
    if (Settings().pinned) return HTCLIENT;
    return HitTestGraph(WindowRect(), screenPoint, Scaled(GraphBorderWidth));
}

void GraphWindow::OnMouseMove(WPARAM hitTest, const Point& screenPoint) {
    if (!trackingMouse_) {
        TRACKMOUSEEVENT request = {sizeof request, TME_LEAVE | TME_NONCLIENT, hwnd_, 0};
        trackingMouse_ = TrackMouseEvent(&request) != FALSE;
    }
    SetHover(hitTest == HTCAPTION, screenPoint);
}

void GraphWindow::OnCaptionPress(WPARAM wParam, LPARAM lParam) {
    const HWND window = hwnd_;
    clickPending_ = true;
    // The system's modal move loop: returns when the button is released; the program may have ended meanwhile.
    DefWindowProcW(window, WM_NCLBUTTONDOWN, wParam, lParam);
    if (Of(window) != this) return;
    const bool clicked = std::exchange(clickPending_, false);
    if (clicked && !Settings().pinned) host_->GraphClicked(kind_);
}

void GraphWindow::OnContextMenu(LPARAM lParam) {
    Point point = PointFromMessage(lParam);
    if (LOWORD(lParam) == 0xFFFF && HIWORD(lParam) == 0xFFFF) {  // the menu key
        POINT cursor = {};
        GetCursorPos(&cursor);
        point = FromPlatform(cursor);
    }
    ShowMenu(point);
}

/// The menu can end the program, and this window with it: touch nothing afterwards.
void GraphWindow::ShowMenu(const Point& screenPoint) {
    SetHover(false);
    host_->ShowGraphMenu(kind_, screenPoint);
}

void GraphWindow::OnDpiChanged(const RECT& suggested) {
    const Rect before = WindowRect();
    MoveTo(FromPlatform(suggested));
    Invalidate();
    if (inSizeMove_) BeginDragHere();  // otherwise the next step would start from the old size
    SaveIfMoved(before);
}

void GraphWindow::SetHover(bool inside, const Point& screenPoint) {
    HoverState state;
    if (inside && !Settings().pinned && !inSizeMove_) {
        POINT point = ToPlatform(screenPoint);
        ScreenToClient(hwnd_, &point);
        state = {true, point.x, point.y};
    }
    if (state == hover_) return;
    hover_ = state;
    InvalidateRect(hwnd_, nullptr, FALSE);
}

}  // namespace kestrane
