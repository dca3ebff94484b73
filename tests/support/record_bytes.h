#pragma once
// System records, built byte by byte in tests and passed on so that the sanitizer catches every read past the end.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace kestrane {

using Bytes = std::vector<std::uint8_t>;

/// Overwrites the bytes at `offset` with the low `size` bytes of `value`, little-endian.
inline void PutAt(Bytes& bytes, std::size_t offset, std::uint64_t value, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
        bytes.at(offset + i) = static_cast<std::uint8_t>(value >> (8 * i));
}

/// Appends them instead.
inline void Put(Bytes& bytes, std::uint64_t value, std::size_t size) {
    bytes.resize(bytes.size() + size);
    PutAt(bytes, bytes.size() - size, value, size);
}

/// A copy of exactly the right size; a vector may have spare capacity after its last byte.
class ExactCopy {
  public:
    explicit ExactCopy(const Bytes& bytes)
        : copy_(std::make_unique<std::uint8_t[]>(bytes.size())), size_(bytes.size()) {
        std::ranges::copy(bytes, copy_.get());
    }

    std::span<const std::uint8_t> Span() const { return {copy_.get(), size_}; }

  private:
    std::unique_ptr<std::uint8_t[]> copy_;
    std::size_t size_;
};

}  // namespace kestrane
