#include "text/number_text.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

namespace kestrane {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

TEST(FormatInteger, WritesDecimalDigits) {
    EXPECT_EQ(FormatInteger(0), L"0");
    EXPECT_EQ(FormatInteger(7U), L"7");
    EXPECT_EQ(FormatInteger(-7), L"-7");
    EXPECT_EQ(FormatInteger(10), L"10");
    EXPECT_EQ(FormatInteger(1234567890), L"1234567890");
    EXPECT_EQ(FormatInteger(std::size_t{100}), L"100");
    EXPECT_EQ(FormatInteger(std::uint8_t{255}), L"255");
    EXPECT_EQ(FormatInteger(std::int8_t{-128}), L"-128");
}

TEST(FormatInteger, ReachesTheEndsOfItsTypes) {
    EXPECT_EQ(FormatInteger(std::numeric_limits<std::int32_t>::min()), L"-2147483648");
    EXPECT_EQ(FormatInteger(std::numeric_limits<std::uint32_t>::max()), L"4294967295");
    EXPECT_EQ(FormatInteger(std::numeric_limits<std::int64_t>::max()), L"9223372036854775807");
    EXPECT_EQ(FormatInteger(std::numeric_limits<std::int64_t>::min()), L"-9223372036854775808");
    EXPECT_EQ(FormatInteger(std::numeric_limits<std::uint64_t>::max()), L"18446744073709551615");
}

TEST(RoundHalfAway, GoesAwayFromZeroAtAHalfOnly) {
    struct {
        double value;
        double expected;
    } const cases[] = {
        {0, 0},
        {0.25, 0},
        {0.49999999999999994, 0},  // the last double below a half: adding a half to it gives 1
        {0.5, 1},
        {0.75, 1},
        {1.5, 2},
        {2.5, 3},
        {-0.49999999999999994, 0},
        {-0.5, -1},
        {-2.5, -3},
        {4503599627370495.5, 4503599627370496},
        {4503599627370497, 4503599627370497},  // 2^52 + 1: adding a half to it gives the next even number
        {9007199254740991, 9007199254740991},
        {1e300, 1e300},
        {Infinity, Infinity},
        {-Infinity, -Infinity},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(RoundHalfAway(row.value), row.expected) << row.value;
    }
    EXPECT_TRUE(std::isnan(RoundHalfAway(NotANumber)));
}

struct FixedCase {
    double value;
    int decimals;
    const wchar_t* expected;
};

constexpr FixedCase FixedCases[] = {
    {0.0, 0, L"0"},
    {0.0, 1, L"0.0"},
    {0.0, 3, L"0.000"},
    {1.0, 2, L"1.00"},
    {999.949, 1, L"999.9"},
    {999.95, 1, L"1000.0"},  // the nearest double is above the tie
    {0.5, 0, L"0"},          // exact ties go to the even digit
    {1.5, 0, L"2"},
    {2.5, 0, L"2"},
    {0.25, 1, L"0.2"},
    {0.75, 1, L"0.8"},
    {0.125, 2, L"0.12"},
    {0.375, 2, L"0.38"},
    {0.0625, 3, L"0.062"},
    {0.1875, 3, L"0.188"},
    {0.05, 1, L"0.1"},    // its double is just above the tie
    {0.15, 1, L"0.1"},    // and this one just below
    {1.005, 2, L"1.00"},  //
    {9.96, 1, L"10.0"},   // the carry adds a digit
    {0.999, 2, L"1.00"},
    {-1.25, 1, L"-1.2"},
    {-0.0, 1, L"-0.0"},
    {-0.04, 1, L"-0.0"},
    {5e-324, 3, L"0.000"},  // the smallest double above 0
    {4503599627370495.5, 0, L"4503599627370496"},
    {4503599627370495.5, 1, L"4503599627370495.5"},
    {9007199254740991.0, 3, L"9007199254740991.000"},
    {9007199254740993.0, 0, L"9007199254740992"},
    {18446744073709551616.0, 1, L"18446744073709551616.0"},
    {1e9, 0, L"1000000000"},
    {1e23, 0, L"99999999999999991611392"},
    {1.0, 4, L"1.000"},  // more decimals than supported
    {1.0, -1, L"1"},     // and fewer
};

TEST(FormatFixed, RoundsTheExactBinaryValue) {
    for (const FixedCase& row : FixedCases) {
        SCOPED_TRACE(testing::Message() << row.value << " with " << row.decimals << " decimals");
        EXPECT_EQ(FormatFixed(row.value, row.decimals), row.expected);
    }
}

TEST(FormatFixed, WritesWhatIsNotFinite) {
    EXPECT_EQ(FormatFixed(Infinity, 1), L"inf");
    EXPECT_EQ(FormatFixed(-Infinity, 0), L"-inf");
    EXPECT_EQ(FormatFixed(NotANumber, 2), L"nan");
    EXPECT_EQ(FormatFixed(-NotANumber, 2), L"nan");
}

TEST(FormatFixed, WritesAllDigitsOfTheGreatestValue) {
    const std::wstring text = FormatFixed(std::numeric_limits<double>::max(), 1);
    EXPECT_EQ(text.size(), 311U);
    EXPECT_EQ(text.substr(0, 20), L"17976931348623157081");
    EXPECT_EQ(text.substr(301), L"24858368.0");
}

// The reference, by a runtime that rounds exactly.
std::wstring PrintFixed(double value, int decimals) {
    std::array<char, 400> buffer{};
    const int length = std::snprintf(buffer.data(), buffer.size(), "%.*f", decimals, value);
    return {buffer.data(), buffer.data() + length};
}

void ExpectAsPrintf(double value) {
    for (int decimals = 0; decimals <= MaxFixedDecimals; ++decimals) {
        ASSERT_EQ(FormatFixed(value, decimals), PrintFixed(value, decimals)) << std::hexfloat << value;
        ASSERT_EQ(FormatFixed(-value, decimals), PrintFixed(-value, decimals)) << std::hexfloat << -value;
    }
}

// Sixteenths of a unit include every tie at 0 to 3 decimals; their neighbours are on either side.
TEST(FormatFixed, AgreesWithPrintfAroundTies) {
    for (int sixteenths = 0; sixteenths <= 4000; ++sixteenths) {
        const double value = sixteenths / 16.0;
        ExpectAsPrintf(value);
        ExpectAsPrintf(std::nextafter(value, Infinity));
        ExpectAsPrintf(std::nextafter(value, 0.0));
    }
}

TEST(FormatFixed, AgreesWithPrintfOnDecimals) {
    for (int thousandths = 0; thousandths <= 12000; thousandths += 5) {
        ExpectAsPrintf(thousandths / 1000.0);
        ExpectAsPrintf(thousandths / 10000.0);
    }
}

TEST(FormatFixed, AgreesWithPrintfOnEveryPowerOfTwo) {
    for (int exponent = -1074; exponent <= 1023; ++exponent) {
        const double value = std::ldexp(1.0, exponent);
        ExpectAsPrintf(value);
        ExpectAsPrintf(std::nextafter(value, 0.0));
    }
}

TEST(FormatFixed, AgreesWithPrintfOnAnyBits) {
    std::mt19937_64 random(20240601);  // NOLINT(bugprone-random-generator-seed): failures must be reproducible
    for (int i = 0; i < 4000; ++i) {
        const auto value = std::bit_cast<double>(random());
        if (std::isfinite(value)) ExpectAsPrintf(value);
        ExpectAsPrintf(static_cast<double>(random() % 100'000'000) / 1024.0);
    }
}

}  // namespace
}  // namespace kestrane
