#include "settings/task_manager.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace kestrane {
namespace {

using std::string_literals::operator""s;

constexpr std::int64_t MostDisks = std::numeric_limits<std::uint32_t>::max();

TEST(StartPage, FollowsTheOrderOfTheList) {
    const struct {
        MetricKind metric;
        const wchar_t* disk;
        std::int64_t disks;
        std::int64_t page;
    } rows[] = {
        {MetricKind::Cpu, L"", 0, 0},        {MetricKind::Cpu, L"5 C:", 9, 0},  {MetricKind::Memory, L"", 0, 1},
        {MetricKind::Memory, L"5 C:", 9, 1}, {MetricKind::Disk, L"0 C:", 1, 2}, {MetricKind::Disk, L"2 D:", 3, 4},
        {MetricKind::Disk, L"2 D:", 0, 4},  // the count does not affect a disk's own page
        {MetricKind::Disk, L"2 D:", -1, 4},  {MetricKind::Network, L"", 1, 3},  {MetricKind::Network, L"7 C:", 2, 4},
    };
    for (const auto& [metric, disk, disks, page] : rows)
        EXPECT_EQ(StartPage(metric, disk, disks), page) << "row with page " << page << " and " << disks << " disks";
}

TEST(StartPage, OfADiskIsByTheNumberBeforeItsName) {
    const struct {
        std::wstring name;
        std::int64_t page;
    } rows[] = {
        {L"", 2},
        {L"C:", 2},
        {L"_Total", 2},
        {L" 3 C:", 2},  // the number must come first
        {L"-3 C:", 2},
        {L"+3 C:", 2},
        {L"\u0663 C:", 2},  // a digit, but not an ASCII one
        {L"\uFF13 C:", 2},
        {L"0", 2},
        {L"00 C:", 2},
        {L"1", 3},
        {L"1 C: D:", 3},
        {L"1C:", 3},
        {L"1 2", 3},
        {L"1,2", 3},
        {L"1-2", 3},
        {L"1/2", 3},
        {L"1:2", 3},
        {L"007 C:", 9},
        {L"9 C:", 11},
        {L"10 C:", 12},
        {L"98", 100},
        {L"99", 101},
        {L"100", 101},
        {L"123", 101},
        {L"990", 101},
        {L"4294967296", 101},
        {L"18446744073709551616", 101},
        {L"0000000000000000000000098", 100},
        {std::wstring(100000, L'9'), 101},
        {std::wstring(100000, L'0') + L"5", 7},
        {std::wstring(L"1\0\x32", 3), 3},
    };
    for (const auto& [name, page] : rows)
        EXPECT_EQ(StartPage(MetricKind::Disk, name, 3), page) << testing::PrintToString(name.substr(0, 30));
}

TEST(StartPage, OfEveryDiskNumber) {
    for (std::int64_t number = 0; number <= 1000; ++number) {
        const std::wstring digits = std::to_wstring(number);
        EXPECT_EQ(StartPage(MetricKind::Disk, digits + L" C:", 1), number < 99 ? number + 2 : 101) << number;
    }
}

TEST(StartPage, OfTheNetworkIsBehindAllDisks) {
    for (std::int64_t disks = -3; disks <= 300; ++disks)
        EXPECT_EQ(StartPage(MetricKind::Network, L"", disks), disks < 0 ? 2 : disks + 2) << disks;
    EXPECT_EQ(StartPage(MetricKind::Network, L"", std::numeric_limits<std::int64_t>::min()), 2);
    EXPECT_EQ(StartPage(MetricKind::Network, L"", std::numeric_limits<std::int32_t>::min()), 2);
    EXPECT_EQ(StartPage(MetricKind::Network, L"", std::numeric_limits<std::int32_t>::max()), 2147483649);
    EXPECT_EQ(StartPage(MetricKind::Network, L"", MostDisks), 4294967297);
}

struct EditRow {
    std::string text;
    std::int64_t value;
    std::string edited;
};

/// Each with the key "CurrentView".
void ExpectEdits(const std::vector<EditRow>& rows) {
    for (const auto& [text, value, edited] : rows)
        EXPECT_EQ(SetJsonNumber(text, "CurrentView", value), edited) << testing::PrintToString(text);
}

TEST(SetJsonNumber, ReplacesTheNumberBehindTheColon) {
    ExpectEdits({
        {R"({"CurrentView":2})", 5, R"({"CurrentView":5})"},
        {R"({"CurrentView":2,"a":3})", 5, R"({"CurrentView":5,"a":3})"},
        {R"({"a":3,"CurrentView":2})", 5, R"({"a":3,"CurrentView":5})"},
        {R"("CurrentView": 2,)", 5, R"("CurrentView": 5,)"},
        {R"({"CurrentView":    2    })", 5, R"({"CurrentView":    5    })"},
        {R"({"CurrentView":123456789012345678901234567890})", 5, R"({"CurrentView":5})"},
        {R"({"CurrentView":5})", 101, R"({"CurrentView":101})"},
        {R"({"CurrentView":-5})", 1, R"({"CurrentView":1})"},
        {R"({"CurrentView":5})", -1, R"({"CurrentView":-1})"},
        {R"({"CurrentView":--5-5-})", 1, R"({"CurrentView":1})"},
        {R"({"CurrentView":007})", 0, R"({"CurrentView":0})"},
        {R"({"CurrentView":2.5})", 3, R"({"CurrentView":3.5})"},  // only digits and minus signs are replaced
        {R"({"CurrentView":2e5})", 3, R"({"CurrentView":3e5})"},
        {R"({"CurrentView":+2})", 3, R"({"CurrentView":3+2})"},
        {R"({"CurrentView":2 3})", 4, R"({"CurrentView":4 3})"},
        {R"({"CurrentView":0/9})", 4, R"({"CurrentView":4/9})"},  // neighbours of the digits in ASCII
        {R"({"CurrentView":0:9})", 4, R"({"CurrentView":4:9})"},
        {R"({"CurrentView":0.9})", 4, R"({"CurrentView":4.9})"},
        {R"({"CurrentView":0,9})", 4, R"({"CurrentView":4,9})"},
    });
}

TEST(SetJsonNumber, GoesInFrontOfWhatIsNoNumber) {
    ExpectEdits({
        {R"({"CurrentView":"x"})", 3, R"({"CurrentView":3"x"})"},
        {R"({"CurrentView":"2"})", 3, R"({"CurrentView":3"2"})"},
        {R"({"CurrentView":true})", 3, R"({"CurrentView":3true})"},
        {R"({"CurrentView": null})", 3, R"({"CurrentView": 3null})"},
        {R"({"CurrentView":[2]})", 3, R"({"CurrentView":3[2]})"},
        {R"({"CurrentView":})", 3, R"({"CurrentView":3})"},
        {R"({"CurrentView":   })", 3, R"({"CurrentView":   3})"},
        {R"({"CurrentView":)", 3, R"({"CurrentView":3)"},  // the text ends there
        {R"({"CurrentView":  )", 3, R"({"CurrentView":  3)"},
        {R"({"CurrentView":2)", 3, R"({"CurrentView":3)"},
        {"{\"CurrentView\":\t2}", 3, "{\"CurrentView\":3\t2}"},  // only a space counts as a blank
        {"{\"CurrentView\":\r\n2}", 3, "{\"CurrentView\":3\r\n2}"},
        {"{\"CurrentView\": \t2}", 3, "{\"CurrentView\": 3\t2}"},
        {"{\"CurrentView\":\0002}"s, 3, "{\"CurrentView\":3\0002}"s},
        {"{\"CurrentView\":\xA0"
         "2}",
         3,
         "{\"CurrentView\":3\xA0"
         "2}"},
    });
}

TEST(SetJsonNumber, TheFirstOccurrenceWinsAtAnyDepth) {
    ExpectEdits({
        {R"({"CurrentView":1,"CurrentView":2})", 9, R"({"CurrentView":9,"CurrentView":2})"},
        {R"({"a":{"b":[{"CurrentView": 1}]},"CurrentView":2})", 9,
         R"({"a":{"b":[{"CurrentView": 9}]},"CurrentView":2})"},
        {R"(x"CurrentView":1{"CurrentView":2})", 9, R"(x"CurrentView":9{"CurrentView":2})"},
        {R"([["CurrentView":1]])", 9, R"([["CurrentView":9]])"},  // even without an object
        {R"("CurrentView":)", 9, R"("CurrentView":9)"},
    });
}

TEST(SetJsonNumber, OnlyTheWholePatternIsTheKey) {
    ExpectEdits({
        {R"({"currentview":1})", 9, R"({"CurrentView":9,"currentview":1})"},
        {R"({"CurrentView" :1})", 9, R"({"CurrentView":9,"CurrentView" :1})"},
        {R"({CurrentView:1})", 9, R"({"CurrentView":9,CurrentView:1})"},
        {R"({'CurrentView':1})", 9, R"({"CurrentView":9,'CurrentView':1})"},
        {R"({"CurrentView2":1})", 9, R"({"CurrentView":9,"CurrentView2":1})"},
        {R"({"OldCurrentView":1})", 9, R"({"CurrentView":9,"OldCurrentView":1})"},
        {R"({"CurrentView"})", 9, R"({"CurrentView":9,"CurrentView"})"},
        {R"({"a":"CurrentView"})", 9, R"({"CurrentView":9,"a":"CurrentView"})"},
        {R"({"a":"\"CurrentView\":1"})", 9, R"({"CurrentView":9,"a":"\"CurrentView\":1"})"},
        {"{\"Current\0View\":1}"s, 9, "{\"CurrentView\":9,\"Current\0View\":1}"s},
        {R"({"a":"\"CurrentView":1})", 9, R"({"a":"\"CurrentView":9})"},  // bytes, not JSON
    });
}

TEST(SetJsonNumber, ANewKeyBecomesTheFirstMember) {
    ExpectEdits({
        {"{}", 3, R"({"CurrentView":3})"},
        {"{ }", 3, R"({"CurrentView":3 })"},
        {"{ \t\r\n }", 3, "{\"CurrentView\":3 \t\r\n }"},
        {"{\v}", 3, "{\"CurrentView\":3,\v}"},  // not white space in JSON
        {"{\f}", 3, "{\"CurrentView\":3,\f}"},
        {"{\0}"s, 3, "{\"CurrentView\":3,\0}"s},
        {"{\xA0}", 3, "{\"CurrentView\":3,\xA0}"},
        {R"({"a":1})", 3, R"({"CurrentView":3,"a":1})"},
        {"{\r\n  \"a\": 1\r\n}\r\n", 3, "{\"CurrentView\":3,\r\n  \"a\": 1\r\n}\r\n"},
        {R"({"a":{}})", 3, R"({"CurrentView":3,"a":{}})"},
        {R"([{},{}])", 3, R"([{"CurrentView":3},{}])"},
        {R"(["{",1])", 3, R"(["{"CurrentView":3,",1])"},  // bytes, not JSON
        {"\xEF\xBB\xBF{}", 3, "\xEF\xBB\xBF{\"CurrentView\":3}"},
        {"}{}", 3, R"(}{"CurrentView":3})"},
        {"{", 3, R"({"CurrentView":3,)"},  // the comma is added even if nothing follows
        {"{ \r\n", 3, "{\"CurrentView\":3, \r\n"},
        {"{{", 3, R"({"CurrentView":3,{)"},
    });
}

TEST(SetJsonNumber, ATextWithoutAnObjectStays) {
    for (const char* text : {"", " ", "[]", "}", "null", "\"CurrentView\"", "CurrentView:2"})
        EXPECT_EQ(SetJsonNumber(text, "CurrentView", 3), text);
}

TEST(SetJsonNumber, WritesEveryValue) {
    const std::pair<std::int64_t, const char*> rows[] = {
        {0, "0"},
        {9, "9"},
        {10, "10"},
        {-10, "-10"},
        {std::numeric_limits<std::int32_t>::max(), "2147483647"},
        {std::numeric_limits<std::int64_t>::max(), "9223372036854775807"},
        {std::numeric_limits<std::int64_t>::min(), "-9223372036854775808"},
    };
    for (const auto& [value, digits] : rows) {
        EXPECT_EQ(SetJsonNumber(R"({"k":-0})", "k", value), R"({"k":)"s + digits + "}");
        EXPECT_EQ(SetJsonNumber("{}", "k", value), R"({"k":)"s + digits + "}");
    }
    for (std::int64_t value = -1200; value <= 1200; ++value)
        EXPECT_EQ(SetJsonNumber("{\"k\":77,", "k", value), "{\"k\":" + std::to_string(value) + ",");
}

TEST(SetJsonNumber, TheKeyMayBeAnything) {
    EXPECT_EQ(SetJsonNumber("{}", "", 1), R"({"":1})");
    EXPECT_EQ(SetJsonNumber(R"({"":2})", "", 1), R"({"":1})");
    EXPECT_EQ(SetJsonNumber(R"({"a\"b":2})", R"(a\"b)", 1), R"({"a\"b":1})");
    EXPECT_EQ(SetJsonNumber(R"({"a.*":2})", ".*", 1), R"({".*":1,"a.*":2})");
    EXPECT_EQ(SetJsonNumber(R"({"a":2})", "a\":2}x", 1), R"({"a":2}x":1,"a":2})");
}

TEST(PatchTaskManagerSettings, SetsBothNumbers) {
    const EditRow rows[] = {
        {"{}", 3, R"({"DefaultStartPage":1,"CurrentView":3})"},
        {"", 3, R"({"DefaultStartPage":1,"CurrentView":3})"},
        {R"({"CurrentView": 2,"DefaultStartPage": 0})", 5, R"({"CurrentView": 5,"DefaultStartPage": 1})"},
        {R"({"DefaultStartPage":7,"CurrentView":2})", 0, R"({"DefaultStartPage":1,"CurrentView":0})"},
        {R"({"CurrentView": 2,"a":0})", 5, R"({"DefaultStartPage":1,"CurrentView": 5,"a":0})"},
        {R"({"DefaultStartPage":0})", 5, R"({"CurrentView":5,"DefaultStartPage":1})"},
        {R"({"CurrentView":"x"})", 5, R"({"DefaultStartPage":1,"CurrentView":5"x"})"},
        {"{", 5, R"({"DefaultStartPage":1,"CurrentView":5,)"},
        {R"({"a":{"CurrentView":1,"b":{"DefaultStartPage":2}}})", 6,
         R"({"a":{"CurrentView":6,"b":{"DefaultStartPage":1}}})"},
    };
    for (const auto& [text, page, patched] : rows)
        EXPECT_EQ(PatchTaskManagerSettings(text, page), patched) << testing::PrintToString(text);
}

TEST(PatchTaskManagerSettings, ATextWithoutAnObjectLosesItsContent) {
    const std::string ruined[] = {
        "",
        " ",
        " \t\r\n",
        "\xEF\xBB\xBF",
        "null",
        "[]",
        "}",
        R"("CurrentView":2,"DefaultStartPage":0)",
        "\0"s,
        std::string(100000, '\0'),
        std::string(100000, '}'),
        std::string(100000, '\xFF'),
    };
    for (const std::string& text : ruined) {
        EXPECT_EQ(PatchTaskManagerSettings(text, 4), R"({"DefaultStartPage":1,"CurrentView":4})")
            << testing::PrintToString(text.substr(0, 20));
    }
}

TEST(PatchTaskManagerSettings, KeepsEveryOtherByte) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    const std::string before = all + R"({"CurrentView": )";
    const std::string between = ", " + all + R"("DefaultStartPage":)";
    const std::string after = all + "\r\n\x1A\r\n\n";
    EXPECT_EQ(PatchTaskManagerSettings(before + "17" + between + "-3" + after, 101),
              before + "101" + between + "1" + after);
}

TEST(PatchTaskManagerSettings, OfAHugeTextReplacesTheTwoNumbers) {
    const std::string braces(5'000'000, '{');
    const std::string start = braces + R"("DefaultStartPage":)" + std::string(5'000'000, ' ');
    EXPECT_TRUE(PatchTaskManagerSettings(start + R"("CurrentView":)", 12) == start + R"(1"CurrentView":12)");
    EXPECT_TRUE(PatchTaskManagerSettings(braces, 12) ==
                R"({"DefaultStartPage":1,"CurrentView":12,)" + braces.substr(1));
    // A number of a million digits and a gap of a million blanks.
    const std::string number = R"({"CurrentView":)" + std::string(1'000'000, '9') + '}';
    EXPECT_EQ(PatchTaskManagerSettings(number, 2), R"({"DefaultStartPage":1,"CurrentView":2})");
    const std::string gap = std::string(1'000'000, '\n') + '}';
    EXPECT_TRUE(PatchTaskManagerSettings('{' + gap, 2) == R"({"DefaultStartPage":1,"CurrentView":2)" + gap);
}

TEST(PatchTaskManagerSettings, TheSameAgainChangesNothing) {
    std::mt19937 random(20);
    const std::string pieces[] = {"{", "}",  " ",  "\"CurrentView\":", "\"DefaultStartPage\":", "-", "7", ",",
                                  "x", "\n", "\"", "\xC3\xB1"};
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (auto count = random() % 12; count > 0; --count)
            text += pieces[random() % std::size(pieces)];
        const auto page = static_cast<std::int64_t>(random() % 102);
        const std::string patched = PatchTaskManagerSettings(text, page);
        EXPECT_EQ(PatchTaskManagerSettings(patched, page), patched) << text;
    }
}

}  // namespace
}  // namespace kestrane
