#pragma once
// The registry's machine root can be refused, and then the user declines the elevation. Include in one file of a test
// program only.
#include <windows.h>
// <windows.h> comes first.
#include <shellapi.h>

#include <functional>
#include <vector>

#include "support/real_call_win32.h"

namespace kestrane {

inline bool machineRefused = false;
inline std::vector<HWND> promptOwners;
inline std::function<void()> onPrompt;

inline LSTATUS WINAPI CreateUnlessRefused(HKEY root, LPCWSTR path, DWORD reserved, LPWSTR className, DWORD options,
                                          REGSAM access, LPSECURITY_ATTRIBUTES attributes, PHKEY key,
                                          LPDWORD disposition) {
    static const auto real = REAL(L"advapi32", RegCreateKeyExW);
    if (root == HKEY_LOCAL_MACHINE && machineRefused) return ERROR_ACCESS_DENIED;
    return real(root, path, reserved, className, options, access, attributes, key, disposition);
}

inline BOOL WINAPI DeclineElevation(SHELLEXECUTEINFOW* info) {
    promptOwners.push_back(info->hwnd);
    if (onPrompt) onPrompt();
    SetLastError(ERROR_CANCELLED);
    return FALSE;
}

}  // namespace kestrane

extern "C" {
decltype(&RegCreateKeyExW) __imp_RegCreateKeyExW = &kestrane::CreateUnlessRefused;
decltype(&ShellExecuteExW) __imp_ShellExecuteExW = &kestrane::DeclineElevation;
}
