#include "dialog/settings_dialog_win32.h"

#include <string>
#include <utility>

#include "base/callback_win32.h"
#include "base/com_apartment_win32.h"
#include "base/debug_log_win32.h"
#include "base/font_win32.h"
#include "base/geometry_win32.h"
#include "base/icon_win32.h"
#include "dialog/dialog_messages_win32.h"
#include "dialog/dialog_resources.h"
#include "dialog/interface_list_win32.h"
#include "dialog/item_layout.h"
#include "settings/autostart_win32.h"
#include "settings/ini_file_win32.h"
#include "text/translation.h"
#include "tray/icon_render_win32.h"

namespace kestrane {
namespace {

constexpr UINT_PTR SampleTimer = 1;
constexpr UINT SampleTimerMs = 2000;
constexpr WPARAM ThresholdDigits = 3;
constexpr std::int32_t PageIconSize = 16;  // pixels at 96 DPI

HWND openDialog = nullptr;

}  // namespace

void ShowSettingsDialog(HINSTANCE instance, HWND owner, const Point& anchor, AppSettings& settings,
                        SettingsDialogHost& host) {
    SettingsDialog dialog(instance, anchor, settings, host);
    if (!dialog.Run(owner)) LogDebug(L"kestrane: no se pudo crear el dialogo de ajustes\n");
}

HWND OpenSettingsDialog() {
    return openDialog;
}

SettingsDialog::SettingsDialog(HINSTANCE instance, const Point& anchor, AppSettings& settings, SettingsDialogHost& host)
    : instance_(instance),
      anchor_(anchor),
      settings_(settings),
      saved_(settings),
      defaults_(MakeDefaultSettings()),
      host_(host) {}

bool SettingsDialog::Run(HWND owner) {
    const ComApartment apartment;
    const INT_PTR result = DialogBoxParamW(instance_, MAKEINTRESOURCEW(ResourceSettingsDialog), owner, DialogProc,
                                           reinterpret_cast<LPARAM>(this));
    openDialog = nullptr;
    return result != -1;
}

SettingsDialog* SettingsDialog::Of(HWND window) {
    return reinterpret_cast<SettingsDialog*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

INT_PTR CALLBACK SettingsDialog::DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, GWLP_USERDATA, lParam);
        if (SettingsDialog* dialog = Of(window); dialog != nullptr) {
            dialog->OnInitDialog(window);
        } else {
            EndDialog(window, -1);  // it would not hear of anything, not even of its own end
        }
        return TRUE;
    }
    SettingsDialog* dialog = Of(window);
    return dialog != nullptr ? Answer(dialog->OnMessage(message, wParam, lParam)) : FALSE;
}

INT_PTR SettingsDialog::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND:
            OnCommand(LOWORD(wParam), HIWORD(wParam));
            return TRUE;
        case WM_TIMER:
            if (wParam != SampleTimer) return FALSE;
            GenerateSamples(samples_, settings_.thresholds);
            InvalidateSamples();
            return TRUE;
        case WM_PAINT:
            OnPaint();
            return TRUE;
        case WM_DRAWITEM:
            return OnDrawItem(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
        case WM_MEASUREITEM:
            return OnMeasureItem(*reinterpret_cast<MEASUREITEMSTRUCT*>(lParam));
        case WM_CTLCOLORBTN:
        case WM_CTLCOLORSTATIC:
            return reinterpret_cast<INT_PTR>(
                OnControlColor(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam)));
        case WM_CONTEXTMENU:
            return OnContextMenu(reinterpret_cast<HWND>(wParam));
        case WM_TOGGLE_INTERFACE:
            OnToggleInterface(wParam);
            return TRUE;
        case WM_RETRANSLATE:
            Retranslate();
            return TRUE;
        case WM_DPICHANGED:
            // The system resizes the dialog by itself after this message, and gives every control the same font.
            PostMessageW(window_, WM_SETTINGS_DRESS, 0, 0);
            return FALSE;
        case WM_SETTINGS_DRESS:
            Dress();
            return TRUE;
        case WM_CLOSE:
            Cancel();
            return TRUE;
        case WM_DESTROY:
            OnDestroy();
            return TRUE;
        default:
            return FALSE;
    }
}

void SettingsDialog::OnInitDialog(HWND window) {
    window_ = window;
    openDialog = window;
    combos_.emplace(window);
    bold_font_ = MakeBold(Fonts().regular);
    ResizeIconSamples(samples_, IconPixelSize(window));
    RebuildTabBrushes();
    controls_.Create(window, Fonts(), host_.FixedDisks());
    well_names_.emplace(window);
    roles_.emplace(window);
    NameWells();
    const DialogState state = LoadDialogState();
    tab_ = TabOfNumber(state.tab);
    for (std::size_t i = 0; i < HardwareCount; ++i)
        LoadHardwareRows(static_cast<SettingsTab>(i));
    SetWindowTextW(window, Tr(SettingsDialogTitle));
    for (const std::int32_t id : ThresholdFields)
        SendDlgItemMessageW(window, id, EM_SETLIMITTEXT, ThresholdDigits, 0);
    BindSampleSeries(samples_, host_.ProcessorClasses());
    GenerateSamples(samples_, settings_.thresholds);
    ShowGeneral();
    FillControls();
    LoadIcons();
    SubclassInterfaceList(Control(IdInterfaces));
    MeasureHeights();
    LayoutDialog();
    PlaceWindow(state);
    UpdateButtons();
    TellStates();
    SetTimer(window, SampleTimer, SampleTimerMs, nullptr);
}

/// What the General page shows is not in the settings, or saved on its own.
void SettingsDialog::ShowGeneral() {
    saved_general_ = {GetAutostartMode(), settings_.check_updates};
    Tick(IdAutostart, saved_general_.autostart_mode != AutostartMode::Off);
    Tick(IdAutostartAllUsers, saved_general_.autostart_mode == AutostartMode::AllUsers);
    Tick(IdCheckUpdates, settings_.check_updates);
    combos_->Choose(IdLanguage, static_cast<std::int32_t>(settings_.language));
}

/// The controls keep the icons of another DPI until they have the new ones.
void SettingsDialog::LoadIcons() {
    const auto oldIcons = std::exchange(owned_icons_, {});
    const auto oldTabIcons = std::exchange(tab_icons_, {});
    const int smallIcon = GetSystemMetricsForDpi(SM_CXSMICON, Dpi());
    const int buttonSize = smallIcon < 1 ? PageIconSize : smallIcon;
    const auto loadOwned = [&](std::uint32_t resource) {
        return owned_icons_.emplace_back(LoadIconResource(resource, buttonSize)).Get();
    };
    const auto giveIcon = [&](std::int32_t button, HICON icon) {
        SendDlgItemMessageW(window_, button, BM_SETIMAGE, IMAGE_ICON, reinterpret_cast<LPARAM>(icon));
    };
    const HICON restore = loadOwned(RestoreButtonIcon);
    const HICON save = loadOwned(SaveButtonIcon);
    const int size = ScaleForDpi(PageIconSize, Dpi());
    for (std::size_t i = 0; i < TabCount; ++i) {
        giveIcon(DialogTabs[i].restore, restore);
        giveIcon(DialogTabs[i].save, save);
        tab_icons_[i] = LoadIconResource(TabIcons[i], size);
        SendDlgItemMessageW(window_, DialogTabs[i].icon, STM_SETIMAGE, IMAGE_ICON,
                            reinterpret_cast<LPARAM>(tab_icons_[i].Get()));
    }
    hardware_icon_ = LoadIconResource(HardwareSectionIcon, size);
    graph_icon_ = LoadIconResource(GraphSectionIcon, size);
}

void SettingsDialog::PlaceWindow(const DialogState& state) {
    const std::uint32_t dpi = Dpi();
    MoveToPlace(state);
    if (Dpi() == dpi) return;
    // A monitor of another DPI has given it another size.
    Dress();
    MoveToPlace(state);
}

void SettingsDialog::MoveToPlace(const DialogState& state) {
    RECT window{};
    GetWindowRect(window_, &window);
    const std::int32_t width = window.right - window.left;
    const std::int32_t height = window.bottom - window.top;
    const DialogPlace place = OpeningPlace(state, anchor_, width, height);
    const Rect workArea = WorkAreaOf(MonitorFromPoint(ToPlatform(place.monitor), MONITOR_DEFAULTTONEAREST));
    const Point corner = MovedIntoWorkArea(place.corner, workArea, width, height);
    SetWindowPos(window_, nullptr, corner.x, corner.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

/// Everything that the system does not do for the dialog's present DPI.
void SettingsDialog::Dress() {
    const UniqueFont oldFont = std::exchange(bold_font_, MakeBold(Fonts().regular));  // lives until nobody has it
    controls_.Dress(Fonts());
    LoadIcons();
    SendDlgItemMessageW(window_, IdInterfaces, LB_SETITEMHEIGHT, 0, InterfaceItemHeight(Dpi()));
    MeasureHeights();
    LayoutDialog();
}

/// An edit can end the program, and with it the names.
void SettingsDialog::NameWells() {
    if (well_names_) well_names_->Update(settings_.thresholds);
}

void SettingsDialog::TellStates() {
    if (roles_) roles_->Update(settings_.show, tab_);
}

/// Also reached without Cancel, when the program ends.
void SettingsDialog::OnDestroy() {
    RECT window{};
    if (GetWindowRect(window_, &window) && !IsIconic(window_))
        SaveDialogState({true, window.left, window.top, static_cast<std::uint32_t>(tab_)});
    KillTimer(window_, SampleTimer);
    well_names_.reset();
    roles_.reset();
    openDialog = nullptr;
}

DialogFonts SettingsDialog::Fonts() const {
    return {reinterpret_cast<HFONT>(SendMessageW(window_, WM_GETFONT, 0, 0)), bold_font_.Get()};
}

}  // namespace kestrane
