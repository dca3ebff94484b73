#include "text/language_win32.h"

#include <windows.h>

namespace kestrane {

std::uint32_t SystemLanguage() {
    return LanguageFromUiLangId(GetUserDefaultUILanguage());
}

std::uint32_t ResolveLanguage(Lang language) {
    switch (language) {
        case LangSpanish:
            return ActiveSpanish;
        case LangEnglish:
            return ActiveEnglish;
        default:
            return SystemLanguage();
    }
}

}  // namespace kestrane
