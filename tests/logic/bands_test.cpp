// Bands are invisible: every row is in exactly one, and columns drawn in bands look as if drawn at once.
#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "graph/pixel_buffer.h"

namespace kestrane {
namespace {

struct Picture {
    Picture(std::int32_t width, std::int32_t height)
        : pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {
        buffer.width = width;
        buffer.height = height;
        buffer.bits = pixels.data();
    }

    std::vector<std::uint32_t> pixels;
    PixelBuffer buffer;
};

struct Rows {
    const char* what;
    std::int32_t height;
    std::int32_t top;
    std::int32_t bottom;
};

class Bands : public testing::TestWithParam<Rows> {};

TEST_P(Bands, CoverEachRowOnceAndNoOther) {
    const Rows& rows = GetParam();
    Picture picture(1, rows.height);
    DrawInBands(picture.buffer, rows.top, rows.bottom, [&](const PixelBuffer& band, std::int32_t top) {
        EXPECT_LE(band.height, BandRows);
        EXPECT_EQ(band.bits, picture.buffer.bits + top);
        for (std::int32_t y = 0; y < band.height; ++y)
            ++band.bits[y];
    });
    for (std::int32_t y = 0; y < rows.height; ++y)
        EXPECT_EQ(picture.pixels[static_cast<std::size_t>(y)], y >= rows.top && y < rows.bottom ? 1u : 0u) << y;
}

INSTANTIATE_TEST_SUITE_P(, Bands,
                         testing::Values(Rows{"none", 10, 5, 5}, Rows{"upside down", 10, 6, 5},
                                         Rows{"one row", 10, 5, 6}, Rows{"a whole band", BandRows, 0, BandRows},
                                         Rows{"one row more", BandRows + 1, 0, BandRows + 1},
                                         Rows{"three bands and a rest", 120, 3, 3 + 3 * BandRows + 7},
                                         Rows{"beyond both ends", 70, -5, 1000}));

TEST(BandedColumns, LookAsIfDrawnAtOnce) {
    constexpr std::int32_t Width = 40;
    constexpr std::int32_t Height = 100;
    constexpr std::int32_t Bottom = 97;
    const auto drawColumns = [](const PixelBuffer& buffer, std::int32_t bottom) {
        for (std::int32_t x = 0; x < Width; ++x) {
            FillPixels(buffer, x, bottom - 2 * x, x + 1, bottom, 0x102030);
            BlendColumn(buffer, x, bottom - 3 * x, bottom, 0xFFFFFF, 0.5);
        }
    };
    Picture whole(Width, Height);
    drawColumns(whole.buffer, Bottom);
    Picture banded(Width, Height);
    DrawInBands(banded.buffer, 0, Height,
                [&](const PixelBuffer& band, std::int32_t top) { drawColumns(band, Bottom - top); });
    EXPECT_EQ(banded.pixels, whole.pixels);
}

}  // namespace
}  // namespace kestrane
