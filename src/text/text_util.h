#pragma once
// Small text helpers that several rooms need.
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "base/byte_reader.h"

namespace kestrane {

/// `text` without leading and trailing spaces and tabs. Other control characters stay.
std::wstring TrimBlanks(std::wstring_view text);

/// True if both have the same length and their characters are pairwise equal after `towlower`.
bool EqualIgnoringCase(std::wstring_view a, std::wstring_view b);

/// True if `a` comes before `b`, character by character after `towlower`: the order of the C runtime's `_wcsicmp`.
bool LessIgnoringCase(std::wstring_view a, std::wstring_view b);

/// 0 to 9 only, no digits of other scripts.
constexpr bool IsDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

/// The value of a hexadecimal digit in either case; -1 for any other character.
constexpr std::int32_t HexDigitValue(wchar_t c) {
    if (IsDigit(c)) return static_cast<std::int32_t>(c - L'0');
    if (c >= L'A' && c <= L'F') return static_cast<std::int32_t>(c - L'A') + 10;
    return c >= L'a' && c <= L'f' ? static_cast<std::int32_t>(c - L'a') + 10 : -1;
}

/// The same for a byte of text.
constexpr bool IsHexDigit(char c) {
    return HexDigitValue(static_cast<unsigned char>(c)) >= 0;
}

/// Each byte as the character with the same code, 0 to 255.
std::wstring WidenBytes(std::string_view bytes);

/// Two lower-case hexadecimal digits for each byte.
std::string HexText(ByteSpan bytes);

/// The other way round, from digits of either case: true if `text` holds exactly two for each byte. On failure
/// `bytes` is unchanged.
bool ParseHexBytes(std::string_view text, std::span<std::uint8_t> bytes);

}  // namespace kestrane
