#pragma once
// Sampling of the four metrics: one function each, called by its tick.
#include <cstdint>
#include <string>
#include <vector>

#include "metrics/metric_sample.h"
#include "metrics/net_rules.h"
#include "metrics/pdh_counters_win32.h"

namespace kestrane {

/// Uses the performance counters if they work, else GetSystemTimes. Replaces `sample.cpuPercent` and
/// `sample.corePercent`, the latter with an empty vector if there are no per-processor figures. True when the tick
/// counts, which GetSystemTimes alone decides: not on the first call.
bool SampleCpu(PdhCounters& counters, MetricSample& sample);

/// The busy share since the last call, by GetSystemTimes. True if there was a last call; otherwise, and on failure,
/// `percent` is unchanged. A failure keeps the last reading as the baseline.
bool SampleCpuTimes(PdhCounters& counters, std::int32_t& percent);

/// Fills the disk figures of the sample from five wildcard counters. True when the tick counts: not on the first call,
/// which already gives figures, and not when there is no disk or a time counter fails, which leaves `diskValid` false
/// and `disks` empty. If a byte counter fails, its speeds are 0.
bool SampleDisks(PdhCounters& counters, MetricSample& sample);

/// Fills the three memory fields. On failure the last figures stay. Memory has no history, so every reading counts.
void SampleMemory(MetricSample& sample);

/// One tick for the chosen `interfaces`, with their stored names in `aliases`; empty means all connections. Octets are
/// read on every tick, addresses once a minute. If the interface table cannot be read, nothing counts on this tick and
/// chosen interfaces are disconnected.
NetSample SampleNetwork(NetSampler& sampler, const std::vector<std::uint64_t>& interfaces,
                        const std::vector<std::wstring>& aliases);

/// All interfaces with fresh addresses, for the user to choose from. Empty on failure.
std::vector<NetRow> ListInterfaces(NetSampler& sampler);

/// All interfaces in the system's order, with the addresses that the sampler has. Empty on failure.
std::vector<NetRow> ReadInterfaceRows(const NetSampler& sampler);

/// Queries the addresses again. On failure the old ones stay for another AddressLifetimeMs.
void RefreshAdapterAddresses(NetSampler& sampler);

}  // namespace kestrane
