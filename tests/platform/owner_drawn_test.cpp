// The owner-drawn controls of the settings dialog, painted into memory.
#include "dialog/owner_drawn_win32.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "support/fake_contrast_win32.h"
#include "support/painted_surface_win32.h"

namespace kestrane {
namespace {

constexpr std::uint32_t Dpi = 96;
constexpr ColorValue Edge = 0x8A8A8A;
constexpr ColorValue Accent = 0x1B75BC;
constexpr ColorValue IconColor = 0xC08040;

class OwnerDrawn : public testing::Test {
  protected:
    OwnerDrawn() {
        world = {};
        contrast = Contrast::Off;
        std::vector<std::uint8_t> mask(16 * 16 / 8, 0);
        std::vector<std::uint32_t> pixels(16 * 16, 0xFF000000 | IconColor);
        icon_.Reset(
            CreateIcon(nullptr, 16, 16, 1, 32, mask.data(), reinterpret_cast<const std::uint8_t*>(pixels.data())));
    }

    DialogFonts Fonts() const { return {regular_.Get(), bold_.Get()}; }

    const UniqueFont regular_ = MakeFont(L"Tahoma", 12, false, DEFAULT_QUALITY);
    const UniqueFont bold_ = MakeFont(L"Tahoma", 12, true, DEFAULT_QUALITY);
    UniqueIcon icon_;
};

// Tab buttons.

class TabButton : public OwnerDrawn {
  protected:
    void Paint(const Surface& surface, bool selected, bool focus = false, std::uint32_t dpi = Dpi) {
        surface.Painted([&](HDC dc) {
            PaintTabButton(dc, {2, 1, 102, 31}, L"Disco", icon_.Get(), Accent, selected, focus, Fonts(), dpi);
        });
    }
};

TEST_F(TabButton, TheSelectedOneHasAStripOfItsAccentColour) {
    const Surface surface(104, 34);
    Paint(surface, true);
    EXPECT_EQ(surface.At(50, 0), Untouched);
    for (const std::int32_t y : {1, 2, 3}) {
        EXPECT_EQ(surface.At(2, y), Accent) << y;
        EXPECT_EQ(surface.At(101, y), Accent) << y;
    }
    EXPECT_EQ(surface.At(1, 10), Untouched);
    EXPECT_EQ(surface.At(2, 4), Edge);
    EXPECT_EQ(surface.At(3, 4), Sys(COLOR_WINDOW));
    EXPECT_EQ(surface.At(2, 30), Edge);
    EXPECT_EQ(surface.At(101, 30), Edge);
    EXPECT_EQ(surface.At(102, 30), Untouched);
    EXPECT_EQ(surface.At(50, 30), Sys(COLOR_WINDOW)) << "open to the page";
    EXPECT_EQ(surface.At(50, 31), Untouched);
}

TEST_F(TabButton, TheOthersAreDarkerAndLower) {
    const Surface surface(104, 34);
    Paint(surface, false);
    EXPECT_EQ(surface.At(2, 1), Sys(COLOR_BTNFACE)) << "above the tab";
    EXPECT_EQ(surface.At(101, 3), Sys(COLOR_BTNFACE));
    EXPECT_EQ(surface.At(2, 4), Edge);
    EXPECT_EQ(surface.At(50, 4), Edge);
    EXPECT_EQ(surface.At(101, 4), Edge);
    EXPECT_EQ(surface.At(50, 5), BlendColor(Sys(COLOR_BTNFACE), 0, 0.09));
    EXPECT_EQ(surface.At(2, 30), Edge);
    EXPECT_EQ(surface.At(101, 30), Edge);
    EXPECT_EQ(surface.At(50, 30), BlendColor(Sys(COLOR_BTNFACE), 0, 0.09));
    EXPECT_EQ(surface.CountOf(Accent), 0);
}

// Five letters of 7 or 6 pixels, the gap and the icon, in the middle of 100 pixels.
TEST_F(TabButton, IconAndTextAreCentredAsAPair) {
    const Surface selected(104, 34);
    Paint(selected, true);
    EXPECT_EQ(
        world.texts,
        (std::vector<DrawnText>{
            {L"Disco", {45, 1, 102, 31}, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX, Sys(COLOR_WINDOWTEXT), true}}));
    EXPECT_EQ(selected.At(24, 9), IconColor) << "one pixel below the middle";
    EXPECT_EQ(selected.At(39, 24), IconColor);
    EXPECT_EQ(selected.CountOf(IconColor), 256);

    world.texts.clear();
    const Surface other(104, 34);
    Paint(other, false);
    EXPECT_EQ(world.texts,
              (std::vector<DrawnText>{
                  {L"Disco", {47, 4, 102, 31}, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX, Sys(COLOR_GRAYTEXT), false}}));
    EXPECT_EQ(other.At(26, 9), IconColor);
    EXPECT_EQ(other.At(41, 24), IconColor);
}

TEST_F(TabButton, TheFocusRectangleIsInsideTheTab) {
    const Surface plain(104, 34);
    const Surface focused(104, 34);
    Paint(plain, true);
    Paint(focused, true, true);
    ExpectFocusRect(focused, plain, {5, 4, 99, 28});
    const Surface otherPlain(104, 34);
    const Surface otherFocused(104, 34);
    Paint(otherPlain, false);
    Paint(otherFocused, false, true);
    ExpectFocusRect(otherFocused, otherPlain, {5, 7, 99, 28});
}

TEST_F(TabButton, GrowsWithTheDpi) {
    const Surface surface(104, 34);
    Paint(surface, true, false, 192);
    EXPECT_EQ(surface.At(50, 6), Accent);
    EXPECT_EQ(surface.At(50, 7), Sys(COLOR_WINDOW));
    EXPECT_EQ(surface.At(3, 7), Sys(COLOR_WINDOW)) << "the edge is one pixel wide";
    EXPECT_EQ(surface.At(2, 7), Edge);
}

TEST_F(TabButton, ShowsAtMost63CharactersAndKeepsThePlaceOfAMissingIcon) {
    const Surface surface(104, 34);
    const auto paint = [&](const std::wstring& text) {
        surface.Painted([&](HDC dc) {
            PaintTabButton(dc, {2, 1, 102, 31}, text, nullptr, Accent, false, false, Fonts(), Dpi);
        });
        return world.texts.back();
    };
    EXPECT_EQ(paint(std::wstring(64, L'x')).text.size(), 63U);
    EXPECT_EQ(paint(L"x").where.left, 2 + (100 - 6 - 21) / 2 + 21);
    EXPECT_EQ(surface.CountOf(IconColor), 0);
}

// Colour wells.

class Well : public OwnerDrawn {
  protected:
    static void Paint(const Surface& surface, const Rect& item, ColorValue color, const ItemState& state) {
        surface.Painted([&](HDC dc) { PaintColorWell(dc, item, color, state); });
    }
};

TEST_F(Well, ShowsItsColourInAFrame) {
    const Surface surface(14, 12);
    Paint(surface, {1, 1, 12, 11}, 0xE14B20, {});
    EXPECT_EQ(surface.At(0, 5), Untouched);
    EXPECT_EQ(surface.At(1, 1), Sys(COLOR_WINDOWTEXT));
    EXPECT_EQ(surface.At(11, 10), Sys(COLOR_WINDOWTEXT));
    EXPECT_EQ(surface.At(2, 2), 0xE14B20U);
    EXPECT_EQ(surface.At(10, 9), 0xE14B20U);
    EXPECT_EQ(surface.At(12, 5), Untouched);
}

TEST_F(Well, IsPaleWhenDisabled) {
    const Surface surface(14, 12);
    Paint(surface, {1, 1, 12, 11}, 0xE14B20, {.enabled = false});
    EXPECT_EQ(surface.At(2, 2), BlendColor(0xE14B20, Sys(COLOR_BTNFACE), 0.65));
    EXPECT_EQ(surface.At(1, 1), Sys(COLOR_GRAYTEXT));
}

// 11 by 10 pixels: the third column is cut to three pixels, of which the frame takes one, and the third row to two.
TEST_F(Well, TransparentIsAChequerCutAtTheEdge) {
    const Surface surface(12, 11);
    Paint(surface, {0, 0, 11, 10}, ColorNone, {});
    EXPECT_EQ(
        RowsOf(surface.Pixels(), {{0xFFFFFF, '.'}, {0xA0A0A0, '#'}, {Sys(COLOR_WINDOWTEXT), '+'}, {Untouched, ' '}}),
        (Strings{
            "+++++++++++ ",
            "+###....##+ ",
            "+###....##+ ",
            "+###....##+ ",
            "+...####..+ ",
            "+...####..+ ",
            "+...####..+ ",
            "+...####..+ ",
            "+###....##+ ",
            "+++++++++++ ",
            "            ",
        }));
}

TEST_F(Well, ADisabledTransparentOneDiffersOnlyInItsFrame) {
    const Surface enabled(20, 20);
    const Surface disabled(20, 20);
    Paint(enabled, {0, 0, 20, 20}, ColorNone, {});
    Paint(disabled, {0, 0, 20, 20}, ColorNone, {.enabled = false});
    EXPECT_EQ(enabled.CountOf(Sys(COLOR_WINDOWTEXT)), 76);
    EXPECT_EQ(disabled.CountOf(Sys(COLOR_GRAYTEXT)), 76);
    EXPECT_EQ(DifferenceOf(enabled, disabled).count, 76);
}

TEST_F(Well, TheFocusRectangleIsTwoPixelsInside) {
    for (const ColorValue color : {ColorValue{0x0080FF}, ColorNone}) {
        const Surface plain(24, 20);
        const Surface focused(24, 20);
        Paint(plain, {1, 1, 23, 19}, color, {});
        Paint(focused, {1, 1, 23, 19}, color, {.focus = true});
        ExpectFocusRect(focused, plain, {3, 3, 21, 17});
    }
}

TEST_F(Well, ATinyOneHasNoFocusRectangleAndAnEmptyOneNothing) {
    const Surface plain(24, 20);
    const Surface focused(24, 20);
    Paint(plain, {8, 8, 11, 11}, 0x0080FF, {});
    Paint(focused, {8, 8, 11, 11}, 0x0080FF, {.focus = true});
    EXPECT_EQ(plain.CountOf(Untouched), 24 * 20 - 9);
    EXPECT_EQ(DifferenceOf(focused, plain).count, 0);
    for (const ColorValue color : {ColorValue{0x0080FF}, ColorNone}) {
        for (const Rect& empty : {Rect{8, 8, 8, 12}, Rect{12, 8, 8, 12}, Rect{8, 12, 16, 8}}) {
            const Surface surface(24, 20);
            Paint(surface, empty, color, {.focus = true});
            EXPECT_TRUE(surface.IsUntouched());
        }
    }
}

// Switches.

class Switch : public OwnerDrawn {
  protected:
    void Paint(const Surface& surface, const Rect& item, bool on, bool focus = false, std::uint32_t dpi = Dpi) {
        surface.Painted([&](HDC dc) { PaintSwitch(dc, item, L"M&ostrar", on, focus, regular_.Get(), dpi); });
    }
};

TEST_F(Switch, TheTrackIsAtTheRightOfTheFace) {
    const Surface surface(110, 24);
    Paint(surface, {5, 2, 105, 22}, true);
    EXPECT_EQ(surface.At(4, 10), Untouched);
    EXPECT_EQ(surface.At(5, 2), Sys(COLOR_BTNFACE));
    EXPECT_EQ(surface.At(104, 21), Sys(COLOR_BTNFACE));
    EXPECT_EQ(surface.At(105, 10), Untouched);
    EXPECT_EQ(surface.At(76, 12), Sys(COLOR_BTNFACE)) << "left of the track";
    EXPECT_EQ(surface.At(77, 12), 0x0A6FD6U);
    EXPECT_EQ(surface.At(90, 3), Sys(COLOR_BTNFACE)) << "above the track";
    EXPECT_EQ(surface.At(90, 4), 0x0A6FD6U);
    EXPECT_EQ(surface.At(90, 19), 0x0A6FD6U);
    EXPECT_EQ(surface.At(90, 20), Sys(COLOR_BTNFACE));
    EXPECT_EQ(surface.At(77, 4), Sys(COLOR_BTNFACE)) << "the corner is the face's";
}

TEST_F(Switch, TheKnobIsAtTheRightWhenOnAndAtTheLeftInARingWhenOff) {
    const Surface on(110, 24);
    Paint(on, {5, 2, 105, 22}, true);
    EXPECT_EQ(on.At(97, 12), 0xFFFFFFU);
    EXPECT_EQ(on.At(85, 12), 0x0A6FD6U);
    EXPECT_EQ(on.At(103, 12), 0x0A6FD6U) << "no ring";
    const Surface off(110, 24);
    Paint(off, {5, 2, 105, 22}, false);
    EXPECT_EQ(off.At(85, 12), 0xFFFFFFU);
    EXPECT_EQ(off.At(97, 12), 0xC7C7CCU);
    EXPECT_EQ(off.At(78, 12), 0xB1B1B5U) << "the ring";
}

TEST_F(Switch, TheTextIsRightAlignedBesideTheTrack) {
    const Surface surface(110, 24);
    Paint(surface, {5, 2, 105, 22}, true);
    EXPECT_EQ(world.texts, (std::vector<DrawnText>{{L"M&ostrar",
                                                    {5, 2, 72, 22},
                                                    DT_SINGLELINE | DT_VCENTER | DT_RIGHT | DT_NOPREFIX,
                                                    Sys(COLOR_BTNTEXT),
                                                    false}}));
}

TEST_F(Switch, TheFocusRectangleIsRoundTheTrack) {
    const Surface plain(112, 26);
    const Surface focused(112, 26);
    Paint(plain, {5, 2, 105, 24}, true);
    Paint(focused, {5, 2, 105, 24}, true, true);
    ExpectFocusRect(focused, plain, {75, 3, 107, 23});
}

TEST_F(Switch, GrowsWithTheDpi) {
    const Surface surface(110, 40);
    Paint(surface, {5, 2, 105, 38}, true, false, 192);
    EXPECT_EQ(surface.At(48, 20), Sys(COLOR_BTNFACE));
    EXPECT_EQ(surface.At(49, 20), 0x0A6FD6U);
    EXPECT_EQ(world.texts.at(0).where.right, 39);
}

TEST_F(Switch, AnEmptyItemStaysUnpainted) {
    for (const Rect& empty : {Rect{50, 10, 50, 20}, Rect{50, 10, 80, 10}, Rect{50, 10, 40, 20}}) {
        const Surface surface(110, 24);
        Paint(surface, empty, true, true);
        EXPECT_TRUE(surface.IsUntouched());
    }
    EXPECT_TRUE(world.texts.empty());
}

TEST_F(Switch, WithoutAnImageItsTextIsStillThere) {
    const Surface surface(110, 24);
    world.refuseDib = true;
    Paint(surface, {5, 2, 105, 22}, true);
    EXPECT_EQ(surface.CountOf(Sys(COLOR_BTNFACE)), 2000);
    EXPECT_EQ(world.texts.size(), 1U);
}

// Section titles.

class SectionTitle : public OwnerDrawn {
  protected:
    void Paint(const Surface& surface, const std::wstring& text, ColorValue color = 0x203040) {
        const UniqueBrush brush(CreateSolidBrush(SwapRedBlue(0x90A0B0)));
        surface.Painted([&](HDC dc) {
            PaintSectionTitle(dc, {2, 1, 202, 25}, text, icon_.Get(), brush.Get(), color, bold_.Get(), Dpi);
        });
    }
};

TEST_F(SectionTitle, HasItsIconAndItsBackground) {
    const Surface surface(204, 26);
    Paint(surface, L"Equipo");
    EXPECT_EQ(surface.At(1, 10), Untouched);
    EXPECT_EQ(surface.At(2, 1), 0x90A0B0U);
    EXPECT_EQ(surface.At(201, 24), 0x90A0B0U);
    EXPECT_EQ(surface.At(5, 12), 0x90A0B0U);
    EXPECT_EQ(surface.At(6, 5), IconColor);
    EXPECT_EQ(surface.At(21, 20), IconColor);
    EXPECT_EQ(surface.CountOf(IconColor), 256);
}

TEST_F(SectionTitle, TheTextIsBold) {
    const Surface surface(204, 26);
    Paint(surface, L"A & B", 0x405060);
    constexpr UINT flags = DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX;
    EXPECT_EQ(world.texts, (std::vector<DrawnText>{{L"A & B", {27, 1, 202, 25}, flags, 0x405060, true}}));
}

TEST_F(SectionTitle, TheTextIsReadableOnItsBackgroundAndGreyWhenDisabled) {
    struct Row {
        Contrast contrast;
        bool onWhite;
        ColorValue color;
    };
    for (const Row& row : {Row{Contrast::Off, false, 0x444444}, Row{Contrast::Off, true, 0x444444},
                           Row{Contrast::On, false, Sys(COLOR_BTNTEXT)}, Row{Contrast::On, true, 0x444444},
                           Row{Contrast::Unknown, false, 0x444444}}) {
        contrast = row.contrast;
        EXPECT_EQ(SectionTextColor(row.onWhite, true), row.color) << static_cast<int>(row.contrast) << row.onWhite;
        EXPECT_EQ(SectionTextColor(row.onWhite, false), Sys(COLOR_GRAYTEXT));
    }
}

TEST_F(SectionTitle, ShowsAtMost95Characters) {
    const Surface surface(204, 26);
    Paint(surface, std::wstring(95, L'x'));
    Paint(surface, std::wstring(96, L'x'));
    ASSERT_EQ(world.texts.size(), 2U);
    EXPECT_EQ(world.texts[0].text.size(), 95U);
    EXPECT_EQ(world.texts[1].text.size(), 95U);
}

// Items of the list of interfaces.

class InterfaceItems : public OwnerDrawn {
  protected:
    void Paint(const Surface& surface, const InterfaceItem& item, const ItemState& state) {
        surface.Painted([&](HDC dc) {
            PaintInterfaceItem(dc, {2, 1, 302, 21}, item, state, regular_.Get(), 50, 200, Dpi);
        });
    }
    const InterfaceItem wifi_ = {true, L"2", L"Wi & Fi", L"10.0.0.1"};
};

TEST_F(InterfaceItems, HaveThreeTextsInColumns) {
    const Surface surface(304, 22);
    Paint(surface, wifi_, {});
    constexpr UINT flags = DT_SINGLELINE | DT_VCENTER;
    const ColorValue color = Sys(COLOR_WINDOWTEXT);
    EXPECT_EQ(world.texts, (std::vector<DrawnText>{
                               {L"2", {23, 1, 48, 21}, flags, color, false},
                               {L"Wi & Fi", {52, 1, 198, 21}, flags | DT_NOPREFIX | DT_END_ELLIPSIS, color, false},
                               {L"10.0.0.1", {202, 1, 298, 21}, flags | DT_NOPREFIX, color, false}}));
    EXPECT_EQ(surface.At(1, 1), Untouched);
    EXPECT_EQ(surface.At(2, 1), Sys(COLOR_WINDOW));
    EXPECT_EQ(surface.At(301, 20), Sys(COLOR_WINDOW));
    EXPECT_EQ(surface.At(302, 20), Untouched);
}

TEST_F(InterfaceItems, AreGreyWhenTheListIsDisabled) {
    const Surface surface(304, 22);
    Paint(surface, wifi_, {.enabled = false});
    ASSERT_EQ(world.texts.size(), 3U);
    for (const DrawnText& text : world.texts)
        EXPECT_EQ(text.color, Sys(COLOR_GRAYTEXT));
}

TEST_F(InterfaceItems, ShowTheFocusAroundTheWholeItem) {
    const Surface plain(304, 22);
    const Surface focused(304, 22);
    Paint(plain, wifi_, {});
    Paint(focused, wifi_, {.focus = true});
    ExpectFocusRect(focused, plain, {2, 1, 302, 21});
}

TEST_F(InterfaceItems, HaveAFlatCheckBox) {
    constexpr UINT flat = DFCS_BUTTONCHECK | DFCS_FLAT;
    struct Row {
        bool checked, enabled;
        UINT state;
    };
    const std::vector<Row> rows = {{false, true, flat},
                                   {true, true, flat | DFCS_CHECKED},
                                   {false, false, flat | DFCS_INACTIVE},
                                   {true, false, flat | DFCS_CHECKED | DFCS_INACTIVE}};
    for (const Row& row : rows) {
        world.controls.clear();
        const Surface surface(304, 22);
        Paint(surface, {row.checked, L"1", L"", L""}, {.enabled = row.enabled});
        ASSERT_EQ(world.controls.size(), 1U);
        EXPECT_EQ(world.controls[0].where, (Rect{6, 4, 19, 17}));
        EXPECT_EQ(world.controls[0].type, static_cast<UINT>(DFC_BUTTON));
        EXPECT_EQ(world.controls[0].state, row.state);
        EXPECT_NE(surface.At(6, 10), Sys(COLOR_WINDOW)) << "it is drawn";
    }
    EXPECT_EQ(world.texts.size(), 4U) << "an empty text is not drawn";
}

// The dialog's background.

class Background : public OwnerDrawn {};

TEST_F(Background, HasTheAccentLineAndTheFrames) {
    PageBackground page;
    page.accent = Accent;
    page.first_tab = {2, 0, 8, 2};
    page.current_tab = {8, 0, 14, 2};
    page.last_tab = {14, 0, 22, 2};
    page.titled_frames = {{{2, 6, 22, 10}, {5, 5, 11, 8}}, {{}, {5, 5, 11, 8}}};
    page.hardware_boxes = {{}, {2, 11, 12, 15}, {}};
    page.graph_boxes = {{13, 11, 22, 15}, {}, {}};
    const Surface surface(24, 16);
    surface.Painted([&](HDC dc) { PaintPageBackground(dc, page, Dpi); });
    EXPECT_EQ(RowsOf(surface.Pixels(), {{Untouched, '.'}, {Accent, 'a'}, {0xA8A8A8, '#'}, {0xFFFFFF, 'W'}}),
              (Strings{
                  "........................",
                  "........................",
                  "..aaaaaa......aaaaaaaa..",
                  "..aaaaaa......aaaaaaaa..",
                  "........................",
                  "........................",
                  "..###......###########..",
                  "..#..................#..",
                  "..#..................#..",
                  "..####################..",
                  "........................",
                  "..##########.#########..",
                  "..#WWWWWWWW#.#.......#..",
                  "..#WWWWWWWW#.#.......#..",
                  "..##########.#########..",
                  "........................",
              }));
}

TEST_F(Background, OfAPageWithoutBoxesIsTheAccentLineAlone) {
    PageBackground page;
    page.accent = Accent;
    page.first_tab = {2, 0, 8, 2};
    page.current_tab = page.last_tab = {14, 0, 22, 2};
    page.hardware_boxes = {{}, {}, {}};
    const Surface surface(24, 8);
    surface.Painted([&](HDC dc) { PaintPageBackground(dc, page, 192); });
    EXPECT_EQ(surface.CountOf(Accent), 12 * 4);
    EXPECT_EQ(surface.CountOf(Untouched), 24 * 8 - 12 * 4);
}

}  // namespace
}  // namespace kestrane
