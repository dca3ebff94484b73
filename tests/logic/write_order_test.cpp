// Saves that end after any of their writes: whatever the file held, each setting reads as before or as after.
#include "settings/write_order.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "settings/ini_settings.h"
#include "support/old_or_new.h"
#include "support/random_settings.h"

namespace kestrane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using File = std::map<std::pair<std::wstring, std::wstring>, std::wstring>;

constexpr std::array<SettingsTab, 4> Tabs{SettingsTab::Cpu, SettingsTab::Disk, SettingsTab::Memory,
                                          SettingsTab::Network};

ReadValue Reader(const File& file) {
    return [&file](const wchar_t* section, const wchar_t* key) {
        const auto found = file.find({section, key});
        return found == file.end() ? std::wstring() : found->second;
    };
}

WriteValue Writer(File& file) {
    return [&file](const wchar_t* section, const wchar_t* key, const std::wstring& value) {
        file[{section, key}] = value;
        return true;
    };
}

/// The file after each write of a save, and before the first.
std::vector<File> States(const AppSettings& settings, SettingsTab tab, const File& file) {
    std::vector<File> states{file};
    const WriteValue write = [&states](const wchar_t* section, const wchar_t* key, const std::wstring& value) {
        File next = states.back();
        next[{section, key}] = value;
        states.push_back(std::move(next));
        return true;
    };
    EXPECT_TRUE(WriteSettingsTab(settings, tab, Reader(file), write));
    return states;
}

/// The settings that read neither as in the first state nor as in the last, in any.
std::set<std::wstring> Lost(const std::vector<File>& states) {
    std::set<std::wstring> lost;
    const AppSettings before = ReadSettings(Reader(states.front()));
    const AppSettings after = ReadSettings(Reader(states.back()));
    for (const File& state : states)
        lost.merge(NeitherOldNorNew(ReadSettings(Reader(state)), before, after));
    return lost;
}

/// The keys of a save in the order of writing, those of one section.
std::vector<std::wstring> KeysOf(const wchar_t* section, const AppSettings& settings, SettingsTab tab,
                                 const File& file) {
    std::vector<std::wstring> keys;
    const WriteValue write = [&](const wchar_t* of, const wchar_t* key, const std::wstring&) {
        if (std::wstring(of) == section) keys.emplace_back(key);
        return true;
    };
    EXPECT_TRUE(WriteSettingsTab(settings, tab, Reader(file), write));
    return keys;
}

File WithThresholds(const std::array<std::int32_t, 3>& thresholds) {
    AppSettings settings = MakeDefaultSettings();
    settings.thresholds = thresholds;
    File file;
    EXPECT_TRUE(WriteSettingsTab(settings, SettingsTab::Memory, Reader(file), Writer(file)));
    return file;
}

TEST(WriteOrder, ThresholdsNeverPassThroughACombinationThatCountsAsNone) {
    const std::array<std::int32_t, 3> several[] = {{10, 20, 30},  {50, 60, 70}, {5, 95, 96}, {60, 61, 62},
                                                   {98, 99, 100}, {1, 2, 3},    {40, 50, 95}};
    for (const auto& from : several) {
        for (const auto& to : several) {
            AppSettings settings = MakeDefaultSettings();
            settings.thresholds = to;
            const std::vector<File> states = States(settings, SettingsTab::Memory, WithThresholds(from));
            EXPECT_THAT(Lost(states), IsEmpty()) << testing::PrintToString(from) << testing::PrintToString(to);
        }
    }
}

TEST(WriteOrder, OnlyThresholdsThatRiseAreWrittenFromTheLastOn) {
    const auto order = [](const std::array<std::int32_t, 3>& from, const std::array<std::int32_t, 3>& to) {
        AppSettings settings = MakeDefaultSettings();
        settings.thresholds = to;
        std::vector<std::wstring> keys = KeysOf(L"memory", settings, SettingsTab::Memory, WithThresholds(from));
        std::erase_if(keys, [](const std::wstring& key) { return !key.starts_with(L"threshold"); });
        return keys;
    };
    EXPECT_THAT(order({50, 75, 90}, {50, 75, 90}), ElementsAre(L"threshold1", L"threshold2", L"threshold3"));
    EXPECT_THAT(order({50, 60, 70}, {10, 20, 30}), ElementsAre(L"threshold1", L"threshold2", L"threshold3"));
    EXPECT_THAT(order({10, 20, 30}, {50, 60, 70}), ElementsAre(L"threshold3", L"threshold2", L"threshold1"));
    EXPECT_THAT(order({10, 20, 90}, {50, 60, 70}), ElementsAre(L"threshold3", L"threshold2", L"threshold1"));
}

TEST(WriteOrder, ThresholdsThatAreNotAllThereKeepTheirTurn) {
    AppSettings settings = MakeDefaultSettings();
    settings.thresholds = {60, 80, 95};
    File file = WithThresholds({10, 20, 30});
    file.erase({L"memory", L"threshold2"});
    EXPECT_THAT(Lost(States(settings, SettingsTab::Memory, file)), IsEmpty());
    for (const File& before : {File(), file}) {
        const std::vector<std::wstring> keys = KeysOf(L"memory", settings, SettingsTab::Memory, before);
        EXPECT_THAT(std::vector(keys.begin(), keys.begin() + 3),
                    ElementsAre(L"threshold1", L"threshold2", L"threshold3"));
    }
}

TEST(WriteOrder, TheDiskNeverTakesTheNewPeriodOfTheCpu) {
    AppSettings settings = MakeDefaultSettings();
    settings.refresh_ms[0] = 5000;
    EXPECT_THAT(Lost(States(settings, SettingsTab::Cpu, {})), IsEmpty());
    const File withPeriod{{{L"cpu", L"refresh_ms"}, L"1000"}};
    EXPECT_THAT(Lost(States(settings, SettingsTab::Cpu, withPeriod)), IsEmpty());
}

TEST(WriteOrder, GraphsKeepTheirColoursAtTheFirstSaveOfOthers) {
    AppSettings settings = MakeDefaultSettings();
    settings.colors[CpuFg] = 0xFF0000;
    settings.colors[DiskRead] = 0x00FF00;
    settings.colors[NetUp] = 0x0000FF;
    for (const SettingsTab tab : Tabs)
        EXPECT_THAT(Lost(States(settings, tab, {})), IsEmpty()) << static_cast<int>(tab);
}

/// The keys of one save, each once, in the order of their first writing.
std::vector<std::wstring> FirstWrites(const std::vector<std::wstring>& keys) {
    std::vector<std::wstring> first;
    for (const std::wstring& key : keys) {
        if (std::ranges::find(first, key) == first.end()) first.push_back(key);
    }
    return first;
}

TEST(WriteOrder, AFreshFileGetsItsKeysInTheOrderOfTheTable) {
    const AppSettings defaults = MakeDefaultSettings();
    AppSettings settings = defaults;
    settings.colors[CpuFg] = 0xFF0000;
    settings.refresh_ms[0] = 5000;
    for (const wchar_t* section : {L"colors", L"icons", L"cpu"}) {
        const std::vector<std::wstring> unchanged = KeysOf(section, defaults, SettingsTab::Cpu, {});
        const std::vector<std::wstring> changed = KeysOf(section, settings, SettingsTab::Cpu, {});
        EXPECT_EQ(FirstWrites(unchanged), unchanged) << "nothing depends on an absent key";
        EXPECT_EQ(FirstWrites(changed), unchanged);
        EXPECT_EQ(changed.size(), 2 * unchanged.size()) << "first as they are read, then as they are to be";
    }
}

TEST(WriteOrder, OnlyAbsentKeysAreWrittenTwice) {
    AppSettings settings = MakeDefaultSettings();
    settings.colors[CpuFg] = 0xFF0000;
    File file{{{L"cpu", L"per_core"}, L"0"}};
    const std::vector<File> states = States(settings, SettingsTab::Cpu, file);
    EXPECT_EQ(states.size() - 1, 2 * states.back().size() - 1);
    EXPECT_TRUE(WriteSettingsTab(settings, SettingsTab::Cpu, Reader(file), Writer(file)));
    settings.colors[CpuFg] = 0x00FF00;
    settings.refresh_ms[0] = 5000;
    EXPECT_EQ(States(settings, SettingsTab::Cpu, file).size(), 1 + file.size());
}

/// Saves of any settings after saves of any others, some of which never came: the program's own files.
TEST(WriteOrder, AnySaveMayEndAfterAnyWrite) {
    std::mt19937 chance(2025);
    RandomSettings random(2026, L"abc");
    for (int round = 0; round < 5; ++round) {
        File file;
        const AppSettings earlier = random.Next();
        for (const SettingsTab tab : Tabs) {
            if (chance() % 2 == 0) WriteSettingsTab(earlier, tab, Reader(file), Writer(file));
        }
        const AppSettings later = random.Next();
        for (const SettingsTab tab : Tabs) {
            const std::vector<File> states = States(later, tab, file);
            ASSERT_THAT(Lost(states), IsEmpty()) << round << " " << static_cast<int>(tab);
            file = states[chance() % states.size()];  // where it ended; the next one begins from there
        }
    }
}

}  // namespace
}  // namespace kestrane
