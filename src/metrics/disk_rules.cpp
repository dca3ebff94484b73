#include "metrics/disk_rules.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "metrics/cpu_rules.h"
#include "text/number_text.h"
#include "text/text_util.h"
#include "text/translation.h"

namespace kestrane {
namespace {

constexpr std::int32_t GreatestDiskNumber = 9999;
/// Keeps sums and products of figures finite.
constexpr double GreatestFigure = 1e300;

/// The figure made safe for arithmetic: not negative, not infinite, and 0 for NaN.
double RaisedToZero(double value) {
    return value > 0 ? std::min(value, GreatestFigure) : 0;
}

double ValueNamed(const std::vector<CounterValue>& values, const std::wstring& name) {
    const auto found = std::ranges::find(values, name, &CounterValue::name);
    return found != values.end() ? found->value : 0;
}

/// Compares by value, whether or not `Number` is signed.
template <typename Number>
bool Passes(const std::vector<Number>& list, std::int32_t number) {
    const auto same = [number](Number element) { return std::cmp_equal(element, number); };
    return list.empty() || std::ranges::any_of(list, same);
}

/// Takes the share and the name if the share is greater or there is no name yet.
void TakeBusier(std::int32_t share, const std::wstring& name, std::int32_t& greatest, std::wstring& busiest) {
    if (share <= greatest && !busiest.empty()) return;
    greatest = share;
    busiest = name;
}

}  // namespace

std::vector<DiskInstance> BuildDiskInstances(const DiskReadings& readings) {
    std::vector<DiskInstance> instances;
    instances.reserve(readings.idle.size());
    for (const CounterValue& idle : readings.idle) {
        instances.push_back({.name = idle.name,
                             .idlePercent = idle.value,
                             .readTime = ValueNamed(readings.readTime, idle.name),
                             .writeTime = ValueNamed(readings.writeTime, idle.name),
                             .readBytes = ValueNamed(readings.readBytes, idle.name),
                             .writeBytes = ValueNamed(readings.writeBytes, idle.name)});
    }
    return instances;
}

BusySplit SplitBusyTime(const DiskInstance& instance) {
    const double busy = 100 - std::clamp(instance.idlePercent, 0.0, 100.0);
    if (!(busy > 0)) return {};  // or NaN
    const double read = RaisedToZero(instance.readTime);
    const double write = RaisedToZero(instance.writeTime);
    const double sum = read + write;
    if (!(sum > 0)) return {.readPercent = RoundPercent(busy), .writePercent = 0};
    return {.readPercent = RoundPercent(read * busy / sum), .writePercent = RoundPercent(write * busy / sum)};
}

void AggregateBusiestDisks(const std::vector<DiskInstance>& instances, MetricSample& sample) {
    sample.diskReadPercent = 0;
    sample.diskWritePercent = 0;
    sample.busiestReadDisk.clear();
    sample.busiestWriteDisk.clear();
    sample.diskInstanceCount = 0;
    for (const DiskInstance& instance : instances) {
        if (instance.name == TotalInstance) continue;
        ++sample.diskInstanceCount;
        const BusySplit split = SplitBusyTime(instance);
        TakeBusier(split.readPercent, instance.name, sample.diskReadPercent, sample.busiestReadDisk);
        TakeBusier(split.writePercent, instance.name, sample.diskWritePercent, sample.busiestWriteDisk);
    }
    sample.diskValid = sample.diskInstanceCount > 0;
}

std::vector<DiskSample> BuildDiskSamples(const std::vector<DiskInstance>& instances) {
    std::vector<DiskSample> samples;
    for (const DiskInstance& instance : instances) {
        const std::int32_t number = ParseDiskNumber(instance.name);
        if (number < 0) continue;
        const BusySplit split = SplitBusyTime(instance);
        samples.push_back({.number = number,
                           .name = instance.name,
                           .readBytes = RaisedToZero(instance.readBytes),
                           .writeBytes = RaisedToZero(instance.writeBytes),
                           .readPercent = split.readPercent,
                           .writePercent = split.writePercent});
    }
    return samples;
}

bool AdvanceDiskSample(bool& diskPrimed, const DiskReadings* readings, MetricSample& sample) {
    ClearDiskSample(sample);
    // A failure still counts as the first collection.
    const bool primed = std::exchange(diskPrimed, true);
    if (readings == nullptr) return false;
    const std::vector<DiskInstance> instances = BuildDiskInstances(*readings);
    AggregateBusiestDisks(instances, sample);
    sample.disks = BuildDiskSamples(instances);
    return primed && sample.diskValid;
}

void ClearDiskSample(MetricSample& sample) {
    sample.diskValid = false;
    sample.disks.clear();
}

std::int32_t ParseDiskNumber(std::wstring_view name) {
    if (name.empty() || !IsDigit(name.front())) return -1;
    std::int32_t number = 0;
    for (const wchar_t c : name) {
        if (!IsDigit(c)) break;
        number = number * 10 + static_cast<std::int32_t>(c - L'0');
        if (number > GreatestDiskNumber) return -1;
    }
    return number;
}

DiskTotals SumSelectedDisks(const std::vector<DiskSample>& samples, const std::vector<std::int32_t>& chosen,
                            const std::vector<std::uint32_t>& fixedDiskNumbers) {
    DiskTotals totals;
    for (const DiskSample& sample : samples) {
        if (sample.number < 0 || !Passes(fixedDiskNumbers, sample.number) || !Passes(chosen, sample.number)) continue;
        totals.readBytes += RaisedToZero(sample.readBytes);
        totals.writeBytes += RaisedToZero(sample.writeBytes);
        totals.readPercent = std::max(totals.readPercent, sample.readPercent);
        totals.writePercent = std::max(totals.writePercent, sample.writePercent);
        ++totals.diskCount;
    }
    return totals;
}

std::wstring MakeDiskLabel(const DiskSample& sample) {
    std::wstring label = FormatText(L"Disco {0}", {FormatInteger(sample.number)});
    const std::size_t space = sample.name.find(L' ');
    if (space == std::wstring::npos || space + 1 == sample.name.size()) return label;
    return label + L" (" + sample.name.substr(space + 1) + L")";
}

}  // namespace kestrane
