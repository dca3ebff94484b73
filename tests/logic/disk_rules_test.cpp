#include "metrics/disk_rules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "text/translation.h"

namespace kestrane {
namespace {

using testing::IsEmpty;

constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double Largest = std::numeric_limits<double>::max();

DiskInstance Instance(const wchar_t* name, double idle, double readTime, double writeTime) {
    return {.name = name, .idlePercent = idle, .readTime = readTime, .writeTime = writeTime};
}

TEST(SplitBusyTime, SplitsTheBusyShareByTheRatioOfTheTimes) {
    struct Row {
        double idle;
        double readTime;
        double writeTime;
        std::int32_t readPercent;
        std::int32_t writePercent;
    };
    for (const Row& row : std::vector<Row>{
             {100, 0, 0, 0, 0},
             {100, 300, 100, 0, 0},  // an idle disk does nothing, whatever the times say
             {40, 300, 100, 45, 15},
             {40, 100, 300, 15, 45},
             {40, 0, 0, 60, 0},  // no ratio: all of it reading
             {99.6, 1, 1, 0, 0},
             {99, 1, 1, 1, 1},  // two halves, each rounded up: one more than the busy share
             {99.4, 0, 0, 1, 0},
             {0, 5, 0, 100, 0},
             {0, 0, 5, 0, 100},
             {130, 1, 1, 0, 0},
             {-5, 1, 1, 50, 50},
             {-5, 0, 0, 100, 0},
             {50, -100, 20, 0, 50},  // a negative time counts as 0
             {50, 20, -100, 50, 0},
             {50, -1, -1, 50, 0},
             {Nan, 1, 1, 0, 0},
             {Infinity, 1, 1, 0, 0},
             {-Infinity, 1, 1, 50, 50},
             {40, Nan, 10, 0, 60},
             {40, 10, Nan, 60, 0},
             {40, Nan, Nan, 60, 0},
             {40, Infinity, 1, 60, 0},
             {40, Infinity, Infinity, 30, 30},
             {40, Largest, Largest, 30, 30},
             {40, 1, 1e300, 0, 60},
             {40, std::numeric_limits<double>::denorm_min(), 0, 60, 0},
         }) {
        const BusySplit split = SplitBusyTime(Instance(L"0 C:", row.idle, row.readTime, row.writeTime));
        EXPECT_EQ(split.readPercent, row.readPercent) << row.idle << " " << row.readTime << " " << row.writeTime;
        EXPECT_EQ(split.writePercent, row.writePercent) << row.idle << " " << row.readTime << " " << row.writeTime;
    }
}

TEST(BuildDiskInstances, MatchesByWholeNameInAnyOrder) {
    const DiskReadings readings{.idle = {{L"1 D:", 10}, {L"0 C:", 20}, {L"2", 30}},
                                .readTime = {{L"0 C:", 1}, {L"1 D:", 2}, {L"0 C:", 99}},  // the first of two wins
                                .writeTime = {{L"1 D:", 3}, {L"0 C", 4}, {L"0 C: ", 5}, {L"0 c:", 6}},
                                .readBytes = {},
                                .writeBytes = {{L"3 E:", 7}, {L"0 C:", 8}}};
    const std::vector<DiskInstance> instances = BuildDiskInstances(readings);
    ASSERT_EQ(instances.size(), 3u);
    EXPECT_EQ(instances[0].name, L"1 D:");
    EXPECT_EQ(instances[0].idlePercent, 10);
    EXPECT_EQ(instances[0].readTime, 2);
    EXPECT_EQ(instances[0].writeTime, 3);
    EXPECT_EQ(instances[0].writeBytes, 0);
    EXPECT_EQ(instances[1].name, L"0 C:");
    EXPECT_EQ(instances[1].readTime, 1);
    EXPECT_EQ(instances[1].writeTime, 0);
    EXPECT_EQ(instances[1].readBytes, 0);
    EXPECT_EQ(instances[1].writeBytes, 8);
    EXPECT_EQ(instances[2].readTime, 0);
    DiskReadings withoutIdle = readings;
    withoutIdle.idle.clear();
    EXPECT_THAT(BuildDiskInstances(withoutIdle), IsEmpty());
}

TEST(AggregateBusiestDisks, TakesTheGreatestOfEachSide) {
    MetricSample sample;
    AggregateBusiestDisks({Instance(L"0 C:", 40, 300, 100),    // 45 and 15
                           Instance(L"1 D:", 20, 10, 70),      // 10 and 70
                           Instance(L"_Total", 0, 100, 100)},  // does not count
                          sample);
    EXPECT_TRUE(sample.diskValid);
    EXPECT_EQ(sample.diskReadPercent, 45);
    EXPECT_EQ(sample.busiestReadDisk, L"0 C:");
    EXPECT_EQ(sample.diskWritePercent, 70);
    EXPECT_EQ(sample.busiestWriteDisk, L"1 D:");
    EXPECT_EQ(sample.diskInstanceCount, 2u);
}

TEST(AggregateBusiestDisks, TheFirstOfEqualsStays) {
    MetricSample sample;
    AggregateBusiestDisks({Instance(L"_Total", 0, 1, 1), Instance(L"0 C:", 40, 1, 1), Instance(L"1 D:", 40, 1, 1)},
                          sample);
    EXPECT_EQ(sample.busiestReadDisk, L"0 C:");
    EXPECT_EQ(sample.busiestWriteDisk, L"0 C:");
}

TEST(AggregateBusiestDisks, AnIdleMachineHasNames) {
    MetricSample sample;
    AggregateBusiestDisks({Instance(L"3 X:", 100, 0, 0), Instance(L"0 C:", 100, 0, 0)}, sample);
    EXPECT_TRUE(sample.diskValid);
    EXPECT_EQ(sample.busiestReadDisk, L"3 X:");
    EXPECT_EQ(sample.busiestWriteDisk, L"3 X:");
    EXPECT_EQ(sample.diskReadPercent, 0);
    EXPECT_EQ(sample.diskWritePercent, 0);
}

TEST(AggregateBusiestDisks, WithoutADiskEverythingIsEmptied) {
    for (const std::vector<DiskInstance>& instances :
         {std::vector<DiskInstance>{}, std::vector<DiskInstance>{Instance(L"_Total", 0, 1, 1)}}) {
        MetricSample sample;
        AggregateBusiestDisks({Instance(L"0 C:", 0, 1, 1)}, sample);
        AggregateBusiestDisks(instances, sample);
        EXPECT_FALSE(sample.diskValid);
        EXPECT_EQ(sample.diskReadPercent, 0);
        EXPECT_EQ(sample.diskWritePercent, 0);
        EXPECT_EQ(sample.busiestReadDisk, L"");
        EXPECT_EQ(sample.busiestWriteDisk, L"");
        EXPECT_EQ(sample.diskInstanceCount, 0u);
    }
}

TEST(AggregateBusiestDisks, NamesWithoutANumberCountToo) {
    MetricSample sample;
    AggregateBusiestDisks({Instance(L"_total", 0, 1, 0), Instance(L"", 0, 1, 0)}, sample);
    EXPECT_EQ(sample.diskInstanceCount, 2u);
    EXPECT_EQ(sample.busiestReadDisk, L"_total");
}

TEST(BuildDiskSamples, TakesNumberedInstancesWithSpeedsFromZero) {
    const std::vector<DiskSample> samples = BuildDiskSamples({{L"_Total", 40, 1, 1, 1, 1},
                                                              {L"1 D:", 40, 300, 100, 1234.5, -6},
                                                              {L"x", 40, 1, 1, 1, 1},
                                                              {L"0 C:", 100, 0, 0, Nan, Infinity},
                                                              {L"99999", 0, 1, 1, 1, 1}});
    ASSERT_EQ(samples.size(), 2u);
    EXPECT_EQ(samples[0].number, 1);
    EXPECT_EQ(samples[0].name, L"1 D:");
    EXPECT_EQ(samples[0].readBytes, 1234.5);
    EXPECT_EQ(samples[0].writeBytes, 0);
    EXPECT_EQ(samples[0].readPercent, 45);
    EXPECT_EQ(samples[0].writePercent, 15);
    EXPECT_EQ(samples[1].number, 0);
    EXPECT_EQ(samples[1].readBytes, 0);
    EXPECT_EQ(samples[1].writeBytes, 1e300);  // infinity is clamped so that sums stay finite
}

TEST(ParseDiskNumber, ReadsTheDigitsAtTheStart) {
    struct Row {
        const wchar_t* name;
        std::int32_t number;
    };
    for (const Row& row : std::vector<Row>{
             {L"0 C:", 0},
             {L"12 D: E:", 12},
             {L"2", 2},
             {L"9999", 9999},
             {L"10000", -1},
             {L"00009999", 9999},
             {L"99999999999999999999 C:", -1},
             {L"7x", 7},
             {L"x7", -1},
             {L" 7", -1},
             {L"-7", -1},
             {L"", -1},
             {L"_Total", -1},
             {L"\u0667", -1},  // a digit, but not an ASCII one
         }) {
        EXPECT_EQ(ParseDiskNumber(row.name), row.number) << testing::PrintToString(std::wstring(row.name));
    }
}

std::vector<DiskSample> ThreeDisks() {
    return {{0, L"0 C:", 100, 10, 50, 5}, {1, L"1 D:", 200, 20, 30, 60}, {2, L"2", 400, 40, 10, 10}};
}

TEST(SumSelectedDisks, BothListsFilterAndAnEmptyListDoesNot) {
    struct Row {
        std::vector<std::int32_t> chosen;
        std::vector<std::uint32_t> fixed;
        std::int32_t diskCount;
        double readBytes;
        double writeBytes;
        std::int32_t readPercent;
        std::int32_t writePercent;
    };
    for (const Row& row : std::vector<Row>{
             {{}, {}, 3, 700, 70, 50, 60},
             {{1}, {}, 1, 200, 20, 30, 60},
             {{1}, {0, 1, 2}, 1, 200, 20, 30, 60},
             {{2, 0}, {}, 2, 500, 50, 50, 10},
             {{}, {0, 2}, 2, 500, 50, 50, 10},  // 1 is an external drive
             {{1}, {0, 2}, 0, 0, 0, 0, 0},      // and stays out even if chosen
             {{0, 1}, {0, 2}, 1, 100, 10, 50, 5},
             {{63}, {}, 0, 0, 0, 0, 0},  // only unknown numbers: nothing, not everything
             {{63, 2}, {}, 1, 400, 40, 10, 10},
             {{-1}, {}, 0, 0, 0, 0, 0},
             {{1, 1}, {1, 1}, 1, 200, 20, 30, 60},  // listed twice, counted once
             {{0}, {4294967295u, 0}, 1, 100, 10, 50, 5},
         }) {
        const DiskTotals totals = SumSelectedDisks(ThreeDisks(), row.chosen, row.fixed);
        SCOPED_TRACE(testing::PrintToString(row.chosen) + " of " + testing::PrintToString(row.fixed));
        EXPECT_EQ(totals.diskCount, row.diskCount);
        EXPECT_EQ(totals.readBytes, row.readBytes);
        EXPECT_EQ(totals.writeBytes, row.writeBytes);
        EXPECT_EQ(totals.readPercent, row.readPercent);
        EXPECT_EQ(totals.writePercent, row.writePercent);
    }
}

TEST(SumSelectedDisks, BrokenFiguresAddNothing) {
    const DiskTotals totals = SumSelectedDisks({{-1, L"x", 1, 1, 99, 99},  // no number, no disk
                                                {0, L"0", -50, Nan, -3, 7},
                                                {1, L"1", Largest, 5, 0, 0},
                                                {2, L"2", Largest, 6, 0, 0}},
                                               {}, {});
    EXPECT_EQ(totals.diskCount, 3);
    EXPECT_EQ(totals.readBytes, 2e300);  // still finite
    EXPECT_EQ(totals.writeBytes, 11);
    EXPECT_EQ(totals.readPercent, 0);
    EXPECT_EQ(totals.writePercent, 7);
    EXPECT_EQ(SumSelectedDisks({}, {}, {}).diskCount, 0);
}

TEST(MakeDiskLabel, NamesTheLettersInBrackets) {
    struct Row {
        std::int32_t number;
        const wchar_t* name;
        const wchar_t* label;
    };
    for (const Row& row : std::vector<Row>{
             {0, L"0 C:", L"Disco 0 (C:)"},
             {1, L"1 E: F:", L"Disco 1 (E: F:)"},
             {2, L"2", L"Disco 2"},
             {2, L"2 ", L"Disco 2"},
             {2, L"2  ", L"Disco 2 ( )"},
             {3, L"", L"Disco 3"},
             {12, L"12 D:", L"Disco 12 (D:)"},
         }) {
        EXPECT_EQ(MakeDiskLabel({.number = row.number, .name = row.name}), row.label);
    }
    SetLanguage(ActiveEnglish);
    EXPECT_EQ(MakeDiskLabel({.number = 1, .name = L"1 E: F:"}), L"Disk 1 (E: F:)");
    SetLanguage(ActiveSpanish);
}

TEST(AdvanceDiskSample, CountsFromTheSecondCollectionOn) {
    const DiskReadings one = {{{L"0 C:", 60}}, {{L"0 C:", 1}}, {{L"0 C:", 3}}, {}, {}};
    bool primed = false;
    MetricSample sample;
    EXPECT_FALSE(AdvanceDiskSample(primed, &one, sample));
    EXPECT_TRUE(primed);
    EXPECT_TRUE(sample.diskValid);  // but it gives figures
    EXPECT_EQ(sample.disks.size(), 1U);
    EXPECT_TRUE(AdvanceDiskSample(primed, &one, sample));
    EXPECT_EQ(sample.diskWritePercent, 30);
}

TEST(AdvanceDiskSample, ACollectionThatCannotBeReadPrimesButGivesNothing) {
    const DiskReadings one = {{{L"0 C:", 60}}, {}, {}, {}, {}};
    bool primed = false;
    MetricSample sample;
    sample.diskValid = true;
    sample.disks.resize(1);
    EXPECT_FALSE(AdvanceDiskSample(primed, nullptr, sample));
    EXPECT_TRUE(primed);
    EXPECT_FALSE(sample.diskValid);
    EXPECT_TRUE(sample.disks.empty());
    EXPECT_TRUE(AdvanceDiskSample(primed, &one, sample));
}

TEST(AdvanceDiskSample, WithoutADiskNoCollectionCounts) {
    const DiskReadings onlyTotal = {{{L"_Total", 60}}, {}, {}, {}, {}};
    bool primed = true;
    MetricSample sample;
    EXPECT_FALSE(AdvanceDiskSample(primed, &onlyTotal, sample));
    EXPECT_FALSE(AdvanceDiskSample(primed, &onlyTotal, sample));
}

}  // namespace
}  // namespace kestrane
