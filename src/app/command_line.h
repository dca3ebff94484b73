#pragma once
// What a command line asks for. The text is what the system hands to the entry function, without the program's own
// name, and it is taken whole: it is never split, trimmed or folded, so " --exit" or "--EXIT" is an ordinary start.

namespace kestrane {

inline constexpr const wchar_t* ExitSwitch = L"--exit";
inline constexpr const wchar_t* SetMachineAutostartCommand = L"--autostart-machine set";
inline constexpr const wchar_t* ClearMachineAutostartCommand = L"--autostart-machine clear";
inline constexpr const wchar_t* UpdatedSwitch = L"--updated";

enum class StartKind {
    Ordinary,              // anything that is none of the others, the empty text included
    AfterUpdate,           // an ordinary start that waits for the outgoing version to end
    Exit,                  // one-shot: end the running instance
    SetMachineAutostart,   // one-shot: start with Windows for all users
    ClearMachineAutostart  // one-shot: the opposite
};

/// A null pointer counts as the empty text.
StartKind ClassifyCommandLine(const wchar_t* commandLine);

}  // namespace kestrane
