#pragma once
// The optional signature of the manifest, which only the holder of the private key can make. Without it, whoever
// controls the update host decides which program is installed, because the published hash comes from the same host.
// With it, they can still withhold new versions, or offer any version that was ever signed and is newer than the
// running one; an older version is never taken, signed or not. "published" and "checkMinutes" are not signed: nothing
// shows the first, and the second only sets the wait.
#include <string_view>

#include "update/update_info.h"

namespace kestrane {

/// True if `signature` (r and s as 128 hexadecimal digits) is a valid ECDSA signature, P-256 with SHA-256, of
/// SignedText(info) by the private half of `publicKey` (x and y as 128 hexadecimal digits).
bool VerifySignature(const UpdateInfo& info, std::string_view signature, std::string_view publicKey);

/// The same with the key that the program was built with.
bool IsSignedManifest(const UpdateInfo& info, std::string_view signature);

}  // namespace kestrane
