#pragma once
// The operations by which the settings file is made and written, watched like those of file_operations_win32.h. Include
// in one file of a test program only.
#include "support/file_operations_win32.h"

namespace kestrane::test::file_operations {

inline BOOL WINAPI WatchedCopyFileW(LPCWSTR from, LPCWSTR to, BOOL failIfExists) {
    static const auto real = REAL(L"kernel32", CopyFileW);
    if (!IsWatched(to)) return real(from, to, failIfExists);
    return Operate("CopyFileW " + NameOf(from) + " " + NameOf(to), FALSE, [&] {
        const BOOL result = real(from, to, failIfExists);
        if (IsTimeToDie(KillMoment::During)) {
            static const auto open = REAL(L"kernel32", CreateFileW);
            const HANDLE file = open(to, GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
            SetFilePointer(file, static_cast<LONG>(GetFileSize(file, nullptr) / 2), nullptr, FILE_BEGIN);
            SetEndOfFile(file);
            DieAt(KillMoment::During);
        }
        return result;
    });
}

inline BOOL WINAPI WatchedSetFileAttributesW(LPCWSTR path, DWORD attributes) {
    static const auto real = REAL(L"kernel32", SetFileAttributesW);
    if (!IsWatched(path)) return real(path, attributes);
    return Operate("SetFileAttributesW " + NameOf(path) + " " + Hex(attributes), FALSE,
                   [&] { return real(path, attributes); });
}

inline BOOL WINAPI WatchedWritePrivateProfileStringW(LPCWSTR section, LPCWSTR key, LPCWSTR value, LPCWSTR path) {
    static const auto real = REAL(L"kernel32", WritePrivateProfileStringW);
    if (!IsWatched(path)) return real(section, key, value, path);
    return Operate("WritePrivateProfileStringW " + NameOf(section) + " " + NameOf(key), FALSE,
                   [&] { return real(section, key, value, path); });
}

}  // namespace kestrane::test::file_operations

extern "C" {
decltype(&CopyFileW) __imp_CopyFileW = &kestrane::test::file_operations::WatchedCopyFileW;
decltype(&SetFileAttributesW) __imp_SetFileAttributesW = &kestrane::test::file_operations::WatchedSetFileAttributesW;
decltype(&WritePrivateProfileStringW) __imp_WritePrivateProfileStringW =
    &kestrane::test::file_operations::WatchedWritePrivateProfileStringW;
}
