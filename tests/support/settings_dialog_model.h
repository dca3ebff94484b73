#pragma once
// What the settings dialog must do, in the plainest words: a model that a test drives beside the dialog. It shares no
// rule with the program but the list of each page's settings.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cwctype>
#include <string>
#include <utility>
#include <vector>

#include "metrics/net_rules.h"
#include "settings/app_settings.h"
#include "settings/settings_tab.h"

namespace kestrane {

inline constexpr std::array IconPages{SettingsTab::Cpu, SettingsTab::Disk, SettingsTab::Memory, SettingsTab::Network};

struct SettingsDialogModel {
    // Outside the dialog.
    AppSettings live = MakeDefaultSettings();
    AppSettings file = live;        // as the program would load it
    bool machineAutostart = false;  // the registry's values
    bool userAutostart = false;
    std::vector<NetRow> machineInterfaces;
    std::vector<std::int32_t> diskNumbers;  // of the boxes
    int told = 0;                           // how often the host was told of a change

    // Inside.
    AppSettings saved;
    bool savedUpdates = true;
    int knownAutostart = 0;  // 0 off, 1 this user, 2 all users
    bool autostartTicked = false;
    bool allUsersTicked = false;
    std::array<std::wstring, 3> fields;  // the thresholds as typed
    struct Row {
        std::uint64_t id;
        std::wstring name;
        bool chosen;
    };
    bool allConnections = true;
    std::vector<Row> rows;
    std::vector<std::pair<std::uint64_t, std::wstring>> missing;

    void Open() {
        saved = live;
        savedUpdates = live.check_updates;
        knownAutostart = AutostartNow();
        autostartTicked = knownAutostart != 0;
        allUsersTicked = knownAutostart == 2;
        FillControls();
    }

    void Close() {
        for (const SettingsTab page : IconPages)
            CopySettingsTab(live, saved, page);
        live.check_updates = savedUpdates;
        if (live.show == std::array<bool, 4>{}) live.show.fill(true);
        ++told;
    }

    void FillControls() {
        for (std::size_t i = 0; i < fields.size(); ++i)
            fields[i] = std::to_wstring(live.thresholds[i]);
        rows.clear();
        missing.clear();
        allConnections = live.interfaces.empty();
        for (const NetRow& row : machineInterfaces) {
            if (!row.filter && !row.loopback && !row.tunnel && !row.ip.empty())
                rows.push_back({row.key, row.alias, false});
        }
        for (std::size_t i = 0; i < live.interfaces.size(); ++i)
            FindRow(live.interfaces[i], live.interface_aliases[i]);
    }

    // Edits.

    void ToggleInterface(std::size_t item) {
        if (!live.show[3] || item > rows.size() || (allConnections && item > 0)) return;
        if (item > 0) {
            rows[item - 1].chosen = !rows[item - 1].chosen;
        } else {
            allConnections = !allConnections;
            if (allConnections) missing.clear();
        }
        live.interfaces.clear();
        live.interface_aliases.clear();
        for (const Row& row : rows) {
            if (!allConnections && row.chosen) AddInterface(row.id, row.name);
        }
        for (const auto& [id, alias] : missing)
            AddInterface(id, alias);
        ++told;
    }

    bool IsDiskChosen(std::int32_t number) const {
        return std::find(live.disks.begin(), live.disks.end(), number) != live.disks.end();
    }

    void ClickDisk(std::int32_t clicked) {
        std::vector<std::int32_t> disks;
        for (const std::int32_t number : diskNumbers) {
            if (IsDiskChosen(number) != (number == clicked)) disks.push_back(number);
        }
        live.disks = disks;
        ++told;
    }

    bool AreFieldsValid() const { return Thresholds()[0] != 0; }

    void TypeThreshold(std::size_t field, const std::wstring& text) {
        fields[field] = text;
        if (!AreFieldsValid()) return;
        live.thresholds = Thresholds();
        ++told;
    }

    void RightClick(std::size_t color) {
        ColorValue solid = saved.colors[color];
        if (solid == ColorNone) solid = MakeDefaultSettings().colors[color];
        live.colors[color] = live.colors[color] == ColorNone ? solid : ColorNone;
        ++told;
    }

    /// False: a message instead.
    bool ClickSwitch(std::size_t page) {
        int shown = 0;
        for (const bool show : live.show)
            shown += show ? 1 : 0;
        if (live.show[page] && shown == 1) return false;
        live.show[page] = !live.show[page];
        ++told;
        return true;
    }

    void Restore(SettingsTab page) {
        CopySettingsTab(live, MakeDefaultSettings(), page);
        FillControls();
        ++told;
    }

    void Saved(SettingsTab page) {
        CopySettingsTab(saved, live, page);
        CopySettingsTab(file, live, page);
    }

    // The General page.

    int AutostartNow() const { return machineAutostart ? 2 : userAutostart ? 1 : 0; }
    int WantedAutostart() const { return !autostartTicked ? 0 : allUsersTicked ? 2 : 1; }

    void RestoreGeneral() {
        autostartTicked = allUsersTicked = false;
        live.check_updates = true;
        ++told;
    }

    /// False: a message. `refusesMachine`: the machine's value can neither be written nor removed.
    bool SaveGeneral(bool refusesMachine, bool fileRefused) {
        bool succeeded = true;
        if (const int wanted = WantedAutostart(); wanted != AutostartNow()) {
            if (refusesMachine && (machineAutostart || wanted == 2)) succeeded = false;
            userAutostart = wanted == 1;
            if (!refusesMachine) machineAutostart = wanted == 2;
        }
        knownAutostart = AutostartNow();
        if (live.check_updates != savedUpdates && !fileRefused) file.check_updates = live.check_updates;
        savedUpdates = live.check_updates;
        return succeeded;
    }

    // What is enabled.

    bool CanSave(SettingsTab page) const {
        if (page != SettingsTab::General) return !SettingsTabEqual(live, saved, page);
        return WantedAutostart() != knownAutostart || live.check_updates != savedUpdates;
    }
    bool CanRestore(SettingsTab page) const {
        if (page != SettingsTab::General) return !SettingsTabEqual(live, MakeDefaultSettings(), page);
        return autostartTicked || !live.check_updates;
    }

    /// A file that hides every icon hides none.
    AppSettings Loaded() const {
        AppSettings loaded = file;
        if (loaded.show == std::array<bool, 4>{}) loaded.show.fill(true);
        return loaded;
    }

  private:
    void FindRow(std::uint64_t id, const std::wstring& alias) {
        for (Row& row : rows) {
            if (row.id != id && (alias.empty() || Lower(row.name) != Lower(alias))) continue;
            row.chosen = true;
            return;
        }
        missing.emplace_back(id, alias);
    }

    void AddInterface(std::uint64_t id, const std::wstring& alias) {
        live.interfaces.push_back(id);
        live.interface_aliases.push_back(alias);
    }

    /// The fields' numbers; zeros if they are not valid.
    std::array<std::int32_t, 3> Thresholds() const {
        std::array<std::int32_t, 3> numbers{};
        std::int32_t previous = 0;
        for (std::size_t i = 0; i < fields.size(); ++i) {
            const std::wstring& text = fields[i];
            if (text.empty() || text.size() > 3 || text.find_first_not_of(L"0123456789") != std::wstring::npos)
                return {};
            numbers[i] = std::stoi(text);
            if (numbers[i] <= previous || numbers[i] > 100) return {};
            previous = numbers[i];
        }
        return numbers;
    }

    static std::wstring Lower(std::wstring text) {
        for (wchar_t& letter : text)
            letter = static_cast<wchar_t>(std::towlower(letter));
        return text;
    }
};

}  // namespace kestrane
