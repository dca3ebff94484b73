#include "app/command_line.h"

#include <string_view>

#include "settings/autostart.h"

namespace kestrane {

StartKind ClassifyCommandLine(const wchar_t* commandLine) {
    const std::wstring_view text = commandLine == nullptr ? std::wstring_view() : commandLine;
    if (text == ExitSwitch) return StartKind::Exit;
    if (text == SetMachineAutostartCommand) return StartKind::SetMachineAutostart;
    if (text == ClearMachineAutostartCommand) return StartKind::ClearMachineAutostart;
    if (text == UpdatedSwitch) return StartKind::AfterUpdate;
    return StartKind::Ordinary;
}

}  // namespace kestrane
