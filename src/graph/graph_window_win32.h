#pragma once
// A small borderless window that shows one graph. It never takes the focus, is dragged by any point of its surface,
// snaps to the work area and to its sisters, and remembers its place in the settings.
//
// Unpinned, the mouse reads it, drags it and resizes it. Pinned, it is an overlay on top of everything that the mouse
// goes through, so it can be neither moved nor read. Nothing hides a graph by itself.
//
// To the system the whole surface is non-client area (a caption with sizing borders), which is why its mouse messages
// are the WM_NC ones, and why the system's own loop moves and sizes it. All of it belongs to the user-interface thread.
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
    /// The system window comes into being when the graph is first shown. `settings` and `host` outlive the object.
    GraphWindow(HINSTANCE instance, AppSettings* settings, GraphWindowHost* host, GraphKind kind);
    GraphWindow(const GraphWindow&) = delete;
    GraphWindow& operator=(const GraphWindow&) = delete;
    ~GraphWindow();

    /// What to paint from now on; null paints an empty graph.
    void BindSource(const GraphSeries* source);
    /// Takes opacity, pinned and topmost from the settings. Nothing before the system window exists.
    void ApplyStyle();
    /// If the system window cannot be made, the graph stays closed and the next call tries again.
    void SetShown(bool shown);
    bool IsShown() const;
    /// Repaints soon, if shown.
    void Invalidate();
    /// Above all other windows, without the focus; it stays topmost only if the settings say so.
    void Raise();
    /// Another program's window has come to the foreground over this one since it was last raised. The shell's own
    /// surfaces do not count: they are gone again by the time that it matters.
    bool IsCovered() const { return covered_; }
    /// Back to the taskbar, and saved, if no monitor shows any part of it.
    void RecoverIfOffScreen();

  private:
    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    /// The graph that a window shows; null for one that is destroyed.
    static GraphWindow* Of(HWND window);
    static void CALLBACK OnForegroundEvent(HWINEVENTHOOK hook, DWORD event, HWND window, LONG object, LONG child,
                                           DWORD thread, DWORD time);

    class PlaceChange;

    // Coming into being, and the place on the screen. Where the taskbar is only the shell knows, and while it is asked
    // a message of its own can end the program: after false, this object may be gone.
    bool RegisterWindowClass() const;
    const wchar_t* Title() const;
    bool Create();
    bool PlaceAtTaskbar();
    /// True if the window had to be moved.
    bool EnsureOnScreen();
    void MoveTo(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height);
    /// The same, to a monitor of any DPI.
    void PlaceAt(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height);
    void StoreRect();
    /// Stores and saves a place that is not `from`; nothing while it is still changing.
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
    bool inSizeMove_ = false;  // a move or resize loop of the system is running
    int placeChanges_ = 0;     // how many of PlaceChange there are
    Rect placeBeforeDrag_;
    POINT dragStartCursor_ = {};
    Rect dragStartRect_;
    bool clickPending_ = false;  // a press on the surface has not turned into a move
    HoverState hover_;
    bool trackingMouse_ = false;  // a leave notification has been requested

    static inline std::vector<GraphWindow*> allGraphWindows;
    static inline HWINEVENTHOOK foregroundHook = nullptr;
};

/// While there is one, the place changes step by step, and whoever made it saves what comes of it. The window, and the
/// graph too, may end before it does.
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
