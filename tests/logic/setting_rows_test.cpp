#include "settings/setting_rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace kestrane {
namespace {

std::wstring NameOf(const SettingRow& row) {
    return std::wstring(row.section) + L"." + row.key;
}

void Change(bool& field) {
    field = !field;
}
void Change(std::int32_t& field) {
    ++field;
}
void Change(std::uint32_t& field) {
    ++field;
}
void Change(std::string& field) {
    field += 'x';
}
void Change(std::wstring& field) {
    field += L'x';
}
template <typename Item>
void Change(std::vector<Item>& field) {
    field.emplace_back();
}
template <typename Item, std::size_t Count>
void Change(std::array<Item, Count>& field) {
    for (Item& item : field)
        Change(item);
}
void Change(GraphSettings& graph) {
    // All fields: a new one does not compile until it is named here.
    auto& [open, pinned, x, y, width, height, opacity, margin, fontName, fontSize, fontBold, style, smoothing, fill,
           topmost] = graph;
    const auto change = [](auto&... fields) { (Change(fields), ...); };
    change(open, pinned, x, y, width, height, opacity, margin, fontName, fontSize, fontBold, style, smoothing, fill,
           topmost);
}

/// A record that differs from the defaults in every field but the colours, which have another table.
AppSettings EverythingChanged() {
    AppSettings settings = MakeDefaultSettings();
    // All fields: a new one does not compile until it is named here.
    auto& [colors, thresholds, show, refresh, fontName, fontSize, fontBold, bar, checkUpdates, language, installId,
           interfaces, aliases, network, cpu, disk, perCore, activity, disks] = settings;
    const auto change = [](auto&... fields) { (Change(fields), ...); };
    change(thresholds, show, refresh, fontName, fontSize, fontBold, bar, checkUpdates, language, installId, interfaces,
           aliases, network, cpu, disk, perCore, activity, disks);
    return settings;
}

TEST(SettingRows, EveryFieldHasARow) {
    AppSettings settings = MakeDefaultSettings();
    for (const SettingRow& row : AllRows())
        row.copy(settings, EverythingChanged());
    EXPECT_EQ(settings, EverythingChanged());
}

TEST(SettingRows, NoFieldHasTwoRows) {
    const AppSettings defaults = MakeDefaultSettings();
    for (const SettingRow& copied : AllRows()) {
        AppSettings settings = defaults;
        copied.copy(settings, EverythingChanged());
        std::vector<std::wstring> unequal;
        for (const SettingRow& row : AllRows()) {
            if (!row.equal(settings, defaults)) unequal.push_back(NameOf(row));
        }
        EXPECT_EQ(unequal, std::vector{NameOf(copied)});
    }
}

TEST(SettingRows, AKeyStandsOnce) {
    std::set<std::wstring> names;
    for (const SettingRow& row : AllRows())
        EXPECT_TRUE(names.insert(NameOf(row)).second) << testing::PrintToString(NameOf(row));
}

// Reading and writing access the same field as copying and comparing.
TEST(SettingRows, ARowReadsAndWritesItsOwnField) {
    const std::wstring candidates[] = {L"0",  L"1",    L"2",     L"30",  L"500",
                                       L"1F", L"bars", L"lines", L"A|B", L"0f8fad5b-d9cb-469f-a165-70867728950e"};
    const AppSettings defaults = MakeDefaultSettings();
    for (const SettingRow& row : AllRows()) {
        bool changed = false;
        for (const std::wstring& text : candidates) {
            AppSettings settings = defaults;
            if (!row.read(settings, text) || row.equal(settings, defaults)) continue;
            changed = true;
            EXPECT_NE(row.write(settings), row.write(defaults)) << testing::PrintToString(NameOf(row));
            row.copy(settings, defaults);
            EXPECT_EQ(settings, defaults) << testing::PrintToString(NameOf(row));
        }
        EXPECT_TRUE(changed) << testing::PrintToString(NameOf(row));
    }
}

TEST(SettingRows, ADefaultIsWrittenAsItStandsInItsRow) {
    const AppSettings defaults = MakeDefaultSettings();
    for (const SettingRow& row : AllRows()) {
        const std::wstring text = row.defaultText;
        if (text.empty()) continue;
        EXPECT_EQ(row.write(defaults), text) << testing::PrintToString(NameOf(row));
    }
}

TEST(SettingRows, WithoutADefaultAFieldIsAsInABareRecord) {
    const AppSettings defaults = MakeDefaultSettings();
    std::vector<std::wstring> without;
    for (const SettingRow& row : AllRows()) {
        if (*row.defaultText != L'\0') continue;
        without.push_back(NameOf(row));
        EXPECT_TRUE(row.equal(defaults, AppSettings())) << testing::PrintToString(NameOf(row));
    }
    const std::vector<std::wstring> expected{L"network.interface_aliases",
                                             L"network.x",
                                             L"network.y",
                                             L"network.width",
                                             L"network.height",
                                             L"cpu.x",
                                             L"cpu.y",
                                             L"cpu.width",
                                             L"cpu.height",
                                             L"disk.x",
                                             L"disk.y",
                                             L"disk.width",
                                             L"disk.height",
                                             L"general.install_id"};
    EXPECT_EQ(without, expected);
}

/// The result of reading each of a list of texts into the row's field.
std::vector<std::wstring> AnswersOf(const SettingRow& row) {
    std::vector<std::wstring> answers;
    for (const wchar_t* text : {L"", L"-1", L"0", L"1", L"2", L"19", L"33", L"60", L"99", L"100", L"600", L"20000",
                                L"12x", L"bars", L"lines", L"Arial"}) {
        AppSettings settings = MakeDefaultSettings();
        answers.push_back(row.read(settings, text) ? row.write(settings) : L"malformed");
    }
    return answers;
}

// Their rows are written out, since the defaults differ, but keys and grammar must not.
TEST(SettingRows, TheThreeGraphsHaveTheSameRows) {
    std::map<std::wstring, std::vector<std::vector<std::wstring>>> answers;  // by key
    for (const SettingRow& row : AllRows()) {
        const std::wstring section = row.section;
        if (section == L"cpu" || section == L"disk" || section == L"network")
            answers[row.key].push_back(AnswersOf(row));
    }
    std::size_t shared = 0;
    for (const auto& [key, graphs] : answers) {
        if (graphs.size() == 1) continue;
        ++shared;
        EXPECT_EQ(graphs, std::vector(GraphCount, graphs.front())) << testing::PrintToString(key);
    }
    EXPECT_EQ(shared, 16U);  // fifteen of GraphSettings, and refresh_ms
}

TEST(SettingRows, EveryRowHasAnOwnerThatSavesIt) {
    std::vector<std::wstring> found;
    const auto add = [&found](SettingRows rows) { std::ranges::transform(rows, std::back_inserter(found), NameOf); };
    for (const SettingsTab tab : {SettingsTab::Cpu, SettingsTab::Disk, SettingsTab::Memory, SettingsTab::Network})
        add(TabRows(tab));
    for (const GraphKind kind : GraphKinds)
        add(WindowRows(kind));
    for (const SettingRow& row : {CheckUpdatesRow, LanguageRow, InstallIdRow})
        found.push_back(NameOf(row));
    std::vector<std::wstring> all;
    std::ranges::transform(AllRows(), std::back_inserter(all), NameOf);
    EXPECT_EQ(found, all);
    EXPECT_TRUE(TabRows(SettingsTab::General).empty());
}

}  // namespace
}  // namespace kestrane
