#include "settings/task_manager_win32.h"

#include <windows.h>

#include <knownfolders.h>
#include <shellapi.h>
#include <tlhelp32.h>

#include <array>
#include <cstdio>
#include <cwchar>
#include <optional>
#include <string>
#include <utility>

#include "base/debug_log_win32.h"
#include "base/folders_win32.h"
#include "base/handles_win32.h"
#include "base/owned.h"
#include "base/paths.h"
#include "settings/task_manager.h"

namespace kestrane {
namespace {

struct StreamTraits {
    using Handle = std::FILE*;
    static constexpr Handle None() { return nullptr; }
    static void Close(Handle stream) { std::fclose(stream); }
};
using UniqueStream = Owned<StreamTraits>;

UniqueStream OpenStream(const std::wstring& path, const wchar_t* mode) {
    std::FILE* stream = nullptr;
    if (_wfopen_s(&stream, path.c_str(), mode) != 0) return {};
    return UniqueStream(stream);
}

/// Task Manager's settings folder; empty if the system has no local application data folder.
std::wstring SettingsFolder() {
    const std::wstring folder = KnownFolder(FOLDERID_LocalAppData);
    return folder.empty() ? folder : JoinPath(folder, {L"Microsoft\\Windows\\TaskManager"});
}

/// All bytes of the file; none if it cannot be opened. Nullopt if reading failed midway: a partial copy must not
/// replace the file.
std::optional<std::string> ReadBytes(const std::wstring& path) {
    std::string bytes;
    const UniqueStream file = OpenStream(path, L"rb");
    if (!file) return bytes;
    std::array<char, 4096> block;
    std::size_t length = 0;
    do {
        length = std::fread(block.data(), 1, block.size(), file.Get());
        bytes.append(block.data(), length);
    } while (length == block.size());
    if (std::ferror(file.Get()) != 0) return {};
    return bytes;
}

void ChooseStartPage(const std::wstring& folder, std::int64_t page) {
    const std::wstring path = JoinPath(folder, {L"settings.json"});
    std::optional<std::string> bytes = ReadBytes(path);
    if (!bytes) return;
    const std::string patched = PatchTaskManagerSettings(*std::move(bytes), page);
    CreateFolders(folder);
    const UniqueStream file = OpenStream(path, L"wb");
    if (!file) {
        LogDebug(L"kestrane: no se pudo escribir settings.json del Administrador de tareas\n");
        return;
    }
    std::fwrite(patched.data(), 1, patched.size(), file.Get());
}

}  // namespace

void OpenTaskManager(std::int64_t page) {
    const std::wstring folder = SettingsFolder();
    // A running instance keeps its settings in memory and writes them when it exits.
    if (!folder.empty() && !IsProcessRunning(L"Taskmgr.exe")) ChooseStartPage(folder, page);
    ShellExecuteW(nullptr, L"open", L"taskmgr.exe", nullptr, nullptr, SW_SHOWNORMAL);
}

bool IsProcessRunning(const wchar_t* exeName) {
    const UniqueSnapshot snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    if (!snapshot) return false;
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(snapshot.Get(), &entry); more; more = Process32NextW(snapshot.Get(), &entry)) {
        if (_wcsicmp(entry.szExeFile, exeName) == 0) return true;
    }
    return false;
}

}  // namespace kestrane
