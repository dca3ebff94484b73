#pragma once
// Reads numbers out of the system's binary records at their documented offsets. No platform header is needed, so the
// same code runs on any machine.
#include <cstddef>
#include <cstdint>
#include <span>

namespace kestrane {

using ByteSpan = std::span<const std::uint8_t>;

/// The little-endian number of `Size` bytes at `offset`; 0 if it is not entirely within `bytes`.
template <std::size_t Size>
constexpr std::uint64_t LittleEndianAt(ByteSpan bytes, std::size_t offset) {
    static_assert(Size <= sizeof(std::uint64_t));
    if (offset > bytes.size() || bytes.size() - offset < Size) return 0;
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < Size; ++i)
        value |= std::uint64_t{bytes[offset + i]} << (8 * i);
    return value;
}

constexpr std::uint8_t U8At(ByteSpan bytes, std::size_t offset) {
    return static_cast<std::uint8_t>(LittleEndianAt<1>(bytes, offset));
}
constexpr std::uint16_t U16At(ByteSpan bytes, std::size_t offset) {
    return static_cast<std::uint16_t>(LittleEndianAt<2>(bytes, offset));
}
constexpr std::uint32_t U32At(ByteSpan bytes, std::size_t offset) {
    return static_cast<std::uint32_t>(LittleEndianAt<4>(bytes, offset));
}
constexpr std::uint64_t U64At(ByteSpan bytes, std::size_t offset) {
    return LittleEndianAt<8>(bytes, offset);
}

}  // namespace kestrane
