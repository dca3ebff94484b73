// The list of interfaces: a real list box in a window that records what it is asked to toggle.
#include "dialog/interface_list_win32.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "dialog/dialog_messages_win32.h"

namespace kestrane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr wchar_t PropertyName[] = L"kestrane.listproc";
constexpr int ItemHeight = 20;

/// What reached the list box's own procedure.
std::vector<UINT> reached;

/// The list answers with the nearest item to a point in its client area, which is all that its documentation promises.
bool findsTheNearest = false;

LRESULT CALLBACK OwnProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    static const auto real = reinterpret_cast<WNDPROC>(GetClassLongPtrW(window, GCLP_WNDPROC));
    reached.push_back(message);
    if (message == LB_ITEMFROMPOINT && findsTheNearest) {
        const LRESULT found = CallWindowProcW(real, window, message, wParam, lParam);
        return MAKELRESULT(LOWORD(found), 0);
    }
    return CallWindowProcW(real, window, message, wParam, lParam);
}

WNDPROC ProcedureOf(HWND window) {
    return reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC));
}

LPARAM At(int x, int y) {
    return MAKELPARAM(static_cast<WORD>(x), static_cast<WORD>(y));
}

class InterfaceList : public testing::Test {
  protected:
    InterfaceList() {
        parent_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 300, 200, nullptr, nullptr,
                                  GetModuleHandleW(nullptr), nullptr);
        list_ = CreateWindowExW(0, L"LISTBOX", L"",
                                WS_CHILD | WS_VISIBLE | WS_TABSTOP | LBS_NOTIFY | LBS_OWNERDRAWFIXED | LBS_HASSTRINGS |
                                    LBS_NOINTEGRALHEIGHT,
                                10, 10, 200, 100, parent_, nullptr, GetModuleHandleW(nullptr), nullptr);
        SendMessageW(list_, LB_SETITEMHEIGHT, 0, ItemHeight);
        for (const wchar_t* text : {L"a", L"b", L"c"})
            SendMessageW(list_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
        SetWindowLongPtrW(list_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&OwnProcedure));
        SubclassInterfaceList(list_);
        reached.clear();
    }
    ~InterfaceList() override { DestroyWindow(parent_); }

    /// The items that the parent was asked to toggle since the last call.
    std::vector<WPARAM> Toggled() const {
        std::vector<WPARAM> items;
        MSG message;
        while (PeekMessageW(&message, parent_, WM_TOGGLE_INTERFACE, WM_TOGGLE_INTERFACE, PM_REMOVE) != FALSE) {
            EXPECT_EQ(message.lParam, 0);
            items.push_back(message.wParam);
        }
        return items;
    }

    LRESULT Caret() const { return SendMessageW(list_, LB_GETCARETINDEX, 0, 0); }

    HWND parent_;
    HWND list_;
};

TEST_F(InterfaceList, TheMessagesHaveTheNumbersOfTheDialog) {
    EXPECT_EQ(WM_TOGGLE_INTERFACE, 0x800AU);
    EXPECT_EQ(WM_RETRANSLATE, 0x800BU);
}

TEST_F(InterfaceList, SpaceTogglesTheItemWithTheCaret) {
    SendMessageW(list_, LB_SETCARETINDEX, 2, FALSE);
    reached.clear();
    EXPECT_EQ(SendMessageW(list_, WM_KEYDOWN, VK_SPACE, 1), 0);
    EXPECT_THAT(Toggled(), ElementsAre(2U));
    EXPECT_THAT(reached, ElementsAre(static_cast<UINT>(LB_GETCARETINDEX))) << "the key is swallowed";
}

TEST_F(InterfaceList, OtherKeysAreTheLists) {
    SendMessageW(list_, WM_KEYDOWN, VK_DOWN, 1);
    EXPECT_THAT(reached, testing::Contains(static_cast<UINT>(WM_KEYDOWN)));
    EXPECT_THAT(Toggled(), IsEmpty());
}

TEST_F(InterfaceList, AClickTogglesItsItemAndTakesTheFocus) {
    for (const UINT click : {UINT{WM_LBUTTONDOWN}, UINT{WM_LBUTTONDBLCLK}}) {
        SetFocus(parent_);
        reached.clear();
        EXPECT_EQ(SendMessageW(list_, click, MK_LBUTTON, At(150, ItemHeight + 5)), 0);
        EXPECT_THAT(Toggled(), ElementsAre(1U));
        EXPECT_EQ(Caret(), 1);
        EXPECT_EQ(GetFocus(), list_);
        EXPECT_THAT(reached, testing::Not(testing::Contains(click))) << "the click is swallowed";
        EXPECT_NE(GetCapture(), list_);
        EXPECT_EQ(SendMessageW(list_, LB_GETCURSEL, 0, 0), LB_ERR) << "nothing is selected";
    }
}

// While an item is selected, the list refuses to move its caret.
TEST_F(InterfaceList, AClickMovesTheCaretAwayFromAnItemThatTheArrowKeysSelected) {
    SendMessageW(list_, WM_KEYDOWN, VK_DOWN, 1);
    ASSERT_NE(SendMessageW(list_, LB_GETCURSEL, 0, 0), LB_ERR);
    reached.clear();
    SendMessageW(list_, WM_LBUTTONDOWN, MK_LBUTTON, At(5, 2 * ItemHeight + 5));
    EXPECT_EQ(SendMessageW(list_, LB_GETCURSEL, 0, 0), LB_ERR);
    EXPECT_EQ(Caret(), 2);
    EXPECT_LT(std::ranges::find(reached, UINT{LB_SETCURSEL}), std::ranges::find(reached, UINT{LB_SETCARETINDEX}));
    EXPECT_THAT(Toggled(), ElementsAre(2U));
}

TEST_F(InterfaceList, AScrolledItemIsFoundWhereItStands) {
    for (int i = 0; i < 7; ++i)
        SendMessageW(list_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L"d"));
    SendMessageW(list_, LB_SETTOPINDEX, 4, 0);
    SendMessageW(list_, WM_LBUTTONDOWN, MK_LBUTTON, At(5, 5));
    EXPECT_THAT(Toggled(), ElementsAre(4U));
}

TEST_F(InterfaceList, AClickBelowTheLastItemDoesNothingButTakeTheFocus) {
    SendMessageW(list_, LB_SETCARETINDEX, 0, FALSE);
    for (const bool nearest : {false, true}) {
        findsTheNearest = nearest;
        for (const UINT click : {UINT{WM_LBUTTONDOWN}, UINT{WM_LBUTTONDBLCLK}}) {
            SetFocus(parent_);
            reached.clear();
            EXPECT_EQ(SendMessageW(list_, click, MK_LBUTTON, At(50, 3 * ItemHeight + 5)), 0);
            EXPECT_THAT(Toggled(), IsEmpty());
            EXPECT_EQ(Caret(), 0);
            EXPECT_EQ(GetFocus(), list_);
            EXPECT_THAT(reached, testing::Not(testing::Contains(click)));
        }
    }
    findsTheNearest = false;
    SendMessageW(list_, LB_RESETCONTENT, 0, 0);
    SendMessageW(list_, WM_LBUTTONDOWN, MK_LBUTTON, At(50, 5));
    EXPECT_THAT(Toggled(), IsEmpty()) << "nor does one on an empty list";
}

TEST_F(InterfaceList, OtherMessagesReachItsOwnProcedure) {
    EXPECT_EQ(SendMessageW(list_, LB_GETCOUNT, 0, 0), 3);
    SendMessageW(list_, WM_RBUTTONDOWN, MK_RBUTTON, At(5, 5));
    EXPECT_THAT(reached, testing::IsSupersetOf({static_cast<UINT>(LB_GETCOUNT), static_cast<UINT>(WM_RBUTTONDOWN)}));
    EXPECT_THAT(Toggled(), IsEmpty());
}

TEST_F(InterfaceList, ASecondTimeItStaysAsItIs) {
    const WNDPROC procedure = ProcedureOf(list_);
    const HANDLE old = GetPropW(list_, PropertyName);
    SubclassInterfaceList(list_);
    const HANDLE now = GetPropW(list_, PropertyName);
    SetPropW(list_, PropertyName, old);  // or the next message would never end
    EXPECT_EQ(now, old);
    EXPECT_EQ(ProcedureOf(list_), procedure);
    EXPECT_EQ(SendMessageW(list_, LB_GETCOUNT, 0, 0), 3);
}

TEST_F(InterfaceList, NoListIsNoMatter) {
    SubclassInterfaceList(nullptr);
    EXPECT_NE(ProcedureOf(list_), &OwnProcedure);
}

// The window is still there while its WM_NCDESTROY is handled, so the list box's own procedure can look.
TEST_F(InterfaceList, AtTheEndItsOwnProcedureIsBackAndThePropertyGone) {
    struct Seen {
        int destroyed = 0;
        bool procedure = false;
        bool property = true;
    };
    static Seen seen;
    seen = {};
    EXPECT_NE(GetPropW(list_, PropertyName), nullptr);
    EXPECT_NE(ProcedureOf(list_), &OwnProcedure);
    const WNDPROC look = [](HWND window, UINT message, WPARAM wParam, LPARAM lParam) -> LRESULT {
        if (message == WM_NCDESTROY) {
            ++seen.destroyed;
            seen.procedure = ProcedureOf(window) == reinterpret_cast<WNDPROC>(GetPropW(window, L"test.look"));
            seen.property = GetPropW(window, PropertyName) != nullptr;
        }
        return OwnProcedure(window, message, wParam, lParam);
    };
    SetPropW(list_, PropertyName, reinterpret_cast<HANDLE>(look));
    SetPropW(list_, L"test.look", reinterpret_cast<HANDLE>(look));
    DestroyWindow(list_);
    EXPECT_EQ(seen.destroyed, 1);
    EXPECT_TRUE(seen.procedure);
    EXPECT_FALSE(seen.property);
}

}  // namespace
}  // namespace kestrane
