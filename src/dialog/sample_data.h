#pragma once
// Made-up readings for the sample icons and graphs of the settings dialog: plausible traffic, whether the machine is
// idle or not. They come from a generator with a fixed seed that is written out here, so the pictures are the same at
// each opening, whatever compiler built the program.
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "history/metric_ring.h"
#include "history/series.h"
#include "settings/kinds.h"

namespace kestrane {

/// The points of an icon's sample before its size is known.
inline constexpr std::uint64_t SampleIconPoints = 16;
inline constexpr std::uint64_t SampleGraphPoints = 600;
inline constexpr std::uint64_t SampleCorePoints = 300;
inline constexpr std::size_t MinSampleCores = 8;

/// Not copyable: `sampleSeries` points into the record.
struct SampleData {
    SampleData() = default;
    SampleData(const SampleData&) = delete;
    SampleData& operator=(const SampleData&) = delete;

    MetricRing<std::int32_t> sampleCpuIcon{SampleIconPoints};  // percent
    MetricRing<std::int32_t> sampleDiskReadIcon{SampleIconPoints};
    MetricRing<std::int32_t> sampleDiskWriteIcon{SampleIconPoints};
    MetricRing<std::uint64_t> sampleNetDownIcon{SampleIconPoints};  // bits per second
    MetricRing<std::uint64_t> sampleNetUpIcon{SampleIconPoints};
    MetricRing<std::uint64_t> sampleNetDown{SampleGraphPoints};
    MetricRing<std::uint64_t> sampleNetUp{SampleGraphPoints};
    MetricRing<double> sampleCpu{SampleGraphPoints};
    std::vector<MetricRing<double>> sampleCores;           // one per logical processor, at least MinSampleCores
    MetricRing<double> sampleDiskRead{SampleGraphPoints};  // bytes per second
    MetricRing<double> sampleDiskWrite{SampleGraphPoints};
    MetricRing<double> sampleDiskReadPercent{SampleGraphPoints};
    MetricRing<double> sampleDiskWritePercent{SampleGraphPoints};
    std::array<GraphSeries, GraphCount> sampleSeries;  // by GraphKind
    std::array<std::int32_t, 4> sampleMemory{};        // a used percentage of each memory level
    std::uint32_t random_state = 12345;
};

/// Gives the icons' rings as many points as the tray's icons have columns.
void ResizeIconSamples(SampleData& data, std::uint32_t iconSize);

/// Makes a ring for each logical processor and points the series at the rings and at `processorClasses`, which must
/// outlive `data`.
void BindSampleSeries(SampleData& data, const std::vector<std::uint8_t>& processorClasses);

/// Fills all rings with new points. `thresholds` must be valid.
void GenerateSamples(SampleData& data, const std::array<std::int32_t, 3>& thresholds);

// The generator. `random_state` is 1 to 2147483646, and so is each of its values in turn.

/// An integer from `low` to `high`, all equally likely; `low` if `high` is below it. They are less than 2147483646
/// apart.
std::int64_t SampleInt(std::uint32_t& random_state, std::int64_t low, std::int64_t high);

/// A rate of up to `maximum`: mostly in the lowest quarter, and in 15 of 100 cases a burst in the upper half.
std::uint64_t SampleRate(std::uint32_t& random_state, std::uint32_t maximum);

/// Pushes `count` points that wander between `low` and `high`.
void SampleWalk(std::uint32_t& random_state, MetricRing<double>& ring, std::size_t count, double low, double high);

}  // namespace kestrane
