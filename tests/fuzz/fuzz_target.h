#pragma once
// Shared by all fuzz targets. A target takes any bytes, feeds them to one parser and checks what must hold for all
// input. The same source serves twice: libFuzzer generates its input, and the program fuzz_seeds replays the files in
// seeds/<target>, where every finding is kept.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kestrane::fuzz {

using Bytes = std::span<const std::uint8_t>;
using Target = void (*)(Bytes);

/// Registers a target with fuzz_seeds.
bool RegisterTarget(const char* name, Target target);

/// Aborts if a rule does not hold; libFuzzer then keeps the input.
inline void Require(bool holds) {
    if (!holds) std::abort();
}

/// A byte below 0x80 is that character; any other forms one of 0x0080 to 0x7FFF with the next byte. So seeds are plain
/// text, yet all kinds of characters occur.
inline std::wstring WideText(Bytes bytes) {
    std::wstring text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        std::uint32_t unit = bytes[i];
        if (unit >= 0x80 && i + 1 < bytes.size()) unit = (unit & 0x7F) << 8 | bytes[++i];
        text += static_cast<wchar_t>(unit);
    }
    return text;
}

inline std::vector<std::wstring> WideLines(Bytes bytes) {
    std::vector<std::wstring> lines(1);
    for (const wchar_t c : WideText(bytes)) {
        if (c == L'\n') {
            lines.emplace_back();
        } else {
            lines.back() += c;
        }
    }
    return lines;
}

/// Reads the input in pieces, for targets that take numbers. Past the end it gives zeros.
class ByteSource {
  public:
    explicit ByteSource(Bytes input) : rest(input) {}

    bool Empty() const { return rest.empty(); }

    std::uint8_t Byte() {
        if (rest.empty()) return 0;
        const std::uint8_t byte = rest.front();
        rest = rest.subspan(1);
        return byte;
    }

    bool Flag() { return (Byte() & 1) != 0; }

    /// `count` bytes, big-endian.
    std::uint64_t Bits(int count) {
        std::uint64_t bits = 0;
        for (int i = 0; i < count; ++i)
            bits = bits << 8 | Byte();
        return bits;
    }

    /// A number from `low` to `high`, from two bytes.
    std::int32_t Number(std::int32_t low, std::int32_t high) {
        return low + static_cast<std::int32_t>(Bits(2)) % (high - low + 1);
    }

  private:
    Bytes rest;
};

}  // namespace kestrane::fuzz

#ifdef KESTRANE_FUZZ
#define FUZZ_TARGET(name)                                                               \
    static void name([[maybe_unused]] kestrane::fuzz::Bytes input);                     \
    extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);  \
    extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) { \
        name({data, size});                                                             \
        return 0;                                                                       \
    }                                                                                   \
    static void name([[maybe_unused]] kestrane::fuzz::Bytes input)
#else
#define FUZZ_TARGET(name)                                                                         \
    static void name([[maybe_unused]] kestrane::fuzz::Bytes input);                               \
    [[maybe_unused]] static const bool registered = kestrane::fuzz::RegisterTarget(#name, &name); \
    static void name([[maybe_unused]] kestrane::fuzz::Bytes input)
#endif
