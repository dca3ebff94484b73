// Any three lines as versions: a second reading agrees, normalising twice changes nothing, and "newer" is a strict
// order.
#include <algorithm>
#include <optional>

#include "fuzz/fuzz_target.h"
#include "update/version_rules.h"

namespace kestrane {
namespace {

using fuzz::Require;

/// Reads from the first character to the last, without splitting.
std::optional<VersionNumbers> ReadAgain(std::string_view text) {
    VersionNumbers numbers{};
    std::size_t part = 0;
    std::size_t digits = 0;
    for (const char c : text) {
        if (c == '+') break;
        if (c == '.') {
            if (digits == 0 || ++part == numbers.size()) return {};
            digits = 0;
        } else if (c >= '0' && c <= '9' && ++digits <= 19) {
            // Saturates above the largest part.
            numbers[part] =
                std::min(numbers[part] * 10 + static_cast<std::uint32_t>(c - '0'), std::uint32_t{1'000'001});
        } else {
            return {};
        }
    }
    if (digits == 0 || *std::ranges::max_element(numbers) > 1'000'000) return {};
    return numbers;
}

void CheckOne(std::string_view text) {
    const VersionNumbers before = {9, 8, 7, 6};
    VersionNumbers numbers = before;
    const std::optional<VersionNumbers> expected = ReadAgain(text);
    const bool valid = ParseVersion(text, numbers);
    Require(valid == expected.has_value());
    Require(numbers == expected.value_or(before));

    const std::string canonical = NormalizeVersion(text);
    Require(canonical.empty() != valid);
    Require(NormalizeVersion(canonical) == canonical);
    Require(!valid || ReadAgain(canonical) == expected);
}

void CheckPair(std::string_view a, std::string_view b) {
    const std::string canonicalA = NormalizeVersion(a);
    const std::string canonicalB = NormalizeVersion(b);
    const int relations = int{IsNewerVersion(a, b)} + int{IsNewerVersion(b, a)} + int{canonicalA == canonicalB};
    const bool bothValid = !canonicalA.empty() && !canonicalB.empty();
    Require(bothValid ? relations == 1 : !IsNewerVersion(a, b) && !IsNewerVersion(b, a));
    Require(IsNewerVersion(a, b) == IsNewerVersion(canonicalA, canonicalB));
}

}  // namespace
}  // namespace kestrane

FUZZ_TARGET(version) {
    using namespace kestrane;
    std::string_view rest(reinterpret_cast<const char*>(input.data()), input.size());
    std::array<std::string_view, 3> texts;
    for (std::string_view& text : texts) {
        text = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(text.size() + 1, rest.size()));
    }
    for (const std::string_view a : texts) {
        CheckOne(a);
        for (const std::string_view b : texts) {
            CheckPair(a, b);
            for (const std::string_view c : texts)
                Require(!IsNewerVersion(a, b) || !IsNewerVersion(b, c) || IsNewerVersion(a, c));
        }
    }
}
