#pragma once
// How one value of the settings file is read and written. Every Parse returns nullopt for malformed text. Empty text,
// which is how an absent key reads, is malformed for all but aliases.
//
// The profile API underneath strips blanks and one pair of quotes around a value and truncates it to 259 characters.
// This can affect only font names, aliases and long lists of interfaces.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "settings/app_settings.h"

namespace kestrane {

/// "NONE", "none" or exactly six hexadecimal digits.
std::optional<ColorValue> ParseColor(std::wstring_view text);
/// "NONE" or the low 24 bits as six upper-case digits.
std::wstring FormatColor(ColorValue color);

/// Exactly "0" or "1".
std::optional<bool> ParseFlag(std::wstring_view text);
std::wstring FormatFlag(bool flag);

/// A strict integer, as `wcstol` in base 10 reads it: leading white space and a sign are allowed, nothing may follow,
/// and values beyond 32 bits saturate.
std::optional<std::int32_t> ParseInteger(std::wstring_view text);
/// A strict integer from `low` to `high`.
std::optional<std::int32_t> ParseIntegerWithin(std::wstring_view text, std::int32_t low, std::int32_t high);

/// One of RefreshChoices; an integer not in the list becomes 1500.
std::optional<std::uint32_t> ParseRefresh(std::wstring_view text);
/// One of OpacityChoices; an integer not in the list becomes 90.
std::optional<std::int32_t> ParseOpacity(std::wstring_view text);
/// A strict integer through ClampMargin, ClampFontSize, ClampSmoothing, NormalizeFill.
std::optional<std::int32_t> ParseMargin(std::wstring_view text);
std::optional<std::int32_t> ParseFontSize(std::wstring_view text);
std::optional<std::int32_t> ParseSmoothing(std::wstring_view text);
std::optional<std::int32_t> ParseFill(std::wstring_view text);
/// A graph window's size in pixels: width 100 to 10000, height 50 to 10000.
std::optional<std::int32_t> ParseGraphWidth(std::wstring_view text);
std::optional<std::int32_t> ParseGraphHeight(std::wstring_view text);
/// One of Lang: 0, 1 or 2.
std::optional<std::uint32_t> ParseLanguage(std::wstring_view text);

/// The one lenient number: trailing text is ignored, and text without a number counts as 0, which is then clamped to
/// the smallest size.
std::optional<std::int32_t> ParseMemoryFontSize(std::wstring_view text);

/// One to three digits, 1 to 100.
std::optional<std::int32_t> ParseThreshold(std::wstring_view text);

/// Any text of 1 to 31 characters.
std::optional<std::wstring> ParseFontName(std::wstring_view text);
std::wstring FormatFontName(const std::wstring& name);

/// 36 characters, each a dash, a digit or 'a' to 'f'.
std::optional<std::string> ParseInstallId(std::wstring_view text);
std::wstring FormatInstallId(const std::string& id);

/// "bars" is 0, "lines" is 1. Anything but 1 is written as "bars".
std::optional<std::int32_t> ParseGraphStyle(std::wstring_view text);
std::wstring FormatGraphStyle(std::int32_t style);

/// "*" (an empty list) or identifiers of 1 to 16 hexadecimal digits, none zero, separated by commas.
std::optional<std::vector<std::uint64_t>> ParseInterfaces(std::wstring_view text);
/// "*" or each identifier as 16 upper-case digits.
std::wstring FormatInterfaces(const std::vector<std::uint64_t>& interfaces);

/// Texts separated by vertical bars, empty ones kept; an empty value has none. Always succeeds. There is no escaping:
/// an alias that contains a bar comes back as two.
std::optional<std::vector<std::wstring>> ParseAliases(std::wstring_view text);
std::wstring FormatAliases(const std::vector<std::wstring>& aliases);

/// "*" (an empty list) or numbers of one or two digits, at most 63, no duplicates, separated by commas.
std::optional<std::vector<std::int32_t>> ParseDisks(std::wstring_view text);
std::wstring FormatDisks(const std::vector<std::int32_t>& disks);

}  // namespace kestrane
