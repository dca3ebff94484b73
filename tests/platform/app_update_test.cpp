// Newer versions, as `App` treats them: when the check runs, the identity of the installation, the notification, the
// way to the update dialog, and the new version's taking over. The worker never runs; the offer is what a test says.
// The shell, the dialogs, the random source, the settings file and the files of the update are replaced.
#include <windows.h>
// <windows.h> comes first.
#include <bcrypt.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/app_win32.h"
#include "app/hidden_window_win32.h"
#include "app/tray_events.h"
#include "dialog/settings_dialog_win32.h"
#include "support/call_log.h"
#include "support/fake_module_path_win32.h"
#include "support/fake_worker_win32.h"
#include "text/translation.h"
#include "update/update_dialog_win32.h"

namespace {

using kestrane::test::Calls;
using kestrane::test::CountCalls;
using kestrane::test::NoteCall;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

struct Balloon {
    UINT icon;
    std::wstring title;
    std::wstring text;

    bool operator==(const Balloon&) const = default;
};

struct World {
    std::vector<Balloon> balloons;
    std::string interrupted;        // the call to the shell or the system during which
    std::function<void()> happens;  // this happens, once
    bool shellTakesIcons = true;
    bool randomWorks = true;
    bool fileIsWritable = true;
    bool eventIsMade = true;
    HWND owner = nullptr;          // of the update dialog
    kestrane::UpdateInfo offered;  // what it was opened for
    bool isDownloaded = false;     // what it answers
    std::function<void()> whileDialogIsOpen;
    std::function<void()> whileBoxIsOpen;
    std::wstring boxText;
    std::wstring boxCaption;
    UINT boxType = 0;
    int moves = 0;
    int failingMove = 0;  // counted from 1; 0 for none
    DWORD moveError = ERROR_SUCCESS;
    bool newVersionStarts = true;
};
World world;

/// Notes the call, and lets happen what the test has in store for it.
void Note(const std::string& call) {
    NoteCall(call);
    if (world.happens && call == world.interrupted) std::exchange(world.happens, nullptr)();
}

std::string Narrow(const std::wstring& text) {
    std::string narrow;
    for (const wchar_t c : text)
        narrow.push_back(static_cast<char>(c));
    return narrow;
}

/// A path without its folder.
std::string FileName(const std::wstring& path) {
    return Narrow(path.substr(path.find_last_of(L'\\') + 1));
}

BOOL WINAPI FakeShell_NotifyIconW(DWORD message, PNOTIFYICONDATAW data) {
    if (message == NIM_MODIFY && (data->uFlags & NIF_INFO) != 0) {
        world.balloons.push_back({data->uID, data->szInfoTitle, data->szInfo});
    }
    if (message == NIM_MODIFY) Note("icon modify " + std::to_string(data->uID));
    return message != NIM_ADD || world.shellTakesIcons ? TRUE : FALSE;
}

BOOL WINAPI FakeWritePrivateProfileStringW(LPCWSTR section, LPCWSTR key, LPCWSTR value, LPCWSTR) {
    NoteCall("write " + Narrow(section) + " " + Narrow(key) + "=" + Narrow(value));
    return world.fileIsWritable ? TRUE : FALSE;
}

HANDLE WINAPI FakeCreateEventW(LPSECURITY_ATTRIBUTES attributes, BOOL manualReset, BOOL set, LPCWSTR name) {
    static const auto real = REAL(L"kernel32", CreateEventW);
    return world.eventIsMade ? real(attributes, manualReset, set, name) : nullptr;
}

BOOL WINAPI FakeMoveFileExW(LPCWSTR from, LPCWSTR to, DWORD) {
    NoteCall("move " + FileName(from) + " to " + FileName(to));
    if (++world.moves != world.failingMove) return TRUE;
    SetLastError(world.moveError);
    return FALSE;
}

BOOL WINAPI FakeDeleteFileW(LPCWSTR path) {
    NoteCall("delete " + FileName(path));
    return TRUE;
}

BOOL WINAPI FakeCreateProcessW(LPCWSTR application, LPWSTR commandLine, LPSECURITY_ATTRIBUTES, LPSECURITY_ATTRIBUTES,
                               BOOL, DWORD, LPVOID, LPCWSTR, LPSTARTUPINFOW, LPPROCESS_INFORMATION process) {
    NoteCall("start " + FileName(application) + ": " + Narrow(commandLine));
    *process = {};
    return world.newVersionStarts ? TRUE : FALSE;
}

int WINAPI FakeMessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type) {
    EXPECT_EQ(owner, world.owner);
    NoteCall("box");
    world.boxText = text;
    world.boxCaption = caption;
    world.boxType = type;
    if (world.whileBoxIsOpen) world.whileBoxIsOpen();
    return IDOK;
}

BOOL WINAPI FakeSetForegroundWindow(HWND) {
    NoteCall("SetForegroundWindow");
    return TRUE;
}

void WINAPI FakePostQuitMessage(int) {
    NoteCall("PostQuitMessage");
}

}  // namespace

extern "C" {
decltype(&Shell_NotifyIconW) __imp_Shell_NotifyIconW = &FakeShell_NotifyIconW;
decltype(&WritePrivateProfileStringW) __imp_WritePrivateProfileStringW = &FakeWritePrivateProfileStringW;
decltype(&CreateEventW) __imp_CreateEventW = &FakeCreateEventW;
decltype(&MoveFileExW) __imp_MoveFileExW = &FakeMoveFileExW;
decltype(&DeleteFileW) __imp_DeleteFileW = &FakeDeleteFileW;
decltype(&CreateProcessW) __imp_CreateProcessW = &FakeCreateProcessW;
decltype(&MessageBoxW) __imp_MessageBoxW = &FakeMessageBoxW;
decltype(&SetForegroundWindow) __imp_SetForegroundWindow = &FakeSetForegroundWindow;
decltype(&PostQuitMessage) __imp_PostQuitMessage = &FakePostQuitMessage;

// Declared without dllimport, so the function itself is replaced.
NTSTATUS WINAPI BCryptGenRandom(BCRYPT_ALG_HANDLE, PUCHAR bytes, ULONG size, ULONG) {
    if (!world.randomWorks) return static_cast<NTSTATUS>(0xC0000001);
    std::fill_n(bytes, size, UCHAR{0xAB});
    return 0;
}
}

namespace kestrane {

// The two dialogs have tests of their own.
bool ShowUpdateDialog(HINSTANCE instance, HWND owner, const UpdateInfo& info) {
    EXPECT_EQ(instance, GetModuleHandleW(nullptr));
    NoteCall("update dialog");
    world.owner = owner;
    world.offered = info;
    if (world.whileDialogIsOpen) std::exchange(world.whileDialogIsOpen, nullptr)();
    return world.isDownloaded;
}
void ShowSettingsDialog(HINSTANCE, HWND, const Point&, AppSettings&, SettingsDialogHost&) {}
HWND OpenSettingsDialog() {
    return GetDesktopWindow();
}

namespace {

constexpr char FirstIdentity[] = "abababab-abab-4bab-abab-abababababab";

class AppUpdateTest : public testing::Test {
  protected:
    AppUpdateTest() {
        world = World{};
        toldPath = L"C:\\Users\\Ana\\kestrane.exe";
        SetLanguage(ActiveSpanish);
        MakeApp();
    }
    ~AppUpdateTest() override {
        if (IsWindow(app->window)) DestroyWindow(app->window);
        UnregisterClassW(HiddenWindowClass, app->instance);
        SetLanguage(ActiveSpanish);
        toldPath.reset();
    }

    void MakeApp() {
        app = std::make_unique<App>();
        app->instance = GetModuleHandleW(nullptr);
        app->settings = MakeDefaultSettings();
        app->settings.install_id = FirstIdentity;
        UnregisterClassW(HiddenWindowClass, app->instance);
        Calls().clear();
    }

    /// Its calls are forgotten.
    void Start() {
        ASSERT_TRUE(CreateHiddenWindow(*app));
        world.owner = app->window;
        Calls().clear();
    }

    void StartAnew() {
        MakeApp();
        Start();
    }

    /// What the worker does after a check.
    void Offer(const char* version) {
        app->updateChecker.offer.available = true;
        app->updateChecker.offer.info.version = version;
        TellState();
    }
    void TakeBack() {
        app->updateChecker.offer.available = false;
        TellState();
    }
    void TellState() { EXPECT_EQ(SendMessageW(app->window, WM_UPDATE_STATE, 0, 0), 0); }

    void End() { SendMessageW(app->window, WM_CLOSE, 0, 0); }

    void SetChecking(bool on) {
        app->settings.check_updates = on;
        app->OnSettingsChanged();
    }

    /// Opens the dialog, in which the user has the new version downloaded.
    void Update() {
        world.isDownloaded = true;
        world.moves = 0;
        Calls().clear();
        app->OnUpdateRequested();
    }

    /// Without the icons, which tell nothing here.
    static std::vector<std::string> CallsOfUpdate() {
        std::vector<std::string> calls = Calls();
        std::erase_if(calls, [](const std::string& call) { return call.rfind("icon ", 0) == 0; });
        return calls;
    }

    std::unique_ptr<App> app;
};

// When the check runs.

TEST_F(AppUpdateTest, TheCheckRunsFromTheStartWithVersionAndIdentity) {
    Start();
    EXPECT_TRUE(app->updateChecker.IsRunning());
    EXPECT_EQ(app->updateChecker.notifyWindow, app->window);
    EXPECT_EQ(app->updateChecker.currentVersion, "0.1.0");
    EXPECT_EQ(app->updateChecker.installId, FirstIdentity);
}

TEST_F(AppUpdateTest, SwitchedOffNoWorkerStartsAndNoIdentityIsMade) {
    app->settings.check_updates = false;
    app->settings.install_id.clear();
    ASSERT_TRUE(CreateHiddenWindow(*app));
    EXPECT_FALSE(app->updateChecker.IsRunning());
    EXPECT_EQ(app->settings.install_id, "");
    EXPECT_THAT(CallsOfUpdate(), ElementsAre("delete kestrane.exe.old", "delete kestrane.exe.new"));
}

TEST_F(AppUpdateTest, ASettingThatStaysStartsAndStopsNothing) {
    for (const bool on : {true, false}) {
        MakeApp();
        app->settings.check_updates = on;
        Start();
        SetChecking(on);
        EXPECT_THAT(CallsOfUpdate(), IsEmpty()) << on;
        EXPECT_EQ(app->updateChecker.IsRunning(), on);
        DestroyWindow(app->window);
    }
}

TEST_F(AppUpdateTest, AChangedSettingStopsAndStartsTheWorkerAtOnce) {
    Start();
    SetChecking(false);
    EXPECT_THAT(CallsOfUpdate(), ElementsAre("worker stops"));
    EXPECT_FALSE(app->updateChecker.IsRunning());
    Calls().clear();
    SetChecking(true);
    EXPECT_THAT(CallsOfUpdate(), ElementsAre("worker starts"));
    EXPECT_TRUE(app->updateChecker.IsRunning());
}

TEST_F(AppUpdateTest, SwitchedOffTheOfferIsGoneToo) {
    Start();
    Offer("0.2.0");
    SetChecking(false);
    app->OnUpdateRequested();
    EXPECT_EQ(CountCalls("update dialog"), 0);
}

TEST_F(AppUpdateTest, TheEndWaitsForTheWorkerAndStartsNoOther) {
    Start();
    End();
    EXPECT_EQ(CountCalls("worker stops"), 1);
    EXPECT_FALSE(app->updateChecker.IsRunning());
    app->ApplyUpdateCheckSetting();
    EXPECT_FALSE(app->updateChecker.IsRunning());
}

TEST_F(AppUpdateTest, AnEndThatComesWhileTheShellIsAskedStartsNoWorker) {
    app->settings.check_updates = false;
    Start();
    world.interrupted = "icon modify 4";
    world.happens = [this] { End(); };
    SetChecking(true);
    EXPECT_TRUE(app->shuttingDown);
    EXPECT_EQ(CountCalls("worker starts"), 0);
}

// A check that gets no thread ends the program. Thrown through a window's callback, the exception would leave it
// spinning instead, with no way to end it.
static_assert(noexcept(std::declval<App&>().ApplyUpdateCheckSetting()));

TEST_F(AppUpdateTest, WithoutAnEventToStopItByNoWorkerStartsButTheNextChangeTriesAgain) {
    world.eventIsMade = false;
    Start();
    EXPECT_FALSE(app->updateChecker.IsRunning());
    world.eventIsMade = true;
    app->OnSettingsChanged();
    EXPECT_TRUE(app->updateChecker.IsRunning());
}

// The identity.

TEST_F(AppUpdateTest, TheIdentityIsMadeOnceAndSavedAtOnce) {
    app->settings.install_id.clear();
    ASSERT_TRUE(CreateHiddenWindow(*app));
    EXPECT_EQ(app->settings.install_id, FirstIdentity);
    EXPECT_EQ(app->updateChecker.installId, FirstIdentity);
    EXPECT_THAT(CallsOfUpdate(),
                ElementsAre("delete kestrane.exe.old", "delete kestrane.exe.new",
                            "write general install_id=" + std::string(FirstIdentity), "worker starts"));
    Calls().clear();
    SetChecking(false);
    SetChecking(true);
    EXPECT_THAT(CallsOfUpdate(), ElementsAre("worker stops", "worker starts")) << "the same identity";
}

TEST_F(AppUpdateTest, AnIdentityOutlivesTheSwitch) {
    app->settings.install_id = "01234567-89ab-4def-8123-456789abcdef";
    Start();
    SetChecking(false);
    SetChecking(true);
    EXPECT_EQ(app->updateChecker.installId, "01234567-89ab-4def-8123-456789abcdef");
    EXPECT_THAT(CallsOfUpdate(), ElementsAre("worker stops", "worker starts"));
}

TEST_F(AppUpdateTest, TheIdentityIsMadeAsSoonAsTheCheckIsSwitchedOn) {
    app->settings.check_updates = false;
    app->settings.install_id.clear();
    Start();
    SetChecking(true);
    EXPECT_THAT(CallsOfUpdate(),
                ElementsAre("write general install_id=" + std::string(FirstIdentity), "worker starts"));
}

TEST_F(AppUpdateTest, WithoutARandomSourceTheCheckRunsWithoutAnIdentityAndTheNextStartTriesAgain) {
    app->settings.install_id.clear();
    world.randomWorks = false;
    ASSERT_TRUE(CreateHiddenWindow(*app));
    EXPECT_THAT(CallsOfUpdate(), ElementsAre("delete kestrane.exe.old", "delete kestrane.exe.new", "worker starts"));
    EXPECT_EQ(app->updateChecker.installId, "");
    world.randomWorks = true;
    SetChecking(false);
    SetChecking(true);
    EXPECT_EQ(app->updateChecker.installId, FirstIdentity);
}

TEST_F(AppUpdateTest, AnIdentityThatCannotBeSavedHoldsForThisRun) {
    app->settings.install_id.clear();
    world.fileIsWritable = false;
    Start();
    EXPECT_EQ(app->updateChecker.installId, FirstIdentity);
    SetChecking(false);
    SetChecking(true);
    EXPECT_EQ(app->updateChecker.installId, FirstIdentity);
    EXPECT_THAT(CallsOfUpdate(), ElementsAre("worker stops", "worker starts")) << "no second attempt";
}

// The notification.

TEST_F(AppUpdateTest, TheNotificationNamesBothVersionsInTheUsersLanguage) {
    Start();
    Offer("0.2.0");
    EXPECT_THAT(world.balloons,
                ElementsAre(Balloon{1, L"Nueva versión de kestrane",
                                    L"Versión 0.2.0 disponible (tienes la 0.1.0). Haz clic para ver los cambios y "
                                    L"actualizar."}));
    world.balloons.clear();
    SetLanguage(ActiveEnglish);
    Offer("0.3.0.4");
    EXPECT_THAT(world.balloons,
                ElementsAre(Balloon{1, L"New version of kestrane",
                                    L"Version 0.3.0.4 available (you have 0.1.0). Click to see the changes and "
                                    L"update."}));
}

TEST_F(AppUpdateTest, EachVersionIsToldOnceInARow) {
    Start();
    const auto told = [this](const char* version) {
        world.balloons.clear();
        Offer(version);
        return world.balloons.size();
    };
    EXPECT_EQ(told("0.2.0"), 1U);
    EXPECT_EQ(told("0.2.0"), 0U);
    EXPECT_EQ(told("0.3.0"), 1U);
    EXPECT_EQ(told("0.2.0"), 1U) << "only the last one is remembered";
    EXPECT_EQ(told("0.2.0"), 0U);
}

TEST_F(AppUpdateTest, AnOfferThatIsTakenBackIsNotToldAndNeitherIsItsReturn) {
    Start();
    Offer("0.2.0");
    world.balloons.clear();
    TakeBack();
    Offer("0.2.0");
    EXPECT_THAT(world.balloons, IsEmpty());
}

TEST_F(AppUpdateTest, TheNotificationComesFromAnIconThatIsThere) {
    app->settings.show = {false, false, true, true};
    Start();
    Offer("0.2.0");
    ASSERT_EQ(world.balloons.size(), 1U);
    EXPECT_EQ(world.balloons[0].icon, 3U);
}

TEST_F(AppUpdateTest, WithoutIconsOnTheTaskbarTheVersionCountsAsTold) {
    world.shellTakesIcons = false;
    Start();
    Offer("0.2.0");
    EXPECT_THAT(world.balloons, IsEmpty());
    EXPECT_EQ(app->lastNotifiedVersion, "0.2.0");
}

TEST_F(AppUpdateTest, WithoutAnIconSetNothingIsToldAndTheVersionIsKeptForLater) {
    app->updateChecker.offer.available = true;
    app->updateChecker.offer.info.version = "0.2.0";
    app->OnUpdateState();
    EXPECT_EQ(app->lastNotifiedVersion, "");
}

TEST_F(AppUpdateTest, TheIconsOutliveAnEndThatComesWithTheNotification) {
    Start();
    const std::weak_ptr<TrayIconSet> icons = app->trayIcons;
    world.interrupted = "icon modify 1";
    world.happens = [&] {
        End();
        EXPECT_FALSE(icons.expired()) << "a call is in progress";
    };
    Offer("0.2.0");
    EXPECT_TRUE(app->shuttingDown);
    EXPECT_TRUE(icons.expired());
}

TEST_F(AppUpdateTest, ALateStateAfterTheEndIsIgnored) {
    Start();
    app->shuttingDown = true;
    Offer("0.2.0");
    EXPECT_THAT(world.balloons, IsEmpty());
    EXPECT_EQ(app->lastNotifiedVersion, "");
    app->shuttingDown = false;
}

// The way to the dialog.

TEST_F(AppUpdateTest, AClickOnTheNotificationOpensTheDialogForTheVersionThatIsOfferedNow) {
    Start();
    Offer("0.2.0");
    Offer("0.3.0");
    app->updateChecker.offer.info.url = "https://kestrane.example/k.exe";
    for (const WPARAM icon : {1U, 3U, 4U}) {
        Calls().clear();
        SendMessageW(app->window, WM_TRAY_NOTIFY, 0, static_cast<LPARAM>(EventBalloonClick | icon << 16));
        EXPECT_THAT(Calls(), ElementsAre("update dialog")) << icon;
    }
    EXPECT_EQ(world.owner, app->window);
    EXPECT_EQ(world.offered, app->updateChecker.offer.info);
    EXPECT_FALSE(app->updateDialogOpen);
}

TEST_F(AppUpdateTest, WithoutAnOfferNoDialogOpens) {
    Start();
    app->OnUpdateRequested();
    Offer("0.2.0");
    TakeBack();
    app->OnUpdateRequested();
    EXPECT_EQ(CountCalls("update dialog"), 0);
}

TEST_F(AppUpdateTest, NoSecondDialogOpensOverTheFirst) {
    Start();
    Offer("0.2.0");
    world.whileDialogIsOpen = [this] {
        EXPECT_TRUE(app->updateDialogOpen);
        Calls().clear();
        SendMessageW(app->window, WM_TRAY_NOTIFY, 0, EventBalloonClick | 1 << 16);
        EXPECT_THAT(Calls(), IsEmpty()) << "nor is anything else done";
    };
    app->OnUpdateRequested();
    EXPECT_FALSE(app->updateDialogOpen);
    app->OnUpdateRequested();
    EXPECT_THAT(Calls(), ElementsAre("update dialog")) << "but after it";
}

TEST_F(AppUpdateTest, WhileTheSettingsAreOpenTheyComeToTheFrontInItsPlace) {
    Start();
    Offer("0.2.0");
    Calls().clear();
    app->settingsOpen = true;
    app->OnUpdateRequested();
    EXPECT_THAT(Calls(), ElementsAre("SetForegroundWindow"));
    app->settingsOpen = false;
}

TEST_F(AppUpdateTest, ADialogThatIsClosedChangesNothing) {
    Start();
    Offer("0.2.0");
    Calls().clear();
    app->OnUpdateRequested();
    EXPECT_THAT(Calls(), ElementsAre("update dialog"));
    EXPECT_TRUE(IsWindow(app->window));
}

// Taking over.

TEST_F(AppUpdateTest, ADownloadedVersionTakesThePlaceAndStartsAndThisOneEnds) {
    for (const bool starts : {true, false}) {
        StartAnew();
        Offer("0.2.0");
        world.newVersionStarts = starts;
        Update();
        std::vector<std::string> calls = CallsOfUpdate();
        EXPECT_THAT(calls,
                    ElementsAre("update dialog", "delete kestrane.exe.old", "move kestrane.exe to kestrane.exe.old",
                                "move kestrane.exe.new to kestrane.exe", "worker stops",
                                "start kestrane.exe: \"C:\\Users\\Ana\\kestrane.exe\" --updated", "PostQuitMessage"))
            << "the file on the disk is the new one, whether or not it has started: " << starts;
        EXPECT_FALSE(IsWindow(app->window));
        EXPECT_EQ(world.boxText, L"");
    }
}

TEST_F(AppUpdateTest, AVersionThatCannotTakeThePlaceIsDeletedAndTheUserToldWhy) {
    struct Row {
        int failingMove;
        DWORD code;
        std::uint32_t language;
        const wchar_t* caption;
        const wchar_t* text;
    };
    const Row rows[] = {
        {1, ERROR_ACCESS_DENIED, ActiveSpanish, L"Actualizar kestrane",
         L"No se pudo poner la versión nueva en lugar de la actual (código 5).\n\nkestrane sigue con la versión que "
         L"tenías."},
        {2, ERROR_SHARING_VIOLATION, ActiveEnglish, L"Update kestrane",
         L"The new version could not replace the current one (code 32).\n\nkestrane stays on the version you had."},
        {1, 4294967295, ActiveEnglish, L"Update kestrane",
         L"The new version could not replace the current one (code 4294967295).\n\nkestrane stays on the version you "
         L"had."},
    };
    for (const Row& row : rows) {
        StartAnew();
        SetLanguage(row.language);
        Offer("0.2.0");
        world.failingMove = row.failingMove;
        world.moveError = row.code;
        Update();
        EXPECT_EQ(world.boxText, row.text);
        EXPECT_EQ(world.boxCaption, row.caption);
        EXPECT_EQ(world.boxType, UINT{MB_ICONWARNING});
        EXPECT_THAT(Calls(), Not(Contains("PostQuitMessage")));
        ASSERT_GE(Calls().size(), 2U);
        EXPECT_EQ(Calls()[Calls().size() - 2], "delete kestrane.exe.new") << "before the user is told";
        EXPECT_EQ(Calls().back(), "box");
        EXPECT_TRUE(IsWindow(app->window));
        EXPECT_TRUE(app->updateChecker.IsRunning());
        DestroyWindow(app->window);
    }
}

TEST_F(AppUpdateTest, AfterAFailureTheUserCanTryAgain) {
    Start();
    Offer("0.2.0");
    world.failingMove = 1;
    world.moveError = ERROR_SHARING_VIOLATION;
    Update();
    world.failingMove = 0;
    Update();
    EXPECT_EQ(Calls().back(), "PostQuitMessage");
}

TEST_F(AppUpdateTest, AnEndThatComesWhileTheDialogIsOpenLetsTheOldVersionStay) {
    Start();
    Offer("0.2.0");
    world.whileDialogIsOpen = [this] { End(); };
    Update();
    EXPECT_THAT(CallsOfUpdate(), ElementsAre("update dialog", "worker stops", "PostQuitMessage"));
}

TEST_F(AppUpdateTest, AnEndThatComesWhileTheFailureIsToldIsTheOnlyOne) {
    Start();
    Offer("0.2.0");
    world.failingMove = 1;
    world.whileBoxIsOpen = [this] { End(); };
    Update();
    EXPECT_EQ(CountCalls("PostQuitMessage"), 1);
    EXPECT_FALSE(IsWindow(app->window));
}

}  // namespace
}  // namespace kestrane
