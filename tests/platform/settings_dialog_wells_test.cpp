// The colour wells, the switches and the tabs of the settings dialog, driven as a user drives them.
#include <cstddef>
#include <string>
#include <vector>

#include "support/settings_dialog_world_win32.h"

namespace kestrane {
namespace {

constexpr ColorValue Orange = 0xFF8000;
constexpr COLORREF OrangeOfWindows = 0x0080FF;

class SettingsDialogWells : public SettingsDialogTest {
  protected:
    static void Show(SettingsTab tab) { Click(DialogTabs[IndexOf(tab)].button); }
    static bool NeedsPaint(std::int32_t id) { return GetUpdateRect(Control(id), nullptr, FALSE) != FALSE; }
    static void PaintAll() {
        RedrawWindow(Dialog(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    }

    /// `act` on the well of `key` changes that colour to `color`, at once and only in memory.
    template <typename Act>
    void CheckColor(std::size_t key, ColorValue color, const Act& act) {
        SCOPED_TRACE("colour " + std::to_string(key));
        Show(IconColors[key].tab);
        ValidateRect(Control(ColorWells[key]), nullptr);
        AppSettings expected = settings;
        expected.colors[key] = color;
        const int told = host.changes;
        act(ColorWells[key]);
        EXPECT_EQ(settings, expected);
        EXPECT_EQ(host.changes, told + 1);
        EXPECT_TRUE(NeedsPaint(ColorWells[key]));
        EXPECT_FALSE(HasFile());
    }
};

TEST_F(SettingsDialogWells, ALeftClickChoosesTheColorOfEachWell) {
    WithDialog([this] {
        for (std::size_t key = 0; key < ColorCount; ++key) {
            const auto red = static_cast<BYTE>(key + 1);
            dialogWorld.chosenColor = RGB(red, 0x80, 0x40);
            const ColorValue expected = ColorValue{red} << 16 | 0x8040;
            CheckColor(key, expected, [](std::int32_t id) { Click(id); });
        }
        EXPECT_EQ(dialogWorld.colorDialogs.size(), std::size_t{ColorCount});
    });
    EXPECT_EQ(settings, MakeDefaultSettings());
}

TEST_F(SettingsDialogWells, TheColorDialogBelongsToTheSettingsAndStartsFromTheWellsColor) {
    settings.colors[CpuBg] = 0x123456;
    settings.colors[CpuFg] = ColorNone;      // its default is a colour
    settings.colors[CpuBorder] = ColorNone;  // as is its default
    WithDialog([] {
        const struct {
            ControlId well;
            COLORREF start;
        } rows[] = {{IdCpuBg, 0x563412}, {IdCpuFg, 0xB77B00}, {IdCpuBorder, 0}};
        for (const auto& row : rows) {
            Click(row.well);
            const CHOOSECOLORW& choose = dialogWorld.colorDialogs.back();
            EXPECT_EQ(choose.lStructSize, sizeof choose);
            EXPECT_EQ(choose.hwndOwner, Dialog());
            EXPECT_EQ(choose.Flags, DWORD{CC_RGBINIT | CC_FULLOPEN | CC_ANYCOLOR});
            EXPECT_EQ(choose.rgbResult, row.start);
            EXPECT_NE(choose.lpCustColors, nullptr);
        }
    });
}

TEST_F(SettingsDialogWells, ACancelledColorDialogChangesNothing) {
    WithDialog([this] {
        for (const ControlId well : ColorWells)
            Click(well);
        EXPECT_EQ(dialogWorld.colorDialogs.size(), ColorWells.size());
        EXPECT_EQ(settings, MakeDefaultSettings());
        EXPECT_EQ(host.changes, 0);
    });
}

/// Another program can ask it to close, though the user cannot while the colour dialog is open.
TEST_F(SettingsDialogWells, AColorThatIsChosenAfterTheDialogHasClosedIsNotTaken) {
    dialogWorld.chosenColor = OrangeOfWindows;
    dialogWorld.onColorDialog = [] { SendMessageW(Dialog(), WM_CLOSE, 0, 0); };
    WithDialog([this] {
        Click(IdCpuBg);
        EXPECT_FALSE(IsOpen());
        EXPECT_EQ(settings, MakeDefaultSettings());
        EXPECT_EQ(host.changes, 1) << "that of closing";
    });
}

TEST_F(SettingsDialogWells, CustomColorsLastAsLongAsTheDialog) {
    WithDialog([] {
        Click(IdCpuBg);
        for (int i = 0; i < 16; ++i)
            EXPECT_EQ(dialogWorld.colorDialogs.back().lpCustColors[i], 0U) << i;
        dialogWorld.colorDialogs.back().lpCustColors[15] = 0x123456;
        Click(IdMem3Border);
        EXPECT_EQ(dialogWorld.colorDialogs.back().lpCustColors[15], 0x123456U);
    });
    WithDialog([] {
        Click(IdCpuBg);
        EXPECT_EQ(dialogWorld.colorDialogs.back().lpCustColors[15], 0U);
    });
}

TEST_F(SettingsDialogWells, OnlyAClickOpensTheColorDialog) {
    WithDialog([] {
        for (const UINT code : {1U, UINT{BN_DOUBLECLICKED}, UINT{BN_SETFOCUS}, UINT{BN_KILLFOCUS}, 0x300U})
            Notify(IdCpuBg, code);
        EXPECT_TRUE(dialogWorld.colorDialogs.empty());
    });
}

TEST_F(SettingsDialogWells, ARightClickTogglesBetweenTransparentAndTheSavedColor) {
    for (std::size_t key = 0; key < ColorCount; ++key)
        settings.colors[key] = 0x010101U * static_cast<ColorValue>(key + 1);
    const AppSettings opened = settings;
    WithDialog([&] {
        for (std::size_t key = 0; key < ColorCount; ++key) {
            CheckColor(key, ColorNone, [](std::int32_t id) { RightClick(id); });
            CheckColor(key, opened.colors[key], [](std::int32_t id) { RightClick(id); });
        }
        settings.colors[CpuBg] = Orange;
        CheckColor(CpuBg, ColorNone, [](std::int32_t id) { RightClick(id); });
        CheckColor(CpuBg, opened.colors[CpuBg], [](std::int32_t id) { RightClick(id); });
    });
    EXPECT_EQ(settings, opened);
}

TEST_F(SettingsDialogWells, WithoutASavedColorARightClickGoesBackToTheDefault) {
    settings.colors.fill(ColorNone);
    WithDialog([this] {
        const AppSettings defaults = MakeDefaultSettings();
        for (std::size_t key = 0; key < ColorCount; ++key)
            CheckColor(key, defaults.colors[key], [](std::int32_t id) { RightClick(id); });
    });
}

TEST_F(SettingsDialogWells, ASaveIsWhatARightClickGoesBackTo) {
    WithDialog([this] {
        dialogWorld.chosenColor = OrangeOfWindows;
        Click(IdCpuBg);
        Click(IdCpuSave);
        RightClick(IdCpuBg);
        RightClick(IdCpuBg);
        EXPECT_EQ(settings.colors[CpuBg], Orange);
    });
}

TEST_F(SettingsDialogWells, AWellOfAHiddenIconIsDisabled) {
    WithDialog([this] {
        for (std::size_t key = 0; key < ColorCount; ++key) {
            const SettingsTab tab = IconColors[key].tab;
            Click(DialogTabs[IndexOf(tab)].show);
            EXPECT_FALSE(IsEnabled(ColorWells[key])) << key;
            const AppSettings before = settings;
            RightClick(ColorWells[key]);
            EXPECT_EQ(settings, before) << key;
            Click(DialogTabs[IndexOf(tab)].show);
            EXPECT_TRUE(IsEnabled(ColorWells[key])) << key;
        }
    });
}

TEST_F(SettingsDialogWells, ARightClickElsewhereIsNoEdit) {
    WithDialog([this] {
        for (const ControlId id : {IdCpuTab, IdCpuShow, IdCpuIconSample, IdCpuSave, IdCpuFont, IdCpuPerCore})
            RightClick(id);
        for (const HWND window : {Dialog(), GetDesktopWindow(), HWND{nullptr}})
            SendMessageW(Dialog(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(window), 0);
        EXPECT_EQ(settings, MakeDefaultSettings());
        EXPECT_EQ(host.changes, 0);
    });
}

TEST_F(SettingsDialogWells, EachSwitchHidesAndShowsItsIcon) {
    WithDialog([this] {
        for (std::size_t i = 0; i < MetricCount; ++i) {
            Show(static_cast<SettingsTab>(i));
            for (const bool shown : {false, true}) {
                PaintAll();
                AppSettings expected = settings;
                expected.show[i] = shown;
                const int told = host.changes;
                Click(DialogTabs[i].show);
                EXPECT_EQ(settings, expected);
                EXPECT_EQ(host.changes, told + 1);
                EXPECT_TRUE(NeedsPaint(DialogTabs[i].show));
                EXPECT_TRUE(IsEnabled(DialogTabs[i].show));
                EXPECT_EQ(IsEnabled(DialogTabs[i].save), !shown);
                EXPECT_EQ(IsEnabled(DialogTabs[i].restore), !shown);
            }
        }
        EXPECT_TRUE(dialogWorld.boxes.empty());
        EXPECT_FALSE(HasFile());
    });
}

TEST_F(SettingsDialogWells, TheSecondClickOfADoubleClickCounts) {
    WithDialog([this] {
        PaintAll();
        Notify(IdCpuShow, BN_DOUBLECLICKED);
        EXPECT_FALSE(settings.show[0]);
        EXPECT_TRUE(NeedsPaint(IdCpuShow)) << "painted again by the dialog, not for having been pressed";
        for (const UINT code : {1U, UINT{BN_SETFOCUS}, UINT{BN_KILLFOCUS}})
            Notify(IdCpuShow, code);
        EXPECT_FALSE(settings.show[0]);
    });
}

TEST_F(SettingsDialogWells, TheLastIconStaysVisible) {
    for (std::size_t last = 0; last < MetricCount; ++last) {
        settings = MakeDefaultSettings();
        settings.show.fill(false);
        settings.show[last] = true;
        const AppSettings before = settings;
        dialogWorld.boxes.clear();
        host.changes = 0;
        WithDialog([&] {
            Click(DialogTabs[last].show);
            SetLanguage(ActiveEnglish);
            Click(DialogTabs[last].show);
            SetLanguage(ActiveSpanish);
            EXPECT_EQ(settings, before);
            EXPECT_EQ(host.changes, 0);
            EXPECT_FALSE(IsEnabled(DialogTabs[last].save));
            Click(DialogTabs[(last + 1) % MetricCount].show);
            Click(DialogTabs[last].show);
            EXPECT_FALSE(settings.show[last]) << "it is the last one no more";
        });
        EXPECT_EQ(
            dialogWorld.boxes,
            (std::vector<ToldBox>{{L"Al menos un icono debe quedar visible.", L"kestrane", MB_OK | MB_ICONINFORMATION},
                                  {L"At least one icon must stay visible.", L"kestrane", MB_OK | MB_ICONINFORMATION}}));
    }
}

TEST_F(SettingsDialogWells, ATabShowsItsPageAndTheTabOfNowDoesNothing) {
    WithDialog([this] {
        for (std::size_t i = TabCount; i-- > 0;) {
            PaintAll();
            Click(DialogTabs[i].button);
            for (std::size_t other = 0; other < TabCount; ++other) {
                EXPECT_TRUE(NeedsPaint(DialogTabs[other].button)) << other;
                EXPECT_EQ(IsShown(DialogTabs[other].save), other == i);
                EXPECT_EQ(DialogTabs[other].show != NoId && IsShown(DialogTabs[other].show),
                          other == i && other < MetricCount);
            }
            PaintAll();
            // BM_CLICK itself has the pressed button painted.
            Notify(DialogTabs[i].button, BN_CLICKED);
            for (const DialogTab& tab : DialogTabs)
                EXPECT_FALSE(NeedsPaint(tab.button));
        }
        EXPECT_EQ(host.changes, 0);
    });
}

}  // namespace
}  // namespace kestrane
