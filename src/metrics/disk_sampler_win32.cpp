#include "metrics/samplers_win32.h"

#include <windows.h>

#include "metrics/disk_rules.h"

namespace kestrane {
namespace {

/// False if a time counter cannot be read.
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
    ClearDiskSample(sample);
    if (!counters.diskReady || PdhCollectQueryData(counters.diskQuery.Get()) != ERROR_SUCCESS) return false;
    DiskReadings readings;
    const bool read = ReadDisks(counters, readings);
    return AdvanceDiskSample(counters.diskPrimed, read ? &readings : nullptr, sample);
}

}  // namespace kestrane
