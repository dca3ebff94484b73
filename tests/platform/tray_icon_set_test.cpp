// The four icons against a fake shell that records every call and refuses on demand.
#include <windows.h>

#include <shellapi.h>

#include "tray/tray_icon_set_win32.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "support/recorded_log.h"
#include "text/translation.h"

namespace kestrane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct ShellCall {
    DWORD message;
    NOTIFYICONDATAW data;
};

/// The fake shell: the calls it got, and those it refuses.
struct Shell {
    std::vector<ShellCall> calls;
    std::function<bool(const ShellCall&)> refuses;  // none: nothing is refused
    bool hasTaskbar = true;
    std::map<HICON, int> destroyed;  // how often each image was destroyed
    std::vector<std::string> order;  // shell calls and destroyed images, in order
    int iconLoads = 0;
};
Shell shell;

const auto BalloonImage = reinterpret_cast<HICON>(0xBA11);

/// "add 1 guid": the call, the id, and the flags that matter.
std::string Describe(const ShellCall& call) {
    static const char* const Names[] = {"add", "modify", "delete", "focus", "version"};
    std::string text = std::string(Names[call.message]) + " " + std::to_string(call.data.uID);
    if ((call.data.uFlags & NIF_GUID) != 0) text += " guid";
    if ((call.data.uFlags & NIF_ICON) != 0) text += " icon";
    if ((call.data.uFlags & NIF_INFO) != 0) text += " info";
    return text;
}

BOOL WINAPI FakeShellNotifyIcon(DWORD message, PNOTIFYICONDATAW data) {
    shell.calls.push_back({message, *data});
    shell.order.push_back(Describe(shell.calls.back()));
    return shell.refuses && shell.refuses(shell.calls.back()) ? FALSE : TRUE;
}

HWND WINAPI FakeFindWindow(LPCWSTR className, LPCWSTR title) {
    EXPECT_STREQ(className, L"Shell_TrayWnd");
    EXPECT_EQ(title, nullptr);
    return shell.hasTaskbar ? reinterpret_cast<HWND>(std::uintptr_t{9}) : nullptr;
}

BOOL WINAPI FakeDestroyIcon(HICON icon) {
    ++shell.destroyed[icon];
    shell.order.push_back("destroy " + std::to_string(reinterpret_cast<std::uintptr_t>(icon)));
    return TRUE;
}

HICON WINAPI FakeLoadIcon(HINSTANCE module, LPCWSTR name) {
    EXPECT_EQ(module, GetModuleHandleW(nullptr));
    EXPECT_EQ(name, MAKEINTRESOURCEW(1));
    ++shell.iconLoads;
    return BalloonImage;
}

}  // namespace
}  // namespace kestrane

extern "C" {
decltype(&Shell_NotifyIconW) __imp_Shell_NotifyIconW = &kestrane::FakeShellNotifyIcon;
decltype(&FindWindowW) __imp_FindWindowW = &kestrane::FakeFindWindow;
decltype(&DestroyIcon) __imp_DestroyIcon = &kestrane::FakeDestroyIcon;
decltype(&LoadIconW) __imp_LoadIconW = &kestrane::FakeLoadIcon;
}

namespace kestrane {
namespace {

constexpr wchar_t GuidRefused[] = L"kestrane: NIM_ADD con GUID ha fallado; reintento sin GUID\n";
constexpr wchar_t AddRefused[] = L"kestrane: NIM_ADD ha fallado\n";
const auto Window = reinterpret_cast<HWND>(0x4242);

HICON Handle(std::uintptr_t number) {
    return reinterpret_cast<HICON>(number);
}

/// An image whose destruction is recorded by number: "destroy 7".
UniqueIcon Image(std::uintptr_t number) {
    return UniqueIcon(Handle(number));
}

bool IsAdd(const ShellCall& call) {
    return call.message == NIM_ADD;
}

bool HasGuid(const ShellCall& call) {
    return (call.data.uFlags & NIF_GUID) != 0;
}

/// Refuses the calls of one kind whose ordinals, from 1, are in `ordinals`.
std::function<bool(const ShellCall&)> RefuseNth(DWORD message, std::vector<int> ordinals) {
    return [message, ordinals, seen = 0](const ShellCall& call) mutable {
        if (call.message != message) return false;
        ++seen;
        return std::find(ordinals.begin(), ordinals.end(), seen) != ordinals.end();
    };
}

/// The events since the last call of this function.
std::vector<std::string> Order() {
    return std::exchange(shell.order, {});
}

class TrayIconSetTest : public testing::Test {
  protected:
    TrayIconSetTest() {
        shell = {};
        debugLines.clear();
        SetLanguage(ActiveSpanish);
    }
    ~TrayIconSetTest() override { SetLanguage(ActiveSpanish); }

    /// Leaves only icon `id` wanted, and nothing on the taskbar.
    void WantOnly(TrayIconSet& icons, std::uint32_t id) {
        for (std::uint32_t other = 1; other <= 4; ++other) {
            if (other != id) icons.SetVisible(other, false);
        }
        EXPECT_THAT(Order(), IsEmpty());
    }
};

TEST_F(TrayIconSetTest, PreparesFourRecordsAndAddsNothing) {
    const TrayIconSet icons(Window);
    EXPECT_THAT(shell.calls, IsEmpty());
    EXPECT_EQ(icons.window, Window);
    const std::vector<std::wstring> names = {L"CPU", L"Disco", L"Memoria", L"Red"};
    for (std::uint32_t i = 0; i < 4; ++i) {
        const TrayIconSlot& slot = icons.slots[i];
        EXPECT_FALSE(slot.icon);
        EXPECT_FALSE(slot.added);
        EXPECT_TRUE(slot.wanted);
        EXPECT_TRUE(slot.useGuid);
        EXPECT_FALSE(slot.everAdded);
        NOTIFYICONDATAW expected{};
        expected.cbSize = 976;
        expected.hWnd = Window;
        expected.uID = i + 1;
        expected.uFlags = 0xA5;
        expected.uCallbackMessage = 0x8001;
        expected.uVersion = 4;
        expected.guidItem = {0x8F41C7A2, 0x52D6, 0x4B19, {0xA7, 0x3E, 0x64, 0x1D, 0xC8, 0x95, 0x20, 0x00}};
        expected.guidItem.Data4[7] = static_cast<unsigned char>(i + 1);
        std::wcscpy(expected.szTip, names[i].c_str());
        EXPECT_EQ(std::memcmp(&slot.data, &expected, sizeof expected), 0) << i;
    }
}

TEST_F(TrayIconSetTest, TheFirstTextsAreInTheActiveLanguage) {
    SetLanguage(ActiveEnglish);
    const TrayIconSet icons(Window);
    const std::vector<std::wstring> names = {L"CPU", L"Disk", L"Memory", L"Network"};
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(icons.slots[i].data.szTip, names[i]);
}

TEST_F(TrayIconSetTest, AddsAllInOrderAndAsksForVersionFour) {
    TrayIconSet icons(Window);
    EXPECT_EQ(icons.AddAll(), 4U);
    EXPECT_THAT(Order(), ElementsAre("add 1 guid", "version 1 guid", "add 2 guid", "version 2 guid", "add 3 guid",
                                     "version 3 guid", "add 4 guid", "version 4 guid"));
    for (const ShellCall& call : shell.calls) {
        EXPECT_EQ(call.data.cbSize, 976U);
        EXPECT_EQ(call.data.uVersion, 4U);
        EXPECT_EQ(call.data.uFlags, 0xA5U) << "no image yet, so no NIF_ICON";
    }
    EXPECT_EQ(icons.AddAll(), 4U) << "existing ones count, without a call";
    EXPECT_THAT(Order(), IsEmpty());
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(TrayIconSetTest, CountsOnlyWhatIsOnTheTaskbar) {
    TrayIconSet icons(Window);
    icons.SetVisible(2, false);
    shell.refuses = [](const ShellCall& call) { return IsAdd(call) && call.data.uID == 3; };
    EXPECT_EQ(icons.AddAll(), 2U);
    EXPECT_THAT(Order(),
                ElementsAre("add 1 guid", "version 1 guid", "add 3 guid", "add 3", "add 4 guid", "version 4 guid"));
    EXPECT_THAT(debugLines, ElementsAre(GuidRefused, AddRefused));
}

TEST_F(TrayIconSetTest, ARefusedGuidIsDroppedForGood) {
    TrayIconSet icons(Window);
    shell.refuses = HasGuid;
    EXPECT_EQ(icons.AddAll(), 4U);
    EXPECT_THAT(Order(), ElementsAre("add 1 guid", "add 1", "version 1", "add 2 guid", "add 2", "version 2",
                                     "add 3 guid", "add 3", "version 3", "add 4 guid", "add 4", "version 4"));
    EXPECT_THAT(debugLines, ElementsAre(GuidRefused, GuidRefused, GuidRefused, GuidRefused));
    for (const TrayIconSlot& slot : icons.slots) {
        EXPECT_FALSE(slot.useGuid);
        EXPECT_TRUE(slot.everAdded);
    }

    debugLines.clear();
    shell.refuses = nullptr;  // even though the shell would take it now
    icons.Update(1, Image(11), L"a");
    icons.ShowBalloon(L"t", L"x");
    icons.SetVisible(2, false);
    icons.SetVisible(2, true);
    icons.ReAddAll();
    EXPECT_THAT(Order(),
                ElementsAre("modify 1 icon", "modify 1 info", "delete 2", "add 2", "version 2", "add 1 icon",
                            "version 1 icon", "add 2", "version 2", "add 3", "version 3", "add 4", "version 4"));
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(TrayIconSetTest, AnIconThatWasNeverThereIsRefusedWithoutASecondTry) {
    TrayIconSet icons(Window);
    WantOnly(icons, 1);
    shell.refuses = IsAdd;
    EXPECT_EQ(icons.AddAll(), 0U);
    EXPECT_THAT(Order(), ElementsAre("add 1 guid", "add 1"));
    EXPECT_THAT(debugLines, ElementsAre(GuidRefused, AddRefused));

    debugLines.clear();
    EXPECT_EQ(icons.AddAll(), 0U);
    EXPECT_THAT(Order(), ElementsAre("add 1"));
    EXPECT_THAT(debugLines, ElementsAre(AddRefused));
}

TEST_F(TrayIconSetTest, WithoutATaskbarARefusalCostsNeitherTheGuidNorASecondTry) {
    TrayIconSet icons(Window);
    WantOnly(icons, 1);
    shell.hasTaskbar = false;
    shell.refuses = IsAdd;
    EXPECT_EQ(icons.AddAll(), 0U);
    icons.Update(1, Image(1), L"a");
    EXPECT_THAT(Order(), ElementsAre("add 1 guid", "add 1 guid icon"));
    EXPECT_THAT(debugLines, ElementsAre(AddRefused, AddRefused));

    debugLines.clear();
    shell.hasTaskbar = true;
    shell.refuses = nullptr;
    icons.ReAddAll();
    EXPECT_THAT(Order(), ElementsAre("add 1 guid icon", "version 1 guid icon"));
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(TrayIconSetTest, ATaskbarThatComesUpBehindTheRefusalHasNotRefused) {
    TrayIconSet icons(Window);
    WantOnly(icons, 1);
    shell.hasTaskbar = false;
    shell.refuses = [](const ShellCall&) {
        shell.hasTaskbar = true;
        return true;
    };
    icons.AddAll();
    EXPECT_THAT(Order(), ElementsAre("add 1 guid"));
    EXPECT_TRUE(icons.slots[0].useGuid);
}

TEST_F(TrayIconSetTest, WithoutATaskbarAnIconThatWasThereIsNotDeleted) {
    TrayIconSet icons(Window);
    WantOnly(icons, 1);
    icons.Update(1, Image(1), L"a");
    Order();
    shell.hasTaskbar = false;
    shell.refuses = [](const ShellCall&) { return true; };
    icons.Update(1, Image(2), L"b");
    icons.Update(1, Image(3), L"c");
    EXPECT_THAT(Order(),
                ElementsAre("modify 1 guid icon", "add 1 guid icon", "destroy 1", "add 1 guid icon", "destroy 2"));
}

/// Refuses what another function refuses, as a shell that is too busy to answer.
std::function<bool(const ShellCall&)> TooLate(std::function<bool(const ShellCall&)> refuses) {
    return [refuses](const ShellCall& call) {
        if (!refuses(call)) return false;
        SetLastError(ERROR_TIMEOUT);
        return true;
    };
}

TEST_F(TrayIconSetTest, AnAddThatIsNotAnsweredInTimeCostsNoGuid) {
    TrayIconSet icons(Window);
    WantOnly(icons, 1);
    shell.refuses = TooLate(IsAdd);
    EXPECT_EQ(icons.AddAll(), 0U);
    EXPECT_THAT(Order(), ElementsAre("add 1 guid"));
    EXPECT_THAT(debugLines, ElementsAre(AddRefused));

    debugLines.clear();
    shell.refuses = RefuseNth(NIM_ADD, {1});
    EXPECT_EQ(icons.AddAll(), 1U);
    EXPECT_THAT(Order(), ElementsAre("add 1 guid", "delete 1 guid", "add 1 guid", "version 1 guid"))
        << "it was carried out after all";
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(TrayIconSetTest, AGuidThatIsRefusedAfterAnAddThatWasNotAnsweredInTimeIsDroppedAtOnce) {
    TrayIconSet icons(Window);
    WantOnly(icons, 1);
    shell.refuses = TooLate(IsAdd);
    icons.AddAll();
    Order();
    debugLines.clear();
    shell.refuses = HasGuid;
    EXPECT_EQ(icons.AddAll(), 1U);
    EXPECT_THAT(Order(), ElementsAre("add 1 guid", "delete 1 guid", "add 1 guid", "add 1", "version 1"));
    EXPECT_THAT(debugLines, ElementsAre(GuidRefused));
}

TEST_F(TrayIconSetTest, WhatMayStillComeIsTakenBack) {
    TrayIconSet icons(Window);
    WantOnly(icons, 1);
    shell.refuses = TooLate(IsAdd);
    icons.AddAll();
    icons.SetVisible(1, false);
    icons.RemoveAll();
    EXPECT_THAT(Order(), ElementsAre("add 1 guid", "delete 1 guid"));
}

TEST_F(TrayIconSetTest, EachUpdateTriesAgainAndSaysSo) {
    TrayIconSet icons(Window);
    WantOnly(icons, 4);
    shell.refuses = IsAdd;
    icons.Update(4, Image(1), L"a");
    icons.Update(4, Image(2), L"b");
    EXPECT_THAT(Order(), ElementsAre("add 4 guid icon", "add 4 icon", "add 4 icon", "destroy 1"));
    EXPECT_THAT(debugLines, ElementsAre(GuidRefused, AddRefused, AddRefused));

    debugLines.clear();
    shell.refuses = nullptr;
    icons.Update(4, Image(3), L"c");
    EXPECT_THAT(Order(), ElementsAre("add 4 icon", "version 4 icon", "destroy 2"));
    EXPECT_STREQ(shell.calls.back().data.szTip, L"c");
    EXPECT_EQ(shell.calls.back().data.hIcon, Handle(3));
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(TrayIconSetTest, AnUpdateModifiesAndThenDestroysTheOldImage) {
    TrayIconSet icons(Window);
    WantOnly(icons, 1);
    icons.AddAll();
    Order();
    icons.Update(1, Image(11), L"CPU: 5 %");
    icons.Update(1, Image(12), L"CPU: 6 %");
    EXPECT_THAT(Order(), ElementsAre("modify 1 guid icon", "modify 1 guid icon", "destroy 11"));
    const NOTIFYICONDATAW& data = shell.calls.back().data;
    EXPECT_EQ(data.uFlags, 0xA7U);
    EXPECT_EQ(data.hIcon, Handle(12));
    EXPECT_STREQ(data.szTip, L"CPU: 6 %");
    EXPECT_EQ(icons.slots[0].data.uFlags, 0xA5U) << "the prepared record stays as it was";
    EXPECT_EQ(icons.slots[0].data.hIcon, nullptr);
}

TEST_F(TrayIconSetTest, AnUpdateWithoutAnImageTakesTheOldOneAway) {
    TrayIconSet icons(Window);
    WantOnly(icons, 2);
    icons.Update(2, Image(5), L"a");
    Order();
    icons.Update(2, UniqueIcon(), L"b");
    EXPECT_THAT(Order(), ElementsAre("modify 2 guid icon", "destroy 5"));
    EXPECT_EQ(shell.calls.back().data.hIcon, nullptr);
    EXPECT_FALSE(icons.slots[1].icon);
    icons.Update(2, UniqueIcon(), L"c");
    EXPECT_THAT(Order(), ElementsAre("modify 2 guid icon")) << "nothing is left to destroy";
}

TEST_F(TrayIconSetTest, ALostIconIsAddedAgainAtOnce) {
    TrayIconSet icons(Window);
    WantOnly(icons, 3);
    icons.Update(3, Image(1), L"a");
    Order();
    shell.refuses = RefuseNth(NIM_MODIFY, {1});
    icons.Update(3, Image(2), L"b");
    EXPECT_THAT(Order(), ElementsAre("modify 3 guid icon", "add 3 guid icon", "version 3 guid icon", "destroy 1"));
    EXPECT_STREQ(shell.calls.back().data.szTip, L"b");
    EXPECT_TRUE(icons.slots[2].added);
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(TrayIconSetTest, AFailedModifyHealsAtTheNextUpdate) {
    TrayIconSet icons(Window);
    WantOnly(icons, 3);
    icons.Update(3, Image(1), L"a");
    Order();
    shell.refuses = [](const ShellCall& call) { return call.message != NIM_DELETE; };
    icons.Update(3, Image(2), L"b");
    EXPECT_THAT(Order(), ElementsAre("modify 3 guid icon", "add 3 guid icon", "delete 3 guid icon", "add 3 guid icon",
                                     "destroy 1"));
    EXPECT_THAT(debugLines, ElementsAre(AddRefused));
    EXPECT_FALSE(icons.slots[2].added);
    EXPECT_TRUE(icons.slots[2].useGuid) << "a GUID that has worked is kept";
    shell.refuses = nullptr;
    icons.Update(3, Image(3), L"c");
    EXPECT_THAT(Order(), ElementsAre("add 3 guid icon", "version 3 guid icon", "destroy 2"));
}

TEST_F(TrayIconSetTest, AnEntryLeftOverIsDeletedBeforeTheSecondTry) {
    TrayIconSet icons(Window);
    WantOnly(icons, 1);
    icons.Update(1, Image(1), L"a");
    Order();
    shell.refuses = RefuseNth(NIM_ADD, {1});
    icons.ReAddAll();
    EXPECT_THAT(Order(),
                ElementsAre("add 1 guid icon", "delete 1 guid icon", "add 1 guid icon", "version 1 guid icon"));
    EXPECT_THAT(debugLines, IsEmpty());
    EXPECT_TRUE(icons.slots[0].added);
}

TEST_F(TrayIconSetTest, AnEntryLeftOverWithoutItsGuidIsDeletedToo) {
    TrayIconSet icons(Window);
    WantOnly(icons, 1);
    shell.refuses = HasGuid;
    icons.Update(1, Image(1), L"a");
    Order();
    debugLines.clear();
    shell.refuses = RefuseNth(NIM_ADD, {1});
    icons.ReAddAll();
    EXPECT_THAT(Order(), ElementsAre("add 1 icon", "delete 1 icon", "add 1 icon", "version 1 icon"));
    EXPECT_THAT(debugLines, IsEmpty());
    EXPECT_TRUE(icons.slots[0].added);
}

TEST_F(TrayIconSetTest, AnEntryLeftOverThatIsRefusedTwiceIsReportedOnce) {
    TrayIconSet icons(Window);
    WantOnly(icons, 1);
    icons.AddAll();
    Order();
    for (const bool deleteWorks : {true, false}) {
        debugLines.clear();
        shell.refuses = [=](const ShellCall& call) {
            return IsAdd(call) || (call.message == NIM_DELETE && !deleteWorks);
        };
        icons.ReAddAll();
        EXPECT_THAT(Order(), ElementsAre("add 1 guid", "delete 1 guid", "add 1 guid"));
        EXPECT_THAT(debugLines, ElementsAre(AddRefused));
        EXPECT_FALSE(icons.slots[0].added);
    }
}

TEST_F(TrayIconSetTest, AfterARestartOfTheShellAllComeBackWithTheirImages) {
    TrayIconSet icons(Window);
    icons.AddAll();
    for (std::uint32_t id = 1; id <= 4; ++id)
        icons.Update(id, Image(id), L"x");
    Order();
    icons.ReAddAll();
    EXPECT_THAT(Order(),
                ElementsAre("add 1 guid icon", "version 1 guid icon", "add 2 guid icon", "version 2 guid icon",
                            "add 3 guid icon", "version 3 guid icon", "add 4 guid icon", "version 4 guid icon"));
    EXPECT_THAT(shell.destroyed, IsEmpty());
}

TEST_F(TrayIconSetTest, ReAddingHiddenIconsMakesNoCalls) {
    TrayIconSet icons(Window);
    icons.AddAll();
    for (std::uint32_t id = 1; id <= 4; ++id)
        icons.SetVisible(id, false);
    Order();
    icons.ReAddAll();
    EXPECT_THAT(Order(), IsEmpty());
}

TEST_F(TrayIconSetTest, ARefusedVersionDoesNotMatter) {
    TrayIconSet icons(Window);
    shell.refuses = [](const ShellCall& call) { return call.message == NIM_SETVERSION; };
    EXPECT_EQ(icons.AddAll(), 4U);
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(TrayIconSetTest, VisibilityActsOnlyOnAChange) {
    TrayIconSet icons(Window);
    icons.SetVisible(2, true);
    EXPECT_THAT(Order(), IsEmpty()) << "wanted from the start, though not added";
    icons.SetVisible(2, false);
    icons.SetVisible(2, false);
    EXPECT_THAT(Order(), IsEmpty()) << "hidden before it was ever added";
    icons.SetVisible(2, true);
    icons.SetVisible(2, true);
    EXPECT_THAT(Order(), ElementsAre("add 2 guid", "version 2 guid"));
    icons.SetVisible(2, false);
    icons.SetVisible(2, false);
    EXPECT_THAT(Order(), ElementsAre("delete 2 guid"));
}

TEST_F(TrayIconSetTest, ARefusedDeleteCountsAsDeleted) {
    TrayIconSet icons(Window);
    icons.AddAll();
    Order();
    shell.refuses = [](const ShellCall& call) { return call.message == NIM_DELETE; };
    icons.SetVisible(1, false);
    EXPECT_FALSE(icons.slots[0].added);
    icons.SetVisible(1, true);
    EXPECT_THAT(Order(), ElementsAre("delete 1 guid", "add 1 guid", "version 1 guid"));
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(TrayIconSetTest, AHiddenIconTakesOnImageAndTextForLater) {
    TrayIconSet icons(Window);
    icons.SetVisible(3, false);
    icons.Update(3, Image(1), L"old");
    icons.Update(3, Image(2), L"new");
    EXPECT_THAT(Order(), ElementsAre("destroy 1")) << "nothing goes to the shell";
    icons.SetVisible(3, true);
    EXPECT_THAT(Order(), ElementsAre("add 3 guid icon", "version 3 guid icon"));
    EXPECT_STREQ(shell.calls.back().data.szTip, L"new");
    EXPECT_EQ(shell.calls.back().data.hIcon, Handle(2));
}

TEST_F(TrayIconSetTest, AHiddenIconKeepsItsImage) {
    TrayIconSet icons(Window);
    WantOnly(icons, 1);
    icons.Update(1, Image(1), L"a");
    icons.SetVisible(1, false);
    Order();
    icons.SetVisible(1, true);
    EXPECT_THAT(Order(), ElementsAre("add 1 guid icon", "version 1 guid icon"));
    EXPECT_THAT(shell.destroyed, IsEmpty());
}

TEST_F(TrayIconSetTest, ATextIsCutAt127Characters) {
    TrayIconSet icons(Window);
    icons.AddAll();
    for (const std::size_t length : {0U, 1U, 126U, 127U, 128U, 129U, 5000U}) {
        std::wstring text;
        for (std::size_t i = 0; i < length; ++i)
            text += static_cast<wchar_t>(L'a' + i % 26);
        icons.Update(1, UniqueIcon(), text);
        EXPECT_EQ(std::wstring(shell.calls.back().data.szTip), text.substr(0, 127)) << length;
    }
    icons.Update(1, UniqueIcon(), L"ab");
    for (std::size_t i = 2; i < 128; ++i)
        EXPECT_EQ(shell.calls.back().data.szTip[i], L'\0') << "nothing old remains";
    icons.Update(1, UniqueIcon(), L"Red\nBajada: 1  Subida: 2");
    EXPECT_STREQ(shell.calls.back().data.szTip, L"Red\nBajada: 1  Subida: 2");
}

TEST_F(TrayIconSetTest, ABalloonGoesToTheFirstIconThatCan) {
    TrayIconSet icons(Window);
    icons.AddAll();
    icons.Update(1, Image(1), L"tip");
    Order();
    EXPECT_TRUE(icons.ShowBalloon(L"Title", L"Text"));
    EXPECT_THAT(Order(), ElementsAre("modify 1 guid info"));
    const NOTIFYICONDATAW& data = shell.calls.back().data;
    EXPECT_EQ(data.uFlags, 0x30U);
    EXPECT_EQ(data.dwInfoFlags, 36U);
    EXPECT_EQ(data.hBalloonIcon, BalloonImage);
    EXPECT_STREQ(data.szInfoTitle, L"Title");
    EXPECT_STREQ(data.szInfo, L"Text");
    EXPECT_EQ(data.cbSize, 976U);
    EXPECT_EQ(data.hWnd, Window);
    EXPECT_EQ(shell.destroyed.count(BalloonImage), 0U) << "a loaded icon is shared";

    icons.SetVisible(1, false);
    Order();
    EXPECT_TRUE(icons.ShowBalloon(L"Title", L"Text"));
    EXPECT_THAT(Order(), ElementsAre("modify 2 guid info"));

    shell.refuses = [](const ShellCall& call) { return call.data.uID <= 3; };
    EXPECT_TRUE(icons.ShowBalloon(L"Title", L"Text"));
    EXPECT_THAT(Order(), ElementsAre("modify 2 guid info", "modify 3 guid info", "modify 4 guid info"));
    shell.refuses = [](const ShellCall&) { return true; };
    EXPECT_FALSE(icons.ShowBalloon(L"Title", L"Text"));
    EXPECT_EQ(Order().size(), 3U);
    for (std::size_t i = 1; i < 4; ++i)
        EXPECT_TRUE(icons.slots[i].added) << "a refused balloon does not affect the icon";
}

TEST_F(TrayIconSetTest, ABalloonWithoutIconsIsLost) {
    TrayIconSet icons(Window);
    EXPECT_FALSE(icons.ShowBalloon(L"Title", L"Text")) << "wanted, but not added";
    icons.AddAll();
    for (std::uint32_t id = 1; id <= 4; ++id)
        icons.SetVisible(id, false);
    Order();
    EXPECT_FALSE(icons.ShowBalloon(L"Title", L"Text"));
    EXPECT_THAT(Order(), IsEmpty());
}

TEST_F(TrayIconSetTest, ABalloonsTextsAreCut) {
    TrayIconSet icons(Window);
    icons.AddAll();
    for (const std::size_t length : {0U, 62U, 63U, 64U, 254U, 255U, 256U, 3000U}) {
        const std::wstring text(length, L'x');
        EXPECT_TRUE(icons.ShowBalloon(text, text));
        EXPECT_EQ(std::wstring(shell.calls.back().data.szInfoTitle), text.substr(0, 63)) << length;
        EXPECT_EQ(std::wstring(shell.calls.back().data.szInfo), text.substr(0, 255)) << length;
    }
}

TEST_F(TrayIconSetTest, TheKeyboardGoesToAnIconThatIsThere) {
    TrayIconSet icons(Window);
    icons.GiveFocus(1);
    EXPECT_THAT(Order(), IsEmpty()) << "not added yet";
    shell.refuses = [](const ShellCall& call) { return call.data.uID == 2 && HasGuid(call); };
    icons.AddAll();
    icons.SetVisible(3, false);
    Order();
    for (const std::uint32_t id : {0U, 1U, 2U, 3U, 4U, 5U, 0xFFFFFFFFU})
        icons.GiveFocus(id);
    EXPECT_THAT(Order(), ElementsAre("focus 1 guid", "focus 2", "focus 4 guid"));
}

TEST_F(TrayIconSetTest, RemovingDeletesWhatIsThereAndDestroysEachImageOnce) {
    {
        TrayIconSet icons(Window);
        icons.AddAll();
        icons.Update(1, Image(11), L"a");
        icons.SetVisible(2, false);
        icons.Update(2, Image(12), L"b");
        Order();
        icons.RemoveAll();
        EXPECT_THAT(Order(),
                    ElementsAre("delete 1 guid", "destroy 11", "destroy 12", "delete 3 guid", "delete 4 guid"));
        for (const TrayIconSlot& slot : icons.slots)
            EXPECT_FALSE(slot.icon);
        icons.RemoveAll();
        EXPECT_THAT(Order(), IsEmpty());

        icons.Update(1, Image(13), L"c");
        icons.Update(2, Image(14), L"d");
        EXPECT_THAT(Order(), ElementsAre("add 1 guid icon", "version 1 guid icon")) << "wanted icons come back";
    }
    EXPECT_THAT(Order(), ElementsAre("delete 1 guid", "destroy 13", "destroy 14")) << "the end removes all";
    for (const auto& [icon, times] : shell.destroyed)
        EXPECT_EQ(times, 1) << icon;
}

TEST_F(TrayIconSetTest, ThroughAnyMixOfRefusalsEveryImageIsDestroyedExactlyOnce) {
    std::uint32_t seed = 7;
    const auto next = [&seed](std::uint32_t range) { return (seed = seed * 1664525U + 1013904223U) / 65536U % range; };
    shell.refuses = [&next](const ShellCall&) { return next(3) == 0; };
    std::uintptr_t made = 0;
    {
        TrayIconSet icons(Window);
        for (int step = 0; step < 3000; ++step) {
            const std::uint32_t id = 1 + next(4);
            switch (next(8)) {
                case 0:
                    icons.SetVisible(id, next(2) == 0);
                    break;
                case 1:
                    icons.ReAddAll();
                    break;
                case 2:
                    icons.RemoveAll();
                    break;
                case 3:
                    icons.Update(id, UniqueIcon(), L"none");
                    break;
                default:
                    icons.Update(id, Image(++made), L"text");
            }
            for (const TrayIconSlot& slot : icons.slots)
                ASSERT_FALSE(slot.added && !slot.wanted) << "after step " << step;
        }
    }
    EXPECT_EQ(shell.destroyed.size(), made);
    for (const auto& [icon, times] : shell.destroyed)
        EXPECT_EQ(times, 1) << icon;
}

}  // namespace
}  // namespace kestrane
