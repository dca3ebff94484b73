#include "graph/hover.h"

#include <algorithm>

#include "graph/plot_layout.h"
#include "metrics/value_text.h"
#include "text/number_text.h"
#include "text/translation.h"

namespace kestrane {
namespace {

constexpr ColorValue DetailColor = 0xCFCFCF;
constexpr ColorValue TimeColor = 0x9A9A9A;
constexpr std::int32_t EdgeDistance = 3;  // between the box and the window's edge

TextLine SeriesLine(const std::wstring& name, const std::wstring& value, ColorValue color) {
    return {name + L": " + value, ReadableColor(color, HoverBoxColor)};
}

/// In activity mode this line would repeat the first two.
void AddActivityLine(std::vector<TextLine>& lines, const GraphSeries& series, std::uint64_t age) {
    if (age >= SeriesCount(series.activityRead)) return;
    lines.push_back(
        {FormatText(L"Actividad: L {0} · E {1}", {FormatPercentText(ValueAtAge(series.activityRead, age)),
                                                  FormatPercentText(ValueAtAge(series.activityWrite, age))}),
         DetailColor});
}

/// With a single disk these lines would repeat the first two. They show speeds in either mode.
void AddDiskLines(std::vector<TextLine>& lines, const GraphSeries& series, std::uint64_t age, wchar_t decimal) {
    if (series.disks == nullptr || series.disks->size() < 2) return;
    for (const DiskHistory& disk : *series.disks) {
        if (age >= disk.read.count) continue;
        lines.push_back(
            {FormatText(L"{0}: L {1} · E {2}", {disk.label, FormatByteRate(SampleAtAge(disk.read, age), decimal),
                                                FormatByteRate(SampleAtAgeOr(disk.write, age, 0.0), decimal)}),
             DetailColor});
    }
}

std::int64_t IndexAtAge(std::uint64_t length, std::uint64_t age) {
    return static_cast<std::int64_t>(length - age) - 1;
}

}  // namespace

std::int32_t HoverColumnIndex(std::int32_t x, std::int32_t firstX, std::int32_t lastX, std::uint64_t count) {
    if (x < firstX || x > lastX) return -1;
    const auto age = static_cast<std::uint64_t>(std::int64_t{lastX} - x);
    return age < count ? SaturateToInt32(IndexAtAge(count, age)) : -1;
}

std::uint64_t SecondsAgo(std::uint64_t length, std::int64_t index, std::uint32_t periodMs) {
    if (index < 0 || static_cast<std::uint64_t>(index) >= length) return 0;
    return ((length - static_cast<std::uint64_t>(index) - 1) * periodMs + 500) / 1000;
}

std::wstring TimeAgoText(std::uint64_t length, std::int64_t index, std::uint32_t periodMs) {
    return FormatText(L"hace {0} s", {FormatUnsigned(SecondsAgo(length, index, periodMs))});
}

std::vector<TextLine> PlotReadoutLines(const GraphView& view, const GraphSeries& series, std::uint64_t age,
                                       wchar_t decimal) {
    const auto value = [&](const SeriesRef& ref) {
        return FormatAxisValue(ValueAtAge(ref, age), view.isPercent, view.kind, decimal);
    };
    std::vector<TextLine> lines = {SeriesLine(view.firstName, value(view.first), view.firstColor)};
    if (view.twoSeries) lines.push_back(SeriesLine(view.secondName, value(view.second), view.secondColor));
    if (view.kind == GraphKind::Disk) {
        if (!view.isPercent) AddActivityLine(lines, series, age);
        AddDiskLines(lines, series, age, decimal);
    }
    const std::uint64_t history = PlotHistory(view);
    lines.push_back({TimeAgoText(history, IndexAtAge(history, age), series.periodMs), TimeColor});
    return lines;
}

std::vector<TextLine> CoreReadoutLines(const MetricRing<double>& ring, std::size_t processor, bool isPerformance,
                                       ColorValue color, std::uint64_t age, std::uint32_t periodMs) {
    const wchar_t* text = isPerformance ? L"Hilo {0} (rendimiento): {1}" : L"Hilo {0} (eficiencia): {1}";
    return {{FormatText(text, {FormatUnsigned(processor), FormatPercentText(SampleAtAgeOr(ring, age, 0.0))}),
             ReadableColor(color, HoverBoxColor)},
            {TimeAgoText(ring.count, IndexAtAge(ring.count, age), periodMs), TimeColor}};
}

Rect PlaceHoverBox(std::int32_t width, std::int32_t height, const Point& point, const HoverBoxText& text) {
    const auto [lineCount, lineHeight, maxWidth, inset] = text;
    const std::int32_t boxHeight = lineCount * lineHeight + 2 * inset;
    const bool fits = point.x + maxWidth + 4 * inset <= width - EdgeDistance;
    const std::int32_t besidePoint = fits ? point.x + 2 * inset : point.x - maxWidth - 4 * inset;
    const std::int32_t left = std::max(besidePoint, EdgeDistance);
    const std::int32_t lowest = std::max(EdgeDistance, height - boxHeight - EdgeDistance);
    const std::int32_t top = std::clamp(point.y - boxHeight - inset, EdgeDistance, lowest);
    return {left, top, left + maxWidth + 2 * inset, top + boxHeight};
}

}  // namespace kestrane
