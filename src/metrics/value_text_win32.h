#pragma once
// Values that use the decimal separator of the user's regional settings. Every call queries it, so a change shows at
// the next refresh.
#include <cstdint>
#include <string>

#include "metrics/metric_sample.h"

namespace kestrane {

/// The first character of the user's decimal separator; a point if the query fails.
wchar_t DecimalSeparatorChar();

/// FormatGigabytesWith the user's whole decimal separator, which may be longer than one character.
std::wstring FormatGigabytes(std::uint64_t bytes);

/// MemoryTooltipTextWith the user's whole decimal separator.
std::wstring MemoryTooltipText(const MetricSample& sample);

}  // namespace kestrane
