#include "settings/migration_win32.h"

#include "base/debug_log_win32.h"
#include "base/folders_win32.h"
#include "base/handles_win32.h"
#include "base/paths.h"
#include "settings/autostart_win32.h"
#include "settings/ini_file_win32.h"

namespace kestrane {
namespace {

constexpr const wchar_t* FormerName = L"orvalite";
constexpr const wchar_t* FormerFile = L"orvalite.ini";

/// The former folder lies beside the present one.
std::wstring FormerPath(const std::wstring& iniPath) {
    return JoinPath(ParentPath(ParentPath(iniPath)), {FormerName, FormerFile});
}

/// False also for a file that is there and cannot be asked about, for lack of rights say.
bool IsMissing(const std::wstring& path) {
    if (GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES) return false;
    const DWORD error = GetLastError();
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

/// A copy has the attributes of the original, and every later change of the settings would fail.
void LetBeWritten(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_READONLY) == 0) return;
    SetFileAttributesW(path.c_str(), attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
}

/// Onto the disk, before the file gets a name that counts.
void Flush(const std::wstring& path) {
    const UniqueFile file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    if (file) FlushFileBuffers(file.Get());
}

/// Never onto a file that is there. What has been copied counts, even if it cannot be made writable or flushed.
bool CopyNew(const std::wstring& from, const std::wstring& to) {
    if (!CopyFileW(from.c_str(), to.c_str(), TRUE)) return false;
    LetBeWritten(to);
    Flush(to);
    return true;
}

void Discard(const std::wstring& path) {
    LetBeWritten(path);
    DeleteFileW(path.c_str());
}

}  // namespace

void MigrateFormerInstall() {
    const std::wstring iniPath = IniPath();
    if (CopyFormerSettings(FormerPath(iniPath), iniPath)) {
        LogDebug(L"kestrane: ajustes copiados de la carpeta del nombre anterior\n");
    }
    MigrateRunValue(HKEY_CURRENT_USER);
    MigrateRunValue(HKEY_LOCAL_MACHINE);
}

bool CopyFormerSettings(const std::wstring& formerPath, const std::wstring& iniPath) {
    if (!IsMissing(iniPath) || IsMissing(formerPath)) return false;
    CreateFolders(ParentPath(iniPath));
    // Settings that are there are never replaced, so half a copy would stay for good: the name comes last.
    const std::wstring unfinished = iniPath + L".new";
    Discard(unfinished);
    if (CopyNew(formerPath, unfinished) && MoveFileExW(unfinished.c_str(), iniPath.c_str(), MOVEFILE_WRITE_THROUGH)) {
        return true;
    }
    Discard(unfinished);
    // A new file cannot be renamed while a virus scanner reads it, and the first save of this run would hide the former
    // settings for good.
    return CopyNew(formerPath, iniPath);
}

void MigrateRunValue(HKEY root) {
    HKEY opened = nullptr;
    if (RegOpenKeyExW(root, RunKey, 0, KEY_QUERY_VALUE | KEY_SET_VALUE, &opened) != ERROR_SUCCESS) return;
    const UniqueRegistryKey key(opened);
    if (RegQueryValueExW(key.Get(), FormerName, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) return;
    if (WriteRunValue(root, true) == ERROR_SUCCESS) RegDeleteValueW(key.Get(), FormerName);
}

}  // namespace kestrane
