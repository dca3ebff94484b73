// The General page: starting with Windows, the check for updates, and saving both. The registry's two roots are the
// test's own; that of the machine can be refused, and then the elevation is declined.
#include <array>
#include <string>
#include <vector>

#include "settings/autostart_win32.h"
#include "settings/ini_file_win32.h"
#include "support/fake_elevation_win32.h"
#include "support/fake_ini_writes_win32.h"
#include "support/settings_dialog_world_win32.h"

namespace kestrane {
namespace {

constexpr auto Off = AutostartMode::Off;
constexpr auto ThisUser = AutostartMode::ThisUser;
constexpr auto AllUsers = AutostartMode::AllUsers;

const ToldBox AutostartFailed{
    L"No se pudo cambiar el autoarranque. Para \"Todos los usuarios\" hace falta aceptar la elevación de permisos.",
    L"kestrane", MB_OK | MB_ICONWARNING};

class SettingsDialogGeneral : public SettingsDialogTest {
  protected:
    SettingsDialogGeneral() { Allow(); }
    ~SettingsDialogGeneral() override { Allow(); }

    static void Allow() {
        machineRefused = false;
        promptOwners.clear();
        onPrompt = nullptr;
        writesUntilFull = -1;
    }

    static void StartWith(AutostartMode mode) {
        ASSERT_TRUE(SetAutostart(mode, nullptr));
        ASSERT_EQ(GetAutostartMode(), mode);
    }

    static void SetBoxes(bool autostart, bool allUsers) {
        if (IsTicked(IdAutostartAllUsers) != allUsers) {
            if (!IsTicked(IdAutostart)) Click(IdAutostart);
            Click(IdAutostartAllUsers);
        }
        if (IsTicked(IdAutostart) != autostart) Click(IdAutostart);
    }
};

TEST_F(SettingsDialogGeneral, ThePageOpensWithWhatTheRegistryAndTheSettingsSay) {
    for (const AutostartMode mode : {Off, ThisUser, AllUsers}) {
        for (const bool updates : {true, false}) {
            StartWith(mode);
            settings.check_updates = updates;
            settings.language = LangEnglish;
            WithDialog([&] {
                EXPECT_EQ(IsTicked(IdAutostart), mode != Off);
                EXPECT_EQ(IsTicked(IdAutostartAllUsers), mode == AllUsers);
                EXPECT_EQ(IsEnabled(IdAutostartAllUsers), mode != Off);
                EXPECT_EQ(IsTicked(IdCheckUpdates), updates);
                EXPECT_EQ(TextOfWindow(Control(IdLanguage)), L"English");
                EXPECT_FALSE(IsEnabled(IdGeneralSave));
                EXPECT_EQ(IsEnabled(IdGeneralRestore), mode != Off || !updates);
            });
        }
    }
    EXPECT_EQ(host.changes, 6) << "one for each closing";
}

TEST_F(SettingsDialogGeneral, EveryChangeOfTheModeIsSaved) {
    const struct {
        bool autostart;
        bool allUsers;
        AutostartMode mode;
    } rows[] = {{false, false, Off}, {false, true, Off}, {true, false, ThisUser}, {true, true, AllUsers}};
    for (const AutostartMode before : {Off, ThisUser, AllUsers}) {
        for (const auto& row : rows) {
            StartWith(before);
            WithDialog([&] {
                SetBoxes(row.autostart, row.allUsers);
                EXPECT_EQ(GetAutostartMode(), before) << "not yet";
                EXPECT_EQ(IsEnabled(IdGeneralSave), row.mode != before);
                EXPECT_EQ(IsEnabled(IdGeneralRestore), row.autostart);
                EXPECT_EQ(IsEnabled(IdAutostartAllUsers), row.autostart);
                EXPECT_EQ(host.changes, 0);
                Click(IdGeneralSave);
                EXPECT_EQ(GetAutostartMode(), row.mode);
                EXPECT_FALSE(IsEnabled(IdGeneralSave));
                EXPECT_EQ(IsTicked(IdAutostart), row.autostart);
                EXPECT_EQ(IsTicked(IdAutostartAllUsers), row.allUsers);
            });
            host.changes = 0;
            EXPECT_EQ(GetAutostartMode(), row.mode);
        }
    }
    EXPECT_TRUE(dialogWorld.boxes.empty());
    EXPECT_EQ(settings, MakeDefaultSettings());
}

TEST_F(SettingsDialogGeneral, ClosingKeepsTheModeAndUndoesTheRest) {
    StartWith(ThisUser);
    WithDialog([] {
        SetBoxes(true, true);
        Click(IdCheckUpdates);
    });
    EXPECT_EQ(GetAutostartMode(), ThisUser);
    EXPECT_EQ(settings, MakeDefaultSettings());
}

TEST_F(SettingsDialogGeneral, OnlyAChangedCheckForUpdatesIsWritten) {
    WithDialog([this] {
        SetBoxes(true, false);
        Click(IdGeneralSave);
        EXPECT_FALSE(HasFile());
        Click(IdCheckUpdates);
        Click(IdCpuPerCore);
        EXPECT_FALSE(HasFile());
        Click(IdGeneralSave);
        EXPECT_EQ(File(), "[general]\r\ncheck_updates=0\r\n");
        EXPECT_FALSE(IsEnabled(IdGeneralSave));
        EXPECT_TRUE(IsEnabled(IdCpuSave));
    });
    EXPECT_FALSE(settings.check_updates);
    EXPECT_FALSE(settings.per_core);
}

TEST_F(SettingsDialogGeneral, AWriteOfTheCheckForUpdatesThatFailsIsNotTold) {
    WithDialog([] {
        Click(IdCheckUpdates);
        writesUntilFull = 0;
        Click(IdGeneralSave);
        EXPECT_TRUE(dialogWorld.boxes.empty());
        EXPECT_FALSE(IsEnabled(IdGeneralSave));
    });
    EXPECT_FALSE(settings.check_updates);
}

TEST_F(SettingsDialogGeneral, ADeclinedElevationIsToldAndTheBoxesStay) {
    WithDialog([this] {
        SetBoxes(true, true);
        Click(IdCheckUpdates);
        machineRefused = true;
        Click(IdGeneralSave);
        EXPECT_EQ(promptOwners, std::vector{Dialog()});
        EXPECT_EQ(dialogWorld.boxes, std::vector{AutostartFailed});
        EXPECT_TRUE(IsTicked(IdAutostart));
        EXPECT_TRUE(IsTicked(IdAutostartAllUsers));
        EXPECT_TRUE(IsEnabled(IdGeneralSave));
        EXPECT_EQ(File(), "[general]\r\ncheck_updates=0\r\n") << "saved by the same press";

        SetLanguage(ActiveEnglish);
        Click(IdGeneralSave);
        EXPECT_EQ(
            dialogWorld.boxes.back().text,
            L"Start with Windows could not be changed. \"For all users\" needs you to accept the elevation prompt.");
        machineRefused = false;
        Click(IdGeneralSave);
        EXPECT_EQ(dialogWorld.boxes.size(), 2U);
        EXPECT_FALSE(IsEnabled(IdGeneralSave));
    });
    EXPECT_EQ(GetAutostartMode(), AllUsers);
    EXPECT_FALSE(settings.check_updates);
}

TEST_F(SettingsDialogGeneral, TheModeIsReadAfreshAfterAFailure) {
    StartWith(ThisUser);
    WithDialog([] {
        SetBoxes(true, true);
        machineRefused = true;
        Click(IdGeneralSave);
        EXPECT_EQ(GetAutostartMode(), Off) << "the user's value goes first";
        SetBoxes(false, true);
        EXPECT_FALSE(IsEnabled(IdGeneralSave)) << "off is what the registry says now";
    });

    machineRefused = false;
    StartWith(AllUsers);
    dialogWorld.boxes.clear();
    WithDialog([] {
        SetBoxes(false, true);
        machineRefused = true;
        Click(IdGeneralSave);
        EXPECT_EQ(dialogWorld.boxes, std::vector{AutostartFailed});
        EXPECT_TRUE(IsEnabled(IdGeneralSave));
    });
    EXPECT_EQ(GetAutostartMode(), AllUsers);
}

TEST_F(SettingsDialogGeneral, RestoringSavesNothingAndLeavesTheLanguage) {
    StartWith(AllUsers);
    settings.check_updates = false;
    settings.language = LangSpanish;
    settings.per_core = true;
    WithDialog([this] {
        AppSettings expected = settings;
        expected.check_updates = true;
        Click(IdGeneralRestore);
        EXPECT_EQ(settings, expected);
        EXPECT_EQ(host.changes, 1);
        EXPECT_FALSE(IsTicked(IdAutostart));
        EXPECT_FALSE(IsTicked(IdAutostartAllUsers));
        EXPECT_FALSE(IsEnabled(IdAutostartAllUsers));
        EXPECT_TRUE(IsTicked(IdCheckUpdates));
        EXPECT_FALSE(IsEnabled(IdGeneralRestore));
        EXPECT_TRUE(IsEnabled(IdGeneralSave));
        EXPECT_EQ(GetAutostartMode(), AllUsers);
        EXPECT_FALSE(HasFile());
        EXPECT_EQ(TextOfWindow(Control(IdLanguage)), L"Español");
    });
    EXPECT_FALSE(settings.check_updates);
}

TEST_F(SettingsDialogGeneral, SavingAndRestoringDoNotAskForTheKindOfNotification) {
    WithDialog([this] {
        for (const UINT code : {0U, 1U, 5U, 0x300U}) {
            SetBoxes(true, false);
            settings.check_updates = false;
            Notify(IdGeneralSave, code);
            EXPECT_EQ(GetAutostartMode(), ThisUser) << code;
            Notify(IdGeneralRestore, code);
            EXPECT_TRUE(settings.check_updates) << code;
            EXPECT_FALSE(IsTicked(IdAutostart)) << code;
            Notify(IdGeneralSave, code);
            EXPECT_EQ(GetAutostartMode(), Off) << code;
        }
    });
}

TEST_F(SettingsDialogGeneral, ADialogThatEndsDuringThePromptOrItsMessageDoesNoHarm) {
    const auto end = [this] {
        PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
        DestroyWindow(owner);
    };
    for (std::function<void()>* const moment : {&onPrompt, &dialogWorld.onBox}) {
        settings = MakeDefaultSettings();
        dialogWorld.boxes.clear();
        owner = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPED, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
        WithDialog([&] {
            SetBoxes(true, true);
            machineRefused = true;
            *moment = end;
            Click(IdGeneralSave);
            EXPECT_EQ(Dialog(), nullptr);
        });
        *moment = nullptr;
        EXPECT_EQ(dialogWorld.boxes.size(), 1U);
        EXPECT_EQ(settings, MakeDefaultSettings());
    }
}

}  // namespace
}  // namespace kestrane
