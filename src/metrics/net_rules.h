#pragma once
// Rates from interface tables. A tick selects the interfaces to count, compares their octets with the last tick's, and
// divides by the time actually elapsed, so that a late tick or a sleep gives a true average, never a spike.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "metrics/metric_sample.h"

namespace kestrane {

/// One interface as read on one tick.
struct NetRow {
    std::uint64_t key = 0;  // its LUID value
    std::wstring alias;     // the name that Windows shows the user
    std::wstring ip;        // its IPv4 address as text, or empty
    bool operUp = false;
    bool hardware = false;
    bool filter = false;  // a filter driver on another interface, repeating its octets
    bool loopback = false;
    bool tunnel = false;
    std::uint64_t inOctets = 0;
    std::uint64_t outOctets = 0;
};

struct NetCounters {
    std::uint64_t key = 0;
    std::uint64_t inOctets = 0;
    std::uint64_t outOctets = 0;
};

struct AdapterAddress {
    std::uint64_t key = 0;
    std::wstring ip;  // empty if the address is not IPv4
};

/// The result of a selection.
struct NetView {
    bool found = false;           // a chosen interface exists; always true for all connections
    bool connected = false;       // a chosen interface is up; always true for all connections
    std::uint64_t inOctets = 0;   // sum over the counted interfaces
    std::uint64_t outOctets = 0;  // the same
    std::wstring label;
    std::vector<NetCounters> counters;  // one per counted interface
};

/// The sampler's state between ticks.
struct NetSampler {
    bool hasBaseline = false;             // lastCounters is valid
    std::int32_t settleTicks = 0;         // ticks still to wait before rates are computed
    std::vector<std::uint64_t> lastKeys;  // the chosen interfaces of the last tick
    std::vector<NetCounters> lastCounters;
    std::uint64_t lastTick = 0;  // GetTickCount64, like addressesTick
    std::vector<AdapterAddress> addresses;
    std::uint64_t addressesTick = 0;  // when the addresses were last queried; 0 means never
};

struct OctetSums {
    std::uint64_t in = 0;
    std::uint64_t out = 0;
};

/// Ticks without rates at the start and after each change of the chosen interfaces.
inline constexpr std::int32_t SettleTicks = 2;
/// Addresses are only listed in a dialog, so they may be this old.
inline constexpr std::uint64_t AddressLifetimeMs = 60000;

/// The interfaces to count. An empty `interfaces` means all real connections: hardware that is up and neither filter
/// nor loopback. Otherwise each of `interfaces` is found by its key or, failing that, by its name in the parallel
/// `aliases` (which may be shorter); those that are up count, and all are named in the label.
NetView SelectInterfaces(const std::vector<NetRow>& rows, const std::vector<std::uint64_t>& interfaces,
                         const std::vector<std::wstring>& aliases);

/// The counters' total growth over the interfaces in both lists. A counter that has fallen was reset and adds nothing.
OctetSums SumCounterDeltas(const std::vector<NetCounters>& previous, const std::vector<NetCounters>& current);

/// Rounded to nearest; 0 if no time has passed; saturates at 2^64 - 1.
std::uint64_t BitsPerSecond(std::uint64_t octets, std::uint64_t elapsedMs);

/// Advances the state to the tick at `nowMs` and returns the reading, without rates until the state has settled.
NetSample AdvanceNetSampler(NetSampler& sampler, const NetView& view, const std::vector<std::uint64_t>& interfaces,
                            std::uint64_t nowMs);

/// True if the addresses were never queried, or at least AddressLifetimeMs ago.
bool AreAddressesDue(const NetSampler& sampler, std::uint64_t nowMs);

/// Gives each row the first address with its key. Rows without one keep theirs.
void FillAddresses(std::vector<NetRow>& rows, const std::vector<AdapterAddress>& addresses);

/// True for an interface that users would recognise: it has an IPv4 address and is not a filter, loopback or tunnel.
bool IsListableInterface(const NetRow& row);

/// "192.168.0.1", from bytes in network order.
std::wstring FormatIpv4(const std::array<std::uint8_t, 4>& address);

}  // namespace kestrane
