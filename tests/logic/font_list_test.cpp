#include "dialog/font_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace kestrane {
namespace {

TEST(AddFontName, LeavesOutFontsForVerticalText) {
    std::vector<std::wstring> names;
    for (const std::wstring_view name : {L"Segoe UI", L"@SimSun", L"SimSun", L"@", L"a@b"})
        AddFontName(names, name);
    EXPECT_EQ(names, (std::vector<std::wstring>{L"Segoe UI", L"SimSun", L"a@b"}));
}

TEST(SortFontNames, IgnoresCaseAndRemovesRepeatedNames) {
    struct Row {
        const char* reason;
        std::vector<std::wstring> names;
        std::vector<std::wstring> sorted;
    };
    const std::vector<Row> rows = {
        {"none", {}, {}},
        {"letters of either case",
         {L"verdana", L"Arial", L"courier", L"Bahnschrift"},
         {L"Arial", L"Bahnschrift", L"courier", L"verdana"}},
        {"a name before its longer one", {L"Arial Black", L"arial"}, {L"arial", L"Arial Black"}},
        {"repeated names", {L"Tahoma", L"Arial", L"Tahoma", L"Tahoma"}, {L"Arial", L"Tahoma"}},
        {"repeated names with another spelling in between",
         {L"Arial", L"ARIAL", L"Arial", L"ARIAL"},
         {L"ARIAL", L"Arial"}},
        {"a sign between the large and the small letters", {L"a_b", L"aZb"}, {L"a_b", L"aZb"}},
    };
    for (const Row& row : rows) {
        std::vector<std::wstring> names = row.names;
        SortFontNames(names);
        EXPECT_EQ(names, row.sorted) << row.reason;
    }
}

TEST(SortFontNames, DoesNotDependOnTheOrderOfEnumeration) {
    std::mt19937 random(1);
    std::vector<std::wstring> names{L"Arial", L"ARIAL", L"arial", L"Arial Black", L"Zapf", L"_x", L"b", L"B", L"Ñandú"};
    std::vector<std::wstring> sorted = names;
    SortFontNames(sorted);
    EXPECT_EQ(sorted.size(), names.size());
    names.insert(names.end(), sorted.begin(), sorted.end());
    for (int round = 0; round < 200; ++round) {
        std::ranges::shuffle(names, random);
        std::vector<std::wstring> again = names;
        SortFontNames(again);
        ASSERT_EQ(again, sorted);
    }
}

TEST(IsStorableFontName, From1To31Characters) {
    EXPECT_FALSE(IsStorableFontName(L""));
    EXPECT_TRUE(IsStorableFontName(L"A"));
    EXPECT_TRUE(IsStorableFontName(std::wstring(31, L'A')));
    EXPECT_FALSE(IsStorableFontName(std::wstring(32, L'A')));
}

}  // namespace
}  // namespace kestrane
