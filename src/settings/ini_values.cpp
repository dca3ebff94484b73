#include "settings/ini_values.h"

#include <algorithm>
#include <limits>

#include "text/number_text.h"
#include "text/text_util.h"

namespace kestrane {
namespace {

constexpr std::wstring_view All = L"*";
constexpr std::wstring_view HexDigits = L"0123456789ABCDEF";

/// `text` as a number if it is 1 to `maxDigits` (at most 16) hexadecimal digits and nothing else.
std::optional<std::uint64_t> ParseHex(std::wstring_view text, std::size_t maxDigits) {
    if (text.empty() || text.size() > maxDigits) return {};
    std::uint64_t value = 0;
    for (const wchar_t c : text) {
        const std::int32_t digit = HexDigitValue(c);
        if (digit < 0) return {};
        value = value << 4 | static_cast<std::uint64_t>(digit);
    }
    return value;
}

std::wstring FormatHex(std::uint64_t value, std::size_t digits) {
    std::wstring text(digits, L'0');
    for (auto digit = text.rbegin(); digit != text.rend(); ++digit, value >>= 4)
        *digit = HexDigits[value & 0xF];
    return text;
}

/// `text` as a number if it is 1 to `maxDigits` (at most 9) decimal digits and nothing else.
std::optional<std::int32_t> ParseDigits(std::wstring_view text, std::size_t maxDigits) {
    if (text.empty() || text.size() > maxDigits || !std::all_of(text.begin(), text.end(), IsDigit)) return {};
    std::int32_t value = 0;
    for (const wchar_t c : text)
        value = value * 10 + (c - L'0');
    return value;
}

/// The number at the start of a text and where it ends; an end of 0 means there is none.
struct LeadingInteger {
    std::int32_t value = 0;
    std::size_t end = 0;
};

// A portable wcstol: its `long` and its notion of white space differ between platforms.
LeadingInteger ScanInteger(std::wstring_view text) {
    constexpr std::int64_t Low = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t High = std::numeric_limits<std::int32_t>::max();
    std::size_t i = std::min(text.find_first_not_of(L" \t\n\v\f\r"), text.size());
    const bool negative = i < text.size() && text[i] == L'-';
    if (i < text.size() && (text[i] == L'-' || text[i] == L'+')) ++i;
    const std::size_t firstDigit = i;
    std::int64_t value = 0;
    for (; i < text.size() && IsDigit(text[i]); ++i) {
        const std::int64_t digit = text[i] - L'0';
        value = std::clamp(value * 10 + (negative ? -digit : digit), Low, High);
    }
    if (i == firstDigit) return {};
    return {static_cast<std::int32_t>(value), i};
}

std::vector<std::wstring_view> Split(std::wstring_view text, wchar_t separator) {
    std::vector<std::wstring_view> parts;
    for (std::size_t end = text.find(separator); end != std::wstring_view::npos; end = text.find(separator)) {
        parts.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    parts.push_back(text);
    return parts;
}

template <typename Item, typename Format>
std::wstring Join(const std::vector<Item>& items, wchar_t separator, Format format) {
    std::wstring text;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i > 0) text += separator;
        text += format(items[i]);
    }
    return text;
}

bool IsInstallIdCharacter(wchar_t c) {
    return c == L'-' || IsDigit(c) || (c >= L'a' && c <= L'f');
}

std::uint32_t KnownRefresh(std::int32_t ms) {
    return RefreshChoices[RefreshIndex(static_cast<std::uint32_t>(ms))].ms;
}

std::int32_t KnownOpacity(std::int32_t percent) {
    return OpacityChoices[OpacityIndex(percent)];
}

/// A strict integer, normalised to a permitted value.
template <auto Normalize>
auto ParseNormalized(std::wstring_view text) {
    const std::optional<std::int32_t> value = ParseInteger(text);
    return value ? std::optional(Normalize(*value)) : std::nullopt;
}

}  // namespace

std::optional<ColorValue> ParseColor(std::wstring_view text) {
    if (text == L"NONE" || text == L"none") return ColorNone;
    if (text.size() != 6) return {};
    const std::optional<std::uint64_t> value = ParseHex(text, 6);
    if (!value) return {};
    return static_cast<ColorValue>(*value);
}

std::wstring FormatColor(ColorValue color) {
    if (color == ColorNone) return L"NONE";
    return FormatHex(color, 6);
}

std::optional<bool> ParseFlag(std::wstring_view text) {
    if (text == L"0") return false;
    if (text == L"1") return true;
    return {};
}

std::wstring FormatFlag(bool flag) {
    return flag ? L"1" : L"0";
}

std::optional<std::int32_t> ParseInteger(std::wstring_view text) {
    const LeadingInteger number = ScanInteger(text);
    if (number.end == 0 || number.end != text.size()) return {};
    return number.value;
}

std::optional<std::int32_t> ParseIntegerWithin(std::wstring_view text, std::int32_t low, std::int32_t high) {
    const std::optional<std::int32_t> value = ParseInteger(text);
    if (!value || *value < low || *value > high) return {};
    return value;
}

std::optional<std::uint32_t> ParseRefresh(std::wstring_view text) {
    return ParseNormalized<KnownRefresh>(text);
}

std::optional<std::int32_t> ParseOpacity(std::wstring_view text) {
    return ParseNormalized<KnownOpacity>(text);
}

std::optional<std::int32_t> ParseMargin(std::wstring_view text) {
    return ParseNormalized<ClampMargin>(text);
}

std::optional<std::int32_t> ParseFontSize(std::wstring_view text) {
    return ParseNormalized<ClampFontSize>(text);
}

std::optional<std::int32_t> ParseSmoothing(std::wstring_view text) {
    return ParseNormalized<ClampSmoothing>(text);
}

std::optional<std::int32_t> ParseFill(std::wstring_view text) {
    return ParseNormalized<NormalizeFill>(text);
}

std::optional<std::int32_t> ParseGraphWidth(std::wstring_view text) {
    return ParseIntegerWithin(text, 100, 10000);
}

std::optional<std::int32_t> ParseGraphHeight(std::wstring_view text) {
    return ParseIntegerWithin(text, 50, 10000);
}

std::optional<std::uint32_t> ParseLanguage(std::wstring_view text) {
    constexpr std::int32_t Last = static_cast<std::int32_t>(LanguageChoices.size()) - 1;
    const std::optional<std::int32_t> value = ParseIntegerWithin(text, 0, Last);
    if (!value) return {};
    return static_cast<std::uint32_t>(*value);
}

std::optional<std::int32_t> ParseMemoryFontSize(std::wstring_view text) {
    if (text.empty()) return {};
    return ClampFontSize(ScanInteger(text).value);
}

std::optional<std::int32_t> ParseThreshold(std::wstring_view text) {
    const std::optional<std::int32_t> value = ParseDigits(text, 3);
    if (!value || *value < 1 || *value > 100) return {};
    return value;
}

std::optional<std::wstring> ParseFontName(std::wstring_view text) {
    if (text.empty() || text.size() > 31) return {};
    return std::wstring(text);
}

std::wstring FormatFontName(const std::wstring& name) {
    return name;
}

std::optional<std::string> ParseInstallId(std::wstring_view text) {
    if (text.size() != 36 || !std::all_of(text.begin(), text.end(), IsInstallIdCharacter)) return {};
    std::string id;
    for (const wchar_t c : text)
        id += static_cast<char>(c);
    return id;
}

std::wstring FormatInstallId(const std::string& id) {
    return WidenBytes(id);
}

std::optional<std::int32_t> ParseGraphStyle(std::wstring_view text) {
    if (text == L"bars") return 0;
    if (text == L"lines") return 1;
    return {};
}

std::wstring FormatGraphStyle(std::int32_t style) {
    return style == 1 ? L"lines" : L"bars";
}

std::optional<std::vector<std::uint64_t>> ParseInterfaces(std::wstring_view text) {
    std::vector<std::uint64_t> interfaces;
    if (text == All) return interfaces;
    for (const std::wstring_view part : Split(text, L',')) {
        const std::optional<std::uint64_t> identifier = ParseHex(part, 16);
        if (!identifier || *identifier == 0) return {};
        interfaces.push_back(*identifier);
    }
    return interfaces;
}

std::wstring FormatInterfaces(const std::vector<std::uint64_t>& interfaces) {
    if (interfaces.empty()) return std::wstring(All);
    return Join(interfaces, L',', [](std::uint64_t identifier) { return FormatHex(identifier, 16); });
}

std::optional<std::vector<std::wstring>> ParseAliases(std::wstring_view text) {
    std::vector<std::wstring> aliases;
    if (text.empty()) return aliases;
    for (const std::wstring_view part : Split(text, L'|'))
        aliases.emplace_back(part);
    return aliases;
}

std::wstring FormatAliases(const std::vector<std::wstring>& aliases) {
    return Join(aliases, L'|', [](const std::wstring& alias) { return alias; });
}

std::optional<std::vector<std::int32_t>> ParseDisks(std::wstring_view text) {
    std::vector<std::int32_t> disks;
    if (text == All) return disks;
    for (const std::wstring_view part : Split(text, L',')) {
        const std::optional<std::int32_t> disk = ParseDigits(part, 2);
        if (!disk || *disk > LastDisk || std::find(disks.begin(), disks.end(), *disk) != disks.end()) return {};
        disks.push_back(*disk);
    }
    return disks;
}

std::wstring FormatDisks(const std::vector<std::int32_t>& disks) {
    if (disks.empty()) return std::wstring(All);
    return Join(disks, L',', FormatInteger<std::int32_t>);
}

}  // namespace kestrane
