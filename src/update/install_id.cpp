#include "update/install_id.h"

#include <cstddef>

#include "text/text_util.h"

namespace kestrane {

std::string MakeInstallId(const std::array<std::uint8_t, 16>& random) {
    std::array<std::uint8_t, 16> bytes = random;
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);  // version 4
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);  // the variant of RFC 9562
    std::string id = HexText(bytes);
    for (const std::size_t hyphen : {8U, 13U, 18U, 23U}) {
        id.insert(hyphen, 1, '-');
    }
    return id;
}

}  // namespace kestrane
