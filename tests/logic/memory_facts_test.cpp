#include "hardware/memory_facts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/smbios_bytes.h"
#include "text/number_text.h"

namespace kestrane {
namespace {

using namespace std::string_view_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// "16384 DDR4 3200 2933 ACME X432-16 DIMM", with "-" for an empty text and in front of an empty slot.
std::wstring Line(const MemorySlot& slot) {
    const auto orDash = [](const std::wstring& text) { return text.empty() ? L"-" : text; };
    return (slot.populated ? L"" : L"- ") + FormatInteger(slot.sizeMb) + L' ' + orDash(slot.type) + L' ' +
           FormatInteger(slot.speed) + L' ' + FormatInteger(slot.configuredSpeed) + L' ' + orDash(slot.manufacturer) +
           L' ' + orDash(slot.partNumber) + L' ' + orDash(slot.formFactor);
}

std::vector<std::wstring> Lines(const MemoryFacts& facts) {
    std::vector<std::wstring> lines;
    std::ranges::transform(facts.slots, std::back_inserter(lines), Line);
    return lines;
}

MemoryFacts Parse(const Bytes& table) {
    MemoryFacts facts;
    ParseSmbiosMemory(ExactCopy(table).Span(), facts);
    return facts;
}

MemoryFacts Parse(const std::vector<Bytes>& structures) {
    return Parse(JoinBytes(structures));
}

/// The only slot of a table.
MemorySlot ParseDevice(const SmbiosDevice& device) {
    const MemoryFacts facts = Parse({device.Build()});
    EXPECT_EQ(facts.slots.size(), 1U);
    return facts.slots.empty() ? MemorySlot() : facts.slots.front();
}

const std::wstring Whole = L"16384 DDR4 3200 2933 ACME X432-16 DIMM";

TEST(SmbiosMemory, AnEmptyTableGivesNothing) {
    for (std::size_t size = 0; size < 4; ++size) {
        const MemoryFacts facts = Parse(Bytes(size, 17));
        EXPECT_FALSE(facts.hasSlots);
        EXPECT_THAT(facts.slots, IsEmpty());
        EXPECT_EQ(facts.maxCapacityGb, 0U);
    }
}

TEST(SmbiosMemory, ReadsTheSlotsOfADesktop) {
    const MemoryFacts facts = Parse({WithStrings(SmbiosStructure(0, 24), {"Firmware", "1.0"}), SmbiosArray(0x08000000),
                                     SmbiosDevice().Build(), SmbiosDevice{.size = 0, .type = 2}.Build(),
                                     SmbiosDevice().Build(), WithStrings(SmbiosStructure(127, 4), {})});
    EXPECT_TRUE(facts.hasSlots);
    EXPECT_EQ(facts.maxCapacityGb, 128U);
    EXPECT_EQ(facts.totalBytes, 0U);
    EXPECT_THAT(Lines(facts), ElementsAre(Whole, L"- 0 - 3200 2933 ACME X432-16 DIMM", Whole));
}

TEST(SmbiosMemory, ReadsAServerOfThirtyTwoSlots) {
    std::vector<Bytes> structures{SmbiosArray(0x80000000, std::uint64_t{4} << 40)};
    std::vector<std::wstring> expected;
    for (std::uint32_t i = 0; i < 32; ++i) {
        const bool populated = i % 4 != 3;
        SmbiosDevice device{.size = 0x7FFF, .type = 34, .extendedSize = 131072 + i};
        if (!populated) device.size = 0;
        structures.push_back(device.Build());
        structures.push_back(WithStrings(SmbiosStructure(20, 35, 0xEE), {}));  // where the device is mapped
        expected.push_back((populated ? FormatInteger(131072 + i) : std::wstring(L"- 0")) +
                           L" DDR5 3200 2933 ACME X432-16 DIMM");
    }
    const MemoryFacts facts = Parse(structures);
    EXPECT_EQ(facts.maxCapacityGb, 4096U);
    EXPECT_EQ(Lines(facts), expected);
}

TEST(SmbiosMemory, ReadsSolderedMemory) {
    EXPECT_EQ(Line(ParseDevice({.formFactor = 11, .type = 35, .strings = {"ACME", "Unknown"}})),
              L"16384 LPDDR5 3200 2933 ACME - soldada");
}

TEST(SmbiosMemory, TheSizeHasSeveralForms) {
    struct Row {
        const char* what;
        std::uint16_t size;
        std::uint32_t extendedSize;
        std::size_t length;
        bool populated;
        std::uint32_t sizeMb;
    };
    for (const Row& row : {
             Row{"an empty slot", 0, 4096, 40, false, 0},
             Row{"the least", 1, 4096, 40, true, 1},
             Row{"the most", 0x7FFE, 4096, 40, true, 32766},
             Row{"unknown", 0xFFFF, 4096, 40, true, 0},
             Row{"1024 KiB", 0x8400, 4096, 40, true, 1},
             Row{"1023 KiB", 0x83FF, 4096, 40, true, 0},
             Row{"0 KiB", 0x8000, 4096, 40, true, 0},
             Row{"the most KiB", 0xFFFE, 4096, 40, true, 31},
             Row{"extended", 0x7FFF, 32768, 34, true, 32768},
             Row{"extended, as short as it may be", 0x7FFF, 32768, 32, true, 32768},
             Row{"too short for it", 0x7FFF, 32768, 31, true, 32767},
             Row{"shorter still", 0x7FFF, 32768, 30, true, 32767},
             Row{"the most extended", 0x7FFF, 0x7FFFFFFF, 40, true, 0x7FFFFFFF},
             Row{"its reserved bit", 0x7FFF, 0x80000400, 40, true, 1024},
             Row{"extended to nothing", 0x7FFF, 0, 40, true, 0},
         }) {
        const MemorySlot slot = ParseDevice({.size = row.size, .extendedSize = row.extendedSize, .length = row.length});
        EXPECT_EQ(slot.populated, row.populated) << row.what;
        EXPECT_EQ(slot.sizeMb, row.sizeMb) << row.what;
    }
}

TEST(SmbiosMemory, AShortDeviceLacksTheLaterFields) {
    struct Row {
        std::size_t from, to;
        std::vector<std::wstring> lines;
    };
    for (const Row& row : std::vector<Row>{
             {4, 20, {}},
             {21, 22, {L"16384 DDR4 0 0 - - DIMM"}},
             {23, 26, {L"16384 DDR4 3200 0 - - DIMM"}},
             {27, 33, {L"16384 DDR4 3200 0 ACME X432-16 DIMM"}},
             {34, 255, {Whole}},
         }) {
        for (std::size_t length = row.from; length <= row.to; ++length) {
            const MemoryFacts facts = Parse({SmbiosDevice{.length = length}.Build()});
            EXPECT_EQ(Lines(facts), row.lines) << length;
            EXPECT_EQ(facts.hasSlots, !row.lines.empty()) << length;
        }
    }
}

TEST(SmbiosMemory, NamesFormFactorsAndTypes) {
    const std::vector<std::pair<std::uint8_t, std::wstring>> formFactors{
        {9, L"DIMM"}, {11, L"soldada"}, {13, L"SODIMM"}, {15, L"FB-DIMM"}, {16, L"soldada"}};
    const std::vector<std::pair<std::uint8_t, std::wstring>> types{
        {18, L"DDR"},    {19, L"DDR2"},   {24, L"DDR3"},   {26, L"DDR4"}, {27, L"LPDDR"},
        {28, L"LPDDR2"}, {29, L"LPDDR3"}, {30, L"LPDDR4"}, {34, L"DDR5"}, {35, L"LPDDR5"}};
    const auto nameIn = [](const auto& rows, int value) {
        const auto row = std::ranges::find(rows, value, [](const auto& entry) { return int{entry.first}; });
        return row != rows.end() ? row->second : std::wstring();
    };
    for (int value = 0; value < 256; ++value) {
        const auto byte = static_cast<std::uint8_t>(value);
        EXPECT_EQ(ParseDevice({.formFactor = byte}).formFactor, nameIn(formFactors, value)) << value;
        EXPECT_EQ(ParseDevice({.type = byte}).type, nameIn(types, value)) << value;
    }
}

TEST(SmbiosMemory, AnUnknownSpeedIsZero) {
    struct Row {
        std::uint16_t read;
        std::uint32_t speed;
    };
    for (const Row& row : {Row{0, 0}, Row{1, 1}, Row{6400, 6400}, Row{0xFFFE, 0xFFFE}, Row{0xFFFF, 0}}) {
        EXPECT_EQ(ParseDevice({.speed = row.read}).speed, row.speed);
        EXPECT_EQ(ParseDevice({.configuredSpeed = row.read}).configuredSpeed, row.speed);
    }
}

TEST(SmbiosMemory, TheCapacityHasTwoForms) {
    constexpr std::uint64_t Gibibyte = std::uint64_t{1} << 30;
    struct Row {
        const char* what;
        std::uint32_t kilobytes;
        std::uint64_t extended;
        std::size_t length;
        std::uint32_t capacityGb;
    };
    for (const Row& row : {
             Row{"32 GiB", 0x02000000, 7 * Gibibyte, 23, 32},
             Row{"an array as short as it may be", 0x02000000, 0, 15, 32}, Row{"too short", 0x02000000, 0, 14, 0},
             Row{"no fields", 0x02000000, 0, 4, 0}, Row{"cut, not rounded", 0x001FFFFF, 0, 23, 1},
             Row{"less than one", 0x000FFFFF, 0, 23, 0}, Row{"unknown", 0, 0, 23, 0},
             Row{"the most", 0x7FFFFFFF, 0, 23, 2047},
             Row{"not the mark of the extended one", 0x80000001, 7 * Gibibyte, 23, 2048},
             Row{"extended", 0x80000000, 6144 * Gibibyte, 23, 6144},
             Row{"extended, cut", 0x80000000, 7 * Gibibyte - 1, 23, 6},
             Row{"extended, too short", 0x80000000, 6144 * Gibibyte, 22, 0},
             Row{"the most extended", 0x80000000, ~std::uint64_t{0}, 23, 0xFFFFFFFF},  // kept to 32 bits
         }) {
        const MemoryFacts facts = Parse({SmbiosArray(row.kilobytes, row.extended, row.length)});
        EXPECT_EQ(facts.maxCapacityGb, row.capacityGb) << row.what;
    }
}

TEST(SmbiosMemory, TheLastArrayThatGivesACapacityWins) {
    EXPECT_EQ(Parse({SmbiosArray(0x02000000), SmbiosArray(0x01000000)}).maxCapacityGb, 16U);
    EXPECT_EQ(Parse({SmbiosArray(0x02000000), SmbiosArray(0x01000000, 0, 14)}).maxCapacityGb, 32U);
    EXPECT_EQ(Parse({SmbiosArray(0x02000000), SmbiosArray(0x80000000, 0, 22)}).maxCapacityGb, 32U);
    EXPECT_EQ(Parse({SmbiosArray(0x02000000), SmbiosArray(0)}).maxCapacityGb, 0U);
}

TEST(SmbiosMemory, OtherStructuresAreSteppedOver) {
    std::vector<Bytes> structures;
    for (int type = 0; type < 256; ++type) {
        if (type == 16 || type == 17 || type == 127) continue;
        structures.push_back(WithStrings(SmbiosStructure(static_cast<std::uint8_t>(type), 40, 0xEE), {"text"}));
    }
    structures.push_back(SmbiosDevice().Build());
    const MemoryFacts facts = Parse(structures);
    EXPECT_THAT(Lines(facts), ElementsAre(Whole));
    EXPECT_EQ(facts.maxCapacityGb, 0U);
}

TEST(SmbiosMemory, TheEndMarkStopsTheWalk) {
    for (const std::size_t length : {std::size_t{4}, std::size_t{40}}) {
        const MemoryFacts facts = Parse({SmbiosDevice().Build(), WithStrings(SmbiosStructure(127, length), {}),
                                         SmbiosDevice().Build(), SmbiosArray(0x02000000)});
        EXPECT_THAT(Lines(facts), ElementsAre(Whole)) << length;
        EXPECT_EQ(facts.maxCapacityGb, 0U) << length;
    }
}

TEST(SmbiosMemory, ADamagedStructureEndsTheWalkAndKeepsWhatWasFound) {
    const Bytes good = SmbiosDevice().Build();
    for (std::uint8_t length = 0; length < 4; ++length) {
        // The next device is where a parser that believed the length would find it.
        Bytes damaged = SmbiosStructure(17, 4);
        damaged[1] = length;
        damaged.resize(std::max<std::size_t>(length, 2));
        const MemoryFacts facts = Parse({good, WithStrings(damaged, {}), good});
        EXPECT_THAT(Lines(facts), ElementsAre(Whole)) << int{length};
    }
    for (const std::size_t missing : {std::size_t{1}, std::size_t{20}, std::size_t{36}}) {
        Bytes cut = SmbiosStructure(17, 40);
        cut.resize(cut.size() - missing);
        EXPECT_THAT(Lines(Parse({good, cut})), ElementsAre(Whole)) << missing;
    }
}

TEST(SmbiosMemory, StringsWithoutAnEndGoUpToTheEndOfTheTable) {
    const Bytes device = SmbiosDevice().Build();
    for (std::size_t cut = 1; cut <= 2; ++cut) {
        Bytes table = device;
        table.resize(table.size() - cut);
        EXPECT_THAT(Lines(Parse(table)), ElementsAre(Whole)) << cut;
    }
    // Without the second zero, what should be the next device belongs to the strings of this one.
    Bytes table = device;
    table.pop_back();
    table = JoinBytes({table, Bytes(60, 'x'), SmbiosDevice().Build()});
    const MemoryFacts facts = Parse(table);
    ASSERT_EQ(facts.slots.size(), 1U);
    EXPECT_EQ(facts.slots.front().partNumber, L"X432-16");
}

TEST(SmbiosMemory, AnEmptyStringEndsTheStrings) {
    // The device that follows is found, since the walk goes on right behind the first two zero bytes.
    Bytes first = SmbiosDevice{.partNumber = 3, .strings = {"ACME"}}.Build();
    EXPECT_THAT(Lines(Parse({first, SmbiosDevice().Build()})), ElementsAre(L"16384 DDR4 3200 2933 ACME - DIMM", Whole));
    // Here the third string is taken for a structure, whose length is that of its second character.
    first = SmbiosDevice{.partNumber = 3, .strings = {"ACME", "", "X\x03"}}.Build();
    EXPECT_THAT(Lines(Parse({first, SmbiosDevice().Build()})), ElementsAre(L"16384 DDR4 3200 2933 ACME - DIMM"));
}

TEST(SmbiosMemory, AStringNumberNeverReachesTheNextStructure) {
    const std::vector<std::string_view> strings(9, "not mine");
    for (const std::uint8_t number : {std::uint8_t{3}, std::uint8_t{4}, std::uint8_t{5}, std::uint8_t{255}}) {
        const MemoryFacts facts = Parse({SmbiosDevice{.manufacturer = number, .partNumber = 1}.Build(),
                                         WithStrings(SmbiosStructure(4, 40), strings)});
        EXPECT_THAT(Lines(facts), ElementsAre(L"16384 DDR4 3200 2933 - ACME DIMM")) << int{number};
    }
}

TEST(SmbiosMemory, EveryCutKeepsTheSlotsInFrontOfIt) {
    const Bytes device = SmbiosDevice().Build();
    const Bytes array = SmbiosArray(0x02000000);
    const Bytes table = JoinBytes({device, array, device});
    for (std::size_t size = 0; size <= table.size(); ++size) {
        const MemoryFacts facts = Parse(Bytes(table.begin(), table.begin() + static_cast<std::ptrdiff_t>(size)));
        // A device counts as soon as its formatted area is whole, whatever its strings.
        const std::size_t second = device.size() + array.size() + 40;
        EXPECT_EQ(facts.slots.size(), (size >= 40 ? 1U : 0U) + (size >= second ? 1U : 0U)) << size;
        EXPECT_EQ(facts.maxCapacityGb, size >= device.size() + 23 ? 32U : 0U) << size;
        if (size < device.size()) continue;
        EXPECT_EQ(Line(facts.slots.front()), Whole) << size;
    }
}

TEST(SmbiosMemory, RandomBytesAreReadWithinTheirBounds) {
    std::mt19937 random(20240609);
    for (int round = 0; round < 3000; ++round) {
        Bytes table = JoinBytes({SmbiosArray(0x80000000, random()), SmbiosDevice().Build(), SmbiosDevice().Build()});
        for (auto wrong = random() % 8; wrong > 0; --wrong)
            table[random() % table.size()] = static_cast<std::uint8_t>(random());
        if (random() % 4 == 0) table.resize(random() % (table.size() + 1));
        const MemoryFacts facts = Parse(table);
        ASSERT_EQ(facts.hasSlots, !facts.slots.empty());
        ASSERT_LE(facts.slots.size(), table.size() / 21);
        for (const MemorySlot& slot : facts.slots)
            ASSERT_LE(slot.manufacturer.size() + slot.partNumber.size(), 2 * table.size());
    }
}

std::wstring StringOf(std::string_view strings, std::uint8_t number) {
    return SmbiosString(ExactCopy(Bytes(strings.begin(), strings.end())).Span(), number);
}

TEST(SmbiosString, IsFoundByItsNumber) {
    struct Row {
        const char* what;
        std::string_view strings;
        std::uint8_t number;
        std::wstring text;
    };
    for (const Row& row : std::vector<Row>{
             {"none", "a\0b\0\0"sv, 0, L""},
             {"the first", "a\0b\0\0"sv, 1, L"a"},
             {"the second", "a\0b\0\0"sv, 2, L"b"},
             {"past the last", "a\0b\0\0"sv, 3, L""},
             {"past the end", "a\0b\0\0"sv, 4, L""},
             {"far away", "a\0b\0\0"sv, 255, L""},
             {"no strings", "\0\0"sv, 1, L""},
             {"no strings, second", "\0\0"sv, 2, L""},
             {"nothing at all", ""sv, 1, L""},
             {"without its zero", "a\0bc"sv, 2, L"bc"},
             {"behind the one without its zero", "a\0bc"sv, 3, L""},
             {"right behind a last zero", "a\0"sv, 2, L""},
         }) {
        EXPECT_EQ(StringOf(row.strings, row.number), row.text) << row.what;
    }
}

TEST(SmbiosString, IsTrimmedAndFillerCountsAsEmpty) {
    struct Row {
        std::string_view stored;
        std::wstring text;
    };
    for (const Row& row : std::vector<Row>{
             {"  ACME \t", L"ACME"},
             {"ACME\t", L"ACME"},
             {" \t ", L""},
             {"\nACME\r", L"\nACME\r"},  // only spaces and tabs go
             {"A\xE9\xFF", L"A\u00E9\u00FF"},
             {"Unknown", L""},
             {"unknown", L""},
             {"UNKNOWN", L""},
             {"Not Specified", L""},
             {"NO DIMM", L""},
             {"  NO DIMM   ", L""},
             {"no dimm", L""},
             {"Undefined", L""},
             {"None", L""},
             {"To be filled by O.E.M.", L""},
             {"TO BE FILLED BY O.E.M.", L""},
             {"To Be Filled By O.E.M", L"To Be Filled By O.E.M"},  // without its last point
             {"Unknown 1", L"Unknown 1"},
             {"NO  DIMM", L"NO  DIMM"},
             {"Nonesuch", L"Nonesuch"},
         }) {
        EXPECT_EQ(StringOf(row.stored, 1), row.text);
    }
}

TEST(SmbiosTable, FollowsTheHeader) {
    struct Row {
        const char* what;
        std::uint32_t length;
        std::size_t bytes;  // of raw data
        std::size_t tableBytes;
    };
    for (const Row& row : {
             Row{"as long as told", 12, 20, 12},
             Row{"followed by more", 4, 20, 4},
             Row{"cut", 13, 20, 12},
             Row{"the greatest length", 0xFFFFFFFF, 20, 12},
             Row{"empty", 0, 20, 0},
             Row{"a header alone", 12, 8, 0},
             Row{"not even that", 12, 7, 0},
             Row{"nothing", 0, 0, 0},
         }) {
        Bytes rawData(8, 0xEE);
        PutAt(rawData, 4, row.length, 4);
        rawData.resize(row.bytes, 17);
        const ExactCopy copy(rawData);
        const ByteSpan table = SmbiosTable(copy.Span());
        ASSERT_EQ(table.size(), row.tableBytes) << row.what;
        EXPECT_TRUE(std::ranges::equal(table, Bytes(row.tableBytes, 17))) << row.what;
    }
}

}  // namespace
}  // namespace kestrane
