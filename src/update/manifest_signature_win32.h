#pragma once
#include <string_view>

#include "update/update_info.h"

namespace kestrane {

/// True if `signature` (r and s as 128 hexadecimal digits) is a valid ECDSA signature, P-256 with SHA-256, of
/// SignedText(info) by the private half of `publicKey` (x and y as 128 hexadecimal digits).
bool VerifySignature(const UpdateInfo& info, std::string_view signature, std::string_view publicKey);

/// The same with the key that the program was built with.
bool IsSignedManifest(const UpdateInfo& info, std::string_view signature);

}  // namespace kestrane
