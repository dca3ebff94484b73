#pragma once
// The program speaks Spanish and English. Texts are written in the code in Spanish, and the Spanish text is the key of
// its English translation in one table. A new text needs one row; a text without a row stays Spanish.
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kestrane {

/// The user's choice, as stored in the settings. Any other number means automatic.
using Lang = std::uint32_t;
inline constexpr Lang LangAutomatic = 0;
inline constexpr Lang LangSpanish = 1;
inline constexpr Lang LangEnglish = 2;

/// The values of ActiveLanguage(). They differ from those of Lang.
inline constexpr std::uint32_t ActiveSpanish = 0;
inline constexpr std::uint32_t ActiveEnglish = 1;

struct TranslationRow {
    const wchar_t* spanish;
    const wchar_t* english;
};

/// All translations, grouped by area of the program. No Spanish text occurs twice.
inline constexpr std::size_t TranslationRowCount = 136;
extern const std::array<TranslationRow, TranslationRowCount> TranslationTable;

/// The current language of all texts: ActiveSpanish (initially) or ActiveEnglish.
std::uint32_t ActiveLanguage();

/// Sets the language of every text from now on; call on the UI thread only. Text already on the screen stays until its
/// owner rebuilds it.
void SetLanguage(std::uint32_t value);

/// The active language for a system with the UI language identifier `langId`: Spanish for any kind of Spanish, English
/// for everything else.
std::uint32_t LanguageFromUiLangId(std::uint16_t langId);

/// The row whose Spanish text is exactly `text`, or null.
const TranslationRow* FindTranslation(std::wstring_view text);

/// `text` in the active language: a constant, or `text` itself if Spanish is active or no row has it. `text` is
/// null-terminated and not null.
const wchar_t* Tr(const wchar_t* text);

/// The template in the active language, with every {0}, {1} ... replaced by the argument at that position. Arguments
/// are substituted in order, so a placeholder inside one is filled by later arguments, never by itself. Placeholders
/// without an argument stay; arguments without a placeholder are ignored.
std::wstring FormatText(const std::wstring& spanishTemplate, const std::vector<std::wstring>& arguments);

/// The decimal mark of the active language: a comma in Spanish, a point in English. Measured figures follow the user's
/// locale instead.
wchar_t LanguageDecimalChar();

}  // namespace kestrane
