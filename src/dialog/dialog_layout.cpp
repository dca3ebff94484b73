#include "dialog/dialog_layout.h"

#include <algorithm>
#include <numeric>
#include <optional>

namespace kestrane {
namespace {

constexpr std::int32_t PageLeft = TabBand.left;
constexpr std::int32_t PageRight = TabBand.right;
constexpr std::int32_t PageTop = 21;
constexpr std::int32_t PageBottomMargin = 3;
constexpr std::int32_t ClientWidth = 270;
constexpr std::int32_t NotesHeight = 36;

// A framed box: its frame starts in the middle of its title, which stands a little to the right.
constexpr std::int32_t FrameTop = 4;
constexpr std::int32_t TitleIndent = 6;
constexpr std::int32_t TitleHeight = 9;

// The boxes of hardware and graphs.
constexpr std::int32_t BoxLeft = 14;
constexpr std::int32_t BoxRight = 256;
constexpr std::int32_t HardwareBoxGap = 5;  // from the bottom of the group
constexpr std::int32_t HardwareTextGap = 6;
constexpr std::int32_t GraphBoxGap = 1;

// Pixels at 96 DPI.
constexpr std::int32_t TitlePadding = 6;
constexpr std::int32_t TabIconSize = 16;
constexpr std::int32_t TabButtonPadding = 35;
constexpr std::int32_t HardwarePadding = 6;

// The disk list. A box is wider than its text by the check mark; the gap to the next one is 6.
constexpr std::int32_t DiskLeft = 36;
constexpr std::int32_t DiskRight = 243;
constexpr std::int32_t DiskTop = 1;
constexpr std::int32_t DiskLine = 14;
constexpr std::int32_t DiskMark = 14;
constexpr std::int32_t DiskStep = 20;
constexpr std::int32_t DiskMaxWidth = 206;
constexpr std::int32_t DiskHeight = 10;

static_assert(static_cast<MetricKind>(SettingsTab::Cpu) == MetricKind::Cpu &&
              static_cast<MetricKind>(SettingsTab::Disk) == MetricKind::Disk &&
              static_cast<MetricKind>(SettingsTab::Memory) == MetricKind::Memory &&
              static_cast<MetricKind>(SettingsTab::Network) == MetricKind::Network);

bool DrawsLines(const AppSettings& settings, SettingsTab tab) {
    const std::optional<GraphKind> graph = GraphOf(static_cast<MetricKind>(tab));
    return graph && GraphSettingsOf(settings, *graph).style == 1;
}

std::int32_t HeightOf(const DialogGroup& group, const MeasuredHeights& heights) {
    if (group.kind == GroupKind::HardwareText) return heights.hardware_height[IndexOf(group.tab)];
    if (group.kind == GroupKind::DiskList) return heights.disks_height;
    return group.height;
}

/// `value` / `unit` in whole units, rounded up.
std::int32_t CeilToUnits(std::int64_t value, std::int32_t unit) {
    unit = std::max(unit, 1);
    return SaturateToInt32((value + unit - 1) / unit);
}

}  // namespace

GroupLayout LayoutGroups(const AppSettings& settings, const MeasuredHeights& heights, SettingsTab current) {
    GroupLayout layout;
    std::array<std::int32_t, TabCount> bottoms{};
    bottoms.fill(PageTop);
    for (std::size_t i = 0; i < DialogGroups.size(); ++i) {
        const DialogGroup& group = DialogGroups[i];
        std::int32_t& bottom = bottoms[IndexOf(group.tab)];
        layout.group_top[i] = bottom;
        if (group.kind == GroupKind::LinesOnly && !DrawsLines(settings, group.tab)) continue;
        bottom = AddSaturated(bottom, HeightOf(group, heights));
        layout.group_visible[i] = group.tab == current;
    }
    const std::int32_t lowest = *std::ranges::max_element(bottoms);
    layout.content_height = std::max(PageTop, AddSaturated(lowest, PageBottomMargin));
    return layout;
}

std::int32_t HardwareHeight(std::int32_t pixels, std::int32_t unit, std::uint32_t dpi) {
    const std::int64_t padded = std::int64_t{pixels} + ScaleForDpi(HardwarePadding, dpi);
    return AddSaturated(CeilToUnits(padded * 8, unit), 7);
}

ControlPlace PlaceControl(const DialogRow& row, const GroupLayout& layout, const MeasuredHeights& heights) {
    const auto group = static_cast<std::size_t>(row.group);
    const bool neverShown = row.type == ControlType::TabTitle || row.type == ControlType::TabIcon;
    const bool shown = layout.group_visible[group] && !neverShown;
    const std::int32_t left = PageLeft + row.x;
    const std::int32_t top = AddSaturated(layout.group_top[group], row.y);
    if (row.type == ControlType::BoxTitle) {
        const Rect title = RectOf(left + TitleIndent, top, row.w, TitleHeight);
        const Rect frame{left, AddSaturated(top, FrameTop), left + row.w, AddSaturated(top, row.h)};
        return {shown, title, shown ? frame : Rect{}};
    }
    std::int32_t height = row.h;
    if (row.type == ControlType::HardwareText)
        height = SubtractSaturated(HeightOf(DialogGroups[group], heights), HardwareTextGap);
    return {shown, RectOf(left, top, row.w, height), {}};
}

Rect BoxTitleRect(const Rect& rect, std::int32_t textWidth, std::uint32_t dpi) {
    return RectOf(rect.left, rect.top, AddSaturated(textWidth, ScaleForDpi(TitlePadding, dpi)), RectHeight(rect));
}

Rect TabIconRect(const Rect& rect, std::uint32_t dpi) {
    const std::int32_t side = ScaleForDpi(TabIconSize, dpi);
    return RectOf(rect.left + (RectWidth(rect) - side) / 2, rect.top + (RectHeight(rect) - side) / 2, side, side);
}

Rect HardwareBox(SettingsTab tab, const GroupLayout& layout, const MeasuredHeights& heights) {
    if (IndexOf(tab) >= HardwareCount) return {};
    const HardwarePanel& panel = HardwarePanels[IndexOf(tab)];
    if (!layout.group_visible[panel.first_group]) return {};
    const std::int32_t height = HeightOf(DialogGroups[panel.last_group], heights) - HardwareBoxGap;
    return {BoxLeft, layout.group_top[panel.first_group], BoxRight,
            AddSaturated(layout.group_top[panel.last_group], height)};
}

Rect GraphBox(GraphKind kind, const GroupLayout& layout) {
    const GraphPanel& panel = GraphPanels[IndexOf(kind)];
    if (!layout.group_visible[panel.first_group]) return {};
    const std::int32_t height = DialogGroups[panel.last_group].height - GraphBoxGap;
    return {BoxLeft, layout.group_top[panel.first_group], BoxRight,
            AddSaturated(layout.group_top[panel.last_group], height)};
}

std::array<Rect, PageNotes.size()> NoteRects(std::int32_t contentHeight) {
    return {{{PageLeft, AddSaturated(contentHeight, 1), PageRight, AddSaturated(contentHeight, 10)},
             {PageLeft, AddSaturated(contentHeight, 11), PageRight, AddSaturated(contentHeight, 32)}}};
}

std::array<Rect, TabCount> TabButtonRects(const Rect& band, const std::array<std::int32_t, TabCount>& textWidths,
                                          std::uint32_t dpi) {
    std::array<std::int32_t, TabCount> widths{};
    std::ranges::transform(textWidths, widths.begin(), [dpi](std::int32_t textWidth) {
        return AddSaturated(textWidth, ScaleForDpi(TabButtonPadding, dpi));
    });
    const std::int64_t sum = std::accumulate(widths.begin(), widths.end(), std::int64_t{0});
    const std::int32_t spare = std::max(SubtractSaturated(RectWidth(band), sum), 0);
    std::array<Rect, TabCount> buttons{};
    std::int32_t left = band.left;
    for (std::size_t i = 0; i < TabCount; ++i) {
        const std::int32_t width = AddSaturated(widths[i], spare / static_cast<std::int32_t>(TabCount));
        buttons[i] = RectOf(left, band.top, width, RectHeight(band));
        left = buttons[i].right;
    }
    return buttons;
}

DiskBoxes FlowDiskBoxes(std::span<const std::int32_t> textWidths) {
    DiskBoxes boxes;
    std::int32_t x = DiskLeft;
    std::int32_t y = DiskTop;
    for (std::size_t i = 0; i < std::min(textWidths.size(), 1 + MaxDiskBoxes); ++i) {
        const std::int32_t width = AddSaturated(textWidths[i], DiskMark);
        if (x > DiskLeft && AddSaturated(x, width) >= DiskRight) {
            x = DiskLeft;
            y += DiskLine;
        }
        const std::int32_t id = i == 0 ? IdAllDisks : IdFirstDisk + static_cast<std::int32_t>(i) - 1;
        boxes.rows.push_back({id, ControlType::CheckBox, L"", DiskListGroup, static_cast<std::int16_t>(x),
                              static_cast<std::int16_t>(y), static_cast<std::int16_t>(std::min(width, DiskMaxWidth)),
                              DiskHeight});
        x = AddSaturated(x, std::int64_t{textWidths[i]} + DiskStep);
    }
    boxes.disks_height = y + DiskLine;
    return boxes;
}

std::int32_t WidthInUnits(std::int32_t pixels, std::int32_t unit) {
    return CeilToUnits(std::int64_t{pixels} * 4, unit);
}

Rect ClientArea(std::int32_t contentHeight) {
    return {0, 0, ClientWidth, AddSaturated(contentHeight, NotesHeight)};
}

Rect ResizedDialog(const Rect& window, const Rect& workArea, std::int32_t width, std::int32_t height) {
    const bool overflows = std::int64_t{window.top} + height > workArea.bottom;
    const std::int32_t top =
        overflows ? std::max(workArea.top, SubtractSaturated(workArea.bottom, height)) : window.top;
    return RectOf(window.left, top, width, height);
}

DialogPlace OpeningPlace(const DialogState& state, const Point& anchor, std::int32_t width, std::int32_t height) {
    if (state.has_position) return {{state.x, state.y}, {state.x, state.y}};
    return {{SubtractSaturated(anchor.x, width), SubtractSaturated(anchor.y, height)}, anchor};
}

Point MovedIntoWorkArea(const Point& corner, const Rect& workArea, std::int32_t width, std::int32_t height) {
    const auto clamp = [](std::int32_t position, std::int32_t low, std::int32_t high, std::int32_t length) {
        return std::clamp(position, low, std::max(low, SubtractSaturated(high, length)));
    };
    return {clamp(corner.x, workArea.left, workArea.right, width),
            clamp(corner.y, workArea.top, workArea.bottom, height)};
}

}  // namespace kestrane
