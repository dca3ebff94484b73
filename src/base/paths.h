#pragma once
// Paths of Windows as text. Nothing here asks whether a file or folder exists.
#include <initializer_list>
#include <string>
#include <string_view>

namespace kestrane {

/// `folder` and below it one name after the other: JoinPath(L"C:\\Users", {L"Ana", L"a.txt"}) is "C:\Users\Ana\a.txt".
std::wstring JoinPath(std::wstring folder, std::initializer_list<std::wstring_view> names);

/// The folder that holds `path`, as "C:\Users" for "C:\Users\Ana\"; nothing for the root of a drive or of a network
/// share, or for a bare name.
std::wstring ParentPath(std::wstring_view path);

}  // namespace kestrane
