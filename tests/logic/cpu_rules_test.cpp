#include "metrics/cpu_rules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

namespace kestrane {
namespace {

TEST(BusyPercent, IsTheRoundedShareOfTheTotal) {
    struct Row {
        std::uint64_t idle;
        std::uint64_t total;
        std::int32_t percent;
    };
    constexpr std::uint64_t Largest = std::numeric_limits<std::uint64_t>::max();
    for (const Row& row : std::vector<Row>{
             {0, 0, 0},  // no time has passed
             {5, 0, 0},
             {100, 100, 0},
             {150, 100, 0},  // more idle than total time, as when the two are not read at the same instant
             {0, 100, 100},
             {25, 100, 75},
             {1, 3, 67},
             {2, 3, 33},
             {99, 100, 1},
             {995, 1000, 1},  // half a percent rounds up
             {996, 1000, 0},
             {0, 1, 100},
             {0, Largest, 0},  // the product wraps, but the result is still a percentage
             {Largest, Largest, 0},
         }) {
        EXPECT_EQ(BusyPercent(row.idle, row.total), row.percent) << row.idle << " of " << row.total;
    }
}

TEST(BusyPercent, StaysAPercentageWhenADifferenceHasWrapped) {
    for (std::uint64_t back = 1; back < 1000; ++back) {
        const std::int32_t percent = BusyPercent(7, std::uint64_t{0} - back * 123456789);
        EXPECT_GE(percent, 0) << back;
        EXPECT_LE(percent, 100) << back;
    }
}

TEST(RoundPercent, RoundsAndClamps) {
    struct Row {
        double value;
        std::int32_t percent;
    };
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    for (const Row& row : std::vector<Row>{
             {-Infinity, 0},
             {-1e300, 0},
             {-0.6, 0},
             {-0.0, 0},
             {0, 0},
             {0.4, 0},
             {0.5, 1},
             {1, 1},
             {1.49, 1},
             {50.5, 51},
             {99.4, 99},
             {99.5, 100},
             {100, 100},
             {100.4, 100},
             {137.2, 100},
             {140, 100},
             {1e300, 100},
             {Infinity, 100},
             {std::numeric_limits<double>::quiet_NaN(), 0},
             {std::numeric_limits<double>::denorm_min(), 0},
         }) {
        EXPECT_EQ(RoundPercent(row.value), row.percent) << row.value;
    }
}

TEST(ParseProcessorInstance, GivesTheLogicalNumber) {
    struct Row {
        const wchar_t* name;
        std::int32_t number;
    };
    for (const Row& row : std::vector<Row>{
             {L"0,0", 0},
             {L"0,63", 63},
             {L"1,0", 64},
             {L"1,5", 69},
             {L"63,63", 4095},
             {L"007,0009", 457},  // leading zeros do not matter
             {L"0,64", -1},
             {L"64,0", -1},
             {L"_Total", -1},
             {L"0,_Total", -1},
             {L",3", -1},
             {L"3,", -1},
             {L",", -1},
             {L"", -1},
             {L"3", -1},
             {L"1,2,3", -1},  // the second comma is not a digit
             {L"1,,2", -1},
             {L"-1,2", -1},
             {L"+1,2", -1},
             {L" 1,2", -1},
             {L"1, 2", -1},
             {L"1,2 ", -1},
             {L"1,0x2", -1},
             {L"\u0661,2", -1},                               // a digit, but not an ASCII one
             {L"4294967296,0", -1},                           // 2^32 must not become 0
             {L"0,18446744073709551616", -1},                 // nor 2^64
             {L"99999999999999999999999999999999999,0", -1},  // nor may anything overflow on the way
         }) {
        EXPECT_EQ(ParseProcessorInstance(row.name), row.number) << testing::PrintToString(std::wstring(row.name));
    }
}

TEST(CoresFromInstances, LeavesHolesAtZero) {
    const std::vector<std::int32_t> cores = CoresFromInstances({{L"0,0", 10}, {L"0,2", 20.5}, {L"1,1", 137.2}});
    ASSERT_EQ(cores.size(), 66u);
    for (std::size_t i = 0; i < cores.size(); ++i) {
        const std::int32_t expected = i == 0 ? 10 : i == 2 ? 21 : i == 65 ? 100 : 0;
        EXPECT_EQ(cores[i], expected) << i;
    }
}

TEST(CoresFromInstances, TakesOnlyProcessors) {
    EXPECT_THAT(CoresFromInstances({}), testing::IsEmpty());
    EXPECT_THAT(CoresFromInstances({{L"_Total", 50}, {L"0,_Total", 60}, {L"", 70}}), testing::IsEmpty());
    EXPECT_THAT(CoresFromInstances({{L"0,_Total", 60}, {L"0,1", 7}, {L"_Total", 50}}), testing::ElementsAre(0, 7));
}

TEST(CoresFromInstances, TheLastInstanceOfANumberHolds) {
    EXPECT_THAT(CoresFromInstances({{L"0,0", 10}, {L"0,0", 20}}), testing::ElementsAre(20));
}

TEST(CoresFromInstances, ThousandsOfInstancesStayWithinTheNumbersThatExist) {
    std::vector<CounterValue> values;
    for (int group = 0; group < 100; ++group) {
        for (int number = 0; number < 100; ++number) {
            values.push_back({std::to_wstring(group) + L"," + std::to_wstring(number), 50});
        }
    }
    const std::vector<std::int32_t> cores = CoresFromInstances(values);
    EXPECT_EQ(cores.size(), 4096u);
    EXPECT_THAT(cores, testing::Each(50));
}

TEST(CoresFromInstances, BrokenFiguresBecomePercentages) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_THAT(CoresFromInstances({{L"0,0", nan}, {L"0,1", -5}, {L"0,2", 1e300}}), testing::ElementsAre(0, 0, 100));
}

TEST(AdvanceCpuTimes, CountsFromTheSecondReadingOn) {
    CpuTimes times;
    std::int32_t percent = 7;
    EXPECT_FALSE(AdvanceCpuTimes(times, 1000, 4000, percent));
    EXPECT_EQ(percent, 7);
    EXPECT_TRUE(AdvanceCpuTimes(times, 1025, 4100, percent));
    EXPECT_EQ(percent, 75);
    EXPECT_TRUE(AdvanceCpuTimes(times, 1125, 4200, percent));  // since the last reading, not the first
    EXPECT_EQ(percent, 0);
}

TEST(AdvanceCpuTimes, TimesThatFallCountAsBusyForNoLongerThanTheWhole) {
    CpuTimes times = {true, 1000, 4000};
    std::int32_t percent = 7;
    EXPECT_TRUE(AdvanceCpuTimes(times, 1000, 4000, percent));  // no time has passed
    EXPECT_EQ(percent, 0);
    EXPECT_TRUE(AdvanceCpuTimes(times, 0, 0, percent));
    EXPECT_GE(percent, 0);
    EXPECT_LE(percent, 100);
    EXPECT_EQ(times.prevTotalTime, 0U);
}

}  // namespace
}  // namespace kestrane
