// One icon through every order of events, against a small model of the shell. Like the real one, the model keys icons
// by GUID, or else by window and id, and refuses to add an icon that it already holds.
#include <windows.h>

#include <shellapi.h>

#include "tray/tray_icon_set_win32.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace kestrane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Shell {
    bool takesGuids = true;
    bool runs = true;
    bool losesNextChange = false;  // busy: the call times out and the icon stays unchanged
    std::set<std::string> icons;   // "guid 1" or "id 1"
};
Shell shell;

BOOL WINAPI FakeShellNotifyIcon(DWORD message, PNOTIFYICONDATAW data) {
    const bool byGuid = (data->uFlags & NIF_GUID) != 0;
    if (!shell.runs) return FALSE;
    const std::string icon = (byGuid ? "guid " : "id ") + std::to_string(data->uID);
    switch (message) {
        case NIM_ADD:
            return (shell.takesGuids || !byGuid) && shell.icons.insert(icon).second ? TRUE : FALSE;
        case NIM_MODIFY:
            return !std::exchange(shell.losesNextChange, false) && shell.icons.contains(icon) ? TRUE : FALSE;
        case NIM_DELETE:
            return shell.icons.erase(icon) > 0 ? TRUE : FALSE;
        default:
            return shell.icons.contains(icon) ? TRUE : FALSE;
    }
}

HWND WINAPI FakeFindWindow(LPCWSTR className, LPCWSTR title) {
    EXPECT_STREQ(className, L"Shell_TrayWnd");
    EXPECT_EQ(title, nullptr);
    return shell.runs ? reinterpret_cast<HWND>(std::uintptr_t{9}) : nullptr;
}

BOOL WINAPI FakeDestroyIcon(HICON) {
    return TRUE;
}

void WINAPI IgnoreDebugLine(LPCWSTR) {}

}  // namespace
}  // namespace kestrane

extern "C" {
decltype(&Shell_NotifyIconW) __imp_Shell_NotifyIconW = &kestrane::FakeShellNotifyIcon;
decltype(&FindWindowW) __imp_FindWindowW = &kestrane::FakeFindWindow;
decltype(&DestroyIcon) __imp_DestroyIcon = &kestrane::FakeDestroyIcon;
decltype(&OutputDebugStringW) __imp_OutputDebugStringW = &kestrane::IgnoreDebugLine;
}

namespace kestrane {
namespace {

constexpr std::uint32_t Id = 1;

void Tick(TrayIconSet& icons) {
    icons.Update(Id, UniqueIcon(reinterpret_cast<HICON>(std::uintptr_t{7})), L"text");
}

/// The shell starts, or restarts, without icons.
void StartShell() {
    shell.runs = true;
    shell.icons.clear();
}

struct Event {
    const char* name;
    void (*happen)(TrayIconSet&);
};

const std::vector<Event> Events = {
    {"tick", Tick},
    {"lost change",
     [](TrayIconSet& icons) {
         shell.losesNextChange = true;
         Tick(icons);
         shell.losesNextChange = false;
     }},
    {"change of the screen", [](TrayIconSet& icons) { icons.ReAddAll(); }},
    {"restart",
     [](TrayIconSet& icons) {
         StartShell();
         icons.ReAddAll();
     }},
    {"silent restart", [](TrayIconSet&) { StartShell(); }},
    {"end of the shell",
     [](TrayIconSet&) {
         shell.runs = false;
         shell.icons.clear();
     }},
    {"hide", [](TrayIconSet& icons) { icons.SetVisible(Id, false); }},
    {"show", [](TrayIconSet& icons) { icons.SetVisible(Id, true); }},
    {"end of the session", [](TrayIconSet& icons) { icons.RemoveAll(); }},
};

constexpr std::size_t Steps = 6;

/// The order with this number: its digits, in base number of events, select the events.
std::vector<const Event*> OrderOf(std::size_t number) {
    std::vector<const Event*> order;
    for (std::size_t step = 0; step < Steps; ++step, number /= Events.size())
        order.push_back(&Events[number % Events.size()]);
    return order;
}

std::string NamesOf(const std::vector<const Event*>& order) {
    std::string names;
    for (const Event* event : order)
        names += std::string(names.empty() ? "" : ", ") + event->name;
    return names;
}

/// Runs the events, then a tick with a shell. The icon must exist once if it is wanted, and not at all after shutdown.
void WalkThrough(const std::vector<const Event*>& order) {
    StartShell();
    TrayIconSet icons(nullptr);
    for (const std::uint32_t other : {2U, 3U, 4U})
        icons.SetVisible(other, false);
    for (const Event* event : order)
        event->happen(icons);
    shell.runs = true;
    Tick(icons);
    ASSERT_EQ(icons.slots[Id - 1].added, icons.slots[Id - 1].wanted);
    if (icons.slots[Id - 1].wanted) {
        ASSERT_THAT(shell.icons, ElementsAre(shell.takesGuids ? "guid 1" : "id 1"));
    } else {
        ASSERT_THAT(shell.icons, IsEmpty());
    }
    icons.RemoveAll();
    ASSERT_THAT(shell.icons, IsEmpty()) << "after the end";
}

void WalkThroughEveryOrder(bool takesGuids) {
    shell = {};
    shell.takesGuids = takesGuids;
    std::size_t orders = 1;
    for (std::size_t step = 0; step < Steps; ++step)
        orders *= Events.size();
    for (std::size_t number = 0; number < orders; ++number) {
        const std::vector<const Event*> order = OrderOf(number);
        WalkThrough(order);
        ASSERT_FALSE(testing::Test::HasFatalFailure()) << NamesOf(order);
    }
}

TEST(TrayIconOrders, AShellThatTakesGuidsHasTheIconOnceWhileItIsWanted) {
    WalkThroughEveryOrder(true);
}

TEST(TrayIconOrders, AShellThatRefusesGuidsHasTheIconOnceWhileItIsWanted) {
    WalkThroughEveryOrder(false);
}

}  // namespace
}  // namespace kestrane
