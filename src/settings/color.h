#pragma once
// The program's colours: 0x00RRGGBB, or the one value that means "transparent". A COLORREF has red and blue the other
// way round; convert with SwapRedBlue.
#include <cstdint>

namespace kestrane {

using ColorValue = std::uint32_t;

/// Transparent: the layer is not drawn. No other colour has bit 24 set.
inline constexpr ColorValue ColorNone = 0x01000000;

/// Perceived brightness of `color`, 0 to 255.
std::int32_t Luminance(ColorValue color);

/// Interpolates from `from` to `to`, channel by channel, rounded to nearest. `t` is clamped to 0..1; NaN counts as 0.
ColorValue BlendColor(ColorValue from, ColorValue to, double t);

/// Light grey (0xE0E0E0) for a background of luminance below 128, dark grey (0x202020) for others.
ColorValue ContrastColor(ColorValue background);

/// `color` if its luminance differs from that of `background` by at least 90, otherwise `color` blended towards the
/// background's contrast colour.
ColorValue ReadableColor(ColorValue color, ColorValue background);

/// 0x00RRGGBB to the platform's 0x00BBGGRR, and back. Only the low 24 bits are kept.
ColorValue SwapRedBlue(ColorValue color);

}  // namespace kestrane
