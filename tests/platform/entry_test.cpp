// The entry function with its platform calls replaced: every result of the mutex, the wait, the window and the message
// loop, without actually waiting.
#include <windows.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <cwchar>
#include <deque>
#include <exception>
#include <string>
#include <vector>

#include "app/app_win32.h"
#include "app/entry_win32.h"
#include "app/hidden_window_win32.h"
#include "base/handles_win32.h"
#include "settings/migration_win32.h"
#include "support/call_log.h"
#include "support/fake_module_path_win32.h"
#include "support/own_registry_win32.h"
#include "support/real_call_win32.h"

namespace {

using kestrane::test::Calls;
using kestrane::test::CountCalls;
using kestrane::test::NoteCall;
using testing::ElementsAre;

HANDLE FakeHandle(std::uintptr_t number) {
    return reinterpret_cast<HANDLE>(number);
}
const HANDLE MutexHandle = FakeHandle(0x5555001);
const HANDLE ProcessHandle = FakeHandle(0x5555005);
const HINSTANCE Module = reinterpret_cast<HINSTANCE>(FakeHandle(0x5550000));
const HWND OtherWindow = reinterpret_cast<HWND>(FakeHandle(0x5555009));

struct World {
    DWORD firstAct = 0;  // the DLL directories, if nothing was called before
    HANDLE mutex = MutexHandle;
    DWORD mutexError = ERROR_SUCCESS;
    DWORD waitResult = WAIT_OBJECT_0;
    HWND runningWindow = nullptr;
    DWORD runningProcessId = 4711;
    HANDLE process = ProcessHandle;
    int roundsUntilGone = 0;
    bool classRegisters = true;
    bool windowIsMade = true;
    std::deque<BOOL> messages;
    WPARAM lastWParam = 0;
    kestrane::App* app = nullptr;
    bool endsInDispatch = false;  // the program ends in a nested loop, which swallows WM_QUIT
    LSTATUS machineKeyStatus = ERROR_SUCCESS;
    LSTATUS machineValueStatus = ERROR_SUCCESS;  // of writing and deleting it
};
World world;

BOOL WINAPI FakeSetDefaultDllDirectories(DWORD flags) {
    if (Calls().empty()) world.firstAct = flags;
    return REAL(L"kernel32", SetDefaultDllDirectories)(flags);
}

HANDLE WINAPI FakeCreateMutexW(LPSECURITY_ATTRIBUTES attributes, BOOL owner, LPCWSTR name) {
    if (name == nullptr || std::wstring(name) != kestrane::InstanceMutexName) {
        return REAL(L"kernel32", CreateMutexW)(attributes, owner, name);
    }
    NoteCall(owner != FALSE ? "CreateMutex owned" : "CreateMutex");
    SetLastError(world.mutexError);
    return world.mutex;
}

DWORD WINAPI FakeWaitForSingleObject(HANDLE handle, DWORD milliseconds) {
    if (handle != MutexHandle && handle != ProcessHandle) {
        return REAL(L"kernel32", WaitForSingleObject)(handle, milliseconds);
    }
    NoteCall((handle == MutexHandle ? "Wait mutex " : "Wait process ") + std::to_string(milliseconds));
    return world.waitResult;
}

BOOL WINAPI FakeCloseHandle(HANDLE handle) {
    if (handle == MutexHandle || handle == ProcessHandle) {
        NoteCall(handle == MutexHandle ? "CloseHandle mutex" : "CloseHandle process");
        return TRUE;
    }
    return REAL(L"kernel32", CloseHandle)(handle);
}

BOOL WINAPI FakeReleaseMutex(HANDLE handle) {
    if (handle != MutexHandle) return REAL(L"kernel32", ReleaseMutex)(handle);
    NoteCall("ReleaseMutex");
    return TRUE;
}

HWND WINAPI FakeFindWindowW(LPCWSTR className, LPCWSTR title) {
    NoteCall(std::wstring(className) == kestrane::HiddenWindowClass && title == nullptr ? "FindWindow" : "FindWindow?");
    return world.runningWindow;
}

DWORD WINAPI FakeGetWindowThreadProcessId(HWND, LPDWORD processId) {
    *processId = world.runningProcessId;
    return 1;
}

HANDLE WINAPI FakeOpenProcess(DWORD access, BOOL inherit, DWORD id) {
    NoteCall("OpenProcess " + std::to_string(access) + " " + std::to_string(inherit) + " " + std::to_string(id));
    return world.process;
}

BOOL WINAPI FakePostMessageW(HWND window, UINT message, WPARAM, LPARAM) {
    NoteCall(window == OtherWindow && message == WM_CLOSE ? "Post WM_CLOSE" : "Post ?");
    return TRUE;
}

BOOL WINAPI FakeIsWindow(HWND) {
    return world.roundsUntilGone > 0 ? TRUE : FALSE;
}

void WINAPI FakeSleep(DWORD milliseconds) {
    NoteCall("Sleep " + std::to_string(milliseconds));
    --world.roundsUntilGone;
}

UINT WINAPI FakeRegisterWindowMessageW(LPCWSTR name) {
    NoteCall(std::wstring(name) == L"TaskbarCreated" ? "RegisterWindowMessage" : "RegisterWindowMessage?");
    return 0xC123;
}

ATOM WINAPI FakeRegisterClassExW(const WNDCLASSEXW* windowClass) {
    NoteCall("RegisterClass");
    EXPECT_EQ(windowClass->cbSize, sizeof(WNDCLASSEXW));
    EXPECT_STREQ(windowClass->lpszClassName, L"kestrane.hidden");
    EXPECT_EQ(windowClass->lpfnWndProc, &kestrane::HiddenWindowProc);
    EXPECT_EQ(windowClass->hInstance, Module);
    EXPECT_EQ(windowClass->style, 0U);
    EXPECT_EQ(windowClass->hIcon, nullptr);
    EXPECT_EQ(windowClass->hCursor, nullptr);
    EXPECT_EQ(windowClass->hbrBackground, nullptr);
    EXPECT_EQ(windowClass->cbWndExtra, 0);
    return world.classRegisters ? ATOM{1} : ATOM{0};
}

HWND WINAPI FakeCreateWindowExW(DWORD exStyle, LPCWSTR, LPCWSTR title, DWORD style, int x, int y, int width, int height,
                                HWND parent, HMENU menu, HINSTANCE instance, LPVOID app) {
    NoteCall("CreateWindow");
    EXPECT_EQ(instance, Module);
    world.app = static_cast<kestrane::App*>(app);
    EXPECT_EQ(world.app->instance, Module);
    EXPECT_EQ(exStyle, 128U);
    EXPECT_STREQ(title, L"kestrane");
    EXPECT_EQ(style, 0U);
    EXPECT_EQ(x | y | width | height, 0);
    EXPECT_EQ(parent, nullptr);
    EXPECT_EQ(menu, nullptr);
    EXPECT_EQ(world.app->taskbarCreatedMessage, 0xC123U);
    return world.windowIsMade ? OtherWindow : nullptr;
}

BOOL WINAPI FakeGetMessageW(LPMSG message, HWND window, UINT first, UINT last) {
    EXPECT_EQ(window, nullptr);
    EXPECT_EQ(first | last, 0U);
    const BOOL result = world.messages.empty() ? FALSE : world.messages.front();
    if (!world.messages.empty()) world.messages.pop_front();
    NoteCall("GetMessage " + std::to_string(result));
    message->message = WM_NULL;
    message->wParam = world.lastWParam;
    return result;
}

BOOL WINAPI FakeTranslateMessage(const MSG*) {
    return FALSE;
}

LRESULT WINAPI FakeDispatchMessageW(const MSG*) {
    NoteCall("Dispatch");
    if (world.endsInDispatch) world.app->shuttingDown = true;
    return 0;
}

void WINAPI FakePostQuitMessage(int exitCode) {
    NoteCall("PostQuitMessage " + std::to_string(exitCode));
}

/// Noted once for all the keys of a file.
DWORD WINAPI FakeGetPrivateProfileStringW(LPCWSTR, LPCWSTR, LPCWSTR fallback, LPWSTR text, DWORD size, LPCWSTR) {
    if (Calls().empty() || Calls().back() != "load settings") NoteCall("load settings");
    lstrcpynW(text, fallback, static_cast<int>(size));
    return static_cast<DWORD>(std::wcslen(text));
}

LSTATUS WINAPI FakeRegCreateKeyExW(HKEY root, LPCWSTR path, DWORD, LPWSTR, DWORD options, REGSAM access,
                                   LPSECURITY_ATTRIBUTES, PHKEY key, LPDWORD disposition) {
    EXPECT_EQ(root, HKEY_LOCAL_MACHINE);
    EXPECT_STREQ(path, L"Software\\Microsoft\\Windows\\CurrentVersion\\Run");
    EXPECT_EQ(access, 2U);
    EXPECT_EQ(options, 0U);
    if (world.machineKeyStatus != ERROR_SUCCESS) return world.machineKeyStatus;
    return REAL(L"advapi32", RegCreateKeyExW)(root, path, 0, nullptr, options, access, nullptr, key, disposition);
}

LSTATUS WINAPI FakeRegSetValueExW(HKEY key, LPCWSTR name, DWORD, DWORD type, const BYTE* data, DWORD size) {
    EXPECT_EQ(size, (std::wcslen(reinterpret_cast<LPCWSTR>(data)) + 1) * sizeof(wchar_t)) << "including its terminator";
    if (world.machineValueStatus != ERROR_SUCCESS) return world.machineValueStatus;
    return REAL(L"advapi32", RegSetValueExW)(key, name, 0, type, data, size);
}

LSTATUS WINAPI FakeRegDeleteValueW(HKEY key, LPCWSTR name) {
    if (world.machineValueStatus != ERROR_SUCCESS) return world.machineValueStatus;
    return REAL(L"advapi32", RegDeleteValueW)(key, name);
}

BOOL WINAPI FakeTerminateProcess(HANDLE process, UINT exitCode) {
    NoteCall((process == GetCurrentProcess() ? "TerminateProcess " : "TerminateProcess ? ") + std::to_string(exitCode));
    ExitThread(0);  // to the test, this thread has been the process
}

DWORD WINAPI Terminate(LPVOID) {
    std::terminate();
}

void WINAPI FakeOutputDebugStringW(LPCWSTR text) {
    std::string narrow;
    for (; *text != 0; ++text)
        narrow.push_back(static_cast<char>(*text));
    NoteCall(narrow);
}

}  // namespace

extern "C" {
decltype(&SetDefaultDllDirectories) __imp_SetDefaultDllDirectories = &FakeSetDefaultDllDirectories;
decltype(&CreateMutexW) __imp_CreateMutexW = &FakeCreateMutexW;
decltype(&WaitForSingleObject) __imp_WaitForSingleObject = &FakeWaitForSingleObject;
decltype(&CloseHandle) __imp_CloseHandle = &FakeCloseHandle;
decltype(&ReleaseMutex) __imp_ReleaseMutex = &FakeReleaseMutex;
decltype(&FindWindowW) __imp_FindWindowW = &FakeFindWindowW;
decltype(&GetWindowThreadProcessId) __imp_GetWindowThreadProcessId = &FakeGetWindowThreadProcessId;
decltype(&OpenProcess) __imp_OpenProcess = &FakeOpenProcess;
decltype(&PostMessageW) __imp_PostMessageW = &FakePostMessageW;
decltype(&IsWindow) __imp_IsWindow = &FakeIsWindow;
decltype(&Sleep) __imp_Sleep = &FakeSleep;
decltype(&RegisterWindowMessageW) __imp_RegisterWindowMessageW = &FakeRegisterWindowMessageW;
decltype(&RegisterClassExW) __imp_RegisterClassExW = &FakeRegisterClassExW;
decltype(&CreateWindowExW) __imp_CreateWindowExW = &FakeCreateWindowExW;
decltype(&GetMessageW) __imp_GetMessageW = &FakeGetMessageW;
decltype(&TranslateMessage) __imp_TranslateMessage = &FakeTranslateMessage;
decltype(&DispatchMessageW) __imp_DispatchMessageW = &FakeDispatchMessageW;
decltype(&PostQuitMessage) __imp_PostQuitMessage = &FakePostQuitMessage;
decltype(&GetPrivateProfileStringW) __imp_GetPrivateProfileStringW = &FakeGetPrivateProfileStringW;
decltype(&RegCreateKeyExW) __imp_RegCreateKeyExW = &FakeRegCreateKeyExW;
decltype(&RegSetValueExW) __imp_RegSetValueExW = &FakeRegSetValueExW;
decltype(&RegDeleteValueW) __imp_RegDeleteValueW = &FakeRegDeleteValueW;
decltype(&TerminateProcess) __imp_TerminateProcess = &FakeTerminateProcess;
decltype(&OutputDebugStringW) __imp_OutputDebugStringW = &FakeOutputDebugStringW;
}

namespace kestrane {

/// Its own tests show what it does.
void MigrateFormerInstall() {
    NoteCall("take over the former settings");
}

namespace {

class EntryTest : public testing::Test {
  protected:
    EntryTest() {
        world = World{};
        toldPath.reset();
        Calls().clear();
    }

    /// Main's calls, without the debug lines about the counters.
    static std::vector<std::string> CallsOfMain() {
        std::vector<std::string> calls;
        for (const std::string& call : Calls()) {
            if (call.rfind("kestrane: ", 0) != 0) calls.push_back(call);
        }
        return calls;
    }
};

using MainTest = EntryTest;
using ExitTest = EntryTest;
using TerminateTest = EntryTest;

TEST_F(MainTest, BeforeAllElseDllsComeFromTheSystemsFolderAlone) {
    for (const wchar_t* text : {L"", L"--updated", L"--exit", L"--autostart-machine clear"}) {
        world = World{};
        world.machineKeyStatus = ERROR_ACCESS_DENIED;  // of the machine's own Run key
        Calls().clear();
        Main(Module, text);
        EXPECT_EQ(world.firstAct, DWORD{LOAD_LIBRARY_SEARCH_SYSTEM32}) << testing::PrintToString(text);
    }
}

TEST_F(MainTest, TheProgramLeavesTheFolderFromWhichItWasStarted) {
    const auto currentFolder = [] {
        wchar_t folder[MAX_PATH] = {};
        GetCurrentDirectoryW(MAX_PATH, folder);
        return std::wstring(folder);
    };
    wchar_t system[MAX_PATH] = {};
    GetSystemDirectoryW(system, MAX_PATH);
    wchar_t windows[MAX_PATH] = {};
    GetWindowsDirectoryW(windows, MAX_PATH);
    ASSERT_TRUE(SetCurrentDirectoryW(windows));
    Main(Module, L"");
    EXPECT_EQ(currentFolder(), system);
}

TEST_F(TerminateTest, AnExceptionThatNothingCatchesEndsTheProgramWithoutAMessageBox) {
    const UniqueKernelHandle thread(CreateThread(nullptr, 0, &Terminate, nullptr, 0, nullptr));
    ASSERT_EQ(WaitForSingleObject(thread.Get(), INFINITE), DWORD{WAIT_OBJECT_0});
    EXPECT_THAT(Calls(), ElementsAre("kestrane: excepcion sin tratar, el programa termina\n", "TerminateProcess 3"));
}

TEST_F(MainTest, NoMutexMeansNothingIsStarted) {
    world.mutex = nullptr;
    EXPECT_EQ(Main(Module, L""), 0);
    EXPECT_THAT(Calls(), ElementsAre("CreateMutex owned"));
}

TEST_F(MainTest, ASecondInstanceLeavesInSilence) {
    world.mutexError = ERROR_ALREADY_EXISTS;
    for (const wchar_t* text : {L"", L"--updated ", L"--UPDATED", L"anything"}) {
        Calls().clear();
        EXPECT_EQ(Main(Module, text), 0);
        EXPECT_THAT(Calls(), ElementsAre("CreateMutex owned", "CloseHandle mutex"));
    }
}

TEST_F(MainTest, RunsInTheRequiredOrder) {
    world.messages = {TRUE, TRUE};
    world.lastWParam = 0;
    for (const wchar_t* text : {static_cast<const wchar_t*>(nullptr), L""}) {
        Calls().clear();
        world.messages = {TRUE, TRUE};
        EXPECT_EQ(Main(Module, text), 0);
        EXPECT_THAT(CallsOfMain(),
                    ElementsAre("CreateMutex owned", "take over the former settings", "load settings",
                                "RegisterWindowMessage", "RegisterClass", "CreateWindow", "GetMessage 1", "Dispatch",
                                "GetMessage 1", "Dispatch", "GetMessage 0", "ReleaseMutex", "CloseHandle mutex"));
    }
}

TEST_F(MainTest, ReturnsTheExitCodeOfTheQuitMessage) {
    world.lastWParam = 3;
    EXPECT_EQ(Main(Module, L""), 3);
}

TEST_F(MainTest, AnErrorOfGetMessageEndsTheLoop) {
    world.messages = {TRUE, -1, TRUE};
    Main(Module, L"");
    EXPECT_EQ(CountCalls("Dispatch"), 1);
    EXPECT_EQ(CountCalls("ReleaseMutex"), 1);
}

TEST_F(MainTest, AnEndInANestedLoopEndsThisOneToo) {
    world.messages = {TRUE};
    world.endsInDispatch = true;
    Main(Module, L"");
    EXPECT_THAT(CallsOfMain(),
                ElementsAre("CreateMutex owned", "take over the former settings", "load settings",
                            "RegisterWindowMessage", "RegisterClass", "CreateWindow", "GetMessage 1", "Dispatch",
                            "PostQuitMessage 0", "GetMessage 0", "ReleaseMutex", "CloseHandle mutex"));
}

TEST_F(MainTest, AfterAnUpdateItWaitsForTheOutgoingInstance) {
    struct Row {
        DWORD answer;
        bool starts;
    };
    const Row rows[] = {
        {WAIT_OBJECT_0, true},
        {WAIT_ABANDONED, true},  // the outgoing instance crashed
        {WAIT_TIMEOUT, false},
        {WAIT_FAILED, false},
    };
    for (const Row& row : rows) {
        Calls().clear();
        world.mutexError = ERROR_ALREADY_EXISTS;
        world.waitResult = row.answer;
        EXPECT_EQ(Main(Module, L"--updated"), 0) << row.answer;
        EXPECT_EQ(CountCalls("Wait mutex 20000"), 1) << row.answer;
        EXPECT_EQ(CountCalls("CreateWindow"), row.starts ? 1 : 0) << row.answer;
        EXPECT_EQ(CountCalls("ReleaseMutex"), row.starts ? 1 : 0) << row.answer;
        EXPECT_EQ(CountCalls("CloseHandle mutex"), 1) << row.answer;
    }
}

TEST_F(MainTest, AfterAnUpdateWithoutAnotherInstanceItDoesNotWait) {
    EXPECT_EQ(Main(Module, L"--updated"), 0);
    EXPECT_EQ(CountCalls("Wait mutex 20000"), 0);
    EXPECT_EQ(CountCalls("CreateWindow"), 1);
}

TEST_F(MainTest, ARefusedClassOrWindowGivesOne) {
    world.classRegisters = false;
    EXPECT_EQ(Main(Module, L""), 1);
    EXPECT_EQ(CountCalls("CreateWindow"), 0);
    EXPECT_EQ(CountCalls("ReleaseMutex"), 0);  // left to the end of the process

    world = World{};
    world.windowIsMade = false;
    Calls().clear();
    EXPECT_EQ(Main(Module, L""), 1);
    EXPECT_EQ(CountCalls("GetMessage 0"), 0);
    EXPECT_EQ(CountCalls("ReleaseMutex"), 0);
}

TEST_F(MainTest, OneShotCommandsTouchNoMutex) {
    EXPECT_EQ(Main(Module, L"--exit"), 0);
    EXPECT_THAT(Calls(), ElementsAre("FindWindow"));
}

TEST_F(MainTest, AnyOtherTextIsNoOneShotCommand) {
    for (const wchar_t* text : {L"", L" --exit", L"--updated", L"--Exit"})
        EXPECT_EQ(HandleCommandLine(text), -1);
    EXPECT_EQ(HandleCommandLine(nullptr), -1);
    EXPECT_TRUE(Calls().empty());
}

TEST_F(ExitTest, NothingRunning) {
    EXPECT_EQ(RequestRunningInstanceExit(), 0);
    EXPECT_THAT(Calls(), ElementsAre("FindWindow"));
}

TEST_F(ExitTest, WaitsForTheProcess) {
    world.runningWindow = OtherWindow;
    EXPECT_EQ(RequestRunningInstanceExit(), 0);
    EXPECT_THAT(Calls(), ElementsAre("FindWindow", "OpenProcess 1048576 0 4711", "Post WM_CLOSE", "Wait process 5000",
                                     "CloseHandle process"));
}

TEST_F(ExitTest, AProcessThatStaysIsAFailureAndIsNotKilled) {
    world.runningWindow = OtherWindow;
    for (const DWORD answer : {DWORD{WAIT_TIMEOUT}, WAIT_FAILED}) {
        world.waitResult = answer;
        EXPECT_EQ(RequestRunningInstanceExit(), 1);
    }
    EXPECT_EQ(CountCalls("CloseHandle process"), 2);
}

TEST_F(ExitTest, WithoutAProcessHandleItLooksAtTheWindow) {
    struct Row {
        DWORD processId;
        HANDLE process;
        int roundsUntilGone;
        int sleeps;
        int result;
    };
    const Row rows[] = {
        {0, ProcessHandle, 0, 0, 0},                            // no process id: nothing to open
        {0, ProcessHandle, 3, 3, 0}, {4711, nullptr, 7, 7, 0},  // OpenProcess refuses
        {4711, nullptr, 50, 50, 0},  {4711, nullptr, 51, 50, 1},
    };
    for (const Row& row : rows) {
        Calls().clear();
        world.runningWindow = OtherWindow;
        world.runningProcessId = row.processId;
        world.process = row.process;
        world.roundsUntilGone = row.roundsUntilGone;
        EXPECT_EQ(RequestRunningInstanceExit(), row.result) << row.roundsUntilGone;
        EXPECT_EQ(CountCalls("Sleep 100"), row.sleeps) << row.roundsUntilGone;
        EXPECT_EQ(CountCalls("Post WM_CLOSE"), 1);
    }
}

constexpr char MachineRefused[] = "kestrane: no se pudo escribir el autoarranque de equipo (HKLM); hara falta elevar\n";
constexpr wchar_t RunKey[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";

std::wstring MachineRunValue() {
    wchar_t text[512] = {};
    DWORD size = sizeof text;
    RegGetValueW(HKEY_LOCAL_MACHINE, RunKey, L"kestrane", RRF_RT_REG_SZ, nullptr, text, &size);
    return text;
}

class MachineAutostartTest : public EntryTest {
  protected:
    void SetUp() override { ASSERT_TRUE(registry_); }

  private:
    const OwnRegistry registry_{HKEY_LOCAL_MACHINE};
};

TEST_F(MachineAutostartTest, IsWrittenAndCleared) {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    EXPECT_EQ(Main(Module, L"--autostart-machine set"), 0);
    EXPECT_EQ(MachineRunValue(), L"\"" + std::wstring(path) + L"\"");
    EXPECT_EQ(Main(Module, L"--autostart-machine clear"), 0);
    EXPECT_EQ(MachineRunValue(), L"");
    EXPECT_EQ(Main(Module, L"--autostart-machine clear"), 0);  // a missing value counts as removed
    EXPECT_TRUE(Calls().empty());
}

TEST_F(MachineAutostartTest, ClearingTakesAwayAValueOfAnyType) {
    ASSERT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, RunKey, L"kestrane", REG_BINARY, "x", 1), ERROR_SUCCESS);
    EXPECT_EQ(Main(Module, L"--autostart-machine clear"), 0);
    EXPECT_EQ(RegGetValueW(HKEY_LOCAL_MACHINE, RunKey, L"kestrane", RRF_RT_ANY, nullptr, nullptr, nullptr),
              ERROR_FILE_NOT_FOUND);
}

TEST_F(MachineAutostartTest, APathThatTheRunKeyCannotHoldIsAFailureAndNotCut) {
    toldPath = std::wstring(259, L'x');
    EXPECT_EQ(Main(Module, L"--autostart-machine set"), 0);
    const std::wstring longest = L"\"" + *toldPath + L"\"";
    EXPECT_EQ(MachineRunValue(), longest);
    EXPECT_TRUE(Calls().empty());
    for (const DWORD length : {260U, 261U, 519U, 520U, 32767U, 100000U}) {
        toldPath = std::wstring(length, L'x');
        Calls().clear();
        EXPECT_EQ(Main(Module, L"--autostart-machine set"), 1) << length;
        EXPECT_EQ(MachineRunValue(), longest) << length;
        EXPECT_THAT(Calls(), ElementsAre(MachineRefused)) << length;
    }
    EXPECT_EQ(Main(Module, L"--autostart-machine clear"), 0) << "clearing needs no path";
    EXPECT_EQ(MachineRunValue(), L"");
}

TEST_F(MachineAutostartTest, WithoutTheRightsItFails) {
    World noKey;
    noKey.machineKeyStatus = ERROR_ACCESS_DENIED;
    World noValue;
    noValue.machineValueStatus = ERROR_ACCESS_DENIED;
    for (const World& refusal : {noKey, noValue}) {
        world = refusal;
        for (const wchar_t* text : {L"--autostart-machine set", L"--autostart-machine clear"}) {
            Calls().clear();
            EXPECT_EQ(Main(Module, text), 1);
            EXPECT_THAT(Calls(), ElementsAre(MachineRefused));
        }
    }
}

}  // namespace
}  // namespace kestrane
