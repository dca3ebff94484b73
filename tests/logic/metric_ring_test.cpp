#include "history/metric_ring.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

namespace kestrane {
namespace {

using Values = std::vector<std::int32_t>;

MetricRing<std::int32_t> RingOf(std::uint64_t capacity, std::int32_t first, std::int32_t last) {
    MetricRing<std::int32_t> ring(capacity);
    for (std::int32_t value = first; value <= last; ++value)
        PushSample(ring, value);
    return ring;
}

Values Span(std::int32_t first, std::int32_t last) {
    Values values(static_cast<std::size_t>(last - first + 1));
    std::iota(values.begin(), values.end(), first);
    return values;
}

TEST(MetricRing, StartsEmptyWithZerosAndACapacityOfAtLeastOne) {
    for (const std::uint64_t capacity : {0U, 1U, 2U, 16U, 4096U}) {
        const MetricRing<double> ring(capacity);
        EXPECT_EQ(ring.data, std::vector<double>(capacity == 0 ? 1 : capacity)) << capacity;
        EXPECT_EQ(ring.head, 0U);
        EXPECT_EQ(ring.count, 0U);
    }
}

TEST(MetricRing, KeepsTheNewestWhateverWasPushed) {
    for (std::int32_t capacity = 1; capacity <= 5; ++capacity) {
        for (std::int32_t pushed = 0; pushed <= 12; ++pushed) {
            const auto ring = RingOf(static_cast<std::uint64_t>(capacity), 1, pushed);
            const std::int32_t kept = std::min(capacity, pushed);
            EXPECT_EQ(ring.count, static_cast<std::uint64_t>(kept));
            EXPECT_EQ(ring.head, static_cast<std::uint64_t>(pushed % capacity));
            EXPECT_EQ(NewestSamples(ring, 100), Span(pushed - kept + 1, pushed)) << capacity << " " << pushed;
        }
    }
}

TEST(MetricRing, AnAgeCountsFromTheNewest) {
    const auto ring = RingOf(4, 1, 6);
    EXPECT_EQ(SampleAtAge(ring, 0), 6);
    EXPECT_EQ(SampleAtAge(ring, 3), 3);
    EXPECT_EQ(SampleAtAgeOr(ring, 3, -1), 3);
    EXPECT_EQ(SampleAtAgeOr(ring, 4, -1), -1);
    EXPECT_EQ(SampleAtAgeOr(ring, std::numeric_limits<std::uint64_t>::max(), -1), -1);
}

TEST(MetricRing, NewestSamplesTakesNoMoreThanAsked) {
    const auto ring = RingOf(8, 1, 5);
    EXPECT_EQ(NewestSamples(ring, 0), Values{});
    EXPECT_EQ(NewestSamples(ring, 1), Span(5, 5));
    EXPECT_EQ(NewestSamples(ring, 4), Span(2, 5));
    EXPECT_EQ(NewestSamples(ring, 5), Span(1, 5));
    EXPECT_EQ(NewestSamples(ring, 6), Span(1, 5));
}

TEST(MetricRing, FiveThousandIntoFourThousandAndNinetySix) {
    const auto ring = RingOf(4096, 1, 5000);
    EXPECT_EQ(ring.count, 4096U);
    EXPECT_EQ(SampleAtAge(ring, 0), 5000);
    EXPECT_EQ(SampleAtAge(ring, 4095), 905);
}

TEST(ResizeKeepNewest, KeepsTheNewestThatFit) {
    struct Row {
        std::uint64_t capacity;
        std::int32_t pushed;
        std::uint64_t resized;
        Values kept;
    };
    const std::vector<Row> rows = {
        {16, 10, 4, {7, 8, 9, 10}}, {16, 10, 0, {10}},  // a capacity of 0 counts as 1
        {16, 10, 1, {10}},          {16, 10, 9, Span(2, 10)},  {16, 10, 10, Span(1, 10)},
        {16, 10, 11, Span(1, 10)},  {16, 10, 16, Span(1, 10)}, {16, 0, 4, {}},
        {4, 6, 4, Span(3, 6)},  // wrapped around, the same size
        {4, 6, 8, Span(3, 6)},      {4, 6, 3, Span(4, 6)},     {1, 6, 3, {6}},
    };
    for (const Row& row : rows) {
        auto ring = RingOf(row.capacity, 1, row.pushed);
        ResizeKeepNewest(ring, row.resized);
        const std::uint64_t capacity = std::max<std::uint64_t>(row.resized, 1);
        EXPECT_EQ(ring.data.size(), capacity);
        EXPECT_EQ(ring.count, row.kept.size());
        EXPECT_EQ(ring.head, row.kept.size() % capacity);
        EXPECT_EQ(NewestSamples(ring, 100), row.kept) << row.capacity << " " << row.pushed << " " << row.resized;
    }
}

TEST(ResizeKeepNewest, GoesOnFromTheKeptValues) {
    auto ring = RingOf(4, 1, 6);
    ResizeKeepNewest(ring, 6);
    PushSample(ring, 7);
    PushSample(ring, 8);
    PushSample(ring, 9);
    EXPECT_EQ(NewestSamples(ring, 100), Span(4, 9));
}

TEST(MetricRing, HoldsWhatIsNotANumber) {
    MetricRing<double> ring(3);
    for (int i = 0; i < 5; ++i)
        PushSample(ring, std::numeric_limits<double>::quiet_NaN());
    ResizeKeepNewest(ring, 2);
    EXPECT_EQ(ring.count, 2U);
    EXPECT_TRUE(std::isnan(SampleAtAge(ring, 0)));
    EXPECT_TRUE(std::isnan(SampleAtAge(ring, 1)));
}

}  // namespace
}  // namespace kestrane
