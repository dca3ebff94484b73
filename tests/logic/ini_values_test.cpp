#include "settings/ini_values.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <limits>
#include <optional>
#include <random>
#include <string>

namespace kestrane {
namespace {

constexpr std::int32_t Lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();

using Number = std::optional<std::int32_t>;

TEST(IniValues, Colours) {
    const struct {
        const wchar_t* text;
        std::optional<ColorValue> color;
    } cases[] = {
        {L"NONE", ColorNone},
        {L"none", ColorNone},
        {L"None", {}},
        {L"nONE", {}},
        {L"NONE ", {}},
        {L"000000", 0},
        {L"FFFFFF", 0xFFFFFF},
        {L"cceeff", 0xCCEEFF},
        {L"12aBcD", 0x12ABCD},
        {L"9a0F9f", 0x9A0F9F},
        {L"", {}},
        {L"zz", {}},
        {L"FFFFF", {}},
        {L"0FFFFFF", {}},
        {L"#FFFFFF", {}},
        {L"#FFFFF", {}},
        {L"FFFFFG", {}},
        {L"FFFFF ", {}},
        {L" FFFFF", {}},
        {L"-FFFFF", {}},
        {L"0xFFFF", {}},
        {L"FFF/FF", {}},
        {L"FFF:FF", {}},
        {L"FFF@FF", {}},
        {L"FFF`FF", {}},
        {L"FFF\xFF11"
         "FF",
         {}},  // a digit, but not one of these
    };
    for (const auto& [text, color] : cases)
        EXPECT_EQ(ParseColor(text), color) << testing::PrintToString(text);
}

TEST(IniValues, ColoursAreWrittenInSixUpperCaseDigits) {
    EXPECT_EQ(FormatColor(ColorNone), L"NONE");
    EXPECT_EQ(FormatColor(0), L"000000");
    EXPECT_EQ(FormatColor(0xABCDEF), L"ABCDEF");
    EXPECT_EQ(FormatColor(0x00000A), L"00000A");
    EXPECT_EQ(FormatColor(0xFF123456), L"123456");  // the low 24 bits
}

TEST(IniValues, Flags) {
    EXPECT_EQ(ParseFlag(L"0"), false);
    EXPECT_EQ(ParseFlag(L"1"), true);
    for (const wchar_t* text : {L"", L"2", L"00", L"01", L"1 ", L" 1", L"+1", L"-1", L"true", L"yes", L"*"}) {
        EXPECT_EQ(ParseFlag(text), std::nullopt) << testing::PrintToString(text);
    }
    EXPECT_EQ(FormatFlag(false), L"0");
    EXPECT_EQ(FormatFlag(true), L"1");
}

TEST(IniValues, StrictIntegers) {
    const struct {
        std::wstring text;
        Number value;
    } cases[] = {
        {L"0", 0},
        {L"7", 7},
        {L"-7", -7},
        {L"+7", 7},
        {L"007", 7},
        {L"-0", 0},
        {L"  42", 42},
        {L" \t\n\v\f\r-42", -42},
        {L"2147483647", Highest},
        {L"2147483648", Highest},  // saturates like a 32-bit long
        {L"-2147483648", Lowest},
        {L"-2147483649", Lowest},
        {L"99999999999999999999999999", Highest},
        {L"-99999999999999999999999999", Lowest},
        {L"0000000000000000000000000000001", 1},
        {L"", {}},
        {L" ", {}},
        {L"+", {}},
        {L"-", {}},
        {L"  -", {}},
        {L"--1", {}},
        {L"+-1", {}},
        {L"- 1", {}},
        {L"1 ", {}},  // blanks are allowed only in front
        {L"1x", {}},
        {L"x1", {}},
        {L"1.5", {}},
        {L"1,5", {}},
        {L"0x10", {}},
        {L"1e3", {}},
        {L"abc", {}},
        {std::wstring(L"1\0", 2), {}},
        {L"\xFF11", {}},  // a full-width digit
        {L"1\x0661", {}},
    };
    for (const auto& [text, value] : cases)
        EXPECT_EQ(ParseInteger(text), value) << testing::PrintToString(text);
}

/// The C library's result, with its `long` clamped to 32 bits.
Number ByTheCLibrary(const std::wstring& text) {
    wchar_t* end = nullptr;
    const long value = std::wcstol(text.c_str(), &end, 10);
    if (end == text.c_str() || *end != L'\0') return {};
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, Lowest, Highest));
}

TEST(IniValues, StrictIntegersAreThoseOfTheCLibrary) {
    constexpr std::wstring_view Alphabet = L"0123456789999- +\tx";
    std::mt19937 random(20240607);
    for (int round = 0; round < 50000; ++round) {
        std::wstring text;
        for (auto length = random() % 14; length > 0; --length)
            text += Alphabet[random() % Alphabet.size()];
        ASSERT_EQ(ParseInteger(text), ByTheCLibrary(text)) << testing::PrintToString(text);
    }
}

TEST(IniValues, IntegersWithin) {
    EXPECT_EQ(ParseIntegerWithin(L"5", 5, 7), 5);
    EXPECT_EQ(ParseIntegerWithin(L"7", 5, 7), 7);
    EXPECT_EQ(ParseIntegerWithin(L"4", 5, 7), std::nullopt);
    EXPECT_EQ(ParseIntegerWithin(L"8", 5, 7), std::nullopt);
    EXPECT_EQ(ParseIntegerWithin(L"6x", 5, 7), std::nullopt);
}

TEST(IniValues, NumbersWithRulesOfTheirOwn) {
    using Parse = Number (*)(std::wstring_view);
    const struct {
        const char* name;
        Parse parse;
        const wchar_t* text;
        Number value;
    } cases[] = {
        {"opacity", ParseOpacity, L"30", 30},
        {"opacity", ParseOpacity, L"100", 100},
        {"opacity", ParseOpacity, L"55", 90},  // unknown: the default, not the nearest
        {"opacity", ParseOpacity, L"-1", 90},
        {"opacity", ParseOpacity, L"80%", {}},
        {"opacity", ParseOpacity, L"", {}},
        {"margin", ParseMargin, L"0", 0},
        {"margin", ParseMargin, L"20", 20},
        {"margin", ParseMargin, L"21", 20},
        {"margin", ParseMargin, L"-1", 0},
        {"margin", ParseMargin, L"4px", {}},
        {"font size", ParseFontSize, L"6", 6},
        {"font size", ParseFontSize, L"5", 6},
        {"font size", ParseFontSize, L"32", 32},
        {"font size", ParseFontSize, L"33", 32},
        {"font size", ParseFontSize, L"12abc", {}},
        {"font size", ParseFontSize, L"", {}},
        {"memory font size", ParseMemoryFontSize, L"12", 12},
        {"memory font size", ParseMemoryFontSize, L"12abc", 12},  // trailing text is ignored
        {"memory font size", ParseMemoryFontSize, L"  9 ", 9},
        {"memory font size", ParseMemoryFontSize, L"abc", 6},  // no number is 0, and 0 is too small
        {"memory font size", ParseMemoryFontSize, L"-", 6},
        {"memory font size", ParseMemoryFontSize, L"99999999999", 32},
        {"memory font size", ParseMemoryFontSize, L"-99999999999", 6},
        {"memory font size", ParseMemoryFontSize, L"", {}},
        {"smoothing", ParseSmoothing, L"0", 0},
        {"smoothing", ParseSmoothing, L"3", 3},
        {"smoothing", ParseSmoothing, L"4", 3},
        {"smoothing", ParseSmoothing, L"-4", 0},
        {"smoothing", ParseSmoothing, L"high", {}},
        {"fill", ParseFill, L"1", 50},
        {"fill", ParseFill, L"30", 25},
        {"fill", ParseFill, L"500", 100},
        {"fill", ParseFill, L"-2147483649", 0},
        {"fill", ParseFill, L"1.0", {}},
        {"width", ParseGraphWidth, L"99", {}},
        {"width", ParseGraphWidth, L"100", 100},
        {"width", ParseGraphWidth, L"10000", 10000},
        {"width", ParseGraphWidth, L"10001", {}},
        {"height", ParseGraphHeight, L"49", {}},
        {"height", ParseGraphHeight, L"50", 50},
        {"height", ParseGraphHeight, L"10000", 10000},
        {"height", ParseGraphHeight, L"10001", {}},
        {"threshold", ParseThreshold, L"1", 1},
        {"threshold", ParseThreshold, L"100", 100},
        {"threshold", ParseThreshold, L"007", 7},
        {"threshold", ParseThreshold, L"0", {}},
        {"threshold", ParseThreshold, L"101", {}},
        {"threshold", ParseThreshold, L"0050", {}},
        {"threshold", ParseThreshold, L"+50", {}},
        {"threshold", ParseThreshold, L" 50", {}},
        {"threshold", ParseThreshold, L"-5", {}},
        {"threshold", ParseThreshold, L"abc", {}},
        {"threshold", ParseThreshold, L"", {}},
        {"style", ParseGraphStyle, L"bars", 0},
        {"style", ParseGraphStyle, L"lines", 1},
        {"style", ParseGraphStyle, L"Lines", {}},
        {"style", ParseGraphStyle, L"line", {}},
        {"style", ParseGraphStyle, L"1", {}},
        {"style", ParseGraphStyle, L"", {}},
    };
    for (const auto& [name, parse, text, value] : cases) {
        EXPECT_EQ(parse(text), value) << name << ' ' << testing::PrintToString(text);
    }
    EXPECT_EQ(FormatGraphStyle(0), L"bars");
    EXPECT_EQ(FormatGraphStyle(1), L"lines");
    EXPECT_EQ(FormatGraphStyle(2), L"bars");
}

TEST(IniValues, RefreshPeriodsAndLanguages) {
    using Parse = std::optional<std::uint32_t> (*)(std::wstring_view);
    const struct {
        Parse parse;
        const wchar_t* text;
        std::optional<std::uint32_t> value;
    } cases[] = {
        {ParseRefresh, L"500", 500},   {ParseRefresh, L"10000", 10000}, {ParseRefresh, L"700", 1500},
        {ParseRefresh, L"-500", 1500}, {ParseRefresh, L"0", 1500},      {ParseRefresh, L"99999999999", 1500},
        {ParseRefresh, L"500ms", {}},  {ParseRefresh, L"", {}},         {ParseLanguage, L"0", 0},
        {ParseLanguage, L"1", 1},      {ParseLanguage, L"2", 2},        {ParseLanguage, L"3", {}},
        {ParseLanguage, L"-1", {}},    {ParseLanguage, L"es", {}},      {ParseLanguage, L"", {}},
    };
    for (const auto& [parse, text, value] : cases)
        EXPECT_EQ(parse(text), value) << testing::PrintToString(text);
}

TEST(IniValues, FontNames) {
    EXPECT_EQ(ParseFontName(L""), std::nullopt);
    EXPECT_EQ(ParseFontName(L"A"), L"A");
    EXPECT_EQ(ParseFontName(L"Añil = \"x\"; #1"), L"Añil = \"x\"; #1");
    EXPECT_EQ(ParseFontName(std::wstring(31, L'n')), std::wstring(31, L'n'));
    EXPECT_EQ(ParseFontName(std::wstring(32, L'n')), std::nullopt);
    EXPECT_EQ(FormatFontName(L"Segoe UI"), L"Segoe UI");
}

TEST(IniValues, InstallIds) {
    const std::wstring id = L"0f8fad5b-d9cb-469f-a165-70867728950e";
    EXPECT_EQ(ParseInstallId(id), "0f8fad5b-d9cb-469f-a165-70867728950e");
    EXPECT_EQ(FormatInstallId("0f8fad5b-d9cb-469f-a165-70867728950e"), id);
    EXPECT_EQ(ParseInstallId(std::wstring(36, L'-')), std::string(36, '-'));  // the grammar requires no more
    for (const wchar_t* text :
         {L"", L"0F8FAD5B-D9CB-469F-A165-70867728950E", L"0f8fad5b-d9cb-469f-a165-70867728950",
          L"0f8fad5b-d9cb-469f-a165-70867728950e0", L"0f8fad5b-d9cb-469f-a165-70867728950g",
          L"{f8fad5b-d9cb-469f-a165-70867728950}", L"0f8fad5b-d9cb-469f-a165-70867728950\x0130"}) {
        EXPECT_EQ(ParseInstallId(text), std::nullopt) << testing::PrintToString(text);
    }
}

TEST(IniValues, Interfaces) {
    using List = std::vector<std::uint64_t>;
    const struct {
        const wchar_t* text;
        std::optional<List> interfaces;
    } cases[] = {
        {L"*", List{}},
        {L"1F,2f", List{0x1F, 0x2F}},
        {L"0000000000000001", List{1}},
        {L"FFFFFFFFFFFFFFFF", List{std::numeric_limits<std::uint64_t>::max()}},
        {L"5,5", List{5, 5}},  // duplicates are allowed
        {L"", {}},
        {L"1F,", {}},
        {L",1F", {}},
        {L"1F,,2F", {}},
        {L",", {}},
        {L"1F,*", {}},
        {L"*,1F", {}},
        {L"**", {}},
        {L"0", {}},
        {L"1,0", {}},
        {L"0000000000000000", {}},
        {L"00000000000000001", {}},  // 17 digits
        {L"1F, 2F", {}},
        {L"0x1F", {}},
        {L"-1", {}},
        {L"1G", {}},
    };
    for (const auto& [text, interfaces] : cases) {
        EXPECT_EQ(ParseInterfaces(text), interfaces) << testing::PrintToString(text);
    }
    EXPECT_EQ(FormatInterfaces({}), L"*");
    EXPECT_EQ(FormatInterfaces({0x1F, 0x2F}), L"000000000000001F,000000000000002F");
    EXPECT_EQ(FormatInterfaces({0xFEDCBA9876543210}), L"FEDCBA9876543210");
}

TEST(IniValues, Aliases) {
    using List = std::vector<std::wstring>;
    const struct {
        const wchar_t* text;
        List aliases;
    } cases[] = {
        {L"", List{}},
        {L"Ethernet", List{L"Ethernet"}},
        {L"A|B|C", List{L"A", L"B", L"C"}},
        {L"|", List{L"", L""}},
        {L"A|", List{L"A", L""}},
        {L"|A", List{L"", L"A"}},
        {L"A||B", List{L"A", L"", L"B"}},
        {L" Conexión de área local ", List{L" Conexión de área local "}},
    };
    for (const auto& [text, aliases] : cases) {
        EXPECT_EQ(ParseAliases(text), aliases) << testing::PrintToString(text);
        EXPECT_EQ(FormatAliases(aliases), text);
    }
    // There is no escaping: an alias that contains the separator comes back as two.
    EXPECT_EQ(ParseAliases(FormatAliases({L"A|B"})), (List{L"A", L"B"}));
    // One empty alias and none are written the same way.
    EXPECT_EQ(FormatAliases({L""}), L"");
}

TEST(IniValues, Disks) {
    using List = std::vector<std::int32_t>;
    const struct {
        const wchar_t* text;
        std::optional<List> disks;
    } cases[] = {
        {L"*", List{}},
        {L"0", List{0}},
        {L"63", List{63}},
        {L"2,0,11", List{2, 0, 11}},
        {L"00,01", List{0, 1}},
        {L"", {}},
        {L"0,1,1", {}},
        {L"1,01", {}},
        {L"64", {}},
        {L"99", {}},
        {L"100", {}},
        {L"000", {}},
        {L"0,", {}},
        {L",0", {}},
        {L"0,,1", {}},
        {L"0,*", {}},
        {L"-1", {}},
        {L"+1", {}},
        {L" 1", {}},
        {L"a", {}},
    };
    for (const auto& [text, disks] : cases)
        EXPECT_EQ(ParseDisks(text), disks) << testing::PrintToString(text);
    EXPECT_EQ(FormatDisks({}), L"*");
    EXPECT_EQ(FormatDisks({2, 0, 11}), L"2,0,11");
}

// For any text, each parser returns, and accepted values are within bounds.
TEST(IniValues, RandomTextsNeverBreakAParser) {
    std::mt19937 random(4711);
    constexpr std::wstring_view Alphabet = L"0123456789abcdefABCDEFnoeNOE-+*,| \t\"#";
    for (int round = 0; round < 20000; ++round) {
        std::wstring text;
        for (auto length = random() % 40; length > 0; --length) {
            const bool wild = random() % 16 == 0;
            text += wild ? static_cast<wchar_t>(random() & 0xFFFF) : Alphabet[random() % Alphabet.size()];
        }
        const auto color = ParseColor(text);
        EXPECT_TRUE(!color || *color <= 0xFFFFFF || *color == ColorNone);
        const auto size = ParseMemoryFontSize(text);
        EXPECT_TRUE(!size || (*size >= 6 && *size <= 32));
        const auto interfaces = ParseInterfaces(text);
        EXPECT_TRUE(!interfaces || std::ranges::count(*interfaces, 0U) == 0);
        const auto disks = ParseDisks(text);
        EXPECT_TRUE(!disks || std::ranges::all_of(*disks, [](std::int32_t disk) { return disk >= 0 && disk <= 63; }));
        EXPECT_EQ(FormatAliases(*ParseAliases(text)), text);
    }
}

}  // namespace
}  // namespace kestrane
