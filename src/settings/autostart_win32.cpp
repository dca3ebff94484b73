#include "settings/autostart_win32.h"

#include <windows.h>

#include <shellapi.h>

#include <string>

#include "base/com_apartment_win32.h"
#include "base/debug_log_win32.h"
#include "base/handles_win32.h"
#include "base/module_path_win32.h"

namespace kestrane {
namespace {

constexpr const wchar_t* RunValue = L"kestrane";

/// How long the elevated process has for its one value.
constexpr DWORD ElevatedWaitMs = 30000;

bool RunValueExists(HKEY root) {
    HKEY opened = nullptr;
    if (RegOpenKeyExW(root, RunKey, 0, KEY_QUERY_VALUE, &opened) != ERROR_SUCCESS) return false;
    const UniqueRegistryKey key(opened);
    DWORD type = REG_NONE;
    const LSTATUS status = RegQueryValueExW(key.Get(), RunValue, nullptr, &type, nullptr, nullptr);
    return status == ERROR_SUCCESS && (type == REG_SZ || type == REG_EXPAND_SZ);
}

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

bool SetUserAutostart(bool enable) {
    if (WriteRunValue(HKEY_CURRENT_USER, enable) == ERROR_SUCCESS) return true;
    LogDebug(L"kestrane: no se pudo escribir el autoarranque de usuario (HKCU)\n");
    return false;
}

/// Starts the running executable once more, elevated and for `command` alone. None if the user declines.
UniqueKernelHandle StartElevated(const std::wstring& path, const wchar_t* command, HWND owner) {
    const ComApartment apartment;  // ShellExecuteExW may hand over to extensions of the shell
    SHELLEXECUTEINFOW info{};
    info.cbSize = sizeof info;
    // No return before the process is started: the apartment and the texts end here.
    info.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_NOASYNC;
    info.hwnd = owner;
    info.lpVerb = L"runas";
    info.lpFile = path.c_str();
    info.lpParameters = command;
    info.nShow = SW_HIDE;
    if (!ShellExecuteExW(&info)) return UniqueKernelHandle();
    return UniqueKernelHandle(info.hProcess);
}

bool RunElevatedAutostart(bool enable, HWND owner) {
    const std::wstring path = ModulePath();
    // With a path that the Run key cannot hold, the elevated process would fail as well, after a prompt for nothing.
    const bool isHopeless = enable ? BuildRunValue(path).empty() : path.empty();
    if (isHopeless) return false;
    const wchar_t* command = enable ? SetMachineAutostartCommand : ClearMachineAutostartCommand;
    const UniqueKernelHandle process = StartElevated(path, command, owner);
    if (!process) {
        LogDebug(L"kestrane: el usuario cancelo la elevacion o ShellExecuteEx fallo\n");
        return false;
    }
    WaitForSingleObject(process.Get(), ElevatedWaitMs);
    // Of a process that still runs this is STILL_ACTIVE, a failure like any other.
    DWORD exitCode = 1;
    GetExitCodeProcess(process.Get(), &exitCode);
    return exitCode == 0;
}

/// The direct attempt comes first, so that an elevated user sees no prompt.
bool SetMachineAutostartOrElevate(bool enable, HWND owner) {
    return SetMachineAutostart(enable) || RunElevatedAutostart(enable, owner);
}

}  // namespace

AutostartMode GetAutostartMode() {
    if (RunValueExists(HKEY_LOCAL_MACHINE)) return AutostartMode::AllUsers;
    return RunValueExists(HKEY_CURRENT_USER) ? AutostartMode::ThisUser : AutostartMode::Off;
}

bool SetAutostart(AutostartMode mode, HWND owner) {
    const AutostartMode present = GetAutostartMode();
    if (present == mode) return true;
    bool succeeded = true;
    if (present == AutostartMode::AllUsers) succeeded = SetMachineAutostartOrElevate(false, owner);
    if (mode == AutostartMode::ThisUser) {
        // Even if there is one: its path may be outdated.
        if (!SetUserAutostart(true)) return false;
    } else if (RunValueExists(HKEY_CURRENT_USER)) {
        succeeded = SetUserAutostart(false) && succeeded;
    }
    if (mode == AutostartMode::AllUsers) succeeded = SetMachineAutostartOrElevate(true, owner) && succeeded;
    return succeeded;
}

LSTATUS WriteRunValue(HKEY root, bool enable) {
    HKEY opened = nullptr;
    const LSTATUS status =
        RegCreateKeyExW(root, RunKey, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_SET_VALUE, nullptr, &opened, nullptr);
    if (status != ERROR_SUCCESS) return status;
    const UniqueRegistryKey key(opened);
    return enable ? StoreOwnPath(key.Get()) : RemovePath(key.Get());
}

bool SetMachineAutostart(bool enable) {
    if (WriteRunValue(HKEY_LOCAL_MACHINE, enable) == ERROR_SUCCESS) return true;
    LogDebug(L"kestrane: no se pudo escribir el autoarranque de equipo (HKLM); hara falta elevar\n");
    return false;
}

}  // namespace kestrane
