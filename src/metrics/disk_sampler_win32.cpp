#include "metrics/disk_sampler_win32.h"

#include <windows.h>

#include <utility>

#include "metrics/disk_rules.h"

namespace kestrane {
namespace {

/// False when a counter of time cannot be read.
bool ReadDisks(const PdhCounters& counters, DiskReadings& readings) {
    if (!ReadCounterArray(counters.diskIdleCounter, readings.idle) ||
        !ReadCounterArray(counters.diskReadTimeCounter, readings.readTime) ||
        !ReadCounterArray(counters.diskWriteTimeCounter, readings.writeTime)) {
        return false;
    }
    ReadCounterArray(counters.diskReadBytesCounter, readings.readBytes);
    ReadCounterArray(counters.diskWriteBytesCounter, readings.writeBytes);
    return true;
}

}  // namespace

bool SampleDisks(PdhCounters& counters, MetricSample& sample) {
    sample.diskValid = false;
    sample.disks.clear();
    if (!counters.diskReady || PdhCollectQueryData(counters.diskQuery) != ERROR_SUCCESS) return false;
    // From here on a failure still counts as the first call.
    const bool primed = std::exchange(counters.diskPrimed, true);
    DiskReadings readings;
    if (!ReadDisks(counters, readings)) return false;
    const std::vector<DiskInstance> instances = BuildDiskInstances(readings);
    AggregateBusiestDisks(instances, sample);
    sample.disks = BuildDiskSamples(instances);
    return primed && sample.diskValid;
}

}  // namespace kestrane
