#pragma once
// Where the parts of the owner-drawn controls stand: tab buttons, switches, section titles and the list of interfaces.
// All in pixels.
#include <cstdint>

#include "base/geometry.h"

namespace kestrane {

/// `rect` with each edge moved inwards; outwards if `inset` is negative.
Rect Inset(const Rect& rect, std::int32_t inset);

/// A rectangle of this size at `left`, vertically centred in `item`.
Rect CentredAt(std::int32_t left, const Rect& item, std::int32_t width, std::int32_t height);

struct TabButtonLayout {
    Rect tab;  // lower than the button unless selected
    Rect top_edge;
    Rect left_edge;
    Rect right_edge;
    Rect strip;  // of the accent colour; empty unless selected
    Rect icon;
    Rect text;  // vertically centred in here
    Rect focus;

    bool operator==(const TabButtonLayout&) const = default;
};
/// `textWidth` is the width of the text in its font.
TabButtonLayout LayoutTabButton(const Rect& item, std::int32_t textWidth, bool selected, std::uint32_t dpi);

struct SwitchLayout {
    Rect text;   // right-aligned and vertically centred in here
    Rect track;  // as large as its image
    Rect focus;

    bool operator==(const SwitchLayout&) const = default;
};
SwitchLayout LayoutSwitch(const Rect& item, std::uint32_t dpi);

struct SectionTitleLayout {
    Rect icon;
    Rect text;

    bool operator==(const SectionTitleLayout&) const = default;
};
SectionTitleLayout LayoutSectionTitle(const Rect& item, std::uint32_t dpi);

struct InterfaceItemLayout {
    Rect check;
    Rect number;
    Rect name;
    Rect ip;

    bool operator==(const InterfaceItemLayout&) const = default;
};
/// `nameLeft` and `ipLeft` are the distances of the two columns from the item's left.
InterfaceItemLayout LayoutInterfaceItem(const Rect& item, std::int32_t nameLeft, std::int32_t ipLeft,
                                        std::uint32_t dpi);

/// The height of an item of that list.
std::int32_t InterfaceItemHeight(std::uint32_t dpi);

}  // namespace kestrane
