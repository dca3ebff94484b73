#include "base/paths.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace kestrane {
namespace {

TEST(JoinPath, PutsOneSeparatorBetweenTwoNames) {
    EXPECT_EQ(JoinPath(L"C:\\Users\\Ana", {L"kestrane", L"kestrane.ini"}), L"C:\\Users\\Ana\\kestrane\\kestrane.ini");
    EXPECT_EQ(JoinPath(L"C:\\Temp\\", {L"a", L"b"}), L"C:\\Temp\\a\\b");
    EXPECT_EQ(JoinPath(L"C:/Temp/", {L"a"}), L"C:/Temp/a");
    EXPECT_EQ(JoinPath(L"C:\\", {L"a"}), L"C:\\a");
    EXPECT_EQ(JoinPath(L"\\\\server\\share", {L"a"}), L"\\\\server\\share\\a");
}

TEST(JoinPath, WithoutAFolderOrWithoutANameThereIsNothingToSeparate) {
    EXPECT_EQ(JoinPath(L"", {L"a", L"b"}), L"a\\b");
    EXPECT_EQ(JoinPath(L"C:\\Temp", {}), L"C:\\Temp");
    EXPECT_EQ(JoinPath(L"", {}), L"");
}

TEST(ParentPath, IsTheFolderThatHoldsThePath) {
    struct {
        std::wstring_view path;
        std::wstring_view expected;
    } const cases[] = {
        {L"C:\\Users\\Ana\\a.txt", L"C:\\Users\\Ana"},
        {L"C:\\Users\\Ana\\", L"C:\\Users"},  // a separator at the end names the same folder
        {L"C:\\Users\\\\Ana\\\\", L"C:\\Users"},
        {L"C:/Users/Ana", L"C:/Users"},
        {L"C:\\Users", L"C:\\"},
        {L"\\Users\\Ana", L"\\Users"},
        {L"\\Users", L"\\"},
        {L"Users\\Ana", L"Users"},
        {L"C:Users\\Ana", L"C:Users"},  // relative to that drive's current directory
        {L"C:Users", L"C:"},
        {L"\\\\server\\share\\a\\b", L"\\\\server\\share\\a"},
        {L"\\\\server\\share\\a", L"\\\\server\\share\\"},
        {L"\\\\?\\C:\\Users\\Ana", L"\\\\?\\C:\\Users"},
        {L"\\\\?\\C:\\Users", L"\\\\?\\C:\\"},
        {L"\\\\?\\UNC\\server\\share\\a", L"\\\\?\\UNC\\server\\share\\"},
        {L"\\\\?\\Volume{1}\\a", L"\\\\?\\Volume{1}\\"},
    };
    for (const auto& row : cases)
        EXPECT_EQ(ParentPath(row.path), row.expected) << testing::PrintToString(std::wstring(row.path));
}

TEST(ParentPath, NoFolderHoldsARootOrABareName) {
    for (const std::wstring_view path :
         {L"", L"C:\\", L"C:", L"C:\\\\", L"\\", L"\\\\server\\share", L"\\\\server\\share\\", L"\\\\server", L"\\\\",
          L"\\\\?\\", L"\\\\?\\C:", L"\\\\?\\C:\\", L"\\\\?\\UNC\\server\\share", L"\\\\?\\UNC\\server",
          L"\\\\?\\UNC\\", L"name", L"name\\"})
        EXPECT_EQ(ParentPath(path), L"") << testing::PrintToString(std::wstring(path));
}

TEST(ParentPath, WhateverThePathTheWayUpEnds) {
    const std::wstring letters = L"\\/:?aU";
    std::wstring path(6, L' ');
    for (int number = 0; number < 6 * 6 * 6 * 6 * 6 * 6; ++number) {
        for (int i = 0, rest = number; i < 6; ++i, rest /= 6)
            path[static_cast<std::size_t>(i)] = letters[static_cast<std::size_t>(rest % 6)];
        for (std::wstring at = path; !at.empty();) {
            const std::wstring parent = ParentPath(at);
            ASSERT_LT(parent.size(), at.size()) << testing::PrintToString(path);
            ASSERT_TRUE(at.starts_with(parent)) << testing::PrintToString(path);
            at = parent;
        }
    }
}

}  // namespace
}  // namespace kestrane
