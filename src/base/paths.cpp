#include "base/paths.h"

#include <algorithm>
#include <cstddef>

namespace kestrane {
namespace {

constexpr std::wstring_view Separators = L"\\/";

bool EndsInSeparator(std::wstring_view path) {
    return !path.empty() && Separators.find(path.back()) != std::wstring_view::npos;
}

/// The end of the name at `start` and of the separators after it.
std::size_t EndOfName(std::wstring_view path, std::size_t start) {
    const std::size_t end = path.find_first_of(Separators, start);
    return std::min(path.find_first_not_of(Separators, end), path.size());
}

/// The length of the path's root, which has no parent: "C:\", "\", "\\server\share\" or "\\?\C:\".
std::size_t RootLength(std::wstring_view path) {
    if (path.starts_with(L"\\\\?\\UNC\\")) return EndOfName(path, EndOfName(path, 8));
    if (path.starts_with(L"\\\\?\\")) return EndOfName(path, 4);
    if (path.starts_with(L"\\\\")) return EndOfName(path, EndOfName(path, 2));
    const std::size_t drive = path.size() >= 2 && path[1] == L':' ? 2 : 0;
    return std::min(path.find_first_not_of(Separators, drive), path.size());
}

}  // namespace

std::wstring JoinPath(std::wstring folder, std::initializer_list<std::wstring_view> names) {
    for (const std::wstring_view name : names) {
        if (!folder.empty() && !EndsInSeparator(folder)) folder += L'\\';
        folder += name;
    }
    return folder;
}

std::wstring ParentPath(std::wstring_view path) {
    const std::size_t root = RootLength(path);
    std::wstring_view rest = path.substr(root);
    while (EndsInSeparator(rest))
        rest.remove_suffix(1);
    if (rest.empty()) return {};
    rest = rest.substr(0, rest.find_last_of(Separators) + 1);  // npos + 1 is 0
    while (EndsInSeparator(rest))
        rest.remove_suffix(1);
    return std::wstring(path.substr(0, root + rest.size()));
}

}  // namespace kestrane
