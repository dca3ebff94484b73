#pragma once
// Choosing the display language, with the system's for automatic.
#include <cstdint>

#include "text/translation.h"

namespace kestrane {

/// ActiveSpanish if the user's Windows display language is any Spanish, otherwise ActiveEnglish.
std::uint32_t SystemLanguage();

/// The active language for the user's choice. Any other number means automatic.
std::uint32_t ResolveLanguage(Lang language);

}  // namespace kestrane
