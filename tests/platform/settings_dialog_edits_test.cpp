// Every edit on the pages of the settings dialog: which setting it changes, who is told, and what is left alone. Saving
// has its own test programs, as have wells, switches and lists.
#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "settings/settings_tab.h"
#include "support/fake_fonts_win32.h"
#include "support/settings_dialog_world_win32.h"

namespace kestrane {
namespace {

constexpr std::array<ControlId, 4> IconSamples{IdCpuIconSample, IdDiskIconSample, IdMemSample, IdNetIconSample};

/// One edit: what the user does, and the only thing that it may change.
struct Edit {
    std::string name;
    SettingsTab tab;
    std::function<void()> act;
    std::function<void(AppSettings&)> change;
};

class SettingsDialogEdits : public SettingsDialogTest {
  protected:
    static void Show(SettingsTab tab) { Click(DialogTabs[IndexOf(tab)].button); }
    static bool NeedsPaint(std::int32_t id) { return GetUpdateRect(Control(id), nullptr, FALSE) != FALSE; }
    static void PaintAll() {
        RedrawWindow(Dialog(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    }

    void Check(const Edit& edit) {
        SCOPED_TRACE(edit.name);
        Show(edit.tab);
        PaintAll();
        AppSettings expected = settings;
        const AppSettings before = settings;
        const int told = host.changes;
        edit.act();
        edit.change(expected);
        EXPECT_NE(expected, before) << "the test must change something";
        EXPECT_EQ(settings, expected);
        EXPECT_EQ(host.changes, told + 1);
        EXPECT_TRUE(NeedsPaint(IconSamples[IndexOf(edit.tab)]));
        EXPECT_EQ(IsEnabled(DialogTabs[IndexOf(edit.tab)].save),
                  !SettingsTabEqual(settings, MakeDefaultSettings(), edit.tab));
        EXPECT_FALSE(HasFile());
    }

    /// Nothing changes, and nobody is told.
    void CheckIgnored(const std::string& what, const std::function<void()>& act) {
        SCOPED_TRACE(what);
        const AppSettings before = settings;
        const int told = host.changes;
        act();
        EXPECT_EQ(settings, before);
        EXPECT_EQ(host.changes, told);
        EXPECT_TRUE(dialogWorld.boxes.empty());
        EXPECT_FALSE(HasFile());
    }

    static std::vector<Edit> EditsOfGraph(GraphKind kind) {
        const GraphPanel& panel = GraphPanels[IndexOf(kind)];
        const auto click = [](std::int32_t id) { return [id] { Click(id); }; };
        const auto choose = [](std::int32_t id, int index) { return [id, index] { ChooseItem(id, index); }; };
        const auto graph = [kind](auto change) {
            return [kind, change](AppSettings& settings) { change(GraphSettingsOf(settings, kind)); };
        };
        const std::string name = "graph " + std::to_string(IndexOf(kind)) + ": ";
        return {
            {name + "opacity", panel.tab, choose(panel.opacity, 7), graph([](GraphSettings& g) { g.opacity = 30; })},
            {name + "full opacity", panel.tab, choose(panel.opacity, 0),
             graph([](GraphSettings& g) { g.opacity = 100; })},
            {name + "margin", panel.tab, choose(panel.margin, 20), graph([](GraphSettings& g) { g.margin = 20; })},
            {name + "no margin", panel.tab, choose(panel.margin, 0), graph([](GraphSettings& g) { g.margin = 0; })},
            {name + "style", panel.tab, click(panel.lines), graph([](GraphSettings& g) { g.style = 1 - g.style; })},
            {name + "style again", panel.tab, click(panel.lines),
             graph([](GraphSettings& g) { g.style = 1 - g.style; })},
            {name + "smoothing", panel.tab, choose(panel.smoothing, 3),
             graph([](GraphSettings& g) { g.smoothing = 3; })},
            {name + "fill", panel.tab, choose(panel.fill, 4), graph([](GraphSettings& g) { g.fill = 100; })},
            {name + "no fill", panel.tab, choose(panel.fill, 0), graph([](GraphSettings& g) { g.fill = 0; })},
            {name + "topmost", panel.tab, click(panel.topmost), graph([](GraphSettings& g) { g.topmost = false; })},
            {name + "topmost again", panel.tab, click(panel.topmost),
             graph([](GraphSettings& g) { g.topmost = true; })},
            {name + "font", panel.tab, choose(panel.font, 2), graph([](GraphSettings& g) { g.font_name = L"Tahoma"; })},
            {name + "size", panel.tab, choose(panel.size, 26), graph([](GraphSettings& g) { g.font_size = 32; })},
            {name + "least size", panel.tab, choose(panel.size, 0), graph([](GraphSettings& g) { g.font_size = 6; })},
            {name + "bold", panel.tab, click(panel.bold), graph([](GraphSettings& g) { g.font_bold = true; })},
        };
    }
};

TEST_F(SettingsDialogEdits, EachControlOfAGraphChangesItsSettingAndNoOther) {
    WithDialog([this] {
        EXPECT_EQ(host.changes, 0) << "filling the controls is no edit";
        for (const GraphKind kind : GraphKinds) {
            for (const Edit& edit : EditsOfGraph(kind))
                Check(edit);
        }
    });
    EXPECT_EQ(settings, MakeDefaultSettings());
}

TEST_F(SettingsDialogEdits, EachOtherControlChangesItsSettingAndNoOther) {
    using enum SettingsTab;
    const auto click = [](std::int32_t id) { return [id] { Click(id); }; };
    const auto choose = [](std::int32_t id, int index) { return [id, index] { ChooseItem(id, index); }; };
    const auto type = [](std::int32_t id, const wchar_t* text) { return [id, text] { Type(id, text); }; };
    const Edit edits[] = {
        {"per core", Cpu, click(IdCpuPerCore), [](AppSettings& s) { s.per_core = true; }},
        {"all cores", Cpu, click(IdCpuPerCore), [](AppSettings& s) { s.per_core = false; }},
        {"activity", Disk, click(IdDiskActivity), [](AppSettings& s) { s.activity = true; }},
        {"bar", Memory, click(IdMemBar), [](AppSettings& s) { s.bar = false; }},
        {"memory font", Memory, choose(IdMemFont, 0), [](AppSettings& s) { s.font_name = L"Arial"; }},
        {"memory size", Memory, choose(IdMemFontSize, 14), [](AppSettings& s) { s.font_size = 20; }},
        {"memory bold", Memory, click(IdMemFontBold), [](AppSettings& s) { s.font_bold = true; }},
        {"period of the CPU", Cpu, choose(IdCpuRefresh, 0), [](AppSettings& s) { s.refresh_ms[0] = 500; }},
        {"period of the disk", Disk, choose(IdDiskRefresh, 1), [](AppSettings& s) { s.refresh_ms[1] = 1000; }},
        {"period of the memory", Memory, choose(IdMemRefresh, 3), [](AppSettings& s) { s.refresh_ms[2] = 3000; }},
        {"period of the network", Network, choose(IdNetRefresh, 5), [](AppSettings& s) { s.refresh_ms[3] = 10000; }},
        {"threshold 1", Memory, type(IdThreshold1, L"1"), [](AppSettings& s) { s.thresholds[0] = 1; }},
        {"threshold 2", Memory, type(IdThreshold2, L"002"), [](AppSettings& s) { s.thresholds[1] = 2; }},
        {"threshold 3", Memory, type(IdThreshold3, L"100"), [](AppSettings& s) { s.thresholds[2] = 100; }},
    };
    WithDialog([&] {
        for (const Edit& edit : edits)
            Check(edit);
    });
    EXPECT_EQ(settings, MakeDefaultSettings());
}

TEST_F(SettingsDialogEdits, UpdatesAreAskedForOnTheGeneralPage) {
    WithDialog([this] {
        Click(IdGeneralTab);
        AppSettings expected = settings;
        expected.check_updates = false;
        Click(IdCheckUpdates);
        EXPECT_EQ(settings, expected);
        EXPECT_EQ(host.changes, 1);
        EXPECT_TRUE(IsEnabled(IdGeneralSave));
        EXPECT_FALSE(HasFile());
    });
    EXPECT_EQ(settings, MakeDefaultSettings());
}

TEST_F(SettingsDialogEdits, AnyOtherNotificationOfAComboBoxIsNoEdit) {
    std::vector<std::int32_t> combos{IdCpuRefresh,  IdDiskRefresh, IdMemRefresh, IdNetRefresh,
                                     IdMemFontSize, IdMemFont,     IdLanguage};
    for (const GraphPanel& panel : GraphPanels)
        combos.insert(combos.end(), {panel.opacity, panel.margin, panel.smoothing, panel.fill, panel.size, panel.font});
    WithDialog([&] {
        for (const std::int32_t id : combos) {
            SendMessageW(Control(id), CB_SHOWDROPDOWN, TRUE, 0);
            SendMessageW(Control(id), CB_SHOWDROPDOWN, FALSE, 0);
            SendMessageW(Control(id), CB_SETCURSEL, 0, 0);
            for (const UINT code :
                 {UINT{CBN_DBLCLK}, UINT{CBN_SETFOCUS}, UINT{CBN_KILLFOCUS}, UINT{CBN_EDITCHANGE}, UINT{CBN_EDITUPDATE},
                  UINT{CBN_DROPDOWN}, UINT{CBN_CLOSEUP}, UINT{CBN_SELENDOK}, UINT{CBN_SELENDCANCEL}, UINT{0xFFFF}}) {
                CheckIgnored("control " + std::to_string(id) + ", code " + std::to_string(code),
                             [&] { Notify(id, code); });
            }
            EXPECT_EQ(SendMessageW(Control(id), CB_GETCURSEL, 0, 0), 0) << id << ": the list is not filled again";
        }
    });
}

TEST_F(SettingsDialogEdits, OnlyAClickOnACheckBoxOfAGraphIsAnEdit) {
    WithDialog([this] {
        for (const GraphPanel& panel : GraphPanels) {
            for (const ControlId id : {panel.lines, panel.topmost, panel.bold}) {
                CheckDlgButton(Dialog(), id, IsTicked(id) ? BST_UNCHECKED : BST_CHECKED);
                for (const UINT code : {1U, 2U, 5U, 6U, 7U})
                    CheckIgnored(std::to_string(id), [&] { Notify(id, code); });
            }
        }
    });
}

TEST_F(SettingsDialogEdits, TheSimpleCheckBoxesAreReadAtAnyNotification) {
    WithDialog([this] {
        for (const UINT code : {0U, 1U, 5U, 6U, 0x300U}) {
            for (const auto& [id, field] :
                 {std::pair(IdCpuPerCore, &AppSettings::per_core), std::pair(IdDiskActivity, &AppSettings::activity),
                  std::pair(IdMemBar, &AppSettings::bar), std::pair(IdCheckUpdates, &AppSettings::check_updates)}) {
                AppSettings expected = settings;
                expected.*field = !(settings.*field);
                CheckDlgButton(Dialog(), id, expected.*field ? BST_CHECKED : BST_UNCHECKED);
                Notify(id, code);
                EXPECT_EQ(settings, expected) << id << ", code " << code;
            }
        }
    });
}

TEST_F(SettingsDialogEdits, TheMemoryFontIsReadWhenAnyOfItsThreeControlsIsClickedOrChosen) {
    WithDialog([this] {
        for (const ControlId id : {IdMemFont, IdMemFontSize, IdMemFontBold}) {
            for (const UINT code : {0U, 1U, 2U}) {
                settings.font_name = L"x";
                settings.font_size = 9;
                settings.font_bold = true;
                const AppSettings before = settings;
                Notify(id, code);
                if (code == 2) {
                    EXPECT_EQ(settings, before);
                } else {
                    EXPECT_EQ(settings, MakeDefaultSettings()) << id << ", code " << code;
                }
            }
        }
    });
}

TEST_F(SettingsDialogEdits, AnIndexThatNoListHasChangesNothingOrIsTheNearest) {
    WithDialog([this] {
        for (const GraphPanel& panel : GraphPanels) {
            for (const ControlId id : {panel.opacity, panel.fill, panel.size}) {
                ChooseItem(id, 1);
                const AppSettings before = settings;
                ChooseItem(id, -1);
                EXPECT_EQ(settings, before) << id;
            }
        }
        for (const ControlId id : {IdCpuRefresh, IdDiskRefresh, IdMemRefresh, IdNetRefresh}) {
            ChooseItem(id, 1);
            const AppSettings before = settings;
            SendMessageW(Control(id), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L"?"));
            for (const int index : {-1, 6}) {
                ChooseItem(id, index);
                EXPECT_EQ(settings, before) << id;
            }
        }
        ChooseItem(IdCpuMargin, -1);
        EXPECT_EQ(settings.cpu.margin, 0);
        ChooseItem(IdCpuSmoothing, -1);
        EXPECT_EQ(settings.cpu.smoothing, 0);
        for (int i = 0; i < 40; ++i)
            SendMessageW(Control(IdCpuOpacity), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L"?"));
        const AppSettings before = settings;
        CheckIgnored("opacity", [] { ChooseItem(IdCpuOpacity, 8); });
        EXPECT_EQ(settings, before);
    });
}

TEST_F(SettingsDialogEdits, ThresholdsThatAreNotValidTogetherAreKeptInTheFieldsOnly) {
    WithDialog([this] {
        Show(SettingsTab::Memory);
        const AppSettings defaults = settings;
        for (const wchar_t* const text : {L"", L"0", L"75", L"76", L"101", L"-5", L"+5", L" 5", L"5 ", L"5x", L"abc",
                                          L"0050", L"12345678", L"4294967301", L"٥"}) {
            CheckIgnored("a threshold", [&] { Type(IdThreshold1, text); });
            EXPECT_EQ(TextOfWindow(Control(IdThreshold1)), text);
            EXPECT_FALSE(IsEnabled(IdMemSave)) << "judged by the last valid ones";
            EXPECT_FALSE(IsEnabled(IdMemRestore));
        }
        Type(IdThreshold1, L"74");
        EXPECT_EQ(settings.thresholds, (std::array{74, 75, 90}));
        EXPECT_TRUE(IsEnabled(IdMemSave));
        Type(IdThreshold1, L"50");
        EXPECT_EQ(settings, defaults);
        EXPECT_FALSE(IsEnabled(IdMemSave));
        for (const UINT code : {UINT{EN_UPDATE}, UINT{EN_SETFOCUS}, UINT{EN_KILLFOCUS}, UINT{EN_MAXTEXT}, 0U, 1U})
            CheckIgnored("a threshold", [&] { Notify(IdThreshold1, code); });
    });
}

TEST_F(SettingsDialogEdits, NewThresholdsShowOnTheSampleIcons) {
    const auto picture = [] {
        constexpr int Size = 64;
        const HDC screen = GetDC(nullptr);
        const HDC dc = CreateCompatibleDC(screen);
        const HBITMAP bitmap = CreateCompatibleBitmap(screen, Size, Size);
        const HGDIOBJ old = SelectObject(dc, bitmap);
        PatBlt(dc, 0, 0, Size, Size, WHITENESS);
        DRAWITEMSTRUCT item{};
        item.CtlType = ODT_STATIC;
        item.CtlID = IdMem1Sample;
        item.hwndItem = Control(IdMem1Sample);
        item.hDC = dc;
        item.rcItem = {0, 0, Size, Size};
        SendMessageW(Dialog(), WM_DRAWITEM, IdMem1Sample, reinterpret_cast<LPARAM>(&item));
        std::vector<COLORREF> pixels;
        for (int i = 0; i < Size * Size; ++i)
            pixels.push_back(GetPixel(dc, i % Size, i / Size));
        DeleteObject(SelectObject(dc, old));
        DeleteDC(dc);
        ReleaseDC(nullptr, screen);
        return pixels;
    };
    // With one colour for all levels the number alone makes a difference.
    for (const ColorKey key : {Mem1Text, Mem2Text, Mem3Text})
        settings.colors[key] = settings.colors[MemText];
    WithDialog([&] {
        Show(SettingsTab::Memory);
        const auto before = picture();
        EXPECT_EQ(picture(), before);
        Type(IdThreshold1, L"1");
        Type(IdThreshold2, L"2");
        EXPECT_NE(picture(), before) << "a sample of level 1 shows 1 % now";
    });
    settings = MakeDefaultSettings();
    WithDialog([&] {
        Show(SettingsTab::Memory);
        Type(IdThreshold1, L"1");
        Type(IdThreshold2, L"2");
        const auto low = picture();
        Click(IdMemRestore);
        EXPECT_NE(picture(), low) << "restoring brings the old levels back to the samples, too";
    });
}

TEST_F(SettingsDialogEdits, TheStyleShowsAndHidesWhatOnlyLinesHave) {
    WithDialog([this] {
        for (const GraphPanel& panel : GraphPanels) {
            Show(panel.tab);
            for (int i = 0; i < 2; ++i) {
                const bool lines = !IsTicked(panel.lines);
                Click(panel.lines);
                EXPECT_EQ(IsTicked(panel.lines), lines);
                EXPECT_EQ(IsShown(panel.smoothing), lines);
                EXPECT_EQ(IsShown(panel.fill), lines);
            }
            Click(panel.lines);
            Click(DialogTabs[IndexOf(panel.tab)].restore);
            EXPECT_EQ(IsShown(panel.smoothing), IsTicked(panel.lines)) << "restored";
        }
    });
}

TEST_F(SettingsDialogEdits, WhatNoControlSaysIsIgnored) {
    WithDialog([this] {
        for (std::int32_t id = 0; id < 4000; ++id) {
            const bool label = id >= FirstAutomaticId;
            if (id == IDCANCEL || (!label && Control(id) != nullptr) || (id >= IdFirstDisk && id <= IdLastDisk))
                continue;
            for (const UINT code : {0U, 1U, 7U, 0x300U})
                CheckIgnored(std::to_string(id), [&] { Notify(id, code); });
        }
        CheckIgnored("Enter", [] { Notify(IDOK, 0); });
        for (const std::int32_t id : {0xFFFF, 0x8000, 5000})
            CheckIgnored(std::to_string(id), [&] { Notify(id, 0); });
        EXPECT_NE(Dialog(), nullptr);
    });
}

}  // namespace
}  // namespace kestrane
