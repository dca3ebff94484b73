// The swap of an executable with real files, also of a running copy of this program, and what comes before and after
// it, with each call refused in turn.
#include "update/self_replacer_win32.h"

#include <windows.h>
// <windows.h> comes first.
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "base/handles_win32.h"
#include "base/module_path_win32.h"
#include "support/file_bytes_win32.h"
#include "support/file_operations_win32.h"
#include "support/recorded_log.h"
#include "support/test_folder_win32.h"
#include "update/update_texts.h"

namespace kestrane {
namespace {

using test::Calls;
using test::fileOperations;
using test::ReadBytes;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
namespace fs = std::filesystem;

/// A copy of this program that is started with an event's name behind this waits for that event.
constexpr std::wstring_view WaitFor = L" --wait-for ";
/// A copy that is started as a new version sets the event that this variable of the environment names.
constexpr const wchar_t* UpdatedEvent = L"KESTRANE_TEST_UPDATED";

class SelfReplacerTest : public testing::Test {
  protected:
    SelfReplacerTest() {
        StartAnew();
        debugLines.clear();
    }
    ~SelfReplacerTest() override {
        EXPECT_TRUE(fileOperations.open.empty());
        fileOperations = {};
    }

    void StartAnew() {
        fileOperations = {};
        fileOperations.folder = folder_.Path().wstring() + L"\\";
        Calls().clear();
        fs::remove(old_);
        test::WriteBytes(executable_, "running");
        test::WriteBytes(new_, "downloaded");
    }

    std::vector<std::wstring> Names() const {
        std::vector<std::wstring> names;
        for (const auto& entry : fs::directory_iterator(folder_.Path()))
            names.push_back(entry.path().filename().wstring());
        std::ranges::sort(names);
        return names;
    }

    const TestFolder folder_;
    const std::wstring executable_ = (folder_.Path() / L"kestrane.exe").wstring();
    const std::wstring new_ = executable_ + L".new";
    const std::wstring old_ = executable_ + L".old";
};

/// A process with a copy of this program that runs until it is destroyed.
class RunningCopy {
  public:
    explicit RunningCopy(const std::wstring& path) {
        const std::wstring name = L"kestrane-test-" + std::to_wstring(GetCurrentProcessId());
        end_.Reset(CreateEventW(nullptr, TRUE, FALSE, name.c_str()));
        std::wstring commandLine = (L"\"" + path + L"\"").append(WaitFor) + name;
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION started{};
        if (!CreateProcessW(path.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                            &started)) {
            return;
        }
        CloseHandle(started.hThread);
        process_.Reset(started.hProcess);
    }
    RunningCopy(const RunningCopy&) = delete;
    RunningCopy& operator=(const RunningCopy&) = delete;
    ~RunningCopy() {
        SetEvent(end_.Get());
        EXPECT_EQ(WaitForSingleObject(process_.Get(), 60000), WAIT_OBJECT_0);
    }
    bool IsRunning() const { return process_ && WaitForSingleObject(process_.Get(), 0) == WAIT_TIMEOUT; }

  private:
    UniqueKernelHandle end_;
    UniqueKernelHandle process_;
};

// --- whether it is possible

TEST_F(SelfReplacerTest, AFolderInWhichFilesCanBeCreatedIsWritableAndStaysAsItWas) {
    EXPECT_TRUE(ProbeFolderWritable(folder_.Path().wstring()));
    EXPECT_THAT(Calls(),
                ElementsAre(testing::MatchesRegex("CreateFileW kestrane-\\d+-\\d+\\.tmp access 40000000 share 0 "
                                                  "disposition 1 flags 4000100"),
                            testing::MatchesRegex("CloseHandle kestrane-\\d+-\\d+\\.tmp")));
    EXPECT_TRUE(ProbeFolderWritable(folder_.Path().wstring() + L"\\"));
    EXPECT_THAT(Names(), ElementsAre(L"kestrane.exe", L"kestrane.exe.new"));
}

TEST_F(SelfReplacerTest, AFolderIsNotWritableWhateverTheReason) {
    EXPECT_FALSE(ProbeFolderWritable((folder_.Path() / L"nothing").wstring()));
    EXPECT_FALSE(ProbeFolderWritable(executable_));
    for (const DWORD error : {5U, 3U, 19U, 80U, 112U}) {
        fileOperations.refuseOnce = {{"CreateFileW kestrane-", error}};
        EXPECT_FALSE(ProbeFolderWritable(folder_.Path().wstring())) << error;
    }
}

TEST_F(SelfReplacerTest, ADevelopmentCopyIsToldFirstAndItsFolderNotTried) {
    fs::create_directory(folder_.Path() / L"BUILD");
    EXPECT_EQ(CheckSelfUpdatePossible((folder_.Path() / L"BUILD" / L"kestrane.exe").wstring()), DevelopmentCopyText());
    EXPECT_EQ(CheckSelfUpdatePossible(L"C:\\Users\\x\\BUILD\\kestrane.exe"), DevelopmentCopyText());
    EXPECT_EQ(CheckSelfUpdatePossible(L"Q:\\build\\nothing\\kestrane.exe"), DevelopmentCopyText());
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(SelfReplacerTest, ItIsPossibleWhereTheFolderIsWritable) {
    fs::create_directory(folder_.Path() / L"builds");
    EXPECT_EQ(CheckSelfUpdatePossible((folder_.Path() / L"builds" / L"kestrane.exe").wstring()), L"");
    EXPECT_EQ(CheckSelfUpdatePossible(executable_), L"");
    EXPECT_EQ(CheckSelfUpdatePossible((folder_.Path() / L"nothing" / L"kestrane.exe").wstring()),
              FolderNotWritableText());
    fileOperations.refuseOnce = {{"CreateFileW", ERROR_ACCESS_DENIED}};
    EXPECT_EQ(CheckSelfUpdatePossible(executable_), FolderNotWritableText());
}

// --- the swap

TEST_F(SelfReplacerTest, TwoRenamesPutTheNewFileInPlace) {
    std::uint32_t code = 4711;
    EXPECT_TRUE(ReplaceRunningExecutable(executable_, code));
    EXPECT_EQ(code, 0U);
    EXPECT_EQ(ReadBytes(executable_), "downloaded");
    EXPECT_EQ(ReadBytes(old_), "running");
    EXPECT_FALSE(fs::exists(new_));
    EXPECT_THAT(Calls(), ElementsAre("DeleteFileW kestrane.exe.old", "MoveFileExW kestrane.exe kestrane.exe.old 1",
                                     "MoveFileExW kestrane.exe.new kestrane.exe 0"));
}

TEST_F(SelfReplacerTest, AnOldFileOfAnEarlierSwapIsReplaced) {
    test::WriteBytes(old_, "of an earlier swap");
    std::uint32_t code = 0;
    EXPECT_TRUE(ReplaceRunningExecutable(executable_, code));
    EXPECT_EQ(ReadBytes(old_), "running");

    StartAnew();
    test::WriteBytes(old_, "of an earlier swap");
    fileOperations.refuseOnce = {{"DeleteFileW", ERROR_ACCESS_DENIED}};  // the rename still replaces it
    EXPECT_TRUE(ReplaceRunningExecutable(executable_, code));
    EXPECT_EQ(code, 0U);
    EXPECT_EQ(ReadBytes(old_), "running");
    EXPECT_EQ(ReadBytes(executable_), "downloaded");
}

/// As a copy from a read-only medium is. The attribute goes with the file to its old name.
TEST_F(SelfReplacerTest, AReadOnlyExecutableIsSwappedAgainAndAgain) {
    for (const char* bytes : {"running", "downloaded"}) {
        ASSERT_TRUE(SetFileAttributesW(executable_.c_str(), FILE_ATTRIBUTE_READONLY));
        test::WriteBytes(new_, "downloaded");
        std::uint32_t code = 0;
        EXPECT_TRUE(ReplaceRunningExecutable(executable_, code)) << code;
        EXPECT_EQ(ReadBytes(old_), bytes);
        EXPECT_EQ(ReadBytes(executable_), "downloaded");
    }
    CleanUpdateLeftovers(executable_);
    EXPECT_THAT(Names(), ElementsAre(L"kestrane.exe"));
}

TEST_F(SelfReplacerTest, AFirstRenameThatFailsChangesNothing) {
    for (const DWORD error : {5U, 32U}) {
        StartAnew();
        fileOperations.refuseOnce = {{"MoveFileExW kestrane.exe kestrane.exe.old", error}};
        std::uint32_t code = 0;
        EXPECT_FALSE(ReplaceRunningExecutable(executable_, code));
        EXPECT_EQ(code, error);
        EXPECT_THAT(Calls(), ElementsAre("DeleteFileW kestrane.exe.old", StartsWith("MoveFileExW kestrane.exe ")));
        EXPECT_EQ(ReadBytes(executable_), "running");
        EXPECT_THAT(Names(), ElementsAre(L"kestrane.exe", L"kestrane.exe.new"));
    }
}

TEST_F(SelfReplacerTest, ASecondRenameThatFailsIsTakenBack) {
    for (const DWORD error : {2U, 5U, 32U}) {
        StartAnew();
        fileOperations.refuseOnce = {{"MoveFileExW kestrane.exe.new", error}};
        std::uint32_t code = 0;
        EXPECT_FALSE(ReplaceRunningExecutable(executable_, code));
        EXPECT_EQ(code, error);
        EXPECT_EQ(Calls().back(), "MoveFileExW kestrane.exe.old kestrane.exe 0");
        EXPECT_EQ(ReadBytes(executable_), "running");
        EXPECT_THAT(Names(), ElementsAre(L"kestrane.exe", L"kestrane.exe.new"));
    }
}

TEST_F(SelfReplacerTest, TheCodeIsThatOfTheSwapAlsoIfTheWayBackFails) {
    fileOperations.refuseOnce = {{"MoveFileExW kestrane.exe.new", ERROR_SHARING_VIOLATION},
                                 {"MoveFileExW kestrane.exe.old", ERROR_ACCESS_DENIED}};
    std::uint32_t code = 0;
    EXPECT_FALSE(ReplaceRunningExecutable(executable_, code));
    EXPECT_EQ(code, ERROR_SHARING_VIOLATION);
    EXPECT_THAT(Names(), ElementsAre(L"kestrane.exe.new", L"kestrane.exe.old"));
    EXPECT_EQ(ReadBytes(old_), "running");
}

TEST_F(SelfReplacerTest, WithoutANewFileTheRunningOneKeepsItsName) {
    fs::remove(new_);
    std::uint32_t code = 0;
    EXPECT_FALSE(ReplaceRunningExecutable(executable_, code));
    EXPECT_EQ(code, ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(ReadBytes(executable_), "running");
    EXPECT_THAT(Names(), ElementsAre(L"kestrane.exe"));
}

TEST_F(SelfReplacerTest, AFileThatAnotherHoldsLeavesEverythingAsItWas) {
    struct Row {
        std::wstring held;
        const char* bytes;
    };
    for (const Row& row : {Row{executable_, "running"}, Row{new_, "downloaded"}}) {
        StartAnew();
        std::uint32_t code = 0;
        {
            const UniqueFile scanner(
                CreateFileW(row.held.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
            ASSERT_TRUE(scanner);
            EXPECT_FALSE(ReplaceRunningExecutable(executable_, code));
            EXPECT_EQ(code, ERROR_SHARING_VIOLATION);
            EXPECT_EQ(ReadBytes(executable_), "running");
            EXPECT_EQ(ReadBytes(new_), "downloaded");
            EXPECT_FALSE(fs::exists(old_));
        }
        EXPECT_TRUE(ReplaceRunningExecutable(executable_, code));  // once the scanner is done
        EXPECT_EQ(ReadBytes(executable_), "downloaded");
    }
}

TEST_F(SelfReplacerTest, APathWithoutRoomForTheEndingsLeavesEverythingAsItWas) {
    fileOperations.longestPath = executable_.size() + 3;
    std::uint32_t code = 0;
    EXPECT_FALSE(ReplaceRunningExecutable(executable_, code));
    EXPECT_EQ(code, ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(ReadBytes(executable_), "running");
    EXPECT_THAT(Names(), ElementsAre(L"kestrane.exe", L"kestrane.exe.new"));
}

TEST_F(SelfReplacerTest, APathOfAnyLengthIsSwappedIfItIsWrittenForThat) {
    std::wstring executable = L"\\\\?\\" + folder_.Path().wstring();
    for (int i = 0; i < 6; ++i) {
        executable += L"\\" + std::wstring(80, L'x') + L" ñ";
        ASSERT_TRUE(CreateDirectoryW(executable.c_str(), nullptr));
    }
    executable += L"\\kestrane.exe";
    test::WriteBytes(executable, "running");
    test::WriteBytes(executable + L".new", "downloaded");
    EXPECT_EQ(CheckSelfUpdatePossible(executable), L"");
    std::uint32_t code = 0;
    EXPECT_TRUE(ReplaceRunningExecutable(executable, code));
    EXPECT_EQ(ReadBytes(executable), "downloaded");
    CleanUpdateLeftovers(executable);
    EXPECT_FALSE(ReadBytes(executable + L".old"));
}

TEST_F(SelfReplacerTest, ARunningExecutableIsSwappedAndLeavesItsOldFileUntilItEnds) {
    ASSERT_TRUE(CopyFileW(ModulePath().c_str(), executable_.c_str(), FALSE));
    const std::string program = *ReadBytes(executable_);
    {
        const RunningCopy copy(executable_);
        ASSERT_TRUE(copy.IsRunning());
        std::uint32_t code = 0;
        EXPECT_TRUE(ReplaceRunningExecutable(executable_, code));
        EXPECT_EQ(ReadBytes(executable_), "downloaded");
        EXPECT_EQ(ReadBytes(old_), program);
        EXPECT_TRUE(copy.IsRunning());

        CleanUpdateLeftovers(executable_);
        EXPECT_EQ(ReadBytes(old_), program);  // it still runs

        test::WriteBytes(new_, "newer still");
        EXPECT_FALSE(ReplaceRunningExecutable(executable_, code));  // the old name is taken by what runs
        EXPECT_EQ(code, ERROR_ACCESS_DENIED);
        EXPECT_EQ(ReadBytes(executable_), "downloaded");
    }
    CleanUpdateLeftovers(executable_);
    EXPECT_THAT(Names(), ElementsAre(L"kestrane.exe"));
}

// --- the restart

TEST_F(SelfReplacerTest, TheNewVersionIsStartedToWaitForThisOne) {
    ASSERT_TRUE(CopyFileW(ModulePath().c_str(), executable_.c_str(), FALSE));
    const std::wstring name = L"kestrane-test-updated-" + std::to_wstring(GetCurrentProcessId());
    ASSERT_TRUE(SetEnvironmentVariableW(UpdatedEvent, name.c_str()));
    const UniqueKernelHandle arrived(CreateEventW(nullptr, TRUE, FALSE, name.c_str()));
    EXPECT_TRUE(StartNewVersion(executable_));
    EXPECT_EQ(WaitForSingleObject(arrived.Get(), 30000), WAIT_OBJECT_0);
    EXPECT_THAT(debugLines, IsEmpty());
    EXPECT_THAT(Calls(), ElementsAre("CreateProcessW kestrane.exe inherit 0 flags 0", "CloseHandle thread",
                                     "CloseHandle process"));
    std::error_code inUse;
    for (int round = 0; round < 500 && !fs::remove(executable_, inUse); ++round)
        Sleep(20);
    EXPECT_FALSE(fs::exists(executable_));
}

TEST_F(SelfReplacerTest, ANewVersionThatCannotBeStartedLeavesADebugLine) {
    EXPECT_FALSE(StartNewVersion(executable_));  // it is no program
    EXPECT_THAT(debugLines, ElementsAre(L"kestrane: no se pudo arrancar la version nueva\n"));
    fileOperations.refuseOnce = {{"CreateProcessW", ERROR_ACCESS_DENIED}};
    EXPECT_FALSE(StartNewVersion(executable_));
    EXPECT_EQ(debugLines.size(), 2U);
}

// --- cleaning up

TEST_F(SelfReplacerTest, LeftoversGoAndNothingElse) {
    test::WriteBytes(old_, "old");
    test::WriteBytes(executable_ + L".old.txt", "mine");
    CleanUpdateLeftovers(executable_);
    EXPECT_THAT(Names(), ElementsAre(L"kestrane.exe", L"kestrane.exe.old.txt"));
    EXPECT_THAT(Calls(), ElementsAre("DeleteFileW kestrane.exe.old", "DeleteFileW kestrane.exe.new"));
    CleanUpdateLeftovers(executable_);
    EXPECT_EQ(ReadBytes(executable_), "running");
}

TEST_F(SelfReplacerTest, ALeftoverThatCannotGoKeepsNoOther) {
    test::WriteBytes(old_, "old");
    fileOperations.refuseOnce = {{"DeleteFileW kestrane.exe.old", ERROR_ACCESS_DENIED}};
    CleanUpdateLeftovers(executable_);
    EXPECT_THAT(Names(), ElementsAre(L"kestrane.exe", L"kestrane.exe.old"));
}

/// A program that does not know its own path would mean files of the current folder.
TEST_F(SelfReplacerTest, WithoutAPathNothingGoes) {
    test::WriteBytes((folder_.Path() / L".old").wstring(), "mine");
    const fs::path before = fs::current_path();
    fs::current_path(folder_.Path());
    CleanUpdateLeftovers(L"");
    fs::current_path(before);
    EXPECT_EQ(ReadBytes((folder_.Path() / L".old").wstring()), "mine");
}

TEST_F(SelfReplacerTest, AnUnwantedNewFileGoes) {
    test::WriteBytes(old_, "old");
    DeleteNewFile(executable_);
    EXPECT_THAT(Names(), ElementsAre(L"kestrane.exe", L"kestrane.exe.old"));
}

/// What a copy of this program does instead of the tests, if it is started for that.
bool ActAsCopy(const std::wstring& commandLine) {
    std::array<wchar_t, 100> name{};
    if (const std::size_t at = commandLine.find(WaitFor); at != std::wstring::npos) {
        const std::wstring waited = commandLine.substr(at + WaitFor.size());
        const UniqueKernelHandle event(OpenEventW(SYNCHRONIZE, FALSE, waited.c_str()));
        WaitForSingleObject(event.Get(), 60000);
        return true;
    }
    if (commandLine != L"\"" + ModulePath() + L"\" --updated") return false;
    GetEnvironmentVariableW(UpdatedEvent, name.data(), DWORD{name.size()});
    const UniqueKernelHandle event(OpenEventW(EVENT_MODIFY_STATE, FALSE, name.data()));
    return SetEvent(event.Get()) != FALSE;
}

}  // namespace
}  // namespace kestrane

int main(int argc, char** argv) {
    if (kestrane::ActAsCopy(GetCommandLineW())) return 0;
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
