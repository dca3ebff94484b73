// Some ticks with any interface tables; octets and clock may jump. Only interfaces that are up count, and for all
// connections only real ones; there is no rate before the sampler has settled, without growth, or without elapsed time.
#include <algorithm>

#include "fuzz/fuzz_target.h"
#include "metrics/net_rules.h"

namespace kestrane {
namespace {

using fuzz::Require;

constexpr std::size_t RowBytes = 20;

/// Key and flags in two bytes, a letter as name, then the two octet counts.
NetRow MakeRow(fuzz::ByteSource source) {
    NetRow row;
    row.key = source.Byte();
    const std::uint8_t flags = source.Byte();
    row.operUp = (flags & 1) != 0;
    row.hardware = (flags & 2) != 0;
    row.filter = (flags & 4) != 0;
    row.loopback = (flags & 8) != 0;
    row.tunnel = (flags & 16) != 0;
    const std::size_t length = source.Byte() % 4;
    row.alias.assign(length, static_cast<wchar_t>(L'a' + source.Byte() % 8));
    row.inOctets = source.Bits(8);
    row.outOctets = source.Bits(8);
    return row;
}

std::vector<NetRow> MakeRows(fuzz::Bytes bytes) {
    std::vector<NetRow> rows;
    for (; bytes.size() >= RowBytes; bytes = bytes.subspan(RowBytes))
        rows.push_back(MakeRow(fuzz::ByteSource(bytes)));
    return rows;
}

bool MayCount(const NetRow& row, bool all) {
    return row.operUp && (!all || (row.hardware && !row.filter && !row.loopback));
}

void CheckView(const NetView& view, const std::vector<NetRow>& rows, std::size_t choices) {
    const bool all = choices == 0;
    const auto may = [all](const NetRow& row) { return MayCount(row, all); };
    if (all) Require(view.counters.size() == static_cast<std::size_t>(std::ranges::count_if(rows, may)));
    if (!all) Require(view.counters.size() <= choices);
    for (const NetCounters& counted : view.counters)
        Require(std::ranges::any_of(rows, [&](const NetRow& row) { return row.key == counted.key && may(row); }));
    Require(view.found || !view.connected);
}

bool Grows(const std::vector<NetCounters>& before, const std::vector<NetCounters>& now) {
    const auto pair = [&](const NetCounters& counters) {
        const auto old = std::ranges::find(before, counters.key, &NetCounters::key);
        return old != before.end() && (counters.inOctets > old->inOctets || counters.outOctets > old->outOctets);
    };
    return std::ranges::any_of(now, pair);
}

void CheckReading(const NetSampler& before, const NetView& view, const NetSample& reading, std::uint64_t now) {
    const bool mayMove = reading.hasRates && now != before.lastTick && Grows(before.lastCounters, view.counters);
    if (!mayMove) Require(reading.downBitsPerSec == 0 && reading.upBitsPerSec == 0);
    Require(!reading.hasRates || before.settleTicks < 1);
    Require(before.hasBaseline || !reading.hasRates);
}

}  // namespace
}  // namespace kestrane

FUZZ_TARGET(interface_tables) {
    using namespace kestrane;
    if (input.size() < 2) return;
    const std::vector<std::uint64_t> chosen =
        input[0] % 2 == 0 ? std::vector<std::uint64_t>() : std::vector<std::uint64_t>{1, 2};
    const std::vector<std::wstring> aliases{L"a"};
    const std::size_t half = 2 + (input.size() - 2) / 2;
    NetSampler sampler;
    std::uint64_t now = input[1];
    for (const fuzz::Bytes table :
         {input.subspan(2, half - 2), input.subspan(half), input.subspan(2), input.subspan(half)}) {
        const std::vector<NetRow> rows = MakeRows(table);
        const NetView view = SelectInterfaces(rows, chosen, aliases);
        CheckView(view, rows, chosen.size());
        const NetSampler before = sampler;
        CheckReading(before, view, AdvanceNetSampler(sampler, view, chosen, now), now);
        if (input[1] % 4 != 0) now = now * 3 - 7;
    }
}
