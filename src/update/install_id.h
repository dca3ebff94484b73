#pragma once
#include <array>
#include <cstdint>
#include <string>

namespace kestrane {

/// The bytes as a random UUID (version 4, RFC 9562): 36 characters, lower-case, with the version and variant bits set.
std::string MakeInstallId(const std::array<std::uint8_t, 16>& random);

}  // namespace kestrane
