// Any bytes as a manifest: an accepted one obeys every rule and reads the same when written anew; a refused one changes
// nothing. The same with a check of the signature, which sees exactly what would be accepted.
#include <string>

#include "fuzz/fuzz_target.h"
#include "update/json.h"
#include "update/manifest.h"
#include "update/version_rules.h"

namespace kestrane {
namespace {

using fuzz::Require;

void RequirePermitted(const UpdateInfo& info) {
    Require(!info.version.empty() && NormalizeVersion(info.version) == info.version);
    Require(IsAllowedDownloadUrl(info.url));
    Require(info.sha256.size() == 64 && info.sha256.find_first_not_of("0123456789abcdef") == std::string::npos);
    Require(info.size > 0);
    Require(info.checkMinutes == 0 || (info.checkMinutes >= 15 && info.checkMinutes <= 10080));
}

std::string Write(const UpdateInfo& info, std::string_view signature) {
    return R"({"version":")" + info.version + R"(","url":")" + EscapeJsonString(info.url) + R"(","sha256":")" +
           info.sha256 + R"(","size":)" + std::to_string(info.size) + R"(,"published":")" +
           EscapeJsonString(info.published) + R"(","checkMinutes":)" + std::to_string(info.checkMinutes) +
           R"(,"signature":")" + EscapeJsonString(signature) + "\"}";
}

/// The hash and the size can be told from the end, so the address between may hold anything.
void RequireUnambiguous(const UpdateInfo& info) {
    const std::string text = SignedText(info);
    const std::string end = "\n" + info.sha256 + "\n" + std::to_string(info.size) + "\n";
    Require(text.starts_with(info.version + "\n") && text.ends_with(end));
    Require(text.size() == info.version.size() + 1 + info.url.size() + end.size());
    Require(info.version.find('\n') == std::string::npos);
}

UpdateInfo checkedInfo;
std::string checkedSignature;
bool checkAnswer = false;

bool Check(const UpdateInfo& info, std::string_view signature) {
    Require(!signature.empty());
    checkedInfo = info;
    checkedSignature = signature;
    return checkAnswer;
}

bool Parse(std::string_view text, UpdateInfo& info, SignatureCheck check) {
    const UpdateInfo before = {"before", "", "", 1, "", 2};
    info = before;
    const bool accepted = ParseManifest(text, info, check);
    Require(accepted || info == before);
    return accepted;
}

void CheckSigned(std::string_view text, bool accepted, const UpdateInfo& expected) {
    UpdateInfo info;
    checkedSignature.clear();
    checkAnswer = false;
    Require(!Parse(text, info, &Check));
    checkAnswer = true;
    const bool hasSignature = Parse(text, info, &Check);
    Require(hasSignature == !checkedSignature.empty());
    Require(!hasSignature || (accepted && info == expected && checkedInfo == expected));
}

}  // namespace
}  // namespace kestrane

FUZZ_TARGET(manifest) {
    using namespace kestrane;
    const std::string_view text(reinterpret_cast<const char*>(input.data()), input.size());
    UpdateInfo info;
    const bool accepted = Parse(text, info, nullptr);
    CheckSigned(text, accepted, info);
    if (!accepted) return;
    RequirePermitted(info);
    RequireUnambiguous(info);
    UpdateInfo again;
    Require(Parse(Write(info, "s"), again, nullptr) && again == info);
    checkAnswer = true;
    Require(Parse(Write(info, "s"), again, &Check) && again == info && checkedSignature == "s");
}
