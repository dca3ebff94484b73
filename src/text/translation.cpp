#include "text/translation.h"

#include "text/number_text.h"

namespace kestrane {
namespace {

std::uint32_t activeLanguage = ActiveSpanish;

void ReplaceAll(std::wstring& text, const std::wstring& token, const std::wstring& replacement) {
    std::size_t position = 0;
    while ((position = text.find(token, position)) != std::wstring::npos) {
        text.replace(position, token.size(), replacement);
        position += replacement.size();
    }
}

}  // namespace

std::uint32_t ActiveLanguage() {
    return activeLanguage;
}

void SetLanguage(std::uint32_t value) {
    activeLanguage = value;
}

std::uint32_t LanguageFromUiLangId(std::uint16_t langId) {
    constexpr unsigned PrimaryLanguageMask = 0x3FF;
    constexpr unsigned PrimarySpanish = 10;
    return (langId & PrimaryLanguageMask) == PrimarySpanish ? ActiveSpanish : ActiveEnglish;
}

const TranslationRow* FindTranslation(std::wstring_view text) {
    for (const TranslationRow& row : TranslationTable) {
        if (text == row.spanish) return &row;
    }
    return nullptr;
}

const wchar_t* Tr(const wchar_t* text) {
    if (activeLanguage == ActiveSpanish) return text;
    const TranslationRow* row = FindTranslation(text);
    return row != nullptr ? row->english : text;
}

std::wstring FormatText(const std::wstring& spanishTemplate, const std::vector<std::wstring>& arguments) {
    std::wstring result = Tr(spanishTemplate.c_str());
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        ReplaceAll(result, L"{" + FormatInteger(i) + L"}", arguments[i]);
    }
    return result;
}

wchar_t LanguageDecimalChar() {
    return activeLanguage == ActiveSpanish ? L',' : L'.';
}

}  // namespace kestrane
