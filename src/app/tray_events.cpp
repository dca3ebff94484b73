#include "app/tray_events.h"

#include "settings/task_manager.h"

namespace kestrane {
namespace {

std::int32_t SignedWord(std::uint64_t bits) {
    return static_cast<std::int16_t>(bits & 0xFFFF);
}

}  // namespace

TrayNotification DecodeTrayNotification(std::uint64_t wParam, std::int64_t lParam) {
    const auto packed = static_cast<std::uint64_t>(lParam);
    return {static_cast<std::uint32_t>(packed & 0xFFFF), static_cast<std::uint32_t>(packed >> 16 & 0xFFFF),
            SignedWord(wParam), SignedWord(wParam >> 16)};
}

TrayAction RouteTrayNotification(const TrayNotification& notification) {
    if (notification.event == EventBalloonClick) return TrayAction::OpenUpdate;
    if (notification.event == EventContextMenu) return TrayAction::ShowMenu;
    if (GraphOfIcon(notification.iconId)) return TrayAction::ClickGraphIcon;
    return notification.event == EventDoubleClick ? TrayAction::OpenTaskManager : TrayAction::None;
}

std::int64_t TaskManagerPage(std::uint32_t iconId, const MetricSample& sample) {
    const MetricKind metric = MetricOfIcon(iconId).value_or(MetricKind::Cpu);
    const bool writesMore = sample.diskWritePercent > sample.diskReadPercent;
    return StartPage(metric, writesMore ? sample.busiestWriteDisk : sample.busiestReadDisk, sample.diskInstanceCount);
}

bool PassesClickFilter(std::uint32_t event, std::uint64_t now, std::uint32_t doubleClickMs,
                       std::uint64_t& nextClickTick) {
    if (event != EventSelect && event != EventKeySelect && event != EventDoubleClick) return false;
    if (now < nextClickTick) return false;
    nextClickTick = now + doubleClickMs;
    return true;
}

GraphToggle DecideToggle(const GraphSettings& settings, bool shown, bool covered) {
    if (!shown) return GraphToggle::Open;
    if (settings.pinned) return GraphToggle::Stay;
    return covered && !settings.topmost ? GraphToggle::Raise : GraphToggle::Hide;
}

}  // namespace kestrane
