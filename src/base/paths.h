#pragma once
// Windows paths as text. Nothing here checks whether a file or folder exists.
#include <initializer_list>
#include <string>
#include <string_view>

namespace kestrane {

/// `folder` with each name appended in turn: JoinPath(L"C:\\Users", {L"Ana", L"a.txt"}) is "C:\Users\Ana\a.txt".
std::wstring JoinPath(std::wstring folder, std::initializer_list<std::wstring_view> names);

/// The parent folder of `path`, such as "C:\Users" for "C:\Users\Ana\"; empty for the root of a drive or network share,
/// and for a bare name.
std::wstring ParentPath(std::wstring_view path);

}  // namespace kestrane
