// The combo boxes of the settings dialog, which fill when they first drop down and are emptied by a new language.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "support/fake_fonts_win32.h"
#include "support/settings_dialog_world_win32.h"

namespace kestrane {
namespace {

using Texts = std::vector<std::wstring>;

const std::wstring Longest(31, L'x');  // that the settings can hold
const std::wstring TooLong(32, L'y');

const Texts RefreshTexts{L"Ultra rápido - 0,5 s", L"Rápido - 1 s", L"Normal - 1,5 s",
                         L"Medio - 3 s",          L"Lento - 5 s",  L"Muy lento - 10 s"};
const Texts EnglishRefreshTexts{L"Ultra fast - 0.5 s", L"Fast - 1 s", L"Normal - 1.5 s",
                                L"Medium - 3 s",       L"Slow - 5 s", L"Very slow - 10 s"};

Texts Numbers(int first, int last, const std::wstring& unit) {
    Texts texts;
    for (int i = first; i <= last; ++i)
        texts.push_back(std::to_wstring(i) + unit);
    return texts;
}

class SettingsDialogCombos : public SettingsDialogTest {
  protected:
    SettingsDialogCombos() { fontWorld = {}; }

    static LRESULT Send(std::int32_t id, UINT message, WPARAM wParam = 0) {
        return SendMessageW(Control(id), message, wParam, 0);
    }
    static Texts ListOf(std::int32_t id) {
        Texts texts;
        for (LRESULT i = 0; i < Send(id, CB_GETCOUNT); ++i) {
            std::wstring text(static_cast<std::size_t>(Send(id, CB_GETLBTEXTLEN, static_cast<WPARAM>(i))), L'\0');
            SendMessageW(Control(id), CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text.data()));
            texts.push_back(text);
        }
        return texts;
    }
    static std::wstring Shown(std::int32_t id) { return TextOfWindow(Control(id)); }
    static void DropDown(std::int32_t id) {
        Send(id, CB_SHOWDROPDOWN, TRUE);
        Send(id, CB_SHOWDROPDOWN, FALSE);
    }
    static void ChooseLanguage(int index) {
        ChooseItem(IdLanguage, index);
        Pump();
    }

    /// Every combo box but the fonts: its list in Spanish.
    struct Combo {
        ControlId id;
        Texts texts;
    };
    static std::vector<Combo> Combos() {
        std::vector<Combo> combos{
            {IdCpuRefresh, RefreshTexts},         {IdDiskRefresh, RefreshTexts},
            {IdMemRefresh, RefreshTexts},         {IdNetRefresh, RefreshTexts},
            {IdMemFontSize, Numbers(6, 32, L"")}, {IdLanguage, {L"Automático", L"Español", L"English"}}};
        const Texts opacities{L"100 % visible", L"90 % visible", L"80 % visible", L"70 % visible",
                              L"60 % visible",  L"50 % visible", L"40 % visible", L"30 % visible"};
        for (const GraphPanel& panel : GraphPanels) {
            combos.push_back({panel.opacity, opacities});
            combos.push_back({panel.margin, Numbers(0, 20, L" px")});
            combos.push_back({panel.smoothing, {L"Ninguno", L"Bajo", L"Medio", L"Alto"}});
            combos.push_back({panel.fill, {L"Sin relleno", L"25 %", L"50 %", L"75 %", L"100 %"}});
            combos.push_back({panel.size, Numbers(6, 32, L"")});
        }
        return combos;
    }
};

TEST_F(SettingsDialogCombos, AListHoldsItsChoiceAloneUntilItDropsDown) {
    WithDialog([] {
        for (const Combo& combo : Combos()) {
            SCOPED_TRACE(combo.id);
            const std::wstring choice = Shown(combo.id);
            EXPECT_EQ(ListOf(combo.id), Texts{choice});
            DropDown(combo.id);
            EXPECT_EQ(ListOf(combo.id), combo.texts);
            EXPECT_EQ(Shown(combo.id), choice);
        }
        for (const ControlId id : {IdCpuFont, IdDiskFont, IdMemFont, IdNetFont})
            EXPECT_EQ(ListOf(id), Texts{L"Segoe UI"});
        EXPECT_EQ(fontWorld.enumerations, 0);
    });
    EXPECT_EQ(host.changes, 1) << "dropping down is no edit";
}

TEST_F(SettingsDialogCombos, EveryChoiceIsShownAsItWasSaved) {
    settings.refresh_ms = {500, 3000, 5000, 10000};
    settings.font_size = 32;
    settings.cpu.opacity = 30;
    settings.disk.fill = 100;
    settings.network.margin = 20;
    settings.cpu.smoothing = 0;
    settings.language = LangSpanish;
    WithDialog([] {
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(Shown(IdCpuRefresh), L"Ultra rápido - 0,5 s");
            EXPECT_EQ(Shown(IdDiskRefresh), L"Medio - 3 s");
            EXPECT_EQ(Shown(IdMemRefresh), L"Lento - 5 s");
            EXPECT_EQ(Shown(IdNetRefresh), L"Muy lento - 10 s");
            EXPECT_EQ(Shown(IdMemFontSize), L"32");
            EXPECT_EQ(Shown(IdCpuOpacity), L"30 % visible");
            EXPECT_EQ(Shown(IdDiskFill), L"100 %");
            EXPECT_EQ(Shown(IdNetMargin), L"20 px");
            EXPECT_EQ(Shown(IdCpuSmoothing), L"Ninguno");
            EXPECT_EQ(Shown(IdLanguage), L"Español");
            for (const Combo& combo : Combos())
                DropDown(combo.id);
        }
    });
}

TEST_F(SettingsDialogCombos, AValueThatNoListHasShowsTheNearestAndIsKeptUntilChosen) {
    settings.cpu.opacity = 55;
    settings.cpu.margin = 999;
    settings.disk.smoothing = -4;
    settings.font_size = 100;
    const AppSettings opened = settings;
    WithDialog([&] {
        EXPECT_EQ(Shown(IdCpuOpacity), L"90 % visible");
        EXPECT_EQ(Shown(IdCpuMargin), L"20 px");
        EXPECT_EQ(Shown(IdDiskSmoothing), L"Ninguno");
        EXPECT_EQ(Shown(IdMemFontSize), L"32");
        EXPECT_EQ(settings, opened);
    });
}

TEST_F(SettingsDialogCombos, OneChangedPeriodLeavesTheOthersFilledOrNot) {
    settings.refresh_ms = {500, 3000, 5000, 10000};
    WithDialog([this] {
        DropDown(IdMemRefresh);
        ChooseItem(IdDiskRefresh, 1);
        EXPECT_EQ(settings.refresh_ms, (std::array{500U, 1000U, 5000U, 10000U}));
    });
}

TEST_F(SettingsDialogCombos, FontsAreListedOnceWithoutRepeatsAndVerticalOnes) {
    fontWorld.names = {L"zeta", L"Beta", L"@Beta", L"alfa", L"Beta", L"Segoe UI", L"beta", Longest, L"@"};
    WithDialog([] {
        HCURSOR during = nullptr;
        fontWorld.onEnumeration = [&] { during = GetCursor(); };
        const HCURSOR arrow = LoadCursorW(nullptr, IDC_ARROW);
        SetCursor(arrow);
        DropDown(IdCpuFont);
        EXPECT_EQ(during, LoadCursorW(nullptr, IDC_WAIT));
        EXPECT_EQ(GetCursor(), arrow);
        EXPECT_EQ(ListOf(IdCpuFont), (Texts{L"alfa", L"Beta", L"beta", L"Segoe UI", Longest, L"zeta"}));
        EXPECT_EQ(Shown(IdCpuFont), L"Segoe UI");
        LOGFONTW any{};
        any.lfCharSet = DEFAULT_CHARSET;
        EXPECT_EQ(std::memcmp(&fontWorld.asked.front(), &any, sizeof any), 0);

        fontWorld.names = {L"installed meanwhile"};
        for (const ControlId id : {IdCpuFont, IdMemFont, IdDiskFont, IdNetFont}) {
            DropDown(id);
            EXPECT_EQ(Send(id, CB_GETCOUNT), 6) << id;
        }
        EXPECT_EQ(fontWorld.enumerations, 1);
    });
    WithDialog([] {
        DropDown(IdCpuFont);
        EXPECT_EQ(ListOf(IdCpuFont), (Texts{L"Segoe UI", L"installed meanwhile"})) << "each opening looks anew";
    });
}

TEST_F(SettingsDialogCombos, HundredsOfFontsAreListed) {
    fontWorld.names.clear();
    for (int i = 999; i >= 100; --i)
        fontWorld.names.push_back(L"Font " + std::to_wstring(i));
    settings.font_name = L"Font 500";
    WithDialog([this] {
        DropDown(IdMemFont);
        EXPECT_EQ(Send(IdMemFont, CB_GETCOUNT), 900);
        EXPECT_EQ(Send(IdMemFont, CB_GETCURSEL), 400);
        ChooseItem(IdMemFont, 899);
        EXPECT_EQ(settings.font_name, L"Font 999");
    });
}

TEST_F(SettingsDialogCombos, AFontThatIsMissingIsShownAndStandsAtTheTop) {
    settings.cpu.font_name = L"Zapfino";
    settings.disk.font_name = Longest;
    WithDialog([this] {
        for (const ControlId id : {IdCpuFont, IdDiskFont}) {
            const std::wstring name = id == IdCpuFont ? L"Zapfino" : Longest;
            EXPECT_EQ(Shown(id), name);
            DropDown(id);
            EXPECT_EQ(ListOf(id), (Texts{name, L"Arial", L"Segoe UI", L"Tahoma"}));
            EXPECT_EQ(Send(id, CB_GETCURSEL), 0);
        }
        Click(IdDiskFontBold);
        EXPECT_EQ(settings.disk.font_name, Longest);
        ChooseItem(IdCpuFont, 3);
        EXPECT_EQ(settings.cpu.font_name, L"Tahoma");
        ChooseItem(IdCpuFont, 0);
        EXPECT_EQ(settings.cpu.font_name, L"Zapfino") << "there is a way back";
    });
}

TEST_F(SettingsDialogCombos, WithoutAnyFontTheSavedOneIsTheList) {
    fontWorld.names.clear();
    WithDialog([] {
        DropDown(IdCpuFont);
        EXPECT_EQ(ListOf(IdCpuFont), Texts{L"Segoe UI"});
        EXPECT_EQ(Shown(IdCpuFont), L"Segoe UI");
    });
}

TEST_F(SettingsDialogCombos, ANameThatTheSettingsCannotHoldIsNotTaken) {
    WithDialog([this] {
        for (const std::wstring& name : {TooLong, std::wstring(500, L'z'), std::wstring()}) {
            const auto index =
                SendMessageW(Control(IdMemFont), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
            Send(IdMemFont, CB_SETCURSEL, static_cast<WPARAM>(index));
            Click(IdMemFontBold);
            EXPECT_EQ(settings.font_name, L"Segoe UI") << name.size();
        }
        EXPECT_TRUE(settings.font_bold);
        Send(IdMemFont, CB_SETCURSEL, static_cast<WPARAM>(-1));
        Click(IdMemFontBold);
        EXPECT_EQ(settings.font_name, L"Segoe UI") << "nothing is selected";
    });
}

TEST_F(SettingsDialogCombos, RestoringShowsTheDefaultsWhetherFilledOrNot) {
    settings.cpu.font_name = L"Tahoma";
    settings.cpu.margin = 9;
    settings.disk.font_name = L"Missing";
    settings.disk.margin = 9;
    WithDialog([] {
        DropDown(IdCpuFont);
        DropDown(IdCpuMargin);
        Click(IdCpuRestore);
        Click(IdDiskRestore);
        for (const ControlId id : {IdCpuFont, IdDiskFont})
            EXPECT_EQ(Shown(id), L"Segoe UI");
        for (const ControlId id : {IdCpuMargin, IdDiskMargin})
            EXPECT_EQ(Shown(id), L"3 px");
        EXPECT_EQ(Send(IdCpuMargin, CB_GETCOUNT), 21);
        EXPECT_EQ(Send(IdDiskMargin, CB_GETCOUNT), 1);
    });
}

TEST_F(SettingsDialogCombos, ANewLanguageKeepsEveryChoiceAndRefillsOnDemand) {
    for (const bool filled : {false, true}) {
        SCOPED_TRACE(filled ? "filled" : "not filled");
        settings = MakeDefaultSettings();
        settings.refresh_ms.fill(10000);
        settings.cpu.smoothing = 3;
        settings.disk.fill = 0;
        host.changes = 0;
        WithDialog([&] {
            for (const Combo& combo : Combos()) {
                if (filled) DropDown(combo.id);
            }
            if (filled) DropDown(IdMemFont);
            if (filled) ChooseItem(IdCpuRefresh, 4);
            AppSettings expected = settings;
            expected.language = LangEnglish;
            const int told = host.changes;
            ChooseLanguage(2);
            EXPECT_EQ(settings, expected);
            EXPECT_EQ(host.changes, told + 1);
            for (const Combo& combo : Combos())
                EXPECT_EQ(Send(combo.id, CB_GETCOUNT), 1) << combo.id;
            EXPECT_EQ(Shown(IdCpuRefresh), filled ? L"Slow - 5 s" : L"Very slow - 10 s");
            EXPECT_EQ(Shown(IdNetRefresh), L"Very slow - 10 s");
            EXPECT_EQ(Shown(IdCpuSmoothing), L"High");
            EXPECT_EQ(Shown(IdDiskFill), L"No fill");
            EXPECT_EQ(Shown(IdLanguage), L"English");
            EXPECT_EQ(Shown(IdMemFont), L"Segoe UI");
            DropDown(IdCpuRefresh);
            EXPECT_EQ(ListOf(IdCpuRefresh), EnglishRefreshTexts);
            EXPECT_EQ(Send(IdCpuRefresh, CB_GETCURSEL), filled ? 4 : 5);
            ChooseItem(IdDiskRefresh, 0);
            expected.refresh_ms[1] = 500;
            EXPECT_EQ(settings, expected);
            ChooseLanguage(1);
            EXPECT_EQ(Shown(IdDiskRefresh), L"Ultra rápido - 0,5 s");
        });
    }
}

}  // namespace
}  // namespace kestrane
