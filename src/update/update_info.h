#pragma once
#include <cstdint>
#include <string>

namespace kestrane {

/// What the published manifest says about the newest version. Texts are bytes, ASCII in practice.
struct UpdateInfo {
    std::string version;             // canonical, from NormalizeVersion
    std::string url;                 // of the download, accepted by IsAllowedDownloadUrl
    std::string sha256;              // 64 lower-case hexadecimal digits
    std::uint64_t size = 0;          // exact, in bytes; above 0
    std::string published;           // carried along; nothing shows it
    std::uint32_t checkMinutes = 0;  // to the next check, 15 to 10080; 0 for none

    bool operator==(const UpdateInfo&) const = default;
};

}  // namespace kestrane
