// Input from the shell and other programs: any icon message, any registry entry of an icon, any command line. A message
// triggers nothing that its icon cannot do, and another program's entry is never taken for ours.
#include <algorithm>
#include <array>
#include <optional>

#include "app/command_line.h"
#include "app/tray_events.h"
#include "fuzz/fuzz_target.h"
#include "settings/autostart.h"
#include "tray/promotion.h"

namespace kestrane {
namespace {

using fuzz::ByteSource;
using fuzz::Require;

constexpr std::wstring_view OwnPath = L"C:\\Users\\ana\\kestrane.exe";
constexpr std::size_t FolderTextLength = 38;
constexpr std::array<std::uint32_t, 3> GraphIcons{1, 2, 4};

void CheckNotification(std::uint64_t wParam, std::int64_t lParam) {
    const TrayNotification notification = DecodeTrayNotification(wParam, lParam);
    Require(notification.event <= 0xFFFF && notification.iconId <= 0xFFFF);
    Require(notification.x >= INT16_MIN && notification.x <= INT16_MAX);
    Require(notification.y >= INT16_MIN && notification.y <= INT16_MAX);
    const TrayAction action = RouteTrayNotification(notification);
    const bool hasGraph = std::ranges::count(GraphIcons, notification.iconId) > 0;
    if (action == TrayAction::OpenTaskManager) Require(!hasGraph && notification.event == EventDoubleClick);
    if (action == TrayAction::ClickGraphIcon) Require(hasGraph);
    if (action == TrayAction::ShowMenu) Require(notification.event == EventContextMenu);
}

void CheckClicks(ByteSource& source) {
    std::uint64_t nextClickTick = 0;
    const auto doubleClickMs = static_cast<std::uint32_t>(source.Bits(2));
    const std::uint64_t now = source.Bits(8);
    const bool first = PassesClickFilter(EventSelect, now, doubleClickMs, nextClickTick);
    const bool second = PassesClickFilter(EventDoubleClick, now, doubleClickMs, nextClickTick);
    Require(first && (!second || doubleClickMs == 0 || nextClickTick < now));
}

void CheckEntry(std::wstring_view characters) {
    const std::wstring path = TextBeforeZero(characters);
    Require(path.find(L'\0') == std::wstring::npos && characters.starts_with(path));
    if (IsOwnEntry(path, OwnPath)) Require(path.size() == OwnPath.size());
    Require(!IsOwnEntry(path, L""));
    if (const std::optional<FolderPath> parsed = ParseFolderPath(path)) {
        Require(path.front() == L'{' && path.ends_with(parsed->rest));
        Require(parsed->rest.size() == path.size() - FolderTextLength - 1);
    }
}

void CheckCommandLine(const std::wstring& text) {
    if (ClassifyCommandLine(text.c_str()) == StartKind::Ordinary) return;
    const std::wstring_view known = text.c_str();
    Require(known == ExitSwitch || known == UpdatedSwitch || known == SetMachineAutostartCommand ||
            known == ClearMachineAutostartCommand);
}

}  // namespace
}  // namespace kestrane

FUZZ_TARGET(shell_answers) {
    using namespace kestrane;
    fuzz::ByteSource source(input);
    CheckNotification(source.Bits(8), static_cast<std::int64_t>(source.Bits(8)));
    CheckClicks(source);
    const std::wstring text = fuzz::WideText(input);
    CheckEntry(text);
    CheckCommandLine(text);
}
