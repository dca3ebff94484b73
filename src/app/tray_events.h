#pragma once
// What the user does to the icons, as decisions: which event means what, which clicks count, and what a click on an
// icon does to its graph. The actions themselves stand in tray_commands_win32.cpp.
#include <cstdint>

#include "metrics/metric_sample.h"
#include "settings/app_settings.h"

namespace kestrane {

/// Events of a notification icon that speaks version 4; the numbers are the shell's (NIN_SELECT and its kin).
inline constexpr std::uint32_t EventSelect = 0x400;
inline constexpr std::uint32_t EventKeySelect = 0x401;
inline constexpr std::uint32_t EventBalloonClick = 0x405;
inline constexpr std::uint32_t EventContextMenu = 0x7B;
inline constexpr std::uint32_t EventDoubleClick = 0x203;

/// One notification, taken apart. The point is on the screen and may be negative on monitors left of the first.
struct TrayNotification {
    std::uint32_t event = 0;
    std::uint32_t iconId = 0;
    std::int32_t x = 0;
    std::int32_t y = 0;
};

/// Version 4 packs the event and the icon's id into `lParam`, the anchor point into `wParam`, 16 bits each.
TrayNotification DecodeTrayNotification(std::uint64_t wParam, std::int64_t lParam);

enum class TrayAction { None, OpenUpdate, ShowMenu, ClickGraphIcon, OpenTaskManager };

/// What a notification asks for. Only the memory icon, which has no graph, answers a double click with Task Manager.
TrayAction RouteTrayNotification(const TrayNotification& notification);

/// The page on which Task Manager opens for an icon: that of its metric, and for the disk icon that of the disk which
/// is the busiest at this moment, with whatever the machine does more of. Any id that no icon has gives the
/// processor's.
std::int64_t TaskManagerPage(std::uint32_t iconId, const MetricSample& sample);

/// The filter against double firing. A double click delivers a select and a double-click event; the first passes and
/// shuts the door for the system's double-click time. `nextClickTick` is the tick count from which clicks count again.
bool PassesClickFilter(std::uint32_t event, std::uint64_t now, std::uint32_t doubleClickMs,
                       std::uint64_t& nextClickTick);

enum class GraphToggle { Stay, Raise, Open, Hide };

/// What a click on its icon does to a graph. A pinned graph stays; one that another window has come over, and that does
/// not stand on top anyway, is fetched instead of hidden.
GraphToggle DecideToggle(const GraphSettings& settings, bool shown, bool covered);

}  // namespace kestrane
