#pragma once
#include <windows.h>

#include <string>

namespace kestrane {

/// The full path of the running file, however long it is; empty if the system does not tell.
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
