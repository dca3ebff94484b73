// Clicks on the icons, the context menu and its commands. The menu runs a nested message loop in which the window can
// be destroyed; after it, check `shuttingDown` before touching anything.
#include "app/app_win32.h"

#include <windows.h>

#include "app/menu_images_win32.h"
#include "app/tray_events.h"
#include "app/tray_menu.h"
#include "base/version.h"
#include "dialog/settings_dialog_win32.h"
#include "settings/ini_file_win32.h"
#include "settings/task_manager_win32.h"
#include "text/translation.h"
#include "tray/icon_render_win32.h"

namespace kestrane {
namespace {

void AppendEntry(HMENU menu, const TrayMenuEntry& entry) {
    if (entry.id == 0) {
        AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
        return;
    }
    const UINT flags = entry.checked ? MF_STRING | MF_CHECKED : MF_STRING;
    AppendMenuW(menu, flags, entry.id, entry.text.c_str());
}

void FillMenu(HMENU menu, const std::vector<TrayMenuEntry>& entries, int imageSize, std::vector<UniqueBitmap>& images) {
    for (const TrayMenuEntry& entry : entries) {
        AppendEntry(menu, entry);
        if (entry.resource != 0) AddMenuIcon(menu, entry.id, entry.resource, imageSize, images);
    }
    SetMenuDefaultItem(menu, DefaultCommand, FALSE);
}

/// Shows the menu and returns the chosen command, or 0. The menu closes on a click elsewhere only if its window is in
/// the foreground and gets a message afterwards.
std::uint32_t TrackMenu(HMENU menu, HWND window, int x, int y) {
    UINT flags = TPM_RIGHTBUTTON | TPM_NONOTIFY | TPM_RETURNCMD;
    if (GetSystemMetrics(SM_MENUDROPALIGNMENT) > 0) flags |= TPM_RIGHTALIGN;
    const BOOL command = TrackPopupMenuEx(menu, flags, x, y, window, nullptr);
    PostMessageW(window, WM_NULL, 0, 0);
    return static_cast<std::uint32_t>(command);
}

}  // namespace

void App::OnTrayNotify(WPARAM wParam, LPARAM lParam) {
    const TrayNotification notification = DecodeTrayNotification(wParam, lParam);
    switch (RouteTrayNotification(notification)) {
        case TrayAction::ShowMenu:
            ShowTrayMenu(notification.iconId, notification.x, notification.y);
            break;
        case TrayAction::ClickGraphIcon:
            if (const auto graph = GraphOfIcon(notification.iconId)) OnIconClick(*graph, notification.event);
            break;
        case TrayAction::OpenTaskManager:
            OpenTaskManager(TaskManagerPage(notification.iconId, sample));
            break;
        case TrayAction::OpenUpdate:
            OnUpdateRequested();
            break;
        case TrayAction::None:
            break;
    }
}

void App::OnIconClick(GraphKind kind, std::uint32_t event) {
    if (PassesClickFilter(event, GetTickCount64(), GetDoubleClickTime(), nextClickTick[IconPosition(kind)])) {
        ToggleGraph(kind);
    }
}

void App::ToggleGraph(GraphKind kind) {
    GraphWindow& graph = *graphs[IndexOf(kind)];
    GraphSettings& graphSettings = GraphSettingsOf(settings, kind);
    const GraphToggle toggle = DecideToggle(graphSettings, graph.IsShown(), graph.IsCovered());
    if (toggle == GraphToggle::Stay) return;
    if (toggle == GraphToggle::Raise) {
        graph.Raise();
        return;
    }
    graphSettings.graph = toggle == GraphToggle::Open;
    ApplyGraph(kind);
    SaveGraphWindows(settings);
}

void App::ShowTrayMenu(std::uint32_t iconId, int x, int y) {
    if (RunTrayMenu(iconId, x, y) != NothingChosen) return;
    // A click on another window, which ends the menu too, has given the keyboard to that one.
    if (GetForegroundWindow() == window) HeldIcons()->GiveFocus(iconId);
}

std::optional<std::uint32_t> App::RunTrayMenu(std::uint32_t iconId, int x, int y) {
    if (menuOpen || FocusSettingsDialog()) return std::nullopt;
    const std::uint32_t command = ChooseFromTrayMenu(x, y);
    if (!shuttingDown) RunCommand(command, iconId, {x, y});
    return shuttingDown ? std::nullopt : std::optional(command);
}

std::uint32_t App::ChooseFromTrayMenu(int x, int y) {
    std::vector<UniqueBitmap> images;  // declared first: must outlive the menu
    const UniqueMenu menu(CreatePopupMenu());
    FillMenu(menu.Get(), BuildTrayMenu(settings, ShownGraphs(), OfferedVersion()),
             static_cast<int>(IconPixelSize(window)), images);
    SetForegroundWindow(window);
    menuOpen = true;
    const std::uint32_t command = TrackMenu(menu.Get(), window, x, y);
    menuOpen = false;
    return command;
}

void App::RunCommand(std::uint32_t command, std::uint32_t iconId, const Point& point) {
    if (command >= CommandPinFirst && command <= CommandPinLast) {
        TogglePin(static_cast<GraphKind>(command - CommandPinFirst));
    } else if (command == CommandPerformance) {
        OpenTaskManager(TaskManagerPage(iconId, sample));
    } else if (command == CommandSettings) {
        ShowSettings(point);
    } else if (command == CommandAbout) {
        ShowAbout();
    } else if (command == CommandUpdate) {
        OnUpdateRequested();
    } else if (command == CommandExit) {
        DestroyWindow(window);
    }
}

bool App::FocusSettingsDialog() const {
    if (!settingsOpen) return false;
    const HWND dialog = OpenSettingsDialog();
    if (dialog == nullptr) return true;  // it is just being created
    if (IsIconic(dialog)) ShowWindow(dialog, SW_RESTORE);
    // The dialog, or the box that is open on top of it.
    SetForegroundWindow(GetLastActivePopup(dialog));
    return true;
}

void App::ShowSettings(const Point& anchor) {
    if (FocusSettingsDialog()) return;
    settingsOpen = true;
    ShowSettingsDialog(instance, window, anchor, settings, *this);
    settingsOpen = false;
    if (!shuttingDown) RefreshAllIcons();
}

void App::TogglePin(GraphKind kind) {
    GraphSettings& graphSettings = GraphSettingsOf(settings, kind);
    graphSettings.pinned = !graphSettings.pinned;
    graphs[IndexOf(kind)]->ApplyStyle();
    SaveGraphWindows(settings);
}

void App::ShowAbout() {
    const std::wstring text = FormatText(
        L"kestrane {0}\n\nMonitor de CPU, disco, memoria y red en la bandeja.\nClic derecho sobre un icono para abrir "
        L"los ajustes.\nClic en el icono de CPU, disco o red: su gráfica.\nCtrl+Shift+B: gráfica de red.\n\nAjustes: "
        L"{1}\n\nIconos: Fugue Icons de Marlo Tesshin (CC BY 3.0).",
        {ProgramVersion, IniPath()});
    MessageBoxW(window, text.c_str(), Tr(L"Acerca de kestrane"), MB_ICONINFORMATION);
}

}  // namespace kestrane
