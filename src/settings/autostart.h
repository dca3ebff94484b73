#pragma once
#include <cstddef>
#include <string>
#include <string_view>

namespace kestrane {

/// The longest path that fits MAX_PATH with its terminator. Windows does not promise to start anything longer.
inline constexpr std::size_t LongestRunPath = 259;

/// The Run key's data for a program: its full path in double quotes. Empty if the path is empty or too long.
inline std::wstring BuildRunValue(std::wstring_view path) {
    if (path.empty() || path.size() > LongestRunPath) return {};
    return L'"' + std::wstring(path) + L'"';
}

}  // namespace kestrane
