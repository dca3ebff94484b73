#include "update/sha256_win32.h"

#include <limits>

namespace kestrane {
namespace {

/// BCrypt takes bytes that it only reads as PUCHAR.
PUCHAR InputBytes(const void* bytes) {
    return static_cast<PUCHAR>(const_cast<void*>(bytes));
}

}  // namespace

Sha256::Sha256() : algorithm_(OpenAlgorithm(BCRYPT_SHA256_ALGORITHM)) {
    if (!algorithm_) return;
    BCRYPT_HASH_HANDLE hash = nullptr;
    if (BCRYPT_SUCCESS(BCryptCreateHash(algorithm_.Get(), &hash, nullptr, 0, nullptr, 0, 0))) hash_.Reset(hash);
}

bool Sha256::Add(const void* bytes, std::size_t size) {
    if (!hash_) return false;
    const bool added = size <= std::numeric_limits<ULONG>::max() &&
                       BCRYPT_SUCCESS(BCryptHashData(hash_.Get(), InputBytes(bytes), static_cast<ULONG>(size), 0));
    if (!added) hash_.Reset();
    return added;
}

bool Sha256::Finish(Sha256Digest& digest) {
    if (!hash_) return false;
    Sha256Digest result{};
    const bool finished = BCRYPT_SUCCESS(BCryptFinishHash(hash_.Get(), result.data(), ULONG{result.size()}, 0));
    hash_.Reset();
    if (finished) digest = result;
    return finished;
}

}  // namespace kestrane
