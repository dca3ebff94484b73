#pragma once
// The look of the four icons. Three are pixels only; the memory icon also has a text drawn by GDI, so its painting says
// which text goes where.
#include <cstdint>
#include <string>

#include "history/metric_ring.h"
#include "settings/app_settings.h"
#include "tray/canvas.h"
#include "tray/icon_text.h"

namespace kestrane {

/// `ring` holds percentages.
Canvas PaintCpuIcon(const AppSettings& settings, const MetricRing<std::int32_t>& ring, std::uint32_t size);

/// The rings hold percentages. Without valid data the icon has no bars.
Canvas PaintDiskIcon(const AppSettings& settings, const MetricRing<std::int32_t>& readRing,
                     const MetricRing<std::int32_t>& writeRing, bool valid, std::uint32_t size);

/// The rings hold bits per second; the scale follows their newest `size` points.
Canvas PaintNetworkIcon(const AppSettings& settings, const MetricRing<std::uint64_t>& downRing,
                        const MetricRing<std::uint64_t>& upRing, std::uint32_t size);

/// The memory icon before its text, and the text.
struct MemoryIconPainting {
    Canvas canvas;
    std::wstring text;
    TextFont font;
    ColorValue textColor;
    TextRows textRows;
    bool alignBottom;  // below a level bar the digits are at the bottom, otherwise centred
};

MemoryIconPainting PaintMemoryIcon(const AppSettings& settings, std::int32_t percent, std::uint32_t size);

}  // namespace kestrane
