#pragma once
// Where the parts of a HardwareRow stand:
//
//     left     left + 64
//     label    (badge) value [bar       ] after      or     label    (badge) value note that wraps
//                                                                                  between its own edges
#include <cstdint>

#include "base/geometry.h"
#include "hardware/summary_rows.h"
#include "settings/color.h"

namespace kestrane {

/// The widths of a row's texts in their fonts.
struct HardwareTextWidths {
    std::int32_t badge = 0;
    std::int32_t value = 0;
};

/// All in pixels. What the row does not show has an empty rectangle or is not used.
struct HardwareRowLayout {
    Point label;
    Rect chip;  // around the badge
    Point value;
    Rect track;   // the whole bar
    Rect filled;  // its filled part, from the left
    Point after;
    Rect note;  // as wide as the note may become; its height depends on how it wraps

    bool operator==(const HardwareRowLayout&) const = default;
};

/// The height of a row without a note that wraps. `textHeight` is that of the regular font.
std::int32_t HardwareLineHeight(std::int32_t textHeight, std::uint32_t dpi);

/// The row whose top-left corner is `corner`, up to `right`, in lines of `line` pixels.
HardwareRowLayout LayoutHardwareRow(const HardwareRow& row, const HardwareTextWidths& widths, const Point& corner,
                                    std::int32_t right, std::int32_t line, std::uint32_t dpi);

/// The height of a row whose note is `noteHeight` high, 0 without a note.
std::int32_t HardwareRowHeight(std::int32_t line, std::int32_t noteHeight, std::uint32_t dpi);

/// Blue, or red when nearly full.
ColorValue BarColor(std::int32_t percent);

/// Where the rows stand in the control `item`: from its left and right edge inwards.
Rect HardwareTextArea(const Rect& item, std::uint32_t dpi);

}  // namespace kestrane
