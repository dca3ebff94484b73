#pragma once
// A folder of the test's own in place of the roaming application data. Include in one file of a test program only.
#include <windows.h>
// <windows.h> comes first.
#include <objbase.h>
#include <shlobj.h>

#include <cstring>
#include <string>

namespace kestrane {

inline std::wstring roamingFolder;

}  // namespace kestrane

extern "C" {
// The result is freed by CoTaskMemFree.
HRESULT WINAPI SHGetKnownFolderPath(REFKNOWNFOLDERID /*folder*/, DWORD /*flags*/, HANDLE /*token*/, PWSTR* path) {
    const std::size_t bytes = (kestrane::roamingFolder.size() + 1) * sizeof(wchar_t);
    *path = static_cast<PWSTR>(CoTaskMemAlloc(bytes));
    std::memcpy(*path, kestrane::roamingFolder.c_str(), bytes);
    return S_OK;
}
}
