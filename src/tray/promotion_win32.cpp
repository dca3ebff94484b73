#include "tray/promotion_win32.h"

#include <windows.h>

#include <shlobj.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/debug_log_win32.h"
#include "base/folders_win32.h"
#include "base/handles_win32.h"
#include "base/module_path_win32.h"
#include "base/paths.h"
#include "tray/promotion.h"

namespace kestrane {
namespace {

constexpr wchar_t EntriesKey[] = L"Control Panel\\NotifyIconSettings";
constexpr wchar_t PathValue[] = L"ExecutablePath";
constexpr wchar_t PromotedValue[] = L"IsPromoted";
constexpr std::size_t SubkeyNameCapacity = 256;

UniqueRegistryKey OpenKey(HKEY parent, const wchar_t* name, REGSAM access) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(parent, name, 0, access, &key) != ERROR_SUCCESS) return {};
    return UniqueRegistryKey(key);
}

/// Empty if the entry has no program path.
std::wstring ReadEntryPath(HKEY entry) {
    DWORD type = 0;
    DWORD size = 0;
    if (RegQueryValueExW(entry, PathValue, nullptr, &type, nullptr, &size) != ERROR_SUCCESS) return {};
    if (!HoldsPath(type, size)) return {};
    // The registry guarantees neither a terminator nor whole characters, so reserve one more, all zeroed.
    std::vector<wchar_t> text(size / sizeof(wchar_t) + 1);
    auto* const bytes = reinterpret_cast<BYTE*>(text.data());
    if (RegQueryValueExW(entry, PathValue, nullptr, nullptr, bytes, &size) != ERROR_SUCCESS) return {};
    return TextBeforeZero({text.data(), text.size()});
}

/// The first three fields of a GUID are numbers, written in text with the highest byte first.
GUID GuidOf(const FolderId& id) {
    const auto pair = [&id](std::size_t at) { return static_cast<unsigned short>(id[at] << 8 | id[at + 1]); };
    GUID guid{static_cast<unsigned long>(pair(0)) << 16 | pair(2), pair(4), pair(6), {}};
    std::copy_n(&id[8], sizeof guid.Data4, guid.Data4);
    return guid;
}

/// Expands a leading known folder; any other path, or one in an unknown folder, stays as it is.
std::wstring ExpandKnownFolder(const std::wstring& path) {
    const std::optional<FolderPath> parsed = ParseFolderPath(path);
    if (!parsed) return path;
    const std::wstring folder = KnownFolder(GuidOf(parsed->folder), KF_FLAG_DONT_VERIFY);
    return folder.empty() ? path : JoinPath(folder, {parsed->rest});
}

/// An entry without this value has not been decided by the user or an earlier run.
bool IsUndecided(HKEY entry) {
    return RegQueryValueExW(entry, PromotedValue, nullptr, nullptr, nullptr, nullptr) == ERROR_FILE_NOT_FOUND;
}

bool Promote(HKEY entry) {
    const DWORD promoted = 1;
    return RegSetValueExW(entry, PromotedValue, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&promoted),
                          sizeof promoted) == ERROR_SUCCESS;
}

/// True if this call promoted an icon.
bool PromoteEntry(HKEY entries, const wchar_t* name, const std::wstring& ownPath) {
    const UniqueRegistryKey entry = OpenKey(entries, name, KEY_READ | KEY_SET_VALUE);
    if (!entry || !IsOwnEntry(ExpandKnownFolder(ReadEntryPath(entry.Get())), ownPath)) return false;
    return IsUndecided(entry.Get()) && Promote(entry.Get());
}

}  // namespace

void PromoteIcons() {
    const UniqueRegistryKey entries = OpenKey(HKEY_CURRENT_USER, EntriesKey, KEY_READ);
    if (!entries) {
        LogDebug(L"kestrane: sin clave NotifyIconSettings; no se promocionan los iconos\n");
        return;
    }
    const std::wstring ownPath = ModulePath();
    std::int32_t count = 0;
    for (DWORD index = 0;; ++index) {
        std::array<wchar_t, SubkeyNameCapacity> name{};
        DWORD length = SubkeyNameCapacity;
        if (RegEnumKeyExW(entries.Get(), index, name.data(), &length, nullptr, nullptr, nullptr, nullptr) !=
            ERROR_SUCCESS) {
            break;
        }
        count += PromoteEntry(entries.Get(), name.data(), ownPath) ? 1 : 0;
    }
    LogDebug(PromotionReport(count).c_str());
}

}  // namespace kestrane
