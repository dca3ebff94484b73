#pragma once
// What the dialog paints behind its controls: the accent line below the tabs, and the frames of the boxes.
//
//          +-----+
//          | tab |
//     =====+     +=======   the current tab is open to the page
//      --- Title --------
//     |                  |  a frame, broken under its title
//      ------------------
#include <array>
#include <cstdint>
#include <vector>

#include "base/geometry.h"
#include "settings/color.h"

namespace kestrane {

/// A frame with the rectangle of the title in its top edge.
struct TitledFrame {
    Rect frame;
    Rect title;
};

/// In pixels of the dialog's client area. Empty frames and boxes are not painted.
struct PageBackground {
    ColorValue accent = 0;
    Rect first_tab;  // the button at the left end
    Rect current_tab;
    Rect last_tab;
    std::vector<TitledFrame> titled_frames;
    std::vector<Rect> hardware_boxes;  // white
    std::vector<Rect> graph_boxes;
};

/// The two pieces of the line on which the tabs stand, left and right of the current one; empty next to an end.
std::array<Rect, 2> AccentLine(const PageBackground& background, std::uint32_t dpi);

/// The lines of a frame, one pixel wide: the top left and right of the title, then left, right and bottom. None for an
/// empty frame.
std::vector<Rect> FrameLines(const TitledFrame& titled);

}  // namespace kestrane
