// Bands are invisible: every row is in exactly one, and columns look the same as when drawn in one piece.
#include <gtest/gtest.h>

#include <vector>

#include "graph/pixel_buffer.h"
#include "support/graph_picture.h"

namespace kestrane {
namespace {

TEST(DrawInBands, CoversEachRowOnceAndNoOther) {
    struct Row {
        const char* reason;
        std::int32_t height;
        std::int32_t top, bottom;
    };
    const std::vector<Row> rows = {
        {"none", 10, 5, 5},
        {"upside down", 10, 6, 5},
        {"one row", 10, 5, 6},
        {"a whole band", BandRows, 0, BandRows},
        {"one row more", BandRows + 1, 0, BandRows + 1},
        {"three bands and a rest", 120, 3, 3 + 3 * BandRows + 7},
        {"beyond both ends", 70, -5, 1000},
    };
    for (const Row& row : rows) {
        Picture picture(1, row.height);
        const std::uint32_t* first = picture.Buffer().bits;
        DrawInBands(picture.Buffer(), row.top, row.bottom, [&](const PixelBuffer& band, std::int32_t top) {
            EXPECT_LE(band.height, BandRows) << row.reason;
            EXPECT_EQ(band.bits, first + top) << row.reason;
            for (std::int32_t y = 0; y < band.height; ++y)
                ++band.bits[y];
        });
        for (std::int32_t y = 0; y < row.height; ++y)
            EXPECT_EQ(picture.At(0, y), y >= row.top && y < row.bottom ? 1U : 0U) << row.reason << ", row " << y;
    }
}

TEST(DrawInBands, ColumnsLookAsIfDrawnAtOnce) {
    constexpr std::int32_t width = 40;
    constexpr std::int32_t height = 100;
    constexpr std::int32_t baseline = 97;
    const auto drawColumns = [](const PixelBuffer& buffer, std::int32_t bottom) {
        for (std::int32_t x = 0; x < width; ++x) {
            FillPixels(buffer, {x, bottom - 2 * x, x + 1, bottom}, 0x102030);
            BlendColumn(buffer, x, bottom - 3 * x, bottom, 0xFFFFFF, 0.5);
        }
    };
    Picture whole(width, height);
    drawColumns(whole.Buffer(), baseline);
    Picture banded(width, height);
    DrawInBands(banded.Buffer(), 0, height,
                [&](const PixelBuffer& band, std::int32_t top) { drawColumns(band, baseline - top); });
    for (std::int32_t y = 0; y < height; ++y) {
        for (std::int32_t x = 0; x < width; ++x)
            ASSERT_EQ(banded.At(x, y), whole.At(x, y)) << "column " << x << ", row " << y;
    }
}

}  // namespace
}  // namespace kestrane
