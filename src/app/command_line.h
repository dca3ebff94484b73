#pragma once
// Classifies the command line that wWinMain receives, without the program name. It is compared as a whole, never split,
// trimmed or case-folded, so " --exit" or "--EXIT" is an ordinary start.

namespace kestrane {

inline constexpr const wchar_t* ExitSwitch = L"--exit";
inline constexpr const wchar_t* UpdatedSwitch = L"--updated";

enum class StartKind {
    Ordinary,              // anything else, including an empty command line
    AfterUpdate,           // an ordinary start that waits for the outgoing version to end
    Exit,                  // one-shot: end the running instance
    SetMachineAutostart,   // one-shot: start with Windows for all users
    ClearMachineAutostart  // one-shot: the opposite
};

/// Null counts as empty.
StartKind ClassifyCommandLine(const wchar_t* commandLine);

}  // namespace kestrane
