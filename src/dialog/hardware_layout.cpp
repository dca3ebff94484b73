#include "dialog/hardware_layout.h"

#include <algorithm>

namespace kestrane {
namespace {

// Pixels at 96 DPI.
constexpr std::int32_t AreaInset = 6;
constexpr std::int32_t LabelWidth = 64;  // whatever the label's text
constexpr std::int32_t Gap = 5;
constexpr std::int32_t ChipPadding = 6;
constexpr std::int32_t ChipInset = 1;
constexpr std::int32_t BarWidth = 56;
constexpr std::int32_t BarHeight = 6;
constexpr std::int32_t NarrowestNote = 40;
constexpr std::int32_t LineGap = 1;

constexpr std::int32_t NearlyFull = 85;
constexpr ColorValue BarBlue = 0x3B82C4;
constexpr ColorValue BarRed = 0xD9534F;

}  // namespace

std::int32_t HardwareLineHeight(std::int32_t textHeight, std::uint32_t dpi) {
    return textHeight + ScaleForDpi(LineGap, dpi);
}

HardwareRowLayout LayoutHardwareRow(const HardwareRow& row, const HardwareTextWidths& widths, const Point& corner,
                                    std::int32_t right, std::int32_t line, std::uint32_t dpi) {
    const auto scaled = [dpi](std::int32_t value) { return ScaleForDpi(value, dpi); };
    const std::int32_t y = corner.y;
    std::int32_t x = corner.x + scaled(LabelWidth);
    HardwareRowLayout layout;
    layout.label = corner;
    if (row.badge >= 0) {
        const std::int32_t inset = scaled(ChipInset);
        layout.chip = {x, y + inset, x + widths.badge + scaled(ChipPadding), y + line - inset};
        x = layout.chip.right + scaled(Gap);
    }
    if (!row.value.empty()) {
        layout.value = {x, y};
        x += widths.value + scaled(Gap);
    }
    if (row.percent >= 0) {
        layout.track = RectOf(x, y + (line - scaled(BarHeight)) / 2, scaled(BarWidth), scaled(BarHeight));
        layout.filled = layout.track;
        layout.filled.right = x + scaled(BarWidth) * std::min(row.percent, 100) / 100;
        x = layout.track.right + scaled(Gap);
        layout.after = {x, y};
    }
    if (!row.note.empty()) layout.note = {x, y, std::max(x + scaled(NarrowestNote), right), y};
    return layout;
}

std::int32_t HardwareRowHeight(std::int32_t line, std::int32_t noteHeight, std::uint32_t dpi) {
    return std::max(line, noteHeight + ScaleForDpi(LineGap, dpi));
}

ColorValue BarColor(std::int32_t percent) {
    return percent >= NearlyFull ? BarRed : BarBlue;
}

Rect HardwareTextArea(const Rect& item, std::uint32_t dpi) {
    const std::int32_t inset = ScaleForDpi(AreaInset, dpi);
    return {item.left + inset, item.top, item.right - inset, item.bottom};
}

}  // namespace kestrane
