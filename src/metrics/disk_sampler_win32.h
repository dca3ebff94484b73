#pragma once
// The disks' reading, from five wildcard counters.
#include "metrics/metric_sample.h"
#include "metrics/pdh_counters_win32.h"

namespace kestrane {

/// Fills the disk figures of the sample. True when the tick counts: not the first call, and not when there is no disk
/// or the counters of time fail. Then `diskValid` is false and `disks` is empty, except that the first call already
/// gives figures. Without the counters of bytes the speeds are 0.
bool SampleDisks(PdhCounters& counters, MetricSample& sample);

}  // namespace kestrane
