// Folders created on the real disk below a folder of the test's own, with refusals and races by a faked system call.
#include "base/folders_win32.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/handles_win32.h"
#include "support/real_call_win32.h"
#include "support/test_folder_win32.h"

namespace {

using testing::ElementsAre;
namespace fs = std::filesystem;

struct World {
    std::vector<std::wstring> made;  // every attempt to create a folder, in order
    std::set<std::wstring> denied;   // these cannot be created
    std::wstring overtaken;          // another process creates this one just before
    std::wstring temp;               // replaces the system's answer, if set
    bool noTemp = false;
};
World world;

BOOL WINAPI FakeCreateDirectoryW(LPCWSTR path, LPSECURITY_ATTRIBUTES attributes) {
    static const auto real = REAL(L"kernel32", CreateDirectoryW);
    EXPECT_EQ(attributes, nullptr);
    world.made.emplace_back(path);
    if (world.denied.contains(path)) {
        SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
    }
    if (world.overtaken == path) real(path, nullptr);
    return real(path, nullptr);
}

DWORD WINAPI FakeGetTempPathW(DWORD length, LPWSTR buffer) {
    static const auto real = REAL(L"kernel32", GetTempPathW);
    if (world.noTemp) {
        SetLastError(ERROR_PATH_NOT_FOUND);
        return 0;
    }
    if (world.temp.empty()) return real(length, buffer);
    if (world.temp.size() >= length) return static_cast<DWORD>(world.temp.size() + 1);  // and writes nothing
    *std::copy_n(world.temp.c_str(), world.temp.size(), buffer) = L'\0';
    return static_cast<DWORD>(world.temp.size());
}

}  // namespace

extern "C" {
decltype(&CreateDirectoryW) __imp_CreateDirectoryW = &FakeCreateDirectoryW;
decltype(&GetTempPathW) __imp_GetTempPathW = &FakeGetTempPathW;
}

namespace kestrane {
namespace {

class FoldersTest : public testing::Test {
  protected:
    FoldersTest() { world = {}; }
    ~FoldersTest() override { world = {}; }

    std::wstring Below(const std::wstring& names) const { return folder_.Path().wstring() + L"\\" + names; }

    void WriteFileBelow(const std::wstring& name) const {
        const UniqueFile file(CreateFileW(Below(name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
        ASSERT_TRUE(file);
    }

  private:
    const TestFolder folder_;
};

TEST_F(FoldersTest, AllThatAreMissingAreMade) {
    EXPECT_TRUE(CreateFolders(Below(L"a\\b\\c")));
    EXPECT_TRUE(fs::is_directory(Below(L"a\\b\\c")));
    EXPECT_THAT(world.made,
                ElementsAre(Below(L"a\\b\\c"), Below(L"a\\b"), Below(L"a"), Below(L"a\\b"), Below(L"a\\b\\c")));
}

TEST_F(FoldersTest, OneThatIsThereIsEnoughAndIsAskedForOnce) {
    ASSERT_TRUE(CreateFolders(Below(L"a")));
    world.made.clear();
    EXPECT_TRUE(CreateFolders(Below(L"a")));
    EXPECT_THAT(world.made, ElementsAre(Below(L"a")));
    EXPECT_TRUE(CreateFolders(Below(L"a\\")));
}

TEST_F(FoldersTest, ARootIsThere) {
    EXPECT_TRUE(CreateFolders(L"C:\\"));
    EXPECT_TRUE(CreateFolders(L"\\"));
}

TEST_F(FoldersTest, AFileOfThatNameIsNoFolderAndStays) {
    WriteFileBelow(L"a");
    EXPECT_FALSE(CreateFolders(Below(L"a")));
    EXPECT_FALSE(CreateFolders(Below(L"a\\b")));
    EXPECT_TRUE(fs::is_regular_file(Below(L"a")));
}

TEST_F(FoldersTest, WhereNothingIsNothingCanBeMade) {
    EXPECT_FALSE(CreateFolders(L""));
    EXPECT_FALSE(CreateFolders(L"Q:\\a\\b"));
    EXPECT_FALSE(CreateFolders(L"\\\\no-such-server\\share\\a"));
    EXPECT_FALSE(CreateFolders(Below(L"a?\\b")));
}

TEST_F(FoldersTest, ARefusalEndsItWithoutMakingWhatIsBelow) {
    world.denied = {Below(L"a")};
    EXPECT_FALSE(CreateFolders(Below(L"a\\b\\c")));
    EXPECT_FALSE(fs::exists(Below(L"a")));
}

TEST_F(FoldersTest, ARefusalIsNoMatterWhereTheFolderIsThere) {
    fs::create_directory(Below(L"a"));
    world.denied = {Below(L"a")};
    EXPECT_TRUE(CreateFolders(Below(L"a")));
    EXPECT_TRUE(CreateFolders(Below(L"a\\b\\c")));
}

TEST_F(FoldersTest, SomebodyElseMayMakeItFirst) {
    for (const wchar_t* name : {L"a", L"a\\b"}) {
        world.overtaken = Below(name);
        EXPECT_TRUE(CreateFolders(Below(L"a\\b"))) << testing::PrintToString(name);
        fs::remove_all(Below(L"a"));
    }
}

TEST_F(FoldersTest, LengthsThatTheSystemTakesAreMadeAndOthersFail) {
    std::wstring path = L"\\\\?\\" + Below(L"");
    for (int i = 0; i < 20; ++i)
        path += std::wstring(50, L'x') + L"\\";
    EXPECT_TRUE(CreateFolders(path));
    EXPECT_TRUE(fs::is_directory(path));
    EXPECT_FALSE(CreateFolders(Below(std::wstring(300, L'x') + L"\\a")));  // no name has more than 255 characters
}

TEST_F(FoldersTest, TheTemporaryFolderIsTheSystemsOwn) {
    EXPECT_EQ(TemporaryFolder(), fs::temp_directory_path().wstring());
    world.temp = Below(L"");
    EXPECT_EQ(TemporaryFolder(), world.temp);
}

TEST_F(FoldersTest, ATemporaryFolderThatIsNotThereIsNone) {
    WriteFileBelow(L"file");
    for (const std::wstring& temp : {Below(L"nothing\\"), Below(L"file"), std::wstring(400, L'x')}) {
        world.temp = temp;
        EXPECT_THROW(TemporaryFolder(), std::runtime_error) << testing::PrintToString(temp);
    }
    world.noTemp = true;
    EXPECT_THROW(TemporaryFolder(), std::runtime_error);
    world.noTemp = false;
}

}  // namespace
}  // namespace kestrane
