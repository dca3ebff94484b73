#include "update/update_dialog_win32.h"

#include <shellapi.h>

#include <array>
#include <cstdint>
#include <string>
#include <utility>

#include "base/callback_win32.h"
#include "base/com_apartment_win32.h"
#include "base/debug_log_win32.h"
#include "base/font_win32.h"
#include "base/geometry_win32.h"
#include "base/high_contrast_win32.h"
#include "base/icon_win32.h"
#include "base/module_path_win32.h"
#include "base/resource_ids.h"
#include "text/text_util.h"
#include "text/translation.h"
#include "update/own_version.h"
#include "update/self_replacer_win32.h"
#include "update/update_dialog_download_win32.h"
#include "update/update_rules.h"
#include "update/update_texts.h"

namespace kestrane {
namespace {

// The controls of the template.
constexpr int IdHeadline = 3001;
constexpr int IdRunningVersion = 3002;
constexpr int IdOfferedVersion = 3003;
constexpr int IdChangesLink = 3004;
constexpr int IdNote = 3005;
constexpr int IdProgress = 3006;
constexpr int IdWebLink = 3007;
constexpr int IdUpdate = 3008;

/// Posted to itself when the dialog has moved to a monitor of another DPI.
constexpr UINT WM_UPDATE_DRESS = 0x8020;

// How the dialog ends.
constexpr INT_PTR Closed = 0;
constexpr INT_PTR Downloaded = 1;

constexpr COLORREF LinkColor = RGB(0, 102, 204);
constexpr COLORREF BarColor = RGB(47, 125, 225);
constexpr std::int32_t ButtonIconSize = 16;  // pixels at 96 DPI
constexpr const wchar_t* DownloadingText = L"Descargando la versión nueva...";
constexpr int LongestTitle = 128;
constexpr int LongestText = 256;

HWND Control(const UpdateDialogState& state, int id) {
    return GetDlgItem(state.dialog, id);
}

void Show(const UpdateDialogState& state, int id, bool shown) {
    ShowWindow(Control(state, id), shown ? SW_SHOW : SW_HIDE);
}

void Tell(const UpdateDialogState& state, const std::wstring& text) {
    SetDlgItemTextW(state.dialog, IdNote, text.c_str());
}

bool IsLink(HWND control) {
    const int id = GetDlgCtrlID(control);
    return id == IdChangesLink || id == IdWebLink;
}

/// Gives a button the keyboard and makes it the default one.
void FocusButton(const UpdateDialogState& state, int id) {
    SendMessageW(state.dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Control(state, id)), TRUE);
}

// Opening.

BOOL CALLBACK TranslateControl(HWND control, LPARAM) noexcept {
    std::array<wchar_t, LongestText> text{};
    if (GetWindowTextW(control, text.data(), LongestText) > 0) SetWindowTextW(control, Tr(text.data()));
    return TRUE;
}

void Translate(HWND dialog) {
    std::array<wchar_t, LongestTitle> title{};
    GetWindowTextW(dialog, title.data(), LongestTitle);
    SetWindowTextW(dialog, Tr(title.data()));
    EnumChildWindows(dialog, TranslateControl, 0);
}

void GiveFont(const UpdateDialogState& state, int id, const UniqueFont& font) {
    SendDlgItemMessageW(state.dialog, id, WM_SETFONT, reinterpret_cast<WPARAM>(font.Get()), TRUE);
}

/// Makes room for a link in a font with wider letters than those for which the template was made. Nothing stands right
/// of it.
void FitLink(const UpdateDialogState& state, int id) {
    const HWND link = Control(state, id);
    std::array<wchar_t, LongestText> text{};
    GetWindowTextW(link, text.data(), LongestText);
    RECT place{};
    GetClientRect(link, &place);
    const std::int32_t width = TextWidth(state.linkFont.Get(), text.data());
    if (width <= place.right) return;
    SetWindowPos(link, nullptr, 0, 0, width, place.bottom, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

/// Fonts and icon of the dialog's present DPI. The controls keep the old ones until they have the new.
void Dress(UpdateDialogState& state) {
    auto* const font = reinterpret_cast<HFONT>(SendMessageW(state.dialog, WM_GETFONT, 0, 0));
    if (UniqueFont bold = MakeBold(font)) {
        GiveFont(state, IdHeadline, bold);
        GiveFont(state, IdOfferedVersion, bold);
        state.boldFont = std::move(bold);
    }
    if (UniqueFont underlined = MakeUnderlined(font)) {
        GiveFont(state, IdChangesLink, underlined);
        GiveFont(state, IdWebLink, underlined);
        state.linkFont = std::move(underlined);
        FitLink(state, IdChangesLink);
        FitLink(state, IdWebLink);
    }
    const int size = ScaleForDpi(ButtonIconSize, GetDpiForWindow(state.dialog));
    UniqueIcon icon = LoadIconResource(ResourceUpdate, size);
    if (!icon) return;
    SendDlgItemMessageW(state.dialog, IdUpdate, BM_SETIMAGE, IMAGE_ICON, reinterpret_cast<LPARAM>(icon.Get()));
    state.buttonIcon = std::move(icon);
}

void CentreIn(HWND dialog, const Rect& workArea) {
    RECT window{};
    GetWindowRect(dialog, &window);
    const int x = (RectWidth(workArea) - (window.right - window.left)) / 2 + workArea.left;
    const int y = (RectHeight(workArea) - (window.bottom - window.top)) / 2 + workArea.top;
    SetWindowPos(dialog, nullptr, x, y, 0, 0, SWP_NOSIZE);
}

void ComeToFront(HWND dialog) {
    POINT cursor{};
    GetCursorPos(&cursor);
    const Rect workArea = WorkAreaOf(MonitorFromPoint(cursor, MONITOR_DEFAULTTONEAREST));
    const UINT dpi = GetDpiForWindow(dialog);
    CentreIn(dialog, workArea);
    // A monitor of another DPI has given it another size.
    if (GetDpiForWindow(dialog) != dpi) CentreIn(dialog, workArea);
    SetForegroundWindow(dialog);
}

void OnInitDialog(UpdateDialogState& state, HWND dialog) {
    state.dialog = dialog;
    Translate(dialog);
    Dress(state);
    SetDlgItemTextW(dialog, IdRunningVersion, WidenBytes(OwnVersion()).c_str());
    SetDlgItemTextW(dialog, IdOfferedVersion, WidenBytes(state.info->version).c_str());
    Show(state, IdWebLink, false);
    Show(state, IdProgress, false);
    const std::wstring reason = CheckSelfUpdatePossible(state.exePath);
    state.blocked = !reason.empty();
    if (state.blocked) {
        Tell(state, reason);
        Show(state, IdWebLink, true);
        EnableWindow(Control(state, IdUpdate), FALSE);
    }
    state.roles.emplace(std::array{Control(state, IdChangesLink), Control(state, IdWebLink)},
                        Control(state, IdProgress), Tr(DownloadingText));
    ComeToFront(dialog);
    FocusButton(state, state.blocked ? IDCANCEL : IdUpdate);
}

// Downloading.

void ShowFailure(UpdateDialogState& state) {
    state.downloading = false;
    state.errorText = DownloadFailureText(state.failure);
    Show(state, IdProgress, false);
    Tell(state, state.errorText);
    EnableWindow(Control(state, IdUpdate), TRUE);
}

void ShowProgress(UpdateDialogState& state) {
    InvalidateRect(Control(state, IdProgress), nullptr, FALSE);
    if (state.roles) state.roles->ShowProgress(state.permille);
}

void StartDownload(UpdateDialogState& state) {
    if (state.downloading || state.blocked) return;
    state.downloading = true;
    state.permille = 0;
    state.cancel = false;
    state.ended = false;
    state.failure = {};
    FocusButton(state, IDCANCEL);  // first, because a disabled button would keep the keyboard
    EnableWindow(Control(state, IdUpdate), FALSE);
    Show(state, IdProgress, true);
    Tell(state, Tr(DownloadingText));
    ShowProgress(state);
    if (state.downloadThread.Start(RunUpdateDownload, &state)) return;
    state.failure = {DownloadStep::Save, GetLastError()};
    ShowFailure(state);
}

/// Only what the thread itself has noted counts, not the message: any program could post that.
void OnDownloadDone(UpdateDialogState& state) {
    if (!state.downloading || !state.ended) return;
    state.downloadThread.Join();
    if (state.downloaded) {
        state.downloading = false;
        EndDialog(state.dialog, Downloaded);
    } else {
        ShowFailure(state);
    }
}

/// Waits for the bytes that are being awaited, at most for the time-out.
void StopDownload(UpdateDialogState& state) {
    if (!state.downloadThread.IsJoinable()) return;
    state.cancel = true;
    SetCursor(LoadCursorW(nullptr, IDC_WAIT));
    state.downloadThread.Join();
    state.downloading = false;
}

void PaintProgress(const UpdateDialogState& state, const DRAWITEMSTRUCT& item) {
    const SavedDc saved(item.hDC);
    FillRect(item.hDC, &item.rcItem, GetSysColorBrush(COLOR_WINDOW));
    RECT filled = item.rcItem;
    filled.right = filled.left + (filled.right - filled.left) * state.permille / 1000;
    SetDCBrushColor(item.hDC, BarColor);
    FillRect(item.hDC, &filled, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    FrameRect(item.hDC, &item.rcItem, GetSysColorBrush(COLOR_GRAYTEXT));
}

// Links.

void OpenPage(const UpdateDialogState& state, const wchar_t* path) {
    ShellExecuteW(state.dialog, L"open", UpdatePage(path).c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

HBRUSH OnStaticColor(HDC dc, HWND control) {
    if (!IsLink(control)) return nullptr;
    SetTextColor(dc, IsHighContrast() ? GetSysColor(COLOR_HOTLIGHT) : LinkColor);
    SetBkMode(dc, TRANSPARENT);
    return GetSysColorBrush(COLOR_BTNFACE);
}

bool OnSetCursor(const UpdateDialogState& state, HWND control) {
    if (!IsLink(control)) return false;
    SetCursor(LoadCursorW(nullptr, IDC_HAND));
    SetWindowLongPtrW(state.dialog, DWLP_MSGRESULT, TRUE);
    return true;
}

void OnClick(UpdateDialogState& state, int id) {
    switch (id) {
        case IDCANCEL:
            StopDownload(state);
            EndDialog(state.dialog, Closed);
            break;
        case IdChangesLink:
            OpenPage(state, L"/changelog.html");
            break;
        case IdWebLink:
            OpenPage(state, L"/");
            break;
        case IdUpdate:
            StartDownload(state);
            break;
        default:
            break;
    }
}

INT_PTR OnMessage(UpdateDialogState& state, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_UPDATE_PROGRESS:
            ShowProgress(state);
            return TRUE;
        case WM_UPDATE_DONE:
            OnDownloadDone(state);
            return TRUE;
        case WM_COMMAND:
            static_assert(BN_CLICKED == STN_CLICKED);
            if (HIWORD(wParam) == BN_CLICKED) OnClick(state, LOWORD(wParam));
            return TRUE;
        case WM_DRAWITEM:
            if (wParam != IdProgress) return FALSE;
            PaintProgress(state, *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
            return TRUE;
        case WM_CTLCOLORSTATIC:
            return reinterpret_cast<INT_PTR>(
                OnStaticColor(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam)));
        case WM_SETCURSOR:
            return OnSetCursor(state, reinterpret_cast<HWND>(wParam));
        case WM_DPICHANGED:
            // The system resizes the dialog by itself after this message, and gives every control the same font.
            PostMessageW(state.dialog, WM_UPDATE_DRESS, 0, 0);
            return FALSE;
        case WM_UPDATE_DRESS:
            Dress(state);
            return TRUE;
        case WM_DESTROY:
            // Also reached without a click on "Cerrar", when the program ends.
            StopDownload(state);
            state.roles.reset();
            return TRUE;
        default:
            return FALSE;
    }
}

UpdateDialogState* StateOf(HWND window) {
    return reinterpret_cast<UpdateDialogState*>(GetWindowLongPtrW(window, DWLP_USER));
}

INT_PTR CALLBACK DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, lParam);
        if (UpdateDialogState* state = StateOf(window); state != nullptr) {
            OnInitDialog(*state, window);
        } else {
            EndDialog(window, -1);  // it would not hear of anything, not even of its own end
        }
        return FALSE;  // the focus is where it belongs
    }
    UpdateDialogState* state = StateOf(window);
    return state != nullptr ? Answer(OnMessage(*state, message, wParam, lParam)) : FALSE;
}

}  // namespace

bool ShowUpdateDialog(HINSTANCE instance, HWND owner, const UpdateInfo& info) {
    const ComApartment apartment;  // for screen readers, and for extensions of the shell when it opens a page
    UpdateDialogState state;
    state.info = &info;
    state.exePath = ModulePath();
    const INT_PTR result = DialogBoxParamW(instance, MAKEINTRESOURCEW(ResourceUpdateDialog), owner, DialogProc,
                                           reinterpret_cast<LPARAM>(&state));
    if (state.dialog == nullptr) LogDebug(L"kestrane: no se pudo crear el dialogo de actualizacion\n");
    if (result == Downloaded) return true;
    // It arrived whole, but too late.
    if (state.downloaded) DeleteNewFile(state.exePath);
    return false;
}

}  // namespace kestrane
