#pragma once
// From the command line to the one running instance of the session, and back to an exit code.
#include <windows.h>

namespace kestrane {

/// Marks the running instance; `Local\` makes it one per logon session.
inline constexpr const wchar_t* InstanceMutexName = L"Local\\kestrane-instance";
/// How long a start after an update waits for the outgoing instance to go.
inline constexpr DWORD UpdateWaitMs = 20000;
/// How long `--exit` waits for the running process to end.
inline constexpr DWORD ExitWaitMs = 5000;
/// The same wait when no process handle could be had: so many rounds of so many milliseconds.
inline constexpr int ExitPollRounds = 50;
inline constexpr DWORD ExitPollMs = 100;

/// The entry function. Returns the exit code of the process: 0 also when another instance lives or the marker cannot be
/// made, 1 when the hidden window cannot.
int Main(HINSTANCE instance, const wchar_t* commandLine);

/// Does the work of a one-shot command and returns its exit code, 0 or greater; -1 for any other text.
int HandleCommandLine(const wchar_t* commandLine);

/// Asks the running instance to end and waits for it. 0 when none is left running, 1 when one still runs after the
/// wait.
int RequestRunningInstanceExit();

}  // namespace kestrane
