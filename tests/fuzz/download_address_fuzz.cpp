// Any bytes as the address of a download, and any bytes as the path of one: accepted are exactly those that begin with
// "https://", the host in any case and a slash, and go on.
#include "fuzz/fuzz_target.h"
#include "update/manifest.h"
#include "update/update_hosts.h"

namespace kestrane {
namespace {

using fuzz::Require;

bool BeginsLike(std::string_view text, std::string_view beginning) {
    if (text.size() < beginning.size()) return false;
    for (std::size_t i = 0; i < beginning.size(); ++i) {
        const bool isCapital = text[i] >= 'A' && text[i] <= 'Z';
        if ((isCapital ? static_cast<char>(text[i] + 32) : text[i]) != beginning[i]) return false;
    }
    return true;
}

void CheckAddress(std::string_view url) {
    const std::string root = "https://" + std::string(UpdateHost) + "/";
    const bool expected = url.starts_with("https://") && BeginsLike(url, root) && url.size() > root.size();
    Require(IsAllowedDownloadUrl(url) == expected);
}

}  // namespace
}  // namespace kestrane

FUZZ_TARGET(download_address) {
    using namespace kestrane;
    const std::string text(reinterpret_cast<const char*>(input.data()), input.size());
    const std::string host = UpdateHost;
    CheckAddress(text);
    CheckAddress("https://" + text);
    CheckAddress("https://" + host + text);
    CheckAddress("https://" + host + "/" + text);
    CheckAddress("https://" + text + host + "/a");
    CheckAddress(text + host + "/a");
}
