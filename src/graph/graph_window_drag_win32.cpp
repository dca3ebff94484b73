// Dragging a graph window. The rectangle that the system proposes is replaced by one computed from the start of the
// drag, so snapping cannot accumulate errors.
//
// Every way into the system's modal move loop goes through WM_SYSCOMMAND, to which DefWindowProcW turns a press on the
// caption or a border. The place is saved only when that command returns, because a loop ended by Esc puts the window
// back after WM_EXITSIZEMOVE.
#include "graph/graph_window_win32.h"

#include <windows.h>

#include "base/geometry_win32.h"
#include "graph/placement.h"
#include "graph/snapping.h"

namespace kestrane {
namespace {

/// The key's current state: GetKeyState follows keyboard messages, and a window without the focus gets none.
bool IsAltDown() {
    return GetAsyncKeyState(VK_MENU) < 0;
}

/// Whether Esc is down according to the messages that this thread has read. A loop ended by Esc read that key last, so
/// even a short press is seen here; but its release may go to another program's window and never be seen.
bool HasReadEsc() {
    return GetKeyState(VK_ESCAPE) < 0;
}

}  // namespace

void GraphWindow::OnDragCommand(WPARAM wParam, LPARAM lParam) {
    const HWND window = hwnd_;
    const Rect before = WindowRect();
    const bool hadReadEsc = HasReadEsc();
    {
        const PlaceChange drag(*this);
        // Returns when the button is released; the program may have ended meanwhile.
        DefWindowProcW(window, WM_SYSCOMMAND, wParam, lParam);
        if (Of(window) != this) return;
        // On Esc the system restores only what it has moved itself, and a window that comes back from a monitor of
        // another DPI has another size.
        if (HasReadEsc() && !hadReadEsc) PlaceAt(before);
    }
    SaveIfMoved(before);
    RecoverIfOffScreen();  // Esc may have put it back on a monitor that is now gone
}

void GraphWindow::OnEnterSizeMove() {
    inSizeMove_ = true;
    placeBeforeDrag_ = WindowRect();
    BeginDragHere();
    SetHover(false);
}

void GraphWindow::BeginDragHere() {
    GetCursorPos(&dragStartCursor_);
    dragStartRect_ = WindowRect();
}

void GraphWindow::OnExitSizeMove() {
    inSizeMove_ = false;
    SaveIfMoved(placeBeforeDrag_);  // for programs that move windows with their own loop
}

std::vector<Rect> GraphWindow::OtherShownRects() const {
    std::vector<Rect> rects;
    for (const GraphWindow* other : allGraphWindows) {
        if (other != this && other->IsShown()) rects.push_back(other->WindowRect());
    }
    return rects;
}

/// The window is moved here too: for a window that never has the focus, the system's loop shows the move only at its
/// end. A move to a monitor of another DPI resizes it (WM_DPICHANGED), and then the system must take the actual
/// rectangle.
void GraphWindow::OnDragStep(RECT& rect, std::uint32_t edges, bool isMove) {
    const Rect dragged = DraggedRect(rect, edges, isMove);
    const UINT dpi = GetDpiForWindow(hwnd_);
    MoveTo(dragged);
    rect = ToPlatform(GetDpiForWindow(hwnd_) == dpi ? dragged : WindowRect());
}

Rect GraphWindow::DraggedRect(const RECT& proposed, std::uint32_t edges, bool isMove) const {
    POINT cursor = dragStartCursor_;
    GetCursorPos(&cursor);
    const std::int32_t dx = SubtractSaturated(cursor.x, dragStartCursor_.x);
    const std::int32_t dy = SubtractSaturated(cursor.y, dragStartCursor_.y);
    const std::int32_t minWidth = Scaled(GraphMinWidth);
    const std::int32_t minHeight = Scaled(GraphMinHeight);
    Rect dragged =
        isMove ? MovedRect(dragStartRect_, dx, dy) : SizedRect(dragStartRect_, edges, dx, dy, minWidth, minHeight);
    if (!IsAltDown()) {
        std::vector<std::int32_t> xs;
        std::vector<std::int32_t> ys;
        const Rect workArea = WorkAreaOf(MonitorFromRect(&proposed, MONITOR_DEFAULTTONEAREST));
        CollectSnapEdges(OtherShownRects(), workArea, xs, ys);
        const std::int32_t distance = Scaled(SnapDistance);
        dragged = isMove ? SnapMovedRect(dragged, xs, ys, distance)
                         : SnapSizedRect(dragged, edges, xs, ys, distance, minWidth, minHeight);
    }
    return dragged;
}

}  // namespace kestrane
