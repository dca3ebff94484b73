#pragma once
// The readings of the four metrics, one operation a metric, as a tick calls them.
#include <cstdint>
#include <string>
#include <vector>

#include "metrics/metric_sample.h"
#include "metrics/net_rules.h"
#include "metrics/pdh_counters_win32.h"

namespace kestrane {

/// From the performance counters where they work, from GetSystemTimes where they do not. Replaces `sample.cpuPercent`
/// and `sample.corePercent`, the latter by an empty vector when there are no figures per processor. True when the tick
/// counts, which GetSystemTimes alone decides: not in the first call.
bool SampleCpu(PdhCounters& counters, MetricSample& sample);

/// The busy share since the last call, by GetSystemTimes. True when there was a last call; otherwise, and on failure,
/// `percent` is as it was. A failure keeps the last reading.
bool SampleCpuTimes(PdhCounters& counters, std::int32_t& percent);

/// Fills the disk figures of the sample from five wildcard counters. True when the tick counts: not the first call, and
/// not when there is no disk or the counters of time fail. Then `diskValid` is false and `disks` is empty, except that
/// the first call already gives figures. Without the counters of bytes the speeds are 0.
bool SampleDisks(PdhCounters& counters, MetricSample& sample);

/// Fills the three memory fields. When the system does not answer, the last figures stay. Memory has no history, so
/// every reading counts.
void SampleMemory(MetricSample& sample);

/// One tick for the chosen `interfaces`, with their stored names in `aliases`; empty means all connections. Octets are
/// read on every tick, addresses once a minute. When the system gives no table of interfaces, nothing counts on this
/// tick, and what is chosen is not connected.
NetSample SampleNetwork(NetSampler& sampler, const std::vector<std::uint64_t>& interfaces,
                        const std::vector<std::wstring>& aliases);

/// All interfaces with fresh addresses, for the user to choose from. Empty when the system does not answer.
std::vector<NetRow> ListInterfaces(NetSampler& sampler);

/// All interfaces in the system's order, with the addresses that the sampler has. Empty when the system does not
/// answer.
std::vector<NetRow> ReadInterfaceRows(const NetSampler& sampler);

/// Asks for the addresses anew. On failure the old ones stay, for as long as fresh ones would.
void RefreshAdapterAddresses(NetSampler& sampler);

}  // namespace kestrane
