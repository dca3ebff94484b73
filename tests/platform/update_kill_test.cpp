// An update that is killed at any moment. Copies of this program are started as "kestrane.exe": they download the next
// version from a scripted server, with real files, put it in their own place and start it, as the program does. Each is
// killed before or after one of its file operations, or in the middle of a write, whichever there are: a first run
// without a kill tells them. Each rename fails too. Afterwards a program that runs must stand there, whole, old or new;
// only between the two renames it may stand under its ".old" name instead. All states are printed as a table.
#include <windows.h>
// <windows.h> comes first.
#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cwchar>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "base/module_path_win32.h"
#include "next_version.h"
#include "support/fake_winhttp_win32.h"
#include "support/file_bytes_win32.h"
#include "support/file_operations_win32.h"
#include "support/killed_copy_win32.h"
#include "support/test_folder_win32.h"
#include "update/download_win32.h"
#include "update/file_hash_win32.h"
#include "update/self_replacer_win32.h"

namespace kestrane {
namespace {

using test::fileOperations;
using test::KilledExitCode;
using test::KillMoment;
using test::ReadBytes;
using test::RunToItsEnd;
using testing::ElementsAre;
using testing::IsEmpty;
namespace fs = std::filesystem;

constexpr int OldVersionExitCode = 10;  // of a copy that is only to say that it runs
constexpr int UpdatedExitCode = 30;     // of a copy that has updated itself
constexpr int NotDownloadedExitCode = 31;
constexpr int NotReplacedExitCode = 32;

constexpr const wchar_t* RunSwitch = L"--run";
constexpr const wchar_t* UpdateSwitch = L"--update";

/// What befalls an update.
struct Fate {
    int killAt = 0;  // the number of an operation; 0: it is not killed
    KillMoment moment = KillMoment::None;
    int refusedRenames = 0;  // of the renames, one bit each: away, into place, back
    DWORD error = 0;         // with which they fail
};
constexpr int RenameAway = 1;
constexpr int RenameIntoPlace = 2;
constexpr int RenameBack = 4;

constexpr const char* RenameNotes[] = {"MoveFileExW kestrane.exe kestrane.exe.old",
                                       "MoveFileExW kestrane.exe.new kestrane.exe",
                                       "MoveFileExW kestrane.exe.old kestrane.exe"};

// --- the copy that updates itself

constexpr const char* Host = "updates.example";

/// Everything is set up before the first operation that counts.
void MeetFate(const Fate& fate, const std::wstring& folder) {
    fileOperations.killAt = fate.killAt;
    fileOperations.killMoment = fate.moment;
    fileOperations.killExitCode = KilledExitCode;
    for (int rename = 0; rename < 3; ++rename) {
        if ((fate.refusedRenames >> rename & 1) != 0) fileOperations.refuseOnce[RenameNotes[rename]] = fate.error;
    }
    fileOperations.folder = folder;
}

int UpdateMyself(const Fate& fate, const std::wstring& nextVersion, const std::wstring& log) {
    const std::wstring executable = ModulePath();
    UpdateInfo info{.version = "9.0.0", .url = "https://updates.example/kestrane.exe", .sha256 = {}, .published = {}};
    std::string& body = test::fakeHttp.answers[Host].body;
    body = ReadBytes(nextVersion).value();
    info.size = body.size();
    HashFileSha256(nextVersion, info.sha256);
    MeetFate(fate, executable.substr(0, executable.find_last_of(L'\\') + 1));

    int exitCode = UpdatedExitCode;
    const std::atomic<bool> cancel = false;
    DownloadFailure failure;
    std::uint32_t code = 0;
    if (!DownloadUpdate(info, executable, cancel, {}, failure)) {
        exitCode = NotDownloadedExitCode;
    } else if (ReplaceRunningExecutable(executable, code)) {
        StartNewVersion(executable);
    } else {
        DeleteNewFile(executable);
        exitCode = code == fate.error ? NotReplacedExitCode : -1;
    }

    fileOperations.folder.clear();
    test::WriteOperations(log);
    return exitCode;
}

/// The exit code of a copy of this program; none if this is not one.
std::optional<int> ActAsCopy(const std::vector<std::wstring>& arguments) {
    if (arguments.size() == 2 && arguments[1] == RunSwitch) return OldVersionExitCode;
    if (arguments.size() != 8 || arguments[1] != UpdateSwitch) return std::nullopt;
    const Fate fate{.killAt = std::stoi(arguments[2]),
                    .moment = static_cast<KillMoment>(std::stoi(arguments[3])),
                    .refusedRenames = std::stoi(arguments[4]),
                    .error = static_cast<DWORD>(std::stoul(arguments[5]))};
    return UpdateMyself(fate, arguments[6], arguments[7]);
}

// --- the test that starts it

class UpdateKillTest : public testing::Test {
  protected:
    static std::wstring Beside(const std::wstring& name) {
        const std::wstring own = ModulePath();
        return own.substr(0, own.find_last_of(L'\\') + 1) + name;
    }

    void StartAnew() {
        folder_.emplace();
        executable_ = (folder_->Path() / L"kestrane.exe").wstring();
        ASSERT_TRUE(CopyFileW(ModulePath().c_str(), executable_.c_str(), TRUE));
    }

    /// Runs an update with this fate in a new folder. The exit code of the copy.
    int Update(const Fate& fate) {
        StartAnew();
        const std::wstring numbers = std::to_wstring(fate.killAt) + L" " +
                                     std::to_wstring(static_cast<int>(fate.moment)) + L" " +
                                     std::to_wstring(fate.refusedRenames) + L" " + std::to_wstring(fate.error);
        return RunToItsEnd(
            executable_, std::wstring(UpdateSwitch) + L" " + numbers + L" \"" + nextVersion_ + L"\" \"" + log_ + L"\"");
    }

    std::vector<std::wstring> Names() const {
        std::vector<std::wstring> names;
        for (const auto& entry : fs::directory_iterator(folder_->Path()))
            names.push_back(entry.path().filename().wstring());
        std::ranges::sort(names);
        return names;
    }

    /// What a file holds: "old" or "new", "part" of the new one, "none" if there is no file, or "other".
    std::string StateOf(const std::wstring& path) const {
        const std::optional<std::string> bytes = ReadBytes(path);
        if (!bytes) return "none";
        if (*bytes == oldBytes_) return "old";
        if (*bytes == newBytes_) return "new";
        return newBytes_.starts_with(*bytes) ? "part" : "other";
    }

    /// Prints a row of the table.
    void PrintState(const std::string& what) const {
        const std::string brief = what.substr(0, what.find(" share"));
        std::printf("%-54s %-12s %-6s %s\n", brief.c_str(), StateOf(executable_).c_str(),
                    StateOf(executable_ + L".new").c_str(), StateOf(executable_ + L".old").c_str());
    }
    static void PrintHead() { std::printf("\n%-54s %-12s %-6s %s\n", "killed", "kestrane.exe", ".new", ".old"); }

    /// The executable is the expected one and runs, and the cleaning at its start leaves nothing else.
    void ExpectProgram(const std::string& state, const std::string& when) const {
        EXPECT_EQ(StateOf(executable_), state) << when;
        EXPECT_EQ(RunToItsEnd(executable_, RunSwitch), state == "old" ? OldVersionExitCode : NextVersionExitCode)
            << when;
        CleanUpdateLeftovers(executable_);
        EXPECT_THAT(Names(), ElementsAre(L"kestrane.exe")) << when;
        EXPECT_EQ(StateOf(executable_), state) << when;
    }

    /// The name is free, and the old program stands whole beside it: the user gives it back its name.
    void ExpectProgramSetAside(const std::string& when) const {
        EXPECT_EQ(StateOf(executable_), "none") << when;
        EXPECT_EQ(StateOf(executable_ + L".old"), "old") << when;
        EXPECT_EQ(RunToItsEnd(executable_ + L".old", RunSwitch), OldVersionExitCode) << when;
        fs::rename(executable_ + L".old", executable_);
        ExpectProgram("old", when);
    }

    void KillEverywhere(int refusedRenames, DWORD error, int lastExitCode);

    const TestFolder elsewhere_;
    const std::wstring nextVersion_ = Beside(L"next_version.exe");
    const std::wstring log_ = (elsewhere_.Path() / L"operations").wstring();
    const std::string oldBytes_ = ReadBytes(ModulePath()).value_or("");
    const std::string newBytes_ = ReadBytes(nextVersion_).value_or("");
    std::optional<TestFolder> folder_;
    std::wstring executable_;
};

/// The number of the first operation with this beginning, from 1; behind the last one if there is none.
int NumberOf(const std::vector<std::string>& operations, const std::string& beginning) {
    const auto found = std::ranges::find_if(
        operations, [&](const std::string& operation) { return operation.starts_with(beginning); });
    return static_cast<int>(found - operations.begin()) + 1;
}

void UpdateKillTest::KillEverywhere(int refusedRenames, DWORD error, int lastExitCode) {
    ASSERT_EQ(Update({.refusedRenames = refusedRenames, .error = error}), lastExitCode);
    const std::vector<std::string> operations = test::ReadOperations(log_);
    const int away = NumberOf(operations, RenameNotes[0]);
    const bool isTakenBack = (refusedRenames & RenameIntoPlace) != 0;
    const int there = NumberOf(operations, RenameNotes[isTakenBack ? 2 : 1]);
    ASSERT_LT(away, there);
    ASSERT_LE(there, static_cast<int>(operations.size()));
    PrintHead();
    PrintState("not at all");
    for (int number = 1; number <= static_cast<int>(operations.size()); ++number) {
        const std::string& operation = operations[static_cast<std::size_t>(number) - 1];
        for (const KillMoment moment : {KillMoment::Before, KillMoment::During, KillMoment::After}) {
            if (moment == KillMoment::During && !operation.starts_with("WriteFile")) continue;
            constexpr const char* Names[] = {"", "before ", "during ", "after "};
            const std::string when = Names[static_cast<std::size_t>(moment)] + operation;
            const Fate fate{.killAt = number, .moment = moment, .refusedRenames = refusedRenames, .error = error};
            EXPECT_EQ(Update(fate), KilledExitCode) << when;
            PrintState(when);
            const int done = moment == KillMoment::After ? number : number - 1;
            if (done < away) {
                ExpectProgram("old", when);
            } else if (done < there) {
                ExpectProgramSetAside(when);
            } else {
                ExpectProgram(isTakenBack ? "old" : "new", when);
            }
        }
    }
}

TEST_F(UpdateKillTest, BothVersionsAreProgramsThatRun) {
    StartAnew();
    EXPECT_EQ(RunToItsEnd(executable_, RunSwitch), OldVersionExitCode);
    EXPECT_EQ(RunToItsEnd(nextVersion_, RunSwitch), NextVersionExitCode);
    EXPECT_NE(oldBytes_, newBytes_);
}

TEST_F(UpdateKillTest, AnUpdateThatIsNotKilledLeavesTheNewVersionAndTheOldOneBeside) {
    EXPECT_EQ(Update({}), UpdatedExitCode);
    EXPECT_EQ(StateOf(executable_), "new");
    EXPECT_EQ(StateOf(executable_ + L".old"), "old");
    EXPECT_THAT(Names(), ElementsAre(L"kestrane.exe", L"kestrane.exe.old"));
    ExpectProgram("new", "at the end");
}

TEST_F(UpdateKillTest, AKillAtAnyMomentLeavesAProgram) {
    KillEverywhere(0, 0, UpdatedExitCode);
}

TEST_F(UpdateKillTest, AKillAtAnyMomentLeavesAProgramAlsoWhileTheSwapIsTakenBack) {
    KillEverywhere(RenameIntoPlace, ERROR_SHARING_VIOLATION, NotReplacedExitCode);
}

TEST_F(UpdateKillTest, ARenameThatFailsLeavesTheOldVersionAndNothingElse) {
    for (const int refused : {RenameAway, RenameIntoPlace}) {
        for (const DWORD error : {DWORD{ERROR_ACCESS_DENIED}, DWORD{ERROR_SHARING_VIOLATION}}) {
            const std::string when = std::to_string(refused) + " with " + std::to_string(error);
            EXPECT_EQ(Update({.refusedRenames = refused, .error = error}), NotReplacedExitCode) << when;
            EXPECT_THAT(Names(), ElementsAre(L"kestrane.exe")) << when;
            ExpectProgram("old", when);
        }
    }
}

TEST_F(UpdateKillTest, AWayBackThatFailsTooLeavesTheOldVersionSetAside) {
    for (const DWORD error : {DWORD{ERROR_ACCESS_DENIED}, DWORD{ERROR_SHARING_VIOLATION}}) {
        const std::string when = "with " + std::to_string(error);
        EXPECT_EQ(Update({.refusedRenames = RenameIntoPlace | RenameBack, .error = error}), NotReplacedExitCode)
            << when;
        EXPECT_THAT(Names(), ElementsAre(L"kestrane.exe.old")) << when;
        ExpectProgramSetAside(when);
    }
}

}  // namespace
}  // namespace kestrane

int main(int argc, char** argv) {
    if (const auto exitCode = kestrane::ActAsCopy(kestrane::test::Arguments())) return *exitCode;
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
