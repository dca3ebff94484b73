#include "history/series.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace kestrane {
namespace {

constexpr std::uint64_t Most = std::numeric_limits<std::uint64_t>::max();

template <typename T>
MetricRing<T> RingOfFirst(std::uint64_t capacity, std::uint64_t pushed) {
    MetricRing<T> ring(capacity);
    for (std::uint64_t value = 1; value <= pushed; ++value)
        PushSample(ring, static_cast<T>(value));
    return ring;
}

TEST(SeriesRef, WithoutRingsIsZeroEverywhere) {
    const SeriesRef none;
    EXPECT_EQ(SeriesCount(none), 0U);
    for (const std::uint64_t age : {std::uint64_t{0}, std::uint64_t{1}, Most})
        EXPECT_EQ(ValueAtAge(none, age), 0.0);
}

TEST(SeriesRef, EveryAgeOfEveryFilling) {
    constexpr std::uint64_t capacity = 3;
    for (std::uint64_t pushed = 0; pushed <= 8; ++pushed) {
        const auto counters = RingOfFirst<std::uint64_t>(capacity, pushed);
        const auto values = RingOfFirst<double>(capacity, pushed);
        const std::uint64_t count = std::min(capacity, pushed);
        EXPECT_EQ(SeriesCount({&counters, nullptr}), count);
        EXPECT_EQ(SeriesCount({nullptr, &values}), count);
        for (std::uint64_t age = 0; age <= 5; ++age) {
            const double expected = age < count ? static_cast<double>(pushed - age) : 0.0;
            EXPECT_EQ(ValueAtAge({&counters, nullptr}, age), expected) << pushed << " " << age;
            EXPECT_EQ(ValueAtAge({nullptr, &values}, age), expected) << pushed << " " << age;
        }
    }
}

TEST(SeriesRef, AFullSeries) {
    const auto values = RingOfFirst<double>(SeriesCapacity, 5000);
    const SeriesRef ref{nullptr, &values};
    EXPECT_EQ(SeriesCount(ref), 4096U);
    EXPECT_EQ(ValueAtAge(ref, 0), 5000.0);
    EXPECT_EQ(ValueAtAge(ref, 4095), 905.0);
    EXPECT_EQ(ValueAtAge(ref, 4096), 0.0);
    EXPECT_EQ(ValueAtAge(ref, Most), 0.0);
}

TEST(SeriesRef, TheCounterRingComesFirst) {
    const auto counters = RingOfFirst<std::uint64_t>(4, 1);
    const auto values = RingOfFirst<double>(4, 3);
    const SeriesRef both{&counters, &values};
    EXPECT_EQ(SeriesCount(both), 1U);
    EXPECT_EQ(ValueAtAge(both, 0), 1.0);
    EXPECT_EQ(ValueAtAge(both, 1), 0.0);  // not the value ring's
}

TEST(SeriesRef, ACounterWithItsTopBitSetStaysPositive) {
    MetricRing<std::uint64_t> counters(1);
    PushSample(counters, std::uint64_t{1} << 63U);
    EXPECT_EQ(ValueAtAge({&counters, nullptr}, 0), 9223372036854775808.0);
}

TEST(GraphSeries, StartsWithNothingToReadAndASecondAPoint) {
    const GraphSeries series;
    for (const SeriesRef& ref : {series.primary, series.secondary, series.activityRead, series.activityWrite}) {
        EXPECT_EQ(SeriesCount(ref), 0U);
    }
    EXPECT_EQ(series.cores, nullptr);
    EXPECT_EQ(series.coreClasses, nullptr);
    EXPECT_EQ(series.disks, nullptr);
    EXPECT_EQ(series.periodMs, 1000U);
}

TEST(DiskHistory, StartsWithEmptyRingsOfFullLength) {
    const DiskHistory history;
    EXPECT_EQ(history.read.data.size(), 4096U);
    EXPECT_EQ(history.write.data.size(), 4096U);
    EXPECT_EQ(history.read.count + history.write.count, 0U);
}

TEST(DiskHistory, MovesItsRingsAndDoesNotCopyThem) {
    DiskHistory old;
    const double* storage = old.read.data.data();
    const DiskHistory taken = std::move(old);
    EXPECT_EQ(taken.read.data.data(), storage);
}

}  // namespace
}  // namespace kestrane
