#pragma once
// The processor's reading: from the performance counters where they work, from GetSystemTimes where they do not.
#include <cstdint>

#include "metrics/metric_sample.h"
#include "metrics/pdh_counters_win32.h"

namespace kestrane {

/// Replaces `sample.cpuPercent` and `sample.corePercent`, the latter by an empty vector when there are no figures per
/// processor. True when the tick counts, which GetSystemTimes alone decides: not in the first call.
bool SampleCpu(PdhCounters& counters, MetricSample& sample);

/// The busy share since the last call, by GetSystemTimes. True when there was a last call; otherwise, and on failure,
/// `percent` is as it was. A failure keeps the last reading.
bool SampleCpuTimes(PdhCounters& counters, std::int32_t& percent);

}  // namespace kestrane
