#pragma once
// Everything the user can configure, as one record, with its colours and the lists of permitted values. A field's key,
// default, grammar and tab are in its row of setting_rows.cpp.
#include <array>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

#include "settings/color.h"
#include "settings/kinds.h"
#include "text/translation.h"

namespace kestrane {

/// A page of the settings dialog. General owns no fields of AppSettings.
enum class SettingsTab : std::uint32_t { Cpu = 0, Disk = 1, Memory = 2, Network = 3, General = 4 };

/// Indices into AppSettings::colors and IconColors.
enum ColorKey : std::size_t {
    CpuBg,
    CpuFg,
    CpuGraphBg,
    CpuBorder,
    CpuGraphFg,
    CpuGraphPerf,
    CpuGraphEff,
    DiskBg,
    DiskRead,
    DiskWrite,
    DiskGraphBg,
    DiskBorder,
    DiskGraphRead,
    DiskGraphWrite,
    MemBg,
    MemText,
    Mem1Bg,
    Mem1Text,
    Mem2Bg,
    Mem2Text,
    Mem3Bg,
    Mem3Text,
    MemBorder,
    Mem1Border,
    Mem2Border,
    Mem3Border,
    NetBg,
    NetDown,
    NetUp,
    NetBoth,
    NetGraphBg,
    NetBorder,
    NetGraphDown,
    NetGraphUp,
    NetGraphBoth,
    ColorCount
};

/// The highest disk number that can be chosen.
inline constexpr std::int32_t LastDisk = 63;

/// A graph window: six fields of window state, written by the window itself, then nine of style, edited in the dialog.
struct GraphSettings {
    bool graph = false;                    // the window is open
    bool pinned = false;                   // the window stays open
    std::int32_t x = 0;                    // screen pixels
    std::int32_t y = 0;                    // screen pixels
    std::int32_t width = 0;                // 0: never placed
    std::int32_t height = 0;               // 0: never placed
    std::int32_t opacity = 90;             // percent, one of OpacityChoices
    std::int32_t margin = 6;               // pixels around the plot, one of MarginChoices
    std::wstring font_name = L"Segoe UI";  // 1 to 31 characters
    std::int32_t font_size = 12;           // pixels at 96 DPI, one of FontSizeChoices
    bool font_bold = false;
    std::int32_t style = 0;      // 0 bars, 1 lines
    std::int32_t smoothing = 2;  // index in SmoothingChoices
    std::int32_t fill = 50;      // percent under the line, one of FillChoices
    bool topmost = false;

    bool operator==(const GraphSettings&) const = default;
};

/// The whole configuration. A default-constructed record does not hold the defaults; MakeDefaultSettings does.
struct AppSettings {
    std::array<ColorValue, ColorCount> colors{};
    std::array<std::int32_t, 3> thresholds{};  // memory percentages at which the memory icon changes level
    std::array<bool, MetricCount> show{true, true, true, true};                 // by MetricKind
    std::array<std::uint32_t, MetricCount> refresh_ms{1500, 1500, 1500, 1500};  // by MetricKind, from RefreshChoices
    std::wstring font_name = L"Segoe UI Variable Display Semibold";  // for the memory icon's digits, 1 to 31 characters
    std::int32_t font_size = 13;                                     // pixels at icon size 16, one of FontSizeChoices
    bool font_bold = false;
    bool bar = true;  // the memory icon draws its level bar
    bool check_updates = true;
    Lang language = LangAutomatic;                // index in LanguageChoices
    std::string install_id;                       // empty or 36 characters
    std::vector<std::uint64_t> interfaces;        // LUIDs of the chosen connections; empty: all, summed
    std::vector<std::wstring> interface_aliases;  // parallel to `interfaces`: each one's name when it was chosen
    GraphSettings network;
    GraphSettings cpu;
    GraphSettings disk;
    bool per_core = false;            // the CPU graph draws one small graph per logical processor
    bool activity = false;            // the disk graph shows percent instead of speed
    std::vector<std::int32_t> disks;  // chosen numbers, 0 to LastDisk, no duplicates; empty: all, summed

    bool operator==(const AppSettings&) const = default;
};

/// The part of `settings` that belongs to a graph.
GraphSettings& GraphSettingsOf(AppSettings& settings, GraphKind kind);
const GraphSettings& GraphSettingsOf(const AppSettings& settings, GraphKind kind);

/// One colour: its key in the settings file, the tab that owns it, and its default. The target of a ColorLink has no
/// default of its own. Rows are grouped by tab, in tab order.
struct IconColor {
    const wchar_t* key;
    SettingsTab tab;
    ColorValue value;
};
extern const std::array<IconColor, ColorCount> IconColors;

/// A colour that takes its source's value when it has none of its own: in the defaults, and when the file has no valid
/// value for its key.
struct ColorLink {
    ColorKey target;
    ColorKey source;
};
inline constexpr std::array<ColorLink, 7> ColorLinks{{{CpuGraphFg, CpuFg},
                                                      {CpuGraphPerf, CpuFg},
                                                      {DiskGraphRead, DiskRead},
                                                      {DiskGraphWrite, DiskWrite},
                                                      {NetGraphDown, NetDown},
                                                      {NetGraphUp, NetUp},
                                                      {NetGraphBoth, NetBoth}}};

// The permitted values, in the dialog's order. Texts are Spanish and shown through Tr.

/// `Count` consecutive integers from `first`.
template <std::size_t Count>
constexpr std::array<std::int32_t, Count> CountFrom(std::int32_t first) {
    std::array<std::int32_t, Count> numbers{};
    std::iota(numbers.begin(), numbers.end(), first);
    return numbers;
}

/// A sampling period and the text of the choice.
struct RefreshChoice {
    std::uint32_t ms;
    const wchar_t* text;
};
inline constexpr std::array<RefreshChoice, 6> RefreshChoices{{{500, L"Ultra rápido - 0,5 s"},
                                                              {1000, L"Rápido - 1 s"},
                                                              {1500, L"Normal - 1,5 s"},
                                                              {3000, L"Medio - 3 s"},
                                                              {5000, L"Lento - 5 s"},
                                                              {10000, L"Muy lento - 10 s"}}};
inline constexpr std::array<std::int32_t, 8> OpacityChoices{100, 90, 80, 70, 60, 50, 40, 30};  // percent
inline constexpr std::array<std::int32_t, 5> FillChoices{0, 25, 50, 75, 100};                  // percent
inline constexpr std::array<const wchar_t*, 4> SmoothingChoices{L"Ninguno", L"Bajo", L"Medio", L"Alto"};
inline constexpr auto MarginChoices = CountFrom<21>(0);    // pixels
inline constexpr auto FontSizeChoices = CountFrom<27>(6);  // pixels on a 16-pixel icon, or in a graph at 96 DPI
/// By Lang. Each language is named in its own language, so these names need no translation.
inline constexpr std::array<const wchar_t*, 3> LanguageChoices{L"Automático", L"Español", L"English"};
static_assert(LanguageChoices.size() == LangEnglish + 1 && LangAutomatic == 0 && LangSpanish == 1);

/// The settings of a user who never changed anything.
AppSettings MakeDefaultSettings();

/// Index in RefreshChoices. A period not in the list counts as 1500.
std::size_t RefreshIndex(std::uint32_t ms);
/// The text of a RefreshChoice in the active language. An index out of range counts as that of 1500.
const wchar_t* RefreshLabel(std::size_t index);
/// Index in OpacityChoices. A percentage not in the list counts as 90.
std::size_t OpacityIndex(std::int32_t percent);
/// Index of the nearest of FillChoices; the lower on a tie.
std::size_t FillIndex(std::int32_t percent);
/// One of FillChoices. 1 becomes 50: in older files the fill was a flag.
std::int32_t NormalizeFill(std::int32_t value);

// The nearest permitted value: 6 to 32, 0 to 20 and 0 to 3.
std::int32_t ClampFontSize(std::int32_t value);
std::int32_t ClampMargin(std::int32_t value);
std::int32_t ClampSmoothing(std::int32_t value);

/// True when each of the three is 1 to 100 and greater than the previous one.
bool ValidThresholds(const std::array<std::int32_t, 3>& thresholds);

/// How many thresholds a used percentage has reached (equalled or passed), 0 to 3.
std::size_t MemoryLevel(const AppSettings& settings, std::int32_t percent);

/// The colours of the memory icon at a used percentage; background and border may be ColorNone.
struct MemoryColors {
    ColorValue background;
    ColorValue text;
    ColorValue border;
};
MemoryColors MemoryLevelColors(const AppSettings& settings, std::int32_t percent);

}  // namespace kestrane
