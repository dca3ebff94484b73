#pragma once
// From tables of interfaces to rates. A tick selects the interfaces to count, compares their octets with those of the
// last tick, and divides by the time that has really passed, so that a late tick or a machine that has slept gives an
// honest average and never a spike.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "metrics/metric_sample.h"

namespace kestrane {

/// One interface as read on one tick.
struct NetRow {
    std::uint64_t key = 0;  // the value of its LUID
    std::wstring alias;     // the name that the user sees in the system
    std::wstring ip;        // its IPv4 address as text, or empty
    bool operUp = false;
    bool hardware = false;
    bool filter = false;  // a driver's layer over another interface, with the same octets once more
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

/// What a selection yields.
struct NetView {
    bool found = false;           // a chosen interface exists; always true for all connections
    bool connected = false;       // a chosen interface is up; always true for all connections
    std::uint64_t inOctets = 0;   // sum over the counted interfaces
    std::uint64_t outOctets = 0;  // the same
    std::wstring label;
    std::vector<NetCounters> counters;  // one per counted interface
};

/// What the sampler keeps between ticks.
struct NetSampler {
    bool hasBaseline = false;             // lastCounters can be compared with
    std::int32_t settleTicks = 0;         // ticks still to wait before rates are computed
    std::vector<std::uint64_t> lastKeys;  // the chosen interfaces of the last tick
    std::vector<NetCounters> lastCounters;
    std::uint64_t lastTick = 0;  // GetTickCount64, as the one below
    std::vector<AdapterAddress> addresses;
    std::uint64_t addressesTick = 0;  // when the addresses were last asked for; 0 means never
};

struct OctetSums {
    std::uint64_t in = 0;
    std::uint64_t out = 0;
};

/// Ticks without rates after the start and after each change of the chosen interfaces.
inline constexpr std::int32_t SettleTicks = 2;
/// The addresses serve a list in a dialog, so they may be this old.
inline constexpr std::uint64_t AddressLifetimeMs = 60000;

/// The interfaces to count. An empty `interfaces` means all real connections: hardware that is up and no filter or
/// loopback. Otherwise each of `interfaces` is found by its key or, failing that, by the name that `aliases` holds at
/// its position (it may be shorter); those that are up count, and all are named in the label.
NetView SelectInterfaces(const std::vector<NetRow>& rows, const std::vector<std::uint64_t>& interfaces,
                         const std::vector<std::wstring>& aliases);

/// How much the counters have grown, over the interfaces that are in both lists. A counter that has fallen was reset
/// and adds nothing.
OctetSums SumCounterDeltas(const std::vector<NetCounters>& previous, const std::vector<NetCounters>& current);

/// Rounded to nearest; 0 when no time has passed, the greatest number when the rate passes it.
std::uint64_t BitsPerSecond(std::uint64_t octets, std::uint64_t elapsedMs);

/// The tick at `nowMs`: moves the state on and gives the reading. Without rates until the state has settled.
NetSample AdvanceNetSampler(NetSampler& sampler, const NetView& view, const std::vector<std::uint64_t>& interfaces,
                            std::uint64_t nowMs);

/// The addresses have never been asked for, or AddressLifetimeMs ago.
bool AreAddressesDue(const NetSampler& sampler, std::uint64_t nowMs);

/// Gives each row the first address of its key. Rows without one keep what they have.
void FillAddresses(std::vector<NetRow>& rows, const std::vector<AdapterAddress>& addresses);

/// The interface is one that a user knows: it has an IPv4 address and is no filter, loopback or tunnel.
bool IsListableInterface(const NetRow& row);

/// "192.168.0.1", from the bytes in their order on the wire.
std::wstring FormatIpv4(const std::array<std::uint8_t, 4>& address);

}  // namespace kestrane
