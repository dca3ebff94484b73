#pragma once
// The network's reading: the octets of all interfaces on every tick, their addresses once a minute.
#include <cstdint>
#include <string>
#include <vector>

#include "metrics/net_rules.h"

namespace kestrane {

/// One tick for the chosen `interfaces`, with their stored names in `aliases`; empty means all connections. When the
/// system gives no table of interfaces, nothing counts on this tick, and what is chosen is not connected.
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
