#pragma once
// The shell keeps a registry entry for each notification icon that it has seen, and shows the icon on the taskbar
// instead of the overflow area if that entry says so. These are the rules for finding our own entries.
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kestrane {

/// Whether a registry value of this type and size can be a program's path: text, expandable or not, of at least one
/// character.
bool HoldsPath(std::uint32_t type, std::uint32_t sizeBytes);

/// The part of a value's characters before its first zero; all of them if there is none.
std::wstring TextBeforeZero(std::wstring_view characters);

/// The id of a known folder, as bytes in the order of its text.
using FolderId = std::array<std::uint8_t, 16>;

/// A path as the shell stores it for a program in such a folder: {6D809377-6AF0-444B-8957-A3773F02200E}\App\app.exe
struct FolderPath {
    FolderId folder{};
    std::wstring_view rest;  // after the folder and the backslash
};

/// Nullopt for any other path. `rest` points into `path`.
std::optional<FolderPath> ParseFolderPath(std::wstring_view path);

/// Whether the entry belongs to this program: the same path, ignoring case. An empty path never matches.
bool IsOwnEntry(std::wstring_view entryPath, std::wstring_view ownPath);

/// The debug line at the end.
std::wstring PromotionReport(std::int32_t count);

}  // namespace kestrane
