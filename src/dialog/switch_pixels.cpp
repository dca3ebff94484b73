#include "dialog/switch_pixels.h"

#include <algorithm>
#include <array>

#include "base/geometry.h"

namespace kestrane {
namespace {

constexpr ColorValue TrackOn = 0x0A6FD6;
constexpr ColorValue TrackOff = 0xC7C7CC;
constexpr ColorValue Knob = 0xFFFFFF;
constexpr ColorValue KnobRing = 0x9A9A9E;  // sets the knob off from the pale track

constexpr std::int32_t KnobMargin = 2;  // to the edge of the track, at 96 DPI
constexpr double RingWidth = 0.6;

// A pixel is the mean of 4 by 4 samples, each in the middle of its part.
constexpr std::array<double, 4> Samples{0.125, 0.375, 0.625, 0.875};
constexpr std::uint32_t SampleCount = Samples.size() * Samples.size();

/// Whether (dx, dy) is at most `radius` long. No root is needed: samples lie on odd eighths of a pixel, so that none is
/// exactly on an edge.
bool Reaches(double dx, double dy, double radius) {
    return dx * dx + dy * dy <= radius * radius;
}

/// The shapes of a switch, in pixels.
struct Shape {
    bool on;
    ColorValue face;
    double radius;  // of the track's round ends
    double left;    // centre of the left end
    double right;   // centre of the right end
    double knob_radius;
};

ColorValue SampleAt(const Shape& shape, double x, double y) {
    const double dy = y - shape.radius;
    const double toKnob = x - (shape.on ? shape.right : shape.left);
    if (Reaches(toKnob, dy, shape.knob_radius)) return Knob;
    if (!shape.on && Reaches(toKnob, dy, shape.knob_radius + RingWidth)) return KnobRing;
    const double toTrack = x - std::clamp(x, shape.left, shape.right);
    if (!Reaches(toTrack, dy, shape.radius)) return shape.face;
    return shape.on ? TrackOn : TrackOff;
}

std::uint32_t PixelAt(const Shape& shape, std::int32_t x, std::int32_t y) {
    std::uint32_t red = 0;
    std::uint32_t green = 0;
    std::uint32_t blue = 0;
    for (const double offsetY : Samples) {
        for (const double offsetX : Samples) {
            const ColorValue color = SampleAt(shape, x + offsetX, y + offsetY);
            red += color >> 16 & 0xFF;
            green += color >> 8 & 0xFF;
            blue += color & 0xFF;
        }
    }
    const auto mean = [](std::uint32_t sum) { return (sum + SampleCount / 2) / SampleCount; };
    return mean(red) << 16 | mean(green) << 8 | mean(blue);
}

}  // namespace

SwitchImage PaintSwitchTrack(bool on, ColorValue face, std::uint32_t dpi) {
    SwitchImage image{ScaleForDpi(SwitchWidth, dpi), ScaleForDpi(SwitchHeight, dpi), {}};
    const double radius = image.height / 2.0;
    const Shape shape{on, face, radius, radius, image.width - radius, radius - ScaleForDpi(KnobMargin, dpi)};
    image.pixels.reserve(static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height));
    for (std::int32_t y = 0; y < image.height; ++y) {
        for (std::int32_t x = 0; x < image.width; ++x)
            image.pixels.push_back(PixelAt(shape, x, y));
    }
    return image;
}

}  // namespace kestrane
