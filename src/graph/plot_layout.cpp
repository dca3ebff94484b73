#include "graph/plot_layout.h"

#include <algorithm>
#include <limits>

#include "metrics/value_text.h"
#include "text/number_text.h"

namespace kestrane {
namespace {

/// Clamped: converting NaN or a value out of range would be undefined.
std::uint64_t ToUnsigned64(double value) {
    constexpr double tooLarge = 18446744073709551616.0;  // 2^64
    if (!(value > 0)) return 0;
    return value < tooLarge ? static_cast<std::uint64_t>(value) : std::numeric_limits<std::uint64_t>::max();
}

}  // namespace

PlotLayout ComputePlotLayout(std::int32_t width, std::int32_t height, std::int32_t margin, std::int32_t textHeight,
                             std::int32_t labelWidth) {
    PlotLayout layout;
    layout.frameLeft = margin + 1;
    layout.frameRight = width - margin - 1;
    layout.legendY = height - margin - textHeight - 1;
    layout.plotTop = margin + 1 + textHeight / 2;
    layout.plotBottom = std::max(height - 2 * margin - textHeight - 2, layout.plotTop);
    layout.labelRight = labelWidth + 1 + margin;
    layout.axisX = labelWidth + 2 + margin;
    layout.plotLeft = labelWidth + 3 + margin;
    layout.plotRight = width - margin - 2;
    return layout;
}

std::int32_t PlotColumns(const PlotLayout& layout) {
    return std::max(layout.plotRight - layout.plotLeft + 1, 0);
}

std::int32_t ValueToHeight(double value, double maximum, std::int32_t height) {
    if (!(value > 0) || !(maximum > 0) || height < 1) return 0;
    const double scaled = RoundHalfAway(height * value / maximum);
    return scaled < height ? static_cast<std::int32_t>(scaled) : height;
}

std::int32_t CurveRow(std::int32_t bottom, std::int32_t height) {
    return bottom - std::max(height, 1);
}

std::int32_t RateTickCount(std::int32_t plotHeight, std::int32_t textHeight) {
    return std::clamp(plotHeight / std::max(textHeight * 3 / 2, 1), 1, 8);
}

std::vector<std::int32_t> PercentTicks(std::int32_t plotHeight, std::int32_t textHeight) {
    const double spacing = textHeight * 1.5;
    if (plotHeight >= 4 * spacing) return {25, 50, 75, 100};
    if (plotHeight >= 2 * spacing) return {50, 100};
    return {100};
}

std::wstring FormatAxisValue(double value, bool isPercent, GraphKind kind, wchar_t decimal) {
    if (isPercent) return FormatPercentText(value);
    if (kind == GraphKind::Network) return FormatBitRate(ToUnsigned64(value), decimal);
    return FormatByteRate(value, decimal);
}

}  // namespace kestrane
