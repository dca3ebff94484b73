#include "text/translation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kestrane {
namespace {

class TranslationTest : public testing::Test {
  protected:
    ~TranslationTest() override { SetLanguage(ActiveSpanish); }
};

// Every {digit} in a text, sorted, with repetitions.
std::multiset<wchar_t> Placeholders(std::wstring_view text) {
    std::multiset<wchar_t> found;
    for (std::size_t i = 0; i + 2 < text.size(); ++i) {
        if (text[i] == L'{' && text[i + 2] == L'}') found.insert(text[i + 1]);
    }
    return found;
}

std::ptrdiff_t CountOf(std::wstring_view text, wchar_t character) {
    return std::ranges::count(text, character);
}

TEST_F(TranslationTest, EveryRowIsWhole) {
    for (const TranslationRow& row : TranslationTable) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(row.spanish)));
        EXPECT_NE(std::wstring_view(row.spanish), L"");
        EXPECT_NE(std::wstring_view(row.english), L"");
        EXPECT_EQ(Placeholders(row.spanish), Placeholders(row.english));
        EXPECT_EQ(CountOf(row.spanish, L'\n'), CountOf(row.english, L'\n'));
        EXPECT_EQ(CountOf(row.spanish, L'{'), std::ssize(Placeholders(row.spanish)));
        EXPECT_EQ(CountOf(row.spanish, L'\\'), 0);
        EXPECT_EQ(CountOf(row.english, L'\\'), 0);
    }
}

TEST_F(TranslationTest, NoSpanishTextStandsTwice) {
    std::set<std::wstring_view> keys;
    for (const TranslationRow& row : TranslationTable) {
        EXPECT_TRUE(keys.insert(row.spanish).second) << testing::PrintToString(std::wstring(row.spanish));
    }
}

// The English column is plain ASCII apart from the middle dot and the curly quotes, so a forgotten translation of a
// word with an accent cannot hide.
TEST_F(TranslationTest, EnglishHasNoAccents) {
    for (const TranslationRow& row : TranslationTable) {
        for (const wchar_t character : std::wstring_view(row.english)) {
            const bool allowed = character < 0x7F || character == 0xB7 || character == 0x201C || character == 0x201D;
            EXPECT_TRUE(allowed) << testing::PrintToString(std::wstring(row.english));
        }
    }
}

TEST_F(TranslationTest, SpanishHasTheCharactersThatItNeedsAndNoOthers) {
    const std::wstring_view allowed = L"\u00E1\u00ED\u00F3\u00FA\u00F1\u00BA\u00B7\u00AB\u00BB";
    for (const TranslationRow& row : TranslationTable) {
        for (const wchar_t character : std::wstring_view(row.spanish)) {
            const bool known = character == L'\n' || (character >= 0x20 && character < 0x7F) ||
                               allowed.find(character) != std::wstring_view::npos;
            EXPECT_TRUE(known) << testing::PrintToString(std::wstring(row.spanish));
        }
    }
}

struct RowCase {
    const wchar_t* spanish;
    const wchar_t* english;
};

// Accents are code points here, so that the encoding of the table's file is tested too.
constexpr RowCase RowCases[] = {
    {L"Rendimiento", L"Performance"},
    {L"Fijar gr\u00E1fica de CPU", L"Pin CPU graph"},
    {L"Salir", L"Exit"},
    {L"Nueva versi\u00F3n {0} disponible...", L"New version {0} available..."},
    {L"kestrane {0}\n\nMonitor de CPU, disco, memoria y red en la bandeja.\nClic derecho sobre un icono para abrir los "
     L"ajustes.\nClic en el icono de CPU, disco o red: su gr\u00E1fica.\nCtrl+Shift+B: gr\u00E1fica de red.\n\n"
     L"Ajustes: {1}\n\nIconos: Fugue Icons de Marlo Tesshin (CC BY 3.0).",
     L"kestrane {0}\n\nCPU, disk, memory and network monitor for the tray.\nRight-click an icon to open the settings.\n"
     L"Click the CPU, disk or network icon: its graph.\nCtrl+Shift+B: network graph.\n\nSettings: {1}\n\nIcons: Fugue "
     L"Icons by Marlo Tesshin (CC BY 3.0)."},
    // Two spaces in the middle, a middle dot, and L and E against R and W.
    {L"Disco  L: {0} % \u00B7 {1}  E: {2} % \u00B7 {3}", L"Disk  R: {0} % \u00B7 {1}  W: {2} % \u00B7 {3}"},
    {L"{0}\nBajada: {1}  Subida: {2}", L"{0}\nDown: {1}  Up: {2}"},
    // The placeholder moves.
    {L"hace {0} s", L"{0} s ago"},
    {L"(M\u00E1x n\u00FAcleo: {0})", L"(Max core: {0})"},
    // Starts with a dot in one row and with a space in another: both are appended to other text.
    {L"\u00B7 memoria soldada", L"\u00B7 soldered memory"},
    {L" \u00B7 m\u00E1ximo {0} GB", L" \u00B7 up to {0} GB"},
    {L"vac\u00EDa", L"empty"},
    // A comma on one side, a point on the other.
    {L"Ultra r\u00E1pido - 0,5 s", L"Ultra fast - 0.5 s"},
    // Equal on both sides.
    {L"{0} % visible", L"{0} % visible"},
    {L", negrita", L", bold"},
    {L"N\u00BA", L"No."},
    // Guillemets against curly quotes.
    {L"Con \u00ABTodas las conexiones\u00BB marcada no se muestra el resto. Desm\u00E1rcala para elegir una o varias "
     L"(se suma su tr\u00E1fico).",
     L"With \u201CAll connections\u201D ticked the rest are hidden. Untick it to choose one or several (their traffic "
     L"is added up)."},
    // Straight quotes inside.
    {L"No se pudo cambiar el autoarranque. Para \"Todos los usuarios\" hace falta aceptar la elevaci\u00F3n de "
     L"permisos.",
     L"Start with Windows could not be changed. \"For all users\" needs you to accept the elevation prompt."},
    {L"No se pudo poner la versi\u00F3n nueva en lugar de la actual (c\u00F3digo {0}).\n\nkestrane sigue con la "
     L"versi\u00F3n que ten\u00EDas.",
     L"The new version could not replace the current one (code {0}).\n\nkestrane stays on the version you had."},
    {L"El fichero descargado no coincide con el publicado (tama\u00F1o o huella). No se ha cambiado nada; prueba "
     L"m\u00E1s "
     L"tarde.",
     L"The downloaded file does not match the published one (size or fingerprint). Nothing was changed; try again "
     L"later."},
};

TEST_F(TranslationTest, RowsReadAsTheyShould) {
    for (const RowCase& expected : RowCases) {
        const TranslationRow* row = FindTranslation(expected.spanish);
        ASSERT_NE(row, nullptr) << testing::PrintToString(std::wstring(expected.spanish));
        EXPECT_EQ(std::wstring(row->english), expected.english);
    }
}

TEST_F(TranslationTest, FindsEveryRowByItsSpanishText) {
    for (const TranslationRow& row : TranslationTable) {
        EXPECT_EQ(FindTranslation(std::wstring(row.spanish)), &row);
    }
}

TEST_F(TranslationTest, FindsOnlyWholeTexts) {
    for (const wchar_t* text : {L"", L"salir", L"SALIR", L"Sali", L"Salir ", L" Salir", L"Exit"}) {
        EXPECT_EQ(FindTranslation(text), nullptr) << testing::PrintToString(std::wstring(text));
    }
    EXPECT_EQ(FindTranslation(std::wstring(L"Salir\0", 6)), nullptr);
}

TEST_F(TranslationTest, StartsInSpanish) {
    EXPECT_EQ(ActiveLanguage(), 0U);
}

TEST_F(TranslationTest, SpanishGivesTheSamePointer) {
    const std::wstring text = L"Salir";
    EXPECT_EQ(Tr(text.c_str()), text.c_str());
}

TEST_F(TranslationTest, EnglishGivesTheOtherSideOfTheRow) {
    SetLanguage(ActiveEnglish);
    EXPECT_EQ(ActiveLanguage(), 1U);
    for (const TranslationRow& row : TranslationTable) {
        EXPECT_EQ(Tr(row.spanish), row.english);
    }
    EXPECT_EQ(std::wstring(Tr(L"Salir")), L"Exit");
}

TEST_F(TranslationTest, UnknownTextGivesTheSamePointerInBothLanguages) {
    for (const std::uint32_t language : {ActiveSpanish, ActiveEnglish}) {
        SetLanguage(language);
        for (const std::wstring text : {L"salir", L"", L"Performance", L"CPU", L"Espa\u00F1ol", L"English"}) {
            EXPECT_EQ(Tr(text.c_str()), text.c_str()) << testing::PrintToString(text);
        }
    }
}

TEST_F(TranslationTest, AChangeTakesEffectAtTheNextText) {
    SetLanguage(ActiveEnglish);
    EXPECT_EQ(std::wstring(Tr(L"Disco")), L"Disk");
    SetLanguage(ActiveSpanish);
    EXPECT_EQ(std::wstring(Tr(L"Disco")), L"Disco");
}

struct FormatCase {
    const wchar_t* text;
    std::vector<std::wstring> arguments;
    const wchar_t* expected;
};

TEST_F(TranslationTest, FormatTextFillsPlaceholders) {
    const FormatCase cases[] = {
        {L"{1} {0}", {L"a", L"b"}, L"b a"},
        {L"{0} {0}", {L"a"}, L"a a"},
        {L"{0}{0}{0}", {L"xy"}, L"xyxyxy"},
        {L"{0}", {L"{0}"}, L"{0}"},                  // an argument is not searched for its own placeholder
        {L"{0}{0}", {L"a{0}b"}, L"a{0}ba{0}b"},      // nor if it occurs twice
        {L"{0} {1}", {L"{1}", L"x"}, L"x x"},        // but a later argument sees the earlier ones
        {L"{0} {1}", {L"x", L"{0}"}, L"x {0}"},      // and an earlier placeholder is not filled again
        {L"{{0}0}", {L""}, L"{0}"},                  // text before a replacement is not searched again
        {L"{0}", {}, L"{0}"},                        // a placeholder without an argument stays
        {L"{0} {1} {2}", {L"a", L"b"}, L"a b {2}"},  //
        {L"nada", {L"a"}, L"nada"},                  // an argument without a placeholder is ignored
        {L"", {L"a"}, L""},                          //
        {L"{0}", {L""}, L""},                        //
        {L"{ 0} {00} {0 } {} {a}", {L"x"}, L"{ 0} {00} {0 } {} {a}"},
        {L"{10}{1}", {L"0", L"1", L"2", L"3", L"4", L"5", L"6", L"7", L"8", L"9", L"ten"}, L"ten1"},
    };
    for (const std::uint32_t language : {ActiveSpanish, ActiveEnglish}) {
        SetLanguage(language);
        for (const FormatCase& row : cases) {
            EXPECT_EQ(FormatText(row.text, row.arguments), row.expected)
                << testing::PrintToString(std::wstring(row.text));
        }
    }
}

TEST_F(TranslationTest, FormatTextTranslatesTheTemplateFirst) {
    EXPECT_EQ(FormatText(L"Disco {0}", {L"3"}), L"Disco 3");
    EXPECT_EQ(FormatText(L"hace {0} s", {L"3"}), L"hace 3 s");
    SetLanguage(ActiveEnglish);
    EXPECT_EQ(FormatText(L"Disco {0}", {L"3"}), L"Disk 3");
    EXPECT_EQ(FormatText(L"hace {0} s", {L"3"}), L"3 s ago");
    EXPECT_EQ(FormatText(L"Salir", {}), L"Exit");
}

TEST_F(TranslationTest, FormatTextDoesNotTranslateArguments) {
    SetLanguage(ActiveEnglish);
    EXPECT_EQ(FormatText(L"Disco {0}", {L"Salir"}), L"Disk Salir");
}

TEST_F(TranslationTest, DecimalMarkFollowsTheLanguage) {
    EXPECT_EQ(LanguageDecimalChar(), L',');
    SetLanguage(ActiveEnglish);
    EXPECT_EQ(LanguageDecimalChar(), L'.');
}

TEST(LanguageFromUiLangId, IsSpanishForSpanishOfAnyCountry) {
    struct {
        std::uint16_t langId;
        std::uint32_t expected;
    } const cases[] = {
        {0x040A, 0},  // Spain, traditional sort
        {0x0C0A, 0},  // Spain, modern sort
        {0x080A, 0},  // Mexico
        {0x540A, 0},  // United States
        {0xFC0A, 0},  // the highest sublanguage
        {0x000A, 0},  // neutral
        {0x0403, 1},  // Catalan
        {0x0456, 1},  // Galician
        {0x042D, 1},  // Basque
        {0x0416, 1},  // Portuguese
        {0x040C, 1},  // French
        {0x0409, 1},  // English
        {0x0000, 1},  // none
        {0x020A, 1},  // 0x20A in the ten bits: another language, although the low byte is Spanish
    };
    for (const auto& row : cases) {
        EXPECT_EQ(LanguageFromUiLangId(row.langId), row.expected) << std::hex << row.langId;
    }
}

}  // namespace
}  // namespace kestrane
