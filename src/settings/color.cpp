#include "settings/color.h"

#include <cmath>
#include <cstdlib>

namespace kestrane {
namespace {

constexpr unsigned RedShift = 16;
constexpr unsigned GreenShift = 8;
constexpr unsigned BlueShift = 0;

constexpr std::int32_t ReadableDifference = 90;
constexpr double ReadablePull = 0.45;

std::int32_t Channel(ColorValue color, unsigned shift) {
    return static_cast<std::int32_t>((color >> shift) & 0xFF);
}

ColorValue BlendChannel(ColorValue from, ColorValue to, double t, unsigned shift) {
    const std::int32_t start = Channel(from, shift);
    const std::int32_t distance = Channel(to, shift) - start;
    return static_cast<ColorValue>(std::trunc(distance * t + start + 0.5)) << shift;
}

// Written so that NaN takes the first return.
double ClampToUnit(double t) {
    if (!(t > 0.0)) return 0.0;
    return t < 1.0 ? t : 1.0;
}

}  // namespace

std::int32_t Luminance(ColorValue color) {
    return (Channel(color, RedShift) * 299 + Channel(color, GreenShift) * 587 + Channel(color, BlueShift) * 114) / 1000;
}

ColorValue BlendColor(ColorValue from, ColorValue to, double t) {
    const double part = ClampToUnit(t);
    return BlendChannel(from, to, part, RedShift) | BlendChannel(from, to, part, GreenShift) |
           BlendChannel(from, to, part, BlueShift);
}

ColorValue ContrastColor(ColorValue background) {
    return Luminance(background) < 128 ? 0xE0E0E0 : 0x202020;
}

ColorValue ReadableColor(ColorValue color, ColorValue background) {
    if (std::abs(Luminance(color) - Luminance(background)) >= ReadableDifference) return color;
    return BlendColor(color, ContrastColor(background), ReadablePull);
}

ColorValue SwapRedBlue(ColorValue color) {
    return (color & 0xFF) << RedShift | (color & 0xFF00) | ((color >> RedShift) & 0xFF);
}

}  // namespace kestrane
