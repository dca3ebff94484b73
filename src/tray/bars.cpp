#include "tray/bars.h"

#include <algorithm>

namespace kestrane {
namespace {

/// The number of columns for a history of `count` samples.
std::int32_t ColumnCount(const Canvas& canvas, std::uint64_t count) {
    return static_cast<std::int32_t>(std::min<std::uint64_t>(static_cast<std::uint64_t>(canvas.size), count));
}

std::int32_t PercentAtAge(const MetricRing<std::int32_t>& ring, std::int32_t age) {
    return std::clamp(SampleAtAgeOr(ring, static_cast<std::uint64_t>(age), 0), 0, 100);
}

/// `percent` % of `length` pixels, rounded.
std::int32_t PercentOf(std::int32_t length, std::int32_t percent) {
    return static_cast<std::int32_t>((std::int64_t{length} * percent + 50) / 100);
}

void DrawPercentColumn(Canvas& canvas, std::int32_t x, std::int32_t percent, ColorValue color) {
    if (percent == 0) return;
    const std::int32_t bottom = canvas.size - 1;
    VerticalLine(canvas, x, bottom - PercentOf(bottom, percent), bottom, color);
}

/// Draws the rows above `below` up to `top`, counted from 1 at the bottom.
void DrawRateRows(Canvas& canvas, std::int32_t x, std::int32_t below, std::int32_t top, ColorValue color) {
    if (color == ColorNone || top <= below) return;
    VerticalLine(canvas, x, canvas.size - top, canvas.size - below - 1, color);
}

}  // namespace

void DrawBars(Canvas& canvas, const MetricRing<std::int32_t>& ring, ColorValue color) {
    const std::int32_t n = ColumnCount(canvas, ring.count);
    for (std::int32_t age = 0; age < n; ++age) {
        DrawPercentColumn(canvas, canvas.size - age - 1, PercentAtAge(ring, age), color);
    }
}

void DrawPairedBars(Canvas& canvas, const MetricRing<std::int32_t>& ringA, ColorValue colorA,
                    const MetricRing<std::int32_t>& ringB, ColorValue colorB) {
    const std::int32_t n = ColumnCount(canvas, std::max(ringA.count, ringB.count));
    for (std::int32_t age = 0; age < n; ++age) {
        const std::int32_t x = canvas.size - age - 1;
        const std::int32_t a = PercentAtAge(ringA, age);
        const std::int32_t b = PercentAtAge(ringB, age);
        const bool tallerIsB = a < b;
        DrawPercentColumn(canvas, x, std::max(a, b), tallerIsB ? colorB : colorA);
        DrawPercentColumn(canvas, x, std::min(a, b), tallerIsB ? colorA : colorB);
    }
}

std::int32_t ScaleToHeight(std::uint64_t value, std::uint64_t scale, std::int32_t height, std::int32_t percent) {
    if (scale == 0 || height < 1) return 0;
    const double rows = static_cast<double>(value) / static_cast<double>(scale) * height * percent / 100 + 0.5;
    return static_cast<std::int32_t>(std::clamp(rows, 0.0, static_cast<double>(height)));
}

void DrawNetworkBars(Canvas& canvas, const MetricRing<std::uint64_t>& down, const MetricRing<std::uint64_t>& up,
                     std::uint64_t scale, ColorValue colorDown, ColorValue colorUp, ColorValue colorBoth) {
    const std::int32_t n = ColumnCount(canvas, std::max(down.count, up.count));
    const auto height = [&](const MetricRing<std::uint64_t>& ring, std::int32_t age) {
        const auto rate = SampleAtAgeOr<std::uint64_t>(ring, static_cast<std::uint64_t>(age), 0);
        return ScaleToHeight(rate, scale, canvas.size, 100);
    };
    for (std::int32_t age = 0; age < n; ++age) {
        const std::int32_t x = canvas.size - age - 1;
        const std::int32_t downRows = height(down, age);
        const std::int32_t upRows = height(up, age);
        const std::int32_t both = std::min(downRows, upRows);
        DrawRateRows(canvas, x, 0, both, colorBoth);
        DrawRateRows(canvas, x, both, std::max(downRows, upRows), downRows < upRows ? colorUp : colorDown);
    }
}

std::int32_t LevelBarHeight(const Canvas& canvas) {
    return std::max(canvas.size / 4, 4);
}

void DrawLevelBar(Canvas& canvas, const Rect& bar, std::int32_t percent, ColorValue trackColor, ColorValue fillColor) {
    if (RectWidth(bar) < 3 || RectHeight(bar) < 3) return;
    DrawOutline(canvas, bar, trackColor);
    const std::int32_t filled = PercentOf(RectWidth(bar) - 2, std::clamp(percent, 0, 100));
    FillRectangle(canvas, {bar.left + 1, bar.top + 1, bar.left + 1 + filled, bar.bottom - 1}, fillColor);
}

}  // namespace kestrane
