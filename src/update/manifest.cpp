#include "update/manifest.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "text/text_util.h"
#include "update/json.h"
#include "update/update_hosts.h"
#include "update/version_rules.h"

namespace kestrane {
namespace {

constexpr std::size_t HashDigits = 64;

char FoldAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

void FoldAscii(std::string& text) {
    std::ranges::transform(text, text.begin(), [](char c) { return FoldAscii(c); });
}

/// The value of "checkMinutes": 15 minutes to a week, or 0.
std::uint32_t ParseCheckMinutes(std::string_view text) {
    constexpr std::uint64_t FirstRefused = 1'000'000;
    constexpr std::uint64_t Least = 15;
    constexpr std::uint64_t Most = std::uint64_t{7} * 24 * 60;
    std::uint64_t minutes = 0;
    if (!ParseDecimal(text, minutes) || minutes == 0 || minutes >= FirstRefused) return 0;
    return static_cast<std::uint32_t>(std::clamp(minutes, Least, Most));
}

/// A manifest while it is read: what cannot be used is empty or 0.
struct ManifestDraft {
    UpdateInfo info;
    std::string signature;
};

void ApplyManifestField(ManifestDraft& draft, std::string_view key, JsonFieldKind kind, std::string_view value) {
    UpdateInfo& info = draft.info;
    const bool isText = kind == JsonFieldKind::String;
    const bool isNumber = kind == JsonFieldKind::Number;
    if (key == "version" && isText) {
        info.version = NormalizeVersion(value);
    } else if (key == "url" && isText) {
        info.url = value;
    } else if (key == "sha256" && isText) {
        info.sha256 = value;
    } else if (key == "size" && isNumber) {
        if (!ParseDecimal(value, info.size)) info.size = 0;
    } else if (key == "published" && isText) {
        info.published = value;
    } else if (key == "checkMinutes" && (isText || isNumber)) {
        info.checkMinutes = ParseCheckMinutes(value);
    } else if (key == "signature" && isText) {
        draft.signature = value;
    }
}

/// Whether the required fields are there and valid; the hash may still have capitals.
bool IsComplete(const UpdateInfo& info) {
    return !info.version.empty() && info.size > 0 && IsAllowedDownloadUrl(info.url) &&
           info.sha256.size() == HashDigits && std::ranges::all_of(info.sha256, IsHexDigit);
}

}  // namespace

bool IsAllowedDownloadUrl(std::string_view url) {
    constexpr std::string_view Scheme = "https://";
    if (!url.starts_with(Scheme)) return false;
    const std::string_view rest = url.substr(Scheme.size());
    const std::size_t slash = rest.find('/');
    if (slash == std::string_view::npos || slash + 1 == rest.size()) return false;
    std::string host(rest.substr(0, slash));
    FoldAscii(host);
    return host == UpdateHost;
}

bool ParseManifest(std::string_view bytes, UpdateInfo& output, SignatureCheck isSigned) {
    ManifestDraft draft;
    const auto apply = [&draft](std::string_view key, JsonFieldKind kind, std::string_view value) {
        ApplyManifestField(draft, key, kind, value);
    };
    if (!ReadFlatJsonObject(bytes, apply) || !IsComplete(draft.info)) return false;
    FoldAscii(draft.info.sha256);
    if (isSigned != nullptr && (draft.signature.empty() || !isSigned(draft.info, draft.signature))) return false;
    output = std::move(draft.info);
    return true;
}

std::string SignedText(const UpdateInfo& info) {
    return info.version + "\n" + info.url + "\n" + info.sha256 + "\n" + std::to_string(info.size) + "\n";
}

}  // namespace kestrane
