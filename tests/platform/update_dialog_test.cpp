// The frame of the update dialog: what it says, where it opens, how it is used and closed. With real windows on
// monitors of the test's own.
#include <gmock/gmock.h>

#include <array>
#include <map>

#include "support/fake_contrast_win32.h"
#include "support/fake_window_record_win32.h"
#include "support/update_dialog_world_win32.h"

namespace kestrane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// What the faked calls say and record.
struct Screen {
    POINT cursor{};
    std::map<HMONITOR, RECT> workAreas;
    HMONITOR monitor = nullptr;  // under the cursor
    std::vector<POINT> asked;    // for their monitor
    INT_PTR dialogBox = 1;       // not 1: the dialog cannot be created, and this is the answer
    UINT otherDpi = 0;           // of the window from its first move on; 0: the screen's
    bool moved = false;
    int moves = 0;
    std::vector<HWND> foreground;
    HCURSOR shape = nullptr;
};
Screen screen;

BOOL WINAPI TellCursor(LPPOINT point) {
    *point = screen.cursor;
    return TRUE;
}

HMONITOR WINAPI FindMonitor(POINT point, DWORD flags) {
    EXPECT_EQ(flags, static_cast<DWORD>(MONITOR_DEFAULTTONEAREST));
    screen.asked.push_back(point);
    return screen.monitor;
}

BOOL WINAPI TellMonitor(HMONITOR monitor, LPMONITORINFO told) {
    EXPECT_EQ(told->cbSize, sizeof *told);
    told->rcWork = screen.workAreas.at(monitor);
    return TRUE;
}

INT_PTR WINAPI OpenOrFail(HINSTANCE instance, LPCWSTR name, HWND owner, DLGPROC procedure, LPARAM lParam) {
    static const auto real = REAL(L"user32", DialogBoxParamW);
    return screen.dialogBox != 1 ? screen.dialogBox : real(instance, name, owner, procedure, lParam);
}

UINT WINAPI TellDpi(HWND window) {
    static const auto real = REAL(L"user32", GetDpiForWindow);
    return screen.moved && screen.otherDpi != 0 ? screen.otherDpi : real(window);
}

/// A window that comes to a monitor of twice the DPI becomes twice as large.
BOOL WINAPI MoveWindowTo(HWND window, HWND after, int x, int y, int width, int height, UINT flags) {
    static const auto real = REAL(L"user32", SetWindowPos);
    if (window != OpenUpdateDialog()) return real(window, after, x, y, width, height, flags);
    EXPECT_EQ(flags, static_cast<UINT>(SWP_NOSIZE));
    ++screen.moves;
    const BOOL done = real(window, after, x, y, width, height, flags);
    if (!std::exchange(screen.moved, true) && screen.otherDpi != 0) {
        RECT rect{};
        GetWindowRect(window, &rect);
        real(window, nullptr, 0, 0, 2 * (rect.right - rect.left), 2 * (rect.bottom - rect.top), SWP_NOMOVE);
    }
    return done;
}

BOOL WINAPI RecordForeground(HWND window) {
    static const auto real = REAL(L"user32", SetForegroundWindow);
    screen.foreground.push_back(window);
    return real(window);
}

HCURSOR WINAPI RecordCursor(HCURSOR cursor) {
    screen.shape = cursor;
    return cursor;
}

const HMONITOR First = reinterpret_cast<HMONITOR>(1);
const HMONITOR Second = reinterpret_cast<HMONITOR>(2);

class UpdateDialogFrame : public UpdateDialogTest {
  protected:
    UpdateDialogFrame() {
        screen = {};
        keepsNoRecord = false;
        screen.monitor = First;
        screen.workAreas[First] = {0, 0, 1280, 760};
    }

    /// Of the dialog's window, if it has been moved to `workArea`.
    static Rect CentredIn(const RECT& workArea) {
        const Rect window = Window();
        const int x = (workArea.right - workArea.left - RectWidth(window)) / 2 + workArea.left;
        const int y = (workArea.bottom - workArea.top - RectHeight(window)) / 2 + workArea.top;
        return RectOf(x, y, RectWidth(window), RectHeight(window));
    }
    static Rect Window() {
        RECT rect{};
        GetWindowRect(Dialog(), &rect);
        return FromPlatform(rect);
    }
    static void Press(WPARAM key) {
        PostMessageW(GetFocus(), WM_KEYDOWN, key, 0);
        PostMessageW(GetFocus(), WM_KEYUP, key, 0xC0000000);
        Pump();
    }
    static bool IsDefault(int id) { return (SendMessageW(Control(id), WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON) != 0; }
};

/// Every text of the dialog, by the control's id. The labels have none.
std::multimap<int, std::wstring> TextsOf(HWND dialog) {
    std::multimap<int, std::wstring> texts;
    for (HWND control = GetWindow(dialog, GW_CHILD); control != nullptr; control = GetWindow(control, GW_HWNDNEXT)) {
        std::wstring text(512, L'\0');
        text.resize(static_cast<std::size_t>(GetWindowTextW(control, text.data(), 512)));
        const int id = GetDlgCtrlID(control);
        texts.emplace(id < 0 || id == 0xFFFF ? -1 : id, text);
    }
    return texts;
}

TEST_F(UpdateDialogFrame, SpeaksSpanish) {
    WithDialog([] {
        EXPECT_EQ(TextOf(Dialog()), L"Nueva versión de kestrane");
        const std::multimap<int, std::wstring> expected = {
            {3001, L"Hay una versión nueva de kestrane."},
            {-1, L"Versión actual:"},
            {3002, ProgramVersion},
            {-1, L"Versión disponible:"},
            {3003, L"9.8.7"},
            {3004, L"Ver los cambios de cada versión"},
            {3005,
             L"Al actualizar se descarga la versión nueva, se comprueba, se cierra kestrane y se vuelve a abrir ya "
             L"actualizado."},
            {3007, L"Ir a la web"},
            {3006, L""},
            {2, L"Cerrar"},
            {3008, L"Actualizar y reiniciar"},
        };
        EXPECT_EQ(TextsOf(Dialog()), expected);
    });
}

TEST_F(UpdateDialogFrame, SpeaksEnglish) {
    SetLanguage(ActiveEnglish);
    WithDialog([] {
        EXPECT_EQ(TextOf(Dialog()), L"New version of kestrane");
        const std::multimap<int, std::wstring> expected = {
            {3001, L"There is a new version of kestrane."},
            {-1, L"Current version:"},
            {3002, ProgramVersion},
            {-1, L"Available version:"},
            {3003, L"9.8.7"},
            {3004, L"See what changed in each version"},
            {3005,
             L"Updating downloads and checks the new version, closes kestrane and opens it again already updated."},
            {3007, L"Go to the website"},
            {3006, L""},
            {2, L"Close"},
            {3008, L"Update and restart"},
        };
        EXPECT_EQ(TextsOf(Dialog()), expected);
    });
}

TEST_F(UpdateDialogFrame, IsReadyIfTheExecutableCanBeReplaced) {
    EXPECT_FALSE(WithDialog([] {
        EXPECT_THAT(world->guarded, ElementsAre(L"C:\\Programs\\kestrane.exe"));
        EXPECT_FALSE(IsShown(Bar));
        EXPECT_FALSE(IsShown(Web));
        EXPECT_TRUE(IsEnabled(Update));
        EXPECT_TRUE(IsEnabled(IDCANCEL));
    }));
    EXPECT_EQ(world->downloads, 0);
    EXPECT_THAT(world->deleted, IsEmpty());
}

TEST_F(UpdateDialogFrame, EndsAtOnceIfItsWindowCannotFindIt) {
    keepsNoRecord = true;
    EXPECT_FALSE(ShowUpdateDialog(GetModuleHandleW(nullptr), nullptr, info));
    EXPECT_THAT(debugLines, ElementsAre(L"kestrane: no se pudo crear el dialogo de actualizacion\n"));
    EXPECT_EQ(OpenUpdateDialog(), nullptr);
}

TEST_F(UpdateDialogFrame, SaysWhyItIsBlocked) {
    world->reason = L"Because.";
    EXPECT_FALSE(WithDialog([] {
        EXPECT_EQ(TextOf(Note), L"Because.");
        EXPECT_FALSE(IsShown(Bar));
        EXPECT_TRUE(IsShown(Web));
        EXPECT_FALSE(IsEnabled(Update));
        EXPECT_TRUE(IsEnabled(IDCANCEL));
    }));
}

TEST_F(UpdateDialogFrame, WhileBlockedAClickDownloadsNothing) {
    world->reason = L"Because.";
    WithDialog([] {
        Notify(Update, BN_CLICKED);
        EXPECT_EQ(TextOf(Note), L"Because.");
        EXPECT_FALSE(IsShown(Bar));
    });
    EXPECT_EQ(world->downloads, 0);
}

TEST_F(UpdateDialogFrame, IsThereFromItsOpeningToItsEnd) {
    EXPECT_EQ(OpenUpdateDialog(), nullptr);
    WithDialog([] { EXPECT_TRUE(IsWindow(OpenUpdateDialog())); });
    EXPECT_EQ(OpenUpdateDialog(), nullptr);
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(UpdateDialogFrame, SaysSoIfItCannotBeCreated) {
    // Zero if the owner is no window, -1 for every other reason.
    for (const INT_PTR failure : {-1, 0}) {
        screen.dialogBox = failure;
        debugLines.clear();
        EXPECT_FALSE(ShowUpdateDialog(GetModuleHandleW(nullptr), nullptr, info));
        EXPECT_THAT(debugLines, ElementsAre(L"kestrane: no se pudo crear el dialogo de actualizacion\n"));
        EXPECT_EQ(OpenUpdateDialog(), nullptr);
    }
    EXPECT_THAT(world->deleted, IsEmpty());
}

TEST_F(UpdateDialogFrame, ClosesByItsButtonByEscAndByItsBox) {
    EXPECT_FALSE(WithDialog([] {
        Click(IDCANCEL);
        EXPECT_FALSE(IsOpen());
    }));
    EXPECT_FALSE(WithDialog([] {
        Press(VK_ESCAPE);
        EXPECT_FALSE(IsOpen());
    }));
    EXPECT_FALSE(WithDialog([] {
        SendMessageW(Dialog(), WM_SYSCOMMAND, SC_CLOSE, 0);
        Pump();
        EXPECT_FALSE(IsOpen());
    }));
}

TEST_F(UpdateDialogFrame, EndsWithItsOwner) {
    owner = CreateWindowW(L"STATIC", L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
    EXPECT_FALSE(WithDialog([&] {
        EXPECT_EQ(GetWindow(Dialog(), GW_OWNER), owner);
        DestroyWindow(owner);
        EXPECT_EQ(OpenUpdateDialog(), nullptr);
    }));
    EXPECT_THAT(debugLines, IsEmpty()) << "it had been created";
}

TEST_F(UpdateDialogFrame, EndsWithTheProgram) {
    EXPECT_FALSE(WithDialog([] {
        DestroyWindow(Dialog());
        PostQuitMessage(7);
    }));
    MSG message{};
    EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) << "the next loop must end too";
    EXPECT_EQ(message.wParam, 7U);
}

TEST_F(UpdateDialogFrame, TheUpdateHasTheKeyboardAndReturn) {
    WithDialog([] {
        EXPECT_EQ(GetFocus(), Control(Update));
        EXPECT_TRUE(IsDefault(Update));
        EXPECT_FALSE(IsDefault(IDCANCEL));
        Press(VK_TAB);
        EXPECT_EQ(GetFocus(), Control(IDCANCEL));
        Press(VK_TAB);
        EXPECT_EQ(GetFocus(), Control(Update));
        Press(VK_LEFT);
        EXPECT_EQ(GetFocus(), Control(IDCANCEL));
        Press(VK_RIGHT);
        EXPECT_EQ(GetFocus(), Control(Update));
        Press(VK_RETURN);
        PumpUntil([] { return !IsOpen(); });
    });
    EXPECT_EQ(world->downloads, 1);
}

TEST_F(UpdateDialogFrame, BlockedItClosesByReturn) {
    world->reason = L"Because.";
    WithDialog([] {
        EXPECT_EQ(GetFocus(), Control(IDCANCEL));
        EXPECT_TRUE(IsDefault(IDCANCEL));
        Press(VK_RETURN);
        EXPECT_FALSE(IsOpen());
    });
}

TEST_F(UpdateDialogFrame, OpensInTheMiddleOfTheMonitorUnderTheCursor) {
    screen.cursor = {-700, 333};
    screen.monitor = Second;
    screen.workAreas[Second] = {-1601, -100, -1, 953};
    WithDialog([] {
        ASSERT_THAT(screen.asked, SizeIs(1));
        EXPECT_EQ(FromPlatform(screen.asked[0]), (Point{-700, 333}));
        EXPECT_EQ(Window(), CentredIn(screen.workAreas[Second]));
        EXPECT_EQ(screen.moves, 1);
        EXPECT_THAT(screen.foreground, ElementsAre(Dialog()));
    });
}

TEST_F(UpdateDialogFrame, ASmallWorkAreaIsInItsMiddle) {
    screen.workAreas[First] = {10, 20, 110, 71};
    WithDialog([] { EXPECT_EQ(Window(), CentredIn(screen.workAreas[First])); });
}

TEST_F(UpdateDialogFrame, IsInTheMiddleWithTheSizeThatAMonitorOfAnotherDpiGivesIt) {
    screen.otherDpi = 192;
    WithDialog([] {
        EXPECT_EQ(screen.moves, 2);
        EXPECT_EQ(Window(), CentredIn(screen.workAreas[First]));
    });
}

TEST_F(UpdateDialogFrame, LinksOpenThePagesOfTheUpdateHost) {
    world->reason = L"Because.";
    WithDialog([] {
        Notify(Changes, STN_CLICKED);
        Notify(Web, STN_CLICKED);
        ASSERT_THAT(world->pages, SizeIs(2));
        EXPECT_EQ(world->pages[0].address, L"https://kestrane.example/changelog.html");
        EXPECT_EQ(world->pages[1].address, L"https://kestrane.example/");
        for (const OpenedPage& page : world->pages) {
            EXPECT_EQ(page.owner, Dialog());
            EXPECT_EQ(page.verb, L"open");
            EXPECT_EQ(page.show, SW_SHOWNORMAL);
        }
        EXPECT_TRUE(IsOpen());
    });
}

TEST_F(UpdateDialogFrame, ADoubleClickOnALinkOpensOnePage) {
    WithDialog([] {
        for (const auto message : std::array<UINT, 4>{WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP})
            SendMessageW(Control(Changes), message, MK_LBUTTON, MAKELPARAM(3, 3));
        EXPECT_THAT(world->pages, SizeIs(1));
    });
}

TEST_F(UpdateDialogFrame, OtherNotificationsDoNothing) {
    WithDialog([] {
        for (const UINT code : {1U, 2U, 6U, 7U}) {
            for (const int id : {Changes, Web, Update, IDCANCEL})
                Notify(id, code);
        }
        Notify(Headline, STN_CLICKED);
        Notify(Note, STN_CLICKED);
        EXPECT_TRUE(IsOpen());
    });
    EXPECT_THAT(world->pages, IsEmpty());
    EXPECT_EQ(world->downloads, 0);
}

TEST_F(UpdateDialogFrame, CanEndWhileThePageOpens) {
    EXPECT_FALSE(WithDialog([] {
        world->onPage = [] { DestroyWindow(Dialog()); };
        Notify(Changes, STN_CLICKED);
    }));
    EXPECT_THAT(world->pages, SizeIs(1));
}

/// Its own blue would be lost on a dark background.
TEST_F(UpdateDialogFrame, AContrastThemeGivesLinksTheirColor) {
    WithDialog([] {
        const HDC dc = GetDC(Dialog());
        const auto colorIn = [dc](Contrast theme) {
            contrast = theme;
            SendMessageW(Dialog(), WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc),
                         reinterpret_cast<LPARAM>(Control(Web)));
            return GetTextColor(dc);
        };
        ASSERT_NE(GetSysColor(COLOR_HOTLIGHT), RGB(0, 102, 204));
        EXPECT_EQ(colorIn(Contrast::On), GetSysColor(COLOR_HOTLIGHT));
        EXPECT_EQ(colorIn(Contrast::Unknown), RGB(0, 102, 204));
        EXPECT_EQ(colorIn(Contrast::Off), RGB(0, 102, 204));
        ReleaseDC(Dialog(), dc);
    });
}

TEST_F(UpdateDialogFrame, LinksHaveTheHandAndTheirOwnColor) {
    WithDialog([] {
        const HDC dc = GetDC(Dialog());
        const auto brushOf = [&](int id) {
            SetTextColor(dc, RGB(1, 2, 3));
            SetBkMode(dc, OPAQUE);
            return SendMessageW(Dialog(), WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc),
                                reinterpret_cast<LPARAM>(Control(id)));
        };
        const auto pointAt = [](int id) {
            screen.shape = nullptr;
            return SendMessageW(Dialog(), WM_SETCURSOR, reinterpret_cast<WPARAM>(Control(id)),
                                MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
        };
        for (const int link : {Changes, Web}) {
            EXPECT_EQ(brushOf(link), reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_BTNFACE))) << link;
            EXPECT_EQ(GetTextColor(dc), RGB(0, 102, 204)) << link;
            EXPECT_EQ(GetBkMode(dc), TRANSPARENT) << link;
            EXPECT_EQ(pointAt(link), 1) << link;
            EXPECT_EQ(screen.shape, LoadCursorW(nullptr, IDC_HAND)) << link;
        }
        for (const int other : {Headline, Running, Offered, Note, Bar, IDCANCEL, Update}) {
            brushOf(other);
            EXPECT_NE(GetTextColor(dc), RGB(0, 102, 204)) << other;
            EXPECT_EQ(pointAt(other), 0) << other;
            EXPECT_NE(screen.shape, LoadCursorW(nullptr, IDC_HAND)) << other;
        }
        ReleaseDC(Dialog(), dc);
    });
}

LOGFONTW FontOf(HWND window) {
    LOGFONTW font{};
    GetObjectW(reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)), sizeof font, &font);
    return font;
}

TEST_F(UpdateDialogFrame, EmphasizesTheNewsAndUnderlinesTheLinks) {
    WithDialog([] {
        const LOGFONTW plain = FontOf(Dialog());
        EXPECT_STREQ(plain.lfFaceName, L"Segoe UI");
        EXPECT_EQ(plain.lfWeight, FW_NORMAL);
        for (const int id : {Headline, Running, Offered, Changes, Note, Web, IDCANCEL, Update}) {
            const LOGFONTW font = FontOf(Control(id));
            EXPECT_STREQ(font.lfFaceName, plain.lfFaceName) << id;
            EXPECT_EQ(font.lfHeight, plain.lfHeight) << id;
            EXPECT_EQ(font.lfWeight, id == Headline || id == Offered ? 700 : plain.lfWeight) << id;
            EXPECT_EQ(font.lfUnderline, id == Changes || id == Web ? 1 : 0) << id;
        }
    });
}

int WidthOf(HICON icon) {
    ICONINFO parts{};
    BITMAP bitmap{};
    if (icon == nullptr || !GetIconInfo(icon, &parts)) return 0;
    GetObjectW(parts.hbmMask, sizeof bitmap, &bitmap);
    DeleteObject(parts.hbmMask);
    DeleteObject(parts.hbmColor);
    return bitmap.bmWidth;
}

HICON IconOf(HWND button) {
    return reinterpret_cast<HICON>(SendMessageW(button, BM_GETIMAGE, IMAGE_ICON, 0));
}

TEST_F(UpdateDialogFrame, TheUpdateHasAnIcon) {
    WithDialog([] {
        EXPECT_EQ(WidthOf(IconOf(Control(Update))), MulDiv(16, static_cast<int>(GetDpiForWindow(Dialog())), 96));
        EXPECT_EQ(IconOf(Control(IDCANCEL)), nullptr);
    });
}

/// On a change of the DPI the system gives every control the dialog's plain font.
TEST_F(UpdateDialogFrame, DressesAnewOnAMonitorOfAnotherDpi) {
    WithDialog([] {
        screen.moved = true;
        screen.otherDpi = 144;
        const LPARAM plain = SendMessageW(Dialog(), WM_GETFONT, 0, 0);
        RECT place{};
        GetWindowRect(Dialog(), &place);
        SendMessageW(Dialog(), WM_DPICHANGED, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&place));
        for (const int id : {Headline, Offered, Changes, Web})
            SendMessageW(Control(id), WM_SETFONT, static_cast<WPARAM>(plain), FALSE);
        Pump();
        EXPECT_EQ(FontOf(Control(Headline)).lfWeight, 700);
        EXPECT_EQ(FontOf(Control(Offered)).lfWeight, 700);
        EXPECT_EQ(FontOf(Control(Changes)).lfUnderline, 1);
        EXPECT_EQ(FontOf(Control(Web)).lfUnderline, 1);
        EXPECT_EQ(WidthOf(IconOf(Control(Update))), 24);
    });
}

}  // namespace
}  // namespace kestrane

extern "C" {
decltype(&GetCursorPos) __imp_GetCursorPos = &kestrane::TellCursor;
decltype(&MonitorFromPoint) __imp_MonitorFromPoint = &kestrane::FindMonitor;
decltype(&GetMonitorInfoW) __imp_GetMonitorInfoW = &kestrane::TellMonitor;
decltype(&DialogBoxParamW) __imp_DialogBoxParamW = &kestrane::OpenOrFail;
decltype(&GetDpiForWindow) __imp_GetDpiForWindow = &kestrane::TellDpi;
decltype(&SetWindowPos) __imp_SetWindowPos = &kestrane::MoveWindowTo;
decltype(&SetForegroundWindow) __imp_SetForegroundWindow = &kestrane::RecordForeground;
decltype(&SetCursor) __imp_SetCursor = &kestrane::RecordCursor;
}
