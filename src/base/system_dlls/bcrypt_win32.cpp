// The functions of bcrypt.dll that the program calls; see base/system_function_win32.h.
#include "base/system_function_win32.h"

#include <windows.h>

#include <bcrypt.h>

namespace {

constexpr const wchar_t* Dll = L"bcrypt.dll";
/// STATUS_DLL_NOT_FOUND: unlike the errors of other DLLs, a status is a failure only if it is negative.
constexpr auto Missing = static_cast<NTSTATUS>(0xC0000135);

}  // namespace

extern "C" {

NTSTATUS WINAPI BCryptGenRandom(BCRYPT_ALG_HANDLE algorithm, PUCHAR buffer, ULONG bytes, ULONG flags) {
    const auto call = kestrane::SystemFunction<&BCryptGenRandom>(Dll, __func__);
    return call != nullptr ? call(algorithm, buffer, bytes, flags) : Missing;
}

NTSTATUS WINAPI BCryptOpenAlgorithmProvider(BCRYPT_ALG_HANDLE* algorithm, LPCWSTR name, LPCWSTR implementation,
                                            ULONG flags) {
    const auto call = kestrane::SystemFunction<&BCryptOpenAlgorithmProvider>(Dll, __func__);
    return call != nullptr ? call(algorithm, name, implementation, flags) : Missing;
}

NTSTATUS WINAPI BCryptCloseAlgorithmProvider(BCRYPT_ALG_HANDLE algorithm, ULONG flags) {
    const auto call = kestrane::SystemFunction<&BCryptCloseAlgorithmProvider>(Dll, __func__);
    return call != nullptr ? call(algorithm, flags) : Missing;
}

NTSTATUS WINAPI BCryptCreateHash(BCRYPT_ALG_HANDLE algorithm, BCRYPT_HASH_HANDLE* hash, PUCHAR object,
                                 ULONG objectBytes, PUCHAR secret, ULONG secretBytes, ULONG flags) {
    const auto call = kestrane::SystemFunction<&BCryptCreateHash>(Dll, __func__);
    return call != nullptr ? call(algorithm, hash, object, objectBytes, secret, secretBytes, flags) : Missing;
}

NTSTATUS WINAPI BCryptHashData(BCRYPT_HASH_HANDLE hash, PUCHAR input, ULONG bytes, ULONG flags) {
    const auto call = kestrane::SystemFunction<&BCryptHashData>(Dll, __func__);
    return call != nullptr ? call(hash, input, bytes, flags) : Missing;
}

NTSTATUS WINAPI BCryptFinishHash(BCRYPT_HASH_HANDLE hash, PUCHAR output, ULONG bytes, ULONG flags) {
    const auto call = kestrane::SystemFunction<&BCryptFinishHash>(Dll, __func__);
    return call != nullptr ? call(hash, output, bytes, flags) : Missing;
}

NTSTATUS WINAPI BCryptDestroyHash(BCRYPT_HASH_HANDLE hash) {
    const auto call = kestrane::SystemFunction<&BCryptDestroyHash>(Dll, __func__);
    return call != nullptr ? call(hash) : Missing;
}

NTSTATUS WINAPI BCryptImportKeyPair(BCRYPT_ALG_HANDLE algorithm, BCRYPT_KEY_HANDLE importKey, LPCWSTR blobType,
                                    BCRYPT_KEY_HANDLE* key, PUCHAR input, ULONG bytes, ULONG flags) {
    const auto call = kestrane::SystemFunction<&BCryptImportKeyPair>(Dll, __func__);
    return call != nullptr ? call(algorithm, importKey, blobType, key, input, bytes, flags) : Missing;
}

NTSTATUS WINAPI BCryptDestroyKey(BCRYPT_KEY_HANDLE key) {
    const auto call = kestrane::SystemFunction<&BCryptDestroyKey>(Dll, __func__);
    return call != nullptr ? call(key) : Missing;
}

NTSTATUS WINAPI BCryptVerifySignature(BCRYPT_KEY_HANDLE key, VOID* padding, PUCHAR hash, ULONG hashBytes,
                                      PUCHAR signature, ULONG signatureBytes, ULONG flags) {
    const auto call = kestrane::SystemFunction<&BCryptVerifySignature>(Dll, __func__);
    return call != nullptr ? call(key, padding, hash, hashBytes, signature, signatureBytes, flags) : Missing;
}

}  // extern "C"
