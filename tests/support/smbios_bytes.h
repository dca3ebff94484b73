#pragma once
// SMBIOS structures as firmware writes them, built for tests.
#include <string_view>

#include "support/record_bytes.h"

namespace kestrane {

/// A structure with its header filled in; all other bytes of the formatted area are `fill`.
inline Bytes SmbiosStructure(std::uint8_t type, std::size_t length, std::uint8_t fill = 0) {
    Bytes bytes(length, fill);
    bytes.at(0) = type;
    bytes.at(1) = static_cast<std::uint8_t>(length);
    return bytes;
}

/// Appends the strings behind the formatted area, with the zero byte of each and the one that ends them all.
inline Bytes WithStrings(Bytes structure, const std::vector<std::string_view>& strings) {
    for (const std::string_view text : strings) {
        structure.insert(structure.end(), text.begin(), text.end());
        structure.push_back(0);
    }
    if (strings.empty()) structure.push_back(0);
    structure.push_back(0);
    return structure;
}

/// A memory device. Fields that it does not name are 0xEE, so that misreading one shows.
struct SmbiosDevice {
    std::uint16_t size = 16384;
    std::uint8_t formFactor = 9;
    std::uint8_t type = 26;
    std::uint16_t speed = 3200;
    std::uint8_t manufacturer = 1;
    std::uint8_t partNumber = 2;
    std::uint32_t extendedSize = 0;
    std::uint16_t configuredSpeed = 2933;
    std::size_t length = 40;
    std::vector<std::string_view> strings = {"ACME", "X432-16"};

    Bytes Build() const {
        Bytes bytes(256, 0xEE);
        PutAt(bytes, 12, size, 2);
        PutAt(bytes, 14, formFactor, 1);
        PutAt(bytes, 18, type, 1);
        PutAt(bytes, 21, speed, 2);
        PutAt(bytes, 23, manufacturer, 1);
        PutAt(bytes, 26, partNumber, 1);
        PutAt(bytes, 28, extendedSize, 4);
        PutAt(bytes, 32, configuredSpeed, 2);
        PutAt(bytes, 0, 17, 1);
        PutAt(bytes, 1, length, 1);
        bytes.resize(length);
        return WithStrings(bytes, strings);
    }
};

/// A memory array. The extended capacity is in bytes.
inline Bytes SmbiosArray(std::uint32_t capacityKilobytes, std::uint64_t extendedCapacity = 0, std::size_t length = 23) {
    Bytes bytes = SmbiosStructure(16, 23, 0xEE);
    PutAt(bytes, 7, capacityKilobytes, 4);
    PutAt(bytes, 15, extendedCapacity, 8);
    PutAt(bytes, 1, length, 1);
    bytes.resize(length);
    return WithStrings(bytes, {});
}

inline Bytes JoinBytes(const std::vector<Bytes>& parts) {
    Bytes all;
    for (const Bytes& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

}  // namespace kestrane
