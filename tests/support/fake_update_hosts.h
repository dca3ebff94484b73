#pragma once
// Takes the place of what was decided when the program was built, so that a test can decide it while it runs. Include
// in one file of a test program only.
#include <array>
#include <cstddef>
#include <string_view>

#include "update/update_hosts.h"

namespace kestrane {
namespace test {

inline constexpr std::size_t LongestHostText = 160;
inline std::array<char, LongestHostText> websiteId{};
inline std::array<char, LongestHostText> manifestKey{};

inline void SetHostText(std::array<char, LongestHostText>& target, std::string_view text) {
    target.fill('\0');
    text.copy(target.data(), target.size() - 1);
}

}  // namespace test

const char* const UpdateHost = "updates.example";
const char* const StatsHost = "stats.example";
const char* const WebsiteId = test::websiteId.data();
const char* const ManifestKey = test::manifestKey.data();

}  // namespace kestrane
