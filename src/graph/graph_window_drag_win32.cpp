// Dragging a graph window. The rectangle that the system proposes is replaced by one that is computed from the start of
// the drag, so snapping can never add up an error.
//
// All ways into the system's loop go through WM_SYSCOMMAND: DefWindowProcW makes one of a press on the caption or on a
// border. When that command is done, what stands is what the user left, and only then is it saved: a loop that Esc ends
// puts the window back after WM_EXITSIZEMOVE.
#include "graph/graph_window_win32.h"

#include <windows.h>

#include "base/geometry_win32.h"
#include "graph/placement.h"
#include "graph/snapping.h"

namespace kestrane {
namespace {

/// As the key is now: a window without the focus gets no keyboard messages, from which GetKeyState would know.
bool IsAltDown() {
    return GetAsyncKeyState(VK_MENU) < 0;
}

/// Whether Esc is down, as far as this thread has read. A loop that Esc ends has read that key and nothing since, so it
/// is seen here however short it was; but its release may go to another program's window, and never be seen.
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
        // It returns when the button is released, and the program may have ended in it.
        DefWindowProcW(window, WM_SYSCOMMAND, wParam, lParam);
        if (Of(window) != this) return;
        // Where the system has moved nothing itself, it puts nothing back; and from a monitor of another DPI the window
        // comes back in another size.
        if (HasReadEsc() && !hadReadEsc) PlaceAt(before.left, before.top, RectWidth(before), RectHeight(before));
    }
    SaveIfMoved(before);
    RecoverIfOffScreen();  // a monitor may have gone meanwhile, and Esc leads back to it
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
    SaveIfMoved(placeBeforeDrag_);  // for programs that move windows by a loop of their own
}

std::vector<Rect> GraphWindow::OtherShownRects() const {
    std::vector<Rect> rects;
    for (const GraphWindow* other : allGraphWindows) {
        if (other != this && other->IsShown()) rects.push_back(other->WindowRect());
    }
    return rects;
}

/// The window is moved here too: the system's loop shows a window that never has the focus only at its end. A move to a
/// monitor of another DPI sizes it anew (WM_DPICHANGED), and then the system is to take what stands.
void GraphWindow::OnDragStep(RECT& rect, std::uint32_t edges, bool isMove) {
    const Rect dragged = DraggedRect(rect, edges, isMove);
    const UINT dpi = GetDpiForWindow(hwnd_);
    MoveTo(dragged.left, dragged.top, RectWidth(dragged), RectHeight(dragged));
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
