#pragma once
// Reads the buffer that PdhGetFormattedCounterArrayW fills in a 64-bit process: an array of
// PDH_FMT_COUNTERVALUE_ITEM_W, followed in the same buffer by the names that the items point to.
//
//     offset  size
//          0     8   szName: address of the null-terminated name
//          8     4   FmtValue.CStatus
//         16     8   FmtValue.doubleValue
//
// Read as bytes, so that a name pointing out of the buffer costs only its own item.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/byte_reader.h"
#include "metrics/metric_sample.h"

namespace kestrane {

inline constexpr std::size_t CounterItemBytes = 24;
inline constexpr std::size_t CounterItemStatus = 8;
inline constexpr std::size_t CounterItemValue = 16;

/// True if the value may be used: the status is PDH_CSTATUS_VALID_DATA or PDH_CSTATUS_NEW_DATA.
bool IsUsableStatus(std::uint32_t status);

/// The first `count` items, or as many as fit, in order, without those of bad status or whose name does not begin
/// within `answer`. A name without a terminator ends with the buffer. `address` is where `answer` was when the names'
/// addresses were written.
std::vector<CounterValue> ReadCounterItems(ByteSpan answer, std::uint64_t address, std::size_t count);

}  // namespace kestrane
