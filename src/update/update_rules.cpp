#include "update/update_rules.h"

#include <algorithm>

#include "text/number_text.h"
#include "text/text_util.h"
#include "update/update_hosts.h"
#include "update/version_rules.h"

namespace kestrane {

bool ApplyManifest(UpdateOffer& offer, const UpdateInfo& info, std::string_view currentVersion) {
    const bool isNewer = IsNewerVersion(info.version, currentVersion);
    const bool changed = isNewer != offer.available || (isNewer && info.version != offer.info.version);
    offer.available = isNewer;
    if (isNewer) offer.info = info;
    offer.nextCheckMinutes = static_cast<std::int32_t>(info.checkMinutes);
    return changed;
}

std::uint32_t NextWaitMs(std::int32_t nextCheckMinutes) {
    constexpr std::uint32_t MsPerMinute = 60000;
    return nextCheckMinutes > 0 ? static_cast<std::uint32_t>(nextCheckMinutes) * MsPerMinute : NeverAgainMs;
}

std::wstring UserAgent(std::string_view version) {
    return L"kestrane/" + WidenBytes(version);
}

std::wstring ManifestPath(std::uint64_t tickCount) {
    return L"/latest.json?t=" + FormatUnsigned(tickCount);
}

std::wstring UpdatePage(std::wstring_view path) {
    return (L"https://" + WidenBytes(UpdateHost)).append(path);
}

std::int32_t Permille(std::uint64_t done, std::uint64_t total) {
    constexpr std::uint64_t Whole = 1000;
    return total == 0 ? 0 : static_cast<std::int32_t>(std::min(done * Whole / total, Whole));
}

}  // namespace kestrane
