// The executable's path, with a system that returns any path.
#include "base/module_path_win32.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "support/fake_module_path_win32.h"

namespace kestrane {
namespace {

TEST(ModulePath, IsThatOfThisProgram) {
    toldPath.reset();
    EXPECT_TRUE(ModulePath().ends_with(L"\\module_path_test.exe"));
}

TEST(ModulePath, IsWholeHoweverLong) {
    for (const std::size_t length : {1U, 2U, 258U, 259U, 260U, 261U, 519U, 520U, 521U, 1040U, 20000U, 32766U, 32767U}) {
        toldPath = std::wstring(length, L'x');
        toldPath->back() = L'e';
        EXPECT_EQ(ModulePath(), *toldPath) << length;
    }
}

TEST(ModulePath, IsEmptyWhenTheSystemTellsNoneOrOneWithoutEnd) {
    toldPath = L"";
    EXPECT_EQ(ModulePath(), L"");
    toldPath = std::wstring(1000000, L'x');
    EXPECT_EQ(ModulePath(), L"");
}

}  // namespace
}  // namespace kestrane
