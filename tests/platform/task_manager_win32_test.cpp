// Opening Task Manager, on real files in a folder of the test's own that stands in for the local application data. The
// process list is made up unless a test wants the real one; the shell starts nothing, and single calls can be refused.
#include "settings/task_manager_win32.h"

#include <windows.h>
// <windows.h> comes first.
#include <gmock/gmock.h>
#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>
#include <tlhelp32.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "base/handles_win32.h"
#include "settings/task_manager.h"
#include "support/call_log.h"
#include "support/real_call_win32.h"
#include "support/recorded_log.h"
#include "support/test_folder_win32.h"

namespace {

using kestrane::test::Calls;
using kestrane::test::CountCalls;
using kestrane::test::NoteCall;
using testing::ElementsAre;
using testing::IsEmpty;

const HANDLE Snapshot = reinterpret_cast<HANDLE>(std::uintptr_t{0x5555007});

struct World {
    std::wstring localData;        // empty: the system has no such folder
    bool textWithFailure = false;  // it returns a text although it fails
    std::vector<void*> freed;      // by CoTaskMemFree, null left out
    void* lastText = nullptr;      // of SHGetKnownFolderPath

    bool realProcesses = false;
    bool snapshotIsMade = true;
    std::vector<std::wstring> processes;
    std::size_t asked = 0;  // how many of these were read

    std::wstring refusedMode;  // of _wfopen_s
    std::vector<std::FILE*> streams;
    std::size_t readsUntilBroken = 1000000;
    std::size_t mostWritten = 1000000000;  // by one call
    std::vector<std::wstring> made;        // the folders requested

    std::wstring settingsAtStart;  // the file as it was when Task Manager started
    std::optional<std::string> bytesAtStart;
    HINSTANCE shellAnswer = reinterpret_cast<HINSTANCE>(std::uintptr_t{42});
};
World world;

bool IsOurs(std::FILE* stream) {
    return std::ranges::count(world.streams, stream) > 0;
}

/// The C runtime's function behind the test's own of the same name.
template <typename Function>
Function Runtime(const char* name) {
    return kestrane::test::RealCall<Function>(kestrane::test::CRuntime, name);
}

/// The result of SHGetKnownFolderPath; only CoTaskMemFree may free it.
PWSTR CopyForCaller(const std::wstring& text) {
    const std::size_t bytes = (text.size() + 1) * sizeof(wchar_t);
    world.lastText = std::malloc(bytes);
    std::memcpy(world.lastText, text.c_str(), bytes);
    return static_cast<PWSTR>(world.lastText);
}

void WINAPI FakeCoTaskMemFree(void* memory) {
    if (memory == nullptr) return;
    world.freed.push_back(memory);
    std::free(memory);
}

BOOL WINAPI FakeCloseHandle(HANDLE handle) {
    if (handle != Snapshot) return REAL(L"kernel32", CloseHandle)(handle);
    NoteCall("close snapshot");
    return TRUE;
}

BOOL WINAPI FakeCreateDirectoryW(LPCWSTR path, LPSECURITY_ATTRIBUTES attributes) {
    EXPECT_EQ(attributes, nullptr);
    if (world.made.empty()) NoteCall("make the folder");
    world.made.emplace_back(path);
    return REAL(L"kernel32", CreateDirectoryW)(path, attributes);
}

errno_t FakeOpen(std::FILE** stream, const wchar_t* path, const wchar_t* mode) {
    NoteCall(std::wcscmp(mode, L"rb") == 0 ? "open to read" : "open to write");
    EXPECT_TRUE(std::wcscmp(mode, L"rb") == 0 || std::wcscmp(mode, L"wb") == 0);
    if (world.refusedMode == mode) {
        *stream = reinterpret_cast<std::FILE*>(std::uintptr_t{0x5555});  // unspecified on failure
        return EACCES;
    }
    using Open = errno_t(__cdecl*)(std::FILE**, const wchar_t*, const wchar_t*);
    const errno_t error = Runtime<Open>("_wfopen_s")(stream, path, mode);
    if (error == 0) world.streams.push_back(*stream);
    return error;
}

/// The whole file, opened exclusively; none if that fails.
std::optional<std::string> TakeBytes(const std::wstring& path) {
    const kestrane::UniqueFile file(CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    if (!file) return {};
    LARGE_INTEGER size{};
    EXPECT_TRUE(GetFileSizeEx(file.Get(), &size));
    std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
    DWORD read = 0;
    EXPECT_TRUE(ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr));
    EXPECT_EQ(read, bytes.size());
    return bytes;
}

HINSTANCE WINAPI FakeShellExecuteW(HWND window, LPCWSTR verb, LPCWSTR file, LPCWSTR parameters, LPCWSTR folder,
                                   INT show) {
    NoteCall("start");
    EXPECT_EQ(window, nullptr);
    EXPECT_STREQ(verb, L"open");
    EXPECT_STREQ(file, L"taskmgr.exe");
    EXPECT_EQ(parameters, nullptr);
    EXPECT_EQ(folder, nullptr);
    EXPECT_EQ(show, SW_SHOWNORMAL);
    world.bytesAtStart = TakeBytes(world.settingsAtStart);
    return world.shellAnswer;
}

BOOL TellProcess(PROCESSENTRY32W* entry) {
    EXPECT_EQ(entry->dwSize, sizeof *entry);
    if (world.asked >= world.processes.size()) return FALSE;
    std::wcscpy(entry->szExeFile, world.processes[world.asked++].c_str());
    return TRUE;
}

}  // namespace

extern "C" {
decltype(&CoTaskMemFree) __imp_CoTaskMemFree = &FakeCoTaskMemFree;
decltype(&CloseHandle) __imp_CloseHandle = &FakeCloseHandle;
decltype(&CreateDirectoryW) __imp_CreateDirectoryW = &FakeCreateDirectoryW;
decltype(&_wfopen_s) __imp__wfopen_s = &FakeOpen;
decltype(&ShellExecuteW) __imp_ShellExecuteW = &FakeShellExecuteW;

HRESULT WINAPI SHGetKnownFolderPath(REFKNOWNFOLDERID folder, DWORD flags, HANDLE token, PWSTR* path) {
    NoteCall("ask for the folder");
    EXPECT_TRUE(IsEqualGUID(folder, FOLDERID_LocalAppData));
    EXPECT_EQ(flags, 0U);
    EXPECT_EQ(token, nullptr);
    *path = nullptr;
    if (world.localData.empty()) {
        if (world.textWithFailure) *path = CopyForCaller(L"C:\\Nada");
        return E_FAIL;
    }
    *path = CopyForCaller(world.localData);
    return S_OK;
}

HANDLE WINAPI CreateToolhelp32Snapshot(DWORD flags, DWORD processId) {
    if (world.realProcesses) return REAL(L"kernel32", CreateToolhelp32Snapshot)(flags, processId);
    NoteCall("take snapshot");
    EXPECT_EQ(flags, DWORD{TH32CS_SNAPPROCESS});
    EXPECT_EQ(processId, 0U);
    return world.snapshotIsMade ? Snapshot : INVALID_HANDLE_VALUE;
}
BOOL WINAPI Process32FirstW(HANDLE snapshot, PROCESSENTRY32W* entry) {
    if (world.realProcesses) return REAL(L"kernel32", Process32FirstW)(snapshot, entry);
    EXPECT_EQ(snapshot, Snapshot);
    EXPECT_EQ(world.asked, 0U);
    return TellProcess(entry);
}
BOOL WINAPI Process32NextW(HANDLE snapshot, PROCESSENTRY32W* entry) {
    if (world.realProcesses) return REAL(L"kernel32", Process32NextW)(snapshot, entry);
    EXPECT_EQ(snapshot, Snapshot);
    EXPECT_GT(world.asked, 0U);
    return TellProcess(entry);
}

std::size_t fread(void* buffer, std::size_t size, std::size_t count, std::FILE* stream) {
    static const auto real = Runtime<decltype(&fread)>("fread");
    if (!IsOurs(stream)) return real(buffer, size, count, stream);
    EXPECT_EQ(size * count, 4096U);
    if (world.readsUntilBroken == 0) return 0;
    --world.readsUntilBroken;
    return real(buffer, size, count, stream);
}
int ferror(std::FILE* stream) {
    static const auto real = Runtime<decltype(&ferror)>("ferror");
    return IsOurs(stream) && world.readsUntilBroken == 0 ? 1 : real(stream);
}
std::size_t fwrite(const void* buffer, std::size_t size, std::size_t count, std::FILE* stream) {
    static const auto real = Runtime<decltype(&fwrite)>("fwrite");
    if (!IsOurs(stream)) return real(buffer, size, count, stream);
    EXPECT_EQ(size, 1U);
    NoteCall("write");
    return real(buffer, size, std::min(count, world.mostWritten), stream);
}
int fclose(std::FILE* stream) {
    static const auto real = Runtime<decltype(&fclose)>("fclose");
    if (std::erase(world.streams, stream) > 0) NoteCall("close");
    return real(stream);
}
}

namespace kestrane {
namespace {

constexpr const wchar_t* WriteFailed = L"kestrane: no se pudo escribir settings.json del Administrador de tareas\n";

class TaskManagerTest : public testing::Test {
  protected:
    TaskManagerTest() { StartAnew(); }
    ~TaskManagerTest() override { EXPECT_THAT(world.streams, IsEmpty()); }

    void StartAnew() {
        world = {};
        debugLines.clear();
        Calls().clear();
        folder_.emplace();
        world.localData = Root().wstring();
        world.settingsAtStart = Settings();
    }

    const std::filesystem::path& Root() const { return folder_->Path(); }
    std::filesystem::path Folder() const { return Root() / L"Microsoft" / L"Windows" / L"TaskManager"; }
    std::wstring Settings() const { return (Folder() / L"settings.json").wstring(); }

    void WriteSettings(const std::string& bytes) const {
        std::filesystem::create_directories(Folder());
        const UniqueFile file(CreateFileW(Settings().c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
        DWORD written = 0;
        ASSERT_TRUE(WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr));
        ASSERT_EQ(written, bytes.size());
    }

    /// Opens it and expects that it was started, whatever else happens.
    static void Open(std::int64_t page) {
        OpenTaskManager(page);
        EXPECT_EQ(CountCalls("start"), 1);
        EXPECT_EQ(Calls().back(), "start");
        if (world.lastText != nullptr) {
            EXPECT_THAT(world.freed, ElementsAre(world.lastText));
        }
    }

  private:
    std::optional<TestFolder> folder_;
};

TEST_F(TaskManagerTest, WithoutAnyFileBothFolderAndFileAreMade) {
    Open(3);
    EXPECT_THAT(Calls(), ElementsAre("ask for the folder", "take snapshot", "close snapshot", "open to read",
                                     "make the folder", "open to write", "write", "close", "start"));
    EXPECT_EQ(world.bytesAtStart, R"({"DefaultStartPage":1,"CurrentView":3})");
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(TaskManagerTest, AFileIsReadClosedAndThenWrittenBeforeTheStart) {
    WriteSettings(R"({"CurrentView": 2,"HasBeenRun":true,"DefaultStartPage": 0})");
    Open(5);
    EXPECT_THAT(Calls(), ElementsAre("ask for the folder", "take snapshot", "close snapshot", "open to read", "close",
                                     "make the folder", "open to write", "write", "close", "start"));
    EXPECT_EQ(world.bytesAtStart, R"({"CurrentView": 5,"HasBeenRun":true,"DefaultStartPage": 1})");
    EXPECT_THAT(world.made, ElementsAre(Folder().wstring()));
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(TaskManagerTest, OnlyMissingFoldersAreMade) {
    std::filesystem::create_directory(Root() / L"Microsoft");
    Open(0);
    const std::wstring folder = Folder().wstring();
    const std::wstring parent = Folder().parent_path().wstring();
    EXPECT_THAT(world.made, ElementsAre(folder, parent, folder));
    EXPECT_EQ(world.bytesAtStart, R"({"DefaultStartPage":1,"CurrentView":0})");
}

TEST_F(TaskManagerTest, ALocalFolderThatIsNotThereYetIsMadeToo) {
    world.localData = (Root() / L"perfil de José" / L"AppData" / L"Local").wstring();
    world.settingsAtStart = world.localData + L"\\Microsoft\\Windows\\TaskManager\\settings.json";
    Open(1);
    EXPECT_EQ(world.bytesAtStart, R"({"DefaultStartPage":1,"CurrentView":1})");
}

TEST_F(TaskManagerTest, EveryOtherByteStaysAtAnySize) {
    std::string every;
    for (int byte = 0; byte < 256; ++byte)
        every += static_cast<char>(byte);
    every += "\r\n\n\r\x1A\r\n";
    const std::string head = R"({"CurrentView":9,"DefaultStartPage":1,)";
    const std::string patched = R"({"CurrentView":4,"DefaultStartPage":1,)";
    for (const std::size_t block : {4096U, 8192U, 3U * 4096U, 1000U * 4096U}) {
        for (const std::size_t size : {block - 1, block, block + 1}) {
            StartAnew();
            std::string rest;
            while (head.size() + rest.size() < size)
                rest += every;
            rest.resize(size - head.size());
            WriteSettings(head + rest);
            Open(4);
            EXPECT_TRUE(world.bytesAtStart == patched + rest) << size;
        }
    }
}

TEST_F(TaskManagerTest, ARuinedFileIsReplaced) {
    for (const std::string& bytes : {std::string(), std::string(" \r\n"), std::string(5000, '\0')}) {
        StartAnew();
        WriteSettings(bytes);
        Open(2);
        EXPECT_EQ(world.bytesAtStart, R"({"DefaultStartPage":1,"CurrentView":2})") << bytes.size();
    }
}

TEST_F(TaskManagerTest, AShorterTextLeavesNothingOfTheLongerBehind) {
    WriteSettings(R"({"CurrentView":)" + std::string(9000, '1') + R"(,"DefaultStartPage":1})");
    Open(7);
    EXPECT_EQ(world.bytesAtStart, R"({"CurrentView":7,"DefaultStartPage":1})");
}

TEST_F(TaskManagerTest, ARunningOneKeepsItsFile) {
    const std::string text = R"({"CurrentView":2})";
    for (const wchar_t* name : {L"Taskmgr.exe", L"taskmgr.exe", L"TASKMGR.EXE"}) {
        StartAnew();
        WriteSettings(text);
        world.processes = {L"[System Process]", L"System", name, L"explorer.exe"};
        Open(3);
        EXPECT_THAT(Calls(), ElementsAre("ask for the folder", "take snapshot", "close snapshot", "start"));
        EXPECT_EQ(world.asked, 3U);  // later processes are not read
        EXPECT_EQ(world.bytesAtStart, text);
        EXPECT_THAT(debugLines, IsEmpty());
    }
}

TEST_F(TaskManagerTest, ARunningOneGetsNoFileNorFolder) {
    world.processes = {L"Taskmgr.exe"};
    Open(3);
    EXPECT_FALSE(std::filesystem::exists(Root() / L"Microsoft"));
}

TEST_F(TaskManagerTest, WithoutAListOfProcessesItCountsAsNotRunning) {
    world.snapshotIsMade = false;
    Open(3);
    EXPECT_EQ(CountCalls("close snapshot"), 0);
    EXPECT_EQ(world.bytesAtStart, R"({"DefaultStartPage":1,"CurrentView":3})");
}

TEST_F(TaskManagerTest, WithoutALocalFolderItIsJustStarted) {
    for (const bool textWithFailure : {false, true}) {
        StartAnew();
        world.localData.clear();
        world.textWithFailure = textWithFailure;
        Open(3);
        EXPECT_THAT(Calls(), ElementsAre("ask for the folder", "start"));
        EXPECT_THAT(debugLines, IsEmpty());
    }
}

TEST_F(TaskManagerTest, AFileThatMayNotBeReadCountsAsEmpty) {
    WriteSettings(R"({"CurrentView":2,"HasBeenRun":true})");
    world.refusedMode = L"rb";
    Open(3);
    EXPECT_EQ(world.bytesAtStart, R"({"DefaultStartPage":1,"CurrentView":3})");
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(TaskManagerTest, AFileThatBreaksOffWhileReadStaysWhole) {
    const std::string text = R"({"CurrentView":2,"rest":")" + std::string(10000, 'x') + R"("})";
    for (const std::size_t reads : {0U, 1U, 2U}) {
        StartAnew();
        WriteSettings(text);
        world.readsUntilBroken = reads;
        Open(3);
        EXPECT_THAT(Calls(), ElementsAre("ask for the folder", "take snapshot", "close snapshot", "open to read",
                                         "close", "start"));
        EXPECT_EQ(world.bytesAtStart, text) << reads;
        EXPECT_THAT(debugLines, IsEmpty());
    }
}

TEST_F(TaskManagerTest, AFileThatMayNotBeWrittenStaysAndIsTold) {
    const std::string text = R"({"CurrentView":2})";
    WriteSettings(text);
    world.refusedMode = L"wb";
    Open(3);
    EXPECT_EQ(CountCalls("write"), 0);
    EXPECT_EQ(world.bytesAtStart, text);
    EXPECT_THAT(debugLines, ElementsAre(WriteFailed));
}

TEST_F(TaskManagerTest, AFileHeldByAnotherStaysAndIsTold) {
    const std::string text = R"({"CurrentView":2})";
    for (const DWORD share : {0UL, DWORD{FILE_SHARE_READ}}) {
        StartAnew();
        WriteSettings(text);
        {
            const UniqueFile held(
                CreateFileW(Settings().c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr));
            ASSERT_TRUE(held);
            Open(3);
        }
        EXPECT_EQ(TakeBytes(Settings()), text) << share;
        EXPECT_THAT(debugLines, ElementsAre(WriteFailed));
    }
}

TEST_F(TaskManagerTest, AFolderThatCannotBeMadeIsToldAsTheFileIs) {
    const UniqueFile inTheWay(
        CreateFileW((Root() / L"Microsoft").c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW, 0, nullptr));
    ASSERT_TRUE(inTheWay);
    Open(3);
    EXPECT_EQ(CountCalls("write"), 0);
    EXPECT_THAT(debugLines, ElementsAre(WriteFailed));
}

TEST_F(TaskManagerTest, AFolderInTheFilesPlaceStays) {
    std::filesystem::create_directories(Settings());
    Open(3);
    EXPECT_TRUE(std::filesystem::is_directory(Settings()));
    EXPECT_THAT(debugLines, ElementsAre(WriteFailed));
}

TEST_F(TaskManagerTest, AFullDiskIsNoReasonNotToStart) {
    world.mostWritten = 10;
    Open(3);
    EXPECT_EQ(CountCalls("write"), 1);
    EXPECT_EQ(world.bytesAtStart, R"({"DefaultS)");
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(TaskManagerTest, AShellThatRefusesIsNotReported) {
    for (const std::uintptr_t error : {0U, 2U, 5U, 31U}) {
        StartAnew();
        world.shellAnswer = reinterpret_cast<HINSTANCE>(error);
        Open(3);
        EXPECT_THAT(debugLines, IsEmpty());
    }
}

TEST_F(TaskManagerTest, IsProcessRunningComparesWholeNames) {
    const struct {
        std::vector<std::wstring> processes;
        bool running;
    } rows[] = {
        {{}, false},
        {{L""}, false},
        {{L"Taskmgr"}, false},
        {{L"Taskmgr.exe.exe"}, false},
        {{L"xTaskmgr.exe"}, false},
        {{L"Taskmgr.ex"}, false},
        {{L"Taskmgr.exe "}, false},
        {{L"C:\\Taskmgr.exe"}, false},
        {{L"tAsKmGr.ExE"}, true},
        {{L"a.exe", L"b.exe", L"taskmgr.exe"}, true},
        {std::vector<std::wstring>(2000, L"svchost.exe"), false},
        {{std::wstring(259, L'x')}, false},
    };
    for (const auto& [processes, running] : rows) {
        StartAnew();
        world.processes = processes;
        EXPECT_EQ(IsProcessRunning(L"Taskmgr.exe"), running) << testing::PrintToString(processes);
        EXPECT_THAT(Calls(), ElementsAre("take snapshot", "close snapshot"));
        EXPECT_EQ(world.asked, processes.size());
    }
}

TEST_F(TaskManagerTest, IsProcessRunningKnowsTheSystemsOwn) {
    world.realProcesses = true;
    EXPECT_TRUE(IsProcessRunning(L"task_manager_win32_test.exe"));
    EXPECT_TRUE(IsProcessRunning(L"TASK_MANAGER_WIN32_TEST.EXE"));
    EXPECT_FALSE(IsProcessRunning(L"task_manager_win32_test"));
    EXPECT_FALSE(IsProcessRunning(L"nobody-is-called-so.exe"));
}

}  // namespace
}  // namespace kestrane
