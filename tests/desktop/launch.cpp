// Starts a program with an exact command line, neither split nor quoted, and waits for it. Wine may quote arguments, so
// the text comes through the environment:
//
//     LAUNCH_PROGRAM=kestrane.exe LAUNCH_ARGUMENTS=" --exit" wine launch.exe
//
// The exit code is the program's.
#include <windows.h>

#include <string>

int main() {
    wchar_t program[MAX_PATH];
    wchar_t arguments[1024];
    if (GetEnvironmentVariableW(L"LAUNCH_PROGRAM", program, MAX_PATH) == 0) return -1;
    arguments[0] = 0;
    GetEnvironmentVariableW(L"LAUNCH_ARGUMENTS", arguments, 1024);
    std::wstring commandLine = L'"' + std::wstring(program) + L"\" " + arguments;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process;
    if (!CreateProcessW(program, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
        return -1;
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(process.hProcess, &code);
    return static_cast<int>(code);
}
