#include "update/version_rules.h"

#include "update/json.h"

namespace kestrane {

bool ParseVersion(std::string_view text, VersionNumbers& numbers) {
    std::string_view rest = text.substr(0, text.find('+'));
    VersionNumbers parsed{};
    for (std::uint32_t& number : parsed) {
        const std::size_t point = rest.find('.');
        std::uint64_t value = 0;
        if (!ParseDecimal(rest.substr(0, point), value) || value > LargestVersionPart) return false;
        number = static_cast<std::uint32_t>(value);
        if (point == std::string_view::npos) {
            numbers = parsed;
            return true;
        }
        rest.remove_prefix(point + 1);
    }
    return false;  // a fifth part
}

std::string NormalizeVersion(std::string_view text) {
    VersionNumbers numbers{};
    if (!ParseVersion(text, numbers)) return {};
    std::string version = std::to_string(numbers[0]);
    for (std::size_t i = 1; i < VersionParts; ++i) {
        if (i < 3 || numbers[i] != 0) version += "." + std::to_string(numbers[i]);
    }
    return version;
}

bool IsNewerVersion(std::string_view a, std::string_view b) {
    VersionNumbers left{};
    VersionNumbers right{};
    return ParseVersion(a, left) && ParseVersion(b, right) && left > right;
}

}  // namespace kestrane
