#pragma once
// The arithmetic of the memory icon's text: whether a font fits, where its ink goes, and how a white-on-black image of
// the text becomes anti-aliased coloured text on an icon that may be transparent.
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

/// The rows of a canvas that a text may use; `bottom` is exclusive.
struct TextRows {
    std::int32_t top;
    std::int32_t bottom;
};

/// Font and text metrics in pixels.
struct TextExtent {
    std::int32_t width;            // of the text
    std::int32_t height;           // of a line
    std::int32_t ascent;           // from the line's top to the baseline
    std::int32_t internalLeading;  // the part of the ascent above the digits
};

/// At this height a font is used whether it fits or not.
inline constexpr std::int32_t MinTextHeight = 5;

/// `top` clamped to 0..`size`, then `bottom` to `top`..`size`.
TextRows ClampTextRows(std::int32_t size, std::int32_t top, std::int32_t bottom);

/// The height of the digits themselves.
std::int32_t InkHeight(const TextExtent& extent);

/// Whether the text fits a canvas of `size` columns within `rows`.
bool TextFits(const TextExtent& extent, std::int32_t size, const TextRows& rows);

/// The top of the line that puts the ink at the bottom of the rows, or in their middle.
std::int32_t TextLineTop(const TextExtent& extent, const TextRows& rows, bool alignBottom);

/// Draws `color` over `base` with the blue byte of `mask` as coverage: source-over on straight alpha. Both hold
/// 0xAARRGGBB pixels of images of the same size.
void ComposeCoverage(std::span<std::uint32_t> base, std::span<const std::uint32_t> mask, ColorValue color);

}  // namespace kestrane
