#pragma once
// The manifest: the flat JSON object that the update host publishes about the newest version. It comes from the
// network, so nothing in it is believed before it has been checked.
#include <cstddef>
#include <string>
#include <string_view>

#include "update/update_info.h"

namespace kestrane {

/// A longer manifest is not read.
inline constexpr std::size_t LargestManifest = 16384;

/// True for "https://", the update host in any case, a slash and at least one more byte. So a port, user information, a
/// sub-domain and another scheme fail.
bool IsAllowedDownloadUrl(std::string_view url);

/// Whether `signature`, the manifest's own text, was made over `info` with the key that the program trusts.
using SignatureCheck = bool (*)(const UpdateInfo& info, std::string_view signature);

/// Reads a manifest with a valid version, address, hash (64 hexadecimal digits) and size. "checkMinutes" may be missing
/// or wrong: that gives 0. Unknown keys and known ones of another kind are ignored; of a repeated key the last counts.
/// With `isSigned`, "signature" must be there and pass it. On failure false, and `output` is unchanged.
bool ParseManifest(std::string_view bytes, UpdateInfo& output, SignatureCheck isSigned = nullptr);

/// The bytes that are signed: version, address, hash and size, a line each.
std::string SignedText(const UpdateInfo& info);

}  // namespace kestrane
