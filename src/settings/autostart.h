#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kestrane {

/// For whom the program starts with Windows.
enum class AutostartMode : std::int32_t { Off = 0, ThisUser = 1, AllUsers = 2 };

/// The command lines of the one-shot starts that write and remove the value for all users.
inline constexpr const wchar_t* SetMachineAutostartCommand = L"--autostart-machine set";
inline constexpr const wchar_t* ClearMachineAutostartCommand = L"--autostart-machine clear";

/// The longest path that fits MAX_PATH with its terminator. Windows does not promise to start anything longer.
inline constexpr std::size_t LongestRunPath = 259;

/// The Run key's data for a program: its full path in double quotes. Empty if the path is empty or too long.
inline std::wstring BuildRunValue(std::wstring_view path) {
    if (path.empty() || path.size() > LongestRunPath) return {};
    return L'"' + std::wstring(path) + L'"';
}

}  // namespace kestrane
