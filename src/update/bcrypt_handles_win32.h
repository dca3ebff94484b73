#pragma once
// Owners of the objects of BCrypt, the system's cryptography.
#include <windows.h>

#include <bcrypt.h>

#include "base/owned.h"

namespace kestrane {

/// A provider of one algorithm. It must outlive the hashes and keys made with it.
struct AlgorithmTraits {
    using Handle = BCRYPT_ALG_HANDLE;
    static constexpr Handle None() { return nullptr; }
    static void Close(Handle handle) { BCryptCloseAlgorithmProvider(handle, 0); }
};
using UniqueAlgorithm = Owned<AlgorithmTraits>;

struct HashTraits {
    using Handle = BCRYPT_HASH_HANDLE;
    static constexpr Handle None() { return nullptr; }
    static void Close(Handle handle) { BCryptDestroyHash(handle); }
};
using UniqueHash = Owned<HashTraits>;

struct KeyTraits {
    using Handle = BCRYPT_KEY_HANDLE;
    static constexpr Handle None() { return nullptr; }
    static void Close(Handle handle) { BCryptDestroyKey(handle); }
};
using UniqueKey = Owned<KeyTraits>;

/// The system's own provider of an algorithm, such as BCRYPT_SHA256_ALGORITHM; empty on failure.
UniqueAlgorithm OpenAlgorithm(const wchar_t* name);

}  // namespace kestrane
