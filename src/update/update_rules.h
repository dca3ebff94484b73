#pragma once
// The decisions of the update check: what is asked, what an answer changes, and when to ask again.
#include <cstdint>
#include <string>
#include <string_view>

#include "update/update_info.h"

namespace kestrane {

/// From the start of the worker to its first check.
inline constexpr std::uint32_t FirstCheckMs = 8000;
/// A wait without end, as the system's wait functions want it.
inline constexpr std::uint32_t NeverAgainMs = 0xFFFFFFFF;

/// What is known about a newer version.
struct UpdateOffer {
    bool available = false;
    UpdateInfo info;                    // only meaningful while available
    std::int32_t nextCheckMinutes = 0;  // 0: no further check
};

/// Takes over a manifest. True if the offer has changed, to be told to the user: another version is available now, or
/// none any more. Another address, hash or size alone is taken over without a word.
bool ApplyManifest(UpdateOffer& offer, const UpdateInfo& info, std::string_view currentVersion);

/// How long the worker waits after a check, in milliseconds.
std::uint32_t NextWaitMs(std::int32_t nextCheckMinutes);

/// "kestrane/" and the version.
std::wstring UserAgent(std::string_view version);

/// The path of the manifest on the update host, different for each tick count so that no cache answers.
std::wstring ManifestPath(std::uint64_t tickCount);

/// The address of a page of the update host, such as L"/changelog.html".
std::wstring UpdatePage(std::wstring_view path);

/// The progress of a download, 0 to 1000; 0 if `total` is.
std::int32_t Permille(std::uint64_t done, std::uint64_t total);

}  // namespace kestrane
