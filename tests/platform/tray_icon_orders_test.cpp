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

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

struct Shell {
    bool takesGuids = true;
    bool runs = true;
    bool losesNextChange = false;  // busy: the call times out and the icon stays unchanged
    bool answersAddsLate = false;  // busy: each add times out, and is carried out nonetheless
    std::set<std::string> icons;   // "guid 1" or "id 1"
    // What comes in from elsewhere while the next call waits, once: before the shell has got round to it, or after.
    std::function<void()> before;
    std::function<void()> after;
    int starts = 0;
};
Shell shell;

void Happen(std::function<void()>& what) {
    if (const auto happen = std::exchange(what, nullptr)) happen();
}

BOOL Answer(DWORD message, const NOTIFYICONDATAW* data) {
    const bool byGuid = (data->uFlags & NIF_GUID) != 0;
    if (!shell.runs) return FALSE;
    const std::string icon = (byGuid ? "guid " : "id ") + std::to_string(data->uID);
    switch (message) {
        case NIM_ADD: {
            const bool added = (shell.takesGuids || !byGuid) && shell.icons.insert(icon).second;
            SetLastError(shell.answersAddsLate ? ERROR_TIMEOUT : ERROR_SUCCESS);
            return added && !shell.answersAddsLate ? TRUE : FALSE;
        }
        case NIM_MODIFY:
            return !std::exchange(shell.losesNextChange, false) && shell.icons.contains(icon) ? TRUE : FALSE;
        case NIM_DELETE:
            return shell.icons.erase(icon) > 0 ? TRUE : FALSE;
        default:
            return shell.icons.contains(icon) ? TRUE : FALSE;
    }
}

/// A call to a shell that ends before its answer has failed.
BOOL WINAPI FakeShellNotifyIcon(DWORD message, PNOTIFYICONDATAW data) {
    const int asked = shell.starts;
    Happen(shell.before);
    if (shell.starts != asked) return FALSE;
    const BOOL answer = Answer(message, data);
    Happen(shell.after);
    return shell.starts == asked ? answer : FALSE;
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
    ++shell.starts;
}

/// "TaskbarCreated", as the program answers it.
void Refresh(TrayIconSet& icons) {
    icons.ReAddAll();
    Tick(icons);
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
    {"late answer",
     [](TrayIconSet& icons) {
         shell.answersAddsLate = true;
         icons.ReAddAll();
         shell.answersAddsLate = false;
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

/// The shell sends its message, so it arrives also while a call waits for its answer.
const std::vector<Event> EventsWithinCalls = {
    {"tick", Tick},
    {"change of the screen", Refresh},
    {"hide", [](TrayIconSet& icons) { icons.SetVisible(Id, false); }},
    {"show", [](TrayIconSet& icons) { icons.SetVisible(Id, true); }},
    {"silent restart", [](TrayIconSet&) { StartShell(); }},
    {"change of the screen before a call is served",
     [](TrayIconSet& icons) { shell.before = [&icons] { Refresh(icons); }; }},
    {"change of the screen before a call is answered",
     [](TrayIconSet& icons) { shell.after = [&icons] { Refresh(icons); }; }},
    {"restart before a call is served",
     [](TrayIconSet& icons) {
         shell.before = [&icons] {
             StartShell();
             Refresh(icons);
         };
     }},
    {"restart before a call is answered",
     [](TrayIconSet& icons) {
         shell.after = [&icons] {
             StartShell();
             Refresh(icons);
         };
     }},
};

/// The order with this number: its digits, in base number of events, select the events.
std::vector<const Event*> OrderOf(const std::vector<Event>& events, std::size_t steps, std::size_t number) {
    std::vector<const Event*> order;
    for (std::size_t step = 0; step < steps; ++step, number /= events.size())
        order.push_back(&events[number % events.size()]);
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
    shell.before = shell.after = nullptr;
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

void WalkThroughEveryOrder(bool takesGuids, const std::vector<Event>& events, std::size_t steps) {
    shell = {};
    shell.takesGuids = takesGuids;
    std::size_t orders = 1;
    for (std::size_t step = 0; step < steps; ++step)
        orders *= events.size();
    for (std::size_t number = 0; number < orders; ++number) {
        const std::vector<const Event*> order = OrderOf(events, steps, number);
        WalkThrough(order);
        ASSERT_FALSE(testing::Test::HasFatalFailure()) << NamesOf(order);
    }
}

TEST(TrayIconOrders, AShellThatTakesGuidsHasTheIconOnceWhileItIsWanted) {
    WalkThroughEveryOrder(true, Events, 6);
}

TEST(TrayIconOrders, AShellThatRefusesGuidsHasTheIconOnceWhileItIsWanted) {
    WalkThroughEveryOrder(false, Events, 6);
}

TEST(TrayIconOrders, AnAddThatMeetsANewShellAddsToItAtOnce) {
    shell = {};
    StartShell();
    TrayIconSet icons(nullptr);
    for (const Event& event : EventsWithinCalls) {
        event.happen(icons);
        icons.SetVisible(Id, true);
        icons.ReAddAll();
        ASSERT_THAT(shell.icons, Contains("guid 1")) << event.name;
        StartShell();
        icons.slots[Id - 1].added = false;
    }
}

TEST(TrayIconOrders, AShellThatTakesGuidsMayComeAnewWithinACall) {
    WalkThroughEveryOrder(true, EventsWithinCalls, 5);
}

TEST(TrayIconOrders, AShellThatRefusesGuidsMayComeAnewWithinACall) {
    WalkThroughEveryOrder(false, EventsWithinCalls, 5);
}

}  // namespace
}  // namespace kestrane
