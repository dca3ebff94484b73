// Starts many programs at the same moment and waits for them all:
//
//     crowd COUNT PROGRAM ARGUMENTS [COUNT PROGRAM ARGUMENTS]...    "-" for no arguments
//
// A line "started" says that all of them run; then comes a line with the exit code of each that ends.
#include <windows.h>

#include <shellapi.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

constexpr DWORD PollMs = 10;

/// As it stands before its first instruction.
PROCESS_INFORMATION Prepare(const std::wstring& program, const std::wstring& arguments) {
    std::wstring commandLine = L'"' + program + L"\" " + (arguments == L"-" ? L"" : arguments);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, CREATE_SUSPENDED, nullptr,
                        nullptr, &startup, &process))
        std::exit(1);
    return process;
}

void Print(const std::string& line) {
    std::puts(line.c_str());
    std::fflush(stdout);
}

bool HasEnded(const PROCESS_INFORMATION& process) {
    if (WaitForSingleObject(process.hProcess, 0) != WAIT_OBJECT_0) return false;
    DWORD code = 0;
    GetExitCodeProcess(process.hProcess, &code);
    Print(std::to_string(code));
    return true;
}

}  // namespace

int main() {
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<PROCESS_INFORMATION> processes;
    for (int i = 1; i + 2 < count; i += 3) {
        for (long left = std::wcstol(words[i], nullptr, 10); left > 0; --left)
            processes.push_back(Prepare(words[i + 1], words[i + 2]));
    }
    for (const PROCESS_INFORMATION& process : processes)
        ResumeThread(process.hThread);
    Print("started");
    while (!processes.empty()) {
        std::erase_if(processes, HasEnded);
        Sleep(PollMs);
    }
}
