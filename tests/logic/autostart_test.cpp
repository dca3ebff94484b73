#include "settings/autostart.h"

#include <gtest/gtest.h>

namespace kestrane {
namespace {

TEST(BuildRunValue, QuotesThePath) {
    EXPECT_EQ(BuildRunValue(L"C:\\Apps\\kestrane.exe"), L"\"C:\\Apps\\kestrane.exe\"");
    EXPECT_EQ(BuildRunValue(L"C:\\My Apps\\kestrane.exe"), L"\"C:\\My Apps\\kestrane.exe\"");
}

TEST(BuildRunValue, HoldsThePathWholeOrNotAtAll) {
    for (const std::size_t length : {0U, 1U, 258U, 259U, 260U, 261U, 519U, 520U, 32767U}) {
        const std::wstring path(length, L'x');
        const bool fits = length >= 1 && length <= 259;
        EXPECT_EQ(BuildRunValue(path), fits ? L"\"" + path + L"\"" : L"") << length;
    }
}

}  // namespace
}  // namespace kestrane
