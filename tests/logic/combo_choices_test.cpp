#include "dialog/combo_choices.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "dialog/control_table.h"
#include "text/translation.h"

namespace kestrane {
namespace {

using enum ComboContent;

TEST(ContentOfCombo, EveryComboBoxHasOne) {
    std::map<ComboContent, std::set<std::int32_t>> ids;
    for (const DialogRow& row : DialogRows) {
        const std::optional<ComboContent> content = ContentOfCombo(row.id);
        EXPECT_EQ(content.has_value(), row.type == ControlType::Combo) << row.id;
        if (content) ids[*content].insert(row.id);
    }
    const std::map<ComboContent, std::set<std::int32_t>> expected = {
        {Refresh, {1008, 1015, 1106, 1250}},
        {Opacity, {1108, 1231, 1254}},
        {Margin, {1109, 1232, 1255}},
        {Smoothing, {1117, 1235, 1258}},
        {Fill, {1118, 1236, 1259}},
        {FontSize, {1066, 1111, 1238, 1261}},
        {Language, {1061}},
    };
    EXPECT_EQ(ids, expected);
    EXPECT_FALSE(ContentOfCombo(IdFirstDisk));
    EXPECT_FALSE(ContentOfCombo(-1));
}

TEST(IsFontCombo, ForTheFourListsOfFonts) {
    std::set<std::int32_t> ids;
    for (const DialogRow& row : DialogRows) {
        EXPECT_EQ(IsFontCombo(row.id), row.type == ControlType::FontCombo) << row.id;
        if (IsFontCombo(row.id)) ids.insert(row.id);
    }
    EXPECT_EQ(ids, (std::set<std::int32_t>{1065, 1110, 1237, 1260}));
}

std::vector<std::wstring> TextsOf(ComboContent content) {
    std::vector<std::wstring> texts;
    for (std::size_t i = 0; i < ChoiceCount(content); ++i)
        texts.push_back(ChoiceText(content, i));
    return texts;
}

struct Texts {
    ComboContent content;
    std::vector<std::wstring> spanish;
    std::vector<std::wstring> english;
};

TEST(ChoiceText, InBothLanguages) {
    const std::vector<std::wstring> visible{L"100 % visible", L"90 % visible", L"80 % visible", L"70 % visible",
                                            L"60 % visible",  L"50 % visible", L"40 % visible", L"30 % visible"};
    const std::vector<Texts> rows = {
        {Refresh,
         {L"Ultra rápido - 0,5 s", L"Rápido - 1 s", L"Normal - 1,5 s", L"Medio - 3 s", L"Lento - 5 s",
          L"Muy lento - 10 s"},
         {L"Ultra fast - 0.5 s", L"Fast - 1 s", L"Normal - 1.5 s", L"Medium - 3 s", L"Slow - 5 s",
          L"Very slow - 10 s"}},
        {Opacity, visible, visible},
        {Smoothing, {L"Ninguno", L"Bajo", L"Medio", L"Alto"}, {L"None", L"Low", L"Medium", L"High"}},
        {Fill,
         {L"Sin relleno", L"25 %", L"50 %", L"75 %", L"100 %"},
         {L"No fill", L"25 %", L"50 %", L"75 %", L"100 %"}},
        {Language, {L"Automático", L"Español", L"English"}, {L"Automatic", L"Español", L"English"}},
    };
    for (const Texts& row : rows) {
        EXPECT_EQ(TextsOf(row.content), row.spanish);
        SetLanguage(ActiveEnglish);
        EXPECT_EQ(TextsOf(row.content), row.english);
        SetLanguage(ActiveSpanish);
    }
}

TEST(ChoiceText, CountsMarginsAndFontSizes) {
    EXPECT_EQ(ChoiceCount(Margin), 21U);
    EXPECT_EQ(ChoiceText(Margin, 0), L"0 px");
    EXPECT_EQ(ChoiceText(Margin, 20), L"20 px");
    EXPECT_EQ(ChoiceCount(FontSize), 27U);
    EXPECT_EQ(ChoiceText(FontSize, 0), L"6");
    EXPECT_EQ(ChoiceText(FontSize, 26), L"32");
}

TEST(ClampChoice, StaysWithinTheChoices) {
    for (const ComboContent content : {Refresh, Opacity, Margin, Smoothing, Fill, FontSize, Language}) {
        const std::size_t count = ChoiceCount(content);
        EXPECT_EQ(ClampChoice(content, std::numeric_limits<std::int32_t>::min()), 0U);
        EXPECT_EQ(ClampChoice(content, -1), 0U);
        EXPECT_EQ(ClampChoice(content, 0), 0U);
        EXPECT_EQ(ClampChoice(content, 2), 2U);
        EXPECT_EQ(ClampChoice(content, static_cast<std::int32_t>(count) - 1), count - 1);
        EXPECT_EQ(ClampChoice(content, static_cast<std::int32_t>(count)), count - 1);
        EXPECT_EQ(ClampChoice(content, std::numeric_limits<std::int32_t>::max()), count - 1);
    }
}

TEST(LazyCombos, RememberTheLatestChoiceOfEach) {
    LazyCombos combos;
    EXPECT_EQ(combos.Chosen(1008), -1);
    EXPECT_TRUE(combos.Ids().empty());
    combos.Choose(1250, 2);
    combos.Choose(1008, 0);
    combos.Choose(1250, 5);
    EXPECT_EQ(combos.Chosen(1250), 5);
    EXPECT_EQ(combos.Chosen(1008), 0);
    EXPECT_EQ(combos.Chosen(1015), -1);
    EXPECT_EQ(combos.Ids(), (std::vector<std::int32_t>{1250, 1008})) << "in the order of the first choice";
}

TEST(LazyCombos, AreFilledUntilTheyAreEmptied) {
    LazyCombos combos;
    EXPECT_FALSE(combos.IsFilled(1008));
    combos.MarkFilled(1008);
    combos.MarkFilled(1008);
    combos.MarkFilled(1015);
    EXPECT_TRUE(combos.IsFilled(1008));
    EXPECT_FALSE(combos.IsFilled(1106));
    combos.MarkEmpty(1106);
    combos.MarkEmpty(1008);
    EXPECT_FALSE(combos.IsFilled(1008)) << "though it was filled twice";
    EXPECT_TRUE(combos.IsFilled(1015));
}

TEST(LazyCombos, FillingAndChoosingAreIndependent) {
    LazyCombos combos;
    combos.MarkFilled(1008);
    EXPECT_EQ(combos.Chosen(1008), -1);
    combos.Choose(1015, 1);
    EXPECT_FALSE(combos.IsFilled(1015));
    combos.Choose(1008, 3);
    combos.MarkEmpty(1008);
    EXPECT_EQ(combos.Chosen(1008), 3);
}

}  // namespace
}  // namespace kestrane
