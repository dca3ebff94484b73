#pragma once
// The names of the installed fonts, as the settings dialog lists them.
#include <string>
#include <string_view>
#include <vector>

namespace kestrane {

/// Adds a font's name, unless it begins with "@": those fonts are for vertical text.
void AddFontName(std::vector<std::wstring>& names, std::wstring_view name);

/// Sorts without regard to case and removes repeated names; names that differ only in case stay.
void SortFontNames(std::vector<std::wstring>& names);

/// True for a name that the settings can hold.
bool IsStorableFontName(std::wstring_view name);

}  // namespace kestrane
