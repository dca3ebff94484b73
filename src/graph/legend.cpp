#include "graph/legend.h"

#include <algorithm>
#include <numeric>

#include "metrics/value_text.h"
#include "text/translation.h"

namespace kestrane {
namespace {

double GreatestValue(double greatest, const SeriesRef& series, std::uint64_t n) {
    for (std::uint64_t age = 0; age < n; ++age) {
        const double value = ValueAtAge(series, age);
        if (value > greatest) greatest = value;
    }
    return greatest;
}

}  // namespace

std::vector<TextLine> PlotLegend(const GraphView& view, std::uint64_t n, wchar_t decimal) {
    const auto text = [&](double value) { return FormatAxisValue(value, view.isPercent, view.kind, decimal); };
    double greatest = GreatestValue(0, view.first, n);
    if (view.twoSeries) greatest = GreatestValue(greatest, view.second, n);

    std::vector<TextLine> entries = {{FormatText(L"(Máx: {0})", {text(greatest)}), view.contrast},
                                     {view.firstName + L": " + text(ValueAtAge(view.first, 0)), view.firstLegendColor}};
    if (view.twoSeries) {
        entries.push_back({view.secondName + L": " + text(ValueAtAge(view.second, 0)), view.secondLegendColor});
    }
    return entries;
}

std::vector<TextLine> CoreGridLegend(const GraphView& view, double coreMax) {
    return {{FormatText(L"(Máx núcleo: {0})", {FormatPercentText(coreMax)}), view.contrast},
            {L"CPU: " + FormatPercentText(ValueAtAge(view.first, 0)), view.firstLegendColor}};
}

std::vector<std::int32_t> LegendPositions(const std::vector<std::int32_t>& widths, std::int32_t frameLeft,
                                          std::int32_t frameRight, std::int32_t textHeight) {
    const std::int32_t gap = std::max(6, textHeight / 2);
    const std::int32_t gaps = gap * (static_cast<std::int32_t>(widths.size()) - 1);
    const std::int32_t total = std::accumulate(widths.begin(), widths.end(), gaps);
    std::int32_t x = frameLeft + std::max(0, (frameRight - total - frameLeft) / 2);
    std::vector<std::int32_t> positions;
    for (const std::int32_t width : widths) {
        positions.push_back(x);
        x += width + gap;
    }
    return positions;
}

}  // namespace kestrane
