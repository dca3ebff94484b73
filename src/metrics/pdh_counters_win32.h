#pragma once
// The performance counters of processors and disks: two queries, opened once and read on every tick. A counter that
// cannot be added stays missing until the program is started again.
#include <windows.h>

#include <pdh.h>

#include <cstdint>
#include <vector>

#include "metrics/metric_sample.h"

namespace kestrane {

/// Values are read as double and without the counter's own cap at 100.
inline constexpr DWORD CounterFormat = PDH_FMT_DOUBLE | PDH_FMT_NOCAP100;

/// What the processor and disk samplers keep between ticks.
struct PdhCounters {
    bool cpuBaseline = false;                // a GetSystemTimes reading has been stored
    bool diskPrimed = false;                 // a disk sample has been taken before
    std::uint64_t prevIdleTime = 0;          // of the last reading, in units of 100 ns
    std::uint64_t prevTotalTime = 0;         // kernel plus user time; kernel time includes idle time
    PDH_HQUERY cpuQuery = nullptr;           // null: no processor counters
    PDH_HCOUNTER cpuTotalCounter = nullptr;  // the whole machine
    PDH_HCOUNTER cpuCoreCounter = nullptr;   // wildcard; null: no figures per processor
    PDH_HQUERY diskQuery = nullptr;          // null: no disk counters
    PDH_HCOUNTER diskIdleCounter = nullptr;  // wildcards, all five
    PDH_HCOUNTER diskReadTimeCounter = nullptr;
    PDH_HCOUNTER diskWriteTimeCounter = nullptr;
    PDH_HCOUNTER diskReadBytesCounter = nullptr;
    PDH_HCOUNTER diskWriteBytesCounter = nullptr;
    bool diskReady = false;  // all five disk counters were added
};

/// Opens both queries and takes their first collection. What cannot be opened stays null and is sampled without.
void OpenPdhCounters(PdhCounters& counters);

/// Closes the queries, and with them their counters.
void ClosePdhCounters(PdhCounters& counters);

/// Reads all instances of a wildcard counter, in the order given, leaving out those whose status is bad. False when
/// the counter cannot be read; `values` is then as it was. A readable counter without instances gives an empty vector.
bool ReadCounterArray(PDH_HCOUNTER counter, std::vector<CounterValue>& values);

}  // namespace kestrane
