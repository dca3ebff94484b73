#pragma once
// SHA-256 by BCrypt, of pieces one after the other.
#include <array>
#include <cstddef>
#include <cstdint>

#include "update/bcrypt_handles_win32.h"

namespace kestrane {

using Sha256Digest = std::array<std::uint8_t, 32>;

/// One hash: pieces, then its digest. After a failure everything fails.
class Sha256 {
  public:
    Sha256();
    bool Add(const void* bytes, std::size_t size);
    /// Ends the hash. On failure false, and `digest` is unchanged.
    bool Finish(Sha256Digest& digest);

  private:
    UniqueAlgorithm algorithm_;  // closed after the hash
    UniqueHash hash_;            // empty after a failure and at the end
};

}  // namespace kestrane
