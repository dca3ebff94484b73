#pragma once
// The shell's own surfaces: desktop, taskbar, Start, the icon overflow and the window switchers. They come to the
// foreground only briefly, and nearly every click on an icon starts with one, so they do not count as covering a graph;
// the desktop does while the user has it shown in front of all windows (Win+D). Explorer's file windows are like those
// of any program.
#include <string_view>

namespace kestrane {

/// The relevant facts about a new foreground window.
struct ForegroundWindow {
    std::wstring_view className;
    bool ofShell = false;  // belongs to the process that shows the desktop
    bool framed = false;   // is inside another window
};

enum class ShellSurface { None, Desktop, Other };

/// What a new foreground window is to the shell; None for the windows of programs.
ShellSurface ShellSurfaceOf(const ForegroundWindow& window);

}  // namespace kestrane
