// The change of language in the settings dialog: it takes effect and is saved at once.
#include <algorithm>
#include <string>
#include <vector>

#include "support/fake_ini_writes_win32.h"
#include "support/settings_dialog_world_win32.h"

namespace kestrane {
namespace {

using Texts = std::vector<std::wstring>;

DiskFacts Disk(std::uint32_t number, const std::wstring& model) {
    DiskFacts disk;
    disk.number = number;
    disk.model = model;
    return disk;
}

class SettingsDialogLanguage : public SettingsDialogTest {
  protected:
    SettingsDialogLanguage() { writesUntilFull = -1; }
    ~SettingsDialogLanguage() override { writesUntilFull = -1; }

    static void ChooseLanguage(int index) {
        ChooseItem(IdLanguage, index);
        Pump();
    }
};

TEST_F(SettingsDialogLanguage, EveryTextIsSetAnewOnTheSpot) {
    host.disks = {Disk(0, L"Disk of a maker")};
    const auto texts = [] {
        Texts all;
        all.push_back(TextOfWindow(Dialog()));
        for (HWND control = GetWindow(Dialog(), GW_CHILD); control != nullptr;
             control = GetWindow(control, GW_HWNDNEXT))
            all.push_back(TextOfWindow(control));
        return all;
    };
    WithDialog([&] {
        const Texts spanish = texts();
        ChooseLanguage(2);
        const Texts english = texts();
        EXPECT_EQ(TextOfWindow(Dialog()), L"kestrane settings");
        const struct {
            ControlId id;
            const wchar_t* text;
        } rows[] = {{IdDiskTab, L"Disk"},
                    {IdAllDisks, L"All (sum)"},
                    {IdFirstDisk, L"0  Disk of a maker"},
                    {IdCpuShow, L"Show"},
                    {IdMemTitle, L"Memory"},
                    {IdNetGraphTitle, L"Network graph (click the network icon)"},
                    {IdCpuHardwareTitle, L"Detected hardware"},
                    {IdMemBar, L"Level bar"},
                    {IdDiskActivity, L"Activity (%) instead of speed"},
                    {IdColorNote, L"Left-click a box: choose a colour. Right-click: transparent."},
                    {IdAutostartAllUsers, L"For all users"},
                    {IdGeneralSave, L"Save"},
                    {IdThreshold1, L"50"}};
        for (const auto& row : rows)
            EXPECT_EQ(TextOfWindow(Control(row.id)), row.text) << row.id;
        ChooseLanguage(1);
        EXPECT_EQ(TextOfWindow(Control(IdLanguage)), L"Español");
        ChooseLanguage(2);
        EXPECT_EQ(texts(), english);
        ChooseLanguage(1);
        Texts back = texts();
        EXPECT_EQ(std::ranges::count(back, std::wstring(L"Español")), 1);
        std::ranges::replace(back, std::wstring(L"Español"), std::wstring(L"Automático"));
        EXPECT_EQ(back, spanish);
    });
}

/// Each press of an arrow key is a choice, and the list stays open for the next.
TEST_F(SettingsDialogLanguage, AListThatIsDroppedDownShowsAllItsChoicesInTheNewLanguage) {
    WithDialog([this] {
        Click(IdGeneralTab);
        const HWND box = Control(IdLanguage);
        SetFocus(box);
        SendMessageW(box, CB_SHOWDROPDOWN, TRUE, 0);
        for (const Lang language : {LangSpanish, LangEnglish}) {
            PostMessageW(box, WM_KEYDOWN, VK_DOWN, 1);
            Pump();
            EXPECT_EQ(settings.language, language);
            EXPECT_TRUE(SendMessageW(box, CB_GETDROPPEDSTATE, 0, 0));
            EXPECT_EQ(SendMessageW(box, CB_GETCOUNT, 0, 0), 3);
            EXPECT_EQ(SendMessageW(box, CB_GETCURSEL, 0, 0), static_cast<LRESULT>(language));
        }
        EXPECT_TRUE(IsShown(IdLanguage));
        SendMessageW(box, CB_SHOWDROPDOWN, FALSE, 0);
        EXPECT_EQ(TextOfWindow(box), L"English");
    });
}

TEST_F(SettingsDialogLanguage, TheLanguageIsSavedAtOnceAndBelongsToNoPage) {
    WithDialog([this] {
        Click(IdCpuPerCore);
        ChooseLanguage(2);
        EXPECT_EQ(File(), "[general]\r\nlanguage=2\r\n");
        for (const DialogTab& tab : DialogTabs)
            EXPECT_EQ(IsEnabled(tab.save), tab.save == IdCpuSave);
        ChooseLanguage(0);
        EXPECT_EQ(File(), "[general]\r\nlanguage=0\r\n");
        ChooseLanguage(1);
        ChooseItem(IdLanguage, -1);
        EXPECT_EQ(File(), "[general]\r\nlanguage=0\r\n") << "no choice is the first";
        ChooseLanguage(2);
    });
    EXPECT_EQ(settings.language, LangEnglish);
    EXPECT_FALSE(settings.per_core);
    EXPECT_STREQ(Tr(L"Red"), L"Network");
}

TEST_F(SettingsDialogLanguage, ALanguageThatCannotBeSavedStillTakesEffect) {
    WithDialog([] {
        writesUntilFull = 0;
        ChooseLanguage(2);
        EXPECT_EQ(TextOfWindow(Control(IdGeneralSave)), L"Save");
        EXPECT_TRUE(dialogWorld.boxes.empty());
    });
    EXPECT_EQ(settings.language, LangEnglish);
}

TEST_F(SettingsDialogLanguage, ANewLanguageKeepsFieldsThatAreNotValidAndTheTicksThatAreNotSaved) {
    WithDialog([this] {
        Type(IdThreshold2, L"7");
        Click(IdAutostart);
        Click(IdAutostartAllUsers);
        Click(IdNetLines);
        Click(IdNetTab);
        ChooseLanguage(2);
        EXPECT_EQ(TextOfWindow(Control(IdThreshold2)), L"7");
        EXPECT_EQ(settings.thresholds, MakeDefaultSettings().thresholds);
        EXPECT_TRUE(IsTicked(IdAutostartAllUsers));
        EXPECT_TRUE(IsTicked(IdNetLines));
        EXPECT_TRUE(IsShown(IdNetSmoothing));
        EXPECT_TRUE(IsEnabled(IdGeneralSave));
    });
}

}  // namespace
}  // namespace kestrane
