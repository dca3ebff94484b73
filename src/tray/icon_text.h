#pragma once
// The arithmetic of the memory icon's text: does a font fit, where does its ink go, and how a white-on-black image of
// the text becomes coloured text with a soft edge over an icon that may be transparent.
#include <cstdint>
#include <span>
#include <string>

#include "settings/color.h"

namespace kestrane {

struct TextFont {
    std::wstring name;
    std::int32_t height;  // pixels
    bool bold;
};

/// The rows of a canvas that a text may use: `top` included, `bottom` not.
struct TextRows {
    std::int32_t top;
    std::int32_t bottom;
};

/// What a font says of itself and of a text, in pixels.
struct TextExtent {
    std::int32_t width;            // of the text
    std::int32_t height;           // of a line
    std::int32_t ascent;           // from the line's top to the base line
    std::int32_t internalLeading;  // the part of the ascent above the digits
};

/// At this height a font is taken whether it fits or not.
inline constexpr std::int32_t MinTextHeight = 5;

/// `top` clamped to 0..`size`, then `bottom` to `top`..`size`.
TextRows ClampTextRows(std::int32_t size, std::int32_t top, std::int32_t bottom);

/// The height of the digits themselves.
std::int32_t InkHeight(const TextExtent& extent);

/// Whether the text fits a canvas of `size` columns within `rows`.
bool TextFits(const TextExtent& extent, std::int32_t size, const TextRows& rows);

/// The y of the line's top edge that puts the ink at the bottom of the rows, or in their middle.
std::int32_t TextLineTop(const TextExtent& extent, const TextRows& rows, bool alignBottom);

/// Lays `color` over each pixel of `base` as far as the blue byte of `mask` covers it: source-over on straight alpha.
/// Both hold 0xAARRGGBB pixels of the same image size.
void ComposeCoverage(std::span<std::uint32_t> base, std::span<const std::uint32_t> mask, ColorValue color);

}  // namespace kestrane
