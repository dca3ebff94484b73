#pragma once
// Rings filled with given points, and the series that read them.
#include <cstdint>
#include <vector>

#include "history/series.h"

namespace kestrane {

/// A ring with these values, the last one the newest.
template <typename T>
MetricRing<T> RingOf(const std::vector<T>& values, std::uint64_t capacity = SeriesCapacity) {
    MetricRing<T> ring(capacity);
    for (const T value : values)
        PushSample(ring, value);
    return ring;
}

inline SeriesRef RefTo(const MetricRing<double>& ring) {
    return {nullptr, &ring};
}

inline SeriesRef RefTo(const MetricRing<std::uint64_t>& ring) {
    return {&ring, nullptr};
}

}  // namespace kestrane
