#pragma once
// What the four icons look like. Three are pixels only; the memory icon has a text too, which a font of the platform
// draws, so its painting says what text goes where.
#include <cstdint>
#include <string>

#include "history/metric_ring.h"
#include "settings/app_settings.h"
#include "tray/canvas.h"
#include "tray/icon_text.h"

namespace kestrane {

/// `ring` holds percentages.
Canvas PaintCpuIcon(const AppSettings& settings, const MetricRing<std::int32_t>& ring, std::uint32_t size);

/// The rings hold percentages. Without valid data the icon is bare.
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
    bool alignBottom;  // under a level bar the digits stand at the bottom, without one in the middle
};

MemoryIconPainting PaintMemoryIcon(const AppSettings& settings, std::int32_t percent, std::uint32_t size);

}  // namespace kestrane
