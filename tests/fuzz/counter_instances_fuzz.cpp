// Performance counters with any names and figures: no figure leaves its range, and no name is lost or invented.
#include <algorithm>
#include <cmath>
#include <cwchar>
#include <ranges>

#include "fuzz/fuzz_target.h"
#include "metrics/cpu_rules.h"
#include "metrics/disk_rules.h"
#include "metrics/value_text.h"
#include "text/translation.h"

namespace kestrane {
namespace {

using fuzz::Require;

/// Lines "name=figure", distributed in turn over the five disk counters.
DiskReadings MakeReadings(fuzz::Bytes input) {
    DiskReadings readings;
    const std::array counters{&readings.idle, &readings.readTime, &readings.writeTime, &readings.readBytes,
                              &readings.writeBytes};
    std::size_t turn = 0;
    for (const std::wstring& line : fuzz::WideLines(input)) {
        const std::size_t equals = std::min(line.rfind(L'='), line.size());
        const double figure = equals < line.size() ? std::wcstod(line.c_str() + equals + 1, nullptr) : 0;
        counters[turn++ % counters.size()]->push_back({line.substr(0, equals), figure});
    }
    return readings;
}

bool IsPercent(std::int32_t value) {
    return value >= 0 && value <= 100;
}

bool IsRate(double value) {
    return std::isfinite(value) && value >= 0;
}

void CheckProcessors(const std::vector<CounterValue>& values) {
    const std::vector<std::int32_t> cores = CoresFromInstances(values);
    Require(cores.size() <= std::size_t{ProcessorGroups} * ProcessorsPerGroup);
    Require(std::ranges::all_of(cores, IsPercent));
    for (const CounterValue& value : values) {
        const std::int32_t number = ParseProcessorInstance(value.name);
        Require(number >= -1 && number < static_cast<std::int32_t>(cores.size()));
    }
}

/// The two parts add up to the busy share, each rounded on its own. Times so large that a product overflows are exempt.
void CheckSplit(const DiskInstance& instance) {
    if (!(instance.readTime < 1e300 && instance.writeTime < 1e300)) return;
    const BusySplit split = SplitBusyTime(instance);
    Require(std::abs(split.readPercent + split.writePercent - RoundPercent(100 - instance.idlePercent)) <= 1);
}

void CheckBusiest(const std::vector<DiskInstance>& instances) {
    MetricSample sample;
    AggregateBusiestDisks(instances, sample);
    Require(IsPercent(sample.diskReadPercent) && IsPercent(sample.diskWritePercent));
    Require(sample.diskInstanceCount <= instances.size());
    for (const DiskInstance& instance : instances)
        CheckSplit(instance);
    Require(sample.diskValid == (sample.diskInstanceCount > 0));
    Require(!DiskTooltipText(sample, {}, L'.').empty());
}

void CheckSamples(const std::vector<DiskSample>& samples) {
    for (const DiskSample& sample : samples) {
        Require(sample.number >= 0 && sample.number == ParseDiskNumber(sample.name));
        Require(IsRate(sample.readBytes) && IsRate(sample.writeBytes));
        Require(IsPercent(sample.readPercent) && IsPercent(sample.writePercent));
        Require(!MakeDiskLabel(sample).empty());
        Require(!FormatByteRate(sample.readBytes, L',').empty());
    }
    const DiskTotals totals = SumSelectedDisks(samples, {0, 1}, {1, 2});
    Require(totals.diskCount <= static_cast<std::int32_t>(samples.size()));
    Require(IsRate(totals.readBytes) && IsRate(totals.writeBytes));
    Require(IsPercent(totals.readPercent) && IsPercent(totals.writePercent));
}

}  // namespace
}  // namespace kestrane

FUZZ_TARGET(counter_instances) {
    using namespace kestrane;
    const DiskReadings readings = MakeReadings(input);
    for (const auto* values : {&readings.idle, &readings.readTime, &readings.writeTime})
        CheckProcessors(*values);
    const std::vector<DiskInstance> instances = BuildDiskInstances(readings);
    Require(instances.size() == readings.idle.size());
    CheckBusiest(instances);
    CheckSamples(BuildDiskSamples(instances));
}
