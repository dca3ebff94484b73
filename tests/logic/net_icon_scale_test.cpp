#include "history/net_icon_scale.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <vector>

namespace kestrane {
namespace {

using Rates = std::vector<std::uint64_t>;

constexpr std::uint64_t Most = std::numeric_limits<std::uint64_t>::max();

MetricRing<std::uint64_t> RingWith(const Rates& rates, std::uint64_t capacity = 4096) {
    MetricRing<std::uint64_t> ring(capacity);
    for (const std::uint64_t rate : rates)
        PushSample(ring, rate);
    return ring;
}

TEST(NetIconScale, IgnoresTheHighestOfMoreThanTwo) {
    struct Row {
        Rates down;
        Rates up;
        std::uint64_t n;
        std::uint64_t scale;
    };
    const std::vector<Row> rows = {
        {{}, {}, 16, 10000},
        {{5000, 900000}, {20000}, 16, 20000},
        {{900000}, {}, 16, 900000},
        {{}, {900000}, 16, 900000},
        {{900000}, {20000}, 16, 900000},  // two points: the highest still counts
        {{20000}, {900000}, 16, 900000},
        {{1, 2, 3}, {4, 5, 6}, 16, 10000},
        {{100, 5000000, 20000}, {}, 16, 20000},
        {{9999, 9999, 9999}, {}, 16, 10000},
        {{10001, 10001, 10001}, {}, 16, 10001},
        {{50000, 50000}, {50000}, 16, 50000},  // a tie: the second highest equals the highest
        {{70000, 60000, 50000}, {65000}, 16, 65000},
        {{0, 0, 900000}, {0}, 16, 10000},                // one spike on an idle line
        {{800000, 700000, 20000, 30000}, {}, 2, 30000},  // older points have no influence
        {{800000, 700000, 20000}, {40000, 50000}, 1, 50000},
        {{800000, 700000, 20000}, {40000, 50000}, 0, 10000},
        {{Most, Most, 1}, {}, 16, Most},
        {{300000, 200000}, {100000}, Most, 200000},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(NetIconScale(RingWith(row.down), RingWith(row.up), row.n), row.scale)
            << testing::PrintToString(row.down) << testing::PrintToString(row.up) << row.n;
    }
}

TEST(NetIconScale, EqualsTheRuleToldBySorting) {
    std::uint64_t seed = 1;
    const auto next = [&seed] { return seed = seed * 6364136223846793005U + 1442695040888963407U; };
    for (std::uint64_t n = 0; n <= 20; ++n) {
        for (int round = 0; round < 50; ++round) {
            MetricRing<std::uint64_t> down(8);
            MetricRing<std::uint64_t> up(8);
            for (std::uint64_t i = (next() >> 32U) % 12; i > 0; --i)
                PushSample(down, (next() >> 32U) % 50000);
            for (std::uint64_t i = (next() >> 32U) % 12; i > 0; --i)
                PushSample(up, (next() >> 32U) % 50000);
            Rates all = NewestSamples(down, n);
            const Rates ups = NewestSamples(up, n);
            all.insert(all.end(), ups.begin(), ups.end());
            std::sort(all.begin(), all.end(), std::greater<>());
            const std::uint64_t picked = all.empty() ? 0 : all[all.size() > 2 ? 1 : 0];
            EXPECT_EQ(NetIconScale(down, up, n), std::max<std::uint64_t>(picked, 10000)) << testing::PrintToString(all);
        }
    }
}

}  // namespace
}  // namespace kestrane
