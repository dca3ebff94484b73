#include "text/text_util.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace kestrane {
namespace {

TEST(TrimBlanks, TakesSpacesAndTabsOffBothEnds) {
    struct {
        std::wstring_view text;
        std::wstring_view expected;
    } const cases[] = {
        {L"", L""},
        {L" ", L""},
        {L" \t \t", L""},
        {L"a", L"a"},
        {L" a", L"a"},
        {L"a ", L"a"},
        {L"\t a\tb \t", L"a\tb"},
        {L"  a  b  ", L"a  b"},
        {L"\na\r", L"\na\r"},                         // other control characters stay
        {L"\u00A0a\u00A0", L"\u00A0a\u00A0"},         // and so does the no-break space
        {std::wstring_view(L" \0 ", 3), {L"\0", 1}},  // and a null character
    };
    for (const auto& row : cases) {
        EXPECT_EQ(TrimBlanks(row.text), row.expected) << testing::PrintToString(std::wstring(row.text));
    }
}

TEST(EqualIgnoringCase, ComparesWholeTextsInSmallLetters) {
    struct {
        std::wstring_view a;
        std::wstring_view b;
        bool expected;
    } const cases[] = {
        {L"", L"", true},
        {L"a", L"", false},
        {L"Ethernet", L"eTHERNET", true},
        {L"Ethernet", L"Ethernet 2", false},
        {L"Ethernet 2", L"Ethernet", false},
        {L"C:\\Bin\\kestrane.exe", L"c:\\bin\\KESTRANE.EXE", true},
        {L"a", L"b", false},
        {L"[", L"{", false},  // 32 apart, like letters, but not letters
        {L"@", L"`", false},
        {L"\u00F1\u4E2D", L"\u00F1\u4E2D", true},
        {L"\u4E2D", L"\u4E2E", false},
        {std::wstring_view(L"a\0b", 3), std::wstring_view(L"a\0c", 3), false},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(row.a)) + " and " +
                     testing::PrintToString(std::wstring(row.b)));
        EXPECT_EQ(EqualIgnoringCase(row.a, row.b), row.expected);
        EXPECT_EQ(EqualIgnoringCase(row.b, row.a), row.expected);
    }
}

TEST(LessIgnoringCase, OrdersBySmallLettersAndThenByLength) {
    const std::wstring_view ascending[] = {L"", L"1", L"[", L"_", L"aB", L"AC", L"aca", L"b", L"Z", L"{", L"\u4E2D"};
    for (const std::wstring_view& a : ascending) {
        for (const std::wstring_view& b : ascending) {
            SCOPED_TRACE(testing::PrintToString(std::wstring(a)) + " and " + testing::PrintToString(std::wstring(b)));
            EXPECT_EQ(LessIgnoringCase(a, b), &a < &b);
        }
    }
    EXPECT_FALSE(LessIgnoringCase(L"Arial", L"ARIAL"));
    EXPECT_FALSE(LessIgnoringCase(L"ARIAL", L"Arial"));
}

TEST(IsDigit, KnowsTenCharacters) {
    std::wstring digits;
    for (std::uint32_t c = 0; c < 0x10000; ++c) {
        if (IsDigit(static_cast<wchar_t>(c))) digits += static_cast<wchar_t>(c);
    }
    EXPECT_EQ(digits, L"0123456789");
}

TEST(HexDigitValue, KnowsTwentyTwoCharacters) {
    const std::wstring digits = L"0123456789abcdefABCDEF";
    for (std::uint32_t c = 0; c < 0x10000; ++c) {
        const std::size_t found = digits.find(static_cast<wchar_t>(c));
        const std::size_t value = found < 16 ? found : found - 6;
        EXPECT_EQ(HexDigitValue(static_cast<wchar_t>(c)),
                  found == std::wstring::npos ? -1 : static_cast<std::int32_t>(value));
    }
}

TEST(IsHexDigit, KnowsTheSameTwentyTwoBytes) {
    std::string digits;
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        if (IsHexDigit(static_cast<char>(byte))) digits += static_cast<char>(byte);
    }
    EXPECT_EQ(digits, "0123456789ABCDEFabcdef");
}

TEST(WidenBytes, GivesEachByteItsOwnNumber) {
    EXPECT_EQ(WidenBytes(""), L"");
    EXPECT_EQ(WidenBytes("0.2.0"), L"0.2.0");
    EXPECT_EQ(WidenBytes("\xC3\xB1"), L"\u00C3\u00B1");  // byte by byte: UTF-8 is not decoded
    EXPECT_EQ(WidenBytes("\x80\xFF"), (std::wstring{wchar_t{0x80}, wchar_t{0xFF}}));
    EXPECT_EQ(WidenBytes(std::string_view("a\0b", 3)), std::wstring(L"a\0b", 3));
}

TEST(HexText, GivesTwoLowerCaseDigitsForEachByte) {
    EXPECT_EQ(HexText({}), "");
    EXPECT_EQ(HexText(std::array<std::uint8_t, 5>{0x00, 0x0F, 0xA0, 0x7F, 0xFF}), "000fa07fff");
}

TEST(ParseHexBytes, ReadsBackEveryByteInEitherCase) {
    for (std::uint32_t value = 0; value < 256; ++value) {
        const std::array<std::uint8_t, 2> bytes = {static_cast<std::uint8_t>(value), 0x5A};
        std::string digits = HexText(bytes);
        std::array<std::uint8_t, 2> read{};
        EXPECT_TRUE(ParseHexBytes(digits, read)) << digits;
        EXPECT_EQ(read, bytes);
        for (char& c : digits) {
            if (c >= 'a') c = static_cast<char>(c - 'a' + 'A');
        }
        read = {};
        EXPECT_TRUE(ParseHexBytes(digits, read)) << digits;
        EXPECT_EQ(read, bytes);
    }
    EXPECT_TRUE(ParseHexBytes("", {}));
}

TEST(ParseHexBytes, LeavesTheBytesAloneUnlessEachHasItsTwoDigits) {
    for (const std::string_view text :
         {"", "1", "12", "123", "12345", "123456", "123g", "g123", " 123", "123 ", "0x12", "+1-2", "123\xC3"}) {
        std::array<std::uint8_t, 2> bytes = {7, 8};
        EXPECT_FALSE(ParseHexBytes(text, bytes)) << text;
        EXPECT_EQ(bytes, (std::array<std::uint8_t, 2>{7, 8}));
    }
}

}  // namespace
}  // namespace kestrane
