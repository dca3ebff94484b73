#pragma once
// The program speaks Spanish and English. Every text stands in the code in Spanish, and that Spanish text is the key of
// its English translation in one table. A new text costs one row; a text without a row stays Spanish.
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kestrane {

/// What the user has chosen, as the settings keep it. Any other number means automatic.
using Lang = std::uint32_t;
inline constexpr Lang LangAutomatic = 0;
inline constexpr Lang LangSpanish = 1;
inline constexpr Lang LangEnglish = 2;

/// The values of ActiveLanguage(). Note that they differ from those of Lang.
inline constexpr std::uint32_t ActiveSpanish = 0;
inline constexpr std::uint32_t ActiveEnglish = 1;

struct TranslationRow {
    const wchar_t* spanish;
    const wchar_t* english;
};

/// All translations, grouped by the areas of the program. No Spanish text stands in it twice.
inline constexpr std::size_t TranslationRowCount = 136;
extern const std::array<TranslationRow, TranslationRowCount> TranslationTable;

/// The language in which texts are shown now: ActiveSpanish (at first) or ActiveEnglish.
std::uint32_t ActiveLanguage();

/// Chooses the language of every text from now on; only the user-interface thread may call this. What is on the screen
/// stays as it is until its owner builds it again.
void SetLanguage(std::uint32_t value);

/// The active language for a system whose user interface has the language identifier `langId`: Spanish for Spanish of
/// any country, English for everybody else.
std::uint32_t LanguageFromUiLangId(std::uint16_t langId);

/// The row whose Spanish text is exactly `text`, or null.
const TranslationRow* FindTranslation(std::wstring_view text);

/// `text` in the active language: a constant, or `text` itself when Spanish is active or no row has it. `text` is not
/// null and ends in a zero character.
const wchar_t* Tr(const wchar_t* text);

/// The template in the active language, each {0}, {1} ... replaced by the argument of that position, wherever and as
/// often as it stands. Arguments go in one after the other, so a placeholder inside an earlier argument is filled by a
/// later one, but none is filled by itself. Placeholders without an argument stay; arguments without a placeholder
/// drop.
std::wstring FormatText(const std::wstring& spanishTemplate, const std::vector<std::wstring>& arguments);

/// The decimal mark of the active language: a comma in Spanish, a point in English. Only sizes of memory use it; other
/// figures follow the user's locale.
wchar_t LanguageDecimalChar();

}  // namespace kestrane
