#pragma once
// The latest CPU, disk, memory and network figures, written by the samplers and only read by everything else.
#include <cstdint>
#include <string>
#include <vector>

namespace kestrane {

/// One instance of a wildcard counter, with the name that PDH gives it.
struct CounterValue {
    std::wstring name;
    double value = 0;
};

/// The figures of one physical disk.
struct DiskSample {
    std::int32_t number = 0;        // physical disk number, taken from the instance name
    std::wstring name;              // instance name, such as "0 C:"
    double readBytes = 0;           // bytes per second, never negative
    double writeBytes = 0;          // bytes per second, never negative
    std::int32_t readPercent = 0;   // percent of elapsed time spent reading, 0 to 100
    std::int32_t writePercent = 0;  // percent of elapsed time spent writing, 0 to 100
};

/// The figures of the disks that the user has chosen.
struct DiskTotals {
    double readBytes = 0;           // bytes per second, sum
    double writeBytes = 0;          // bytes per second, sum
    std::int32_t readPercent = 0;   // greatest of them
    std::int32_t writePercent = 0;  // greatest of them
    std::int32_t diskCount = 0;     // number of disks in these figures
};

/// The latest CPU, disk and memory reading. The disk percentages are those of the busiest disk in the machine, whatever
/// the user has chosen.
struct MetricSample {
    std::int32_t cpuPercent = 0;            // 0 to 100
    std::vector<std::int32_t> corePercent;  // 0 to 100, by logical number: group * 64 + number; gaps stay 0
    bool diskValid = false;                 // there is a disk and its counters could be read
    std::int32_t diskReadPercent = 0;       // 0 to 100
    std::int32_t diskWritePercent = 0;      // 0 to 100
    std::wstring busiestReadDisk;           // instance names, such as "0 C:"; empty without a disk
    std::wstring busiestWriteDisk;
    std::uint32_t diskInstanceCount = 0;  // all disks of the machine, even those without a number
    std::vector<DiskSample> disks;        // those with a number; empty when the last reading failed
    std::uint32_t memoryPercent = 0;      // 0 to 100
    std::uint64_t memoryTotalBytes = 0;
    std::uint64_t memoryAvailableBytes = 0;
};

/// The latest network reading, as the tooltip, the icon and the graph use it.
struct NetSample {
    bool hasRates = false;   // the two rates below are valid
    bool connected = false;  // a chosen interface exists and is up
    std::uint64_t downBitsPerSec = 0;
    std::uint64_t upBitsPerSec = 0;
    std::wstring label;  // the connection's name in the tooltip; may be empty
};

}  // namespace kestrane
