#pragma once
// The shell's own surfaces: desktop, taskbar, Start, the icon overflow and the window switchers. They come to the
// foreground only briefly, and nearly every click on an icon starts with one, so they do not count as covering a graph.
// Explorer's file windows do: they are like those of any program.
#include <string_view>

namespace kestrane {

/// The relevant facts about a new foreground window.
struct ForegroundWindow {
    std::wstring_view className;
    bool ofShell = false;  // belongs to the process that shows the desktop
    bool framed = false;   // is inside another window
};

bool IsShellSurface(const ForegroundWindow& window);

}  // namespace kestrane
