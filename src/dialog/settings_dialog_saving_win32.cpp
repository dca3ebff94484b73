// What is enabled, and what the buttons do: save a page, restore its defaults, close without saving.
#include "dialog/settings_dialog_win32.h"

#include <windows.h>

#include <algorithm>

#include "settings/autostart_win32.h"
#include "settings/ini_file_win32.h"
#include "settings/settings_tab.h"
#include "text/translation.h"

namespace kestrane {

GeneralPage SettingsDialog::ShownGeneral() const {
    return {IsTicked(IdAutostart), IsTicked(IdAutostartAllUsers), settings_.check_updates};
}

void SettingsDialog::UpdateButtons() {
    const ButtonStates states = EvaluateButtons(settings_, saved_, defaults_, ShownGeneral(), saved_general_);
    for (const ControlRow& control : controls_.Rows()) {
        if (!FollowsSwitch(control.row)) continue;
        const SettingsTab tab = DialogGroups[static_cast<std::size_t>(control.row.group)].tab;
        Enable(control.window, states.page[IndexOf(tab)]);
    }
    for (std::size_t i = 0; i < TabCount; ++i) {
        Enable(Control(DialogTabs[i].save), states.save[i]);
        Enable(Control(DialogTabs[i].restore), states.restore[i]);
        if (DialogTabs[i].show != NoId) InvalidateControl(DialogTabs[i].show);
    }
    Enable(Control(IdAutostartAllUsers), states.all_users);
}

/// A disabled control that kept the focus would swallow the keyboard, so the next one gets it.
void SettingsDialog::Enable(HWND control, bool enabled) {
    if ((IsWindowEnabled(control) != FALSE) == enabled) return;
    if (!enabled && GetFocus() == control) SendMessageW(window_, WM_NEXTDLGCTL, 0, FALSE);
    EnableWindow(control, enabled ? TRUE : FALSE);
}

void SettingsDialog::SavePage(SettingsTab tab) {
    if (tab == SettingsTab::General) return SaveGeneral();
    if (tab == SettingsTab::Memory && !StoreThresholds()) {
        Tell(L"Los umbrales de memoria deben ser números entre 1 y 100, de menor a mayor.", MB_ICONWARNING);
        SendMessageW(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Control(IdThreshold1)), TRUE);
        return;
    }
    if (!SaveSettingsTab(settings_, tab)) {
        Tell(L"No se pudo guardar el fichero de ajustes.", MB_ICONWARNING);
        return;
    }
    CopySettingsTab(saved_, settings_, tab);
    UpdateButtons();
}

/// The boxes stay as the user set them, so after a failure the page still counts as changed.
void SettingsDialog::SaveGeneral() {
    if (!SetAutostart(WantedAutostart(ShownGeneral()), window_)) {
        Tell(
            L"No se pudo cambiar el autoarranque. Para \"Todos los usuarios\" hace falta aceptar la elevación de "
            L"permisos.",
            MB_ICONWARNING);
    }
    saved_general_.autostart_mode = GetAutostartMode();
    if (settings_.check_updates != saved_general_.saved_check_updates) {
        SaveCheckUpdates(settings_);
        saved_general_.saved_check_updates = settings_.check_updates;
    }
    UpdateButtons();
}

/// Saves nothing.
void SettingsDialog::RestorePage(SettingsTab tab) {
    if (tab == SettingsTab::General) return RestoreGeneral();
    CopySettingsTab(settings_, defaults_, tab);
    GenerateSamples(samples_, settings_.thresholds);
    FillControls();
    LayoutDialog();
    AfterEdit();
}

void SettingsDialog::RestoreGeneral() {
    Tick(IdAutostart, false);
    Tick(IdAutostartAllUsers, false);
    settings_.check_updates = defaults_.check_updates;
    Tick(IdCheckUpdates, settings_.check_updates);
    AfterEdit();
}

void SettingsDialog::Cancel() {
    for (const SettingsTab tab : {SettingsTab::Cpu, SettingsTab::Disk, SettingsTab::Memory, SettingsTab::Network})
        CopySettingsTab(settings_, saved_, tab);
    settings_.check_updates = saved_general_.saved_check_updates;
    // One page shown but not saved, another hidden and saved: together they would leave no icon to come back by. A file
    // that hides them all shows them all, too.
    if (std::ranges::count(settings_.show, true) == 0) settings_.show = defaults_.show;
    closed_ = true;
    host_.OnSettingsChanged();
    EndDialog(window_, 0);
}

void SettingsDialog::Tell(const wchar_t* text, UINT icon) {
    MessageBoxW(window_, Tr(text), L"kestrane", MB_OK | icon);
}

}  // namespace kestrane
