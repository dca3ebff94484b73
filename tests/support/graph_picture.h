#pragma once
// A graph's pixels as rows of characters, so that a test can show the picture it expects:
//
//     Picture canvas(5, 3);
//     FillPixels(canvas.Buffer(), ...);
//     EXPECT_EQ(canvas.Rows({{0, '.'}, {0xFF0000, 'r'}}), (Strings{".....", ".rr..", "....."}));
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "graph/pixel_buffer.h"
#include "support/pixel_picture.h"

namespace kestrane {

using Strings = std::vector<std::string>;

/// One letter per colour.
using Letters = PixelLegend;

inline Strings RowsOf(const PixelBuffer& buffer, const Letters& letters) {
    Strings rows;
    for (std::int32_t y = 0; y < buffer.height; ++y) {
        std::string row;
        for (std::int32_t x = 0; x < buffer.width; ++x) {
            row += PixelLetter(buffer.bits[static_cast<std::ptrdiff_t>(y) * buffer.width + x], letters);
        }
        rows.push_back(row);
    }
    return rows;
}

class Picture {
  public:
    Picture(std::int32_t width, std::int32_t height, std::uint32_t color = 0)
        : width_(width),
          height_(height),
          pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), color) {}

    PixelBuffer Buffer() { return {width_, height_, nullptr, nullptr, nullptr, pixels_.data()}; }
    Strings Rows(const Letters& letters) { return RowsOf(Buffer(), letters); }
    std::uint32_t At(std::int32_t x, std::int32_t y) const {
        return pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)];
    }

  private:
    std::int32_t width_;
    std::int32_t height_;
    std::vector<std::uint32_t> pixels_;
};

}  // namespace kestrane
