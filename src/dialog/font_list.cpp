#include "dialog/font_list.h"

#include <algorithm>

#include "settings/ini_values.h"
#include "text/text_util.h"

namespace kestrane {

void AddFontName(std::vector<std::wstring>& names, std::wstring_view name) {
    if (!name.starts_with(L'@')) names.emplace_back(name);
}

void SortFontNames(std::vector<std::wstring>& names) {
    // Names that differ only in case are ordered, too, so that repeated names are neighbours.
    std::ranges::sort(names, [](const std::wstring& a, const std::wstring& b) {
        if (EqualIgnoringCase(a, b)) return a < b;
        return LessIgnoringCase(a, b);
    });
    names.erase(std::unique(names.begin(), names.end()), names.end());
}

bool IsStorableFontName(std::wstring_view name) {
    return ParseFontName(name).has_value();
}

}  // namespace kestrane
