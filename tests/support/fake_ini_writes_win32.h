#pragma once
// Writes to the settings file that the system refuses, as on a full disk. Include in one file of a test program only.
#include <windows.h>

#include "support/real_call_win32.h"

namespace kestrane {

/// How many more writes succeed; negative: all of them.
inline int writesUntilFull = -1;

inline BOOL WINAPI WriteUntilFull(LPCWSTR section, LPCWSTR key, LPCWSTR value, LPCWSTR path) {
    static const auto real = REAL(L"kernel32", WritePrivateProfileStringW);
    if (writesUntilFull == 0) {
        SetLastError(ERROR_DISK_FULL);
        return FALSE;
    }
    if (writesUntilFull > 0) --writesUntilFull;
    return real(section, key, value, path);
}

}  // namespace kestrane

extern "C" {
decltype(&WritePrivateProfileStringW) __imp_WritePrivateProfileStringW = &kestrane::WriteUntilFull;
}
