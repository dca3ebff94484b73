// Any bytes as an array of counter values: the first is the number of items, and the rest is treated as if it were at
// the address that the names point to.
#include <algorithm>

#include "fuzz/fuzz_target.h"
#include "metrics/counter_items.h"

FUZZ_TARGET(counter_items) {
    using namespace kestrane;
    using fuzz::Require;
    constexpr std::uint64_t Address = 0x1000;
    if (input.empty()) return;
    const std::size_t count = input.front();
    const fuzz::Bytes answer = input.subspan(1);

    const std::vector<CounterValue> values = ReadCounterItems(answer, Address, count);
    Require(values.size() <= std::min(count, answer.size() / CounterItemBytes));
    for (const CounterValue& value : values) {
        Require(value.name.size() <= answer.size() / 2);
        Require(value.name.find(L'\0') == std::wstring::npos);
    }
    const auto isUsable = [&](std::size_t item) {
        return IsUsableStatus(U32At(answer, item * CounterItemBytes + CounterItemStatus));
    };
    std::size_t usable = 0;
    for (std::size_t i = 0; i < std::min(count, answer.size() / CounterItemBytes); ++i)
        if (isUsable(i)) ++usable;
    Require(values.size() <= usable);
}
