#pragma once
// The hashing of BCrypt, done by the system, with each call noted in Calls(); one function can be refused. Include in
// one file of a test program only.
#include <windows.h>

#include <bcrypt.h>

#include <string>

#include "support/call_log.h"
#include "support/real_call_win32.h"

namespace kestrane::test {

inline constexpr auto NoMemory = static_cast<NTSTATUS>(STATUS_NO_MEMORY);
inline std::string refusedHashing;  // a function's name

inline bool IsHashingRefused(const std::string& function) {
    NoteCall(function);
    return function == refusedHashing;
}

}  // namespace kestrane::test

extern "C" {

NTSTATUS WINAPI BCryptOpenAlgorithmProvider(BCRYPT_ALG_HANDLE* algorithm, LPCWSTR id, LPCWSTR implementation,
                                            ULONG flags) {
    static const auto real = REAL(L"bcrypt", BCryptOpenAlgorithmProvider);
    return kestrane::test::IsHashingRefused(__func__) ? kestrane::test::NoMemory
                                                      : real(algorithm, id, implementation, flags);
}

NTSTATUS WINAPI BCryptCreateHash(BCRYPT_ALG_HANDLE algorithm, BCRYPT_HASH_HANDLE* hash, PUCHAR object,
                                 ULONG objectBytes, PUCHAR secret, ULONG secretBytes, ULONG flags) {
    static const auto real = REAL(L"bcrypt", BCryptCreateHash);
    if (kestrane::test::IsHashingRefused(__func__)) return kestrane::test::NoMemory;
    return real(algorithm, hash, object, objectBytes, secret, secretBytes, flags);
}

NTSTATUS WINAPI BCryptHashData(BCRYPT_HASH_HANDLE hash, PUCHAR bytes, ULONG size, ULONG flags) {
    static const auto real = REAL(L"bcrypt", BCryptHashData);
    return kestrane::test::IsHashingRefused(__func__) ? kestrane::test::NoMemory : real(hash, bytes, size, flags);
}

NTSTATUS WINAPI BCryptFinishHash(BCRYPT_HASH_HANDLE hash, PUCHAR digest, ULONG size, ULONG flags) {
    static const auto real = REAL(L"bcrypt", BCryptFinishHash);
    return kestrane::test::IsHashingRefused(__func__) ? kestrane::test::NoMemory : real(hash, digest, size, flags);
}

NTSTATUS WINAPI BCryptDestroyHash(BCRYPT_HASH_HANDLE hash) {
    static const auto real = REAL(L"bcrypt", BCryptDestroyHash);
    kestrane::test::NoteCall(__func__);
    return real(hash);
}

NTSTATUS WINAPI BCryptCloseAlgorithmProvider(BCRYPT_ALG_HANDLE algorithm, ULONG flags) {
    static const auto real = REAL(L"bcrypt", BCryptCloseAlgorithmProvider);
    kestrane::test::NoteCall(__func__);
    return real(algorithm, flags);
}

}  // extern "C"
