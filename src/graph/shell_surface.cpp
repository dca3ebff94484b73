#include "graph/shell_surface.h"

#include <algorithm>
#include <array>
#include <span>

namespace kestrane {
namespace {

/// When a window of the class is a shell surface. Classes that others use too need a further condition.
enum class When { Always, OfShell, Unframed };

struct Surface {
    std::wstring_view className;
    When when;
};

/// As large as the whole screen.
constexpr auto Desktops = std::to_array<Surface>({
    {L"Progman", When::Always},
    // The desktop with a wallpaper slide show. Any program may have windows of this class, created by system DLLs.
    {L"WorkerW", When::OfShell},
});

constexpr auto Others = std::to_array<Surface>({
    // The taskbars of the primary and other monitors. An auto-hide taskbar comes up over the graphs at its edge.
    {L"Shell_TrayWnd", When::Always},
    {L"Shell_SecondaryTrayWnd", When::Always},

    // The overflow area of the notification icons: in Windows 10 and the first Windows 11, and in later ones.
    {L"NotifyIconOverflowWindow", When::Always},
    {L"TopLevelWindowForOverflowXamlIsland", When::Always},

    // Quick settings and notifications of Windows 11, which open over the corner where graphs start.
    {L"ControlCenterWindow", When::Always},
    // Start, Search and, on Windows 10, notifications. Store apps use it as well, but inside an ApplicationFrameWindow,
    // which is what comes to the foreground.
    {L"Windows.UI.Core.CoreWindow", When::Unframed},

    // Alt+Tab and Task View: Windows 11, Windows 10, the classic one enabled by a registry value, and the built-in task
    // switch class.
    {L"XamlExplorerHostIslandWindow", When::Always},
    {L"MultitaskingViewFrame", When::Always},
    {L"TaskSwitcherWnd", When::Always},
    {L"#32771", When::Always},
    // Invisible and as large as the screen; holds the foreground while one of these is open.
    {L"ForegroundStaging", When::Always},
});

bool Holds(When when, const ForegroundWindow& window) {
    if (when == When::OfShell) return window.ofShell;
    return when != When::Unframed || !window.framed;
}

bool IsAmong(std::span<const Surface> surfaces, const ForegroundWindow& window) {
    return std::ranges::any_of(surfaces, [&](const Surface& surface) {
        return surface.className == window.className && Holds(surface.when, window);
    });
}

}  // namespace

ShellSurface ShellSurfaceOf(const ForegroundWindow& window) {
    if (IsAmong(Desktops, window)) return ShellSurface::Desktop;
    return IsAmong(Others, window) ? ShellSurface::Other : ShellSurface::None;
}

}  // namespace kestrane
