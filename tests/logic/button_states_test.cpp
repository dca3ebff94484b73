#include "dialog/button_states.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "dialog/control_table.h"
#include "dialog/dialog_layout.h"
#include "dialog/interface_choice.h"
#include "settings/settings_tab.h"

namespace kestrane {
namespace {

using enum SettingsTab;

/// The tabs as letters, those that are not enabled as dots: "C...G".
std::string Enabled(const std::array<bool, TabCount>& states) {
    std::string letters = "CDMNG";
    for (std::size_t i = 0; i < TabCount; ++i) {
        if (!states.at(i)) letters[i] = '.';
    }
    return letters;
}

/// The buttons of a dialog whose General page is as saved.
ButtonStates ButtonsOf(const AppSettings& settings, const AppSettings& saved) {
    return EvaluateButtons(settings, saved, MakeDefaultSettings(), {}, {});
}

struct Edit {
    const char* reason;
    void (*apply)(AppSettings&);
    std::string enabled;
};
const std::vector<Edit> Edits = {
    {"nothing", [](AppSettings&) {}, "....."},
    {"a colour of the CPU", [](AppSettings& s) { s.colors[CpuGraphEff] = 1; }, "C...."},
    {"one core each", [](AppSettings& s) { s.per_core = true; }, "C...."},
    {"a hidden icon", [](AppSettings& s) { s.show[1] = false; }, ".D..."},
    {"chosen disks", [](AppSettings& s) { s.disks = {1}; }, ".D..."},
    {"a threshold", [](AppSettings& s) { s.thresholds[2] = 91; }, "..M.."},
    {"the font of the memory icon", [](AppSettings& s) { s.font_name = L"Arial"; }, "..M.."},
    {"a chosen interface", [](AppSettings& s) { s.interfaces = {7}; }, "...N."},
    {"the fill of the network graph", [](AppSettings& s) { s.network.fill = 0; }, "...N."},
    {"all four periods", [](AppSettings& s) { s.refresh_ms.fill(500); }, "CDMN."},
    {"an open graph", [](AppSettings& s) { s.cpu.graph = true; }, "....."},
    {"the place of a graph", [](AppSettings& s) { s.disk.x = 9; }, "....."},
    {"the language", [](AppSettings& s) { s.language = LangEnglish; }, "....."},
};

TEST(EvaluateButtons, SaveIsEnabledOnTheTabsThatDifferFromTheFile) {
    for (const Edit& edit : Edits) {
        AppSettings settings = MakeDefaultSettings();
        edit.apply(settings);
        EXPECT_EQ(Enabled(ButtonsOf(settings, MakeDefaultSettings()).save), edit.enabled) << edit.reason;
        EXPECT_EQ(Enabled(ButtonsOf(settings, settings).save), ".....") << edit.reason << ", saved";
        EXPECT_EQ(Enabled(ButtonsOf(MakeDefaultSettings(), settings).save), edit.enabled) << edit.reason << ", undone";
    }
}

TEST(EvaluateButtons, RestoreIsEnabledOnTheTabsThatDifferFromTheDefaults) {
    for (const Edit& edit : Edits) {
        AppSettings settings = MakeDefaultSettings();
        edit.apply(settings);
        EXPECT_EQ(Enabled(ButtonsOf(settings, MakeDefaultSettings()).restore), edit.enabled) << edit.reason;
        EXPECT_EQ(Enabled(ButtonsOf(settings, settings).restore), edit.enabled) << edit.reason << ", saved";
        EXPECT_EQ(Enabled(ButtonsOf(MakeDefaultSettings(), settings).restore), ".....") << edit.reason << ", restored";
    }
}

TEST(EvaluateButtons, SavingATabLeavesTheOthersToBeSavedOrUndone) {
    AppSettings saved = MakeDefaultSettings();
    AppSettings settings = saved;
    settings.thresholds = {10, 20, 30};
    settings.per_core = true;
    settings.colors[NetUp] = 5;

    CopySettingsTab(saved, settings, Memory);
    EXPECT_EQ(Enabled(ButtonsOf(settings, saved).save), "C..N.");
    for (const SettingsTab tab : {Cpu, Disk, Memory, Network})
        CopySettingsTab(settings, saved, tab);
    EXPECT_EQ(Enabled(ButtonsOf(settings, saved).save), ".....");
    AppSettings onlyMemory = MakeDefaultSettings();
    onlyMemory.thresholds = {10, 20, 30};
    EXPECT_EQ(settings, onlyMemory);
}

TEST(EvaluateButtons, ThereIsNothingToSaveUntilAnInterfaceIsChosen) {
    const AppSettings saved = MakeDefaultSettings();
    AppSettings settings = saved;
    InterfaceChoice choice = BuildInterfaceChoice(settings, {{.key = 7, .alias = L"Ethernet", .ip = L"10.0.0.1"}});
    ASSERT_TRUE(ToggleItem(choice, 0));
    StoreInterfaceChoice(choice, settings);
    EXPECT_EQ(Enabled(ButtonsOf(settings, saved).save), ".....");
    ASSERT_TRUE(ToggleItem(choice, 1));
    StoreInterfaceChoice(choice, settings);
    EXPECT_EQ(Enabled(ButtonsOf(settings, saved).save), "...N.");
}

TEST(EvaluateButtons, AHiddenIconDisablesItsPageAtOnce) {
    const AppSettings saved = MakeDefaultSettings();
    AppSettings settings = saved;
    EXPECT_EQ(ButtonsOf(settings, saved).page, (std::array{true, true, true, true}));
    settings.show = {true, false, true, false};
    EXPECT_EQ(ButtonsOf(settings, saved).page, (std::array{true, false, true, false}));
}

TEST(EvaluateButtons, JudgesTheGeneralPageByItsBoxes) {
    struct Row {
        const char* reason;
        GeneralPage page;
        SavedGeneral saved;
        bool save;
        bool restore;
        bool allUsers;
    };
    using enum AutostartMode;
    const std::vector<Row> rows = {
        {"as installed", {false, false, true}, {Off, true}, false, false, false},
        {"newly ticked", {true, false, true}, {Off, true}, true, true, true},
        {"ticked and saved", {true, false, true}, {ThisUser, true}, false, true, true},
        {"then for all", {true, true, true}, {ThisUser, true}, true, true, true},
        {"for all and saved", {true, true, true}, {AllUsers, true}, false, true, true},
        {"unticked, which leaves the other box ticked", {false, true, true}, {AllUsers, true}, true, false, false},
        {"unticked and saved", {false, true, true}, {Off, true}, false, false, false},
        {"a change that failed", {true, true, true}, {Off, true}, true, true, true},
        {"no updates", {false, false, false}, {Off, true}, true, true, false},
        {"no updates, saved", {false, false, false}, {Off, false}, false, true, false},
        {"updates again", {false, false, true}, {Off, false}, true, false, false},
    };
    for (const Row& row : rows) {
        const AppSettings settings = MakeDefaultSettings();
        const ButtonStates states = EvaluateButtons(settings, settings, settings, row.page, row.saved);
        EXPECT_EQ(Enabled(states.save), row.save ? "....G" : ".....") << row.reason;
        EXPECT_EQ(Enabled(states.restore), row.restore ? "....G" : ".....") << row.reason;
        EXPECT_EQ(states.all_users, row.allUsers) << row.reason;
    }
}

TEST(EvaluateButtons, ComparesTheUpdateBoxWithTheGivenDefaults) {
    AppSettings defaults = MakeDefaultSettings();
    defaults.check_updates = false;
    const AppSettings settings = MakeDefaultSettings();
    const ButtonStates ticked = EvaluateButtons(settings, settings, defaults, {false, false, true}, {});
    const ButtonStates unticked = EvaluateButtons(settings, settings, defaults, {false, false, false}, {});
    EXPECT_EQ(Enabled(ticked.restore), "....G");
    EXPECT_EQ(Enabled(unticked.restore), ".....");
}

TEST(WantedAutostart, CountsAllUsersOnlyWhileTheProgramIsToStart) {
    EXPECT_EQ(WantedAutostart({false, false, true}), AutostartMode::Off);
    EXPECT_EQ(WantedAutostart({false, true, true}), AutostartMode::Off);
    EXPECT_EQ(WantedAutostart({true, false, true}), AutostartMode::ThisUser);
    EXPECT_EQ(WantedAutostart({true, true, true}), AutostartMode::AllUsers);
}

TEST(FollowsSwitch, AllButTitlesHardwareSwitchesAndTheTwoButtons) {
    const std::set<std::int32_t> alwaysEnabled{
        1201, 1091, 1051, 1210, 1213, 1221, 1009, 1014,  // CPU: title, icon, switch, hardware, graph, buttons
        1202, 1095, 1052, 1211, 1214, 1222, 1251, 1252,  // disk
        1203, 1092, 1053, 1212, 1215, 1016, 1017,        // memory
        1204, 1094, 1054, 1220, 1113, 1114,              // network
    };
    const std::array<std::int32_t, DialogRowCount> ids = ControlIds();
    std::set<std::int32_t> found;
    for (std::size_t i = 0; i < DialogRowCount; ++i) {
        const DialogRow& row = DialogRows.at(i);
        const bool isGeneral = DialogGroups.at(static_cast<std::size_t>(row.group)).tab == General;
        if (isGeneral) {
            EXPECT_FALSE(FollowsSwitch(row)) << ids.at(i);
        } else if (!FollowsSwitch(row)) {
            found.insert(ids.at(i));
        }
    }
    EXPECT_EQ(found, alwaysEnabled);
}

TEST(FollowsSwitch, SoDoTheBoxesOfTheDisks) {
    for (const DialogRow& row : FlowDiskBoxes(std::vector<std::int32_t>{50, 60, 70}).rows)
        EXPECT_TRUE(FollowsSwitch(row)) << row.id;
}

TEST(ToggleShown, ShowsAndHidesButTheLastIconStays) {
    AppSettings settings = MakeDefaultSettings();
    EXPECT_TRUE(ToggleShown(settings, Disk));
    EXPECT_TRUE(ToggleShown(settings, Cpu));
    EXPECT_TRUE(ToggleShown(settings, Network));
    EXPECT_EQ(settings.show, (std::array{false, false, true, false}));
    EXPECT_FALSE(ToggleShown(settings, Memory)) << "the last one";
    EXPECT_EQ(settings.show, (std::array{false, false, true, false}));
    EXPECT_TRUE(ToggleShown(settings, Cpu)) << "a hidden one, while only one is shown";
    EXPECT_TRUE(ToggleShown(settings, Memory));
    EXPECT_EQ(settings.show, (std::array{true, false, false, false}));
    EXPECT_FALSE(ToggleShown(settings, Cpu));
}

TEST(ToggleShown, GeneralHasNoIcon) {
    AppSettings settings = MakeDefaultSettings();
    EXPECT_FALSE(ToggleShown(settings, General));
    EXPECT_EQ(settings, MakeDefaultSettings());
}

}  // namespace
}  // namespace kestrane
