#include "settings/app_settings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>

#include "text/translation.h"

namespace kestrane {
namespace {

constexpr std::int32_t Lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();

TEST(AppSettings, NumbersOfIconsAndGraphsAreFixed) {
    EXPECT_EQ(IndexOf(MetricKind::Cpu), 0U);
    EXPECT_EQ(IndexOf(MetricKind::Disk), 1U);
    EXPECT_EQ(IndexOf(MetricKind::Memory), 2U);
    EXPECT_EQ(IndexOf(MetricKind::Network), 3U);
    EXPECT_EQ(IndexOf(GraphKind::Network), 0U);
    EXPECT_EQ(IndexOf(GraphKind::Cpu), 1U);
    EXPECT_EQ(IndexOf(GraphKind::Disk), 2U);
    EXPECT_EQ(IconPosition(GraphKind::Cpu), 0U);
    EXPECT_EQ(IconPosition(GraphKind::Disk), 1U);
    EXPECT_EQ(IconPosition(GraphKind::Network), 3U);
}

TEST(AppSettings, GraphSettingsOfFindsTheGraph) {
    AppSettings settings;
    const AppSettings& constant = settings;
    for (const GraphKind kind : GraphKinds)
        EXPECT_EQ(&GraphSettingsOf(settings, kind), &GraphSettingsOf(constant, kind));
    EXPECT_EQ(&GraphSettingsOf(settings, GraphKind::Network), &settings.network);
    EXPECT_EQ(&GraphSettingsOf(settings, GraphKind::Cpu), &settings.cpu);
    EXPECT_EQ(&GraphSettingsOf(settings, GraphKind::Disk), &settings.disk);
}

TEST(AppSettings, EveryColourHasItsPlaceKeyTabAndDefault) {
    constexpr SettingsTab Cpu = SettingsTab::Cpu;
    constexpr SettingsTab Disk = SettingsTab::Disk;
    constexpr SettingsTab Memory = SettingsTab::Memory;
    constexpr SettingsTab Network = SettingsTab::Network;
    const struct {
        std::size_t named;
        std::size_t position;
        std::wstring key;
        SettingsTab tab;
        ColorValue value;
    } cases[] = {
        {CpuBg, 0, L"cpu_bg", Cpu, 0xCCEEFF},
        {CpuFg, 1, L"cpu_fg", Cpu, 0x007BB7},
        {CpuGraphBg, 2, L"cpu_graph_bg", Cpu, 0x000000},
        {CpuBorder, 3, L"cpu_border", Cpu, ColorNone},
        {CpuGraphFg, 4, L"cpu_graph_fg", Cpu, 0x007BB7},
        {CpuGraphPerf, 5, L"cpu_graph_perf", Cpu, 0x007BB7},
        {CpuGraphEff, 6, L"cpu_graph_eff", Cpu, 0x2EBD72},
        {DiskBg, 7, L"disk_bg", Disk, 0xFFF5E1},
        {DiskRead, 8, L"disk_read", Disk, 0xCE8B00},
        {DiskWrite, 9, L"disk_write", Disk, 0x167B04},
        {DiskGraphBg, 10, L"disk_graph_bg", Disk, 0x000000},
        {DiskBorder, 11, L"disk_border", Disk, ColorNone},
        {DiskGraphRead, 12, L"disk_graph_read", Disk, 0xCE8B00},
        {DiskGraphWrite, 13, L"disk_graph_write", Disk, 0x167B04},
        {MemBg, 14, L"mem_bg", Memory, ColorNone},
        {MemText, 15, L"mem_text", Memory, 0xFFFFFF},
        {Mem1Bg, 16, L"mem1_bg", Memory, ColorNone},
        {Mem1Text, 17, L"mem1_text", Memory, 0xFFFFFF},
        {Mem2Bg, 18, L"mem2_bg", Memory, ColorNone},
        {Mem2Text, 19, L"mem2_text", Memory, 0xFFFF28},
        {Mem3Bg, 20, L"mem3_bg", Memory, ColorNone},
        {Mem3Text, 21, L"mem3_text", Memory, 0xFF5555},
        {MemBorder, 22, L"mem_border", Memory, ColorNone},
        {Mem1Border, 23, L"mem1_border", Memory, ColorNone},
        {Mem2Border, 24, L"mem2_border", Memory, ColorNone},
        {Mem3Border, 25, L"mem3_border", Memory, ColorNone},
        {NetBg, 26, L"net_bg", Network, 0x000000},
        {NetDown, 27, L"net_down", Network, 0xFF0000},
        {NetUp, 28, L"net_up", Network, 0x009D00},
        {NetBoth, 29, L"net_both", Network, 0xFFFF00},
        {NetGraphBg, 30, L"net_graph_bg", Network, 0x000000},
        {NetBorder, 31, L"net_border", Network, ColorNone},
        {NetGraphDown, 32, L"net_graph_down", Network, 0xFF0000},
        {NetGraphUp, 33, L"net_graph_up", Network, 0x009D00},
        {NetGraphBoth, 34, L"net_graph_both", Network, 0xFFFF00},
    };
    ASSERT_EQ(std::size(cases), IconColors.size());
    const AppSettings settings = MakeDefaultSettings();
    for (const auto& [named, position, key, tab, value] : cases) {
        EXPECT_EQ(named, position) << position;
        EXPECT_EQ(IconColors[position].key, key) << position;
        EXPECT_EQ(IconColors[position].tab, tab) << position;
        EXPECT_EQ(settings.colors[position], value) << position;
    }
}

TEST(AppSettings, ColourLinksAreTheSevenPairs) {
    const std::array<std::pair<std::size_t, std::size_t>, 7> expected{
        {{4, 1}, {5, 1}, {12, 8}, {13, 9}, {32, 27}, {33, 28}, {34, 29}}};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(ColorLinks[i].target, expected[i].first);
        EXPECT_EQ(ColorLinks[i].source, expected[i].second);
    }
}

GraphSettings ExpectedGraph(std::int32_t margin, std::int32_t fontSize, std::int32_t style, std::int32_t fill) {
    GraphSettings graph;
    graph.graph = false;
    graph.pinned = false;
    graph.x = 0;
    graph.y = 0;
    graph.width = 0;
    graph.height = 0;
    graph.opacity = 90;
    graph.margin = margin;
    graph.font_name = L"Segoe UI";
    graph.font_size = fontSize;
    graph.font_bold = false;
    graph.style = style;
    graph.smoothing = 2;
    graph.fill = fill;
    graph.topmost = true;
    return graph;
}

TEST(AppSettings, Defaults) {
    const AppSettings settings = MakeDefaultSettings();
    EXPECT_EQ(settings.thresholds, (std::array<std::int32_t, 3>{50, 75, 90}));
    EXPECT_EQ(settings.show, (std::array<bool, 4>{true, true, true, true}));
    EXPECT_EQ(settings.refresh_ms, (std::array<std::uint32_t, 4>{1500, 1500, 1500, 1500}));
    EXPECT_EQ(settings.font_name, L"Segoe UI");
    EXPECT_EQ(settings.font_size, 12);
    EXPECT_FALSE(settings.font_bold);
    EXPECT_TRUE(settings.bar);
    EXPECT_TRUE(settings.check_updates);
    EXPECT_EQ(settings.language, LangAutomatic);
    EXPECT_TRUE(settings.install_id.empty());
    EXPECT_TRUE(settings.interfaces.empty());
    EXPECT_TRUE(settings.interface_aliases.empty());
    EXPECT_TRUE(settings.disks.empty());
    EXPECT_FALSE(settings.per_core);
    EXPECT_FALSE(settings.activity);
    // The three graphs differ on purpose.
    EXPECT_EQ(settings.network, ExpectedGraph(4, 11, 0, 50));
    EXPECT_EQ(settings.cpu, ExpectedGraph(3, 12, 0, 50));
    EXPECT_EQ(settings.disk, ExpectedGraph(3, 12, 1, 25));
}

TEST(AppSettings, ABareRecordIsNoSetOfDefaults) {
    const AppSettings bare;
    EXPECT_EQ(bare.font_name, L"Segoe UI Variable Display Semibold");
    EXPECT_EQ(bare.font_size, 13);
    EXPECT_TRUE(std::ranges::all_of(bare.colors, [](ColorValue color) { return color == 0; }));
    EXPECT_EQ(bare.thresholds, (std::array<std::int32_t, 3>{0, 0, 0}));
    for (const GraphKind kind : GraphKinds) {
        EXPECT_EQ(GraphSettingsOf(bare, kind).margin, 6);
        EXPECT_FALSE(GraphSettingsOf(bare, kind).topmost);
    }
}

TEST(AppSettings, RefreshIndexFallsBackToTheDefault) {
    const struct {
        std::uint32_t ms;
        std::size_t index;
    } cases[] = {{500, 0},  {1000, 1},  {1500, 2},  {3000, 3},
                 {5000, 4}, {10000, 5}, {750, 2},  // not the nearest
                 {0, 2},    {499, 2},   {10001, 2}, {std::numeric_limits<std::uint32_t>::max(), 2}};
    for (const auto& [ms, index] : cases)
        EXPECT_EQ(RefreshIndex(ms), index) << ms;
}

TEST(AppSettings, RefreshLabelsAreTranslated) {
    const struct {
        std::size_t index;
        std::wstring spanish;
        std::wstring english;
    } cases[] = {
        {0, L"Ultra rápido - 0,5 s", L"Ultra fast - 0.5 s"},
        {1, L"Rápido - 1 s", L"Fast - 1 s"},
        {2, L"Normal - 1,5 s", L"Normal - 1.5 s"},
        {3, L"Medio - 3 s", L"Medium - 3 s"},
        {4, L"Lento - 5 s", L"Slow - 5 s"},
        {5, L"Muy lento - 10 s", L"Very slow - 10 s"},
        {6, L"Normal - 1,5 s", L"Normal - 1.5 s"},  // out of range
        {std::numeric_limits<std::size_t>::max(), L"Normal - 1,5 s", L"Normal - 1.5 s"},
    };
    for (const auto& [index, spanish, english] : cases) {
        SetLanguage(ActiveSpanish);
        EXPECT_EQ(RefreshLabel(index), spanish) << index;
        SetLanguage(ActiveEnglish);
        EXPECT_EQ(RefreshLabel(index), english) << index;
    }
    SetLanguage(ActiveSpanish);
}

TEST(AppSettings, SmoothingChoicesAreTranslated) {
    const std::array<std::wstring, 4> english{L"None", L"Low", L"Medium", L"High"};
    SetLanguage(ActiveEnglish);
    for (std::size_t i = 0; i < english.size(); ++i)
        EXPECT_EQ(Tr(SmoothingChoices[i]), english[i]);
    SetLanguage(ActiveSpanish);
}

TEST(AppSettings, OnlyTheAutomaticChoiceOfLanguageIsTranslated) {
    const std::array<std::wstring, 3> spanish{L"Automático", L"Español", L"English"};
    const std::array<std::wstring, 3> english{L"Automatic", L"Español", L"English"};
    for (const Lang language : {LangAutomatic, LangSpanish, LangEnglish}) {
        EXPECT_EQ(Tr(LanguageChoices[language]), spanish[language]);
        SetLanguage(ActiveEnglish);
        EXPECT_EQ(Tr(LanguageChoices[language]), english[language]);
        SetLanguage(ActiveSpanish);
    }
}

TEST(AppSettings, MarginsAndFontSizesAreOfferedOneByOne) {
    ASSERT_EQ(MarginChoices.size(), 21U);
    for (std::size_t i = 0; i < MarginChoices.size(); ++i)
        EXPECT_EQ(MarginChoices[i], static_cast<std::int32_t>(i));
    ASSERT_EQ(FontSizeChoices.size(), 27U);
    for (std::size_t i = 0; i < FontSizeChoices.size(); ++i)
        EXPECT_EQ(FontSizeChoices[i], static_cast<std::int32_t>(i) + 6);
}

TEST(AppSettings, OpacityIndexFallsBackToTheDefault) {
    const struct {
        std::int32_t percent;
        std::size_t index;
    } cases[] = {{100, 0}, {90, 1}, {80, 2},  {70, 3},  {60, 4},     {50, 5},
                 {40, 6},  {30, 7}, {55, 1},  // not the nearest
                 {0, 1},   {29, 1}, {101, 1}, {-90, 1}, {Lowest, 1}, {Highest, 1}};
    for (const auto& [percent, index] : cases)
        EXPECT_EQ(OpacityIndex(percent), index) << percent;
}

TEST(AppSettings, FillIndexTakesTheNearest) {
    const struct {
        std::int32_t percent;
        std::size_t index;
    } cases[] = {{0, 0},  {12, 0}, {13, 1}, {25, 1}, {37, 1},  {38, 2},     {50, 2},     {62, 2},
                 {63, 3}, {75, 3}, {87, 3}, {88, 4}, {100, 4}, {Lowest, 0}, {Highest, 4}};
    for (const auto& [percent, index] : cases)
        EXPECT_EQ(FillIndex(percent), index) << percent;
}

TEST(AppSettings, NormalizeFillKnowsTheFlagOfOlderFiles) {
    const struct {
        std::int32_t value;
        std::int32_t fill;
    } cases[] = {{1, 50},  // a flag that was on
                 {0, 0},   {2, 0},   {-1, 0},    {-5, 0},    {500, 100},  {60, 50},
                 {63, 75}, {30, 25}, {100, 100}, {101, 100}, {Lowest, 0}, {Highest, 100}};
    for (const auto& [value, fill] : cases)
        EXPECT_EQ(NormalizeFill(value), fill) << value;
}

TEST(AppSettings, ClampsWalkTheirBounds) {
    const struct {
        std::int32_t (*clamp)(std::int32_t);
        std::int32_t low;
        std::int32_t high;
    } cases[] = {{ClampFontSize, 6, 32}, {ClampMargin, 0, 20}, {ClampSmoothing, 0, 3}};
    for (const auto& [clamp, low, high] : cases) {
        EXPECT_EQ(clamp(Lowest), low);
        EXPECT_EQ(clamp(low - 1), low);
        for (std::int32_t value = low; value <= high; ++value)
            EXPECT_EQ(clamp(value), value);
        EXPECT_EQ(clamp(high + 1), high);
        EXPECT_EQ(clamp(Highest), high);
    }
}

TEST(AppSettings, ThresholdsAscendFrom1To100) {
    const struct {
        std::array<std::int32_t, 3> thresholds;
        bool valid;
    } cases[] = {{{50, 75, 90}, true},  {{1, 2, 100}, true},   {{1, 2, 3}, true},      {{98, 99, 100}, true},
                 {{50, 50, 90}, false}, {{50, 75, 75}, false}, {{50, 40, 90}, false},  {{90, 75, 50}, false},
                 {{0, 10, 20}, false},  {{-5, 10, 20}, false}, {{10, 20, 101}, false}, {{101, 102, 103}, false}};
    for (const auto& [thresholds, valid] : cases) {
        EXPECT_EQ(ValidThresholds(thresholds), valid) << thresholds[0] << ' ' << thresholds[1] << ' ' << thresholds[2];
    }
}

TEST(AppSettings, AMemoryPercentageAtAThresholdBelongsToTheHigherLevel) {
    const struct {
        std::int32_t percent;
        std::size_t level;
    } cases[] = {{-1, 0}, {0, 0},  {1, 0},  {49, 0}, {50, 1},  {51, 1}, {74, 1},
                 {75, 2}, {89, 2}, {90, 3}, {99, 3}, {100, 3}, {101, 3}};
    AppSettings settings = MakeDefaultSettings();
    for (std::size_t i = 0; i < settings.colors.size(); ++i)
        settings.colors[i] = static_cast<ColorValue>(i);
    for (const auto& [percent, level] : cases) {
        EXPECT_EQ(MemoryLevel(settings, percent), level) << percent;
        const MemoryColors colors = MemoryLevelColors(settings, percent);
        EXPECT_EQ(colors.background, 14 + 2 * level) << percent;
        EXPECT_EQ(colors.text, 15 + 2 * level) << percent;
        EXPECT_EQ(colors.border, 22 + level) << percent;
    }
}

TEST(AppSettings, TheLastReachedThresholdDecidesTheLevel) {
    AppSettings settings = MakeDefaultSettings();
    settings.thresholds = {90, 50, 75};  // while the user is still editing them
    EXPECT_EQ(MemoryLevel(settings, 60), 2U);
    EXPECT_EQ(MemoryLevel(settings, 80), 3U);
    EXPECT_EQ(MemoryLevel(settings, 40), 0U);
}

}  // namespace
}  // namespace kestrane
