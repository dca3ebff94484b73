#include "update/update_hosts.h"

#include <algorithm>
#include <string_view>

#include "text/text_util.h"

namespace kestrane {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view LowerCaseHostCharacters = "abcdefghijklmnopqrstuvwxyz0123456789.-";
constexpr std::size_t KeyDigits = 128;

constexpr bool IsHost(std::string_view text) {
    return !text.empty() && text.find_first_not_of(LowerCaseHostCharacters) == std::string_view::npos;
}

constexpr bool IsKeyOrNone(std::string_view text) {
    return text.empty() || (text.size() == KeyDigits && std::ranges::all_of(text, IsHexDigit));
}

// With a wrong value the program would be built all the same, and never find an update. The suffix counts the bytes
// after a NUL too: a key that began with one would otherwise pass for none.
static_assert(IsHost(KESTRANE_UPDATE_HOST ""sv), "KESTRANE_UPDATE_HOST must be a host name in lower case");
static_assert(IsHost(KESTRANE_STATS_HOST ""sv), "KESTRANE_STATS_HOST must be a host name in lower case");
static_assert(IsKeyOrNone(KESTRANE_MANIFEST_KEY ""sv),
              "KESTRANE_MANIFEST_KEY must be what scripts/sign.sh --public-key prints, or empty");

}  // namespace

const char* const UpdateHost = KESTRANE_UPDATE_HOST;
const char* const StatsHost = KESTRANE_STATS_HOST;
const char* const WebsiteId = KESTRANE_WEBSITE_ID;
const char* const ManifestKey = KESTRANE_MANIFEST_KEY;

}  // namespace kestrane
