#include "history/net_icon_scale.h"

#include <algorithm>

namespace kestrane {
namespace {

/// The two highest of the values seen, without storing or sorting the rest.
struct TopTwo {
    std::uint64_t highest = 0;
    std::uint64_t second = 0;
    std::uint64_t seen = 0;
};

void Look(TopTwo& top, std::uint64_t value) {
    ++top.seen;
    top.second = std::max(top.second, std::min(top.highest, value));
    top.highest = std::max(top.highest, value);
}

void LookAtNewest(TopTwo& top, const MetricRing<std::uint64_t>& ring, std::uint64_t n) {
    const std::uint64_t shown = std::min(n, ring.count);
    for (std::uint64_t age = 0; age < shown; ++age)
        Look(top, SampleAtAge(ring, age));
}

}  // namespace

std::uint64_t NetIconScale(const MetricRing<std::uint64_t>& down, const MetricRing<std::uint64_t>& up,
                           std::uint64_t n) {
    TopTwo top;
    LookAtNewest(top, down, n);
    LookAtNewest(top, up, n);
    return std::max(top.seen > 2 ? top.second : top.highest, MinNetIconScale);
}

}  // namespace kestrane
