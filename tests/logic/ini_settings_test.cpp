#include "settings/ini_settings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "support/random_settings.h"

namespace kestrane {
namespace {

constexpr std::array<SettingsTab, 4> Tabs{SettingsTab::Cpu, SettingsTab::Disk, SettingsTab::Memory,
                                          SettingsTab::Network};
constexpr std::wstring_view TextAlphabet = L"abcXYZ ñé=;#[]\"'09,*";

/// A settings file in memory that records writes and refuses given keys.
struct MemoryIni {
    std::map<std::wstring, std::wstring> values;  // by "section.key"
    std::vector<std::wstring> written;            // "section.key=value", in order
    std::vector<std::wstring> refused;

    static std::wstring Name(const wchar_t* section, const wchar_t* key) { return std::wstring(section) + L"." + key; }
    ReadValue Reader() const {
        return [this](const wchar_t* section, const wchar_t* key) {
            const auto found = values.find(Name(section, key));
            return found == values.end() ? std::wstring() : found->second;
        };
    }
    WriteValue Writer() {
        return [this](const wchar_t* section, const wchar_t* key, const std::wstring& value) {
            const std::wstring name = Name(section, key);
            written.push_back(name + L"=" + value);
            if (std::ranges::count(refused, name) > 0) return false;
            values[name] = value;
            return true;
        };
    }
};

using Values = std::map<std::wstring, std::wstring>;

std::wstring NoFile(const wchar_t* /*section*/, const wchar_t* /*key*/) {
    return {};
}

AppSettings Load(const Values& values) {
    const MemoryIni ini{values, {}, {}};
    return ReadSettings(ini.Reader());
}

// Each case is a file and the defaults that it changes; everything else must stay.
struct LoadCase {
    const char* name;
    Values values;
    std::function<void(AppSettings&)> change;
};

void Nothing(AppSettings& /*settings*/) {}

void ExpectLoads(const std::vector<LoadCase>& cases) {
    for (const LoadCase& row : cases) {
        AppSettings expected = MakeDefaultSettings();
        row.change(expected);
        EXPECT_EQ(Load(row.values), expected) << row.name;
    }
}

TEST(IniSettings, NoFileIsTheDefaults) {
    EXPECT_EQ(Load({}), MakeDefaultSettings());
}

/// The keys that a load reads from a file with these values.
std::set<std::wstring> AskedOf(const Values& values) {
    const MemoryIni ini{values, {}, {}};
    std::set<std::wstring> asked;
    const ReadValue read = [&](const wchar_t* section, const wchar_t* key) {
        asked.insert(MemoryIni::Name(section, key));
        return ini.Reader()(section, key);
    };
    ReadSettings(read);
    ReadDialogState(read);
    return asked;
}

TEST(IniSettings, ALoadAsksForEveryKeyOfEveryAge) {
    std::set<std::wstring> keys{L"icons.show_cpu",
                                L"icons.show_disk",
                                L"icons.show_mem",
                                L"icons.show_net",
                                L"memory.threshold1",
                                L"memory.threshold2",
                                L"memory.threshold3",
                                L"memory.font_name",
                                L"memory.font_size",
                                L"memory.font_bold",
                                L"memory.bar",
                                L"memory.refresh_ms",
                                L"general.language",
                                L"general.check_updates",
                                L"general.install_id",
                                L"general.refresh_ms",
                                L"network.interfaces",
                                L"network.icon_border",
                                L"network.refresh_ms",
                                L"cpu.refresh_ms",
                                L"cpu.per_core",
                                L"disk.refresh_ms",
                                L"disk.activity",
                                L"disk.disks",
                                L"network.interface_aliases",
                                L"dialog.x",
                                L"dialog.y",
                                L"dialog.tab"};
    for (const IconColor& color : IconColors)
        keys.insert(std::wstring(L"colors.") + color.key);
    for (const std::wstring section : {L"network", L"cpu", L"disk"}) {
        for (const wchar_t* key :
             {L"graph", L"pinned", L"x", L"y", L"width", L"height", L"opacity", L"margin", L"font_name", L"font_size",
              L"font_bold", L"style", L"smoothing", L"fill", L"topmost"}) {
            keys.insert(section + L"." + key);
        }
    }
    EXPECT_EQ(AskedOf({{L"network.interfaces", L"1F"}}), keys);
    // Without interfaces, their names are not read either.
    keys.erase(L"network.interface_aliases");
    for (const wchar_t* malformed : {L"", L"1F,", L"1F,*", L"0"})
        EXPECT_EQ(AskedOf({{L"network.interfaces", malformed}}), keys) << testing::PrintToString(malformed);
}

TEST(IniSettings, EachColourIsReadUnderItsKey) {
    for (std::size_t i = 0; i < ColorCount; ++i) {
        AppSettings expected = MakeDefaultSettings();
        expected.colors[i] = 0x123ABC;
        for (const auto& [target, source] : ColorLinks) {
            if (source == i) expected.colors[target] = 0x123ABC;
        }
        EXPECT_EQ(Load({{std::wstring(L"colors.") + IconColors[i].key, L"123abc"}}), expected) << i;
    }
}

TEST(IniSettings, LinkedColoursFollowTheirSources) {
    ExpectLoads({
        {"source alone",
         {{L"colors.cpu_fg", L"FF0000"}},
         [](AppSettings& s) { s.colors[CpuFg] = s.colors[CpuGraphFg] = s.colors[CpuGraphPerf] = 0xFF0000; }},
        {"target alone",
         {{L"colors.cpu_graph_fg", L"FF0000"}},
         [](AppSettings& s) { s.colors[CpuGraphFg] = 0xFF0000; }},
        {"both",
         {{L"colors.net_up", L"FF0000"}, {L"colors.net_graph_up", L"00FF00"}},
         [](AppSettings& s) {
             s.colors[NetUp] = 0xFF0000;
             s.colors[NetGraphUp] = 0x00FF00;
         }},
        {"a malformed target counts as not read",
         {{L"colors.cpu_fg", L"FF0000"}, {L"colors.cpu_graph_fg", L"zz"}, {L"colors.cpu_graph_perf", L"NONE"}},
         [](AppSettings& s) {
             s.colors[CpuFg] = s.colors[CpuGraphFg] = 0xFF0000;
             s.colors[CpuGraphPerf] = ColorNone;
         }},
        {"a malformed target without a source", {{L"colors.cpu_graph_fg", L"zz"}}, Nothing},
        {"transparent is followed too",
         {{L"colors.disk_read", L"none"}},
         [](AppSettings& s) { s.colors[DiskRead] = s.colors[DiskGraphRead] = ColorNone; }},
        {"mixed case is malformed", {{L"colors.disk_read", L"None"}}, Nothing},
    });
}

TEST(IniSettings, ThresholdsAreTakenAsAGroup) {
    const auto file = [](const wchar_t* first, const wchar_t* second, const wchar_t* third) {
        return Values{{L"memory.threshold1", first}, {L"memory.threshold2", second}, {L"memory.threshold3", third}};
    };
    ExpectLoads({
        {"valid", file(L"10", L"20", L"100"),
         [](AppSettings& s) {
             s.thresholds = {10, 20, 100};
         }},
        {"not ascending", file(L"50", L"40", L"90"), Nothing},
        {"equal", file(L"50", L"50", L"90"), Nothing},
        // 60, 75 (the default of the bad one), 95 would ascend; even so, all three keep their defaults.
        {"one malformed", file(L"60", L"abc", L"95"), Nothing},
        {"one above 100", file(L"60", L"101", L"102"), Nothing},
        {"one of 101", file(L"60", L"80", L"101"), Nothing},
        {"one zero", file(L"0", L"80", L"90"), Nothing},
        {"one absent", {{L"memory.threshold1", L"60"}, {L"memory.threshold3", L"95"}}, Nothing},
    });
}

TEST(IniSettings, AtLeastOneIconIsShown) {
    ExpectLoads({
        {"one hidden", {{L"icons.show_disk", L"0"}}, [](AppSettings& s) { s.show[1] = false; }},
        {"three hidden",
         {{L"icons.show_cpu", L"0"}, {L"icons.show_disk", L"0"}, {L"icons.show_net", L"0"}},
         [](AppSettings& s) {
             s.show = {false, false, true, false};
         }},
        {"all hidden",
         {{L"icons.show_cpu", L"0"}, {L"icons.show_disk", L"0"}, {L"icons.show_mem", L"0"}, {L"icons.show_net", L"0"}},
         Nothing},
        {"only 0 and 1 are read", {{L"icons.show_cpu", L"2"}}, Nothing},
        {"a malformed one stays on",
         {{L"icons.show_cpu", L"0"}, {L"icons.show_disk", L"0"}, {L"icons.show_mem", L"no"}, {L"icons.show_net", L"0"}},
         [](AppSettings& s) {
             s.show = {false, false, true, false};
         }},
    });
}

TEST(IniSettings, GeneralKeys) {
    ExpectLoads({
        {"check_updates", {{L"general.check_updates", L"0"}}, [](AppSettings& s) { s.check_updates = false; }},
        {"check_updates malformed", {{L"general.check_updates", L"no"}}, Nothing},
        {"language", {{L"general.language", L"2"}}, [](AppSettings& s) { s.language = 2; }},
        {"language too great", {{L"general.language", L"3"}}, Nothing},
        {"language negative", {{L"general.language", L"-1"}}, Nothing},
        {"install_id",
         {{L"general.install_id", L"0f8fad5b-d9cb-469f-a165-70867728950e"}},
         [](AppSettings& s) { s.install_id = "0f8fad5b-d9cb-469f-a165-70867728950e"; }},
        {"install_id in upper case", {{L"general.install_id", L"0F8FAD5B-D9CB-469F-A165-70867728950E"}}, Nothing},
    });
}

TEST(IniSettings, RefreshPeriodsOfFilesOfAllAges) {
    const auto periods = [](std::array<std::uint32_t, 4> refresh) {
        return [refresh](AppSettings& s) { s.refresh_ms = refresh; };
    };
    ExpectLoads({
        {"one common period, never for the network",
         {{L"general.refresh_ms", L"3000"}},
         periods({3000, 3000, 3000, 1500})},
        {"the CPU drives the disk", {{L"cpu.refresh_ms", L"5000"}}, periods({5000, 5000, 1500, 1500})},
        {"unless per_core is there",
         {{L"cpu.refresh_ms", L"5000"}, {L"cpu.per_core", L"0"}},
         periods({5000, 1500, 1500, 1500})},
        {"even a malformed per_core is there",
         {{L"cpu.refresh_ms", L"5000"}, {L"cpu.per_core", L"x"}},
         periods({5000, 1500, 1500, 1500})},
        {"the disk's own period wins",
         {{L"cpu.refresh_ms", L"5000"}, {L"disk.refresh_ms", L"500"}},
         periods({5000, 500, 1500, 1500})},
        {"all three ages in one file",
         {{L"general.refresh_ms", L"3000"}, {L"cpu.refresh_ms", L"5000"}, {L"memory.refresh_ms", L"500"}},
         periods({5000, 5000, 500, 1500})},
        {"a common period and a CPU of today",
         {{L"general.refresh_ms", L"3000"}, {L"cpu.refresh_ms", L"5000"}, {L"cpu.per_core", L"0"}},
         periods({5000, 3000, 3000, 1500})},
        {"all of today",
         {{L"cpu.refresh_ms", L"500"},
          {L"disk.refresh_ms", L"1000"},
          {L"memory.refresh_ms", L"3000"},
          {L"network.refresh_ms", L"10000"}},
         periods({500, 1000, 3000, 10000})},
        {"unknown periods are the default",
         {{L"general.refresh_ms", L"3000"}, {L"cpu.refresh_ms", L"700"}, {L"memory.refresh_ms", L"-5"}},
         periods({1500, 1500, 1500, 1500})},
        {"700 in every section",
         {{L"general.refresh_ms", L"700"},
          {L"cpu.refresh_ms", L"700"},
          {L"disk.refresh_ms", L"700"},
          {L"memory.refresh_ms", L"700"},
          {L"network.refresh_ms", L"700"}},
         Nothing},
        {"malformed ones are not there",
         {{L"general.refresh_ms", L"3000"}, {L"cpu.refresh_ms", L"5000ms"}, {L"disk.refresh_ms", L"x"}},
         periods({3000, 3000, 3000, 1500})},
    });
}

TEST(IniSettings, MemoryKeys) {
    ExpectLoads({
        {"font_name", {{L"memory.font_name", L"Arial"}}, [](AppSettings& s) { s.font_name = L"Arial"; }},
        {"font_name too long", {{L"memory.font_name", std::wstring(32, L'x')}}, Nothing},
        {"font_size", {{L"memory.font_size", L"20"}}, [](AppSettings& s) { s.font_size = 20; }},
        {"font_size with a tail", {{L"memory.font_size", L"9abc"}}, [](AppSettings& s) { s.font_size = 9; }},
        {"font_size without a number", {{L"memory.font_size", L"abc"}}, [](AppSettings& s) { s.font_size = 6; }},
        {"font_size empty", {{L"memory.font_size", L""}}, Nothing},
        {"font_size clamped", {{L"memory.font_size", L"400"}}, [](AppSettings& s) { s.font_size = 32; }},
        {"font_bold", {{L"memory.font_bold", L"1"}}, [](AppSettings& s) { s.font_bold = true; }},
        {"bar", {{L"memory.bar", L"0"}}, [](AppSettings& s) { s.bar = false; }},
        {"bar malformed", {{L"memory.bar", L"off"}}, Nothing},
    });
}

TEST(IniSettings, InterfacesAndTheirAliases) {
    const auto chosen = [](std::vector<std::uint64_t> interfaces, std::vector<std::wstring> aliases) {
        return [=](AppSettings& s) {
            s.interfaces = interfaces;
            s.interface_aliases = aliases;
        };
    };
    const auto file = [](const wchar_t* interfaces, const wchar_t* aliases) {
        return Values{{L"network.interfaces", interfaces}, {L"network.interface_aliases", aliases}};
    };
    ExpectLoads({
        {"two", file(L"1F,2f", L"A|B"), chosen({0x1F, 0x2F}, {L"A", L"B"})},
        {"aliases padded", file(L"1F,2F", L"Ethernet"), chosen({0x1F, 0x2F}, {L"Ethernet", L""})},
        {"aliases cut", file(L"1F,2F", L"A|B|C"), chosen({0x1F, 0x2F}, {L"A", L"B"})},
        {"no aliases", {{L"network.interfaces", L"1F"}}, chosen({0x1F}, {L""})},
        {"all", file(L"*", L"A|B"), Nothing},
        {"trailing comma", file(L"1F,", L"A"), Nothing},
        {"star among others", file(L"1F,*", L"A|B"), Nothing},
        {"empty", file(L"", L"A"), Nothing},
        {"zero", file(L"1F,0", L"A|B"), Nothing},
    });
}

TEST(IniSettings, AListCutByTheReadIsAnotherListOrNone) {
    MemoryIni ini;
    AppSettings settings = MakeDefaultSettings();
    for (std::uint64_t i = 1; i <= 16; ++i)
        settings.interfaces.push_back(0x1122334455667700 + i);
    settings.interface_aliases.resize(16);
    ASSERT_TRUE(WriteSettingsTab(settings, SettingsTab::Network, ini.Reader(), ini.Writer()));
    std::wstring& text = ini.values[L"network.interfaces"];
    ASSERT_EQ(text.size(), 16U * 16 + 15);
    text.resize(259);
    const AppSettings loaded = ReadSettings(ini.Reader());
    ASSERT_EQ(loaded.interfaces.size(), 16U);
    EXPECT_EQ(loaded.interfaces[14], 0x112233445566770FU);
    EXPECT_EQ(loaded.interfaces[15], 0x1122U);  // four of its sixteen digits are left
    text.resize(255);                           // ends in the comma
    EXPECT_TRUE(ReadSettings(ini.Reader()).interfaces.empty());
}

TEST(IniSettings, TheSwitchOfAnOlderNetworkBorderMeansTransparent) {
    ExpectLoads({
        {"switched off", {{L"network.icon_border", L"0"}}, [](AppSettings& s) { s.colors[NetBorder] = ColorNone; }},
        {"the colour wins",
         {{L"network.icon_border", L"0"}, {L"colors.net_border", L"112233"}},
         [](AppSettings& s) { s.colors[NetBorder] = 0x112233; }},
    });
}

struct GraphName {
    std::wstring section;
    GraphKind kind;
};
const std::array<GraphName, 3> GraphNames{
    {{L"network", GraphKind::Network}, {L"cpu", GraphKind::Cpu}, {L"disk", GraphKind::Disk}}};

TEST(IniSettings, StyleKeysOfEachGraph) {
    const struct {
        const wchar_t* key;
        const wchar_t* text;
        std::function<void(GraphSettings&)> change;
    } cases[] = {
        {L"opacity", L"40", [](GraphSettings& g) { g.opacity = 40; }},
        {L"opacity", L"55", [](GraphSettings& g) { g.opacity = 90; }},
        {L"margin", L"20", [](GraphSettings& g) { g.margin = 20; }},
        {L"margin", L"-3", [](GraphSettings& g) { g.margin = 0; }},
        {L"font_name", L"Arial", [](GraphSettings& g) { g.font_name = L"Arial"; }},
        {L"font_size", L"33", [](GraphSettings& g) { g.font_size = 32; }},
        {L"font_size", L"20x", [](GraphSettings&) {}},  // only the memory icon's size is lenient
        {L"font_bold", L"1", [](GraphSettings& g) { g.font_bold = true; }},
        {L"style", L"lines", [](GraphSettings& g) { g.style = 1; }},
        {L"style", L"bars", [](GraphSettings& g) { g.style = 0; }},
        {L"style", L"Lines", [](GraphSettings&) {}},
        {L"smoothing", L"9", [](GraphSettings& g) { g.smoothing = 3; }},
        {L"fill", L"1", [](GraphSettings& g) { g.fill = 50; }},
        {L"fill", L"30", [](GraphSettings& g) { g.fill = 25; }},
        {L"fill", L"500", [](GraphSettings& g) { g.fill = 100; }},
        {L"topmost", L"0", [](GraphSettings& g) { g.topmost = false; }},
        {L"graph", L"1", [](GraphSettings& g) { g.graph = true; }},
        {L"pinned", L"1", [](GraphSettings& g) { g.pinned = true; }},
        {L"pinned", L"yes", [](GraphSettings&) {}},
    };
    for (const auto& [section, kind] : GraphNames) {
        for (const auto& [key, text, change] : cases) {
            AppSettings expected = MakeDefaultSettings();
            change(GraphSettingsOf(expected, kind));
            EXPECT_EQ(Load({{section + L"." + key, text}}), expected)
                << testing::PrintToString(section) << testing::PrintToString(key) << testing::PrintToString(text);
        }
    }
}

TEST(IniSettings, ThePlacementOfAGraphIsTakenAsAGroup) {
    const struct {
        const wchar_t* x;
        const wchar_t* y;
        const wchar_t* width;
        const wchar_t* height;
        bool taken;
    } cases[] = {
        {L"-5", L"7", L"100", L"50", true},    {L"-5", L"7", L"10000", L"10000", true},
        {L"-5", L"7", L"99", L"50", false},    {L"-5", L"7", L"100", L"49", false},
        {L"-5", L"7", L"10001", L"50", false}, {L"-5", L"7", L"100", L"10001", false},
        {L"", L"7", L"100", L"50", false},     {L"-5", L"", L"100", L"50", false},
        {L"-5", L"7", L"", L"50", false},      {L"-5", L"7", L"100", L"", false},
        {L"x", L"7", L"100", L"50", false},    {L"-5", L"7.0", L"100", L"50", false},
        {L"-5", L"7", L"-100", L"50", false},  {L"-5", L"7", L"100", L"50px", false},
    };
    for (const auto& [section, kind] : GraphNames) {
        for (const auto& [x, y, width, height, taken] : cases) {
            const AppSettings loaded = Load({{section + L".x", x},
                                             {section + L".y", y},
                                             {section + L".width", width},
                                             {section + L".height", height},
                                             {section + L".graph", L"1"}});
            AppSettings expected = MakeDefaultSettings();
            GraphSettings& graph = GraphSettingsOf(expected, kind);
            graph.graph = true;  // does not depend on the placement
            if (taken) {
                graph.x = -5;
                graph.y = 7;
                graph.width = std::stoi(width);
                graph.height = std::stoi(height);
            }
            EXPECT_EQ(loaded, expected) << testing::PrintToString(x) << testing::PrintToString(y)
                                        << testing::PrintToString(width) << testing::PrintToString(height);
        }
    }
}

TEST(IniSettings, APlacementHasNoLimitsOfPosition) {
    const AppSettings loaded = Load(
        {{L"cpu.x", L"-99999999999"}, {L"cpu.y", L"99999999999"}, {L"cpu.width", L"200"}, {L"cpu.height", L"200"}});
    EXPECT_EQ(loaded.cpu.x, std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(loaded.cpu.y, std::numeric_limits<std::int32_t>::max());
}

TEST(IniSettings, KeysOfOneGraphOnly) {
    ExpectLoads({
        {"per_core", {{L"cpu.per_core", L"1"}}, [](AppSettings& s) { s.per_core = true; }},
        {"activity", {{L"disk.activity", L"1"}}, [](AppSettings& s) { s.activity = true; }},
        {"disks",
         {{L"disk.disks", L"2,0"}},
         [](AppSettings& s) {
             s.disks = {2, 0};
         }},
        {"all disks", {{L"disk.disks", L"*"}}, Nothing},
        {"a disk twice", {{L"disk.disks", L"0,1,1"}}, Nothing},
        {"a disk too great", {{L"disk.disks", L"64"}}, Nothing},
        {"three digits", {{L"disk.disks", L"100"}}, Nothing},
    });
}

TEST(IniSettings, DialogKeys) {
    const struct {
        const wchar_t* x;
        const wchar_t* y;
        const wchar_t* tab;
        DialogState state;
    } cases[] = {
        {L"", L"", L"", {}},
        {L"10", L"-20", L"4", {true, 10, -20, 4}},
        {L"-99999", L"99999", L"0", {true, -99999, 99999, 0}},
        {L"100000", L"20", L"3", {false, 0, 0, 3}},  // the tab still applies
        {L"10", L"-100000", L"3", {false, 0, 0, 3}},
        {L"10", L"", L"3", {false, 0, 0, 3}},
        {L"x", L"20", L"3", {false, 0, 0, 3}},
        {L"10", L"20", L"5", {true, 10, 20, 0}},
        {L"10", L"20", L"-1", {true, 10, 20, 0}},
        {L"10", L"20", L"cpu", {true, 10, 20, 0}},
    };
    for (const auto& [x, y, tab, state] : cases) {
        const MemoryIni ini{{{L"dialog.x", x}, {L"dialog.y", y}, {L"dialog.tab", tab}}, {}, {}};
        EXPECT_EQ(ReadDialogState(ini.Reader()), state) << testing::PrintToString(x) << testing::PrintToString(tab);
    }
}

std::vector<std::wstring> WrittenBy(const std::function<bool(const WriteValue&)>& save) {
    MemoryIni ini;
    EXPECT_TRUE(save(ini.Writer()));
    return ini.written;
}

TEST(IniSettings, EachTabWritesItsKeysInOrder) {
    AppSettings settings = MakeDefaultSettings();
    settings.interfaces = {0x1F, 0x2F};
    settings.interface_aliases = {L"A", L"B"};
    settings.disks = {2, 0};
    const std::vector<std::wstring> expected[] = {
        {L"colors.cpu_bg=CCEEFF", L"colors.cpu_fg=007BB7", L"colors.cpu_graph_bg=000000", L"colors.cpu_border=NONE",
         L"colors.cpu_graph_fg=007BB7", L"colors.cpu_graph_perf=007BB7", L"colors.cpu_graph_eff=2EBD72",
         L"icons.show_cpu=1", L"cpu.refresh_ms=1500", L"cpu.opacity=90", L"cpu.margin=3", L"cpu.font_name=Segoe UI",
         L"cpu.font_size=12", L"cpu.font_bold=0", L"cpu.style=bars", L"cpu.smoothing=2", L"cpu.fill=50",
         L"cpu.topmost=1", L"cpu.per_core=0"},
        {L"colors.disk_bg=FFF5E1",
         L"colors.disk_read=CE8B00",
         L"colors.disk_write=167B04",
         L"colors.disk_graph_bg=000000",
         L"colors.disk_border=NONE",
         L"colors.disk_graph_read=CE8B00",
         L"colors.disk_graph_write=167B04",
         L"icons.show_disk=1",
         L"disk.refresh_ms=1500",
         L"disk.opacity=90",
         L"disk.margin=3",
         L"disk.font_name=Segoe UI",
         L"disk.font_size=12",
         L"disk.font_bold=0",
         L"disk.style=lines",
         L"disk.smoothing=2",
         L"disk.fill=25",
         L"disk.topmost=1",
         L"disk.activity=0",
         L"disk.disks=2,0"},
        {L"colors.mem_bg=NONE",        L"colors.mem_text=FFFFFF",
         L"colors.mem1_bg=NONE",       L"colors.mem1_text=FFFFFF",
         L"colors.mem2_bg=NONE",       L"colors.mem2_text=FFFF28",
         L"colors.mem3_bg=NONE",       L"colors.mem3_text=FF5555",
         L"colors.mem_border=NONE",    L"colors.mem1_border=NONE",
         L"colors.mem2_border=NONE",   L"colors.mem3_border=NONE",
         L"icons.show_mem=1",          L"memory.threshold1=50",
         L"memory.threshold2=75",      L"memory.threshold3=90",
         L"memory.font_name=Segoe UI", L"memory.font_size=12",
         L"memory.font_bold=0",        L"memory.bar=1",
         L"memory.refresh_ms=1500"},
        {L"colors.net_bg=000000",
         L"colors.net_down=FF0000",
         L"colors.net_up=009D00",
         L"colors.net_both=FFFF00",
         L"colors.net_graph_bg=000000",
         L"colors.net_border=NONE",
         L"colors.net_graph_down=FF0000",
         L"colors.net_graph_up=009D00",
         L"colors.net_graph_both=FFFF00",
         L"icons.show_net=1",
         L"network.interfaces=000000000000001F,000000000000002F",
         L"network.interface_aliases=A|B",
         L"network.refresh_ms=1500",
         L"network.opacity=90",
         L"network.margin=4",
         L"network.font_name=Segoe UI",
         L"network.font_size=11",
         L"network.font_bold=0",
         L"network.style=bars",
         L"network.smoothing=2",
         L"network.fill=50",
         L"network.topmost=1"},
    };
    for (const SettingsTab tab : Tabs) {
        EXPECT_EQ(WrittenBy([&](const WriteValue& write) { return WriteSettingsTab(settings, tab, NoFile, write); }),
                  expected[static_cast<std::size_t>(tab)]);
    }
}

TEST(IniSettings, SmallSavesWriteTheirKeysInOrder) {
    using Lines = std::vector<std::wstring>;
    AppSettings settings = MakeDefaultSettings();
    settings.install_id = "0f8fad5b-d9cb-469f-a165-70867728950e";
    settings.language = 2;
    settings.cpu.graph = true;
    settings.cpu.x = -1920;
    settings.cpu.width = 400;
    const auto one = [&](const SettingRow& row) {
        return WrittenBy([&](const WriteValue& write) { return WriteSetting(row, settings, write); });
    };
    EXPECT_EQ(one(CheckUpdatesRow), Lines{L"general.check_updates=1"});
    EXPECT_EQ(one(LanguageRow), Lines{L"general.language=2"});
    EXPECT_EQ(one(InstallIdRow), Lines{L"general.install_id=0f8fad5b-d9cb-469f-a165-70867728950e"});
    EXPECT_EQ(one(ActivityRow), Lines{L"disk.activity=0"});
    EXPECT_EQ(WrittenBy([&](const WriteValue& write) { return WriteGraphWindows(settings, write); }),
              (Lines{L"network.graph=0", L"network.pinned=0", L"network.x=0", L"network.y=0", L"network.width=0",
                     L"network.height=0", L"cpu.graph=1", L"cpu.pinned=0", L"cpu.x=-1920", L"cpu.y=0", L"cpu.width=400",
                     L"cpu.height=0", L"disk.graph=0", L"disk.pinned=0", L"disk.x=0", L"disk.y=0", L"disk.width=0",
                     L"disk.height=0"}));
    EXPECT_EQ(WrittenBy([](const WriteValue& write) {
                  return WriteDialogState({true, -3, 4, 2}, write);
              }),
              (Lines{L"dialog.x=-3", L"dialog.y=4", L"dialog.tab=2"}));
}

TEST(IniSettings, AFailedKeyDoesNotStopATab) {
    const AppSettings settings = MakeDefaultSettings();
    for (const SettingsTab tab : Tabs) {
        const std::vector<std::wstring> whole =
            WrittenBy([&](const WriteValue& write) { return WriteSettingsTab(settings, tab, NoFile, write); });
        for (const std::wstring& line : whole) {
            MemoryIni ini;
            ini.refused = {line.substr(0, line.find(L'='))};
            EXPECT_FALSE(WriteSettingsTab(settings, tab, ini.Reader(), ini.Writer())) << testing::PrintToString(line);
            EXPECT_EQ(ini.written, whole);
            EXPECT_EQ(ini.values.size(), whole.size() - 1);
        }
    }
}

TEST(IniSettings, AFailedGraphStopsTheLaterOnes) {
    const AppSettings settings = MakeDefaultSettings();
    const struct {
        std::wstring refused;
        std::size_t attempted;
    } cases[] = {{L"network.graph", 6}, {L"network.height", 6}, {L"cpu.x", 12}, {L"disk.graph", 18}};
    for (const auto& [refused, attempted] : cases) {
        MemoryIni ini;
        ini.refused = {refused};
        EXPECT_FALSE(WriteGraphWindows(settings, ini.Writer()));
        EXPECT_EQ(ini.written.size(), attempted) << testing::PrintToString(refused);
    }
}

TEST(IniSettings, AFailedKeyFailsTheDialogStateAndTheRestIsWritten) {
    for (const wchar_t* refused : {L"dialog.x", L"dialog.y", L"dialog.tab"}) {
        MemoryIni ini;
        ini.refused = {refused};
        EXPECT_FALSE(WriteDialogState({true, 1, 2, 3}, ini.Writer()));
        EXPECT_EQ(ini.values.size(), 2U);
    }
}

void WriteEverything(const AppSettings& settings, MemoryIni& ini) {
    for (const SettingsTab tab : Tabs)
        EXPECT_TRUE(WriteSettingsTab(settings, tab, ini.Reader(), ini.Writer()));
    EXPECT_TRUE(WriteGraphWindows(settings, ini.Writer()));
    for (const SettingRow& row : {CheckUpdatesRow, LanguageRow, InstallIdRow}) {
        EXPECT_TRUE(WriteSetting(row, settings, ini.Writer()));
    }
}

TEST(IniSettings, DefaultsComeBackAsTheyWereSaved) {
    MemoryIni ini;
    WriteEverything(MakeDefaultSettings(), ini);
    EXPECT_EQ(ReadSettings(ini.Reader()), MakeDefaultSettings());
}

TEST(IniSettings, AnySettingsComeBackAsTheyWereSaved) {
    RandomSettings random(1234, TextAlphabet);
    MemoryIni ini;  // one file for all: a save must overwrite everything of the last one
    for (int round = 0; round < 3000; ++round) {
        const AppSettings settings = random.Next();
        WriteEverything(settings, ini);
        ASSERT_EQ(ReadSettings(ini.Reader()), settings) << round;
    }
}

TEST(IniSettings, ASavedTabBringsBackThatTabOnly) {
    RandomSettings random(99, TextAlphabet);
    for (int round = 0; round < 200; ++round) {
        const AppSettings settings = random.Next();
        for (const SettingsTab tab : Tabs) {
            MemoryIni ini;
            ASSERT_TRUE(WriteSettingsTab(settings, tab, ini.Reader(), ini.Writer()));
            const AppSettings loaded = ReadSettings(ini.Reader());
            for (std::size_t i = 0; i < ColorCount; ++i) {
                const bool own = IconColors[i].tab == tab;
                EXPECT_EQ(loaded.colors[i], own ? settings.colors[i] : MakeDefaultSettings().colors[i]) << i;
            }
            EXPECT_EQ(loaded.per_core, tab == SettingsTab::Cpu && settings.per_core);
            EXPECT_EQ(loaded.activity, tab == SettingsTab::Disk && settings.activity);
        }
    }
}

TEST(IniSettings, SavedDialogStatesComeBack) {
    std::mt19937 random(5);
    std::uniform_int_distribution<std::int32_t> position(-99999, 99999);
    for (int round = 0; round < 1000; ++round) {
        const DialogState state{true, position(random), position(random), static_cast<std::uint32_t>(random() % 5)};
        MemoryIni ini;
        ASSERT_TRUE(WriteDialogState(state, ini.Writer()));
        ASSERT_EQ(ReadDialogState(ini.Reader()), state);
    }
}

void ExpectPermitted(const AppSettings& s) {
    for (const ColorValue color : s.colors)
        EXPECT_TRUE(color <= 0xFFFFFF || color == ColorNone);
    EXPECT_TRUE(ValidThresholds(s.thresholds));
    EXPECT_GT(std::ranges::count(s.show, true), 0);
    for (const std::uint32_t ms : s.refresh_ms)
        EXPECT_EQ(RefreshChoices[RefreshIndex(ms)].ms, ms);
    EXPECT_LT(s.language, 3U);
    EXPECT_EQ(s.font_size, ClampFontSize(s.font_size));
    EXPECT_EQ(s.interfaces.size(), s.interface_aliases.size());
    for (const GraphKind kind : GraphKinds) {
        const GraphSettings& graph = GraphSettingsOf(s, kind);
        EXPECT_EQ(OpacityChoices[OpacityIndex(graph.opacity)], graph.opacity);
        EXPECT_EQ(ClampMargin(graph.margin), graph.margin);
        EXPECT_EQ(ClampFontSize(graph.font_size), graph.font_size);
        EXPECT_EQ(ClampSmoothing(graph.smoothing), graph.smoothing);
        EXPECT_EQ(NormalizeFill(graph.fill), graph.fill);
        EXPECT_TRUE(!graph.font_name.empty() && graph.font_name.size() <= 31);
    }
}

std::wstring RandomValue(std::mt19937& random) {
    static const std::vector<std::wstring> hints{L"0",     L"1",     L"50",  L"*",  L"NONE",
                                                 L"lines", L"1F,2F", L"A|B", L"-1", L"500"};
    if (random() % 3 == 0) return hints[random() % hints.size()];
    std::wstring text;
    for (auto length = random() % 259; length > 0; --length)
        text += static_cast<wchar_t>(1 + random() % 0xFFFF);
    return text;
}

TEST(IniSettings, WhateverTheFileHoldsTheSettingsArePermitted) {
    std::mt19937 random(31337);
    const auto anything = [&random](const wchar_t*, const wchar_t*) { return RandomValue(random); };
    for (int round = 0; round < 500; ++round)
        ExpectPermitted(ReadSettings(anything));
}

TEST(IniSettings, GarbageInEveryKeyIsTheDefaults) {
    const auto garbage = [](const wchar_t*, const wchar_t* key) {
        // Long, because any short text is a valid font name; and the memory icon's font size accepts any text.
        return std::wstring(key) == L"font_size" ? std::wstring() : std::wstring(40, L'\x00BF');
    };
    EXPECT_EQ(ReadSettings(garbage), MakeDefaultSettings());
    EXPECT_EQ(ReadDialogState(garbage), DialogState());
}

}  // namespace
}  // namespace kestrane
