#include "update/manifest_signature_win32.h"

#include <windows.h>

#include <bcrypt.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "text/text_util.h"
#include "update/bcrypt_handles_win32.h"
#include "update/manifest.h"
#include "update/sha256_win32.h"
#include "update/update_hosts.h"

namespace kestrane {
namespace {

constexpr std::size_t NumberBytes = 32;
/// Two numbers, highest byte first: the coordinates of a point, or r and s of a signature.
using NumberPair = std::array<std::uint8_t, 2 * NumberBytes>;

/// A public key as BCrypt imports it.
struct PublicKeyBlob {
    BCRYPT_ECCKEY_BLOB header{BCRYPT_ECDSA_PUBLIC_P256_MAGIC, NumberBytes};
    NumberPair point{};
};
static_assert(sizeof(PublicKeyBlob) == sizeof(BCRYPT_ECCKEY_BLOB) + 2 * NumberBytes);

UniqueKey ImportPublicKey(BCRYPT_ALG_HANDLE algorithm, const NumberPair& point) {
    PublicKeyBlob blob{.point = point};
    BCRYPT_KEY_HANDLE key = nullptr;
    const NTSTATUS status = BCryptImportKeyPair(algorithm, nullptr, BCRYPT_ECCPUBLIC_BLOB, &key,
                                                reinterpret_cast<PUCHAR>(&blob), ULONG{sizeof(blob)}, 0);
    return UniqueKey(BCRYPT_SUCCESS(status) ? key : nullptr);
}

bool HashText(const std::string& text, Sha256Digest& digest) {
    Sha256 hash;
    return hash.Add(text.data(), text.size()) && hash.Finish(digest);
}

}  // namespace

bool VerifySignature(const UpdateInfo& info, std::string_view signature, std::string_view publicKey) {
    NumberPair numbers{};
    NumberPair point{};
    Sha256Digest digest{};
    if (!ParseHexBytes(signature, numbers) || !ParseHexBytes(publicKey, point) || !HashText(SignedText(info), digest))
        return false;
    const UniqueAlgorithm algorithm = OpenAlgorithm(BCRYPT_ECDSA_P256_ALGORITHM);
    if (!algorithm) return false;
    const UniqueKey key = ImportPublicKey(algorithm.Get(), point);
    return key && BCRYPT_SUCCESS(BCryptVerifySignature(key.Get(), nullptr, digest.data(), ULONG{digest.size()},
                                                       numbers.data(), ULONG{numbers.size()}, 0));
}

bool IsSignedManifest(const UpdateInfo& info, std::string_view signature) {
    return VerifySignature(info, signature, ManifestKey);
}

}  // namespace kestrane
