#pragma once
// Numbers as text, by integer arithmetic only: C runtimes differ in rounding, depend on the locale, or pull in large
// tables.
#include <concepts>
#include <cstdint>
#include <string>
#include <type_traits>

namespace kestrane {

/// `value` in decimal, with a '-' if negative.
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

/// `value` rounded to a whole number, halves away from zero, like C's `round`. The MinGW runtime's `round` and
/// `llround` give 1 for 0.49999999999999994, the last number below a half.
double RoundHalfAway(double value);

/// The most decimals that FormatFixed gives.
inline constexpr int MaxFixedDecimals = 3;

/// Like C's "%.Nf" for 0 to 3 decimals (others are clamped): rounded from the exact binary value, exact ties to even,
/// with a decimal point. A huge value is written in full, at most 309 digits. A negative value that rounds to zero
/// keeps its sign. Infinity is "inf" or "-inf"; NaN is "nan", whatever its sign.
std::wstring FormatFixed(double value, int decimals);

}  // namespace kestrane
