// "Comprobar actualizaciones" in the real dialog of a real `App`, whose worker never runs: the check follows the box at
// once, and closing without saving takes it back.
#include <windows.h>
// <windows.h> comes first.
#include <gmock/gmock.h>
#include <shellapi.h>

#include <memory>
#include <string>

#include "app/app_win32.h"
#include "app/hidden_window_win32.h"
#include "support/call_log.h"
#include "support/fake_worker_win32.h"
#include "support/settings_dialog_world_win32.h"

namespace {

BOOL WINAPI FakeShell_NotifyIconW(DWORD, PNOTIFYICONDATAW) {
    return TRUE;
}
/// The dialog's loop comes after it.
void WINAPI FakePostQuitMessage(int) {}

}  // namespace

extern "C" {
decltype(&Shell_NotifyIconW) __imp_Shell_NotifyIconW = &FakeShell_NotifyIconW;
decltype(&PostQuitMessage) __imp_PostQuitMessage = &FakePostQuitMessage;
}

namespace kestrane {
namespace {

using test::Calls;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class UpdateSetting : public SettingsDialogTest {
  protected:
    ~UpdateSetting() override { End(); }

    void Start(bool checks) {
        End();
        app = std::make_unique<App>();
        app->instance = GetModuleHandleW(nullptr);
        app->settings = MakeDefaultSettings();
        app->settings.check_updates = checks;
        ASSERT_TRUE(CreateHiddenWindow(*app));
        Calls().clear();
    }

    void WithSettings(const std::function<void()>& body) { WithDialogOf(app->settings, *app, body); }

    std::unique_ptr<App> app;

  private:
    void End() {
        if (!app) return;
        DestroyWindow(app->window);
        UnregisterClassW(HiddenWindowClass, app->instance);
    }
};

TEST_F(UpdateSetting, TheBoxStartsAndStopsTheCheckAtOnce) {
    Start(false);
    WithSettings([this] {
        Click(IdCheckUpdates);
        EXPECT_THAT(Calls(), ElementsAre("worker starts"));
        EXPECT_TRUE(app->updateChecker.IsRunning());
        Click(IdCheckUpdates);
        EXPECT_THAT(Calls(), ElementsAre("worker starts", "worker stops"));
        EXPECT_FALSE(app->updateChecker.IsRunning());
    });
}

TEST_F(UpdateSetting, TheIdentityIsInTheFileBeforeTheBoxIsSaved) {
    Start(false);
    EXPECT_FALSE(HasFile());
    WithSettings([this] {
        Click(IdCheckUpdates);
        EXPECT_EQ(app->settings.install_id.size(), 36U);
        EXPECT_THAT(File(), HasSubstr("install_id=" + app->settings.install_id));
        EXPECT_THAT(File(), Not(HasSubstr("check_updates")));
    });
    EXPECT_THAT(File(), HasSubstr("install_id=" + app->settings.install_id)) << "and stays there";
}

TEST_F(UpdateSetting, ClosingWithoutSavingTakesTheCheckBack) {
    for (const bool before : {true, false}) {
        Start(before);
        WithSettings([] { Click(IdCheckUpdates); });
        EXPECT_EQ(app->settings.check_updates, before);
        EXPECT_EQ(app->updateChecker.IsRunning(), before);
        EXPECT_EQ(Calls().size(), 2U) << before;
    }
}

TEST_F(UpdateSetting, SavedItStays) {
    Start(true);
    WithSettings([] {
        Click(IdCheckUpdates);
        Click(IdGeneralSave);
    });
    EXPECT_THAT(Calls(), ElementsAre("worker stops"));
    EXPECT_THAT(File(), HasSubstr("check_updates=0"));
}

TEST_F(UpdateSetting, RestoringTheDefaultsStartsTheCheck) {
    Start(false);
    WithSettings([] {
        Click(IdGeneralRestore);
        EXPECT_THAT(Calls(), ElementsAre("worker starts"));
    });
}

TEST_F(UpdateSetting, OtherSettingsLeaveTheWorkerAlone) {
    Start(true);
    WithSettings([] { Click(IdMemBar); });
    EXPECT_THAT(Calls(), IsEmpty());
}

}  // namespace
}  // namespace kestrane
