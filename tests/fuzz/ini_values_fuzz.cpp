// The value grammar of the settings file: accepted values are within range and survive a round-trip.
#include <algorithm>
#include <set>

#include "fuzz/fuzz_target.h"
#include "settings/ini_values.h"
#include "text/number_text.h"

namespace kestrane {
namespace {

using fuzz::Require;

template <typename Parse, typename Format>
void RequireRoundTrip(std::wstring_view text, Parse parse, Format format) {
    const auto value = parse(text);
    if (value) Require(parse(format(*value)) == value);
}

template <typename Parse>
void RequireNumber(std::wstring_view text, Parse parse, std::int64_t low, std::int64_t high) {
    const auto value = parse(text);
    if (value) Require(*value >= low && *value <= high);
    RequireRoundTrip(text, parse, [](auto number) { return FormatInteger(number); });
}

void CheckNumbers(std::wstring_view text) {
    RequireNumber(text, ParseInteger, INT32_MIN, INT32_MAX);
    RequireNumber(text, ParseRefresh, 500, 10000);
    RequireNumber(text, ParseOpacity, 30, 100);
    RequireNumber(text, ParseMargin, 0, 20);
    RequireNumber(text, ParseFontSize, 6, 32);
    RequireNumber(text, ParseMemoryFontSize, 6, 32);
    RequireNumber(text, ParseSmoothing, 0, 3);
    RequireNumber(text, ParseFill, 0, 100);
    RequireNumber(text, ParseGraphWidth, 100, 10000);
    RequireNumber(text, ParseGraphHeight, 50, 10000);
    RequireNumber(text, ParseLanguage, 0, 2);
    RequireNumber(text, ParseThreshold, 1, 100);
}

void CheckLists(std::wstring_view text) {
    RequireRoundTrip(text, ParseInterfaces, FormatInterfaces);
    RequireRoundTrip(text, ParseAliases, FormatAliases);
    RequireRoundTrip(text, ParseDisks, FormatDisks);
    if (const auto interfaces = ParseInterfaces(text)) Require(std::ranges::count(*interfaces, 0u) == 0);
    if (const auto disks = ParseDisks(text)) {
        Require(std::set(disks->begin(), disks->end()).size() == disks->size());
        Require(std::ranges::all_of(*disks, [](std::int32_t disk) { return disk >= 0 && disk <= 63; }));
    }
}

}  // namespace
}  // namespace kestrane

FUZZ_TARGET(ini_values) {
    using namespace kestrane;
    for (const std::wstring& text : fuzz::WideLines(input)) {
        CheckNumbers(text);
        CheckLists(text);
        RequireRoundTrip(text, ParseColor, FormatColor);
        RequireRoundTrip(text, ParseFlag, FormatFlag);
        RequireRoundTrip(text, ParseFontName, FormatFontName);
        RequireRoundTrip(text, ParseInstallId, FormatInstallId);
        RequireRoundTrip(text, ParseGraphStyle, FormatGraphStyle);
    }
}
