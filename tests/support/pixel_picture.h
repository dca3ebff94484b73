#pragma once
// Pixels as rows of characters, so that a test can show the image it expects:
//
//     EXPECT_EQ(PixelPicture(canvas.pixels, 4, {{0, '.'}, {0xFFFF0000, 'r'}}), R"(
//     ....
//     .rr.
//     )");
//
// The picture begins with a line feed and each row ends in one, to match a raw string that starts on its own line.
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace kestrane {

/// One letter per expected colour; any other colour shows as '?'.
using PixelLegend = std::vector<std::pair<std::uint32_t, char>>;

inline char PixelLetter(std::uint32_t pixel, const PixelLegend& legend) {
    for (const auto& [color, letter] : legend) {
        if (color == pixel) return letter;
    }
    return '?';
}

/// The rows of an image of `width` columns, top row first. The last row is short if the pixels do not fill it.
inline std::string PixelPicture(std::span<const std::uint32_t> pixels, std::size_t width, const PixelLegend& legend) {
    std::string picture = "\n";
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        picture += PixelLetter(pixels[i], legend);
        if ((i + 1) % width == 0 || i + 1 == pixels.size()) picture += '\n';
    }
    return picture;
}

}  // namespace kestrane
