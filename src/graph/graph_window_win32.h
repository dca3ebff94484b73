#pragma once
// A small borderless window that shows one graph. It never takes the focus, can be dragged anywhere on its surface,
// snaps to the work area and to the other graphs, and keeps its place in the settings.
//
// Unpinned, it can be hovered, dragged and resized. Pinned, it is a topmost overlay that lets the mouse through, so it
// can be neither moved nor hovered. A graph never hides by itself.
//
// An unpinned window is all non-client area to the system (a caption with sizing borders), so its mouse messages are
// the WM_NC ones, and the system's own modal loop moves and sizes it. UI thread only.
#include <windows.h>

#include <cstdint>
#include <vector>

#include "base/geometry.h"
#include "graph/graph_window_host.h"
#include "graph/hover.h"
#include "history/series.h"
#include "settings/app_settings.h"

namespace kestrane {

class GraphWindow {
  public:
    /// The HWND is created when the graph is first shown. `settings` and `host` must outlive the object.
    GraphWindow(HINSTANCE instance, AppSettings* settings, GraphWindowHost* host, GraphKind kind);
    GraphWindow(const GraphWindow&) = delete;
    GraphWindow& operator=(const GraphWindow&) = delete;
    ~GraphWindow();

    /// The data to paint from now on; null paints an empty graph.
    void BindSource(const GraphSeries* source);
    /// Applies opacity, pinned and topmost from the settings. Does nothing before the HWND exists.
    void ApplyStyle();
    /// If the HWND cannot be created, the graph stays closed and the next call tries again.
    void SetShown(bool shown);
    bool IsShown() const;
    /// Repaints soon, if shown.
    void Invalidate();
    /// Brings the window above all others without taking the focus; it stays topmost only if the settings say so.
    void Raise();
    /// Another program's window has come to the foreground over this one since it was last raised. The shell's own
    /// surfaces do not count: they are gone by the time it matters.
    bool IsCovered() const { return covered_; }
    /// Gives the foreground to a window. That brings it to the front too; the graphs that stand before it stay there.
    static void GiveForeground(HWND window);
    /// If no monitor shows any part of the window, moves it back to the taskbar and saves that.
    void RecoverIfOffScreen();

  private:
    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    /// The object of a window; null once destroyed.
    static GraphWindow* Of(HWND window);
    static void CALLBACK OnForegroundEvent(HWINEVENTHOOK hook, DWORD event, HWND window, LONG object, LONG child,
                                           DWORD thread, DWORD time) noexcept;

    /// The shown graphs that stand before a window, the foremost first.
    static std::vector<GraphWindow*> InFrontOf(HWND window);
    static void RaiseKept();

    class PlaceChange;

    // Creation and placement. Asking the shell for the taskbar's position dispatches messages, which can end the
    // program: after false, this object may be gone.
    bool RegisterWindowClass() const;
    const wchar_t* Title() const;
    bool Create();
    bool PlaceAtTaskbar();
    /// True if the window had to be moved.
    bool EnsureOnScreen();
    void MoveTo(const Rect& rect);
    /// The same, but also to a monitor of another DPI.
    void PlaceAt(const Rect& rect);
    void StoreRect();
    /// Stores and saves the place if it differs from `from`; does nothing while it is still changing.
    void SaveIfMoved(const Rect& from);

    // Messages.
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
    void OnPaint();
    void OnGetMinMaxInfo(MINMAXINFO& info) const;
    LRESULT OnHitTest(const Point& screenPoint) const;
    void OnMouseMove(WPARAM hitTest, const Point& screenPoint);
    void OnCaptionPress(WPARAM wParam, LPARAM lParam);
    void OnContextMenu(LPARAM lParam);
    void ShowMenu(const Point& screenPoint);
    void OnDpiChanged(const RECT& suggested);
    void SetHover(bool inside, const Point& screenPoint = {});

    // Dragging.
    void OnDragCommand(WPARAM wParam, LPARAM lParam);
    void OnEnterSizeMove();
    void BeginDragHere();
    void OnExitSizeMove();
    void OnDragStep(RECT& rect, std::uint32_t edges, bool isMove);
    Rect DraggedRect(const RECT& proposed, std::uint32_t edges, bool isMove) const;
    std::vector<Rect> OtherShownRects() const;

    GraphSettings& Settings() const { return GraphSettingsOf(*settings_, kind_); }
    std::int32_t Scaled(std::int32_t value) const;
    Rect WindowRect() const;

    HINSTANCE instance_;
    AppSettings* settings_;
    GraphWindowHost* host_;
    GraphKind kind_;
    HWND hwnd_ = nullptr;
    const GraphSeries* source_ = nullptr;
    bool covered_ = false;
    bool inSizeMove_ = false;  // the system's move or resize loop is running
    int placeChanges_ = 0;     // number of live PlaceChange objects
    Rect placeBeforeDrag_;
    POINT dragStartCursor_ = {};
    Rect dragStartRect_;
    bool clickPending_ = false;  // a press on the surface has not become a move
    HoverState hover_;
    bool trackingMouse_ = false;  // a leave notification has been requested

    static inline std::vector<GraphWindow*> allGraphWindows;
    static inline HWINEVENTHOOK foregroundHook = nullptr;
    static inline HWND foregroundGiven = nullptr;         // to this window, and no event has told of it yet
    static inline std::vector<GraphWindow*> keptInFront;  // of that window, the foremost first
};

/// While one exists, the place is changing in steps, and its creator saves the result. The window, and the graph too,
/// may be destroyed before it.
class GraphWindow::PlaceChange {
  public:
    explicit PlaceChange(GraphWindow& graph) : graph_(graph), window_(graph.hwnd_) { ++graph_.placeChanges_; }
    PlaceChange(const PlaceChange&) = delete;
    PlaceChange& operator=(const PlaceChange&) = delete;
    ~PlaceChange() {
        if (Of(window_) == &graph_) --graph_.placeChanges_;
    }

  private:
    GraphWindow& graph_;
    HWND window_;
};

}  // namespace kestrane
