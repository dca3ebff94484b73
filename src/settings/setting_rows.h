#pragma once
// Every setting that has a key, one row each: the row reads the key, writes it, copies the field and compares it.
// Colours have a table of their own, IconColors. Loading, saving, copying and comparing only walk these tables.
#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "settings/app_settings.h"
#include "settings/ini_values.h"
#include "text/number_text.h"

namespace kestrane {

struct SettingRow {
    const wchar_t* section;
    const wchar_t* key;
    /// False for a text that is not well-formed; the field then stays as it was.
    bool (*read)(AppSettings& settings, std::wstring_view text);
    std::wstring (*write)(const AppSettings& settings);
    void (*copy)(AppSettings& dest, const AppSettings& source);
    bool (*equal)(const AppSettings& a, const AppSettings& b);
};
using SettingRows = std::span<const SettingRow>;

// Where a row's field is: in the record itself, in an array of the record, in one of its graphs.
template <auto Member>
struct Own {
    static constexpr auto& In(auto& settings) { return settings.*Member; }
};
template <auto Member, std::size_t Index>
struct Element {
    static constexpr auto& In(auto& settings) { return (settings.*Member)[Index]; }
};
template <auto Graph, auto Member>
struct OfGraph {
    static constexpr auto& In(auto& settings) { return settings.*Graph.*Member; }
};

template <typename Place, auto Parse, auto Format>
constexpr SettingRow MakeRow(const wchar_t* section, const wchar_t* key) {
    return {section,
            key,
            [](AppSettings& settings, std::wstring_view text) {
                const auto value = Parse(text);
                if (value) Place::In(settings) = *value;
                return value.has_value();
            },
            [](const AppSettings& settings) { return Format(Place::In(settings)); },
            [](AppSettings& dest, const AppSettings& source) { Place::In(dest) = Place::In(source); },
            [](const AppSettings& a, const AppSettings& b) { return Place::In(a) == Place::In(b); }};
}
template <typename Place>
constexpr SettingRow FlagRow(const wchar_t* section, const wchar_t* key) {
    return MakeRow<Place, ParseFlag, FormatFlag>(section, key);
}
inline constexpr auto FormatNumber = [](auto number) { return FormatInteger(number); };
template <typename Place, auto Parse>
constexpr SettingRow NumberRow(const wchar_t* section, const wchar_t* key) {
    return MakeRow<Place, Parse, FormatNumber>(section, key);
}

template <auto Graph>
constexpr std::array<SettingRow, 9> MakeStyleRows(const wchar_t* section) {
    using Record = GraphSettings;
    return {NumberRow<OfGraph<Graph, &Record::opacity>, ParseOpacity>(section, L"opacity"),
            NumberRow<OfGraph<Graph, &Record::margin>, ParseMargin>(section, L"margin"),
            MakeRow<OfGraph<Graph, &Record::font_name>, ParseFontName, FormatFontName>(section, L"font_name"),
            NumberRow<OfGraph<Graph, &Record::font_size>, ParseFontSize>(section, L"font_size"),
            FlagRow<OfGraph<Graph, &Record::font_bold>>(section, L"font_bold"),
            MakeRow<OfGraph<Graph, &Record::style>, ParseGraphStyle, FormatGraphStyle>(section, L"style"),
            NumberRow<OfGraph<Graph, &Record::smoothing>, ParseSmoothing>(section, L"smoothing"),
            NumberRow<OfGraph<Graph, &Record::fill>, ParseFill>(section, L"fill"),
            FlagRow<OfGraph<Graph, &Record::topmost>>(section, L"topmost")};
}

/// Window state of a graph: two flags, and then the four numbers of the placement, which are read as a group.
inline constexpr std::size_t WindowFlagCount = 2;
template <auto Graph>
constexpr std::array<SettingRow, 6> MakeWindowRows(const wchar_t* section) {
    using Record = GraphSettings;
    return {FlagRow<OfGraph<Graph, &Record::graph>>(section, L"graph"),
            FlagRow<OfGraph<Graph, &Record::pinned>>(section, L"pinned"),
            NumberRow<OfGraph<Graph, &Record::x>, ParseInteger>(section, L"x"),
            NumberRow<OfGraph<Graph, &Record::y>, ParseInteger>(section, L"y"),
            NumberRow<OfGraph<Graph, &Record::width>, ParseGraphWidth>(section, L"width"),
            NumberRow<OfGraph<Graph, &Record::height>, ParseGraphHeight>(section, L"height")};
}

// By GraphKind.
inline constexpr std::array<std::array<SettingRow, 9>, GraphCount> StyleRows{
    MakeStyleRows<&AppSettings::network>(L"network"), MakeStyleRows<&AppSettings::cpu>(L"cpu"),
    MakeStyleRows<&AppSettings::disk>(L"disk")};
inline constexpr std::array<std::array<SettingRow, 6>, GraphCount> WindowRows{
    MakeWindowRows<&AppSettings::network>(L"network"), MakeWindowRows<&AppSettings::cpu>(L"cpu"),
    MakeWindowRows<&AppSettings::disk>(L"disk")};

// By MetricKind.
inline constexpr std::array<SettingRow, MetricCount> ShowRows{
    FlagRow<Element<&AppSettings::show, 0>>(L"icons", L"show_cpu"),
    FlagRow<Element<&AppSettings::show, 1>>(L"icons", L"show_disk"),
    FlagRow<Element<&AppSettings::show, 2>>(L"icons", L"show_mem"),
    FlagRow<Element<&AppSettings::show, 3>>(L"icons", L"show_net")};
inline constexpr std::array<SettingRow, MetricCount> RefreshRows{
    NumberRow<Element<&AppSettings::refresh_ms, 0>, ParseRefresh>(L"cpu", L"refresh_ms"),
    NumberRow<Element<&AppSettings::refresh_ms, 1>, ParseRefresh>(L"disk", L"refresh_ms"),
    NumberRow<Element<&AppSettings::refresh_ms, 2>, ParseRefresh>(L"memory", L"refresh_ms"),
    NumberRow<Element<&AppSettings::refresh_ms, 3>, ParseRefresh>(L"network", L"refresh_ms")};

inline constexpr std::array<SettingRow, 3> ThresholdRows{
    NumberRow<Element<&AppSettings::thresholds, 0>, ParseThreshold>(L"memory", L"threshold1"),
    NumberRow<Element<&AppSettings::thresholds, 1>, ParseThreshold>(L"memory", L"threshold2"),
    NumberRow<Element<&AppSettings::thresholds, 2>, ParseThreshold>(L"memory", L"threshold3")};
inline constexpr std::array<SettingRow, 4> MemoryRows{
    MakeRow<Own<&AppSettings::font_name>, ParseFontName, FormatFontName>(L"memory", L"font_name"),
    NumberRow<Own<&AppSettings::font_size>, ParseMemoryFontSize>(L"memory", L"font_size"),
    FlagRow<Own<&AppSettings::font_bold>>(L"memory", L"font_bold"), FlagRow<Own<&AppSettings::bar>>(L"memory", L"bar")};

inline constexpr SettingRow InterfacesRow =
    MakeRow<Own<&AppSettings::interfaces>, ParseInterfaces, FormatInterfaces>(L"network", L"interfaces");
inline constexpr SettingRow AliasesRow =
    MakeRow<Own<&AppSettings::interface_aliases>, ParseAliases, FormatAliases>(L"network", L"interface_aliases");
inline constexpr SettingRow PerCoreRow = FlagRow<Own<&AppSettings::per_core>>(L"cpu", L"per_core");
inline constexpr SettingRow ActivityRow = FlagRow<Own<&AppSettings::activity>>(L"disk", L"activity");
inline constexpr SettingRow DisksRow = MakeRow<Own<&AppSettings::disks>, ParseDisks, FormatDisks>(L"disk", L"disks");

inline constexpr SettingRow CheckUpdatesRow = FlagRow<Own<&AppSettings::check_updates>>(L"general", L"check_updates");
inline constexpr SettingRow LanguageRow =
    NumberRow<Own<&AppSettings::language>, ParseLanguage>(L"general", L"language");
inline constexpr SettingRow InstallIdRow =
    MakeRow<Own<&AppSettings::install_id>, ParseInstallId, FormatInstallId>(L"general", L"install_id");

/// Positions `first` to `end - 1` of the colours.
struct ColorRange {
    std::size_t first;
    std::size_t end;
};

/// The colours of a tab. A tab beyond Network answers with those of Network.
ColorRange TabColors(SettingsTab tab);

/// The other settings of a tab, in the order of saving; none for a tab beyond Network. The window state of the graphs
/// belongs to no tab.
SettingRows TabRows(SettingsTab tab);

}  // namespace kestrane
