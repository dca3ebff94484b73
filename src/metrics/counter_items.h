#pragma once
// What PdhGetFormattedCounterArrayW writes into its buffer in a 64-bit program: an array of
// PDH_FMT_COUNTERVALUE_ITEM_W, and behind the items, in the same bytes, the names that they point to.
//
//     offset  size
//          0     8   szName: address of the name, which ends with a zero
//          8     4   FmtValue.CStatus
//         16     8   FmtValue.doubleValue
//
// Read as bytes, so that a name which points elsewhere costs its own item and nothing more.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/byte_reader.h"
#include "metrics/metric_sample.h"

namespace kestrane {

inline constexpr std::size_t CounterItemBytes = 24;
inline constexpr std::size_t CounterItemStatus = 8;
inline constexpr std::size_t CounterItemValue = 16;

/// Whether a value may be used: its status, PDH_CSTATUS_VALID_DATA or PDH_CSTATUS_NEW_DATA, says so.
bool IsUsableStatus(std::uint32_t status);

/// The first `count` items, or as many as fit, in their order; left out are those of bad status and those whose name
/// does not begin within `answer`. A name without a zero ends with the buffer. `address` is where `answer` stood when
/// the names' addresses were written.
std::vector<CounterValue> ReadCounterItems(ByteSpan answer, std::uint64_t address, std::size_t count);

}  // namespace kestrane
