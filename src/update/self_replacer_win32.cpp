#include "update/self_replacer_win32.h"

#include <windows.h>

#include "base/debug_log_win32.h"
#include "base/handles_win32.h"
#include "update/self_update.h"
#include "update/update_texts.h"

namespace kestrane {
namespace {

/// It has the attributes of the executable that it was. While it is read-only it can be neither deleted nor replaced,
/// and no later update would succeed.
void DeleteOldFile(const std::wstring& executable) {
    const std::wstring oldFile = OldFilePath(executable);
    SetFileAttributesW(oldFile.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileW(oldFile.c_str());
}

}  // namespace

std::wstring CheckSelfUpdatePossible(const std::wstring& executable) {
    if (IsDevelopmentCopy(executable)) return DevelopmentCopyText();
    return ProbeFolderWritable(FolderOfExecutable(executable)) ? std::wstring() : FolderNotWritableText();
}

bool ProbeFolderWritable(const std::wstring& folder) {
    const std::wstring path = WriteProbePath(folder, GetCurrentProcessId(), GetTickCount64());
    const UniqueFile probe(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                       FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    return static_cast<bool>(probe);
}

// Between the two renames no file has the executable's name, and the running one stands under OldFilePath. No
// documented call swaps two names at once, and a running file can be renamed but not replaced; so nothing else happens
// in between.
bool ReplaceRunningExecutable(const std::wstring& executable, std::uint32_t& code) {
    const std::wstring newFile = NewFilePath(executable);
    const std::wstring oldFile = OldFilePath(executable);
    code = ERROR_SUCCESS;
    DeleteOldFile(executable);
    if (!MoveFileExW(executable.c_str(), oldFile.c_str(), MOVEFILE_REPLACE_EXISTING)) {
        code = GetLastError();
        return false;
    }
    if (MoveFileExW(newFile.c_str(), executable.c_str(), 0)) return true;
    code = GetLastError();
    MoveFileExW(oldFile.c_str(), executable.c_str(), 0);
    return false;
}

bool StartNewVersion(const std::wstring& executable) {
    std::wstring commandLine = RestartCommandLine(executable);  // CreateProcessW may write into it
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(executable.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &started)) {
        LogDebug(L"kestrane: no se pudo arrancar la version nueva\n");
        return false;
    }
    CloseHandle(started.hThread);
    CloseHandle(started.hProcess);
    return true;
}

void CleanUpdateLeftovers(const std::wstring& executable) {
    if (executable.empty()) return;  // the names alone would be files of the current folder
    DeleteOldFile(executable);
    DeleteNewFile(executable);
}

void DeleteNewFile(const std::wstring& executable) {
    DeleteFileW(NewFilePath(executable).c_str());
}

}  // namespace kestrane
