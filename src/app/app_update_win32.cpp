// Newer versions: when the check runs, how the user hears of one, and how it takes over. The update dialog and the box
// run nested message loops in which the window can be destroyed; after them, check `shuttingDown` before touching
// anything.
#include "app/app_win32.h"

#include <windows.h>

#include "base/module_path_win32.h"
#include "base/version.h"
#include "settings/ini_file_win32.h"
#include "text/text_util.h"
#include "text/translation.h"
#include "update/install_id_win32.h"
#include "update/own_version.h"
#include "update/self_replacer_win32.h"
#include "update/update_dialog_win32.h"
#include "update/update_texts.h"

namespace kestrane {

void App::ApplyUpdateCheckSetting() noexcept {
    // The program may have ended in the call to the shell before this one; then no worker may start any more.
    if (shuttingDown || settings.check_updates == updateChecker.IsRunning()) return;
    if (!settings.check_updates) {
        updateChecker.Stop();
        return;
    }
    EnsureInstallId();
    updateChecker.Start(window, OwnVersion(), settings.install_id);
}

/// Saved at once, so that it stays the same whatever the user does next. Without a random source there is none, and the
/// next start of the check tries again.
void App::EnsureInstallId() {
    if (!settings.install_id.empty()) return;
    settings.install_id = GenerateInstallId();
    if (!settings.install_id.empty()) SaveInstallId(settings);
}

void App::OnUpdateState() {
    UpdateInfo info;
    if (!updateChecker.GetAvailable(info) || info.version == lastNotifiedVersion) return;
    const std::shared_ptr<TrayIconSet> icons = HeldIcons();
    if (!icons) return;
    lastNotifiedVersion = info.version;
    icons->ShowBalloon(Tr(L"Nueva versión de kestrane"), OfferText(info.version, ProgramVersion));
}

std::optional<std::wstring> App::OfferedVersion() const {
    UpdateInfo info;
    if (!updateChecker.GetAvailable(info)) return std::nullopt;
    return WidenBytes(info.version);
}

void App::OnUpdateRequested() {
    if (updateDialogOpen || FocusSettingsDialog()) return;
    UpdateInfo info;
    if (!updateChecker.GetAvailable(info)) return;  // taken back since the menu or the notification appeared
    updateDialogOpen = true;
    const bool isReady = ShowUpdateDialog(instance, window, info);
    updateDialogOpen = false;
    if (isReady && !shuttingDown) FinishSelfUpdate();
}

void App::FinishSelfUpdate() {
    const std::wstring executable = ModulePath();
    std::uint32_t code = 0;
    if (ReplaceRunningExecutable(executable, code)) {
        // First, because a check that is under way can take longer than the new version waits for this one to end.
        updateChecker.Stop();
        // Ends even if the new version does not start: it is the one on the disk by now.
        StartNewVersion(executable);
        DestroyWindow(window);
        return;
    }
    DeleteNewFile(executable);
    MessageBoxW(window, ReplaceFailureText(code).c_str(), Tr(L"Actualizar kestrane"), MB_ICONWARNING);
}

}  // namespace kestrane
