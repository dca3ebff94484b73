#pragma once
// The arithmetic of the CPU figures: whole percentages from time differences and counter values.
#include <cstdint>
#include <string_view>
#include <vector>

#include "metrics/metric_sample.h"

namespace kestrane {

/// A processor group holds at most 64 processors; group numbers up to 63 are accepted.
inline constexpr std::int32_t ProcessorsPerGroup = 64;
inline constexpr std::int32_t ProcessorGroups = 64;

/// The processor times kept between two ticks, in units of 100 ns.
struct CpuTimes {
    bool cpuBaseline = false;  // a reading has been stored
    std::uint64_t prevIdleTime = 0;
    std::uint64_t prevTotalTime = 0;  // kernel plus user time; kernel time includes idle time
};

/// Stores a reading. True when the tick counts, that is, when there was an earlier reading: `percent` is then the busy
/// share of the time between the two. Otherwise `percent` is unchanged.
bool AdvanceCpuTimes(CpuTimes& times, std::uint64_t idleTime, std::uint64_t totalTime, std::int32_t& percent);

/// The busy share of a time span in whole percent, 0 to 100. `totalDelta` includes idle time. An empty span counts as
/// idle.
std::int32_t BusyPercent(std::uint64_t idleDelta, std::uint64_t totalDelta);

/// Rounded to nearest and clamped to 0..100. NaN gives 0.
std::int32_t RoundPercent(double value);

/// The logical number, group * 64 + number, of a counter instance such as "1,5". -1 for any other text, including
/// "_Total" and "0,_Total", and for a group or number above 63.
std::int32_t ParseProcessorInstance(std::wstring_view name);

/// The percentage of each processor in `values`, indexed by logical number. A number without an instance gives 0; the
/// size is at most 64 * 64.
std::vector<std::int32_t> CoresFromInstances(const std::vector<CounterValue>& values);

}  // namespace kestrane
