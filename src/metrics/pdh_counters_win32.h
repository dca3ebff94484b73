#pragma once
// The performance counters of processors and disks: two queries, opened once and read on every tick. A counter that
// cannot be added stays missing until the program restarts.
#include <windows.h>

#include <pdh.h>

#include <vector>

#include "base/owned.h"
#include "metrics/cpu_rules.h"
#include "metrics/metric_sample.h"

namespace kestrane {

/// Values are doubles, without PDH's cap at 100.
inline constexpr DWORD CounterFormat = PDH_FMT_DOUBLE | PDH_FMT_NOCAP100;

struct QueryTraits {
    using Handle = PDH_HQUERY;
    static constexpr Handle None() { return nullptr; }
    static void Close(Handle query) { PdhCloseQuery(query); }
};
/// A query; closing it also removes its counters.
using UniqueQuery = Owned<QueryTraits>;

/// The state of the CPU and disk samplers between ticks.
struct PdhCounters {
    CpuTimes cpuTimes;                       // of the last GetSystemTimes reading
    bool diskPrimed = false;                 // a disk sample has been taken
    UniqueQuery cpuQuery;                    // none: no processor counters
    PDH_HCOUNTER cpuTotalCounter = nullptr;  // the whole machine
    PDH_HCOUNTER cpuCoreCounter = nullptr;   // wildcard; null: no figures per processor
    UniqueQuery diskQuery;                   // none: no disk counters
    PDH_HCOUNTER diskIdleCounter = nullptr;  // wildcards, all five
    PDH_HCOUNTER diskReadTimeCounter = nullptr;
    PDH_HCOUNTER diskWriteTimeCounter = nullptr;
    PDH_HCOUNTER diskReadBytesCounter = nullptr;
    PDH_HCOUNTER diskWriteBytesCounter = nullptr;
    bool diskReady = false;  // all five disk counters were added
};

/// Opens both queries and makes their first collection. Whatever cannot be opened stays empty, and sampling does
/// without it.
void OpenPdhCounters(PdhCounters& counters);

/// Reads all instances of a wildcard counter in PDH's order, without those of bad status. False if the counter cannot
/// be read; `values` is then unchanged. A readable counter without instances gives an empty vector.
bool ReadCounterArray(PDH_HCOUNTER counter, std::vector<CounterValue>& values);

}  // namespace kestrane
