#pragma once
// Adds a tick's reading to the histories that come and go with processors and disks.
#include <cstdint>
#include <vector>

#include "history/metric_ring.h"
#include "history/series.h"
#include "metrics/metric_sample.h"

namespace kestrane {

/// Pushes one percentage per logical processor. If their number differs from the number of rings, all rings are first
/// replaced by empty ones, so an empty reading discards every processor's history.
void PushCoreSamples(std::vector<MetricRing<double>>& coreRings, const std::vector<std::int32_t>& corePercent);

/// The per-disk histories after one more reading: an entry for each disk accepted by SumSelectedDisks, in sample order,
/// with its earlier points if any. A disk that is not accepted, or missing from this one reading, loses its history at
/// once.
std::vector<DiskHistory> NextDiskHistories(std::vector<DiskHistory> former, const std::vector<DiskSample>& samples,
                                           const std::vector<std::int32_t>& chosen,
                                           const std::vector<std::uint32_t>& fixedDiskNumbers);

}  // namespace kestrane
