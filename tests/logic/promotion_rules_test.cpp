#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "tray/promotion.h"

namespace kestrane {
namespace {

TEST(HoldsPath, TakesTextOfAtLeastOneCharacter) {
    struct Row {
        std::uint32_t type, size;
        bool holds;
    };
    const std::vector<Row> rows = {
        {1, 0, false}, {1, 1, false}, {1, 2, true},  {1, 3, true},  {1, 520, true},  // REG_SZ
        {2, 1, false}, {2, 2, true},                                                 // REG_EXPAND_SZ
        {0, 8, false}, {3, 8, false}, {4, 4, false}, {7, 8, false}, {11, 8, false},
    };
    for (const Row& row : rows)
        EXPECT_EQ(HoldsPath(row.type, row.size), row.holds) << row.type << " " << row.size;
}

TEST(TextBeforeZero, IsAllOfItWithoutAZero) {
    using namespace std::string_view_literals;
    EXPECT_EQ(TextBeforeZero(L""sv), L"");
    EXPECT_EQ(TextBeforeZero(L"\0"sv), L"");
    EXPECT_EQ(TextBeforeZero(L"abc"sv), L"abc");
    EXPECT_EQ(TextBeforeZero(L"abc\0"sv), L"abc");
    EXPECT_EQ(TextBeforeZero(L"abc\0def\0"sv), L"abc");
}

TEST(IsOwnEntry, IgnoresTheCaseOfLettersAndNothingElse) {
    struct Row {
        std::wstring entry, own;
        bool same;
    };
    const std::vector<Row> rows = {
        {L"C:\\Apps\\kestrane.exe", L"C:\\Apps\\kestrane.exe", true},
        {L"c:\\apps\\KESTRANE.EXE", L"C:\\Apps\\kestrane.exe", true},
        {L"C:\\Other\\kestrane.exe", L"C:\\Apps\\kestrane.exe", false},
        {L"C:\\Apps\\kestrane.exe ", L"C:\\Apps\\kestrane.exe", false},
        {L"C:\\Apps\\kestrane.ex", L"C:\\Apps\\kestrane.exe", false},
        {L"%APPS%\\kestrane.exe", L"C:\\Apps\\kestrane.exe", false},  // variables are not expanded
        {L"", L"C:\\Apps\\kestrane.exe", false},
        {L"", L"", false},  // an unknown own path is not the path of entries without one
    };
    for (const Row& row : rows)
        EXPECT_EQ(IsOwnEntry(row.entry, row.own), row.same) << testing::PrintToString(row.entry);
}

constexpr FolderId ProgramFiles{0x6D, 0x80, 0x93, 0x77, 0x6A, 0xF0, 0x44, 0x4B,
                                0x89, 0x57, 0xA3, 0x77, 0x3F, 0x02, 0x20, 0x0E};
const std::wstring ProgramFilesText = L"{6D809377-6AF0-444B-8957-A3773F02200E}";

TEST(ParseFolderPath, TellsTheFolderFromTheRest) {
    for (const std::wstring rest : {L"", L"app.exe", L"App\\app.exe", L"\\", L"{x}"}) {
        for (const std::wstring& folder : {ProgramFilesText, std::wstring(L"{6d809377-6af0-444b-8957-a3773f02200e}")}) {
            const std::wstring path = folder + L"\\" + rest;
            const std::optional<FolderPath> parsed = ParseFolderPath(path);
            ASSERT_TRUE(parsed) << testing::PrintToString(path);
            EXPECT_EQ(parsed->folder, ProgramFiles);
            EXPECT_EQ(parsed->rest, rest);
        }
    }
}

TEST(ParseFolderPath, TakesNothingElse) {
    const std::wstring whole = ProgramFilesText + L"\\app.exe";
    for (std::size_t length = 0; length <= ProgramFilesText.size(); ++length)
        EXPECT_FALSE(ParseFolderPath(whole.substr(0, length))) << length;
    for (std::size_t i = 0; i <= ProgramFilesText.size(); ++i) {
        for (const wchar_t wrong : {L'G', L'g', L'/', L':', L'@', L'`', L' ', L'x', L'\0', L'\xFF11'}) {
            std::wstring path = whole;
            path[i] = wrong;
            EXPECT_FALSE(ParseFolderPath(path)) << i << " " << static_cast<int>(wrong);
        }
        std::wstring shorter = whole;
        EXPECT_FALSE(ParseFolderPath(shorter.erase(i, 1))) << i;
        EXPECT_FALSE(ParseFolderPath(std::wstring(whole).insert(i, L"0"))) << i;
    }
    for (const wchar_t* path : {L"", L"C:\\Program Files\\App\\app.exe", L"\\\\server\\share\\app.exe", L"{}\\app.exe"})
        EXPECT_FALSE(ParseFolderPath(path)) << testing::PrintToString(path);
}

TEST(PromotionReport, NamesTheCount) {
    EXPECT_EQ(PromotionReport(0), L"kestrane: iconos promocionados a la barra: 0\n");
    EXPECT_EQ(PromotionReport(4), L"kestrane: iconos promocionados a la barra: 4\n");
    EXPECT_EQ(PromotionReport(1234), L"kestrane: iconos promocionados a la barra: 1234\n");
}

}  // namespace
}  // namespace kestrane
