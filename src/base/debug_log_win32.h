#pragma once
// Debugger output: one level, no log file. Texts are Spanish without accents, begin with "kestrane: ", end in a line
// feed, and are never translated.
#include <windows.h>

namespace kestrane {

inline void LogDebug(const wchar_t* line) {
    OutputDebugStringW(line);
}

}  // namespace kestrane
