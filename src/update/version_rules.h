#pragma once
// Version texts: one to four numbers joined by points, such as "1.2" or "1.2.3.4+build7".
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace kestrane {

inline constexpr std::size_t VersionParts = 4;
inline constexpr std::uint32_t LargestVersionPart = 1000000;

using VersionNumbers = std::array<std::uint32_t, VersionParts>;

/// The numbers of a version; missing ones are 0. What follows a '+' is ignored. False, with `numbers` unchanged, for
/// more than four parts, or a part that is not a decimal number up to LargestVersionPart.
bool ParseVersion(std::string_view text, VersionNumbers& numbers);

/// The version with three numbers, and a fourth only if it is not 0; empty if malformed.
std::string NormalizeVersion(std::string_view text);

/// True if both are versions and `a` is greater than `b`.
bool IsNewerVersion(std::string_view a, std::string_view b);

}  // namespace kestrane
