#include "history/metric_history.h"

#include <algorithm>
#include <utility>

#include "metrics/disk_rules.h"

namespace kestrane {
namespace {

/// The disk's entry, moved out of `former`, or a new one.
DiskHistory TakeHistory(std::vector<DiskHistory>& former, std::int32_t number) {
    const auto found = std::find_if(former.begin(), former.end(),
                                    [number](const DiskHistory& entry) { return entry.number == number; });
    if (found == former.end()) {
        DiskHistory fresh;
        fresh.number = number;
        return fresh;
    }
    DiskHistory entry = std::move(*found);
    former.erase(found);
    return entry;
}

}  // namespace

void PushCoreSamples(std::vector<MetricRing<double>>& coreRings, const std::vector<std::int32_t>& corePercent) {
    if (coreRings.size() != corePercent.size()) {
        coreRings.assign(corePercent.size(), MetricRing<double>(CoreSeriesCapacity));
    }
    for (std::size_t i = 0; i < corePercent.size(); ++i) {
        PushSample(coreRings[i], static_cast<double>(corePercent[i]));
    }
}

std::vector<DiskHistory> NextDiskHistories(std::vector<DiskHistory> former, const std::vector<DiskSample>& samples,
                                           const std::vector<std::int32_t>& chosen,
                                           const std::vector<std::uint32_t>& fixedDiskNumbers) {
    std::vector<DiskHistory> next;
    for (const DiskSample& sample : samples) {
        const DiskTotals alone = SumSelectedDisks({sample}, chosen, fixedDiskNumbers);
        if (alone.diskCount == 0) continue;
        DiskHistory entry = TakeHistory(former, sample.number);
        entry.label = MakeDiskLabel(sample);
        PushSample(entry.read, alone.readBytes);
        PushSample(entry.write, alone.writeBytes);
        next.push_back(std::move(entry));
    }
    return next;
}

}  // namespace kestrane
