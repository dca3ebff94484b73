#pragma once
// The entry function: one-shot commands, one running instance per session, and the exit code.
#include <windows.h>

namespace kestrane {

/// Held by the running instance; `Local\` makes it one per logon session.
inline constexpr const wchar_t* InstanceMutexName = L"Local\\kestrane-instance";
/// How long a start after an update waits for the outgoing instance to exit.
inline constexpr DWORD UpdateWaitMs = 20000;
/// How long `--exit` waits for the running process to exit.
inline constexpr DWORD ExitWaitMs = 5000;
/// The same wait without a process handle: number of polls, and milliseconds between them.
inline constexpr int ExitPollRounds = 50;
inline constexpr DWORD ExitPollMs = 100;
/// Of a process that an exception has ended, as the C runtime's abort has it.
inline constexpr UINT AbortExitCode = 3;

/// The entry function. Returns the exit code of the process: 0 also if another instance is running or the mutex cannot
/// be created, 1 if the hidden window cannot be created.
int Main(HINSTANCE instance, const wchar_t* commandLine);

/// Runs a one-shot command and returns its exit code, 0 or greater; -1 for any other command line.
int HandleCommandLine(const wchar_t* commandLine);

/// Asks the running instance to exit and waits for it. 0 if none is left running, 1 if one still runs after the wait.
int RequestRunningInstanceExit();

}  // namespace kestrane
