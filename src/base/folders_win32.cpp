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

/// Makes one folder. Making it comes before asking: the answer for the root of a drive is "access denied", and somebody
/// else may make it in between.
bool CreateFolder(const std::wstring& path) {
    return CreateDirectoryW(path.c_str(), nullptr) != FALSE || IsFolder(path);
}

}  // namespace

std::wstring KnownFolder(const GUID& id, DWORD flags) {
    wchar_t* text = nullptr;
    const HRESULT result = SHGetKnownFolderPath(id, flags, nullptr, &text);
    std::wstring folder;
    if (SUCCEEDED(result)) folder = text;
    CoTaskMemFree(text);  // to be freed after a failure too; null is fine
    return folder;
}

bool CreateFolders(const std::wstring& path) {
    if (CreateFolder(path)) return true;
    const std::wstring parent = ParentPath(path);
    return !parent.empty() && CreateFolders(parent) && CreateFolder(path);
}

std::wstring TemporaryFolder() {
    std::array<wchar_t, MAX_PATH + 1> buffer{};  // the longest answer there is
    GetTempPathW(static_cast<DWORD>(buffer.size()), buffer.data());
    std::wstring folder(buffer.data());
    // The path comes from the environment, and the system does not look whether it exists.
    if (!IsFolder(folder)) throw std::runtime_error("no temporary folder");
    return folder;
}

}  // namespace kestrane
