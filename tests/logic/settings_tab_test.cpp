#include "settings/settings_tab.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace kestrane {
namespace {

constexpr std::array<SettingsTab, 4> Tabs{SettingsTab::Cpu, SettingsTab::Disk, SettingsTab::Memory,
                                          SettingsTab::Network};
constexpr int NoTab = -1;

/// One change to a record, and the one tab to which it belongs.
struct Change {
    std::string name;
    int tab;
    std::function<void(AppSettings&)> apply;
};

void AddGraphChanges(std::vector<Change>& changes, const std::string& name, int tab,
                     GraphSettings AppSettings::*graph) {
    const auto add = [&](const std::string& field, int owner, std::function<void(GraphSettings&)> apply) {
        changes.push_back({name + "." + field, owner, [=](AppSettings& settings) { apply(settings.*graph); }});
    };
    add("graph", NoTab, [](GraphSettings& g) { g.graph = !g.graph; });
    add("pinned", NoTab, [](GraphSettings& g) { g.pinned = !g.pinned; });
    add("x", NoTab, [](GraphSettings& g) { g.x += 7; });
    add("y", NoTab, [](GraphSettings& g) { g.y += 7; });
    add("width", NoTab, [](GraphSettings& g) { g.width += 200; });
    add("height", NoTab, [](GraphSettings& g) { g.height += 200; });
    add("opacity", tab, [](GraphSettings& g) { g.opacity = 40; });
    add("margin", tab, [](GraphSettings& g) { g.margin = 20; });
    add("font_name", tab, [](GraphSettings& g) { g.font_name = L"Arial"; });
    add("font_size", tab, [](GraphSettings& g) { g.font_size = 31; });
    add("font_bold", tab, [](GraphSettings& g) { g.font_bold = !g.font_bold; });
    add("style", tab, [](GraphSettings& g) { g.style = 1 - g.style; });
    add("smoothing", tab, [](GraphSettings& g) { g.smoothing = 3; });
    add("fill", tab, [](GraphSettings& g) { g.fill = 100; });
    add("topmost", tab, [](GraphSettings& g) { g.topmost = !g.topmost; });
}

std::vector<Change> AllChanges() {
    std::vector<Change> changes;
    for (std::size_t i = 0; i < ColorCount; ++i) {
        const int tab = i <= 6 ? 0 : i <= 13 ? 1 : i <= 25 ? 2 : 3;
        changes.push_back({"color " + std::to_string(i), tab, [i](AppSettings& s) { s.colors[i] = 0x123456; }});
    }
    for (std::size_t i = 0; i < MetricCount; ++i) {
        const int tab = static_cast<int>(i);
        changes.push_back({"show " + std::to_string(i), tab, [i](AppSettings& s) { s.show[i] = false; }});
        changes.push_back({"refresh_ms " + std::to_string(i), tab, [i](AppSettings& s) { s.refresh_ms[i] = 500; }});
    }
    for (std::size_t i = 0; i < 3; ++i) {
        changes.push_back({"threshold " + std::to_string(i), 2, [i](AppSettings& s) { ++s.thresholds[i]; }});
    }
    changes.push_back({"font_name", 2, [](AppSettings& s) { s.font_name = L"Arial"; }});
    changes.push_back({"font_size", 2, [](AppSettings& s) { s.font_size = 20; }});
    changes.push_back({"font_bold", 2, [](AppSettings& s) { s.font_bold = true; }});
    changes.push_back({"bar", 2, [](AppSettings& s) { s.bar = false; }});
    changes.push_back({"interfaces", 3, [](AppSettings& s) { s.interfaces = {2, 1}; }});
    changes.push_back({"interface_aliases", 3, [](AppSettings& s) { s.interface_aliases = {L"B", L"A"}; }});
    changes.push_back({"per_core", 0, [](AppSettings& s) { s.per_core = true; }});
    changes.push_back({"activity", 1, [](AppSettings& s) { s.activity = true; }});
    changes.push_back({"disks", 1, [](AppSettings& s) { s.disks = {1, 0}; }});
    changes.push_back({"check_updates", NoTab, [](AppSettings& s) { s.check_updates = false; }});
    changes.push_back({"language", NoTab, [](AppSettings& s) { s.language = 2; }});
    changes.push_back({"install_id", NoTab, [](AppSettings& s) { s.install_id = "0"; }});
    AddGraphChanges(changes, "network", 3, &AppSettings::network);
    AddGraphChanges(changes, "cpu", 0, &AppSettings::cpu);
    AddGraphChanges(changes, "disk", 1, &AppSettings::disk);
    return changes;
}

AppSettings Start() {
    AppSettings settings = MakeDefaultSettings();
    settings.interfaces = {1, 2};
    settings.interface_aliases = {L"A", L"B"};
    settings.disks = {0, 1};
    return settings;
}

TEST(SettingsTab, EachFieldDiffersInItsOwnTabOnly) {
    for (const Change& change : AllChanges()) {
        const AppSettings start = Start();
        AppSettings changed = start;
        change.apply(changed);
        ASSERT_NE(changed, start) << change.name;
        for (const SettingsTab tab : Tabs) {
            const bool own = static_cast<int>(tab) == change.tab;
            EXPECT_EQ(SettingsTabEqual(start, changed, tab), !own)
                << change.name << " in tab " << static_cast<int>(tab);
        }
    }
}

TEST(SettingsTab, CopyingATabCopiesExactlyItsFields) {
    for (const Change& change : AllChanges()) {
        AppSettings changed = Start();
        change.apply(changed);
        for (const SettingsTab tab : Tabs) {
            AppSettings dest = Start();
            CopySettingsTab(dest, changed, tab);
            const bool own = static_cast<int>(tab) == change.tab;
            EXPECT_EQ(dest, own ? changed : Start()) << change.name << " by tab " << static_cast<int>(tab);
        }
    }
}

TEST(SettingsTab, CopyingOntoItselfChangesNothing) {
    AppSettings settings = Start();
    for (const SettingsTab tab : Tabs)
        CopySettingsTab(settings, settings, tab);
    EXPECT_EQ(settings, Start());
}

TEST(SettingsTab, AShorterListIsAChange) {
    AppSettings shorter = Start();
    shorter.interfaces = {1};
    EXPECT_FALSE(SettingsTabEqual(Start(), shorter, SettingsTab::Network));
    EXPECT_FALSE(SettingsTabEqual(shorter, Start(), SettingsTab::Network));
}

// General owns no part of the record; for the colours it returns the same range as Network.
TEST(SettingsTab, ATabBeyondTheLastHasOnlyTheNetworkColours) {
    const AppSettings start = Start();
    for (const SettingsTab tab : {SettingsTab::General, static_cast<SettingsTab>(99)}) {
        AppSettings changed = start;
        for (const Change& change : AllChanges())
            change.apply(changed);
        AppSettings dest = start;
        CopySettingsTab(dest, changed, tab);
        AppSettings expected = start;
        for (std::size_t i = 26; i <= 34; ++i)
            expected.colors[i] = 0x123456;
        EXPECT_EQ(dest, expected);
        EXPECT_FALSE(SettingsTabEqual(start, changed, tab));
        EXPECT_TRUE(SettingsTabEqual(dest, changed, tab));
    }
}

}  // namespace
}  // namespace kestrane
