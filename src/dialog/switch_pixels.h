#pragma once
// The "Mostrar" switch: a pill-shaped track with a round knob, smoothed against the background, and where it stands in
// its control.
#include <cstdint>
#include <vector>

#include "base/geometry.h"
#include "settings/color.h"

namespace kestrane {

/// Pixels are 0x00RRGGBB, top row first, no padding between rows.
struct SwitchImage {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<std::uint32_t> pixels;
};

/// The track with its knob at the right when `on`; `face` is the colour around it.
SwitchImage PaintSwitchTrack(bool on, ColorValue face, std::uint32_t dpi);

struct SwitchLayout {
    Rect text;   // right-aligned in here
    Rect track;  // as large as the image
    Rect focus;
};
SwitchLayout LayoutSwitch(const Rect& item, std::uint32_t dpi);

}  // namespace kestrane
