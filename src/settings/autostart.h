#pragma once
#include <cstddef>
#include <string>
#include <string_view>

namespace kestrane {

/// The longest path that fits MAX_PATH with its end mark. Of a longer one nothing promises that it would be started.
inline constexpr std::size_t LongestRunPath = 259;

/// What stands in the Run key for a program: its full path in double quotes. Empty if the path is, or if it is too
/// long.
inline std::wstring BuildRunValue(std::wstring_view path) {
    if (path.empty() || path.size() > LongestRunPath) return {};
    return L'"' + std::wstring(path) + L'"';
}

}  // namespace kestrane
