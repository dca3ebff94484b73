#include "graph/graph_text_win32.h"

#include <algorithm>

#include "base/font_win32.h"
#include "base/geometry_win32.h"
#include "graph/legend.h"

namespace kestrane {
namespace {

void WriteText(HDC dc, std::int32_t x, std::int32_t y, const std::wstring& text, ColorValue color) {
    SetTextColor(dc, SwapRedBlue(color));
    TextOutW(dc, x, y, text.c_str(), static_cast<int>(text.size()));
}

std::vector<std::int32_t> TextWidths(HDC dc, const std::vector<TextLine>& lines) {
    std::vector<std::int32_t> widths;
    widths.reserve(lines.size());
    for (const TextLine& line : lines)
        widths.push_back(TextWidth(dc, line.text));
    return widths;
}

void DrawBox(HDC dc, const Rect& box) {
    const RECT rect = ToPlatform(box);
    const UniqueBrush fill(CreateSolidBrush(SwapRedBlue(HoverBoxColor)));
    const UniqueBrush frame(CreateSolidBrush(SwapRedBlue(HoverBoxFrameColor)));
    if (fill) FillRect(dc, &rect, fill.Get());
    if (frame) FrameRect(dc, &rect, frame.Get());
}

}  // namespace

UniqueFont CreateGraphFont(const GraphSettings& settings, std::uint32_t dpi) {
    return MakeFont(settings.font_name, ScaleForDpi(settings.font_size, dpi), settings.font_bold, CLEARTYPE_QUALITY);
}

void DrawTickLabels(HDC dc, const PlotScale& scale, std::int32_t textHeight, ColorValue color) {
    const PlotLayout& layout = scale.layout;
    SetTextAlign(dc, TA_RIGHT);
    for (const AxisTick& tick : scale.ticks) {
        const std::int32_t row = layout.plotBottom - ValueToHeight(tick.value, scale.maximum, scale.plotHeight);
        WriteText(dc, layout.labelRight + 1, row - textHeight / 2, tick.label, color);
    }
}

void DrawLegend(HDC dc, const std::vector<TextLine>& entries, const PlotLayout& layout, std::int32_t textHeight) {
    const std::vector<std::int32_t> positions =
        LegendPositions(TextWidths(dc, entries), layout.frameLeft, layout.frameRight, textHeight);
    SetTextAlign(dc, TA_LEFT | TA_TOP);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        WriteText(dc, positions[i], layout.legendY, entries[i].text, entries[i].color);
    }
}

void DrawHoverBox(HDC dc, std::int32_t width, std::int32_t height, const Point& point,
                  const std::vector<TextLine>& lines, std::int32_t lineHeight) {
    if (lines.empty()) return;
    const std::vector<std::int32_t> widths = TextWidths(dc, lines);
    const std::int32_t inset = std::max(4, lineHeight / 3);
    const HoverBoxText text = {.lineCount = static_cast<std::int32_t>(lines.size()),
                               .lineHeight = lineHeight,
                               .maxWidth = *std::max_element(widths.begin(), widths.end()),
                               .inset = inset};
    const Rect box = PlaceHoverBox(width, height, point, text);
    DrawBox(dc, box);
    SetTextAlign(dc, TA_LEFT | TA_TOP);
    std::int32_t top = box.top + inset;
    for (const TextLine& line : lines) {
        WriteText(dc, box.left + inset, top, line.text, line.color);
        top += lineHeight;
    }
}

}  // namespace kestrane
