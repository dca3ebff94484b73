#include "dialog/item_layout.h"

#include "dialog/switch_pixels.h"

namespace kestrane {
namespace {

// Pixels at 96 DPI.
constexpr std::int32_t IconSize = 16;
constexpr std::int32_t IconGap = 5;  // between an icon or track and its text
constexpr std::int32_t TabRise = 3;  // of the selected tab over the others
constexpr std::int32_t StripHeight = 3;
constexpr std::int32_t SelectedIconDrop = 1;
constexpr std::int32_t SectionIconLeft = 4;
constexpr std::int32_t CheckSize = 13;
constexpr std::int32_t CheckGap = 4;
constexpr std::int32_t InterfaceHeight = 20;

// Pixels at any DPI.
constexpr std::int32_t TabFocusInset = 3;
constexpr std::int32_t SwitchFocusOutset = 2;

}  // namespace

Rect Inset(const Rect& rect, std::int32_t inset) {
    return {rect.left + inset, rect.top + inset, rect.right - inset, rect.bottom - inset};
}

Rect CentredAt(std::int32_t left, const Rect& item, std::int32_t width, std::int32_t height) {
    return RectOf(left, item.top + (RectHeight(item) - height) / 2, width, height);
}

TabButtonLayout LayoutTabButton(const Rect& item, std::int32_t textWidth, bool selected, std::uint32_t dpi) {
    const std::int32_t icon = ScaleForDpi(IconSize, dpi);
    const std::int32_t gap = ScaleForDpi(IconGap, dpi);
    TabButtonLayout layout;
    Rect& tab = layout.tab;
    tab = item;
    if (!selected) tab.top += ScaleForDpi(TabRise, dpi);
    layout.top_edge = {tab.left, tab.top, tab.right, tab.top + 1};
    layout.left_edge = {tab.left, tab.top, tab.left + 1, tab.bottom};
    layout.right_edge = {tab.right - 1, tab.top, tab.right, tab.bottom};
    const std::int32_t x = tab.left + (RectWidth(tab) - textWidth - gap - icon) / 2;
    layout.icon = CentredAt(x, tab, icon, icon);
    layout.text = {layout.icon.right + gap, tab.top, tab.right, tab.bottom};
    layout.focus = Inset(tab, TabFocusInset);
    if (selected) {
        const std::int32_t drop = ScaleForDpi(SelectedIconDrop, dpi);
        layout.icon.top += drop;
        layout.icon.bottom += drop;
        layout.strip = {tab.left, tab.top, tab.right, tab.top + ScaleForDpi(StripHeight, dpi)};
    }
    return layout;
}

SwitchLayout LayoutSwitch(const Rect& item, std::uint32_t dpi) {
    const std::int32_t width = ScaleForDpi(SwitchWidth, dpi);
    const Rect track = CentredAt(item.right - width, item, width, ScaleForDpi(SwitchHeight, dpi));
    const Rect text{item.left, item.top, track.left - ScaleForDpi(IconGap, dpi), item.bottom};
    return {text, track, Inset(track, -SwitchFocusOutset)};
}

SectionTitleLayout LayoutSectionTitle(const Rect& item, std::uint32_t dpi) {
    const std::int32_t side = ScaleForDpi(IconSize, dpi);
    const Rect icon = CentredAt(item.left + ScaleForDpi(SectionIconLeft, dpi), item, side, side);
    return {icon, {icon.right + ScaleForDpi(IconGap, dpi), item.top, item.right, item.bottom}};
}

InterfaceItemLayout LayoutInterfaceItem(const Rect& item, std::int32_t nameLeft, std::int32_t ipLeft,
                                        std::uint32_t dpi) {
    const std::int32_t side = ScaleForDpi(CheckSize, dpi);
    const std::int32_t gap = ScaleForDpi(CheckGap, dpi);
    const std::int32_t name = item.left + nameLeft;
    const std::int32_t ip = item.left + ipLeft;
    const Rect check = CentredAt(item.left + gap, item, side, side);
    return {check,
            {check.right + gap, item.top, name - gap, item.bottom},
            {name, item.top, ip - gap, item.bottom},
            {ip, item.top, item.right - gap, item.bottom}};
}

std::int32_t InterfaceItemHeight(std::uint32_t dpi) {
    return ScaleForDpi(InterfaceHeight, dpi);
}

}  // namespace kestrane
