#pragma once
// The layout of the settings dialog:
//
//     0  11                             259 270
//      +------------------------------------+   0
//      |  [CPU] [Disk] [Memory] [Net] [Gen] |   3 to 18: the tab band
//      |  +------------------------------+  |  21: the page, its groups from top to bottom
//      |  | ...                          |  |
//      |  +------------------------------+  |
//      |  notes                             |  content_height + 1 to + 32
//      +------------------------------------+  content_height + 36
//
// Rectangles are in dialog units, which MapDialogRect converts to pixels, except where a comment says pixels.
#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "base/geometry.h"
#include "dialog/control_table.h"
#include "dialog/dialog_panels.h"
#include "settings/ini_settings.h"

namespace kestrane {

// Groups.

/// The heights that are not in DialogGroups, in dialog units.
struct MeasuredHeights {
    std::array<std::int32_t, HardwareCount> hardware_height{10, 10, 10};  // by SettingsTab: CPU, disk, memory
    std::int32_t disks_height = 15;
};

struct GroupLayout {
    std::array<std::int32_t, DialogGroupCount> group_top{};
    std::array<bool, DialogGroupCount> group_visible{};
    std::int32_t content_height = 0;
};

/// Stacks the groups of each tab; those of other tabs than `current` are not visible. All tabs count for the content
/// height, so that a change of tab leaves the window's size.
GroupLayout LayoutGroups(const AppSettings& settings, const MeasuredHeights& heights, SettingsTab current);

/// The height of hardware text that is `pixels` high when painted. `unit` is the pixel height of 8 dialog units.
std::int32_t HardwareHeight(std::int32_t pixels, std::int32_t unit, std::uint32_t dpi);

// Controls.

struct ControlPlace {
    bool shown;
    Rect rect;
    Rect frame;  // below a box title; otherwise empty

    bool operator==(const ControlPlace&) const = default;
};

/// The place of a control in the dialog. A hidden one has a rectangle, too, but no frame.
ControlPlace PlaceControl(const DialogRow& row, const GroupLayout& layout, const MeasuredHeights& heights);

/// A box title's pixels: `rect`, but as wide as its text and a little more.
Rect BoxTitleRect(const Rect& rect, std::int32_t textWidth, std::uint32_t dpi);

/// A tab icon's pixels: a square in the middle of `rect`.
Rect TabIconRect(const Rect& rect, std::uint32_t dpi);

/// The box around a tab's hardware, or around a graph's settings; empty if its tab is not the current one or has none.
Rect HardwareBox(SettingsTab tab, const GroupLayout& layout, const MeasuredHeights& heights);
Rect GraphBox(GraphKind kind, const GroupLayout& layout);

/// The two notes below the page, in the order of PageNotes.
std::array<Rect, PageNotes.size()> NoteRects(std::int32_t contentHeight);

// Tabs.

inline constexpr Rect TabBand{11, 3, 259, 18};

/// Five buttons side by side in `band`, each as wide as its text requires plus a fifth of what is left; beyond its
/// right end if the texts are too long. All in pixels.
std::array<Rect, TabCount> TabButtonRects(const Rect& band, const std::array<std::int32_t, TabCount>& textWidths,
                                          std::uint32_t dpi);

// Disks.

inline constexpr std::size_t MaxDiskBoxes = IdLastDisk - IdFirstDisk + 1;

struct DiskBoxes {
    std::vector<DialogRow> rows;  // without text
    std::int32_t disks_height;
};

/// The check boxes of the disk list, from left to right and line by line: "all", then one per disk, at most
/// MaxDiskBoxes. `textWidths` has the width of each text, that of "all" first.
DiskBoxes FlowDiskBoxes(std::span<const std::int32_t> textWidths);

/// A width in pixels as dialog units, rounded up. `unit` is the pixel width of 4 dialog units.
std::int32_t WidthInUnits(std::int32_t pixels, std::int32_t unit);

// The window, in pixels except for its client area.

/// The client area, from its corner.
Rect ClientArea(std::int32_t contentHeight);

/// `window` in a new size, in its place; higher if it would pass the bottom of the work area, but not above its top.
Rect ResizedDialog(const Rect& window, const Rect& workArea, std::int32_t width, std::int32_t height);

/// Where the dialog is to open, and the point whose nearest monitor it opens on.
struct DialogPlace {
    Point corner;
    Point monitor;

    bool operator==(const DialogPlace&) const = default;
};

/// Where the dialog was left; without a position, with its lower right corner at `anchor`, where the user clicked.
DialogPlace OpeningPlace(const DialogState& state, const Point& anchor, std::int32_t width, std::int32_t height);

/// The top-left corner nearest to `corner` for a window within the work area; that of the work area if the window is
/// larger.
Point MovedIntoWorkArea(const Point& corner, const Rect& workArea, std::int32_t width, std::int32_t height);

}  // namespace kestrane
