// Whether the texts of the settings dialog have room in both languages.
//
// Segoe UI is on Windows only. The font that stands in for it may be wider, also in relation to the dialog units, which
// follow it. So a text may be wider than its room by a sixth here, and only one that is too long in any font fails.
#include <gtest/gtest.h>

#include "base/font_win32.h"
#include "base/geometry_win32.h"
#include "dialog/combo_choices.h"
#include "dialog/control_table.h"
#include "dialog/dialog_layout.h"
#include "dialog/dialog_units_win32.h"
#include "dialog/item_layout.h"
#include "support/settings_dialog_world_win32.h"

namespace kestrane {
namespace {

// What the system's own controls need beside their text, in pixels at 96 DPI.
constexpr std::int32_t CheckMark = 13 + 4;
constexpr std::int32_t ButtonFrame = 2 * 4;
constexpr std::int32_t ComboFrame = 2 * 4;

class SettingsDialogTexts : public SettingsDialogTest {
  protected:
    /// With every control in its place, those that only lines have, too.
    SettingsDialogTexts() {
        for (const GraphKind kind : GraphKinds)
            GraphSettingsOf(settings, kind).style = 1;
    }

    /// Runs `body` with the dialog open in each language.
    void InBothLanguages(const std::function<void()>& body) {
        for (const std::uint32_t language : {ActiveSpanish, ActiveEnglish}) {
            SetLanguage(language);
            WithDialog(body);
        }
    }
    static std::int32_t Scaled(std::int32_t pixels) { return ScaleForDpi(pixels, GetDpiForWindow(Dialog())); }
    static std::int32_t Metric(int index) { return GetSystemMetricsForDpi(index, GetDpiForWindow(Dialog())); }
    static HFONT FontOf(HWND control) { return reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)); }
    static HFONT Bold() { return FontOf(Control(IdCpuTitle)); }

    /// How much of a control is left for its text.
    static Rect RoomIn(HWND control, ControlType type) {
        RECT client{};
        GetClientRect(control, &client);
        Rect room = FromPlatform(client);
        const std::uint32_t dpi = GetDpiForWindow(Dialog());
        switch (type) {
            case ControlType::CheckBox:
                room.right -= Scaled(CheckMark);
                break;
            case ControlType::PushButton:
                room.right -= Scaled(ButtonFrame) + Metric(SM_CXSMICON);
                break;
            case ControlType::Combo:
                room.right -= Scaled(ComboFrame) + Metric(SM_CXVSCROLL);
                break;
            case ControlType::SectionTitle:
                return LayoutSectionTitle(room, dpi).text;
            case ControlType::ShowSwitch:
                return LayoutSwitch(room, dpi).text;
            default:
                break;
        }
        return room;
    }
    /// Wrapped where there is room for more than a line.
    static void ExpectToFit(const std::wstring& text, HFONT font, const Rect& room) {
        const ScreenDc screen;
        const SelectedObject selected(screen.Get(), font);
        const std::int32_t width = RectWidth(room) * 7 / 6;
        RECT needed{0, 0, width, 0};
        DrawTextW(screen.Get(), text.c_str(), -1, &needed, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
        EXPECT_LE(needed.right, width) << testing::PrintToString(text);
        EXPECT_LE(needed.bottom, RectHeight(room)) << testing::PrintToString(text);
    }
};

TEST_F(SettingsDialogTexts, EveryControlHasRoomForItsOwn) {
    InBothLanguages([] {
        int texts = 0;
        const auto ids = ControlIds();
        for (std::size_t i = 0; i < DialogRows.size(); ++i) {
            const HWND control = Control(ids[i]);
            const ControlType type = DialogRows[i].type;
            const std::wstring text = TextOfWindow(control);
            if (text.empty() || type == ControlType::NumberField || type == ControlType::TabTitle) continue;
            ExpectToFit(text, type == ControlType::SectionTitle ? Bold() : FontOf(control), RoomIn(control, type));
            ++texts;
        }
        EXPECT_GT(texts, 100);
        for (const PageNote& note : PageNotes)
            ExpectToFit(TextOfWindow(Control(note.id)), FontOf(Control(note.id)),
                        RoomIn(Control(note.id), ControlType::Note));
    });
}

TEST_F(SettingsDialogTexts, EveryComboBoxHasRoomForItsChoices) {
    InBothLanguages([] {
        int texts = 0;
        for (const DialogRow& row : DialogRows) {
            if (row.type != ControlType::Combo) continue;
            const auto content = ContentOfCombo(row.id);
            ASSERT_TRUE(content) << row.id;
            Rect room = RoomIn(Control(row.id), row.type);
            for (std::size_t i = 0; i < ChoiceCount(*content); ++i, ++texts)
                ExpectToFit(ChoiceText(*content, i), FontOf(Control(row.id)), room);
        }
        EXPECT_GT(texts, 100);
    });
}

TEST_F(SettingsDialogTexts, TheTabsHaveRoomSideBySide) {
    InBothLanguages([] {
        RECT last{};
        GetWindowRect(Control(DialogTabs.back().button), &last);
        MapWindowPoints(nullptr, Dialog(), reinterpret_cast<POINT*>(&last), 2);
        EXPECT_LE(last.right, DialogUnitsToPixels(Dialog(), TabBand).right);
    });
}

}  // namespace
}  // namespace kestrane
