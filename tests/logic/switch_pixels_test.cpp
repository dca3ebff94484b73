#include "dialog/switch_pixels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "support/pixel_picture.h"

namespace kestrane {
namespace {

constexpr ColorValue Face = 0xF0F0F0;
constexpr ColorValue On = 0x0A6FD6;
constexpr ColorValue Off = 0xC7C7CC;
constexpr ColorValue Knob = 0xFFFFFF;

std::uint32_t PixelAt(const SwitchImage& image, std::int32_t x, std::int32_t y) {
    return image.pixels[static_cast<std::size_t>(y * image.width + x)];
}

/// `parts` sixteenths of `to` over `from`.
ColorValue Mixed(ColorValue from, ColorValue to, std::uint32_t parts) {
    ColorValue mixed = 0;
    for (const unsigned shift : {16U, 8U, 0U}) {
        const std::uint32_t sum = (from >> shift & 0xFF) * (16 - parts) + (to >> shift & 0xFF) * parts;
        mixed |= (sum + 8) / 16 << shift;
    }
    return mixed;
}

/// '.' the face, '-' the track, '@' the knob, '?' a mixture.
PixelLegend PlainLegend(ColorValue track) {
    return {{Face, '.'}, {track, '-'}, {Knob, '@'}};
}

/// The same, with the share of each mixture: 1 to f sixteenths of track over face, A to O sixteenths of knob over
/// track.
PixelLegend ExactLegend(ColorValue track) {
    PixelLegend legend = PlainLegend(track);
    for (std::uint32_t parts = 1; parts < 16; ++parts) {
        legend.emplace_back(Mixed(Face, track, parts), "0123456789abcdef"[parts]);
        legend.emplace_back(Mixed(track, Knob, parts), "@ABCDEFGHIJKLMNO"[parts]);
    }
    return legend;
}

std::string Picture(const SwitchImage& image, const PixelLegend& legend) {
    return PixelPicture(image.pixels, static_cast<std::size_t>(image.width), legend);
}

std::string UpperHalf(const SwitchImage& image, const PixelLegend& legend) {
    return PixelPicture(std::span(image.pixels).first(image.pixels.size() / 2), static_cast<std::size_t>(image.width),
                        legend);
}

TEST(SwitchPixels, OnTheKnobIsAtTheRightWithoutARing) {
    EXPECT_EQ(Picture(PaintSwitchTrack(true, Face, 96), ExactLegend(On)), R"(
....3ae--------------ea3....
..19--------------------91..
.1d--------------GM@@MG--d1.
.9-------------AM@@@@@@MA-9.
3--------------M@@@@@@@@M--3
a-------------G@@@@@@@@@@G-a
e-------------M@@@@@@@@@@M-e
--------------@@@@@@@@@@@@--
--------------@@@@@@@@@@@@--
e-------------M@@@@@@@@@@M-e
a-------------G@@@@@@@@@@G-a
3--------------M@@@@@@@@M--3
.9-------------AM@@@@@@MA-9.
.1d--------------GM@@MG--d1.
..19--------------------91..
....3ae--------------ea3....
)");
}

TEST(SwitchPixels, OffTheKnobIsAtTheLeftInARing) {
    EXPECT_EQ(Picture(PaintSwitchTrack(false, Face, 96), PlainLegend(Off)), R"(
....???--------------???....
..??-??????-------------??..
.??????@@????------------??.
.????@@@@@@???------------?.
?-??@@@@@@@@??-------------?
???@@@@@@@@@@??------------?
???@@@@@@@@@@??------------?
-?@@@@@@@@@@@@?-------------
-?@@@@@@@@@@@@?-------------
???@@@@@@@@@@??------------?
???@@@@@@@@@@??------------?
?-??@@@@@@@@??-------------?
.????@@@@@@???------------?.
.??????@@????------------??.
..??-??????-------------??..
....???--------------???....
)");
}

// The figures follow from which of the 16 samples are in which shape.
TEST(SwitchPixels, TheRingIsThinnerThanAPixel) {
    const SwitchImage off = PaintSwitchTrack(false, Face, 96);
    EXPECT_EQ(PixelAt(off, 1, 8), 0xB1B1B5U) << "half ring, half track";
    EXPECT_EQ(PixelAt(off, 3, 4), 0xECECEDU) << "mostly knob, with a little of the ring";
    EXPECT_EQ(PixelAt(off, 3, 3), 0xA9A9ADU) << "three quarters ring";
    EXPECT_EQ(PixelAt(PaintSwitchTrack(true, Face, 96), 26, 8), On) << "no ring when on";
}

TEST(SwitchPixels, IsLargerAtAHigherDpi) {
    EXPECT_EQ(UpperHalf(PaintSwitchTrack(true, Face, 144), PlainLegend(On)), R"(
.......????--------------------????.......
.....??----------------------------??.....
....??------------------------------??....
...?----------------------???@@???----?...
..?---------------------??@@@@@@@@??---?..
.??--------------------??@@@@@@@@@@??--??.
.?--------------------??@@@@@@@@@@@@??--?.
?---------------------?@@@@@@@@@@@@@@?---?
?--------------------?@@@@@@@@@@@@@@@@?--?
?--------------------?@@@@@@@@@@@@@@@@?--?
?--------------------?@@@@@@@@@@@@@@@@?--?
---------------------@@@@@@@@@@@@@@@@@@---
)");
    EXPECT_EQ(UpperHalf(PaintSwitchTrack(false, Face, 192), PlainLegend(Off)), R"(
..........????----------------------------????..........
........??------------------------------------??........
......??----------------------------------------??......
.....??-----????????-----------------------------??.....
....??----?????@@?????----------------------------??....
...??---???@@@@@@@@@@???---------------------------??...
..??---???@@@@@@@@@@@@???---------------------------??..
..?---??@@@@@@@@@@@@@@@@??---------------------------?..
.?---??@@@@@@@@@@@@@@@@@@??---------------------------?.
.?---??@@@@@@@@@@@@@@@@@@??---------------------------?.
?---??@@@@@@@@@@@@@@@@@@@@??---------------------------?
?---?@@@@@@@@@@@@@@@@@@@@@@?---------------------------?
?--??@@@@@@@@@@@@@@@@@@@@@@??--------------------------?
?--??@@@@@@@@@@@@@@@@@@@@@@??--------------------------?
---??@@@@@@@@@@@@@@@@@@@@@@??---------------------------
---?@@@@@@@@@@@@@@@@@@@@@@@@?---------------------------
)");
}

TEST(SwitchPixels, TheLowerHalfMirrorsTheUpper) {
    for (const std::uint32_t dpi : {96U, 120U, 144U, 192U}) {
        for (const bool on : {false, true}) {
            const SwitchImage image = PaintSwitchTrack(on, Face, dpi);
            EXPECT_EQ(image.width, static_cast<std::int32_t>(28 * dpi / 96));
            EXPECT_EQ(image.height, static_cast<std::int32_t>(16 * dpi / 96));
            ASSERT_EQ(image.pixels.size(), static_cast<std::size_t>(image.width * image.height));
            for (std::int32_t y = 0; y < image.height / 2; ++y) {
                for (std::int32_t x = 0; x < image.width; ++x)
                    ASSERT_EQ(PixelAt(image, x, y), PixelAt(image, x, image.height - 1 - y)) << x << ", " << y;
            }
        }
    }
}

TEST(SwitchPixels, OutsideTheTrackIsTheFaceAndNothingElse) {
    const SwitchImage red = PaintSwitchTrack(true, 0xFF0000, 96);
    EXPECT_EQ(PixelAt(red, 0, 0), 0xFF0000U);
    EXPECT_EQ(PixelAt(red, 4, 0), Mixed(0xFF0000, On, 3));
    EXPECT_TRUE(std::ranges::all_of(red.pixels, [](std::uint32_t pixel) { return pixel <= 0xFFFFFF; }));
}

}  // namespace
}  // namespace kestrane
