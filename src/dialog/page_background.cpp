#include "dialog/page_background.h"

#include <algorithm>

namespace kestrane {
namespace {

constexpr std::int32_t AccentThickness = 2;  // at 96 DPI, and at least

Rect Row(std::int32_t left, std::int32_t right, std::int32_t y) {
    return {left, y, right, y + 1};
}

}  // namespace

std::array<Rect, 2> AccentLine(const PageBackground& background, std::uint32_t dpi) {
    const std::int32_t top = background.first_tab.bottom;
    const std::int32_t bottom = top + std::max(ScaleForDpi(AccentThickness, dpi), AccentThickness);
    return {{{background.first_tab.left, top, background.current_tab.left, bottom},
             {background.current_tab.right, top, background.last_tab.right, bottom}}};
}

std::vector<Rect> FrameLines(const TitledFrame& titled) {
    const Rect& frame = titled.frame;
    if (IsEmptyRect(frame)) return {};
    std::vector<Rect> lines{Row(frame.left, titled.title.left, frame.top),
                            Row(titled.title.right, frame.right, frame.top),
                            {frame.left, frame.top, frame.left + 1, frame.bottom},
                            {frame.right - 1, frame.top, frame.right, frame.bottom},
                            Row(frame.left, frame.right, frame.bottom - 1)};
    std::erase_if(lines, IsEmptyRect);
    return lines;
}

}  // namespace kestrane
