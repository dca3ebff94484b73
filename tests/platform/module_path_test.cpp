// The executable's path, with a system that returns any path.
#include <windows.h>

#include "base/module_path_win32.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>

#include "support/real_call_win32.h"

namespace {

std::optional<std::wstring> told;  // none: the real path

DWORD WINAPI FakeGetModuleFileNameW(HMODULE module, LPWSTR path, DWORD size) {
    EXPECT_EQ(module, nullptr);
    if (!told) return REAL(L"kernel32", GetModuleFileNameW)(module, path, size);
    const std::size_t copied = std::min<std::size_t>(told->size(), size - 1);
    std::copy_n(told->c_str(), copied, path);
    path[copied] = 0;
    return copied < told->size() ? size : static_cast<DWORD>(copied);
}

}  // namespace

extern "C" {
decltype(&GetModuleFileNameW) __imp_GetModuleFileNameW = &FakeGetModuleFileNameW;
}

namespace kestrane {
namespace {

TEST(ModulePath, IsThatOfThisProgram) {
    told.reset();
    EXPECT_TRUE(ModulePath().ends_with(L"\\module_path_test.exe"));
}

TEST(ModulePath, IsWholeHoweverLong) {
    for (const std::size_t length : {1U, 2U, 258U, 259U, 260U, 261U, 519U, 520U, 521U, 1040U, 20000U, 32766U, 32767U}) {
        told = std::wstring(length, L'x');
        told->back() = L'e';
        EXPECT_EQ(ModulePath(), *told) << length;
    }
}

TEST(ModulePath, IsEmptyWhenTheSystemTellsNoneOrOneWithoutEnd) {
    told = L"";
    EXPECT_EQ(ModulePath(), L"");
    told = std::wstring(1000000, L'x');
    EXPECT_EQ(ModulePath(), L"");
}

}  // namespace
}  // namespace kestrane
