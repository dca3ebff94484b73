#pragma once
// What a tick's reading does to the histories that come and go with the machine's processors and disks.
#include <cstdint>
#include <vector>

#include "history/metric_ring.h"
#include "history/series.h"
#include "metrics/metric_sample.h"

namespace kestrane {

/// Pushes one percentage per logical processor. When their number differs from the number of rings, all rings are
/// replaced by new empty ones first; so an empty reading discards the history of every processor.
void PushCoreSamples(std::vector<MetricRing<double>>& coreRings, const std::vector<std::int32_t>& corePercent);

/// The per-disk histories after one more reading: an entry for each disk that passes the filter of SumSelectedDisks, in
/// the order of the samples, with its former points if it had any. A disk that is left out, or missing from this one
/// reading, loses its history at once.
std::vector<DiskHistory> NextDiskHistories(std::vector<DiskHistory> former, const std::vector<DiskSample>& samples,
                                           const std::vector<std::int32_t>& chosen,
                                           const std::vector<std::uint32_t>& fixedDiskNumbers);

}  // namespace kestrane
