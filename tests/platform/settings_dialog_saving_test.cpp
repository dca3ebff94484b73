// What the "Guardar" and "Restaurar por defecto" of the four icons' pages do to the file and to the settings, and what
// closing puts back. The file is compared whole. The General page is in settings_dialog_general_test.cpp.
#include <array>
#include <cstddef>
#include <fstream>
#include <string>
#include <vector>

#include "settings/ini_file_win32.h"
#include "settings/settings_tab.h"
#include "support/fake_ini_writes_win32.h"
#include "support/random_settings.h"
#include "support/settings_dialog_world_win32.h"

namespace kestrane {
namespace {

constexpr std::array Tabs{SettingsTab::Cpu, SettingsTab::Disk, SettingsTab::Memory, SettingsTab::Network};
constexpr wchar_t Letters[] = L"abcdefghijklmnopqrstuvwxyz";
const ToldBox SaveFailed{L"No se pudo guardar el fichero de ajustes.", L"kestrane", MB_OK | MB_ICONWARNING};
const ToldBox BadThresholds{L"Los umbrales de memoria deben ser números entre 1 y 100, de menor a mayor.", L"kestrane",
                            MB_OK | MB_ICONWARNING};

/// A line of the file that is not empty, with the section that it stands in.
struct IniLine {
    std::string section;
    std::string text;

    bool operator==(const IniLine&) const = default;
};

std::vector<IniLine> LinesOf(const std::string& file) {
    std::vector<IniLine> lines;
    std::string section;
    for (std::size_t start = 0; start < file.size();) {
        const std::size_t end = std::min(file.find("\r\n", start), file.size());
        const std::string text = file.substr(start, end - start);
        if (text.starts_with('[')) section = text;
        if (!text.empty()) lines.push_back({section, text});
        start = end + 2;
    }
    return lines;
}

/// Whether a line belongs to a page: what its icon and its graph look like, not where the graph's window is.
bool IsLineOf(const IniLine& line, SettingsTab tab) {
    constexpr std::array<const char*, 4> Sections{"[cpu]", "[disk]", "[memory]", "[network]"};
    constexpr std::array<const char*, 4> Prefixes{"cpu_", "disk_", "mem", "net_"};
    constexpr std::array<const char*, 4> Shown{"show_cpu=", "show_disk=", "show_mem=", "show_net="};
    const std::size_t i = IndexOf(tab);
    if (line.text.starts_with('[')) return false;
    if (line.section == "[colors]") return line.text.starts_with(Prefixes[i]);
    if (line.section == "[icons]") return line.text.starts_with(Shown[i]);
    if (line.section != Sections[i]) return false;
    for (const char* const window : {"graph=", "pinned=", "x=", "y=", "width=", "height=", "icon_border="}) {
        if (line.text.starts_with(window)) return false;
    }
    return true;
}

std::vector<IniLine> LinesWithout(const std::vector<IniLine>& lines, SettingsTab tab) {
    std::vector<IniLine> others;
    for (const IniLine& line : lines) {
        if (!IsLineOf(line, tab)) others.push_back(line);
    }
    return others;
}

class SettingsDialogSaving : public SettingsDialogTest {
  protected:
    SettingsDialogSaving() { writesUntilFull = -1; }
    ~SettingsDialogSaving() override { writesUntilFull = -1; }

    /// A file with every key, and with some that the program does not know, and the same in memory.
    void StartWithFile(unsigned seed) {
        settings = RandomSettings(seed, Letters).Next();
        settings.show.fill(true);
        for (const SettingsTab tab : Tabs)
            ASSERT_TRUE(SaveSettingsTab(settings, tab));
        ASSERT_TRUE(SaveGraphWindows(settings) && SaveCheckUpdates(settings) && SaveLanguage(settings) &&
                    SaveInstallId(settings) && SaveDialogState({true, 10, 10, 0}));
        std::ofstream(IniFile(), std::ios::binary | std::ios::app)
            << "; a comment\r\n[of others]\r\ncpu_bg=7\r\n\r\nshow_cpu=maybe\r\n";
        ASSERT_EQ(LoadSettings(), settings);
    }

    /// As if every control of every page had been edited.
    void EditAll(unsigned seed) {
        const AppSettings other = RandomSettings(seed, Letters).Next();
        for (const SettingsTab tab : Tabs)
            CopySettingsTab(settings, other, tab);
        settings.show.fill(true);
        for (std::size_t i = 0; i < ThresholdFields.size(); ++i)
            Type(ThresholdFields[i], std::to_wstring(other.thresholds[i]).c_str());
        Notify(IdAutostart, BN_CLICKED);
        for (const SettingsTab tab : Tabs)
            EXPECT_TRUE(IsEnabled(DialogTabs[IndexOf(tab)].save));
    }

    static void Save(SettingsTab tab) { Click(DialogTabs[IndexOf(tab)].save); }
    static void Restore(SettingsTab tab) { Click(DialogTabs[IndexOf(tab)].restore); }

    /// One edit that each page has.
    static void EditOne(SettingsTab tab) {
        constexpr std::array Boxes{IdCpuPerCore, IdDiskActivity, IdMemBar, IdNetFontBold};
        Click(Boxes[IndexOf(tab)]);
    }
};

TEST_F(SettingsDialogSaving, EachPageSavesItsOwnKeysAndNoOthers) {
    for (const SettingsTab tab : Tabs) {
        SCOPED_TRACE("tab " + std::to_string(IndexOf(tab)));
        StartWithFile(7 + static_cast<unsigned>(IndexOf(tab)));
        const AppSettings opened = settings;
        AppSettings expected = settings;
        WithDialog([&] {
            EditAll(99);
            CopySettingsTab(expected, settings, tab);
            const std::vector<IniLine> before = LinesOf(File());
            Save(tab);
            const std::vector<IniLine> after = LinesOf(File());
            EXPECT_EQ(after.size(), before.size());
            EXPECT_NE(after, before);
            EXPECT_EQ(LinesWithout(after, tab), LinesWithout(before, tab));
            EXPECT_EQ(LoadSettings(), expected);
            for (const SettingsTab other : Tabs)
                EXPECT_EQ(IsEnabled(DialogTabs[IndexOf(other)].save), other != tab);
        });
        EXPECT_EQ(settings, expected) << "closing keeps what was saved and undoes the rest";
        EXPECT_EQ(LoadSettings(), expected);
        EXPECT_NE(expected, opened);
        EXPECT_TRUE(dialogWorld.boxes.empty());
    }
}

TEST_F(SettingsDialogSaving, AFreshFileHoldsThePageThatWasSaved) {
    WithDialog([this] {
        EditOne(SettingsTab::Memory);
        EditOne(SettingsTab::Cpu);
        Save(SettingsTab::Memory);
        for (const IniLine& line : LinesOf(File())) {
            const bool head = line.text.starts_with('[');
            EXPECT_TRUE(head || IsLineOf(line, SettingsTab::Memory)) << line.section << line.text;
        }
    });
    EXPECT_FALSE(settings.bar);
    EXPECT_FALSE(settings.per_core);
}

TEST_F(SettingsDialogSaving, AnyMixOfSavedAndUnsavedPagesEndsAsSaved) {
    for (unsigned saved = 0; saved < 16; ++saved) {
        settings = MakeDefaultSettings();
        std::filesystem::remove(IniFile());
        AppSettings expected = settings;
        WithDialog([&] {
            EditAll(saved + 100);
            for (const SettingsTab tab : Tabs) {
                if ((saved >> IndexOf(tab) & 1U) == 0) continue;
                CopySettingsTab(expected, settings, tab);
                Save(tab);
                EditOne(tab);
            }
            const int told = host.changes;
            SendMessageW(Dialog(), saved % 2 == 0 ? WM_CLOSE : WM_COMMAND, saved % 2 == 0 ? 0 : IDCANCEL, 0);
            EXPECT_EQ(host.changes, told + 1);
        });
        EXPECT_EQ(settings, expected) << saved;
        EXPECT_EQ(LoadSettings(), expected) << saved;
    }
}

TEST_F(SettingsDialogSaving, ClosingNeverLeavesTheUserWithoutAnIcon) {
    settings.show = {true, false, false, false};
    WithDialog([] {
        Click(IdDiskShow);
        Click(IdCpuShow);
        Click(IdCpuSave);
    });
    EXPECT_EQ(settings.show, MakeDefaultSettings().show);
}

TEST_F(SettingsDialogSaving, ASaveThatFailsIsToldAndSavesNothing) {
    for (const SettingsTab tab : Tabs) {
        StartWithFile(3);
        const AppSettings opened = settings;
        const std::string file = File();
        dialogWorld.boxes.clear();
        debugLines.clear();
        WithDialog([&] {
            EditAll(4);
            const AppSettings edited = settings;
            const int told = host.changes;
            const HANDLE lock = CreateFileW(IniFile().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
            ASSERT_NE(lock, INVALID_HANDLE_VALUE);
            Save(tab);
            CloseHandle(lock);
            EXPECT_EQ(dialogWorld.boxes, std::vector{SaveFailed});
            EXPECT_EQ(debugLines,
                      std::vector<std::wstring>{L"kestrane: error al escribir una seccion del INI de ajustes\n"});
            EXPECT_EQ(settings, edited);
            EXPECT_EQ(host.changes, told);
            EXPECT_TRUE(IsEnabled(DialogTabs[IndexOf(tab)].save));
            EXPECT_EQ(File(), file);
        });
        EXPECT_EQ(settings, opened) << "closing undoes it";
        EXPECT_EQ(LoadSettings(), opened);
    }
}

TEST_F(SettingsDialogSaving, ADiskThatFillsUpOnTheWayIsAFailureAndCanBeTriedAgain) {
    for (const int writes : {0, 1, 7, 15}) {
        StartWithFile(5);
        dialogWorld.boxes.clear();
        AppSettings edited;
        AppSettings opened = settings;
        WithDialog([&] {
            EditAll(6);
            edited = settings;
            writesUntilFull = writes;
            Save(SettingsTab::Cpu);
            EXPECT_EQ(dialogWorld.boxes, std::vector{SaveFailed});
            EXPECT_TRUE(IsEnabled(IdCpuSave));
            writesUntilFull = -1;
            Save(SettingsTab::Cpu);
            EXPECT_EQ(dialogWorld.boxes.size(), 1U);
            EXPECT_FALSE(IsEnabled(IdCpuSave));
        });
        CopySettingsTab(opened, edited, SettingsTab::Cpu);
        EXPECT_EQ(settings, opened);
        EXPECT_EQ(LoadSettings(), opened);
    }
}

TEST_F(SettingsDialogSaving, WithoutAFolderNothingCanBeSaved) {
    std::ofstream(IniFile().parent_path(), std::ios::binary) << "a file where the folder should be";
    WithDialog([this] {
        EditOne(SettingsTab::Disk);
        Save(SettingsTab::Disk);
        EXPECT_EQ(dialogWorld.boxes, std::vector{SaveFailed});
        EXPECT_TRUE(IsEnabled(IdDiskSave));
        SetLanguage(ActiveEnglish);
        Save(SettingsTab::Disk);
        EXPECT_EQ(dialogWorld.boxes.back().text, L"The settings file could not be saved.");
    });
    EXPECT_EQ(settings, MakeDefaultSettings());
}

TEST_F(SettingsDialogSaving, AFolderWithTheNameOfTheFileCannotBeSavedTo) {
    std::filesystem::create_directories(IniFile());
    WithDialog([this] {
        EditOne(SettingsTab::Network);
        Save(SettingsTab::Network);
        EXPECT_EQ(dialogWorld.boxes, std::vector{SaveFailed});
        EXPECT_TRUE(IsEnabled(IdNetSave));
    });
    EXPECT_EQ(settings, MakeDefaultSettings());
}

TEST_F(SettingsDialogSaving, ThresholdsMustBeValidToSaveThePageOfTheMemory) {
    StartWithFile(9);
    const std::string file = File();
    WithDialog([&] {
        Click(IdMemTab);
        EditOne(SettingsTab::Memory);
        EditOne(SettingsTab::Cpu);
        Type(IdThreshold1, L"");
        const AppSettings edited = settings;
        SetFocus(Control(IdMemSave));
        Save(SettingsTab::Memory);
        EXPECT_EQ(dialogWorld.boxes, std::vector{BadThresholds});
        EXPECT_EQ(GetFocus(), Control(IdThreshold1));
        EXPECT_EQ(settings, edited);
        EXPECT_EQ(File(), file);
        EXPECT_TRUE(IsEnabled(IdMemSave));
        SetLanguage(ActiveEnglish);
        Save(SettingsTab::Memory);
        EXPECT_EQ(dialogWorld.boxes.back().text,
                  L"Memory thresholds must be numbers from 1 to 100, in ascending order.");
        Save(SettingsTab::Cpu);
        EXPECT_EQ(dialogWorld.boxes.size(), 2U) << "other pages do not look at them";
        Type(IdThreshold3, L"100");
        Type(IdThreshold2, L"99");
        Type(IdThreshold1, L"98");
        Save(SettingsTab::Memory);
        EXPECT_EQ(dialogWorld.boxes.size(), 2U);
        EXPECT_EQ(LoadSettings().thresholds, (std::array{98, 99, 100}));
        EXPECT_EQ(LoadSettings(), settings);
    });
    EXPECT_EQ(settings, LoadSettings());
}

TEST_F(SettingsDialogSaving, RestoringAPageBringsItsDefaultsAndSavesNothing) {
    for (const SettingsTab tab : Tabs) {
        SCOPED_TRACE("tab " + std::to_string(IndexOf(tab)));
        StartWithFile(20 + static_cast<unsigned>(IndexOf(tab)));
        const AppSettings opened = settings;
        const std::string file = File();
        host.changes = 0;
        WithDialog([&] {
            AppSettings expected = settings;
            CopySettingsTab(expected, MakeDefaultSettings(), tab);
            EXPECT_TRUE(IsEnabled(DialogTabs[IndexOf(tab)].restore));
            Restore(tab);
            EXPECT_EQ(settings, expected);
            EXPECT_EQ(host.changes, 1) << "the controls are filled without an edit";
            EXPECT_FALSE(IsEnabled(DialogTabs[IndexOf(tab)].restore));
            EXPECT_TRUE(IsEnabled(DialogTabs[IndexOf(tab)].save));
            EXPECT_EQ(File(), file);
            for (std::size_t i = 0; i < ThresholdFields.size(); ++i) {
                EXPECT_EQ(TextOfWindow(Control(ThresholdFields[i])), std::to_wstring(settings.thresholds[i]));
            }
            EXPECT_EQ(IsTicked(IdMemBar), settings.bar);
            EXPECT_EQ(IsTicked(IdDiskActivity), settings.activity);
            EXPECT_EQ(TextOfWindow(Control(IdMemFont)), settings.font_name);
            for (const GraphKind kind : GraphKinds) {
                const GraphPanel& panel = GraphPanels[IndexOf(kind)];
                const GraphSettings& graph = GraphSettingsOf(settings, kind);
                EXPECT_EQ(TextOfWindow(Control(panel.font)), graph.font_name);
                EXPECT_EQ(TextOfWindow(Control(panel.margin)), std::to_wstring(graph.margin) + L" px");
                EXPECT_EQ(TextOfWindow(Control(panel.size)), std::to_wstring(graph.font_size));
                EXPECT_EQ(TextOfWindow(Control(panel.opacity)), std::to_wstring(graph.opacity) + L" % visible");
                EXPECT_EQ(IsTicked(panel.lines), graph.style == 1);
                EXPECT_EQ(IsTicked(panel.topmost), graph.topmost);
                EXPECT_EQ(IsTicked(panel.bold), graph.font_bold);
            }
        });
        EXPECT_EQ(settings, opened);
        EXPECT_TRUE(dialogWorld.boxes.empty());
    }
}

TEST_F(SettingsDialogSaving, ThresholdsThatAreNotValidAreGoneAfterRestoring) {
    WithDialog([this] {
        EditOne(SettingsTab::Memory);
        Type(IdThreshold1, L"abc");
        Restore(SettingsTab::Memory);
        EXPECT_EQ(TextOfWindow(Control(IdThreshold1)), L"50");
        EXPECT_EQ(settings, MakeDefaultSettings());
    });
}

TEST_F(SettingsDialogSaving, AtTheDefaultsThereIsNothingToRestoreOrSave) {
    WithDialog([] {
        for (const DialogTab& tab : DialogTabs) {
            EXPECT_FALSE(IsEnabled(tab.save));
            EXPECT_FALSE(IsEnabled(tab.restore));
        }
    });
}

TEST_F(SettingsDialogSaving, AHiddenIconsPageCanStillBeSavedAndRestored) {
    WithDialog([] {
        Click(IdMemShow);
        Save(SettingsTab::Memory);
        EXPECT_FALSE(LoadSettings().show[2]);
        Restore(SettingsTab::Memory);
        EXPECT_TRUE(IsEnabled(IdThreshold1));
    });
    EXPECT_FALSE(settings.show[2]);
}

TEST_F(SettingsDialogSaving, AButtonThatHasDoneItsWorkGivesTheKeyboardOn) {
    WithDialog([] {
        EditOne(SettingsTab::Cpu);
        for (const ControlId button : {IdCpuSave, IdCpuRestore}) {
            SetFocus(Control(button));
            Click(button);
            EXPECT_FALSE(IsEnabled(button));
            EXPECT_TRUE(IsChild(Dialog(), GetFocus()));
            EXPECT_TRUE(IsWindowEnabled(GetFocus()));
        }
    });
}

TEST_F(SettingsDialogSaving, ADialogThatEndsDuringAMessageBoxSavesAndPutsBackNothing) {
    const auto end = [this] {
        PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
        DestroyWindow(owner);
    };
    const std::vector<std::function<void()>> waysToABox{
        [] { Save(SettingsTab::Cpu); },
        [] {
            Type(IdThreshold1, L"");
            Save(SettingsTab::Memory);
        },
    };
    for (const auto& reach : waysToABox) {
        settings = MakeDefaultSettings();
        dialogWorld.boxes.clear();
        owner = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPED, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
        WithDialog([&] {
            EditOne(SettingsTab::Cpu);
            EditOne(SettingsTab::Memory);
            writesUntilFull = 0;
            dialogWorld.onBox = end;
            reach();
            EXPECT_EQ(dialogWorld.boxes.size(), 1U);
            EXPECT_EQ(Dialog(), nullptr);
        });
        dialogWorld.onBox = nullptr;
        writesUntilFull = -1;
        EXPECT_TRUE(settings.per_core);
        EXPECT_FALSE(settings.bar);
    }
}

}  // namespace
}  // namespace kestrane
