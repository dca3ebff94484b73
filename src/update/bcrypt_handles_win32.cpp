#include "update/bcrypt_handles_win32.h"

namespace kestrane {

UniqueAlgorithm OpenAlgorithm(const wchar_t* name) {
    BCRYPT_ALG_HANDLE handle = nullptr;
    if (!BCRYPT_SUCCESS(BCryptOpenAlgorithmProvider(&handle, name, nullptr, 0))) return {};
    return UniqueAlgorithm(handle);
}

}  // namespace kestrane
