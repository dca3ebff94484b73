#pragma once
// The rate at the full height of the network icon.
#include <cstdint>

#include "history/metric_ring.h"

namespace kestrane {

/// The lowest full-scale value, in bits per second.
inline constexpr std::uint64_t MinNetIconScale = 10000;

/// Bits per second: the second highest of the newest `n` points of both rings together (the highest, if they have at
/// most two points in all), so that a single spike does not set the scale; never below `MinNetIconScale`.
std::uint64_t NetIconScale(const MetricRing<std::uint64_t>& down, const MetricRing<std::uint64_t>& up, std::uint64_t n);

}  // namespace kestrane
