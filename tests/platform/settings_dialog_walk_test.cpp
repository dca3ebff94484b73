// Random walks through the settings dialog beside a model of what it must do: after every step the live settings, the
// file, the controls and what is enabled are compared. KESTRANE_WALK_SEED repeats the walk of a seed.
#include <array>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "dialog/dialog_messages_win32.h"
#include "settings/ini_file_win32.h"
#include "support/fake_elevation_win32.h"
#include "support/fake_fonts_win32.h"
#include "support/fake_ini_writes_win32.h"
#include "support/settings_dialog_model.h"
#include "support/settings_dialog_world_win32.h"

namespace kestrane {
namespace {

constexpr int StepsOfAWalk = 400;

class SettingsDialogWalk : public SettingsDialogTest {
  protected:
    ~SettingsDialogWalk() override {
        writesUntilFull = -1;
        machineRefused = false;
    }

    void Walk(unsigned seed) {
        SCOPED_TRACE("KESTRANE_WALK_SEED=" + std::to_string(seed));
        random_.seed(seed);
        Prepare();
        while (step_ < StepsOfAWalk && !HasFailure()) {
            model_.Open();
            controls_.clear();
            WithDialog([this] {
                Check();
                while (IsOpen() && step_ < StepsOfAWalk && !HasFailure())
                    Step();
                if (IsOpen()) CloseDialog();
            });
            if (!HasFailure()) CheckClosed();
        }
    }

  private:
    using Act = void (SettingsDialogWalk::*)();
    struct Kind {
        const char* name;
        int weight;
        Act act;
    };

    // As in the base, but each control is looked up only once per opening: here it is most of the time.
    HWND Control(std::int32_t id) {
        HWND& control = controls_[id];
        if (control == nullptr) control = GetDlgItem(Dialog(), id);
        return control;
    }
    bool IsEnabled(std::int32_t id) { return IsWindowEnabled(Control(id)) != FALSE; }
    bool IsTicked(std::int32_t id) { return SendMessageW(Control(id), BM_GETCHECK, 0, 0) == BST_CHECKED; }

    int Below(std::size_t count) { return static_cast<int>(random_() % count); }
    bool Chance(int percent) { return Below(100) < percent; }
    template <typename Container>
    auto AnyOf(const Container& container) {
        return container[static_cast<std::size_t>(Below(container.size()))];
    }
    SettingsTab AnyPage() { return AnyOf(IconPages); }

    /// A file with all keys, and a machine.
    void Prepare() {
        step_ = 0;
        settings = MakeDefaultSettings();
        settings.disks = {40, 1};
        settings.interfaces = {9, 2};
        settings.interface_aliases = {L"Gone", L"Wi-Fi"};
        settings.font_name = L"A font that is not installed";
        for (const SettingsTab page : IconPages)
            ASSERT_TRUE(SaveSettingsTab(settings, page));
        for (const std::uint32_t number : {0U, 1U, 5U, 63U}) {
            host.disks.emplace_back().number = number;
            model_.diskNumbers.push_back(static_cast<std::int32_t>(number));
        }
        ChangeInterfaces();
        model_.live = model_.file = settings;
        bytes_ = File();
    }

    void Step() {
        static constexpr Kind Kinds[] = {
            {"a check box", 20, &SettingsDialogWalk::ClickBox},
            {"a combo box", 30, &SettingsDialogWalk::ChooseFromCombo},
            {"a font", 8, &SettingsDialogWalk::ChooseFont},
            {"a threshold", 15, &SettingsDialogWalk::TypeThreshold},
            {"a colour", 15, &SettingsDialogWalk::ChooseColor},
            {"a right click", 12, &SettingsDialogWalk::RightClickColor},
            {"a switch", 6, &SettingsDialogWalk::ClickSwitch},
            {"a disk", 8, &SettingsDialogWalk::ClickDisk},
            {"an interface", 20, &SettingsDialogWalk::ToggleInterface},
            {"other interfaces of the machine", 8, &SettingsDialogWalk::ChangeInterfaces},
            {"a graph that moves", 3, &SettingsDialogWalk::MoveGraph},
            {"a tab", 6, &SettingsDialogWalk::SelectTab},
            {"a save", 10, &SettingsDialogWalk::Save},
            {"a restore", 5, &SettingsDialogWalk::Restore},
            {"the General page", 10, &SettingsDialogWalk::EditGeneral},
            {"a save of General", 5, &SettingsDialogWalk::SaveGeneral},
            {"a language", 2, &SettingsDialogWalk::ChooseLanguage},
            {"noise", 4, &SettingsDialogWalk::MakeNoise},
            {"closing", 2, &SettingsDialogWalk::CloseDialog},
        };
        int sum = 0;
        for (const Kind& kind : Kinds)
            sum += kind.weight;
        int drawn = Below(static_cast<std::size_t>(sum));
        const Kind* kind = Kinds;
        while (drawn >= kind->weight)
            drawn -= kind++->weight;
        SCOPED_TRACE("step " + std::to_string(++step_) + ": " + kind->name);
        (this->*kind->act)();
        if (IsOpen()) Check();
    }

    // The steps. A disabled control cannot be used.

    void Flip(std::int32_t id, bool& setting) {
        if (!IsEnabled(id)) return;
        Click(id);
        setting = !setting;
        ++model_.told;
    }

    void ClickBox() {
        AppSettings& live = model_.live;
        switch (Below(12)) {
            case 0:
                return Flip(IdCpuPerCore, live.per_core);
            case 1:
                return Flip(IdDiskActivity, live.activity);
            case 2:
                return Flip(IdMemBar, live.bar);
            case 3:
                return Flip(IdMemFontBold, live.font_bold);
            default:
                break;
        }
        const GraphKind kind = AnyOf(GraphKinds);
        const GraphPanel& panel = GraphPanels[IndexOf(kind)];
        GraphSettings& graph = GraphSettingsOf(live, kind);
        switch (Below(3)) {
            case 0:
                return Flip(panel.topmost, graph.topmost);
            case 1:
                return Flip(panel.bold, graph.font_bold);
            default:
                break;
        }
        bool lines = graph.style == 1;
        Flip(panel.lines, lines);
        graph.style = lines ? 1 : 0;
    }

    /// A list fills when it drops down; the window of the open list is spared.
    template <typename Setting, typename Value>
    void Choose(std::int32_t id, int index, Setting& setting, Value value) {
        if (!IsEnabled(id)) return;
        Notify(id, CBN_DROPDOWN);
        SendMessageW(Control(id), CB_SETCURSEL, static_cast<WPARAM>(index), 0);
        Notify(id, CBN_SELENDOK);
        Notify(id, CBN_SELCHANGE);
        Notify(id, CBN_CLOSEUP);
        setting = static_cast<Setting>(value);
        ++model_.told;
    }

    void ChooseFromCombo() {
        constexpr std::array Periods{500, 1000, 1500, 3000, 5000, 10000};
        AppSettings& live = model_.live;
        const GraphKind kind = AnyOf(GraphKinds);
        const GraphPanel& panel = GraphPanels[IndexOf(kind)];
        GraphSettings& graph = GraphSettingsOf(live, kind);
        const int n = Below(27);
        const auto period = static_cast<std::size_t>(n % 6);
        const auto metric = static_cast<std::size_t>(Below(4));
        switch (Below(7)) {
            case 0:
                return Choose(RefreshCombos[metric], n % 6, live.refresh_ms[metric], Periods[period]);
            case 1:
                return Choose(panel.opacity, n % 8, graph.opacity, 100 - n % 8 * 10);
            case 2:
                return Choose(panel.margin, n % 21, graph.margin, n % 21);
            case 3:
                return Choose(panel.smoothing, n % 4, graph.smoothing, n % 4);
            case 4:
                return Choose(panel.fill, n % 5, graph.fill, n % 5 * 25);
            case 5:
                return Choose(panel.size, n, graph.font_size, n + 6);
            default:
                return Choose(IdMemFontSize, n, live.font_size, n + 6);
        }
    }

    void ChooseFont() {
        const int which = Below(4);
        const bool memory = which == 3;
        const auto& panel = GraphPanels[static_cast<std::size_t>(which % 3)];
        const std::int32_t id = memory ? IdMemFont : panel.font;
        std::wstring& name =
            memory ? model_.live.font_name : GraphSettingsOf(model_.live, static_cast<GraphKind>(which % 3)).font_name;
        Notify(id, CBN_DROPDOWN);
        const std::wstring chosen = AnyOf(fontWorld.names);
        const LRESULT index =
            SendMessageW(Control(id), CB_FINDSTRINGEXACT, WPARAM(-1), reinterpret_cast<LPARAM>(chosen.c_str()));
        ASSERT_GE(index, 0) << "an installed font is not listed";
        Choose(id, static_cast<int>(index), name, chosen);
    }

    void TypeThreshold() {
        static const std::vector<std::wstring> Texts{L"",   L"0",  L"1",   L"5",   L"007", L"20",  L"50",   L"60",
                                                     L"75", L"80", L"90",  L"99",  L"100", L"101", L"1000", L"abc",
                                                     L"5x", L" 5", L"-20", L"+20", L"10",  L"33",  L"66",   L"95"};
        const auto field = static_cast<std::size_t>(Below(3));
        if (!IsEnabled(ThresholdFields[field])) return;
        const std::wstring text = AnyOf(Texts);
        Type(ThresholdFields[field], text.c_str());
        model_.TypeThreshold(field, text);
    }

    void ChooseColor() {
        const auto key = static_cast<std::size_t>(Below(ColorCount));
        if (!IsEnabled(ColorWells[key])) return;
        dialogWorld.chosenColor.reset();
        if (Chance(80)) {
            const ColorValue color = random_() & 0xFFFFFF;
            dialogWorld.chosenColor = RGB(color >> 16 & 0xFF, color >> 8 & 0xFF, color & 0xFF);
            model_.live.colors[key] = color;
            ++model_.told;
        }
        Click(ColorWells[key]);
    }

    void RightClickColor() {
        const auto key = static_cast<std::size_t>(Below(ColorCount));
        const bool enabled = IsEnabled(ColorWells[key]);
        RightClick(ColorWells[key]);
        if (enabled) model_.RightClick(key);
    }

    void ClickSwitch() {
        // Hidden icons are mostly shown again: their pages take no edits.
        SettingsTab page = AnyPage();
        while (model_.live.show[IndexOf(page)] && Chance(60))
            page = AnyPage();
        Click(DialogTabs[IndexOf(page)].show);
        if (!model_.ClickSwitch(IndexOf(page))) boxes_.emplace_back(L"Al menos", L"At least");
    }

    void ClickDisk() {
        if (!IsEnabled(IdAllDisks)) return;
        const int box = Below(5);
        Click(box == 4 ? IdAllDisks : IdFirstDisk + box);
        if (box == 4) {
            model_.live.disks.clear();
            ++model_.told;
        } else {
            model_.ClickDisk(model_.diskNumbers[static_cast<std::size_t>(box)]);
        }
    }

    void ToggleInterface() {
        std::size_t item = Chance(10) ? 100 : static_cast<std::size_t>(Below(model_.rows.size() + 1));
        if (item == 0 && !model_.allConnections && Chance(80)) item = 1;  // it forgets the missing ones
        PostMessageW(Dialog(), WM_TOGGLE_INTERFACE, item, 0);
        Pump();
        model_.ToggleInterface(item);
    }

    /// The dialog sees it when it fills its controls the next time.
    void ChangeInterfaces() {
        constexpr std::array Names{L"Ethernet", L"Wi-Fi", L"Dock", L"VPN", L"eTHERNET", L"", L"wi-fi"};
        host.interfaces.clear();
        for (std::size_t i = 0; i < Names.size(); ++i) {
            if (Chance(50)) continue;
            NetRow row;
            row.key = i + 1;
            row.alias = Names[i];
            row.ip = Chance(80) ? L"10.0.0.1" : L"";
            row.filter = Chance(10);
            row.loopback = Chance(10);
            row.tunnel = Chance(10);
            host.interfaces.push_back(row);
        }
        model_.machineInterfaces = host.interfaces;
    }

    /// The graph's own business, while the dialog is open.
    void MoveGraph() {
        GraphSettingsOf(settings, GraphKind::Cpu).x = GraphSettingsOf(model_.live, GraphKind::Cpu).x = Below(1000);
        settings.network.pinned = model_.live.network.pinned = Chance(50);
    }

    void SelectTab() { Click(AnyOf(DialogTabs).button); }

    void Save() {
        const SettingsTab page = AnyPage();
        if (!IsEnabled(DialogTabs[IndexOf(page)].save)) return;
        writesUntilFull = Chance(25) ? (Chance(50) ? 0 : Below(10)) : -1;
        const bool full = writesUntilFull >= 0;
        Click(DialogTabs[IndexOf(page)].save);
        writesUntilFull = -1;
        if (page == SettingsTab::Memory && !model_.AreFieldsValid()) {
            boxes_.emplace_back(L"Los umbrales", L"Memory thresholds");
            return;
        }
        if (full) {
            boxes_.emplace_back(L"No se pudo guardar el fichero", L"The settings file could not");
            CopySettingsTab(model_.file, LoadSettings(), page);  // some of its keys, and no others
        } else {
            model_.Saved(page);
        }
        CheckFile();
    }

    void Restore() {
        const SettingsTab page = AnyPage();
        if (!IsEnabled(DialogTabs[IndexOf(page)].restore)) return;
        Click(DialogTabs[IndexOf(page)].restore);
        model_.Restore(page);
    }

    void EditGeneral() {
        switch (Below(4)) {
            case 0:
                return Flip(IdCheckUpdates, model_.live.check_updates);
            case 1:
                Click(IdAutostart);
                model_.autostartTicked = !model_.autostartTicked;
                return;
            case 2:
                if (!IsEnabled(IdAutostartAllUsers)) return;
                Click(IdAutostartAllUsers);
                model_.allUsersTicked = !model_.allUsersTicked;
                return;
            default:
                if (!IsEnabled(IdGeneralRestore)) return;
                Click(IdGeneralRestore);
                model_.RestoreGeneral();
        }
    }

    void SaveGeneral() {
        if (!IsEnabled(IdGeneralSave)) return;
        machineRefused = Chance(30);
        writesUntilFull = Chance(20) ? 0 : -1;
        Click(IdGeneralSave);
        if (!model_.SaveGeneral(machineRefused, writesUntilFull == 0))
            boxes_.emplace_back(L"No se pudo cambiar el autoarranque", L"Start with Windows could not");
        machineRefused = false;
        writesUntilFull = -1;
        CheckFile();
    }

    void ChooseLanguage() {
        const int language = Below(3);
        writesUntilFull = Chance(20) ? 0 : -1;
        Choose(IdLanguage, language, model_.live.language, language);
        if (writesUntilFull != 0) model_.file.language = model_.live.language;
        writesUntilFull = -1;
        Pump();
        CheckFile();
    }

    void MakeNoise() {
        Notify(IDOK, BN_CLICKED);
        Notify(AnyOf(RefreshCombos), CBN_CLOSEUP);
        const GraphPanel panel = AnyOf(GraphPanels);
        Notify(AnyOf(std::array{panel.margin, panel.size, panel.font}), CBN_DROPDOWN);
        Notify(FirstAutomaticId + Below(100), BN_CLICKED);
        Notify(AnyOf(ColorWells), BN_DOUBLECLICKED);
        Notify(ThresholdFields[0], EN_KILLFOCUS);
        SendMessageW(Dialog(), WM_TIMER, 1, 0);
    }

    void CloseDialog() {
        const bool byKey = Chance(50);
        SendMessageW(Dialog(), byKey ? WM_COMMAND : WM_CLOSE, byKey ? IDCANCEL : 0, 0);
        model_.Close();
    }

    // What is compared.

    void Check() {
        EXPECT_EQ(settings, model_.live);
        EXPECT_EQ(host.changes, model_.told);
        EXPECT_EQ(File(), bytes_) << "only a save reaches the file";
        CheckBoxes();
        CheckButtons();
        CheckPages();
        CheckControls();
    }

    /// To be called after a step that may write.
    void CheckFile() {
        EXPECT_EQ(LoadSettings(), model_.Loaded());
        bytes_ = File();
    }

    void CheckBoxes() {
        ASSERT_EQ(dialogWorld.boxes.size(), boxes_.size());
        for (std::size_t i = 0; i < boxes_.size(); ++i) {
            const std::wstring& text = dialogWorld.boxes[i].text;
            EXPECT_TRUE(text.starts_with(boxes_[i].first) || text.starts_with(boxes_[i].second));
        }
        dialogWorld.boxes.clear();
        boxes_.clear();
    }

    void CheckButtons() {
        for (std::size_t i = 0; i < TabCount; ++i) {
            const auto page = static_cast<SettingsTab>(i);
            EXPECT_EQ(IsEnabled(DialogTabs[i].save), model_.CanSave(page)) << "save of page " << i;
            EXPECT_EQ(IsEnabled(DialogTabs[i].restore), model_.CanRestore(page)) << "restore of page " << i;
            EXPECT_TRUE(IsEnabled(DialogTabs[i].button));
        }
        EXPECT_EQ(IsEnabled(IdAutostartAllUsers), model_.autostartTicked);
    }

    void CheckPages() {
        const auto expect = [this](std::int32_t id, SettingsTab page) {
            EXPECT_EQ(IsEnabled(id), model_.live.show[IndexOf(page)]) << id;
        };
        for (std::size_t key = 0; key < ColorCount; ++key)
            expect(ColorWells[key], IconColors[key].tab);
        for (const GraphPanel& panel : GraphPanels) {
            for (const ControlId id : {panel.opacity, panel.margin, panel.lines, panel.smoothing, panel.fill,
                                       panel.topmost, panel.font, panel.size, panel.bold, panel.sample})
                expect(id, panel.tab);
        }
        for (std::size_t i = 0; i < RefreshCombos.size(); ++i)
            expect(RefreshCombos[i], static_cast<SettingsTab>(i));
        for (const ControlId id : {IdAllDisks, IdFirstDisk, IdDiskActivity})
            expect(id, SettingsTab::Disk);
        for (const ControlId id : {IdThreshold1, IdThreshold3, IdMemBar, IdMemFont, IdMemFontSize, IdMemFontBold})
            expect(id, SettingsTab::Memory);
        expect(IdInterfaces, SettingsTab::Network);
        for (const ControlId id : {IdCpuShow, IdDiskShow, IdMemShow, IdNetShow, IdLanguage, IdCheckUpdates})
            EXPECT_TRUE(IsEnabled(id)) << id;
    }

    void CheckControls() {
        const AppSettings& live = model_.live;
        for (std::size_t i = 0; i < ThresholdFields.size(); ++i)
            EXPECT_EQ(TextOfWindow(Control(ThresholdFields[i])), model_.fields[i]);
        for (const GraphKind kind : GraphKinds) {
            const GraphPanel& panel = GraphPanels[IndexOf(kind)];
            const GraphSettings& graph = GraphSettingsOf(live, kind);
            EXPECT_EQ(TextOfWindow(Control(panel.font)), graph.font_name);
            EXPECT_EQ(TextOfWindow(Control(panel.size)), std::to_wstring(graph.font_size));
            EXPECT_EQ(TextOfWindow(Control(panel.margin)), std::to_wstring(graph.margin) + L" px");
            EXPECT_EQ(IsTicked(panel.lines), graph.style == 1);
            EXPECT_EQ(IsTicked(panel.topmost), graph.topmost);
            EXPECT_EQ(IsTicked(panel.bold), graph.font_bold);
        }
        EXPECT_EQ(TextOfWindow(Control(IdMemFont)), live.font_name);
        EXPECT_EQ(IsTicked(IdMemBar), live.bar);
        EXPECT_EQ(IsTicked(IdCpuPerCore), live.per_core);
        EXPECT_EQ(IsTicked(IdDiskActivity), live.activity);
        EXPECT_EQ(IsTicked(IdAutostart), model_.autostartTicked);
        EXPECT_EQ(IsTicked(IdAutostartAllUsers), model_.allUsersTicked);
        EXPECT_EQ(IsTicked(IdCheckUpdates), live.check_updates);
        EXPECT_EQ(IsTicked(IdAllDisks), live.disks.empty());
        for (std::size_t i = 0; i < model_.diskNumbers.size(); ++i)
            EXPECT_EQ(IsTicked(IdFirstDisk + static_cast<int>(i)), model_.IsDiskChosen(model_.diskNumbers[i]));
        const std::size_t items = model_.allConnections ? 1 : model_.rows.size() + 1;
        EXPECT_EQ(SendMessageW(Control(IdInterfaces), LB_GETCOUNT, 0, 0), static_cast<LRESULT>(items));
    }

    void CheckClosed() {
        SCOPED_TRACE("closed after step " + std::to_string(step_));
        EXPECT_EQ(settings, model_.live);
        EXPECT_EQ(host.changes, model_.told);
        EXPECT_EQ(Dialog(), nullptr);
        CheckBoxes();
        CheckFile();  // with the window's position
    }

    std::map<std::int32_t, HWND> controls_;
    std::mt19937 random_;
    SettingsDialogModel model_;
    std::vector<std::pair<std::wstring, std::wstring>> boxes_;  // that are due: Spanish or English
    std::string bytes_;
    int step_ = 0;
};

class SettingsDialogWalks : public SettingsDialogWalk, public testing::WithParamInterface<unsigned> {};

TEST_P(SettingsDialogWalks, TheDialogDoesWhatItsModelSays) {
    Walk(GetParam());
}

/// Three that are always the same, and another one each time.
std::vector<unsigned> Seeds() {
    if (const char* const given = std::getenv("KESTRANE_WALK_SEED"))
        return {static_cast<unsigned>(std::strtoul(given, nullptr, 10))};
    const auto now =
        static_cast<unsigned>(std::chrono::system_clock::now().time_since_epoch().count() / 1000 % 1000000);
    std::cout << "The last walk has the seed " << now << ".\n";
    return {1, 2, 3, now};
}
std::string NameOf(const testing::TestParamInfo<unsigned>& info) {
    return "Walk" + std::to_string(info.index);
}
INSTANTIATE_TEST_SUITE_P(Seeds, SettingsDialogWalks, testing::ValuesIn(Seeds()), NameOf);

}  // namespace
}  // namespace kestrane
