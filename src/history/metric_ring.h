#pragma once
// A fixed-size ring buffer of past samples. A point has no time stamp or validity flag, only a position: its age,
// counted from the newest point.
//
//     data: [ 5 | 6 | 3 | 4 ]      head 2, count 4: the next value overwrites the 3, the oldest
//                   ^ head         age 0 is 6, age 1 is 5, age 2 is 4, age 3 is 3
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace kestrane {

/// Points per machine-wide series and per disk.
inline constexpr std::uint64_t SeriesCapacity = 4096;
/// Points per logical processor: deliberately a quarter of a machine-wide series.
inline constexpr std::uint64_t CoreSeriesCapacity = 1024;

template <typename T>
struct MetricRing {
    std::vector<T> data;      // its size is the capacity, always at least 1
    std::uint64_t head = 0;   // where the next value goes
    std::uint64_t count = 0;  // number of valid values, at most the capacity

    /// An empty ring; a capacity of 0 counts as 1.
    explicit MetricRing(std::uint64_t capacity = 1) : data(std::max<std::uint64_t>(capacity, 1)) {}
};

/// Adds a value; a full ring loses its oldest. Constant time, no allocation.
template <typename T>
void PushSample(MetricRing<T>& ring, T value) {
    const std::uint64_t capacity = ring.data.size();
    ring.data[ring.head] = value;
    ring.head = (ring.head + 1) % capacity;
    if (ring.count < capacity) ++ring.count;
}

/// The value `age` points before the newest. `age` must be below `ring.count`.
template <typename T>
T SampleAtAge(const MetricRing<T>& ring, std::uint64_t age) {
    const std::uint64_t capacity = ring.data.size();
    const std::uint64_t oldest = (capacity - ring.count + ring.head) % capacity;
    return ring.data[(oldest + ring.count - age - 1) % capacity];
}

/// The value `age` points before the newest, or `absent` if the ring does not reach back that far.
template <typename T>
T SampleAtAgeOr(const MetricRing<T>& ring, std::uint64_t age, T absent) {
    return age < ring.count ? SampleAtAge(ring, age) : absent;
}

/// The newest `min(n, count)` values, oldest first.
template <typename T>
std::vector<T> NewestSamples(const MetricRing<T>& ring, std::uint64_t n) {
    const std::uint64_t kept = std::min(n, ring.count);
    std::vector<T> values;
    values.reserve(kept);
    for (std::uint64_t i = 0; i < kept; ++i)
        values.push_back(SampleAtAge(ring, kept - i - 1));
    return values;
}

/// Changes the ring's capacity (0 counts as 1) and keeps the newest values that fit.
template <typename T>
void ResizeKeepNewest(MetricRing<T>& ring, std::uint64_t capacity) {
    MetricRing<T> resized(capacity);
    for (const T value : NewestSamples(ring, resized.data.size()))
        PushSample(resized, value);
    ring = std::move(resized);
}

}  // namespace kestrane
