// Dragging a graph window. The rectangle that the system proposes is replaced by one that is reckoned from the start of
// the drag, so snapping can never add up an error.
#include <windows.h>

#include "base/geometry_win32.h"
#include "graph/graph_window_win32.h"
#include "graph/placement.h"
#include "graph/snapping.h"

namespace kestrane {
namespace {

/// As the key is now: a window without the focus gets no keyboard messages, from which GetKeyState would know.
bool IsAltDown() {
    return GetAsyncKeyState(VK_MENU) < 0;
}

}  // namespace

void GraphWindow::OnEnterSizeMove() {
    inSizeMove_ = true;
    GetCursorPos(&dragStartCursor_);
    dragStartRect_ = WindowRect();
    SetHover(false);
}

void GraphWindow::OnExitSizeMove() {
    inSizeMove_ = false;
    StoreRect();
    host_->GraphStateChanged(kind_);
}

std::vector<Rect> GraphWindow::OtherShownRects() const {
    std::vector<Rect> rects;
    for (const GraphWindow* other : allGraphWindows) {
        if (other != this && other->IsShown()) rects.push_back(other->WindowRect());
    }
    return rects;
}

void GraphWindow::AdjustDragRect(RECT& rect, std::uint32_t edges, bool isMove) const {
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
        const Rect workArea = WorkAreaOf(MonitorFromRect(&rect, MONITOR_DEFAULTTONEAREST));
        CollectSnapEdges(OtherShownRects(), workArea, xs, ys);
        const std::int32_t distance = Scaled(SnapDistance);
        dragged = isMove ? SnapMovedRect(dragged, xs, ys, distance)
                         : SnapSizedRect(dragged, edges, xs, ys, distance, minWidth, minHeight);
    }
    rect = ToPlatform(dragged);
}

}  // namespace kestrane
