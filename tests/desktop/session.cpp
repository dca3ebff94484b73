// Runs a program in the logon session of another user, which this program makes where the system has only one: with
// names below "Local\", a window station and a desktop of its own, and with that user's folders.
//
//     session NUMBER USER PROGRAM ARGUMENTS    "-" for no arguments
//
// The first one there makes the session, prints a line when it has, and must be the last to end. The exit code is the
// program's.
#include <windows.h>

#include <shellapi.h>
#include <winternl.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

constexpr int MostRounds = 1000;
constexpr DWORD PollMs = 10;

// For the rest winternl.h has no names. The offset is that of every 64-bit Windows since Vista.
constexpr std::size_t SessionIdOffset = 0x2C0;
constexpr ULONG OpenIfThere = 0x80;
constexpr NTSTATUS WasThere = 0x40000000;
constexpr ACCESS_MASK Everything = 0xF000F;

using CreateDirectoryObject = NTSTATUS(NTAPI*)(PHANDLE, ACCESS_MASK, POBJECT_ATTRIBUTES);
using CreateSymbolicLinkObject = NTSTATUS(NTAPI*)(PHANDLE, ACCESS_MASK, POBJECT_ATTRIBUTES, PUNICODE_STRING);

template <typename Function>
Function FromNtdll(const char* name) {
    const FARPROC address = GetProcAddress(GetModuleHandleW(L"ntdll"), name);
    return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(address));
}

UNICODE_STRING TextOf(std::wstring& text) {
    const auto bytes = static_cast<USHORT>(text.size() * sizeof(wchar_t));
    return {bytes, bytes, text.data()};
}

/// What is made here is kept until this program ends.
bool MakeFolder(std::wstring path, bool& isNew) {
    UNICODE_STRING name = TextOf(path);
    OBJECT_ATTRIBUTES attributes;
    InitializeObjectAttributes(&attributes, &name, OpenIfThere, nullptr, nullptr);
    HANDLE folder = nullptr;
    static const auto create = FromNtdll<CreateDirectoryObject>("NtCreateDirectoryObject");
    const NTSTATUS status = create(&folder, Everything, &attributes);
    isNew = status != WasThere;
    return status >= 0;
}

bool MakeLink(std::wstring path, std::wstring target) {
    UNICODE_STRING name = TextOf(path);
    UNICODE_STRING leadsTo = TextOf(target);
    OBJECT_ATTRIBUTES attributes;
    InitializeObjectAttributes(&attributes, &name, 0, nullptr, nullptr);
    HANDLE link = nullptr;
    static const auto create = FromNtdll<CreateSymbolicLinkObject>("NtCreateSymbolicLinkObject");
    return create(&link, Everything, &attributes, &leadsTo) >= 0;
}

bool MakeSession(const std::wstring& number) {
    const std::wstring session = L"\\Sessions\\" + number;
    const std::wstring names = session + L"\\BaseNamedObjects";
    bool isNew = false;
    if (!MakeFolder(session, isNew) || !MakeFolder(session + L"\\Windows", isNew) ||
        !MakeFolder(session + L"\\Windows\\WindowStations", isNew) || !MakeFolder(names, isNew))
        return false;
    if (!isNew) return true;
    if (!MakeLink(names + L"\\Local", names) || !MakeLink(names + L"\\Global", L"\\BaseNamedObjects")) return false;
    std::puts("begun");
    std::fflush(stdout);
    return true;
}

/// For a program before its first instruction. Its number is there once the system has set it up.
bool MoveToSession(HANDLE process, DWORD number) {
    PROCESS_BASIC_INFORMATION facts{};
    if (NtQueryInformationProcess(process, ProcessBasicInformation, &facts, sizeof facts, nullptr) < 0) return false;
    char* const sessionId = reinterpret_cast<char*>(facts.PebBaseAddress) + SessionIdOffset;
    DWORD own = 0;
    DWORD present = 0;
    ProcessIdToSessionId(GetCurrentProcessId(), &own);
    for (int round = 0; round < MostRounds; ++round) {
        if (ReadProcessMemory(process, sessionId, &present, sizeof present, nullptr) && present == own)
            return WriteProcessMemory(process, sessionId, &number, sizeof number, nullptr) != FALSE;
        Sleep(PollMs);
    }
    return false;
}

}  // namespace

int main() {
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    if (count != 4 || !MakeSession(words[1])) return -1;
    const std::wstring program = words[2];
    const std::wstring arguments = words[3];
    std::wstring commandLine = L'"' + program + L"\" " + (arguments == L"-" ? L"" : arguments);
    std::wstring desktop = L"WinSta0\\Default";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.lpDesktop = desktop.data();
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr, nullptr,
                        &startup, &process))
        return -1;
    if (!MoveToSession(process.hProcess, std::wcstoul(words[1], nullptr, 10))) {
        TerminateProcess(process.hProcess, 0);
        return -1;
    }
    ResumeThread(process.hThread);
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(process.hProcess, &code);
    return static_cast<int>(code);
}
