#include <windows.h>

#include "metrics/value_text_win32.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

// The system's separator. Like the real call, the fake fails and leaves the buffer alone if the text and its terminator
// do not fit.
std::wstring separator;
bool refuse = false;
int questions = 0;

int WINAPI FakeGetLocaleInfoEx(LPCWSTR locale, LCTYPE type, LPWSTR buffer, int size) {
    ++questions;
    EXPECT_EQ(locale, nullptr);
    EXPECT_EQ(type, 14U);
    EXPECT_EQ(size, 4);
    if (refuse || static_cast<int>(separator.size()) + 1 > size) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    *std::ranges::copy(separator, buffer).out = L'\0';
    return static_cast<int>(separator.size()) + 1;
}

}  // namespace

extern "C" {
decltype(&GetLocaleInfoEx) __imp_GetLocaleInfoEx = &FakeGetLocaleInfoEx;
}

namespace kestrane {
namespace {

constexpr std::uint64_t OneAndAHalf = 1610612736;

MetricSample HalfUsed() {
    MetricSample sample;
    sample.memoryPercent = 50;
    sample.memoryTotalBytes = 2 * OneAndAHalf;
    sample.memoryAvailableBytes = OneAndAHalf;
    return sample;
}

TEST(DecimalSeparator, IsWhatTheUserHasSet) {
    struct {
        const wchar_t* separator;
        bool refuse;
        wchar_t character;
        const wchar_t* gigabytes;
        const wchar_t* tooltip;
    } const cases[] = {
        {L",", false, L',', L"1,5", L"Memoria: 50 % (1,5 / 3,0 GB)"},
        {L".", false, L'.', L"1.5", L"Memoria: 50 % (1.5 / 3.0 GB)"},
        {L"\u066B", false, L'\u066B', L"1\u066B5", L"Memoria: 50 % (1\u066B5 / 3\u066B0 GB)"},
        // Sizes take all of it, rates the first character.
        {L",'", false, L',', L"1,'5", L"Memoria: 50 % (1,'5 / 3,'0 GB)"},
        {L"abc", false, L'a', L"1abc5", L"Memoria: 50 % (1abc5 / 3abc0 GB)"},
        {L"abcd", false, L'.', L"1.5", L"Memoria: 50 % (1.5 / 3.0 GB)"},  // does not fit
        {L",", true, L'.', L"1.5", L"Memoria: 50 % (1.5 / 3.0 GB)"},      // the call fails
        {L"", false, L'.', L"1.5", L"Memoria: 50 % (1.5 / 3.0 GB)"},      // there is none
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(row.separator)));
        separator = row.separator;
        refuse = row.refuse;
        EXPECT_EQ(DecimalSeparatorChar(), row.character);
        EXPECT_EQ(FormatGigabytes(OneAndAHalf), row.gigabytes);
        EXPECT_EQ(MemoryTooltipText(HalfUsed()), row.tooltip);
    }
}

TEST(DecimalSeparator, IsAskedForAnew) {
    refuse = false;
    separator = L",";
    questions = 0;
    EXPECT_EQ(DecimalSeparatorChar(), L',');
    separator = L".";
    EXPECT_EQ(DecimalSeparatorChar(), L'.');
    EXPECT_EQ(FormatGigabytes(OneAndAHalf), L"1.5");
    EXPECT_EQ(questions, 3);
}

}  // namespace
}  // namespace kestrane
