#include "graph/shell_surface.h"

#include <algorithm>
#include <array>

namespace kestrane {
namespace {

/// When the class means a surface of the shell. Where others use it too, more must hold.
enum class When { Always, OfShell, Unframed };

struct Surface {
    std::wstring_view className;
    When when;
};

constexpr auto Surfaces = std::to_array<Surface>({
    // The desktop. It lies below all windows, and its rectangle is the whole screen.
    {L"Progman", When::Always},
    // The same when its wallpaper changes by itself. Any program may have windows of this class, made by the system's
    // DLLs.
    {L"WorkerW", When::OfShell},

    // The taskbar, and those of further monitors. One that hides itself comes up over the graphs at its edge.
    {L"Shell_TrayWnd", When::Always},
    {L"Shell_SecondaryTrayWnd", When::Always},

    // The overflow of the notification area: of Windows 10 and the first Windows 11, and of those since.
    {L"NotifyIconOverflowWindow", When::Always},
    {L"TopLevelWindowForOverflowXamlIsland", When::Always},

    // The quick settings and the notifications of Windows 11, which open over the corner where graphs begin.
    {L"ControlCenterWindow", When::Always},
    // Start, the search and, on Windows 10, the notifications. Apps from the store use it as well, but theirs stands in
    // an ApplicationFrameWindow, which is what comes to the foreground.
    {L"Windows.UI.Core.CoreWindow", When::Unframed},

    // Alt+Tab and the task view: Windows 11, Windows 10, the plain one that a registry value brings back, and the class
    // that the system itself has for it.
    {L"XamlExplorerHostIslandWindow", When::Always},
    {L"MultitaskingViewFrame", When::Always},
    {L"TaskSwitcherWnd", When::Always},
    {L"#32771", When::Always},
    // Holds the foreground, as large as the screen and unseen, while one of these chooses.
    {L"ForegroundStaging", When::Always},
});

bool Holds(When when, const ForegroundWindow& window) {
    if (when == When::OfShell) return window.ofShell;
    return when != When::Unframed || !window.framed;
}

}  // namespace

bool IsShellSurface(const ForegroundWindow& window) {
    return std::any_of(Surfaces.begin(), Surfaces.end(), [&](const Surface& surface) {
        return surface.className == window.className && Holds(surface.when, window);
    });
}

}  // namespace kestrane
