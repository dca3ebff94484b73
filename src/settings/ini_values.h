#pragma once
// How one value of the settings file reads and is written. Every Parse answers nothing for a text that is not
// well-formed, and no text is well-formed when it is empty, which is how an absent key reads; aliases alone may be
// empty.
//
// The profile operations underneath drop blanks around a value and one pair of quotes round it, and cut at 259
// characters. Only font names, aliases and long lists of interfaces can notice.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "settings/app_settings.h"

namespace kestrane {

/// "NONE", "none" or exactly six hexadecimal digits.
std::optional<ColorValue> ParseColor(std::wstring_view text);
/// "NONE" or six upper-case digits from the low 24 bits.
std::wstring FormatColor(ColorValue color);

/// Exactly "0" or "1".
std::optional<bool> ParseFlag(std::wstring_view text);
std::wstring FormatFlag(bool flag);

/// What `wcstol` in base 10 makes of a text that it consumes to its end: blanks and a sign may lead, nothing may trail,
/// and what passes 32 bits saturates.
std::optional<std::int32_t> ParseInteger(std::wstring_view text);
/// A strict integer from `low` to `high`.
std::optional<std::int32_t> ParseIntegerWithin(std::wstring_view text, std::int32_t low, std::int32_t high);

/// One of RefreshChoices; an integer that is not in the list becomes 1500.
std::optional<std::uint32_t> ParseRefresh(std::wstring_view text);
/// One of OpacityChoices; an integer that is not in the list becomes 90.
std::optional<std::int32_t> ParseOpacity(std::wstring_view text);
/// A strict integer through ClampMargin, ClampFontSize, ClampSmoothing, NormalizeFill.
std::optional<std::int32_t> ParseMargin(std::wstring_view text);
std::optional<std::int32_t> ParseFontSize(std::wstring_view text);
std::optional<std::int32_t> ParseSmoothing(std::wstring_view text);
std::optional<std::int32_t> ParseFill(std::wstring_view text);
/// Pixels that a graph window may measure: 100 to 10000 across, 50 to 10000 down.
std::optional<std::int32_t> ParseGraphWidth(std::wstring_view text);
std::optional<std::int32_t> ParseGraphHeight(std::wstring_view text);
/// One of Lang: 0, 1 or 2.
std::optional<std::uint32_t> ParseLanguage(std::wstring_view text);

/// The one lenient number: what leads counts, what trails is ignored, and no number at all counts as 0, which is then
/// clamped to the smallest size.
std::optional<std::int32_t> ParseMemoryFontSize(std::wstring_view text);

/// One to three digits, 1 to 100.
std::optional<std::int32_t> ParseThreshold(std::wstring_view text);

/// Any text of 1 to 31 characters.
std::optional<std::wstring> ParseFontName(std::wstring_view text);
std::wstring FormatFontName(const std::wstring& name);

/// 36 characters, each a dash, a digit or 'a' to 'f'.
std::optional<std::string> ParseInstallId(std::wstring_view text);
std::wstring FormatInstallId(const std::string& id);

/// "bars" is 0, "lines" is 1. What is not 1 is written as bars.
std::optional<std::int32_t> ParseGraphStyle(std::wstring_view text);
std::wstring FormatGraphStyle(std::int32_t style);

/// "*" (an empty list) or identifiers of 1 to 16 hexadecimal digits, none zero, separated by commas.
std::optional<std::vector<std::uint64_t>> ParseInterfaces(std::wstring_view text);
/// "*" or each identifier as 16 upper-case digits.
std::wstring FormatInterfaces(const std::vector<std::uint64_t>& interfaces);

/// Texts separated by vertical bars, empty ones kept; an empty value has none. Always succeeds. There is no escape: an
/// alias that holds a bar comes back as two.
std::optional<std::vector<std::wstring>> ParseAliases(std::wstring_view text);
std::wstring FormatAliases(const std::vector<std::wstring>& aliases);

/// "*" (an empty list) or numbers of one or two digits, at most 63, none twice, separated by commas.
std::optional<std::vector<std::int32_t>> ParseDisks(std::wstring_view text);
std::wstring FormatDisks(const std::vector<std::int32_t>& disks);

}  // namespace kestrane
