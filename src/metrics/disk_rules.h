#pragma once
// Disk figures from counter instances, in two layers: the busiest disk of the whole machine, shown by the icon, and the
// sum over the disks that the user has chosen, shown by the graph.
//
// A disk's busy share comes from its idle time alone. The read and write times exceed 100 when requests queue up, so
// only their ratio is used, to split the busy share in two.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "metrics/metric_sample.h"

namespace kestrane {

/// The instance in which PDH adds up all disks.
inline constexpr std::wstring_view TotalInstance = L"_Total";

/// One disk of a sample under construction. The figures are as PDH gives them.
struct DiskInstance {
    std::wstring name;       // such as "0 C:" or "_Total"
    double idlePercent = 0;  // "% Idle Time"
    double readTime = 0;     // "% Disk Read Time"
    double writeTime = 0;    // "% Disk Write Time"
    double readBytes = 0;    // per second
    double writeBytes = 0;   // per second
};

/// The values of the five wildcard counters on one tick.
struct DiskReadings {
    std::vector<CounterValue> idle;
    std::vector<CounterValue> readTime;
    std::vector<CounterValue> writeTime;
    std::vector<CounterValue> readBytes;
    std::vector<CounterValue> writeBytes;
};

/// Percent of elapsed time, 0 to 100. Each is rounded on its own, so the two can add up to one more than the busy
/// share.
struct BusySplit {
    std::int32_t readPercent = 0;
    std::int32_t writePercent = 0;
};

/// One instance per idle value, in order. The other figures come from the first value with the same name, or are 0.
std::vector<DiskInstance> BuildDiskInstances(const DiskReadings& readings);

/// The busy share, split in the ratio of read to write time; if both are 0, all of it counts as reading.
BusySplit SplitBusyTime(const DiskInstance& instance);

/// Sets the busiest disks' names and shares, the number of disks, and `diskValid`, true if there is any. The first of
/// equal disks wins, so an idle machine has names too. "_Total" is not a disk.
void AggregateBusiestDisks(const std::vector<DiskInstance>& instances, MetricSample& sample);

/// One sample per instance whose name starts with a disk number, in order.
std::vector<DiskSample> BuildDiskSamples(const std::vector<DiskInstance>& instances);

/// Puts one collection of the disk counters into the sample, or leaves it without disks when `readings` is null because
/// a time counter could not be read. True when the tick counts: not on the first collection ever, which `diskPrimed`
/// tracks, and not without a disk.
bool AdvanceDiskSample(bool& diskPrimed, const DiskReadings* readings, MetricSample& sample);

/// Removes the disks from the sample, for when the counters give none.
void ClearDiskSample(MetricSample& sample);

/// The number at the start of an instance name, 0 to 9999; -1 if there is none or it is greater.
std::int32_t ParseDiskNumber(std::wstring_view name);

/// The sum of the speeds and the greatest shares over the samples that are in both lists. An empty list accepts every
/// disk.
DiskTotals SumSelectedDisks(const std::vector<DiskSample>& samples, const std::vector<std::int32_t>& chosen,
                            const std::vector<std::uint32_t>& fixedDiskNumbers);

/// "Disco 1 (E: F:)" in the active language; without the brackets if the name is only a number.
std::wstring MakeDiskLabel(const DiskSample& sample);

}  // namespace kestrane
