#pragma once
// Decisions about user actions on the icons: the meaning of each event, which clicks count, and what a click on an icon
// does to its graph. The actions themselves are in app_tray_win32.cpp.
#include <cstdint>

#include "metrics/metric_sample.h"
#include "settings/app_settings.h"

namespace kestrane {

/// Events of a NOTIFYICON_VERSION_4 icon: NIN_SELECT, NIN_KEYSELECT, NIN_BALLOONUSERCLICK, WM_CONTEXTMENU,
/// WM_LBUTTONDBLCLK.
inline constexpr std::uint32_t EventSelect = 0x400;
inline constexpr std::uint32_t EventKeySelect = 0x401;
inline constexpr std::uint32_t EventBalloonClick = 0x405;
inline constexpr std::uint32_t EventContextMenu = 0x7B;
inline constexpr std::uint32_t EventDoubleClick = 0x203;

/// One decoded notification. The point is in screen coordinates, negative on monitors left of or above the primary.
struct TrayNotification {
    std::uint32_t event = 0;
    std::uint32_t iconId = 0;
    std::int32_t x = 0;
    std::int32_t y = 0;
};

/// Version 4 packs the event and the icon's id into `lParam`, the anchor point into `wParam`, 16 bits each.
TrayNotification DecodeTrayNotification(std::uint64_t wParam, std::int64_t lParam);

enum class TrayAction { None, OpenUpdate, ShowMenu, ClickGraphIcon, OpenTaskManager };

/// The action for a notification. Only the memory icon, which has no graph, opens Task Manager on a double click.
TrayAction RouteTrayNotification(const TrayNotification& notification);

/// The page on which Task Manager opens for an icon: that of its metric; for the disk icon, that of the disk currently
/// busiest at reading or writing, whichever the machine does more of. Unknown ids give the CPU page.
std::int64_t TaskManagerPage(std::uint32_t iconId, const MetricSample& sample);

/// Debounces clicks: a double click delivers a select and a double-click event; the first passes and blocks further
/// ones for the system's double-click time. `nextClickTick` is the tick count from which clicks count again.
bool PassesClickFilter(std::uint32_t event, std::uint64_t now, std::uint32_t doubleClickMs,
                       std::uint64_t& nextClickTick);

enum class GraphToggle { Stay, Raise, Open, Hide };

/// What a click on its icon does to a graph. A pinned graph stays; one that is covered by another window and not
/// topmost is raised instead of hidden.
GraphToggle DecideToggle(const GraphSettings& settings, bool shown, bool covered);

}  // namespace kestrane
