#pragma once
// Captures the program's debug lines. Include in one file of a test program only.
#include <windows.h>

#include <string>
#include <vector>

namespace kestrane {

inline std::vector<std::wstring> debugLines;

inline void WINAPI RecordDebugLine(const wchar_t* line) {
    debugLines.emplace_back(line);
}

}  // namespace kestrane

extern "C" {
decltype(&OutputDebugStringW) __imp_OutputDebugStringW = &kestrane::RecordDebugLine;
}
