// The promotion on a real registry, but not on the user's: the shell's key is created for each case below a root of the
// test's own. Only failures that a real registry cannot produce on demand, of a single subkey or write, are faked.
#include <windows.h>

#include <objbase.h>
#include <shlobj.h>

#include "tray/promotion_win32.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cwctype>
#include <optional>
#include <string>
#include <vector>

#include "base/handles_win32.h"
#include "support/fake_module_path_win32.h"
#include "support/own_registry_win32.h"
#include "support/real_call_win32.h"
#include "support/recorded_log.h"

namespace kestrane {
namespace {

using testing::ElementsAre;

/// The registry calls to fail.
struct Refusals {
    std::wstring subkey;         // cannot be opened
    bool writes = false;         // RegSetValueExW fails
    bool promotedReads = false;  // querying IsPromoted fails, but not because it is missing
    bool pathReads = false;      // reading ExecutablePath fails once its size is known
};
Refusals refusals;
std::vector<REGSAM> subkeyAccess;

/// The one known folder.
struct KnownFolder {
    std::wstring path;
    int questions = 0;
    int textsHeld = 0;  // returned and not freed
};
KnownFolder programFiles;
constexpr GUID ProgramFilesId{0x6D809377, 0x6AF0, 0x444B, {0x89, 0x57, 0xA3, 0x77, 0x3F, 0x02, 0x20, 0x0E}};
int openKeys = 0;

LSTATUS WINAPI FakeRegOpenKeyExW(HKEY parent, LPCWSTR name, DWORD options, REGSAM access, PHKEY key) {
    if (!refusals.subkey.empty() && refusals.subkey == name) return ERROR_ACCESS_DENIED;
    if (parent != HKEY_CURRENT_USER) subkeyAccess.push_back(access);
    static const auto real = REAL(L"advapi32", RegOpenKeyExW);
    const LSTATUS result = real(parent, name, options, access, key);
    if (result == ERROR_SUCCESS) ++openKeys;
    return result;
}

LSTATUS WINAPI FakeRegCloseKey(HKEY key) {
    --openKeys;
    static const auto real = REAL(L"advapi32", RegCloseKey);
    return real(key);
}

LSTATUS WINAPI FakeRegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size) {
    if (refusals.promotedReads && std::wstring(name) == L"IsPromoted") return ERROR_ACCESS_DENIED;
    if (refusals.pathReads && data != nullptr) return ERROR_MORE_DATA;
    static const auto real = REAL(L"advapi32", RegQueryValueExW);
    return real(key, name, reserved, type, data, size);
}

LSTATUS WINAPI FakeRegSetValueExW(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size) {
    if (refusals.writes) return ERROR_ACCESS_DENIED;
    static const auto real = REAL(L"advapi32", RegSetValueExW);
    return real(key, name, reserved, type, data, size);
}

void WINAPI FakeCoTaskMemFree(void* memory) {
    if (memory != nullptr) --programFiles.textsHeld;
    std::free(memory);
}

}  // namespace
}  // namespace kestrane

extern "C" {
decltype(&CoTaskMemFree) __imp_CoTaskMemFree = &kestrane::FakeCoTaskMemFree;
decltype(&RegOpenKeyExW) __imp_RegOpenKeyExW = &kestrane::FakeRegOpenKeyExW;
decltype(&RegCloseKey) __imp_RegCloseKey = &kestrane::FakeRegCloseKey;
decltype(&RegQueryValueExW) __imp_RegQueryValueExW = &kestrane::FakeRegQueryValueExW;
decltype(&RegSetValueExW) __imp_RegSetValueExW = &kestrane::FakeRegSetValueExW;

// Declared without dllimport, so the function itself is replaced. It returns a text to free after a failure too.
HRESULT WINAPI SHGetKnownFolderPath(REFKNOWNFOLDERID folder, DWORD flags, HANDLE token, PWSTR* path) {
    EXPECT_EQ(flags, 0x4000U) << "without checking that the folder exists";
    EXPECT_EQ(token, nullptr);
    using kestrane::programFiles;
    ++programFiles.questions;
    ++programFiles.textsHeld;
    *path = static_cast<PWSTR>(std::calloc(programFiles.path.size() + 1, sizeof(wchar_t)));
    std::copy(programFiles.path.begin(), programFiles.path.end(), *path);
    return IsEqualGUID(folder, kestrane::ProgramFilesId) ? S_OK : HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
}
}

namespace kestrane {
namespace {

constexpr wchar_t EntriesKey[] = L"Control Panel\\NotifyIconSettings";
const std::wstring MissingKey = L"kestrane: sin clave NotifyIconSettings; no se promocionan los iconos\n";

std::wstring Report(const wchar_t* count) {
    return std::wstring(L"kestrane: iconos promocionados a la barra: ") + count + L"\n";
}

std::wstring OwnPath() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return path;
}

std::wstring InCase(std::wstring text, std::wint_t (*change)(std::wint_t)) {
    std::transform(text.begin(), text.end(), text.begin(), [change](wchar_t character) {
        return static_cast<wchar_t>(change(static_cast<std::wint_t>(character)));
    });
    return text;
}

std::wstring EntryKey(const std::wstring& name) {
    return std::wstring(EntriesKey) + L"\\" + name;
}

/// Writes a value into an entry, creating the entry if needed. `data` is written byte for byte.
void SetEntryValue(const std::wstring& entry, const wchar_t* value, DWORD type, const void* data, std::size_t size) {
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, EntryKey(entry).c_str(), value, type, data, static_cast<DWORD>(size)),
              ERROR_SUCCESS);
}

void SetPath(const std::wstring& entry, const std::wstring& path, DWORD type = REG_SZ) {
    SetEntryValue(entry, L"ExecutablePath", type, path.c_str(), (path.size() + 1) * sizeof(wchar_t));
}

void SetPromoted(const std::wstring& entry, DWORD promoted) {
    SetEntryValue(entry, L"IsPromoted", REG_DWORD, &promoted, sizeof promoted);
}

/// The number in IsPromoted, or none if there is no such value.
std::optional<DWORD> Promoted(const std::wstring& entry) {
    DWORD value = 0;
    DWORD size = sizeof value;
    const LSTATUS result = RegGetValueW(HKEY_CURRENT_USER, EntryKey(entry).c_str(), L"IsPromoted", RRF_RT_REG_DWORD,
                                        nullptr, &value, &size);
    return result == ERROR_SUCCESS ? std::optional(value) : std::nullopt;
}

void MakeEntriesKey() {
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, EntriesKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
              ERROR_SUCCESS);
    ++openKeys;
    RegCloseKey(key);
}

class PromotionTest : public testing::Test {
  protected:
    PromotionTest() { Reset(); }
    void SetUp() override { ASSERT_TRUE(registry_); }
    ~PromotionTest() override {
        EXPECT_EQ(openKeys, 0) << "every key is closed";
        EXPECT_EQ(programFiles.textsHeld, 0) << "every text is freed";
    }
    void Reset() {
        refusals = {};
        subkeyAccess.clear();
        toldPath.reset();
        programFiles = {};
        openKeys = 0;
        debugLines.clear();
        if (registry_) RegDeleteTreeW(HKEY_CURRENT_USER, EntriesKey);
    }

  private:
    const OwnRegistry registry_{HKEY_CURRENT_USER};
};

TEST_F(PromotionTest, WithoutTheKeyNothingHappensButALine) {
    PromoteIcons();
    EXPECT_THAT(debugLines, ElementsAre(MissingKey));
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, EntriesKey, 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
}

TEST_F(PromotionTest, WithoutEntriesTheCountIsZero) {
    MakeEntriesKey();
    PromoteIcons();
    EXPECT_THAT(debugLines, ElementsAre(Report(L"0")));
}

TEST_F(PromotionTest, OwnEntriesWithoutADecisionArePromoted) {
    SetPath(L"1", OwnPath());
    SetPath(L"2", OwnPath());
    PromoteIcons();
    EXPECT_EQ(Promoted(L"1"), 1U);
    EXPECT_EQ(Promoted(L"2"), 1U);
    EXPECT_THAT(debugLines, ElementsAre(Report(L"2")));
    EXPECT_THAT(subkeyAccess, ElementsAre(0x2001BU, 0x2001BU));
}

TEST_F(PromotionTest, ASecondRunFindsNothingToDo) {
    SetPath(L"1", OwnPath());
    PromoteIcons();
    debugLines.clear();
    PromoteIcons();
    EXPECT_THAT(debugLines, ElementsAre(Report(L"0")));
}

TEST_F(PromotionTest, OtherProgramsAreLeftAlone) {
    SetPath(L"1", L"C:\\Windows\\explorer.exe");
    SetPath(L"2", OwnPath() + L"x");
    SetPath(L"3", OwnPath().substr(1));
    SetPath(L"4", L"");
    SetEntryValue(L"5", L"Other", REG_SZ, L"x", 4);  // no path value
    PromoteIcons();
    for (const wchar_t* entry : {L"1", L"2", L"3", L"4", L"5"})
        EXPECT_EQ(Promoted(entry), std::nullopt) << entry;
    EXPECT_THAT(debugLines, ElementsAre(Report(L"0")));
}

TEST_F(PromotionTest, ALongOwnPathIsComparedWhole) {
    toldPath = L"C:\\" + std::wstring(300, L'x') + L"\\kestrane.exe";
    SetPath(L"1", *toldPath);
    SetPath(L"2", toldPath->substr(0, 259));
    PromoteIcons();
    EXPECT_EQ(Promoted(L"1"), 1U);
    EXPECT_EQ(Promoted(L"2"), std::nullopt) << "another program";
    EXPECT_THAT(debugLines, ElementsAre(Report(L"1")));
}

TEST_F(PromotionTest, AKnownFolderInFrontIsExpanded) {
    struct Row {
        const char* why;
        std::wstring entry;
        bool promoted;
        int questions;
    };
    const std::vector<Row> rows = {
        {"Program Files", L"{6D809377-6AF0-444B-8957-A3773F02200E}\\App\\app.exe", true, 1},
        {"in small letters", L"{6d809377-6af0-444b-8957-a3773f02200e}\\APP\\app.exe", true, 1},
        {"another program there", L"{6D809377-6AF0-444B-8957-A3773F02200E}\\App\\other.exe", false, 1},
        {"the folder itself", L"{6D809377-6AF0-444B-8957-A3773F02200E}\\", false, 1},
        {"a folder that is not known here", L"{7C5A40EF-A0FB-4BFC-874A-C0F2E0B9FA8E}\\App\\app.exe", false, 1},
        {"no folder", L"{6D809377-6AF0-444B-8957-A3773F02200}\\App\\app.exe", false, 0},
        {"no separator", L"{6D809377-6AF0-444B-8957-A3773F02200E}App\\app.exe", false, 0},
        {"a plain path", L"C:\\Program Files\\App\\app.exe", true, 0},
    };
    for (const Row& row : rows) {
        Reset();
        programFiles.path = L"C:\\Program Files";
        toldPath = L"C:\\Program Files\\App\\app.exe";
        SetPath(L"1", row.entry);
        PromoteIcons();
        EXPECT_EQ(Promoted(L"1").has_value(), row.promoted) << row.why;
        EXPECT_EQ(programFiles.questions, row.questions) << row.why;
        EXPECT_EQ(programFiles.textsHeld, 0) << row.why;
    }
}

TEST_F(PromotionTest, AKnownFolderCanBeTheRootOfADrive) {
    programFiles.path = L"D:\\";
    toldPath = L"D:\\App\\app.exe";
    SetPath(L"1", L"{6D809377-6AF0-444B-8957-A3773F02200E}\\App\\app.exe");
    PromoteIcons();
    EXPECT_EQ(Promoted(L"1"), 1U);
}

TEST_F(PromotionTest, ADecisionIsLeftAloneEitherWay) {
    SetPath(L"1", OwnPath());
    SetPromoted(L"1", 0);
    SetPath(L"2", OwnPath());
    SetPromoted(L"2", 1);
    SetPath(L"3", OwnPath());
    SetPromoted(L"3", 7);
    SetPath(L"4", OwnPath());
    SetEntryValue(L"4", L"IsPromoted", REG_SZ, L"no", 6);  // of whatever type
    PromoteIcons();
    EXPECT_EQ(Promoted(L"1"), 0U);
    EXPECT_EQ(Promoted(L"2"), 1U);
    EXPECT_EQ(Promoted(L"3"), 7U);
    EXPECT_EQ(Promoted(L"4"), std::nullopt) << "it is still not a number";
    EXPECT_THAT(debugLines, ElementsAre(Report(L"0")));
}

TEST_F(PromotionTest, TheCaseOfLettersDoesNotMatter) {
    SetPath(L"1", InCase(OwnPath(), std::towupper));
    SetPath(L"2", InCase(OwnPath(), std::towlower));
    PromoteIcons();
    EXPECT_EQ(Promoted(L"1"), 1U);
    EXPECT_EQ(Promoted(L"2"), 1U);
    EXPECT_THAT(debugLines, ElementsAre(Report(L"2")));
}

TEST_F(PromotionTest, APathCountsByItsTypeAndItsText) {
    const std::wstring own = OwnPath();
    const std::size_t bytes = own.size() * sizeof(wchar_t);
    const std::wstring list = own + L'\0' + L"more";
    struct Row {
        const char* why;
        DWORD type;
        std::wstring characters;
        std::size_t size;
        bool promoted;
    };
    const std::vector<Row> rows = {
        {"with an end mark", REG_SZ, own, bytes + 2, true},
        {"without an end mark", REG_SZ, own, bytes, true},
        {"expandable", REG_EXPAND_SZ, own, bytes + 2, true},
        {"text after the end mark", REG_SZ, list, list.size() * 2, true},
        {"half an end mark", REG_SZ, own, bytes + 1, true},
        {"without the zero byte of its last letter", REG_SZ, own, bytes - 1, true},
        {"another character short", REG_SZ, own, bytes - 2, false},
        {"several texts", REG_MULTI_SZ, own, bytes + 2, false},
        {"bytes", REG_BINARY, own, bytes + 2, false},
        {"no type", REG_NONE, own, bytes + 2, false},
        {"empty", REG_SZ, own, 0, false},
        {"one byte", REG_SZ, own, 1, false},
        {"one character", REG_SZ, own, 2, false},
        {"variables are not expanded", REG_EXPAND_SZ, L"%SystemRoot%", 26, false},
    };
    for (const Row& row : rows) {
        Reset();
        SetEntryValue(L"1", L"ExecutablePath", row.type, row.characters.c_str(), row.size);
        PromoteIcons();
        EXPECT_EQ(Promoted(L"1").has_value(), row.promoted) << row.why;
        EXPECT_THAT(debugLines, ElementsAre(Report(row.promoted ? L"1" : L"0"))) << row.why;
    }
}

TEST_F(PromotionTest, AnUnreadableEntryIsSkippedWithoutAWord) {
    SetPath(L"1", OwnPath());
    SetPath(L"2", OwnPath());
    SetPath(L"3", OwnPath());
    refusals.subkey = L"2";
    PromoteIcons();
    refusals = {};
    EXPECT_EQ(Promoted(L"1"), 1U);
    EXPECT_EQ(Promoted(L"2"), std::nullopt);
    EXPECT_EQ(Promoted(L"3"), 1U);
    EXPECT_THAT(debugLines, ElementsAre(Report(L"2")));
}

TEST_F(PromotionTest, ARefusedWriteDoesNotCount) {
    SetPath(L"1", OwnPath());
    refusals.writes = true;
    PromoteIcons();
    EXPECT_EQ(Promoted(L"1"), std::nullopt);
    EXPECT_THAT(debugLines, ElementsAre(Report(L"0")));
}

TEST_F(PromotionTest, WhatCannotBeReadIsNotUndecided) {
    SetPath(L"1", OwnPath());
    refusals.promotedReads = true;
    PromoteIcons();
    refusals = {};
    EXPECT_EQ(Promoted(L"1"), std::nullopt);
    EXPECT_THAT(debugLines, ElementsAre(Report(L"0")));
}

TEST_F(PromotionTest, APathThatChangesUnderTheReadingIsNoPath) {
    SetPath(L"1", OwnPath());
    refusals.pathReads = true;
    PromoteIcons();
    refusals = {};
    EXPECT_EQ(Promoted(L"1"), std::nullopt);
}

TEST_F(PromotionTest, ManyEntriesAndTheLongestName) {
    for (int i = 0; i < 300; ++i) {
        SetPath(std::to_wstring(1000 + i), i % 3 == 0 ? OwnPath() : L"C:\\" + std::wstring(2000, L'x'));
    }
    const std::wstring longest(255, L'n');
    SetPath(longest, OwnPath());
    PromoteIcons();
    EXPECT_EQ(Promoted(longest), 1U);
    EXPECT_EQ(Promoted(L"1000"), 1U);
    EXPECT_EQ(Promoted(L"1001"), std::nullopt);
    EXPECT_EQ(Promoted(L"1297"), 1U);
    EXPECT_THAT(debugLines, ElementsAre(Report(L"101")));
}

}  // namespace
}  // namespace kestrane
