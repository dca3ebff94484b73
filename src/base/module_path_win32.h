#pragma once
#include <windows.h>

#include <string>

namespace kestrane {

/// The full path of the running executable, of any length; empty on failure.
inline std::wstring ModulePath() {
    constexpr DWORD LongestPath = 32767;
    for (DWORD capacity = MAX_PATH;; capacity *= 2) {
        std::wstring path(capacity, L'\0');
        const DWORD length = GetModuleFileNameW(nullptr, path.data(), capacity);
        if (length < capacity) {
            path.resize(length);
            return path;
        }
        if (capacity > LongestPath) return {};
    }
}

}  // namespace kestrane
