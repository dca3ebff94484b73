#pragma once
// What is decided when the program is built: whom it asks for updates, and whom it tells about it. CMakeLists.txt has
// the values.

namespace kestrane {

/// The host of the manifest, the download and the two web pages, HTTPS on port 443; in lower case.
extern const char* const UpdateHost;
/// The host of the usage event, HTTPS on port 443.
extern const char* const StatsHost;
/// Identifies the program to that host. Empty in a build that sends no events.
extern const char* const WebsiteId;
/// The public key (ECDSA, P-256) that must have signed the manifest: its two coordinates as 128 hexadecimal digits.
/// Empty in a build that asks for no signature.
extern const char* const ManifestKey;

}  // namespace kestrane
