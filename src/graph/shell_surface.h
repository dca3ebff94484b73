#pragma once
// The shell's own surfaces: the desktop, the taskbar, Start, the lists of icons and of open windows. They come to the
// foreground and go again without burying what the user works with, and nearly every click on an icon begins with one.
// The shell's file windows are none of them: they cover what is below like the windows of any program.
#include <string_view>

namespace kestrane {

/// What is to be known of a window that has come to the foreground.
struct ForegroundWindow {
    std::wstring_view className;
    bool ofShell = false;  // it belongs to the process that shows the desktop
    bool framed = false;   // it stands within another window
};

bool IsShellSurface(const ForegroundWindow& window);

}  // namespace kestrane
