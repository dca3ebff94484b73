// Two ticks of any interface tables, the octets and the clock free to jump: no more interfaces count than were
// chosen, and a rate is there only when the reading says so.
#include <array>
#include <utility>

#include "fuzz/fuzz_target.h"
#include "metrics/net_rules.h"

namespace kestrane {
namespace {

using fuzz::Require;

constexpr std::size_t RowBytes = 20;

/// Key and flags in two bytes, a letter for a name, then the two octet counts.
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

void CheckView(const NetView& view, std::size_t choices) {
    Require(view.counters.size() <= choices);
    Require(view.found || !view.connected);
}

void CheckReading(const NetSample& reading) {
    if (!reading.hasRates) Require(reading.downBitsPerSec == 0 && reading.upBitsPerSec == 0);
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
        CheckView(view, chosen.empty() ? rows.size() : chosen.size());
        CheckReading(AdvanceNetSampler(sampler, view, chosen, now));
        now = now * 3 - 7;
    }
}
