#include "graph/shell_surface.h"

#include <gtest/gtest.h>

#include <vector>

namespace kestrane {
namespace {

TEST(ShellSurface, IsToldByItsClassAndWhereThatIsNotEnoughByMore) {
    struct Row {
        const char* reason;
        ForegroundWindow window;
        ShellSurface surface;
    };
    constexpr bool shell = true;
    constexpr bool framed = true;
    const std::vector<Row> rows = {
        {"desktop", {L"Progman", shell}, ShellSurface::Desktop},
        {"desktop with a slide show", {L"WorkerW", shell}, ShellSurface::Desktop},
        {"helper window of any program", {L"WorkerW"}, ShellSurface::None},
        {"taskbar", {L"Shell_TrayWnd", shell}, ShellSurface::Other},
        {"taskbar of a shell that has no desktop", {L"Shell_TrayWnd"}, ShellSurface::Other},
        {"taskbar of another monitor", {L"Shell_SecondaryTrayWnd", shell}, ShellSurface::Other},
        {"overflow, Windows 10", {L"NotifyIconOverflowWindow", shell}, ShellSurface::Other},
        {"overflow, Windows 11", {L"TopLevelWindowForOverflowXamlIsland", shell}, ShellSurface::Other},
        {"quick settings, of a host process", {L"ControlCenterWindow"}, ShellSurface::Other},
        {"Start and search, each a process of its own", {L"Windows.UI.Core.CoreWindow"}, ShellSurface::Other},
        {"an app's surface in its frame", {L"Windows.UI.Core.CoreWindow", false, framed}, ShellSurface::None},
        {"an app's frame", {L"ApplicationFrameWindow"}, ShellSurface::None},
        {"Alt+Tab, Windows 11", {L"XamlExplorerHostIslandWindow", shell}, ShellSurface::Other},
        {"Alt+Tab, Windows 10", {L"MultitaskingViewFrame", shell}, ShellSurface::Other},
        {"Alt+Tab, plain", {L"TaskSwitcherWnd", shell}, ShellSurface::Other},
        {"Alt+Tab, the system's class", {L"#32771"}, ShellSurface::Other},
        {"between two of them", {L"ForegroundStaging", shell}, ShellSurface::Other},
        {"file window", {L"CabinetWClass", shell}, ShellSurface::None},
        {"file window with folders", {L"ExploreWClass", shell}, ShellSurface::None},
        {"properties of a file", {L"#32770", shell}, ShellSurface::None},
        {"copying of files", {L"OperationStatusWindow", shell}, ShellSurface::None},
        {"any program", {L"Notepad"}, ShellSurface::None},
        {"the beginning of a name", {L"Shell_Tray", shell}, ShellSurface::None},
        {"more than a name", {L"Shell_TrayWnd2", shell}, ShellSurface::None},
        {"other case", {L"progman", shell}, ShellSurface::None},
        {"no name", {L"", shell}, ShellSurface::None},
    };
    for (const Row& row : rows)
        EXPECT_EQ(ShellSurfaceOf(row.window), row.surface) << row.reason;
}

}  // namespace
}  // namespace kestrane
