#include "history/metric_history.h"

#include <gtest/gtest.h>

namespace kestrane {
namespace {

TEST(PushCoreSamples, KeepsOneRingPerProcessor) {
    std::vector<MetricRing<double>> rings;
    PushCoreSamples(rings, {10, 20, 30});
    PushCoreSamples(rings, {11, 21, 31});
    ASSERT_EQ(rings.size(), 3U);
    EXPECT_EQ(rings[0].data.size(), 1024U);
    EXPECT_EQ(rings[2].count, 2U);
    EXPECT_EQ(SampleAtAge(rings[2], 0), 31.0);
    EXPECT_EQ(SampleAtAge(rings[2], 1), 30.0);
}

TEST(PushCoreSamples, AnotherNumberOfProcessorsStartsAllAnew) {
    std::vector<MetricRing<double>> rings;
    PushCoreSamples(rings, {10, 20, 30});
    PushCoreSamples(rings, {10, 20, 30, 40});
    ASSERT_EQ(rings.size(), 4U);
    for (const auto& ring : rings)
        EXPECT_EQ(ring.count, 1U);
}

TEST(PushCoreSamples, AnEmptyReadingDropsAllAndTheNextGoodOneStartsAnew) {
    std::vector<MetricRing<double>> rings;
    PushCoreSamples(rings, {10, 20});
    PushCoreSamples(rings, {});
    EXPECT_TRUE(rings.empty());
    PushCoreSamples(rings, {30, 40});
    ASSERT_EQ(rings.size(), 2U);
    EXPECT_EQ(rings[1].count, 1U);
}

DiskSample DiskAt(std::int32_t number, const wchar_t* name, double readBytes, double writeBytes) {
    DiskSample sample;
    sample.number = number;
    sample.name = name;
    sample.readBytes = readBytes;
    sample.writeBytes = writeBytes;
    return sample;
}

TEST(NextDiskHistories, KeepsThePointsOfEachDiskInTheOrderOfTheSamples) {
    const std::vector<DiskSample> first{DiskAt(0, L"0 C:", 10, 1), DiskAt(1, L"1 D:", 20, 2)};
    const std::vector<DiskSample> second{DiskAt(1, L"1 D: E:", 21, 3), DiskAt(0, L"0 C:", 11, 4)};
    std::vector<DiskHistory> histories = NextDiskHistories({}, first, {}, {});
    histories = NextDiskHistories(std::move(histories), second, {}, {});
    ASSERT_EQ(histories.size(), 2U);
    EXPECT_EQ(histories[0].number, 1);
    EXPECT_EQ(histories[0].label, L"Disco 1 (D: E:)");
    EXPECT_EQ(histories[0].read.count, 2U);
    EXPECT_EQ(SampleAtAge(histories[0].read, 0), 21.0);
    EXPECT_EQ(SampleAtAge(histories[0].read, 1), 20.0);
    EXPECT_EQ(SampleAtAge(histories[0].write, 0), 3.0);
    EXPECT_EQ(histories[1].number, 0);
    EXPECT_EQ(histories[1].read.data.size(), 4096U);
}

TEST(NextDiskHistories, ADiskMissingOnceStartsFromNothing) {
    const std::vector<DiskSample> both{DiskAt(0, L"0 C:", 10, 1), DiskAt(1, L"1 D:", 20, 2)};
    std::vector<DiskHistory> histories = NextDiskHistories({}, both, {}, {});
    histories = NextDiskHistories(std::move(histories), {both[0]}, {}, {});
    ASSERT_EQ(histories.size(), 1U);
    histories = NextDiskHistories(std::move(histories), both, {}, {});
    ASSERT_EQ(histories.size(), 2U);
    EXPECT_EQ(histories[0].read.count, 3U);
    EXPECT_EQ(histories[1].read.count, 1U);
}

TEST(NextDiskHistories, OnlyDisksThatPassTheFilterHaveOne) {
    const std::vector<DiskSample> samples{DiskAt(0, L"0 C:", 10, 1), DiskAt(1, L"1 D:", 20, 2),
                                          DiskAt(7, L"7 X:", 30, 3)};
    EXPECT_EQ(NextDiskHistories({}, samples, {1, 7}, {0, 1}).size(), 1U);  // 7 is an external disk, chosen in vain
    EXPECT_EQ(NextDiskHistories({}, samples, {9}, {}).size(), 0U);
    EXPECT_EQ(NextDiskHistories({}, samples, {}, {}).size(), 3U);
}

TEST(NextDiskHistories, TwoSamplesOfOneNumberDoNotShareAHistory) {
    const std::vector<DiskSample> twice{DiskAt(0, L"0 C:", 10, 1), DiskAt(0, L"0", 20, 2)};
    std::vector<DiskHistory> histories = NextDiskHistories({}, twice, {}, {});
    histories = NextDiskHistories(std::move(histories), twice, {}, {});
    ASSERT_EQ(histories.size(), 2U);
    EXPECT_EQ(histories[0].read.count, 2U);
    EXPECT_EQ(histories[1].read.count, 2U);
}

}  // namespace
}  // namespace kestrane
