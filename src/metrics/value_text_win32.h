#pragma once
// The values whose decimal separator is the one of the user's regional settings. Every call asks the system anew, so a
// change there shows at the next refresh.
#include <cstdint>
#include <string>

#include "metrics/metric_sample.h"

namespace kestrane {

/// The first character of the user's decimal separator; a point if the system gives none.
wchar_t DecimalSeparatorChar();

/// FormatGigabytesWith the whole of the user's decimal separator, which may be longer than one character.
std::wstring FormatGigabytes(std::uint64_t bytes);

/// MemoryTooltipTextWith the whole of the user's decimal separator.
std::wstring MemoryTooltipText(const MetricSample& sample);

}  // namespace kestrane
