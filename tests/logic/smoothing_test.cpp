#include "history/smoothing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace kestrane {
namespace {

using testing::DoubleEq;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::Pointwise;
using Values = std::vector<double>;

constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

MetricRing<double> RingWith(std::uint64_t capacity, const Values& values) {
    MetricRing<double> ring(capacity);
    for (const double value : values)
        PushSample(ring, value);
    return ring;
}

/// The slow reference: each point's mean, without running sums.
Values SlowSmooth(const Values& values, std::ptrdiff_t half) {
    Values result;
    const auto size = static_cast<std::ptrdiff_t>(values.size());
    for (std::ptrdiff_t i = 0; i < size; ++i) {
        double sum = 0;
        std::ptrdiff_t points = 0;
        for (std::ptrdiff_t k = std::max<std::ptrdiff_t>(i - half, 0); k <= std::min(i + half, size - 1); ++k) {
            sum += values[static_cast<std::size_t>(k)];
            ++points;
        }
        result.push_back(sum / static_cast<double>(points));
    }
    return result;
}

TEST(SmoothingWidth, EachLevelAndTheLevelsBeyond) {
    struct Row {
        std::int32_t level;
        std::int32_t width;
    };
    const std::vector<Row> rows = {{0, 1},
                                   {1, 3},
                                   {2, 7},
                                   {3, 15},
                                   {-1, 1},
                                   {4, 15},
                                   {std::numeric_limits<std::int32_t>::min(), 1},
                                   {std::numeric_limits<std::int32_t>::max(), 15}};
    for (const Row& row : rows)
        EXPECT_EQ(SmoothingWidth(row.level), row.width) << row.level;
}

TEST(BoxSmooth, ShrinksItsWindowAtBothEnds) {
    EXPECT_THAT(BoxSmooth({1, 2, 3, 4, 5}, 1), ElementsAre(1.5, 2, 3, 4, 4.5));
}

TEST(BoxSmooth, LeavesShortOrUnsmoothedValuesAlone) {
    const Values values = {7, 1, 100};
    EXPECT_EQ(BoxSmooth(values, 0), values);
    EXPECT_EQ(BoxSmooth(values, -5), values);
    for (std::int32_t level = 0; level <= 3; ++level) {
        EXPECT_EQ(BoxSmooth({}, level), Values{});
        EXPECT_EQ(BoxSmooth({9}, level), Values{9});
    }
    EXPECT_THAT(BoxSmooth({1, 3}, 1), ElementsAre(2, 2));
}

TEST(BoxSmooth, IsTheMeanOfItsNeighboursAtEverySizeAndLevel) {
    for (std::size_t size = 0; size <= 40; ++size) {
        Values values;
        for (std::size_t i = 0; i < size; ++i)
            values.push_back(static_cast<double>((i * 37) % 101));
        for (std::int32_t level = 1; level <= 3; ++level) {
            const Values expected = SlowSmooth(values, SmoothingWidth(level) / 2);
            EXPECT_THAT(BoxSmooth(values, level), Pointwise(DoubleNear(1e-9), expected)) << size << " " << level;
        }
    }
}

TEST(BoxSmooth, SurvivesWhatIsNotANumber) {
    const Values smoothed = BoxSmooth({1, 2, NotANumber, 4, 5}, 1);
    ASSERT_EQ(smoothed.size(), 5U);
    EXPECT_EQ(smoothed[0], 1.5);
    for (std::size_t i = 1; i < 5; ++i)
        EXPECT_TRUE(std::isnan(smoothed[i])) << i;
}

TEST(SmoothedWindow, PullsTheEarliestPointsTowardsZero) {
    const auto ring = RingWith(4096, {10});
    EXPECT_THAT(SmoothedWindow({nullptr, &ring}, 3, 1), ElementsAre(0, DoubleEq(10.0 / 3), 5));
}

TEST(SmoothedWindow, TakesOlderPointsThanItShows) {
    const auto ring = RingWith(4096, {1, 2, 3, 4, 5, 6});
    EXPECT_THAT(SmoothedWindow({nullptr, &ring}, 3, 0), ElementsAre(4, 5, 6));
    EXPECT_THAT(SmoothedWindow({nullptr, &ring}, 3, 1), ElementsAre(4, 5, 5.5));
    // Level 2 averages three points on either side: (1..6)/6, (2..6)/5, (3..6)/4.
    EXPECT_THAT(SmoothedWindow({nullptr, &ring}, 3, 2), ElementsAre(3.5, 4, 4.5));
}

TEST(SmoothedWindow, ReadsCountersAsWellAsValues) {
    MetricRing<std::uint64_t> ring(2);
    PushSample<std::uint64_t>(ring, 30);
    PushSample<std::uint64_t>(ring, 60);
    EXPECT_THAT(SmoothedWindow({&ring, nullptr}, 3, 0), ElementsAre(0, 30, 60));
    EXPECT_THAT(SmoothedWindow({&ring, nullptr}, 2, 1), ElementsAre(30, 45));
}

TEST(SmoothedWindow, HasExactlyTheWidthAskedFor) {
    const auto ring = RingWith(5, {1, 2, 3, 4, 5, 6, 7});
    for (std::size_t n = 0; n <= 20; ++n) {
        for (std::int32_t level = -1; level <= 4; ++level) {
            EXPECT_EQ(SmoothedWindow({nullptr, &ring}, n, level).size(), n);
            EXPECT_EQ(SmoothedWindow({}, n, level), Values(n)) << "a series without rings is flat";
        }
    }
}

TEST(SmoothedWindow, SurvivesARingFullOfWhatIsNotANumber) {
    const auto ring = RingWith(4, Values(6, NotANumber));
    for (std::int32_t level = 0; level <= 3; ++level) {
        const Values window = SmoothedWindow({nullptr, &ring}, 4, level);
        EXPECT_TRUE(std::isnan(window.back())) << level;
    }
}

}  // namespace
}  // namespace kestrane
