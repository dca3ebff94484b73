#pragma once
// The data of a graph: references to rings that live elsewhere, and the sampling period.
#include <cstdint>
#include <string>
#include <vector>

#include "history/metric_ring.h"

namespace kestrane {

/// The history of one physical disk, in bytes per second.
struct DiskHistory {
    std::int32_t number = 0;
    std::wstring label;  // from the latest sample
    MetricRing<double> read{SeriesCapacity};
    MetricRing<double> write{SeriesCapacity};
};

/// One series: the counter ring if set, else the value ring. With neither it has no points.
struct SeriesRef {
    const MetricRing<std::uint64_t>* counterRing = nullptr;
    const MetricRing<double>* valueRing = nullptr;
};

struct GraphSeries {
    SeriesRef primary;
    SeriesRef secondary;
    SeriesRef activityRead;  // shown by the disk graph in activity mode
    SeriesRef activityWrite;
    const std::vector<MetricRing<double>>* cores = nullptr;  // one ring per logical number
    const std::vector<std::uint8_t>* coreClasses = nullptr;  // processor classes by logical number
    const std::vector<DiskHistory>* disks = nullptr;
    std::uint32_t periodMs = 1000;  // time between two points
};

/// The value `age` points before the newest; 0.0 if the series does not reach back that far.
double ValueAtAge(const SeriesRef& ref, std::uint64_t age);

/// How many points the series has.
std::uint64_t SeriesCount(const SeriesRef& ref);

}  // namespace kestrane
