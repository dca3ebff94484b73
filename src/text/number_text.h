#pragma once
// Numbers as text, by integer arithmetic alone: the C runtimes round differently, follow a locale, or bring large
// tables with them.
#include <concepts>
#include <cstdint>
#include <string>
#include <type_traits>

namespace kestrane {

/// `value` in decimal digits, with '-' before a negative one.
std::wstring FormatUnsigned(std::uint64_t value);
std::wstring FormatSigned(std::int64_t value);

template <std::integral Integer>
std::wstring FormatInteger(Integer value) {
    if constexpr (std::is_signed_v<Integer>) {
        return FormatSigned(value);
    } else {
        return FormatUnsigned(value);
    }
}

/// `value` without its fraction, halves away from zero, as `round` of the C standard. The `round` and `llround` of the
/// MinGW runtime give 1 for 0.49999999999999994, the last number below a half.
double RoundHalfAway(double value);

/// The greatest number of decimals that FormatFixed gives.
inline constexpr int MaxFixedDecimals = 3;

/// What "%.Nf" of the C standard gives for 0 to 3 decimals (others are clamped): a point before the decimals, rounded
/// from the exact binary value, and only an exact tie goes to the even digit. All digits of a huge value are written,
/// 309 at the most. A negative value that rounds to zero keeps its sign. Infinity is "inf" or "-inf"; not-a-number is
/// "nan", whatever its sign.
std::wstring FormatFixed(double value, int decimals);

}  // namespace kestrane
