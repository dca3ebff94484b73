#include "settings/autostart_win32.h"

#include <windows.h>

#include <string>

#include "base/debug_log_win32.h"
#include "base/handles_win32.h"
#include "base/module_path_win32.h"
#include "settings/autostart.h"

namespace kestrane {
namespace {

constexpr const wchar_t* RunKey = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr const wchar_t* RunValue = L"kestrane";

LSTATUS StoreOwnPath(HKEY key) {
    const std::wstring value = BuildRunValue(ModulePath());
    if (value.empty()) return ERROR_FILENAME_EXCED_RANGE;
    const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
    return RegSetValueExW(key, RunValue, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()), bytes);
}

LSTATUS RemovePath(HKEY key) {
    const LSTATUS status = RegDeleteValueW(key, RunValue);
    return status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status;
}

/// 0 on success, else the system's error.
LSTATUS WriteRunValue(HKEY root, bool enable) {
    HKEY opened = nullptr;
    const LSTATUS status =
        RegCreateKeyExW(root, RunKey, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_SET_VALUE, nullptr, &opened, nullptr);
    if (status != ERROR_SUCCESS) return status;
    const UniqueRegistryKey key(opened);
    return enable ? StoreOwnPath(key.Get()) : RemovePath(key.Get());
}

}  // namespace

bool SetMachineAutostart(bool enable) {
    if (WriteRunValue(HKEY_LOCAL_MACHINE, enable) == ERROR_SUCCESS) return true;
    LogDebug(L"kestrane: no se pudo escribir el autoarranque de equipo (HKLM); hara falta elevar\n");
    return false;
}

}  // namespace kestrane
