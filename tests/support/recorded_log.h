#pragma once
// Catches what the program writes to the debugger. To be included by one file of a test program.
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
