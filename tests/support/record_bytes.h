#pragma once
// Records as the system hands them over, put together byte by byte in tests, and handed on so that the sanitizer sees
// each byte read too many.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace kestrane {

using Bytes = std::vector<std::uint8_t>;

/// The lowest `size` bytes of a number, the lowest first, over what stands at `offset`.
inline void PutAt(Bytes& bytes, std::size_t offset, std::uint64_t value, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
        bytes.at(offset + i) = static_cast<std::uint8_t>(value >> (8 * i));
}

/// The same behind the last byte.
inline void Put(Bytes& bytes, std::uint64_t value, std::size_t size) {
    bytes.resize(bytes.size() + size);
    PutAt(bytes, bytes.size() - size, value, size);
}

/// A copy that is just as long as the bytes; a vector may have room behind its last one.
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
