#include "update/version_rules.h"

#include <gtest/gtest.h>

#include <vector>

namespace kestrane {
namespace {

using namespace std::string_view_literals;

struct VersionCase {
    std::string_view text;
    VersionNumbers numbers;
    std::string_view canonical;
};

const VersionCase validVersions[] = {
    {"0", {}, "0.0.0"},
    {"1", {1}, "1.0.0"},
    {"1.2", {1, 2}, "1.2.0"},
    {"1.2.3", {1, 2, 3}, "1.2.3"},
    {"1.2.3.4", {1, 2, 3, 4}, "1.2.3.4"},
    {"1.2.3.0", {1, 2, 3}, "1.2.3"},
    {"0.0.0.1", {0, 0, 0, 1}, "0.0.0.1"},
    {"01.002.0003", {1, 2, 3}, "1.2.3"},
    {"1.2.3.0+abc", {1, 2, 3}, "1.2.3"},
    {"1.2.3.4+build7", {1, 2, 3, 4}, "1.2.3.4"},
    {"0.2+build7", {0, 2}, "0.2.0"},
    {"1+", {1}, "1.0.0"},
    {"1+2+3", {1}, "1.0.0"},
    {"1+.9.9.9.9", {1}, "1.0.0"},
    {"1+\0"sv, {1}, "1.0.0"},
    {"1000000", {1000000}, "1000000.0.0"},
    {"0000000000001000000", {1000000}, "1000000.0.0"},
    {"0.0.0.1000000", {0, 0, 0, 1000000}, "0.0.0.1000000"},
    {"999999.1000000.0.1", {999999, 1000000, 0, 1}, "999999.1000000.0.1"},
};

const std::string_view malformedVersions[] = {
    "",
    " ",
    "+",
    "+1",
    ".",
    "1.",
    ".1",
    "1..2",
    "1.2.3.4.",
    "1.2.3.4.5",
    "1.2.3.4.0",
    "v1.2",
    "r1.2",
    "1.2.3-beta",
    "1.2.3.4-x+1",
    "-1",
    "1.-2",
    "1. 2",
    " 1",
    "1 ",
    "1,2",
    "1.2a",
    "1e3",
    "0x10",
    "1000001",
    "0.1000001",
    "0.0.1000001",
    "0.0.0.1000001",
    "4294967296",
    "4294967297",
    "18446744073709551617",
    "00000000000000000001",
    "1.2\0"sv,
    "\0"sv,
    "1\0.2"sv,
    "\xD9\xA1",
};

TEST(ParseVersion, ReadsOneToFourNumbers) {
    for (const VersionCase& c : validVersions) {
        VersionNumbers numbers = {9, 9, 9, 9};
        EXPECT_TRUE(ParseVersion(c.text, numbers)) << c.text;
        EXPECT_EQ(numbers, c.numbers) << c.text;
    }
}

TEST(ParseVersion, LeavesTheNumbersAloneForAMalformedVersion) {
    for (const std::string_view text : malformedVersions) {
        VersionNumbers numbers = {9, 8, 7, 6};
        EXPECT_FALSE(ParseVersion(text, numbers)) << text;
        EXPECT_EQ(numbers, (VersionNumbers{9, 8, 7, 6})) << text;
    }
}

TEST(NormalizeVersion, WritesThreeNumbersAndAFourthIfItCounts) {
    for (const VersionCase& c : validVersions) {
        EXPECT_EQ(NormalizeVersion(c.text), c.canonical) << c.text;
        EXPECT_EQ(NormalizeVersion(c.canonical), c.canonical);
    }
}

TEST(NormalizeVersion, IsEmptyForAMalformedVersion) {
    for (const std::string_view text : malformedVersions) {
        EXPECT_EQ(NormalizeVersion(text), "") << text;
    }
}

TEST(IsNewerVersion, ComparesNumberByNumber) {
    const std::string_view ascending[] = {
        "0",   "0.0.0.1", "0.0.1",   "0.0.2",         "0.0.10", "0.1.0",    "0.1.0.1", "0.1.1",
        "0.2", "0.10",    "1.0.0.0", "1.0.0.1000000", "2",      "10.9.9.9", "1000000",
    };
    for (const std::string_view& a : ascending) {
        for (const std::string_view& b : ascending) {
            EXPECT_EQ(IsNewerVersion(a, b), &a > &b) << a << " and " << b;
        }
    }
}

TEST(IsNewerVersion, TakesTheSameNumbersAsEqual) {
    const std::string_view groups[][3] = {{"0.1", "0.1.0", "0.1.0.0"}, {"1", "1.0+zz", "01.0.0"}};
    for (const auto& group : groups) {
        for (const std::string_view a : group) {
            for (const std::string_view b : group) {
                EXPECT_FALSE(IsNewerVersion(a, b)) << a << " and " << b;
            }
        }
    }
}

TEST(IsNewerVersion, IsFalseIfEitherIsMalformed) {
    for (const std::string_view text : malformedVersions) {
        EXPECT_FALSE(IsNewerVersion(text, "0.1.0")) << text;
        EXPECT_FALSE(IsNewerVersion("9.9.9", text)) << text;
        EXPECT_FALSE(IsNewerVersion(text, text)) << text;
    }
}

TEST(IsNewerVersion, JudgesWhatAManifestMayOffer) {
    struct {
        std::string_view offered;
        bool isNewer;
    } const cases[] = {
        {"0.1.0", false}, {"0.1.0.1", true}, {"0.1", false}, {"0.2+build7", true}, {"0.0.9", false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(IsNewerVersion(c.offered, "0.1.0"), c.isNewer) << c.offered;
    }
}

}  // namespace
}  // namespace kestrane
