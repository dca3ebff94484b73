#pragma once
// From counter instances to disk figures, in two layers: the busiest disk of the whole machine, which the icon shows,
// and the sum over the disks that the user has chosen, which the graph shows.
//
// How busy a disk is comes from its idle time alone. The read and write times pass 100 when requests queue up, so only
// their ratio is used, to split the busy share in two.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "metrics/metric_sample.h"

namespace kestrane {

/// The instance that PDH adds up over all disks.
inline constexpr std::wstring_view TotalInstance = L"_Total";

/// One disk of a sample while it is being put together. The figures are as PDH gives them.
struct DiskInstance {
    std::wstring name;       // such as "0 C:" or "_Total"
    double idlePercent = 0;  // "% Idle Time"
    double readTime = 0;     // "% Disk Read Time"
    double writeTime = 0;    // "% Disk Write Time"
    double readBytes = 0;    // per second
    double writeBytes = 0;   // per second
};

/// What the five wildcard counters gave on one tick.
struct DiskReadings {
    std::vector<CounterValue> idle;
    std::vector<CounterValue> readTime;
    std::vector<CounterValue> writeTime;
    std::vector<CounterValue> readBytes;
    std::vector<CounterValue> writeBytes;
};

/// Shares of the whole time, 0 to 100. Each is rounded by itself, so the two can add up to one more than the busy
/// share.
struct BusySplit {
    std::int32_t readPercent = 0;
    std::int32_t writePercent = 0;
};

/// One instance per idle value, in their order. The other figures are those of the first value of the same name, or 0.
std::vector<DiskInstance> BuildDiskInstances(const DiskReadings& readings);

/// The busy share, split by the ratio of the two times; without any it all counts as reading.
BusySplit SplitBusyTime(const DiskInstance& instance);

/// Writes the busiest disks' names and shares, the number of disks, and whether there is any. The first of equal disks
/// stays, so an idle machine has names too. "_Total" does not count.
void AggregateBusiestDisks(const std::vector<DiskInstance>& instances, MetricSample& sample);

/// One sample per instance whose name starts with a disk number, in their order.
std::vector<DiskSample> BuildDiskSamples(const std::vector<DiskInstance>& instances);

/// Puts one collection of the disk counters into the sample, or nothing into it when `readings` is null because a
/// counter of time could not be read. True when the tick counts: not the first collection of all, for which
/// `diskPrimed` is kept, and not without a disk.
bool AdvanceDiskSample(bool& diskPrimed, const DiskReadings* readings, MetricSample& sample);

/// No disk and no figures of one, for when the counters give none.
void ClearDiskSample(MetricSample& sample);

/// The number at the start of an instance name, 0 to 9999; -1 when there is none or it is greater.
std::int32_t ParseDiskNumber(std::wstring_view name);

/// Speeds added up and greatest shares over the samples that are in both lists. An empty list lets every disk pass; a
/// list of unknown numbers lets none pass.
DiskTotals SumSelectedDisks(const std::vector<DiskSample>& samples, const std::vector<std::int32_t>& chosen,
                            const std::vector<std::uint32_t>& fixedDiskNumbers);

/// "Disco 1 (E: F:)" in the active language; without the brackets when the name holds a number alone.
std::wstring MakeDiskLabel(const DiskSample& sample);

}  // namespace kestrane
