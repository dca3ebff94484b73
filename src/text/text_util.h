#pragma once
// Small helpers on text that several rooms need.
#include <string>
#include <string_view>

namespace kestrane {

/// `text` without the spaces and tabs at its two ends. Other control characters stay.
std::wstring TrimBlanks(std::wstring_view text);

/// True if both have the same length and each pair of characters is equal after `towlower`.
bool EqualIgnoringCase(std::wstring_view a, std::wstring_view b);

/// 0 to 9, and none of the digits of other scripts.
constexpr bool IsDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

/// Each byte as one character of the same number, 0 to 255.
std::wstring WidenBytes(std::string_view bytes);

}  // namespace kestrane
