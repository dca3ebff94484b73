#include "text/text_util.h"

#include <algorithm>
#include <cstddef>
#include <cwctype>

namespace kestrane {
namespace {

std::wint_t ToLower(wchar_t c) {
    return std::towlower(static_cast<std::wint_t>(c));
}

}  // namespace

std::wstring TrimBlanks(std::wstring_view text) {
    constexpr std::wstring_view Blanks = L" \t";
    const std::size_t first = text.find_first_not_of(Blanks);
    if (first == std::wstring_view::npos) return {};
    const std::size_t last = text.find_last_not_of(Blanks);
    return std::wstring(text.substr(first, last - first + 1));
}

bool EqualIgnoringCase(std::wstring_view a, std::wstring_view b) {
    return std::ranges::equal(a, b, {}, ToLower, ToLower);
}

bool LessIgnoringCase(std::wstring_view a, std::wstring_view b) {
    return std::ranges::lexicographical_compare(a, b, {}, ToLower, ToLower);
}

std::wstring WidenBytes(std::string_view bytes) {
    std::wstring text;
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        text += static_cast<wchar_t>(static_cast<unsigned char>(byte));
    }
    return text;
}

std::string HexText(ByteSpan bytes) {
    constexpr std::string_view Digits = "0123456789abcdef";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const std::uint8_t byte : bytes) {
        text += Digits[byte / 16];
        text += Digits[byte % 16];
    }
    return text;
}

bool ParseHexBytes(std::string_view text, std::span<std::uint8_t> bytes) {
    if (text.size() != bytes.size() * 2 || !std::ranges::all_of(text, IsHexDigit)) return false;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto digit = [text](std::size_t at) { return HexDigitValue(static_cast<unsigned char>(text[at])); };
        bytes[i] = static_cast<std::uint8_t>(digit(2 * i) * 16 + digit(2 * i + 1));
    }
    return true;
}

}  // namespace kestrane
