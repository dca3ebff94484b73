#pragma once
// A colour as the program thinks of it: 0x00RRGGBB in one word, or the one value that means "transparent". The
// platform's colour word has red and blue the other way round; SwapRedBlue stands at every hand-over.
#include <cstdint>

namespace kestrane {

using ColorValue = std::uint32_t;

/// Transparent: the layer is not drawn. No other value has bit 24 set.
inline constexpr ColorValue ColorNone = 0x01000000;

/// Perceived brightness of `color`, 0 to 255.
std::int32_t Luminance(ColorValue color);

/// The colour on the way from `from` to `to`, channel by channel, rounded to the nearest. `t` is clamped to 0..1; a `t`
/// that is not a number counts as 0.
ColorValue BlendColor(ColorValue from, ColorValue to, double t);

/// Light grey (0xE0E0E0) on a background of a luminance below 128, dark grey (0x202020) on others.
ColorValue ContrastColor(ColorValue background);

/// `color` if its luminance is at least 90 away from that of `background`, otherwise `color` pulled towards the
/// background's contrast colour.
ColorValue ReadableColor(ColorValue color, ColorValue background);

/// 0x00RRGGBB to the platform's 0x00BBGGRR, and back. Only the low 24 bits pass.
ColorValue SwapRedBlue(ColorValue color);

}  // namespace kestrane
