#include "app/command_line.h"

#include <gtest/gtest.h>

namespace kestrane {
namespace {

TEST(ClassifyCommandLine, TakesTheTextWholeAndExactly) {
    struct Row {
        const wchar_t* text;
        StartKind kind;
    };
    const Row rows[] = {
        {nullptr, StartKind::Ordinary},
        {L"", StartKind::Ordinary},
        {L"--exit", StartKind::Exit},
        {L" --exit", StartKind::Ordinary},
        {L"--exit ", StartKind::Ordinary},
        {L"--EXIT", StartKind::Ordinary},
        {L"-exit", StartKind::Ordinary},
        {L"--exi", StartKind::Ordinary},
        {L"--exit --updated", StartKind::Ordinary},
        {L"--autostart-machine set", StartKind::SetMachineAutostart},
        {L"--autostart-machine clear", StartKind::ClearMachineAutostart},
        {L"--autostart-machine", StartKind::Ordinary},
        {L"--autostart-machine  set", StartKind::Ordinary},  // two blanks in the middle
        {L"--autostart-machine Set", StartKind::Ordinary},
        {L"--autostart-machine set ", StartKind::Ordinary},
        {L"--updated", StartKind::AfterUpdate},
        {L"--updated now", StartKind::Ordinary},  // anything after it means no wait
        {L"--Updated", StartKind::Ordinary},
        {L"kestrane", StartKind::Ordinary},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(ClassifyCommandLine(row.text), row.kind) << "row " << &row - rows << " of the table";
    }
}

}  // namespace
}  // namespace kestrane
