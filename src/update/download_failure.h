#pragma once
#include <cstdint>

namespace kestrane {

enum class DownloadStep : std::uint8_t {
    None,        // nothing has failed
    Address,     // the address cannot be split, or is not https
    Answer,      // no answer, or not the status 200
    Save,        // the file cannot be created or written
    Cancelled,   // by the user
    Connection,  // it broke off
    Content,     // the size or the hash is not the published one
};

/// Why a download has failed. The download thread only notes it; the UI thread turns it into text.
struct DownloadFailure {
    DownloadStep step = DownloadStep::None;
    std::uint32_t code = 0;  // the system's error, only for Save

    bool operator==(const DownloadFailure&) const = default;
};

}  // namespace kestrane
