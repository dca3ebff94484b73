#include "metrics/net_rules.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "text/number_text.h"
#include "text/text_util.h"
#include "text/translation.h"

namespace kestrane {
namespace {

void Count(const NetRow& row, NetView& view) {
    view.inOctets += row.inOctets;
    view.outOctets += row.outOctets;
    view.counters.push_back({.key = row.key, .inOctets = row.inOctets, .outOctets = row.outOctets});
}

NetView SelectAllConnections(const std::vector<NetRow>& rows) {
    NetView view;
    view.found = true;
    view.connected = true;
    view.label = Tr(L"Todas las conexiones");
    for (const NetRow& row : rows) {
        if (row.operUp && row.hardware && !row.filter && !row.loopback) Count(row, view);
    }
    return view;
}

/// Null if there is none. Reinstalling an adapter changes its key but keeps its name.
const NetRow* FindRow(const std::vector<NetRow>& rows, std::uint64_t key, const std::wstring& name) {
    const auto byKey = std::ranges::find(rows, key, &NetRow::key);
    if (byKey != rows.end()) return &*byKey;
    if (name.empty()) return nullptr;
    const auto matches = [&](const NetRow& row) { return !row.filter && EqualIgnoringCase(row.alias, name); };
    const auto byName = std::ranges::find_if(rows, matches);
    return byName != rows.end() ? &*byName : nullptr;
}

/// Adds one chosen interface to the view; `row` is null if it does not exist.
void TakeChosen(const NetRow* row, const std::wstring& name, NetView& view) {
    if (!view.label.empty()) view.label += L", ";
    view.label += row != nullptr ? row->alias : name;
    if (row == nullptr) return;
    view.found = true;
    if (!row->operUp) return;
    view.connected = true;
    Count(*row, view);
}

std::uint64_t Growth(std::uint64_t previous, std::uint64_t current) {
    return current > previous ? current - previous : 0;
}

}  // namespace

NetView SelectInterfaces(const std::vector<NetRow>& rows, const std::vector<std::uint64_t>& interfaces,
                         const std::vector<std::wstring>& aliases) {
    if (interfaces.empty()) return SelectAllConnections(rows);
    NetView view;
    for (std::size_t i = 0; i < interfaces.size(); ++i) {
        const std::wstring name = i < aliases.size() ? aliases[i] : std::wstring();
        TakeChosen(FindRow(rows, interfaces[i], name), name, view);
    }
    return view;
}

OctetSums SumCounterDeltas(const std::vector<NetCounters>& previous, const std::vector<NetCounters>& current) {
    OctetSums sums;
    for (const NetCounters& now : current) {
        const auto before = std::ranges::find(previous, now.key, &NetCounters::key);
        if (before == previous.end()) continue;
        sums.in += Growth(before->inOctets, now.inOctets);
        sums.out += Growth(before->outOctets, now.outOctets);
    }
    return sums;
}

std::uint64_t BitsPerSecond(std::uint64_t octets, std::uint64_t elapsedMs) {
    if (elapsedMs == 0) return 0;
    const double rate = static_cast<double>(octets) * 8 * 1000 / static_cast<double>(elapsedMs) + 0.5;
    constexpr double Limit = 18446744073709551616.0;  // 2^64, the first value that does not fit
    return rate < Limit ? static_cast<std::uint64_t>(rate) : std::numeric_limits<std::uint64_t>::max();
}

NetSample AdvanceNetSampler(NetSampler& sampler, const NetView& view, const std::vector<std::uint64_t>& interfaces,
                            std::uint64_t nowMs) {
    NetSample sample;
    sample.connected = view.found && view.connected;
    sample.label = view.label;
    if (!sampler.hasBaseline || interfaces != sampler.lastKeys) sampler.settleTicks = SettleTicks;
    if (sampler.settleTicks < 1) {
        const OctetSums sums = SumCounterDeltas(sampler.lastCounters, view.counters);
        const std::uint64_t elapsedMs = nowMs - sampler.lastTick;
        sample.hasRates = true;
        sample.downBitsPerSec = BitsPerSecond(sums.in, elapsedMs);
        sample.upBitsPerSec = BitsPerSecond(sums.out, elapsedMs);
    } else {
        --sampler.settleTicks;
    }
    sampler.hasBaseline = true;
    sampler.lastKeys = interfaces;
    sampler.lastCounters = view.counters;
    sampler.lastTick = nowMs;
    return sample;
}

bool AreAddressesDue(const NetSampler& sampler, std::uint64_t nowMs) {
    return sampler.addressesTick == 0 || nowMs - sampler.addressesTick >= AddressLifetimeMs;
}

void FillAddresses(std::vector<NetRow>& rows, const std::vector<AdapterAddress>& addresses) {
    for (NetRow& row : rows) {
        const auto found = std::ranges::find(addresses, row.key, &AdapterAddress::key);
        if (found != addresses.end()) row.ip = found->ip;
    }
}

bool IsListableInterface(const NetRow& row) {
    return !row.filter && !row.loopback && !row.tunnel && !row.ip.empty();
}

std::wstring FormatIpv4(const std::array<std::uint8_t, 4>& address) {
    std::wstring text;
    for (const std::uint8_t part : address) {
        if (!text.empty()) text += L'.';
        text += FormatInteger(part);
    }
    return text;
}

}  // namespace kestrane
