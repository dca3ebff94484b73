#pragma once
// BCrypt, played by the system's own: each call is recorded, any one of them can be refused, and every object must be
// closed once, the algorithm last. Include in one file of a test program only.
#include <windows.h>

#include <bcrypt.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "support/real_call_win32.h"

namespace kestrane {

struct FakeBCrypt {
    int calls = 0;    // without those that close something
    int refused = 0;  // the number of the one that fails, from 1
    std::vector<std::string> names;
    std::vector<std::wstring> algorithms;         // as they were opened
    std::map<const void*, const void*> openOnes;  // each open object, and the algorithm that it belongs to, if any
};
inline FakeBCrypt fakeBCrypt;

/// Begins anew, with one call that fails.
inline void RefuseCall(int number) {
    fakeBCrypt = {};
    fakeBCrypt.refused = number;
}

/// Notes a call; true if it is to fail.
inline bool IsRefused(const char* name) {
    fakeBCrypt.names.emplace_back(name);
    return ++fakeBCrypt.calls == fakeBCrypt.refused;
}

constexpr auto BCryptRefusal = static_cast<NTSTATUS>(0xC0000017);  // STATUS_NO_MEMORY

/// Makes an object, or refuses it and leaves a handle that must not be touched.
template <typename Call>
NTSTATUS MakeObject(const char* name, void** object, const void* algorithm, Call call) {
    if (IsRefused(name)) {
        *object = reinterpret_cast<void*>(std::uintptr_t{0xBAD0});
        return BCryptRefusal;
    }
    const NTSTATUS status = call();
    if (BCRYPT_SUCCESS(status)) fakeBCrypt.openOnes[*object] = algorithm;
    return status;
}

inline void NoteClosed(const char* name, const void* object) {
    fakeBCrypt.names.emplace_back(name);
    EXPECT_EQ(fakeBCrypt.openOnes.erase(object), 1U) << name << " for something that is not open";
    for (const auto& [other, algorithm] : fakeBCrypt.openOnes) {
        EXPECT_NE(algorithm, object) << name << " before what was made with it";
    }
}

}  // namespace kestrane

extern "C" {

NTSTATUS WINAPI BCryptOpenAlgorithmProvider(BCRYPT_ALG_HANDLE* algorithm, LPCWSTR name, LPCWSTR implementation,
                                            ULONG flags) {
    static const auto real = REAL(L"bcrypt", BCryptOpenAlgorithmProvider);
    kestrane::fakeBCrypt.algorithms.emplace_back(name);
    return kestrane::MakeObject(__func__, algorithm, nullptr,
                                [=] { return real(algorithm, name, implementation, flags); });
}

NTSTATUS WINAPI BCryptCloseAlgorithmProvider(BCRYPT_ALG_HANDLE algorithm, ULONG flags) {
    static const auto real = REAL(L"bcrypt", BCryptCloseAlgorithmProvider);
    kestrane::NoteClosed(__func__, algorithm);
    return real(algorithm, flags);
}

NTSTATUS WINAPI BCryptCreateHash(BCRYPT_ALG_HANDLE algorithm, BCRYPT_HASH_HANDLE* hash, PUCHAR object,
                                 ULONG objectBytes, PUCHAR secret, ULONG secretBytes, ULONG flags) {
    static const auto real = REAL(L"bcrypt", BCryptCreateHash);
    return kestrane::MakeObject(__func__, hash, algorithm,
                                [=] { return real(algorithm, hash, object, objectBytes, secret, secretBytes, flags); });
}

NTSTATUS WINAPI BCryptHashData(BCRYPT_HASH_HANDLE hash, PUCHAR input, ULONG bytes, ULONG flags) {
    static const auto real = REAL(L"bcrypt", BCryptHashData);
    return kestrane::IsRefused(__func__) ? kestrane::BCryptRefusal : real(hash, input, bytes, flags);
}

NTSTATUS WINAPI BCryptFinishHash(BCRYPT_HASH_HANDLE hash, PUCHAR output, ULONG bytes, ULONG flags) {
    static const auto real = REAL(L"bcrypt", BCryptFinishHash);
    if (kestrane::IsRefused(__func__)) {
        *output = 0xBA;  // half written
        return kestrane::BCryptRefusal;
    }
    return real(hash, output, bytes, flags);
}

NTSTATUS WINAPI BCryptDestroyHash(BCRYPT_HASH_HANDLE hash) {
    static const auto real = REAL(L"bcrypt", BCryptDestroyHash);
    kestrane::NoteClosed(__func__, hash);
    return real(hash);
}

NTSTATUS WINAPI BCryptImportKeyPair(BCRYPT_ALG_HANDLE algorithm, BCRYPT_KEY_HANDLE importKey, LPCWSTR blobType,
                                    BCRYPT_KEY_HANDLE* key, PUCHAR input, ULONG bytes, ULONG flags) {
    static const auto real = REAL(L"bcrypt", BCryptImportKeyPair);
    return kestrane::MakeObject(__func__, key, algorithm,
                                [=] { return real(algorithm, importKey, blobType, key, input, bytes, flags); });
}

NTSTATUS WINAPI BCryptDestroyKey(BCRYPT_KEY_HANDLE key) {
    static const auto real = REAL(L"bcrypt", BCryptDestroyKey);
    kestrane::NoteClosed(__func__, key);
    return real(key);
}

NTSTATUS WINAPI BCryptVerifySignature(BCRYPT_KEY_HANDLE key, VOID* padding, PUCHAR hash, ULONG hashBytes,
                                      PUCHAR signature, ULONG signatureBytes, ULONG flags) {
    static const auto real = REAL(L"bcrypt", BCryptVerifySignature);
    if (kestrane::IsRefused(__func__)) return kestrane::BCryptRefusal;
    return real(key, padding, hash, hashBytes, signature, signatureBytes, flags);
}

}  // extern "C"
