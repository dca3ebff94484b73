// What the dialog owns and gives back, icons, fonts, brushes and its timer, and the colours of its controls.
#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <set>

#include "base/handles_win32.h"
#include "dialog/control_table.h"
#include "dialog/dialog_messages_win32.h"
#include "support/settings_dialog_world_win32.h"

namespace kestrane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What the faked calls do and have seen.
struct System {
    std::map<int, COLORREF> colors;
    std::multiset<void*> owned;  // icons, fonts and brushes
    int acquired = 0;
    std::vector<std::string> timers;
};
System sys;

DWORD WINAPI ColorOrReal(int index) {
    static const auto real = REAL(L"user32", GetSysColor);
    const auto color = sys.colors.find(index);
    return color != sys.colors.end() ? color->second : real(index);
}

template <typename Handle>
Handle Acquired(Handle handle) {
    if (handle == nullptr) return handle;
    sys.owned.insert(handle);
    ++sys.acquired;
    return handle;
}

void Release(void* handle) {
    if (const auto owned = sys.owned.find(handle); owned != sys.owned.end()) sys.owned.erase(owned);
}

HANDLE WINAPI LoadOwnedImage(HINSTANCE instance, LPCWSTR name, UINT type, int width, int height, UINT flags) {
    static const auto real = REAL(L"user32", LoadImageW);
    return Acquired(real(instance, name, type, width, height, flags));
}

BOOL WINAPI DestroyOwnedIcon(HICON icon) {
    static const auto real = REAL(L"user32", DestroyIcon);
    Release(icon);
    return real(icon);
}

HFONT WINAPI CreateOwnedFont(const LOGFONTW* font) {
    static const auto real = REAL(L"gdi32", CreateFontIndirectW);
    return Acquired(real(font));
}

HBRUSH WINAPI CreateOwnedBrush(COLORREF color) {
    static const auto real = REAL(L"gdi32", CreateSolidBrush);
    return Acquired(real(color));
}

BOOL WINAPI DeleteOwnedObject(HGDIOBJ object) {
    static const auto real = REAL(L"gdi32", DeleteObject);
    Release(object);
    return real(object);
}

UINT_PTR WINAPI StartTimer(HWND window, UINT_PTR id, UINT period, TIMERPROC procedure) {
    static const auto real = REAL(L"user32", SetTimer);
    if (window != nullptr) sys.timers.push_back("set " + std::to_string(id) + " " + std::to_string(period));
    return real(window, id, period, procedure);
}

BOOL WINAPI StopTimer(HWND window, UINT_PTR id) {
    static const auto real = REAL(L"user32", KillTimer);
    if (window != nullptr) sys.timers.push_back("kill " + std::to_string(id));
    return real(window, id);
}

class SettingsDialogOwned : public SettingsDialogTest {
  protected:
    SettingsDialogOwned() { sys = {}; }
};

TEST_F(SettingsDialogOwned, EverythingThatTheDialogOwnsIsFreed) {
    WithDialog([] {
        VisitEveryPage();
        sys.colors[COLOR_BTNFACE] = RGB(10, 20, 30);
        Click(IdCpuPerCore);
        EXPECT_GE(sys.owned.size(), 2U + 7U + 1U + 5U)
            << "icons of buttons, tabs and titles, the bold font, the brushes";
    });
    EXPECT_THAT(sys.owned, IsEmpty()) << "of " << sys.acquired;
}

TEST_F(SettingsDialogOwned, SamplesChangeEveryTwoSecondsWhileItLives) {
    WithDialog([] { EXPECT_THAT(sys.timers, ElementsAre("set 1 2000")); });
    EXPECT_THAT(sys.timers, ElementsAre("set 1 2000", "kill 1"));
}

TEST_F(SettingsDialogOwned, AnswerWithTheirColours) {
    struct Row {
        const char* reason;
        std::int32_t id;
        HBRUSH brush;  // null: the tab's own
        bool grey;
    };
    WithDialog([] {
        sys.colors = {
            {COLOR_BTNFACE, RGB(10, 20, 30)}, {COLOR_GRAYTEXT, RGB(40, 50, 60)}, {COLOR_BTNTEXT, RGB(70, 80, 90)}};
        Click(IdCpuPerCore);  // after an edit the brushes follow the system
        const auto none = static_cast<HBRUSH>(GetStockObject(NULL_BRUSH));
        const auto boxTitle = ControlIds()[static_cast<std::size_t>(
            std::ranges::find(DialogRows, ControlType::BoxTitle, &DialogRow::type) - DialogRows.begin())];
        const std::vector<Row> rows = {
            {"a tab's title", IdCpuTitle, none, false},
            {"a box's title", boxTitle, none, false},
            {"a label", FirstAutomaticId + 3, nullptr, false},
            {"a column head", FirstAutomaticId, nullptr, false},
            {"a check box", IdCpuPerCore, nullptr, false},
            {"a note on a page", IdInterfacesNote, nullptr, true},
            {"a note below the pages", IdColorNote, GetSysColorBrush(COLOR_BTNFACE), true},
        };
        for (const Row& row : rows) {
            for (const UINT message : {UINT{WM_CTLCOLORSTATIC}, UINT{WM_CTLCOLORBTN}}) {
                const ScreenDc screen;
                const SavedDc saved(screen.Get());
                SetBkMode(screen.Get(), OPAQUE);
                SetTextColor(screen.Get(), RGB(1, 2, 3));
                const auto brush =
                    reinterpret_cast<HBRUSH>(SendMessageW(Dialog(), message, reinterpret_cast<WPARAM>(screen.Get()),
                                                          reinterpret_cast<LPARAM>(Control(row.id))));
                EXPECT_EQ(GetBkMode(screen.Get()), TRANSPARENT) << row.reason;
                EXPECT_EQ(GetTextColor(screen.Get()), row.grey ? RGB(40, 50, 60) : RGB(70, 80, 90)) << row.reason;
                if (row.brush != nullptr) {
                    EXPECT_EQ(brush, row.brush) << row.reason;
                    continue;
                }
                LOGBRUSH look{};
                EXPECT_NE(GetObjectW(brush, sizeof look, &look), 0) << row.reason;
                EXPECT_EQ(look.lbColor, RGB(10, 20, 30)) << row.reason;
                EXPECT_EQ(GetBkColor(screen.Get()), RGB(10, 20, 30)) << row.reason;
            }
        }
    });
}

TEST_F(SettingsDialogOwned, AreRedrawnAfterAnEditIfTheSystemsColoursHaveChanged) {
    opensAllPages = false;
    WithDialog([] {
        const auto isToBePainted = [](std::int32_t id) { return GetUpdateRect(Control(id), nullptr, FALSE) != FALSE; };
        Pump();
        UpdateWindow(Dialog());
        RedrawWindow(Dialog(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        ASSERT_FALSE(isToBePainted(IdCpuTab));
        Click(IdCpuPerCore);
        EXPECT_FALSE(isToBePainted(IdCpuTab)) << "the colours are the same";
        sys.colors[COLOR_BTNFACE] = RGB(10, 20, 30);
        Click(IdCpuPerCore);
        EXPECT_TRUE(isToBePainted(IdCpuTab));
    });
}

}  // namespace
}  // namespace kestrane

extern "C" {
decltype(&GetSysColor) __imp_GetSysColor = &kestrane::ColorOrReal;
decltype(&LoadImageW) __imp_LoadImageW = &kestrane::LoadOwnedImage;
decltype(&DestroyIcon) __imp_DestroyIcon = &kestrane::DestroyOwnedIcon;
decltype(&CreateFontIndirectW) __imp_CreateFontIndirectW = &kestrane::CreateOwnedFont;
decltype(&CreateSolidBrush) __imp_CreateSolidBrush = &kestrane::CreateOwnedBrush;
decltype(&DeleteObject) __imp_DeleteObject = &kestrane::DeleteOwnedObject;
decltype(&SetTimer) __imp_SetTimer = &kestrane::StartTimer;
decltype(&KillTimer) __imp_KillTimer = &kestrane::StopTimer;
}
