#include "tray/icon_painting.h"

#include <algorithm>
#include <utility>

#include "history/net_icon_scale.h"
#include "text/number_text.h"
#include "tray/bars.h"

namespace kestrane {
namespace {

/// The icon size at which the settings' font size is the height in pixels.
constexpr std::int32_t NominalIconSize = 16;

Canvas ClearedCanvas(std::uint32_t size, ColorValue background) {
    Canvas canvas(static_cast<std::int32_t>(size));
    Clear(canvas, background);
    return canvas;
}

void DrawBorderIfAny(Canvas& canvas, ColorValue color) {
    if (color != ColorNone) DrawBorder(canvas, color);
}

/// Halfway between text and background. A transparent one counts as black: ColorNone has no colour bits.
ColorValue TrackColor(const MemoryColors& colors) {
    return BlendColor(colors.text, colors.background, 0.5);
}

}  // namespace

Canvas PaintCpuIcon(const AppSettings& settings, const MetricRing<std::int32_t>& ring, std::uint32_t size) {
    Canvas canvas = ClearedCanvas(size, settings.colors[CpuBg]);
    DrawBars(canvas, ring, settings.colors[CpuFg]);
    DrawBorderIfAny(canvas, settings.colors[CpuBorder]);
    return canvas;
}

Canvas PaintDiskIcon(const AppSettings& settings, const MetricRing<std::int32_t>& readRing,
                     const MetricRing<std::int32_t>& writeRing, bool valid, std::uint32_t size) {
    Canvas canvas = ClearedCanvas(size, settings.colors[DiskBg]);
    if (valid) DrawPairedBars(canvas, readRing, settings.colors[DiskRead], writeRing, settings.colors[DiskWrite]);
    DrawBorderIfAny(canvas, settings.colors[DiskBorder]);
    return canvas;
}

Canvas PaintNetworkIcon(const AppSettings& settings, const MetricRing<std::uint64_t>& downRing,
                        const MetricRing<std::uint64_t>& upRing, std::uint32_t size) {
    Canvas canvas = ClearedCanvas(size, settings.colors[NetBg]);
    const std::uint64_t scale = NetIconScale(downRing, upRing, size);
    DrawNetworkBars(canvas, downRing, upRing, scale, settings.colors[NetDown], settings.colors[NetUp],
                    settings.colors[NetBoth]);
    DrawBorderIfAny(canvas, settings.colors[NetBorder]);
    return canvas;
}

MemoryIconPainting PaintMemoryIcon(const AppSettings& settings, std::int32_t percent, std::uint32_t size) {
    const MemoryColors colors = MemoryLevelColors(settings, percent);
    Canvas canvas = ClearedCanvas(size, colors.background);
    const std::int32_t inset = colors.border == ColorNone ? 0 : 1;
    TextRows rows{inset, canvas.size - inset};
    if (settings.bar) {
        const std::int32_t barHeight = LevelBarHeight(canvas);
        DrawLevelBar(canvas, {inset, inset, canvas.size - inset, inset + barHeight}, percent, TrackColor(colors),
                     colors.text);
        rows.top = inset + barHeight;
    }
    DrawBorderIfAny(canvas, colors.border);
    const std::int32_t fontHeight = canvas.size * settings.font_size / NominalIconSize;
    return {std::move(canvas),
            FormatInteger(std::max(percent, 0)),
            {settings.font_name, fontHeight, settings.font_bold},
            colors.text,
            rows,
            settings.bar};
}

}  // namespace kestrane
