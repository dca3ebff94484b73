#pragma once
// The picture of a "Mostrar" switch: a pill-shaped track with a round knob, smoothed against the background.
#include <cstdint>
#include <vector>

#include "settings/color.h"

namespace kestrane {

// The size of the track in pixels at 96 DPI.
inline constexpr std::int32_t SwitchWidth = 28;
inline constexpr std::int32_t SwitchHeight = 16;

/// Pixels are 0x00RRGGBB, top row first, no padding between rows.
struct SwitchImage {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<std::uint32_t> pixels;
};

/// The track with its knob at the right when `on`; `face` is the colour around it.
SwitchImage PaintSwitchTrack(bool on, ColorValue face, std::uint32_t dpi);

}  // namespace kestrane
