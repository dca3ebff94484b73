#include <gtest/gtest.h>

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

TEST(PromotionReport, NamesTheCount) {
    EXPECT_EQ(PromotionReport(0), L"kestrane: iconos promocionados a la barra: 0\n");
    EXPECT_EQ(PromotionReport(4), L"kestrane: iconos promocionados a la barra: 4\n");
    EXPECT_EQ(PromotionReport(1234), L"kestrane: iconos promocionados a la barra: 1234\n");
}

}  // namespace
}  // namespace kestrane
