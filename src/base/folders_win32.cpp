#include "base/folders_win32.h"

#include <objbase.h>
#include <shlobj.h>

#include <array>
#include <stdexcept>

#include "base/paths.h"

namespace kestrane {
namespace {

bool IsFolder(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

/// Creates one folder. Any failure is followed by a check whether it exists: for the root of a drive the error is
/// "access denied", and another process may have created it in between.
bool CreateFolder(const std::wstring& path) {
    return CreateDirectoryW(path.c_str(), nullptr) != FALSE || IsFolder(path);
}

}  // namespace

std::wstring KnownFolder(const GUID& id, DWORD flags) {
    wchar_t* text = nullptr;
    const HRESULT result = SHGetKnownFolderPath(id, flags, nullptr, &text);
    std::wstring folder;
    if (SUCCEEDED(result)) folder = text;
    CoTaskMemFree(text);  // must be freed after a failure too; null is allowed
    return folder;
}

bool CreateFolders(const std::wstring& path) {
    if (CreateFolder(path)) return true;
    const std::wstring parent = ParentPath(path);
    return !parent.empty() && CreateFolders(parent) && CreateFolder(path);
}

std::wstring TemporaryFolder() {
    std::array<wchar_t, MAX_PATH + 1> buffer{};  // the longest possible result
    GetTempPathW(static_cast<DWORD>(buffer.size()), buffer.data());
    std::wstring folder(buffer.data());
    // The path comes from the environment, and the system does not check that it exists.
    if (!IsFolder(folder)) throw std::runtime_error("no temporary folder");
    return folder;
}

}  // namespace kestrane
