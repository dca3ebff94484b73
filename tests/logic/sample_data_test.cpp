#include "dialog/sample_data.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <set>
#include <vector>

#include "settings/app_settings.h"

namespace kestrane {
namespace {

constexpr std::array<std::int32_t, 3> DefaultThresholds{50, 75, 90};

/// All points of a ring, oldest first.
template <typename T>
std::vector<T> PointsOf(const MetricRing<T>& ring) {
    return NewestSamples(ring, ring.count);
}

/// Everything that a picture is made of.
struct Picture {
    std::vector<std::vector<std::int32_t>> percents;
    std::vector<std::vector<std::uint64_t>> rates;
    std::vector<std::vector<double>> values;
    std::array<std::int32_t, 4> memory{};

    bool operator==(const Picture&) const = default;
};

Picture PictureOf(const SampleData& data) {
    Picture picture;
    for (const auto* ring : {&data.sampleCpuIcon, &data.sampleDiskReadIcon, &data.sampleDiskWriteIcon})
        picture.percents.push_back(PointsOf(*ring));
    for (const auto* ring : {&data.sampleNetDownIcon, &data.sampleNetUpIcon, &data.sampleNetDown, &data.sampleNetUp})
        picture.rates.push_back(PointsOf(*ring));
    for (const auto* ring : {&data.sampleCpu, &data.sampleDiskRead, &data.sampleDiskWrite, &data.sampleDiskReadPercent,
                             &data.sampleDiskWritePercent})
        picture.values.push_back(PointsOf(*ring));
    for (const MetricRing<double>& core : data.sampleCores)
        picture.values.push_back(PointsOf(core));
    picture.memory = data.sampleMemory;
    return picture;
}

const std::vector<std::uint8_t> FourProcessors(4, 0);

/// As when the dialog opens with icons of 16 pixels on a machine with four processors.
struct OpenedSamples : SampleData {
    OpenedSamples() {
        ResizeIconSamples(*this, 16);
        BindSampleSeries(*this, FourProcessors);
        GenerateSamples(*this, DefaultThresholds);
    }
};

TEST(SampleInt, DrawsFromTheMinimalStandardGenerator) {
    std::uint32_t state = 1;
    std::int64_t value = 0;
    for (int i = 0; i < 10000; ++i)
        value = SampleInt(state, 1, 2147483646);
    EXPECT_EQ(value, 399268537) << "the check figure of std::minstd_rand";
    EXPECT_EQ(state, 399268537U);
}

// The generator's value n becomes result (n - 1) / share, where share = 2147483646 / results, rounded down. After 12345
// the generator gives 595905495; after 2023651103 it gives 2^30; after 1775986015 it gives 2^30 + 1, 1073814230 and
// 273908691.
TEST(SampleInt, GivesEachResultTheSameShareOfTheGeneratorsValues) {
    struct Row {
        const char* reason;
        std::uint32_t state;
        std::int64_t low;
        std::int64_t high;
        std::int64_t result;
        std::uint32_t after;
    };
    const std::vector<Row> rows = {
        {"86 results", 12345, 5, 90, 28, 595905495},
        {"from below zero", 12345, -50, 49, -23, 595905495},
        {"only one", 12345, 7, 7, 7, 595905495},
        {"an empty range counts as its lower end", 12345, 7, 3, 7, 595905495},
        {"a value within the last share", 2023651103, 0, 1073741823, 1073741823, 1073741824},
        {"those beyond it are drawn again", 1775986015, 0, 1073741823, 273908690, 273908691},
        {"the same value with one more result", 1775986015, 0, 1073741824, 1073741824, 1073741825},
    };
    for (const Row& row : rows) {
        std::uint32_t state = row.state;
        EXPECT_EQ(SampleInt(state, row.low, row.high), row.result) << row.reason;
        EXPECT_EQ(state, row.after) << row.reason;
    }
}

TEST(SampleInt, ReachesBothEndsAndNothingBeyond) {
    std::uint32_t state = 12345;
    std::set<std::int64_t> results;
    for (int i = 0; i < 1000; ++i)
        results.insert(SampleInt(state, -2, 2));
    EXPECT_EQ(results, (std::set<std::int64_t>{-2, -1, 0, 1, 2}));
}

TEST(SampleRate, IsLowOrABurstAndNeverBetween) {
    std::uint32_t state = 12345;
    std::set<std::uint64_t> low;
    std::set<std::uint64_t> high;
    int bursts = 0;
    for (int i = 0; i < 100000; ++i) {
        const std::uint64_t rate = SampleRate(state, 400);
        (rate < 150 ? low : high).insert(rate);
        if (rate >= 150) ++bursts;
    }
    EXPECT_EQ(low.size(), 101U);
    EXPECT_EQ(*low.begin(), 0U);
    EXPECT_EQ(*low.rbegin(), 100U);
    EXPECT_EQ(high.size(), 201U);
    EXPECT_EQ(*high.begin(), 200U);
    EXPECT_EQ(*high.rbegin(), 400U);
    EXPECT_NEAR(bursts, 15000, 500);
}

TEST(SampleRate, RoundsTheHalfAndTheQuarterDown) {
    std::uint32_t state = 12345;
    std::set<std::uint64_t> rates;
    for (int i = 0; i < 10000; ++i)
        rates.insert(SampleRate(state, 11));
    EXPECT_EQ(rates, (std::set<std::uint64_t>{0, 1, 2, 5, 6, 7, 8, 9, 10, 11}));
    EXPECT_EQ(SampleRate(state, 0), 0U);
}

TEST(SampleWalk, WandersInSmallStepsWithinItsRange) {
    std::uint32_t state = 12345;
    MetricRing<double> ring(20000);
    SampleWalk(state, ring, 20000, 10, 90);
    const std::vector<double> points = PointsOf(ring);
    ASSERT_EQ(points.size(), 20000U);
    double longest = 0;
    for (std::size_t i = 1; i < points.size(); ++i)
        longest = std::max(longest, std::abs(points[i] - points[i - 1]));
    EXPECT_LE(longest, 6.4 + 1e-9);
    EXPECT_GT(longest, 6.3);
    EXPECT_EQ(*std::ranges::min_element(points), 10) << "it is clamped there";
    EXPECT_EQ(*std::ranges::max_element(points), 90);
}

TEST(SampleWalk, PushesAsManyPointsAsAskedFor) {
    std::uint32_t state = 12345;
    MetricRing<double> ring(10);
    SampleWalk(state, ring, 0, 0, 1);
    EXPECT_EQ(ring.count, 0U);
    SampleWalk(state, ring, 7, 0, 1);
    EXPECT_EQ(ring.count, 7U);
}

// Computed apart from this program, in Python: x = x * 48271 % 2147483647 from 12345; an integer from low to high is
// low + (x - 1) // (2147483646 // results); a real number is low + (high - low) * ((x - 1) / 2147483645).
TEST(GenerateSamples, BeginsWithTheSameFiguresAtEachOpening) {
    const OpenedSamples data;
    const Picture picture = PictureOf(data);
    const auto firstOf = [](const auto& points) { return std::vector(points.begin(), points.begin() + 3); };
    EXPECT_EQ(firstOf(picture.percents[0]), (std::vector{28, 40, 25}));
    EXPECT_EQ(firstOf(picture.percents[1]), (std::vector{44, 35, 5}));
    EXPECT_EQ(firstOf(picture.percents[2]), (std::vector{28, 27, 1}));
    using Rates = std::vector<std::uint64_t>;
    EXPECT_EQ(firstOf(picture.rates[0]), (Rates{41315, 1366, 8385}));
    EXPECT_EQ(firstOf(picture.rates[1]), (Rates{18828, 5016, 36407}));
    EXPECT_EQ(firstOf(picture.rates[2]), (Rates{109439, 82863, 374299}));
    EXPECT_EQ(firstOf(picture.rates[3]), (Rates{25588, 12513, 168118}));
    EXPECT_EQ(firstOf(picture.values[0]), (std::vector{66.38462452867714, 64.4830221058098, 61.03255336112233}));
    EXPECT_EQ(firstOf(picture.values[1]), (std::vector{88080384.0, 62914560.0, 58720256.0}));
    EXPECT_EQ(firstOf(picture.values[2]), (std::vector{16777216.0, 31457280.0, 31457280.0}));
    EXPECT_EQ(firstOf(picture.values[3]), (std::vector{19.8, 15.0, 14.2}));
    EXPECT_EQ(firstOf(picture.values[4]), (std::vector{7.333333333333333, 12.0, 12.0}));
    ASSERT_EQ(picture.values.size(), 13U);
    const std::vector<double> firstOfCores{34.84284211719806, 26.185437352655597, 24.470890312182096,
                                           34.50959722862057, 53.908035402057735, 82.76112128434859,
                                           8.102657383451227, 98.4401147641802};
    for (std::size_t core = 0; core < 8; ++core)
        EXPECT_EQ(picture.values.at(5 + core).front(), firstOfCores[core]) << core;
    EXPECT_EQ(picture.values.back().back(), 96.19170097102183);
    EXPECT_EQ(picture.memory, (std::array{22, 57, 77, 95}));
    EXPECT_EQ(data.random_state, 1092462863U);
}

TEST(GenerateSamples, GivesNewFiguresEachTimeAndTheSameAtEachOpening) {
    OpenedSamples first;
    OpenedSamples second;
    const Picture opening = PictureOf(first);
    EXPECT_EQ(opening, PictureOf(second));
    GenerateSamples(first, DefaultThresholds);
    EXPECT_NE(PictureOf(first), opening);
    GenerateSamples(second, DefaultThresholds);
    EXPECT_EQ(PictureOf(first), PictureOf(second));
    EXPECT_EQ(first.sampleMemory, (std::array{23, 68, 84, 90}));
    EXPECT_EQ(first.random_state, 177951517U);
}

TEST(GenerateSamples, FillsEachRingAndStaysInItsRange) {
    OpenedSamples data;
    for (int round = 0; round < 20; ++round) {
        const Picture picture = PictureOf(data);
        const std::array<std::array<std::int32_t, 2>, 3> percents{{{5, 90}, {0, 60}, {0, 40}}};
        for (std::size_t i = 0; i < percents.size(); ++i) {
            const auto [low, high] = std::ranges::minmax(picture.percents.at(i));
            EXPECT_EQ(picture.percents.at(i).size(), 16U);
            EXPECT_GE(low, percents.at(i)[0]);
            EXPECT_LE(high, percents.at(i)[1]);
        }
        const std::array<std::uint64_t, 4> rates{400000, 200000, 450000, 250000};
        for (std::size_t i = 0; i < rates.size(); ++i) {
            EXPECT_EQ(picture.rates.at(i).size(), i < 2 ? 16U : 600U);
            EXPECT_LE(std::ranges::max(picture.rates.at(i)), rates.at(i));
        }
        constexpr double Megabyte = 1048576;
        const std::vector<std::array<double, 2>> values{
            {10, 90}, {0, 400 * Megabyte}, {0, 120 * Megabyte}, {3, 83}, {2, 42}};
        for (std::size_t i = 0; i < picture.values.size(); ++i) {
            const bool isCore = i >= values.size();
            const auto [low, high] = std::ranges::minmax(picture.values.at(i));
            EXPECT_EQ(picture.values.at(i).size(), isCore ? 300U : 600U);
            EXPECT_GE(low, isCore ? 0 : values.at(i)[0]);
            EXPECT_LE(high, isCore ? 100 : values.at(i)[1]);
        }
        GenerateSamples(data, DefaultThresholds);
    }
}

TEST(GenerateSamples, ActivityFollowsTheRateOfTheSameMoment) {
    const OpenedSamples data;
    for (std::uint64_t age = 0; age < 600; ++age) {
        EXPECT_EQ(SampleAtAge(data.sampleDiskReadPercent, age),
                  std::min(SampleAtAge(data.sampleDiskRead, age) / 5242880.0 + 3.0, 100.0));
        EXPECT_EQ(SampleAtAge(data.sampleDiskWritePercent, age),
                  std::min(SampleAtAge(data.sampleDiskWrite, age) / 3145728.0 + 2.0, 100.0));
    }
}

TEST(GenerateSamples, AddsSixteenPointsToAnIconOfAnySize) {
    SampleData data;
    ResizeIconSamples(data, 24);
    GenerateSamples(data, DefaultThresholds);
    EXPECT_EQ(data.sampleCpuIcon.count, 16U);
    GenerateSamples(data, DefaultThresholds);
    for (const std::uint64_t count :
         {data.sampleCpuIcon.count, data.sampleDiskReadIcon.count, data.sampleDiskWriteIcon.count,
          data.sampleNetDownIcon.count, data.sampleNetUpIcon.count})
        EXPECT_EQ(count, 24U);
    EXPECT_EQ(data.sampleNetDown.count, 600U);
    EXPECT_TRUE(data.sampleCores.empty()) << "not bound yet";
}

TEST(GenerateSamples, EachMemorySampleFallsIntoItsLevel) {
    SampleData data;
    AppSettings settings;
    for (const auto& thresholds :
         {DefaultThresholds, {1, 2, 3}, {1, 2, 100}, {98, 99, 100}, {30, 31, 90}, {31, 60, 61}}) {
        settings.thresholds = thresholds;
        for (int round = 0; round < 50; ++round) {
            GenerateSamples(data, thresholds);
            for (std::size_t level = 0; level < 4; ++level)
                EXPECT_EQ(MemoryLevel(settings, data.sampleMemory.at(level)), level) << data.sampleMemory.at(level);
            EXPECT_GE(data.sampleMemory[0], std::max(thresholds[0] - 30, 0));
            EXPECT_LE(data.sampleMemory[3], 100);
        }
    }
}

TEST(GenerateSamples, WithTheLowestThresholdsTheFirstLevelsHaveOneFigureEach) {
    SampleData data;
    for (int round = 0; round < 50; ++round) {
        GenerateSamples(data, {1, 2, 3});
        EXPECT_EQ(data.sampleMemory[0], 0);
        EXPECT_EQ(data.sampleMemory[1], 1);
        EXPECT_EQ(data.sampleMemory[2], 2);
    }
}

TEST(BindSampleSeries, MakesAtLeastEightCores) {
    struct Row {
        std::size_t processors;
        std::size_t rings;
    };
    for (const auto& [processors, rings] : std::vector<Row>{{0, 8}, {4, 8}, {8, 8}, {9, 9}, {128, 128}}) {
        const std::vector<std::uint8_t> classes(processors, 1);
        SampleData data;
        BindSampleSeries(data, classes);
        ASSERT_EQ(data.sampleCores.size(), rings) << processors;
        const GraphSeries& cpu = data.sampleSeries[IndexOf(GraphKind::Cpu)];
        EXPECT_EQ(cpu.coreClasses->size(), processors);
        EXPECT_EQ(cpu.cores, &data.sampleCores);
        for (const MetricRing<double>& core : data.sampleCores)
            EXPECT_EQ(core.data.size(), 300U);
    }
}

TEST(BindSampleSeries, PointsEachGraphAtItsRings) {
    const OpenedSamples data;
    const GraphSeries& network = data.sampleSeries[IndexOf(GraphKind::Network)];
    const GraphSeries& cpu = data.sampleSeries[IndexOf(GraphKind::Cpu)];
    const GraphSeries& disk = data.sampleSeries[IndexOf(GraphKind::Disk)];
    EXPECT_EQ(network.primary.counterRing, &data.sampleNetDown);
    EXPECT_EQ(network.secondary.counterRing, &data.sampleNetUp);
    EXPECT_EQ(cpu.primary.valueRing, &data.sampleCpu);
    EXPECT_EQ(SeriesCount(cpu.secondary), 0U);
    EXPECT_EQ(cpu.coreClasses, &FourProcessors);
    EXPECT_EQ(disk.primary.valueRing, &data.sampleDiskRead);
    EXPECT_EQ(disk.secondary.valueRing, &data.sampleDiskWrite);
    EXPECT_EQ(disk.activityRead.valueRing, &data.sampleDiskReadPercent);
    EXPECT_EQ(disk.activityWrite.valueRing, &data.sampleDiskWritePercent);
    for (const GraphSeries& series : data.sampleSeries) {
        EXPECT_EQ(series.disks, nullptr) << "no list of disks by name";
        EXPECT_EQ(series.periodMs, 1000U);
        EXPECT_EQ(series.cores != nullptr, &series == &cpu);
        EXPECT_EQ(series.activityRead.valueRing != nullptr, &series == &disk);
    }
}

TEST(ResizeIconSamples, OnlyTheIcons) {
    SampleData data;
    EXPECT_EQ(data.sampleCpuIcon.data.size(), 16U);
    ResizeIconSamples(data, 32);
    for (const std::size_t size :
         {data.sampleCpuIcon.data.size(), data.sampleDiskReadIcon.data.size(), data.sampleDiskWriteIcon.data.size(),
          data.sampleNetDownIcon.data.size(), data.sampleNetUpIcon.data.size()})
        EXPECT_EQ(size, 32U);
    EXPECT_EQ(data.sampleNetDown.data.size(), 600U);
    EXPECT_EQ(data.sampleDiskWritePercent.data.size(), 600U);
}

}  // namespace
}  // namespace kestrane
