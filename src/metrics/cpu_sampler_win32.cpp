#include "metrics/samplers_win32.h"

#include <windows.h>

#include <utility>
#include <vector>

#include "metrics/counter_items.h"
#include "metrics/cpu_rules.h"

namespace kestrane {
namespace {

std::uint64_t TimeValue(const FILETIME& time) {
    return (static_cast<std::uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
}

/// One collection serves both counters. False if there is no usable total.
bool ReadTotalCounter(const PdhCounters& counters, std::int32_t& percent) {
    if (!counters.cpuQuery || PdhCollectQueryData(counters.cpuQuery.Get()) != ERROR_SUCCESS) return false;
    PDH_FMT_COUNTERVALUE value{};
    if (PdhGetFormattedCounterValue(counters.cpuTotalCounter, CounterFormat, nullptr, &value) != ERROR_SUCCESS) {
        return false;
    }
    if (!IsUsableStatus(value.CStatus)) return false;
    percent = RoundPercent(value.doubleValue);
    return true;
}

}  // namespace

bool SampleCpu(PdhCounters& counters, MetricSample& sample) {
    std::int32_t percent = 0;
    const bool counts = SampleCpuTimes(counters, percent);
    std::vector<std::int32_t> cores;
    if (ReadTotalCounter(counters, percent) && counters.cpuCoreCounter != nullptr) {
        std::vector<CounterValue> values;
        if (ReadCounterArray(counters.cpuCoreCounter, values)) cores = CoresFromInstances(values);
    }
    sample.cpuPercent = percent;
    sample.corePercent = std::move(cores);
    return counts;
}

bool SampleCpuTimes(PdhCounters& counters, std::int32_t& percent) {
    FILETIME idleTime{};
    FILETIME kernelTime{};
    FILETIME userTime{};
    if (GetSystemTimes(&idleTime, &kernelTime, &userTime) == FALSE) return false;
    return AdvanceCpuTimes(counters.cpuTimes, TimeValue(idleTime), TimeValue(kernelTime) + TimeValue(userTime),
                           percent);
}

}  // namespace kestrane
