#include "update/self_update.h"

#include <gtest/gtest.h>

#include "app/command_line.h"

namespace kestrane {
namespace {

TEST(UpdateFiles, StandBesideTheExecutable) {
    EXPECT_EQ(NewFilePath(L"C:\\Apps\\kestrane.exe"), L"C:\\Apps\\kestrane.exe.new");
    EXPECT_EQ(OldFilePath(L"C:\\Apps\\kestrane.exe"), L"C:\\Apps\\kestrane.exe.old");
    EXPECT_EQ(NewFilePath(L"D:\\ñandú\\k e"), L"D:\\ñandú\\k e.new");
}

TEST(IsDevelopmentCopy, LooksForAFolderCalledBuild) {
    struct {
        std::wstring_view path;
        bool expected;
    } const cases[] = {
        {L"C:\\Users\\x\\BUILD\\kestrane.exe", true},
        {L"C:\\Users\\x\\build\\windows\\kestrane.exe", true},
        {L"\\Build\\kestrane.exe", true},
        {L"\\\\server\\share\\bUiLd\\kestrane.exe", true},
        {L"C:\\builds\\kestrane.exe", false},
        {L"C:\\rebuild\\kestrane.exe", false},
        {L"C:\\my build\\kestrane.exe", false},
        {L"C:\\apps\\build.exe", false},
        {L"C:\\apps\\build", false},
        {L"build\\kestrane.exe", false},
        {L"C:/build/kestrane.exe", false},  // Windows gives the path with backslashes
        {L"C:\\buıld\\kestrane.exe", false},
        {L"kestrane.exe", false},
        {L"", false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(IsDevelopmentCopy(c.path), c.expected) << testing::PrintToString(std::wstring(c.path));
    }
}

TEST(FolderOfExecutable, EndsBeforeTheLastSlash) {
    struct {
        std::wstring_view path;
        std::wstring_view expected;
    } const cases[] = {
        {L"C:\\Apps\\kestrane.exe", L"C:\\Apps"},
        {L"C:/Apps/kestrane.exe", L"C:/Apps"},
        {L"C:\\Apps/kestrane.exe", L"C:\\Apps"},
        {L"C:/Apps\\kestrane.exe", L"C:/Apps"},
        {L"C:\\kestrane.exe", L"C:"},
        {L"\\kestrane.exe", L""},
        {L"C:\\Apps\\", L"C:\\Apps"},
        {L"kestrane.exe", L"."},
        {L"", L"."},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(FolderOfExecutable(c.path), c.expected) << testing::PrintToString(std::wstring(c.path));
    }
}

TEST(WriteProbePath, IsANameThatNobodyElseHas) {
    EXPECT_EQ(WriteProbePath(L"C:\\Apps", 1234, 5678), L"C:\\Apps\\kestrane-1234-5678.tmp");
    EXPECT_EQ(WriteProbePath(L"C:\\", 0, 0), L"C:\\kestrane-0-0.tmp");
    EXPECT_EQ(WriteProbePath(L"C:", 1, 2), L"C:\\kestrane-1-2.tmp");
    EXPECT_EQ(WriteProbePath(L".", 1, 2), L".\\kestrane-1-2.tmp");
    EXPECT_EQ(WriteProbePath(L"", 4294967295, 18446744073709551615U), L"kestrane-4294967295-18446744073709551615.tmp");
}

TEST(RestartCommandLine, SaysWhatTheNewVersionWaitsFor) {
    const std::wstring quotedPath = L"\"C:\\kestrane.exe\" ";
    EXPECT_EQ(RestartCommandLine(L"C:\\kestrane.exe"), quotedPath + UpdatedSwitch);
    EXPECT_EQ(ClassifyCommandLine(UpdatedSwitch), StartKind::AfterUpdate);
}

TEST(RestartCommandLine, QuotesThePath) {
    EXPECT_EQ(RestartCommandLine(L"C:\\My Apps\\kestrane.exe"), L"\"C:\\My Apps\\kestrane.exe\" --updated");
}

}  // namespace
}  // namespace kestrane
