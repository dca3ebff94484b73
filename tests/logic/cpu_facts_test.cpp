#include "hardware/cpu_facts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <random>
#include <vector>

#include "support/record_bytes.h"

namespace kestrane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct GroupMask {
    std::uint16_t group = 0;
    std::uint64_t mask = 0;
};

/// A record of the given relationship with its size filled in.
Bytes Record(std::uint32_t relationship, const Bytes& rest) {
    Bytes record;
    Put(record, relationship, 4);
    Put(record, 8 + rest.size(), 4);
    record.insert(record.end(), rest.begin(), rest.end());
    return record;
}

Bytes Core(std::uint8_t efficiencyClass, const std::vector<GroupMask>& masks) {
    Bytes rest;
    Put(rest, 1, 1);  // flags: the core has two threads
    Put(rest, efficiencyClass, 1);
    rest.resize(22);
    Put(rest, masks.size(), 2);
    for (const GroupMask& mask : masks) {
        Put(rest, mask.mask, 8);
        Put(rest, mask.group, 2);
        Put(rest, 0, 6);
    }
    return Record(0, rest);
}

Bytes Cache(std::uint8_t level, std::uint32_t size) {
    Bytes rest;
    Put(rest, level, 1);
    Put(rest, 16, 1);  // associativity
    Put(rest, 64, 2);  // line size in bytes
    Put(rest, size, 4);
    rest.resize(44);
    return Record(2, rest);
}

/// A record that the parser must skip: a node, a package, a group or a module. Misread as a core it would have the
/// highest class, misread as a cache a huge L3.
Bytes Other(std::uint32_t relationship, std::size_t size) {
    Bytes rest(size - 8, 0xFF);
    if (!rest.empty()) rest.front() = 3;
    return Record(relationship, rest);
}

CpuFacts Parse(const std::vector<Bytes>& records) {
    Bytes all;
    for (const Bytes& record : records)
        all.insert(all.end(), record.begin(), record.end());
    CpuFacts facts;
    ParseProcessorRecords(ExactCopy(all).Span(), facts);
    return facts;
}

TEST(ProcessorRecords, AnEmptyBufferGivesNothing) {
    const CpuFacts facts = Parse({});
    EXPECT_EQ(facts.coreCount, 0);
    EXPECT_EQ(facts.performanceCores, 0);
    EXPECT_EQ(facts.threadCount, 0);
    EXPECT_THAT(facts.isPerformanceThread, IsEmpty());
}

TEST(ProcessorRecords, TheHigherClassIsThePerformanceSide) {
    // Two performance cores of two threads each, then six efficiency cores.
    std::vector<Bytes> records{Core(1, {{0, 0b11}}), Core(1, {{0, 0b1100}})};
    for (int i = 0; i < 6; ++i)
        records.push_back(Core(0, {{0, std::uint64_t{1} << (4 + i)}}));
    const CpuFacts facts = Parse(records);
    EXPECT_EQ(facts.coreCount, 8);
    EXPECT_EQ(facts.performanceCores, 2);
    EXPECT_EQ(facts.efficiencyCores, 6);
    EXPECT_EQ(facts.threadCount, 10);
    EXPECT_THAT(facts.isPerformanceThread, ElementsAre(1, 1, 1, 1, 0, 0, 0, 0, 0, 0));
}

TEST(ProcessorRecords, TheHighestClassMayComeLast) {
    const CpuFacts facts = Parse({Core(0, {{0, 1}}), Core(1, {{0, 2}}), Core(255, {{0, 4}}), Core(1, {{0, 8}})});
    EXPECT_EQ(facts.performanceCores, 1);
    EXPECT_EQ(facts.efficiencyCores, 3);
    EXPECT_THAT(facts.isPerformanceThread, ElementsAre(0, 0, 1, 0));
}

TEST(ProcessorRecords, OneKindOfCoreIsAllPerformance) {
    for (const std::uint8_t efficiencyClass : {std::uint8_t{0}, std::uint8_t{1}}) {
        std::vector<Bytes> records;
        for (int i = 0; i < 8; ++i)
            records.push_back(Core(efficiencyClass, {{0, std::uint64_t{1} << i}}));
        const CpuFacts facts = Parse(records);
        EXPECT_EQ(facts.coreCount, 8);
        EXPECT_EQ(facts.performanceCores, 8);
        EXPECT_EQ(facts.efficiencyCores, 0);
        EXPECT_EQ(facts.isPerformanceThread, Bytes(8, 1));
    }
}

TEST(ProcessorRecords, EntriesNeverWrittenStayPerformance) {
    const CpuFacts facts = Parse({Core(0, {{1, 0b1000}}), Core(1, {{0, 1}})});
    ASSERT_EQ(facts.isPerformanceThread.size(), 68u);
    EXPECT_EQ(std::accumulate(facts.isPerformanceThread.begin(), facts.isPerformanceThread.end(), 0), 67);
    EXPECT_EQ(facts.isPerformanceThread[67], 0);
}

TEST(ProcessorRecords, SeveralGroupsAreNumberedBySixtyFour) {
    constexpr std::uint64_t All = ~std::uint64_t{0};
    const CpuFacts facts = Parse({Core(0, {{0, All}}), Core(0, {{1, All}}), Core(0, {{2, All}, {3, 0b101}})});
    EXPECT_EQ(facts.coreCount, 3);
    EXPECT_EQ(facts.threadCount, 3 * 64 + 2);
    EXPECT_EQ(facts.isPerformanceThread, Bytes(3 * 64 + 3, 1));
}

TEST(ProcessorRecords, TheLargestL3Counts) {
    struct Row {
        const char* what;
        std::vector<Bytes> records;
        std::uint32_t megabytes;
    };
    constexpr std::uint32_t Mebibyte = 1 << 20;
    for (const Row& row : std::vector<Row>{
             {"two equal", {Cache(3, 32 * Mebibyte), Cache(3, 32 * Mebibyte)}, 32},
             {"the larger first", {Cache(3, 96 * Mebibyte), Cache(3, 32 * Mebibyte)}, 96},
             {"the larger last", {Cache(3, 32 * Mebibyte), Cache(3, 96 * Mebibyte)}, 96},
             {"other levels", {Cache(1, 512 * Mebibyte), Cache(2, 64 * Mebibyte), Cache(4, 128 * Mebibyte)}, 0},
             {"less than one", {Cache(3, Mebibyte - 1)}, 0},
             {"just one", {Cache(3, Mebibyte)}, 1},
             {"cut, not rounded", {Cache(3, 2 * Mebibyte - 1)}, 1},
             {"the greatest number", {Cache(3, 0xFFFFFFFF)}, 4095},
             {"none", {Core(0, {{0, 1}})}, 0},
         }) {
        EXPECT_EQ(Parse(row.records).l3Megabytes, row.megabytes) << row.what;
    }
}

TEST(ProcessorRecords, OtherRecordsAreSteppedOver) {
    const CpuFacts facts = Parse({Other(4, 80), Core(0, {{0, 1}}), Other(1, 40), Other(3, 48), Other(7, 8),
                                  Cache(3, 8 << 20), Other(0xFFFFFFFF, 9), Core(0, {{0, 2}})});
    EXPECT_EQ(facts.coreCount, 2);
    EXPECT_EQ(facts.performanceCores, 2);
    EXPECT_EQ(facts.threadCount, 2);
    EXPECT_EQ(facts.l3Megabytes, 8u);
}

TEST(ProcessorRecords, LeavesNameAndFrequency) {
    CpuFacts facts;
    facts.name = L"A processor";
    facts.baseMhz = 3000;
    ParseProcessorRecords({}, facts);
    EXPECT_EQ(facts.name, L"A processor");
    EXPECT_EQ(facts.baseMhz, 3000u);
}

TEST(ProcessorRecords, ADamagedRecordEndsTheWalk) {
    const Bytes good = Core(0, {{0, 0b11}});
    struct Row {
        const char* what;
        Bytes damaged;
    };
    // The next record is where the size says, so a parser that goes on would find it.
    const auto sized = [](Bytes record, std::uint32_t size) {
        PutAt(record, 4, size, 4);
        record.resize(std::clamp<std::size_t>(size, 8, record.size()));
        return record;
    };
    Bytes manyGroups = good;
    manyGroups[30] = 2;
    Bytes groups65535 = good;
    groups65535[30] = 0xFF;
    groups65535[31] = 0xFF;
    for (const Row& row : std::vector<Row>{
             {"size 0", sized(good, 0)},
             {"size 7, less than its head", sized(good, 7)},
             {"size 8, no fields", sized(good, 8)},
             {"size 31, fields cut", sized(good, 31)},
             {"size 47, mask cut", sized(good, 47)},
             {"more groups than masks", manyGroups},
             {"65535 groups", groups65535},
             {"cache of 15 bytes", sized(Cache(3, 8 << 20), 15)},
             {"size past the end", sized(good, 0x10000)},
             {"the greatest size", sized(good, 0xFFFFFFFF)},
             {"one byte", {0}},
         }) {
        SCOPED_TRACE(row.what);
        const CpuFacts facts = Parse({good, row.damaged, good});
        EXPECT_EQ(facts.coreCount, 1);
        EXPECT_EQ(facts.threadCount, 2);
        EXPECT_EQ(facts.l3Megabytes, 0u);
        EXPECT_EQ(Parse({row.damaged}).coreCount, 0);
    }
}

TEST(ProcessorRecords, ADamagedRecordHidesTheClassesBehindIt) {
    Bytes damaged = Core(0, {{0, 1}});
    PutAt(damaged, 4, 0, 4);
    const CpuFacts facts = Parse({Core(0, {{0, 1}}), damaged, Core(5, {{0, 2}})});
    EXPECT_EQ(facts.performanceCores, 1);  // neither pass sees the core of class 5
    EXPECT_EQ(facts.efficiencyCores, 0);
}

TEST(ProcessorRecords, EveryCutOfTheBufferIsRead) {
    Bytes whole = Core(1, {{0, 0b11}, {1, 0b1}});
    const Bytes cache = Cache(3, 8 << 20);
    whole.insert(whole.end(), cache.begin(), cache.end());
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        const CpuFacts facts = Parse({Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size))});
        EXPECT_EQ(facts.coreCount, size >= 64 ? 1 : 0) << size;
        EXPECT_EQ(facts.l3Megabytes, size == whole.size() ? 8u : 0u) << size;
    }
}

TEST(ProcessorRecords, AnyGroupHasItsPlaceInTheTable) {
    struct Row {
        GroupMask mask;
        std::size_t tableSize;
    };
    constexpr std::uint64_t LastBit = std::uint64_t{1} << 63;
    for (const Row& row : std::vector<Row>{{{63, LastBit}, 64 * 64},
                                           {{64, 1}, 64 * 64 + 1},  // a group that no counter names
                                           {{65535, 0b101}, 65535 * 64 + 3},
                                           {{65535, LastBit}, 65536 * 64}}) {
        const CpuFacts facts = Parse({Core(1, {{0, 1}}), Core(0, {row.mask})});
        ASSERT_EQ(facts.isPerformanceThread.size(), row.tableSize);
        EXPECT_EQ(facts.isPerformanceThread.back(), 0);
    }
}

TEST(ProcessorRecords, ACoreWithoutGroupsHasNoThreads) {
    const CpuFacts facts = Parse({Core(0, {}), Core(0, {{0, 0}})});
    EXPECT_EQ(facts.coreCount, 2);
    EXPECT_EQ(facts.threadCount, 0);
    EXPECT_THAT(facts.isPerformanceThread, IsEmpty());
}

TEST(ProcessorRecords, RandomBytesAreReadWithinTheirBounds) {
    std::mt19937 random(20240607);
    for (int round = 0; round < 2000; ++round) {
        std::vector<Bytes> records;
        const std::size_t count = random() % 4;
        for (std::size_t i = 0; i < count; ++i) {
            Bytes record = random() % 2 == 0 ? Core(static_cast<std::uint8_t>(random() % 3), {{0, random()}, {1, 1}})
                                             : Cache(3, static_cast<std::uint32_t>(random()));
            // Corrupt a few bytes, mostly in sizes and counts.
            for (auto wrong = random() % 4; wrong > 0; --wrong) {
                record[random() % (random() % 2 == 0 ? 8 : record.size())] = static_cast<std::uint8_t>(random());
            }
            record.resize(random() % 8 == 0 ? random() % (record.size() + 1) : record.size());
            records.push_back(record);
        }
        const CpuFacts facts = Parse(records);
        ASSERT_LE(facts.isPerformanceThread.size(), 65536u * 64);
        ASSERT_EQ(facts.coreCount, facts.performanceCores + facts.efficiencyCores);
        ASSERT_TRUE(std::ranges::all_of(facts.isPerformanceThread, [](std::uint8_t flag) { return flag <= 1; }));
    }
}

}  // namespace
}  // namespace kestrane
