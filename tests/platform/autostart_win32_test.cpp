// Starting with Windows, on real keys of the test's own in place of the user's and the machine's. Either can be
// refused. The elevated process is played: it runs its command line here, with the rights that this one lacks.
#include "settings/autostart_win32.h"

#include <windows.h>
// <windows.h> comes first.
#include <gmock/gmock.h>
#include <objbase.h>
#include <shellapi.h>

#include <cwchar>
#include <optional>
#include <string>
#include <vector>

#include "app/entry_win32.h"
#include "support/call_log.h"
#include "support/fake_module_path_win32.h"
#include "support/own_registry_win32.h"
#include "support/real_call_win32.h"
#include "support/recorded_log.h"

namespace {

using kestrane::test::Calls;
using kestrane::test::CountCalls;
using kestrane::test::NoteCall;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const wchar_t* RunKey = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr const wchar_t* Path = L"C:\\Mis programas\\kestrane.exe";
const HANDLE Process = reinterpret_cast<HANDLE>(std::uintptr_t{0x5555007});
const HWND Owner = reinterpret_cast<HWND>(std::uintptr_t{0x5555009});

enum class Prompt { Accepted, Declined, AcceptedWithoutHandle };

struct World {
    // What the registry says to this process.
    LSTATUS userKey = ERROR_SUCCESS;
    LSTATUS userValue = ERROR_SUCCESS;
    LSTATUS machineKey = ERROR_SUCCESS;
    LSTATUS machineValue = ERROR_SUCCESS;
    LSTATUS reading = ERROR_SUCCESS;

    Prompt prompt = Prompt::Accepted;
    bool elevated = false;               // the elevated process is at work
    DWORD exitCode = 1;                  // what it ended with
    std::optional<DWORD> otherExitCode;  // told instead
    DWORD waitResult = WAIT_OBJECT_0;
    bool exitCodeIsTold = true;

    HRESULT apartmentResult = S_OK;
    int apartments = 0;  // calls of CoInitializeEx that succeeded and have not been undone

    HKEY root = nullptr;  // of the key that was opened last
    int openKeys = 0;
};
World world;

std::string Name(HKEY root) {
    return root == HKEY_LOCAL_MACHINE ? "machine" : "user";
}

LSTATUS WINAPI FakeRegOpenKeyExW(HKEY root, LPCWSTR path, DWORD options, REGSAM access, PHKEY key) {
    EXPECT_STREQ(path, RunKey);
    EXPECT_EQ(options, 0U);
    EXPECT_EQ(access, 1U);
    *key = reinterpret_cast<HKEY>(std::uintptr_t{0x5555});  // unspecified on failure
    if (world.reading != ERROR_SUCCESS) return world.reading;
    const LSTATUS status = REAL(L"advapi32", RegOpenKeyExW)(root, path, options, access, key);
    if (status == ERROR_SUCCESS) ++world.openKeys;
    return status;
}

LSTATUS WINAPI FakeRegCreateKeyExW(HKEY root, LPCWSTR path, DWORD reserved, LPWSTR className, DWORD options,
                                   REGSAM access, LPSECURITY_ATTRIBUTES attributes, PHKEY key, LPDWORD disposition) {
    EXPECT_STREQ(path, RunKey);
    EXPECT_EQ(reserved, 0U);
    EXPECT_EQ(className, nullptr);
    EXPECT_EQ(options, DWORD{REG_OPTION_NON_VOLATILE});
    EXPECT_EQ(access, 2U);
    EXPECT_EQ(attributes, nullptr);
    world.root = root;
    LSTATUS status = root == HKEY_LOCAL_MACHINE ? world.machineKey : world.userKey;
    if (world.elevated) status = ERROR_SUCCESS;
    if (status == ERROR_SUCCESS) {
        status = REAL(L"advapi32", RegCreateKeyExW)(root, path, 0, nullptr, options, access, nullptr, key, disposition);
    }
    if (status == ERROR_SUCCESS) {
        ++world.openKeys;
    } else {
        NoteCall(Name(root) + " refused");
    }
    return status;
}

LSTATUS StatusOfValue(const std::string& act) {
    const LSTATUS status = world.root == HKEY_LOCAL_MACHINE ? world.machineValue : world.userValue;
    const bool allowed = world.elevated || status == ERROR_SUCCESS;
    NoteCall(Name(world.root) + (allowed ? " " + act : " refused"));
    return allowed ? ERROR_SUCCESS : status;
}

LSTATUS WINAPI FakeRegSetValueExW(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size) {
    EXPECT_STREQ(name, L"kestrane");
    EXPECT_EQ(reserved, 0U);
    const auto* text = reinterpret_cast<const wchar_t*>(data);
    EXPECT_EQ(size, (std::wcslen(text) + 1) * sizeof(wchar_t)) << "with the terminator";
    if (const LSTATUS status = StatusOfValue("set"); status != ERROR_SUCCESS) return status;
    return REAL(L"advapi32", RegSetValueExW)(key, name, 0, type, data, size);
}

LSTATUS WINAPI FakeRegDeleteValueW(HKEY key, LPCWSTR name) {
    EXPECT_STREQ(name, L"kestrane");
    if (const LSTATUS status = StatusOfValue("cleared"); status != ERROR_SUCCESS) return status;
    return REAL(L"advapi32", RegDeleteValueW)(key, name);
}

LSTATUS WINAPI FakeRegCloseKey(HKEY key) {
    --world.openKeys;
    return REAL(L"advapi32", RegCloseKey)(key);
}

HRESULT WINAPI FakeCoInitializeEx(LPVOID reserved, DWORD kind) {
    EXPECT_EQ(reserved, nullptr);
    EXPECT_EQ(kind, DWORD{COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE});
    world.apartments += SUCCEEDED(world.apartmentResult) ? 1 : 0;
    return world.apartmentResult;
}

void WINAPI FakeCoUninitialize() {
    --world.apartments;
}

BOOL WINAPI FakeShellExecuteExW(SHELLEXECUTEINFOW* info) {
    EXPECT_EQ(world.apartments, SUCCEEDED(world.apartmentResult) ? 1 : 0);
    EXPECT_STREQ(info->lpVerb, L"runas");
    EXPECT_EQ(info->lpFile, kestrane::toldPath);
    EXPECT_EQ(info->cbSize, sizeof *info);
    EXPECT_EQ(info->fMask, 0x140U);
    EXPECT_EQ(info->hwnd, Owner);
    EXPECT_EQ(info->nShow, SW_HIDE);
    EXPECT_EQ(info->lpDirectory, nullptr);
    EXPECT_EQ(info->hInstApp, nullptr);
    EXPECT_EQ(info->lpIDList, nullptr);
    EXPECT_EQ(info->lpClass, nullptr);
    EXPECT_EQ(info->hkeyClass, nullptr);
    EXPECT_EQ(info->dwHotKey, 0U);
    EXPECT_EQ(info->hMonitor, nullptr);
    EXPECT_EQ(info->hProcess, nullptr);
    const std::wstring parameters = info->lpParameters;
    NoteCall("prompt");
    info->hProcess = world.prompt == Prompt::AcceptedWithoutHandle ? nullptr : Process;
    if (world.prompt == Prompt::Declined) {
        SetLastError(ERROR_CANCELLED);
        return FALSE;  // the handle means nothing then
    }
    world.elevated = true;
    world.exitCode = static_cast<DWORD>(kestrane::HandleCommandLine(parameters.c_str()));
    world.elevated = false;
    return TRUE;
}

DWORD WINAPI FakeWaitForSingleObject(HANDLE handle, DWORD milliseconds) {
    if (handle != Process) return REAL(L"kernel32", WaitForSingleObject)(handle, milliseconds);
    EXPECT_EQ(world.apartments, 0) << "a thread with an apartment must not block without reading its messages";
    NoteCall("wait " + std::to_string(milliseconds));
    return world.waitResult;
}

BOOL WINAPI FakeGetExitCodeProcess(HANDLE handle, LPDWORD exitCode) {
    EXPECT_EQ(handle, Process);
    EXPECT_EQ(*exitCode, 1U) << "what counts if nothing is told";
    NoteCall("ask its exit code");
    if (!world.exitCodeIsTold) return FALSE;
    *exitCode = world.otherExitCode.value_or(world.exitCode);
    return TRUE;
}

BOOL WINAPI FakeCloseHandle(HANDLE handle) {
    if (handle != Process) return REAL(L"kernel32", CloseHandle)(handle);
    NoteCall("close");
    return TRUE;
}

}  // namespace

extern "C" {
decltype(&RegOpenKeyExW) __imp_RegOpenKeyExW = &FakeRegOpenKeyExW;
decltype(&RegCreateKeyExW) __imp_RegCreateKeyExW = &FakeRegCreateKeyExW;
decltype(&RegSetValueExW) __imp_RegSetValueExW = &FakeRegSetValueExW;
decltype(&RegDeleteValueW) __imp_RegDeleteValueW = &FakeRegDeleteValueW;
decltype(&RegCloseKey) __imp_RegCloseKey = &FakeRegCloseKey;
decltype(&CoInitializeEx) __imp_CoInitializeEx = &FakeCoInitializeEx;
decltype(&CoUninitialize) __imp_CoUninitialize = &FakeCoUninitialize;
decltype(&ShellExecuteExW) __imp_ShellExecuteExW = &FakeShellExecuteExW;
decltype(&WaitForSingleObject) __imp_WaitForSingleObject = &FakeWaitForSingleObject;
decltype(&GetExitCodeProcess) __imp_GetExitCodeProcess = &FakeGetExitCodeProcess;
decltype(&CloseHandle) __imp_CloseHandle = &FakeCloseHandle;
}

namespace kestrane {
namespace {

constexpr auto Off = AutostartMode::Off;
constexpr auto ThisUser = AutostartMode::ThisUser;
constexpr auto AllUsers = AutostartMode::AllUsers;

constexpr const wchar_t* UserRefused = L"kestrane: no se pudo escribir el autoarranque de usuario (HKCU)\n";
constexpr const wchar_t* MachineRefused =
    L"kestrane: no se pudo escribir el autoarranque de equipo (HKLM); hara falta elevar\n";
constexpr const wchar_t* NotElevated = L"kestrane: el usuario cancelo la elevacion o ShellExecuteEx fallo\n";

/// What other versions left behind.
constexpr const wchar_t* StaleValue = L"\"D:\\Antes\\kestrane.exe\"";
const std::wstring FreshValue = std::wstring(L"\"") + Path + L"\"";

/// A value: its type and its text. REG_NONE if there is none.
struct Stored {
    DWORD type = REG_NONE;
    std::wstring text;  // without its terminator, with which it must be stored

    bool operator==(const Stored&) const = default;
};
const Stored Absent;
const Stored Stale{REG_SZ, StaleValue};
const Stored Fresh{REG_SZ, FreshValue};

void Store(HKEY root, const Stored& value) {
    if (value == Absent) return;
    const auto size = static_cast<DWORD>((value.text.size() + 1) * sizeof(wchar_t));
    ASSERT_EQ(RegSetKeyValueW(root, RunKey, L"kestrane", value.type, value.text.c_str(), size), ERROR_SUCCESS);
}

Stored Read(HKEY root) {
    HKEY key = nullptr;
    if (REAL(L"advapi32", RegOpenKeyExW)(root, RunKey, 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS) return Absent;
    Stored value;
    wchar_t text[512] = {};
    DWORD size = sizeof text;
    const LSTATUS status =
        RegQueryValueExW(key, L"kestrane", nullptr, &value.type, reinterpret_cast<BYTE*>(text), &size);
    REAL(L"advapi32", RegCloseKey)(key);
    if (status != ERROR_SUCCESS) return Absent;
    EXPECT_EQ(size, (std::wcslen(text) + 1) * sizeof(wchar_t)) << "including the terminator";
    value.text = text;
    return value;
}

bool KeyIsThere(HKEY root) {
    HKEY key = nullptr;
    if (REAL(L"advapi32", RegOpenKeyExW)(root, RunKey, 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS) return false;
    REAL(L"advapi32", RegCloseKey)(key);
    return true;
}

class AutostartTest : public testing::Test {
  protected:
    void SetUp() override { StartAnew(); }
    void TearDown() override { CheckEnd(); }

    /// Both roots empty, all allowed.
    void StartAnew() {
        if (registry_) CheckEnd();
        registry_.reset();
        registry_.emplace();
        ASSERT_TRUE(*registry_);
        world = World{};
        toldPath = Path;
        debugLines.clear();
        Calls().clear();
    }

    void StartAnew(const Stored& machine, const Stored& user) {
        StartAnew();
        Store(HKEY_LOCAL_MACHINE, machine);
        Store(HKEY_CURRENT_USER, user);
    }

    static void RefuseMachine() { world.machineKey = ERROR_ACCESS_DENIED; }

  private:
    struct BothRoots {
        OwnRegistry machine{HKEY_LOCAL_MACHINE};
        OwnRegistry user{HKEY_CURRENT_USER};
        explicit operator bool() const { return machine && user; }
    };

    static void CheckEnd() {
        EXPECT_EQ(world.openKeys, 0);
        EXPECT_EQ(world.apartments, 0);
        EXPECT_EQ(CountCalls("close"), CountCalls("wait 30000"));
    }

    std::optional<BothRoots> registry_;
};

TEST_F(AutostartTest, TheModeIsReadFromTheValues) {
    const struct {
        Stored machine;
        Stored user;
        AutostartMode mode;
    } rows[] = {
        {Absent, Absent, Off},
        {Absent, Stale, ThisUser},
        {Stale, Absent, AllUsers},
        {Stale, Stale, AllUsers},
        {Absent, {REG_SZ, L""}, ThisUser},
        {Absent, {REG_EXPAND_SZ, L"%windir%"}, ThisUser},
        {{REG_EXPAND_SZ, L"%windir%"}, Absent, AllUsers},
        {Absent, {REG_BINARY, StaleValue}, Off},
        {{REG_BINARY, StaleValue}, Absent, Off},
        {{REG_BINARY, StaleValue}, Stale, ThisUser},
        {Absent, {REG_MULTI_SZ, StaleValue}, Off},
        {Absent, {REG_DWORD, L"1"}, Off},
    };
    for (const auto& row : rows) {
        StartAnew(row.machine, row.user);
        EXPECT_EQ(GetAutostartMode(), row.mode) << "row " << &row - rows << " of the table";
    }
}

TEST_F(AutostartTest, OtherProgramsOfTheKeyDoNotCount) {
    for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
        ASSERT_EQ(RegSetKeyValueW(root, RunKey, L"kestrane2", REG_SZ, L"x", 4), ERROR_SUCCESS);
        ASSERT_EQ(RegSetKeyValueW(root, RunKey, nullptr, REG_SZ, L"x", 4), ERROR_SUCCESS);
    }
    EXPECT_EQ(GetAutostartMode(), Off);
}

TEST_F(AutostartTest, AKeyThatMayNotBeReadHasNoValue) {
    StartAnew(Stale, Stale);
    world.reading = ERROR_ACCESS_DENIED;
    EXPECT_EQ(GetAutostartMode(), Off);
}

TEST_F(AutostartTest, EveryChangeTakesItsStepsInOrder) {
    using Steps = std::vector<std::string>;
    const struct {
        Stored machine;
        Stored user;
        AutostartMode mode;
        Stored machineAfter;
        Stored userAfter;
        Steps steps;
    } rows[] = {
        {Absent, Absent, Off, Absent, Absent, {}},
        {Absent, Absent, ThisUser, Absent, Fresh, {"user set"}},
        {Absent, Absent, AllUsers, Fresh, Absent, {"machine set"}},
        {Absent, Stale, Off, Absent, Absent, {"user cleared"}},
        {Absent, Stale, ThisUser, Absent, Stale, {}},
        {Absent, Stale, AllUsers, Fresh, Absent, {"user cleared", "machine set"}},
        {Stale, Absent, Off, Absent, Absent, {"machine cleared"}},
        {Stale, Absent, ThisUser, Absent, Fresh, {"machine cleared", "user set"}},
        {Stale, Absent, AllUsers, Stale, Absent, {}},
        {Stale, Stale, Off, Absent, Absent, {"machine cleared", "user cleared"}},
        {Stale, Stale, ThisUser, Absent, Fresh, {"machine cleared", "user set"}},
        {Stale, Stale, AllUsers, Stale, Stale, {}},
    };
    for (const auto& row : rows) {
        StartAnew(row.machine, row.user);
        const auto where = testing::Message() << "row " << &row - rows << " of the table";
        EXPECT_TRUE(SetAutostart(row.mode, Owner)) << where;
        EXPECT_EQ(Calls(), row.steps) << where;
        EXPECT_TRUE(Read(HKEY_LOCAL_MACHINE) == row.machineAfter) << where;
        EXPECT_TRUE(Read(HKEY_CURRENT_USER) == row.userAfter) << where;
        EXPECT_EQ(GetAutostartMode(), row.mode) << where;
        EXPECT_THAT(debugLines, IsEmpty()) << where;
    }
}

TEST_F(AutostartTest, ThePresentModeIsNotTouchedEvenIfEverythingWouldBeRefused) {
    for (const AutostartMode mode : {Off, ThisUser, AllUsers}) {
        StartAnew(mode == AllUsers ? Stale : Absent, mode == ThisUser ? Stale : Absent);
        world.machineKey = world.userKey = ERROR_ACCESS_DENIED;
        EXPECT_TRUE(SetAutostart(mode, Owner));
        EXPECT_THAT(Calls(), IsEmpty());
    }
}

TEST_F(AutostartTest, AValueThatIsNotTextIsAbsentUntilItIsWrittenOver) {
    const Stored binary{REG_BINARY, StaleValue};
    StartAnew(Absent, binary);
    EXPECT_TRUE(SetAutostart(Off, Owner));
    EXPECT_TRUE(Read(HKEY_CURRENT_USER) == binary);
    EXPECT_TRUE(SetAutostart(ThisUser, Owner));
    EXPECT_TRUE(Read(HKEY_CURRENT_USER) == Fresh);

    StartAnew(binary, binary);
    EXPECT_TRUE(SetAutostart(AllUsers, Owner));
    EXPECT_THAT(Calls(), ElementsAre("machine set"));
    EXPECT_TRUE(Read(HKEY_LOCAL_MACHINE) == Fresh);
    EXPECT_TRUE(Read(HKEY_CURRENT_USER) == binary);
}

TEST_F(AutostartTest, ClearingRemovesAValueThatIsNotText) {
    StartAnew({REG_BINARY, StaleValue}, Absent);
    EXPECT_TRUE(SetMachineAutostart(false));
    EXPECT_TRUE(Read(HKEY_LOCAL_MACHINE) == Absent);
}

TEST_F(AutostartTest, ClearingWithoutAKeyMakesItAndSucceeds) {
    ASSERT_FALSE(KeyIsThere(HKEY_LOCAL_MACHINE));
    EXPECT_TRUE(SetMachineAutostart(false));
    EXPECT_TRUE(KeyIsThere(HKEY_LOCAL_MACHINE));
    EXPECT_TRUE(Read(HKEY_LOCAL_MACHINE) == Absent);
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(AutostartTest, ARefusedUserValueEndsTheWayToThisUser) {
    for (LSTATUS World::*const refused : {&World::userKey, &World::userValue}) {
        StartAnew();
        world.*refused = ERROR_ACCESS_DENIED;
        EXPECT_FALSE(SetAutostart(ThisUser, Owner));
        EXPECT_EQ(GetAutostartMode(), Off);
        EXPECT_THAT(debugLines, ElementsAre(UserRefused));

        StartAnew(Stale, Absent);
        world.*refused = ERROR_ACCESS_DENIED;
        EXPECT_FALSE(SetAutostart(ThisUser, Owner));
        EXPECT_THAT(Calls(), ElementsAre("machine cleared", "user refused"));
        EXPECT_EQ(GetAutostartMode(), Off);
    }
}

TEST_F(AutostartTest, AUserValueThatCannotBeRemovedIsAFailureButNoReasonToStop) {
    StartAnew(Absent, Stale);
    world.userValue = ERROR_ACCESS_DENIED;
    EXPECT_FALSE(SetAutostart(Off, Owner));
    EXPECT_EQ(GetAutostartMode(), ThisUser);
    EXPECT_THAT(debugLines, ElementsAre(UserRefused));

    Calls().clear();
    EXPECT_FALSE(SetAutostart(AllUsers, Owner));
    EXPECT_THAT(Calls(), ElementsAre("user refused", "machine set"));
    EXPECT_EQ(GetAutostartMode(), AllUsers);
    EXPECT_TRUE(Read(HKEY_CURRENT_USER) == Stale);
}

TEST_F(AutostartTest, ARefusedMachineValueIsWrittenByAnElevatedProcess) {
    for (LSTATUS World::*const refused : {&World::machineKey, &World::machineValue}) {
        StartAnew(Absent, Stale);
        world.*refused = ERROR_ACCESS_DENIED;
        EXPECT_TRUE(SetAutostart(AllUsers, Owner));
        EXPECT_THAT(Calls(), ElementsAre("user cleared", "machine refused", "prompt", "machine set", "wait 30000",
                                         "ask its exit code", "close"));
        EXPECT_TRUE(Read(HKEY_LOCAL_MACHINE) == Fresh);
        EXPECT_TRUE(Read(HKEY_CURRENT_USER) == Absent);
        EXPECT_THAT(debugLines, ElementsAre(MachineRefused));
    }
}

TEST_F(AutostartTest, ARefusedMachineValueIsRemovedByAnElevatedProcess) {
    StartAnew(Stale, Stale);
    RefuseMachine();
    EXPECT_TRUE(SetAutostart(ThisUser, Owner));
    EXPECT_THAT(Calls(), ElementsAre("machine refused", "prompt", "machine cleared", "wait 30000", "ask its exit code",
                                     "close", "user set"));
    EXPECT_TRUE(Read(HKEY_LOCAL_MACHINE) == Absent);
    EXPECT_TRUE(Read(HKEY_CURRENT_USER) == Fresh);

    StartAnew(Stale, Absent);
    RefuseMachine();
    EXPECT_TRUE(SetAutostart(Off, Owner));
    EXPECT_EQ(GetAutostartMode(), Off);
}

TEST_F(AutostartTest, ADeclinedPromptOnTheWayToAllUsersLeavesItOff) {
    for (const Stored& user : {Absent, Stale}) {
        StartAnew(Absent, user);
        RefuseMachine();
        world.prompt = Prompt::Declined;
        EXPECT_FALSE(SetAutostart(AllUsers, Owner));
        EXPECT_EQ(Calls().back(), "prompt");
        EXPECT_EQ(GetAutostartMode(), Off);
        EXPECT_THAT(debugLines, ElementsAre(MachineRefused, NotElevated));
    }
}

TEST_F(AutostartTest, ADeclinedPromptOnTheWayToOffLeavesTheMachinesValueAlone) {
    for (const Stored& user : {Absent, Stale}) {
        StartAnew(Stale, user);
        RefuseMachine();
        world.prompt = Prompt::Declined;
        EXPECT_FALSE(SetAutostart(Off, Owner));
        EXPECT_TRUE(Read(HKEY_LOCAL_MACHINE) == Stale);
        EXPECT_TRUE(Read(HKEY_CURRENT_USER) == Absent);
        EXPECT_EQ(GetAutostartMode(), AllUsers);
    }
}

TEST_F(AutostartTest, ADeclinedPromptOnTheWayToThisUserStillWritesTheUsersValue) {
    StartAnew(Stale, Absent);
    RefuseMachine();
    world.prompt = Prompt::Declined;
    EXPECT_FALSE(SetAutostart(ThisUser, Owner));
    EXPECT_TRUE(Read(HKEY_CURRENT_USER) == Fresh);
    EXPECT_EQ(GetAutostartMode(), AllUsers);
}

TEST_F(AutostartTest, AnElevatedProcessWithoutAHandleCountsAsAFailure) {
    RefuseMachine();
    world.prompt = Prompt::AcceptedWithoutHandle;
    EXPECT_FALSE(SetAutostart(AllUsers, Owner));
    EXPECT_EQ(CountCalls("wait 30000"), 0);
    EXPECT_THAT(debugLines, ElementsAre(MachineRefused, NotElevated));
}

TEST_F(AutostartTest, OnlyTheExitCodeOfTheElevatedProcessCounts) {
    struct Row {
        DWORD waitResult;
        std::optional<DWORD> exitCode;  // none: it cannot be read
        bool succeeds;
    };
    const Row rows[] = {
        {WAIT_OBJECT_0, 0, true},
        {WAIT_OBJECT_0, 1, false},
        {WAIT_OBJECT_0, 0xC0000005, false},  // it crashed
        {WAIT_OBJECT_0, std::nullopt, false},
        {WAIT_TIMEOUT, STILL_ACTIVE, false},  // 30 seconds were not enough
        {WAIT_TIMEOUT, 0, true},              // it ended just after them
        {WAIT_FAILED, STILL_ACTIVE, false},
    };
    for (const Row& row : rows) {
        StartAnew();
        RefuseMachine();
        world.waitResult = row.waitResult;
        world.otherExitCode = row.exitCode;
        world.exitCodeIsTold = row.exitCode.has_value();
        const auto where = testing::Message() << "row " << &row - rows << " of the table";
        EXPECT_EQ(SetAutostart(AllUsers, Owner), row.succeeds) << where;
        EXPECT_EQ(CountCalls("close"), 1) << where;
        EXPECT_THAT(debugLines, ElementsAre(MachineRefused)) << where;
    }
}

TEST_F(AutostartTest, TheApartmentOfTheThreadIsLeftAsItWas) {
    for (const HRESULT result : {S_OK, S_FALSE, RPC_E_CHANGED_MODE, E_OUTOFMEMORY}) {
        StartAnew();
        RefuseMachine();
        world.apartmentResult = result;
        EXPECT_TRUE(SetAutostart(AllUsers, Owner)) << result;
        EXPECT_EQ(world.apartments, 0) << result;
    }
}

TEST_F(AutostartTest, NobodyIsAskedInVainForAPathThatTheKeyCannotHold) {
    for (const std::size_t length : {0U, 260U, 32767U}) {
        StartAnew(Absent, Stale);
        RefuseMachine();
        toldPath = std::wstring(length, L'x');
        EXPECT_FALSE(SetAutostart(AllUsers, Owner)) << length;
        EXPECT_THAT(Calls(), ElementsAre("user cleared", "machine refused")) << length;
    }
    StartAnew();
    RefuseMachine();
    toldPath = std::wstring(259, L'x');
    EXPECT_TRUE(SetAutostart(AllUsers, Owner));
}

TEST_F(AutostartTest, ALongPathIsNoObstacleToTheRemoval) {
    StartAnew(Stale, Absent);
    RefuseMachine();
    toldPath = std::wstring(260, L'x');
    EXPECT_TRUE(SetAutostart(Off, Owner));
    EXPECT_EQ(GetAutostartMode(), Off);

    StartAnew(Stale, Absent);
    RefuseMachine();
    toldPath = L"";
    EXPECT_FALSE(SetAutostart(Off, Owner));
    EXPECT_THAT(Calls(), ElementsAre("machine refused")) << "without a path there is nothing to start";
}

TEST_F(AutostartTest, AUserPathThatTheKeyCannotHoldIsAFailureAndNotCut) {
    toldPath = std::wstring(260, L'x');
    EXPECT_FALSE(SetAutostart(ThisUser, Owner));
    EXPECT_TRUE(Read(HKEY_CURRENT_USER) == Absent);
    EXPECT_THAT(debugLines, ElementsAre(UserRefused));
}

}  // namespace
}  // namespace kestrane
