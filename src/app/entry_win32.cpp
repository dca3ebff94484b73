#include "app/entry_win32.h"

#include <array>
#include <cstdlib>
#include <exception>
#include <utility>

#include "app/app_win32.h"
#include "app/command_line.h"
#include "app/hidden_window_win32.h"
#include "base/debug_log_win32.h"
#include "base/handles_win32.h"
#include "settings/autostart_win32.h"
#include "settings/ini_file_win32.h"
#include "settings/migration_win32.h"
#include "text/language_win32.h"
#include "text/translation.h"

namespace kestrane {
namespace {

int ExitCodeOf(bool success) {
    return success ? 0 : 1;
}

bool WaitForOutgoingInstance(HANDLE mutex) {
    const DWORD result = WaitForSingleObject(mutex, UpdateWaitMs);
    // Abandoned: the outgoing instance crashed, which must not stop its successor.
    return result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
}

/// The mutex, owned by this process, or none if this process must exit quietly.
UniqueKernelHandle BecomeRunningInstance(const wchar_t* commandLine) {
    SetLastError(ERROR_SUCCESS);
    UniqueKernelHandle mutex(CreateMutexW(nullptr, TRUE, InstanceMutexName));
    if (!mutex || GetLastError() != ERROR_ALREADY_EXISTS) return mutex;
    const bool waits = ClassifyCommandLine(commandLine) == StartKind::AfterUpdate;
    if (!waits || !WaitForOutgoingInstance(mutex.Get())) mutex.Reset();
    return mutex;
}

int PumpMessages(const App& app) {
    MSG msg{};
    // A GetMessageW error (-1) ends the loop like WM_QUIT.
    while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
        // The window can be destroyed inside a modal loop of the system, for a drag or a menu, which may have swallowed
        // WM_QUIT.
        if (app.shuttingDown) PostQuitMessage(0);
    }
    return static_cast<int>(msg.wParam);
}

/// Waits up to 5 seconds, polling every 100 ms.
bool WaitForWindowToGo(HWND window) {
    for (int round = 0; round < ExitPollRounds && IsWindow(window); ++round)
        Sleep(ExitPollMs);
    return !IsWindow(window);
}

UniqueKernelHandle OpenProcessOfWindow(HWND window) {
    DWORD processId = 0;
    GetWindowThreadProcessId(window, &processId);
    if (processId == 0) return UniqueKernelHandle();
    return UniqueKernelHandle(OpenProcess(SYNCHRONIZE, FALSE, processId));
}

/// Keeps system DLLs from loading others by bare name from the program's folder, and ShellExecuteW from finding
/// programs in the folder from which this one was started. That folder is then not held open either.
void LookInSystemFolderOnly() {
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    std::array<wchar_t, MAX_PATH> folder{};
    const UINT length = GetSystemDirectoryW(folder.data(), MAX_PATH);
    if (length > 0 && length < MAX_PATH) SetCurrentDirectoryW(folder.data());
}

}  // namespace

int Main(HINSTANCE instance, const wchar_t* commandLine) {
    LookInSystemFolderOnly();
    if (const int exitCode = HandleCommandLine(commandLine); exitCode >= 0) return exitCode;
    UniqueKernelHandle mutex = BecomeRunningInstance(commandLine);
    if (!mutex) return 0;

    App app;
    app.instance = instance;
    MigrateFormerInstall();
    app.settings = LoadSettings();
    SetLanguage(ResolveLanguage(app.settings.language));
    app.taskbarCreatedMessage = RegisterWindowMessageW(TaskbarCreatedName);
    if (!CreateHiddenWindow(app)) return 1;

    const int exitCode = PumpMessages(app);
    ReleaseMutex(mutex.Get());
    mutex.Reset();
    return exitCode;
}

int HandleCommandLine(const wchar_t* commandLine) {
    switch (ClassifyCommandLine(commandLine)) {
        case StartKind::Exit:
            return RequestRunningInstanceExit();
        case StartKind::SetMachineAutostart:
            return ExitCodeOf(SetMachineAutostart(true));
        case StartKind::ClearMachineAutostart:
            return ExitCodeOf(SetMachineAutostart(false));
        case StartKind::Ordinary:
        case StartKind::AfterUpdate:
            break;
    }
    return -1;
}

int RequestRunningInstanceExit() {
    const HWND window = FindWindowW(HiddenWindowClass, nullptr);
    if (window == nullptr) return 0;
    const UniqueKernelHandle process = OpenProcessOfWindow(window);
    PostMessageW(window, WM_CLOSE, 0, 0);
    // With a handle, wait for the process; without one, only for the window.
    if (process) return ExitCodeOf(WaitForSingleObject(process.Get(), ExitWaitMs) == WAIT_OBJECT_0);
    return ExitCodeOf(WaitForWindowToGo(window));
}

}  // namespace kestrane

/// What std::terminate calls, linked in place of the C++ runtime's own. That one ends in the C runtime's message box,
/// behind which the windows of the program would go on receiving messages, in whatever state the exception has left
/// them; and it brings 70 KB, a demangler and all of printf, to tell the exception to a console that is not there. This
/// must stand in a file of which the program needs something else: for this alone the linker would take the runtime's.
void __gnu_cxx::__verbose_terminate_handler() {
    kestrane::LogDebug(L"kestrane: excepcion sin tratar, el programa termina\n");
    TerminateProcess(GetCurrentProcess(), kestrane::AbortExitCode);
    std::abort();
}
