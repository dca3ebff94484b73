#include "graph/graph_painter_win32.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "base/font_win32.h"
#include "base/geometry_win32.h"
#include "base/handles_win32.h"
#include "graph/core_grid_plot.h"
#include "graph/graph_bitmap_win32.h"
#include "graph/graph_plot.h"
#include "graph/graph_text_win32.h"
#include "graph/legend.h"
#include "metrics/value_text_win32.h"

namespace kestrane {
namespace {

/// The context of one paint, shared by its steps.
struct Paint {
    const PixelBuffer& pixels;
    const GraphView& view;
    const AppSettings& settings;
    const GraphSeries& series;
    const HoverState& hover;
    PlotFrame frame;
    std::uint32_t dpi;
};

void DrawPolyline(HDC dc, const PlotLine& line, std::int32_t width) {
    if (line.points.size() < 2) return;
    const UniquePen pen(CreatePen(PS_SOLID, width, SwapRedBlue(line.color)));
    const SelectedObject selected(dc, pen.Get());
    if (!selected) return;
    std::vector<POINT> points;
    points.reserve(line.points.size());
    for (const Point& point : line.points)
        points.push_back(ToPlatform(point));
    Polyline(dc, points.data(), static_cast<int>(points.size()));
}

/// The flushes separate GDI's drawing from the pixels written directly before and after it.
void DrawPolylines(const Paint& paint, const std::vector<PlotLine>& polylines) {
    const std::int32_t width = std::max(1, ScaleForDpi(1, paint.dpi));
    GdiFlush();
    for (const PlotLine& line : polylines)
        DrawPolyline(paint.pixels.dc, line, width);
    GdiFlush();
}

void DrawReadoutCrosshair(const Paint& paint, const std::optional<HoverReadout>& readout) {
    if (!readout) return;
    DrawCrosshair(paint.pixels, readout->x, readout->top, readout->bottom, readout->markers, paint.view.contrast,
                  paint.view.background, std::max(2, ScaleForDpi(2, paint.dpi)));
}

void DrawReadoutBox(const Paint& paint, const std::optional<HoverReadout>& readout) {
    if (!readout) return;
    const PlotFrame& frame = paint.frame;
    DrawHoverBox(paint.pixels.dc, frame.width, frame.height, {readout->x, readout->boxY}, readout->lines,
                 frame.textHeight);
}

void PaintPlot(const Paint& paint) {
    const PlotFrame& frame = paint.frame;
    HDC dc = paint.pixels.dc;
    const PlotScale scale =
        ComputePlotScale(paint.view, frame, [dc](const std::wstring& text) { return TextWidth(dc, text); });
    const PlotWindow window = MakePlotWindow(paint.view, scale);
    DrawPolylines(paint, DrawPlot(paint.pixels, paint.view, scale, window, frame.margin));

    const auto readout = ReadPlot(paint.view, paint.series, scale, window, paint.hover, frame.decimal);
    DrawReadoutCrosshair(paint, readout);
    SetBkMode(dc, TRANSPARENT);
    DrawTickLabels(dc, scale, frame.textHeight, paint.view.contrast);
    DrawLegend(dc, PlotLegend(paint.view, static_cast<std::uint64_t>(window.n), frame.decimal), scale.layout,
               frame.textHeight);
    DrawReadoutBox(paint, readout);
}

void PaintCores(const Paint& paint) {
    const PlotFrame& frame = paint.frame;
    HDC dc = paint.pixels.dc;
    const std::int32_t gap = std::max(2, ScaleForDpi(3, paint.dpi));
    const CoreGridDrawing drawing =
        DrawCoreGrid(paint.pixels, paint.view, paint.settings, paint.series, frame, gap, paint.hover);
    DrawPolylines(paint, drawing.polylines);

    DrawReadoutCrosshair(paint, drawing.readout);
    SetBkMode(dc, TRANSPARENT);
    DrawLegend(dc, CoreGridLegend(paint.view, drawing.coreMax),
               ComputePlotLayout(frame.width, frame.height, frame.margin, frame.textHeight, 0), frame.textHeight);
    DrawReadoutBox(paint, drawing.readout);
}

}  // namespace

void PaintGraph(HDC hdc, std::int32_t width, std::int32_t height, GraphKind kind, const AppSettings& settings,
                const GraphSeries& series, std::uint32_t dpi, const HoverState& hover) {
    const GraphBitmap bitmap(hdc, width, height);
    if (!bitmap) return;
    const PixelBuffer& pixels = bitmap.Pixels();
    const GraphView view = MakeGraphView(kind, settings, series);
    const GraphSettings& style = GraphSettingsOf(settings, kind);
    {
        const UniqueFont font = CreateGraphFont(style, dpi);
        const SelectedObject selectedFont(pixels.dc, font.Get());
        const PlotFrame frame = {width, height, ScaleForDpi(ClampMargin(style.margin), dpi), TextHeight(pixels.dc),
                                 DecimalSeparatorChar()};
        const Paint paint = {pixels, view, settings, series, hover, frame, dpi};
        FillPixels(pixels, {0, 0, width, height}, view.background);
        if (view.perCore) {
            PaintCores(paint);
        } else {
            PaintPlot(paint);
        }
    }
    BitBlt(hdc, 0, 0, width, height, pixels.dc, 0, 0, SRCCOPY);
}

}  // namespace kestrane
