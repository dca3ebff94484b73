#include "metrics/counter_items.h"

#include <algorithm>
#include <bit>
#include <optional>
#include <string>
#include <utility>

namespace kestrane {
namespace {

constexpr std::uint32_t NewDataStatus = 1;  // PDH_CSTATUS_NEW_DATA; 0 is PDH_CSTATUS_VALID_DATA

constexpr std::size_t CharacterBytes = 2;  // UTF-16

/// The text at `offset`, up to its terminator or the end of the buffer; none if the offset is out of range or odd.
std::optional<std::wstring> TextAt(ByteSpan answer, std::uint64_t offset) {
    if (offset >= answer.size() || offset % CharacterBytes != 0) return std::nullopt;
    std::wstring text;
    const ByteSpan rest = answer.subspan(static_cast<std::size_t>(offset));
    for (std::size_t i = 0; i + CharacterBytes <= rest.size(); i += CharacterBytes) {
        const std::uint16_t character = U16At(rest, i);
        if (character == 0) break;
        text += static_cast<wchar_t>(character);
    }
    return text;
}

}  // namespace

bool IsUsableStatus(std::uint32_t status) {
    return status <= NewDataStatus;
}

std::vector<CounterValue> ReadCounterItems(ByteSpan answer, std::uint64_t address, std::size_t count) {
    std::vector<CounterValue> values;
    const std::size_t whole = std::min(count, answer.size() / CounterItemBytes);
    for (std::size_t i = 0; i < whole; ++i) {
        const ByteSpan item = answer.subspan(i * CounterItemBytes, CounterItemBytes);
        if (!IsUsableStatus(U32At(item, CounterItemStatus))) continue;
        auto name = TextAt(answer, U64At(item, 0) - address);
        if (name) values.push_back({std::move(*name), std::bit_cast<double>(U64At(item, CounterItemValue))});
    }
    return values;
}

}  // namespace kestrane
