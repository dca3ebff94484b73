#pragma once
// The shell keeps a registry entry for each notification icon that it has seen, and shows the icon on the taskbar
// itself, not in its overflow area, if that entry says so. These are the rules for our own entries among them.
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kestrane {

/// Whether a registry value can be the path of a program: text, expandable or not, of at least one character.
/// `type` and `sizeBytes` are those of the value.
bool HoldsPath(std::uint32_t type, std::uint32_t sizeBytes);

/// The part of a value's characters before its first zero; all of them if there is none.
std::wstring TextBeforeZero(std::wstring_view characters);

/// What the system calls a folder that has another place on each machine; in its text as bytes from left to right.
using FolderId = std::array<std::uint8_t, 16>;

/// A path as the shell notes it for a program in such a folder: {6D809377-6AF0-444B-8957-A3773F02200E}\App\app.exe
struct FolderPath {
    FolderId folder{};
    std::wstring_view rest;  // below the folder, behind the backslash
};

/// Nothing for any other path. `rest` is a part of `path`.
std::optional<FolderPath> ParseFolderPath(std::wstring_view path);

/// Whether the entry is one of this program: the same path in whatever case of letters. An empty path is nobody's.
bool IsOwnEntry(std::wstring_view entryPath, std::wstring_view ownPath);

/// What the debugger is told at the end.
std::wstring PromotionReport(std::int32_t count);

}  // namespace kestrane
