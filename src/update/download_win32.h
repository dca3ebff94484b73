#pragma once
#include <atomic>
#include <cstdint>
#include <string>

#include "update/download_failure.h"
#include "update/update_info.h"

namespace kestrane {

/// Told after each part of a download: the bytes so far and in all.
struct DownloadProgress {
    void (*report)(void* context, std::uint64_t done, std::uint64_t total) = nullptr;
    void* context = nullptr;
};

/// Downloads the new version beside the executable, under its NewFilePath, and compares its size and hash with the
/// published ones. True if the verified file stands there; on failure it is deleted, and `failure` says why. A cancel
/// takes effect with the next bytes that arrive, or at the time-out. On the download thread.
bool DownloadUpdate(const UpdateInfo& info, const std::wstring& executable, const std::atomic<bool>& cancel,
                    const DownloadProgress& progress, DownloadFailure& failure);

}  // namespace kestrane
