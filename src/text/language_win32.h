#pragma once
// The one question about language that the system answers.
#include <cstdint>

#include "text/translation.h"

namespace kestrane {

/// ActiveSpanish if the user's Windows speaks Spanish, of whatever country, otherwise ActiveEnglish.
std::uint32_t SystemLanguage();

/// The active language for the user's choice. Any number that names no language means automatic.
std::uint32_t ResolveLanguage(Lang language);

}  // namespace kestrane
