#pragma once
#include <windows.h>

#include <array>
#include <string>

namespace kestrane {

/// The full path of the running file, of which 260 characters at the most with the end mark.
inline std::wstring ModulePath() {
    std::array<wchar_t, MAX_PATH> path{};
    // For a longer path the result counts the end mark too, so the text's own end is what counts.
    GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    return path.data();
}

}  // namespace kestrane
