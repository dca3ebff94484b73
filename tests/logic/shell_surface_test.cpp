#include "graph/shell_surface.h"

#include <gtest/gtest.h>

#include <vector>

namespace kestrane {
namespace {

TEST(ShellSurface, IsToldByItsClassAndWhereThatIsNotEnoughByMore) {
    struct Row {
        const char* reason;
        ForegroundWindow window;
        bool isSurface;
    };
    constexpr bool shell = true;
    constexpr bool framed = true;
    const std::vector<Row> rows = {
        {"desktop", {L"Progman", shell}, true},
        {"desktop with a slide show", {L"WorkerW", shell}, true},
        {"helper window of any program", {L"WorkerW"}, false},
        {"taskbar", {L"Shell_TrayWnd", shell}, true},
        {"taskbar of a shell that has no desktop", {L"Shell_TrayWnd"}, true},
        {"taskbar of another monitor", {L"Shell_SecondaryTrayWnd", shell}, true},
        {"overflow, Windows 10", {L"NotifyIconOverflowWindow", shell}, true},
        {"overflow, Windows 11", {L"TopLevelWindowForOverflowXamlIsland", shell}, true},
        {"quick settings, of a host process", {L"ControlCenterWindow"}, true},
        {"Start and search, each a process of its own", {L"Windows.UI.Core.CoreWindow"}, true},
        {"an app's surface in its frame", {L"Windows.UI.Core.CoreWindow", false, framed}, false},
        {"an app's frame", {L"ApplicationFrameWindow"}, false},
        {"Alt+Tab, Windows 11", {L"XamlExplorerHostIslandWindow", shell}, true},
        {"Alt+Tab, Windows 10", {L"MultitaskingViewFrame", shell}, true},
        {"Alt+Tab, plain", {L"TaskSwitcherWnd", shell}, true},
        {"Alt+Tab, the system's class", {L"#32771"}, true},
        {"between two of them", {L"ForegroundStaging", shell}, true},
        {"file window", {L"CabinetWClass", shell}, false},
        {"file window with folders", {L"ExploreWClass", shell}, false},
        {"properties of a file", {L"#32770", shell}, false},
        {"copying of files", {L"OperationStatusWindow", shell}, false},
        {"any program", {L"Notepad"}, false},
        {"the beginning of a name", {L"Shell_Tray", shell}, false},
        {"more than a name", {L"Shell_TrayWnd2", shell}, false},
        {"other case", {L"progman", shell}, false},
        {"no name", {L"", shell}, false},
    };
    for (const Row& row : rows)
        EXPECT_EQ(IsShellSurface(row.window), row.isSurface) << row.reason;
}

}  // namespace
}  // namespace kestrane
