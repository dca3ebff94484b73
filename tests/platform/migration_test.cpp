// What goes by the program's former name and is taken over at the start: the settings file and the value by which it
// starts with Windows. The folders and both roots of the registry are the test's own; rights are refused at the calls
// that Windows would refuse.
#include <windows.h>
// <windows.h> comes first.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "settings/autostart_win32.h"
#include "settings/ini_file_win32.h"
#include "settings/migration_win32.h"
#include "support/fake_module_path_win32.h"
#include "support/own_registry_win32.h"
#include "support/recorded_log.h"
#include "support/roaming_folder_win32.h"
#include "support/test_folder_win32.h"

namespace {

struct World {
    std::wstring unaskable;  // a file about which the system tells nothing
    DWORD askError = ERROR_ACCESS_DENIED;
    bool copies = true;
    bool renames = true;
    bool machineIsReadOnly = false;
    bool valuesAreReadOnly = false;  // the key opens, but its values cannot be set
    bool formerValueStays = false;   // it cannot be deleted
};
World world;

DWORD WINAPI FakeGetFileAttributesW(LPCWSTR path) {
    static const auto real = REAL(L"kernel32", GetFileAttributesW);
    if (world.unaskable.empty() || world.unaskable != path) return real(path);
    SetLastError(world.askError);
    return INVALID_FILE_ATTRIBUTES;
}

BOOL WINAPI FakeCopyFileW(LPCWSTR from, LPCWSTR to, BOOL failIfExists) {
    static const auto real = REAL(L"kernel32", CopyFileW);
    EXPECT_TRUE(failIfExists);
    SetLastError(ERROR_SHARING_VIOLATION);
    return world.copies ? real(from, to, failIfExists) : FALSE;
}

BOOL WINAPI FakeMoveFileExW(LPCWSTR from, LPCWSTR to, DWORD flags) {
    static const auto real = REAL(L"kernel32", MoveFileExW);
    SetLastError(ERROR_SHARING_VIOLATION);
    return world.renames ? real(from, to, flags) : FALSE;
}

LSTATUS WINAPI FakeRegOpenKeyExW(HKEY root, LPCWSTR path, DWORD options, REGSAM access, PHKEY key) {
    static const auto real = REAL(L"advapi32", RegOpenKeyExW);
    const bool writes = (access & KEY_SET_VALUE) != 0;
    if (world.machineIsReadOnly && root == HKEY_LOCAL_MACHINE && writes) return ERROR_ACCESS_DENIED;
    return real(root, path, options, access, key);
}

LSTATUS WINAPI FakeRegSetValueExW(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size) {
    static const auto real = REAL(L"advapi32", RegSetValueExW);
    return world.valuesAreReadOnly ? ERROR_ACCESS_DENIED : real(key, name, reserved, type, data, size);
}

LSTATUS WINAPI FakeRegDeleteValueW(HKEY key, LPCWSTR name) {
    static const auto real = REAL(L"advapi32", RegDeleteValueW);
    return world.formerValueStays ? ERROR_ACCESS_DENIED : real(key, name);
}

}  // namespace

extern "C" {
decltype(&GetFileAttributesW) __imp_GetFileAttributesW = &FakeGetFileAttributesW;
decltype(&CopyFileW) __imp_CopyFileW = &FakeCopyFileW;
decltype(&MoveFileExW) __imp_MoveFileExW = &FakeMoveFileExW;
decltype(&RegOpenKeyExW) __imp_RegOpenKeyExW = &FakeRegOpenKeyExW;
decltype(&RegSetValueExW) __imp_RegSetValueExW = &FakeRegSetValueExW;
decltype(&RegDeleteValueW) __imp_RegDeleteValueW = &FakeRegDeleteValueW;
}

namespace kestrane {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr wchar_t Copied[] = L"kestrane: ajustes copiados de la carpeta del nombre anterior\n";
constexpr char Settings[] = "[cpu]\r\nrefresh_ms=3000\r\n";
const std::wstring OwnValue = L"\"C:\\Tools\\kestrane.exe\"";

class MigrationTest : public testing::Test {
  protected:
    MigrationTest() {
        world = {};
        roamingFolder = folder_.Path().wstring();
        debugLines.clear();
        toldPath = L"C:\\Tools\\kestrane.exe";
    }
    ~MigrationTest() override {
        toldPath.reset();
        for (const fs::path& file : {PresentFile(), FormerFile()})
            SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
    }
    void SetUp() override { ASSERT_TRUE(user_ && machine_); }

    fs::path PresentFile() const { return folder_.Path() / L"kestrane" / L"kestrane.ini"; }
    fs::path FormerFile() const { return folder_.Path() / L"orvalite" / L"orvalite.ini"; }

    static void Write(const fs::path& file, const std::string& bytes) {
        fs::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << bytes;
    }
    static std::string Read(const fs::path& file) {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    static void SetValue(HKEY root, const wchar_t* name, const std::wstring& text) {
        const auto bytes = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
        ASSERT_EQ(RegSetKeyValueW(root, RunKey, name, REG_SZ, text.c_str(), bytes), ERROR_SUCCESS);
    }
    /// Empty without one.
    static std::wstring Value(HKEY root, const wchar_t* name) {
        wchar_t text[300] = {};
        DWORD size = sizeof text;
        RegGetValueW(root, RunKey, name, RRF_RT_REG_SZ, nullptr, text, &size);
        return text;
    }
    static bool HasKey(HKEY root) {
        HKEY key = nullptr;
        if (RegOpenKeyW(root, RunKey, &key) != ERROR_SUCCESS) return false;
        RegCloseKey(key);
        return true;
    }

  private:
    TestFolder folder_;
    OwnRegistry user_{HKEY_CURRENT_USER};
    OwnRegistry machine_{HKEY_LOCAL_MACHINE};
};

const HKEY Roots[] = {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE};

// The settings.

TEST_F(MigrationTest, AFreshMachineStaysAsItIs) {
    MigrateFormerInstall();
    EXPECT_TRUE(fs::is_empty(PresentFile().parent_path().parent_path())) << "not even a folder";
    for (const HKEY root : Roots)
        EXPECT_FALSE(HasKey(root));
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(MigrationTest, TheFormerFileAloneIsCopiedAndStays) {
    Write(FormerFile(), Settings);
    Write(FormerFile().parent_path() / L"notes.txt", "mine");
    MigrateFormerInstall();
    EXPECT_EQ(Read(PresentFile()), Settings);
    EXPECT_EQ(Read(FormerFile()), Settings);
    EXPECT_EQ(Read(FormerFile().parent_path() / L"notes.txt"), "mine");
    EXPECT_FALSE(fs::exists(PresentFile().parent_path() / L"notes.txt")) << "nothing but the settings";
    EXPECT_THAT(debugLines, ElementsAre(Copied));
    EXPECT_EQ(LoadSettings().refresh_ms[0], 3000U);
}

TEST_F(MigrationTest, ItIsCopiedOnceAndNeverMerged) {
    Write(FormerFile(), Settings);
    MigrateFormerInstall();
    Write(PresentFile(), "[cpu]\r\nrefresh_ms=500\r\n");
    Write(FormerFile(), "[cpu]\r\nrefresh_ms=10000\r\n");
    MigrateFormerInstall();
    EXPECT_EQ(Read(PresentFile()), "[cpu]\r\nrefresh_ms=500\r\n");
    EXPECT_THAT(debugLines, ElementsAre(Copied)) << "the first time";
}

TEST_F(MigrationTest, OfBothFilesThePresentOneWinsEvenIfItIsEmpty) {
    Write(FormerFile(), Settings);
    Write(PresentFile(), "");
    EXPECT_FALSE(CopyFormerSettings(FormerFile().wstring(), PresentFile().wstring()));
    EXPECT_EQ(Read(PresentFile()), "");
    EXPECT_EQ(Read(FormerFile()), Settings);
}

TEST_F(MigrationTest, AnExistingFolderWithoutTheFileIsFilled) {
    Write(FormerFile(), Settings);
    fs::create_directories(PresentFile().parent_path());
    EXPECT_TRUE(CopyFormerSettings(FormerFile().wstring(), PresentFile().wstring()));
    EXPECT_EQ(Read(PresentFile()), Settings);
}

TEST_F(MigrationTest, APresentFileThatCannotBeAskedAboutIsThere) {
    Write(FormerFile(), Settings);
    for (const DWORD error : {DWORD{ERROR_ACCESS_DENIED}, DWORD{ERROR_SHARING_VIOLATION}}) {
        world.unaskable = PresentFile().wstring();
        world.askError = error;
        MigrateFormerInstall();
        EXPECT_FALSE(fs::exists(PresentFile().parent_path())) << error;
    }
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(MigrationTest, AFormerFileThatCannotBeReadIsLeftForTheNextStart) {
    Write(FormerFile(), Settings);
    world.copies = false;
    world.unaskable = FormerFile().wstring();
    MigrateFormerInstall();
    EXPECT_FALSE(fs::exists(PresentFile()));
    EXPECT_THAT(debugLines, IsEmpty());
    world.copies = true;
    world.unaskable.clear();
    MigrateFormerInstall();
    EXPECT_EQ(Read(PresentFile()), Settings);
}

TEST_F(MigrationTest, ACopyThatCannotBeRenamedIsMadeUnderItsOwnName) {
    Write(FormerFile(), Settings);
    world.renames = false;
    MigrateFormerInstall();
    EXPECT_EQ(Read(PresentFile()), Settings);
    EXPECT_FALSE(fs::exists(PresentFile().wstring() + L".new"));
    EXPECT_THAT(debugLines, ElementsAre(Copied));
}

TEST_F(MigrationTest, WhatStandsInTheWayOfTheUnfinishedCopyDoesNotStopIt) {
    Write(FormerFile(), Settings);
    fs::create_directories(PresentFile().wstring() + L".new");
    MigrateFormerInstall();
    EXPECT_EQ(Read(PresentFile()), Settings);
    EXPECT_THAT(debugLines, ElementsAre(Copied));
}

TEST_F(MigrationTest, AFolderWithTheFormerFilesNameIsNoFile) {
    fs::create_directories(FormerFile());
    EXPECT_FALSE(CopyFormerSettings(FormerFile().wstring(), PresentFile().wstring()));
    EXPECT_FALSE(fs::exists(PresentFile()));
}

TEST_F(MigrationTest, AFileWithThePresentFoldersNameStopsTheCopy) {
    Write(FormerFile(), Settings);
    Write(PresentFile().parent_path(), "in the way");
    MigrateFormerInstall();
    EXPECT_EQ(Read(PresentFile().parent_path()), "in the way");
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(MigrationTest, OfAReadOnlyFileTheCopyCanBeSaved) {
    Write(FormerFile(), Settings);
    ASSERT_TRUE(SetFileAttributesW(FormerFile().c_str(), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN));
    MigrateFormerInstall();
    EXPECT_EQ(GetFileAttributesW(FormerFile().c_str()) & FILE_ATTRIBUTE_READONLY, DWORD{FILE_ATTRIBUTE_READONLY});
    EXPECT_EQ(GetFileAttributesW(PresentFile().c_str()) & FILE_ATTRIBUTE_READONLY, 0U);
    AppSettings settings = LoadSettings();
    settings.language = 2;
    EXPECT_TRUE(SaveLanguage(settings));
    EXPECT_EQ(LoadSettings().language, 2U);
    EXPECT_EQ(LoadSettings().refresh_ms[0], 3000U);
}

// Starting with Windows.

TEST_F(MigrationTest, TheFormerValueOfEachRootBecomesThePresentOneWithTheRunningFilesPath) {
    for (const HKEY root : Roots) {
        SetValue(root, L"orvalite", L"\"C:\\Old place\\orvalite.exe\"");
        SetValue(root, L"neighbour", L"n.exe");
        MigrateFormerInstall();
        EXPECT_EQ(Value(root, L"kestrane"), OwnValue);
        EXPECT_EQ(Value(root, L"orvalite"), L"");
        EXPECT_EQ(Value(root, L"neighbour"), L"n.exe");
    }
    EXPECT_THAT(debugLines, IsEmpty());
    EXPECT_EQ(GetAutostartMode(), AutostartMode::AllUsers);
}

TEST_F(MigrationTest, TheRootsAreTakenOverEachForItself) {
    SetValue(HKEY_CURRENT_USER, L"orvalite", L"o.exe");
    MigrateFormerInstall();
    EXPECT_EQ(Value(HKEY_CURRENT_USER, L"kestrane"), OwnValue);
    EXPECT_FALSE(HasKey(HKEY_LOCAL_MACHINE));
}

TEST_F(MigrationTest, AnOutdatedPresentValueIsBroughtUpToDateWithTheFormerOne) {
    SetValue(HKEY_CURRENT_USER, L"orvalite", L"o.exe");
    SetValue(HKEY_CURRENT_USER, L"kestrane", L"\"C:\\Gone\\kestrane.exe\"");
    MigrateRunValue(HKEY_CURRENT_USER);
    EXPECT_EQ(Value(HKEY_CURRENT_USER, L"kestrane"), OwnValue);
}

TEST_F(MigrationTest, WithoutAFormerValueThePresentOneStaysAsItIs) {
    SetValue(HKEY_CURRENT_USER, L"kestrane", L"\"C:\\Gone\\kestrane.exe\"");
    MigrateRunValue(HKEY_CURRENT_USER);
    EXPECT_EQ(Value(HKEY_CURRENT_USER, L"kestrane"), L"\"C:\\Gone\\kestrane.exe\"");
}

TEST_F(MigrationTest, AFormerValueOfAnyKindCounts) {
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, RunKey, L"orvalite", REG_BINARY, "x", 1), ERROR_SUCCESS);
    MigrateRunValue(HKEY_CURRENT_USER);
    EXPECT_EQ(Value(HKEY_CURRENT_USER, L"kestrane"), OwnValue);
    EXPECT_EQ(RegGetValueW(HKEY_CURRENT_USER, RunKey, L"orvalite", RRF_RT_ANY, nullptr, nullptr, nullptr),
              ERROR_FILE_NOT_FOUND);
}

TEST_F(MigrationTest, WithoutRightsTheMachinesValueStaysWithoutAWordAndTheUsersMoves) {
    for (const HKEY root : Roots)
        SetValue(root, L"orvalite", L"o.exe");
    world.machineIsReadOnly = true;
    for (int start = 0; start < 2; ++start) {
        MigrateFormerInstall();
        EXPECT_EQ(Value(HKEY_LOCAL_MACHINE, L"orvalite"), L"o.exe");
        EXPECT_EQ(Value(HKEY_LOCAL_MACHINE, L"kestrane"), L"");
        EXPECT_EQ(Value(HKEY_CURRENT_USER, L"kestrane"), OwnValue);
    }
    EXPECT_THAT(debugLines, IsEmpty());
    world.machineIsReadOnly = false;
    MigrateFormerInstall();
    EXPECT_EQ(Value(HKEY_LOCAL_MACHINE, L"kestrane"), OwnValue) << "with the rights, later";
}

TEST_F(MigrationTest, AFormerValueOutlivesAPresentOneThatCannotBeWritten) {
    SetValue(HKEY_CURRENT_USER, L"orvalite", L"o.exe");
    const auto expectNothingDone = [](const char* why) {
        MigrateRunValue(HKEY_CURRENT_USER);
        EXPECT_EQ(Value(HKEY_CURRENT_USER, L"orvalite"), L"o.exe") << why;
        EXPECT_EQ(Value(HKEY_CURRENT_USER, L"kestrane"), L"") << why;
    };
    world.valuesAreReadOnly = true;
    expectNothingDone("no rights");
    world.valuesAreReadOnly = false;
    toldPath = std::wstring(LongestRunPath + 1, L'x');
    expectNothingDone("the path is too long to start with Windows");
    toldPath = L"C:\\Tools\\kestrane.exe";
    MigrateRunValue(HKEY_CURRENT_USER);
    EXPECT_EQ(Value(HKEY_CURRENT_USER, L"kestrane"), OwnValue);
}

TEST_F(MigrationTest, AFormerValueThatCannotBeDeletedIsTriedAgain) {
    SetValue(HKEY_CURRENT_USER, L"orvalite", L"o.exe");
    world.formerValueStays = true;
    MigrateRunValue(HKEY_CURRENT_USER);
    EXPECT_EQ(Value(HKEY_CURRENT_USER, L"orvalite"), L"o.exe");
    EXPECT_EQ(Value(HKEY_CURRENT_USER, L"kestrane"), OwnValue);
    world.formerValueStays = false;
    MigrateRunValue(HKEY_CURRENT_USER);
    EXPECT_EQ(Value(HKEY_CURRENT_USER, L"orvalite"), L"");
}

TEST_F(MigrationTest, ValuesAndSettingsAreTakenOverIndependently) {
    SetValue(HKEY_CURRENT_USER, L"orvalite", L"o.exe");
    Write(FormerFile(), Settings);
    Write(PresentFile(), "");
    MigrateFormerInstall();
    EXPECT_EQ(Value(HKEY_CURRENT_USER, L"kestrane"), OwnValue);
    EXPECT_EQ(Read(PresentFile()), "");
}

}  // namespace
}  // namespace kestrane
