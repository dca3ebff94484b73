#pragma once
// The current tray menu as data: its entries in order.
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "settings/app_settings.h"

namespace kestrane {

/// The result of a menu dismissed without a choice.
inline constexpr std::uint32_t NothingChosen = 0;

inline constexpr std::uint32_t CommandSettings = 100;
inline constexpr std::uint32_t CommandAbout = 101;
inline constexpr std::uint32_t CommandExit = 102;
inline constexpr std::uint32_t CommandPerformance = 103;
/// A pin entry's id is this plus its GraphKind: 104 network, 105 CPU, 106 disk.
inline constexpr std::uint32_t CommandPinFirst = 104;
inline constexpr std::uint32_t CommandPinLast = CommandPinFirst + GraphCount - 1;
static_assert(IndexOf(GraphKind::Network) == 0 && IndexOf(GraphKind::Disk) == GraphCount - 1);
inline constexpr std::uint32_t CommandUpdate = 110;

/// An entry; a separator has the id 0 and no text.
struct TrayMenuEntry {
    std::uint32_t id = 0;
    std::wstring text;           // translated
    std::uint32_t resource = 0;  // icon resource, 0 for none
    bool checked = false;

    bool operator==(const TrayMenuEntry&) const = default;
};

/// The default entry, shown in bold.
inline constexpr std::uint32_t DefaultCommand = CommandPerformance;

/// Whether the command starts another program, which comes to the front by itself unless the foreground changes.
constexpr bool StartsAProgram(std::uint32_t command) {
    return command == CommandPerformance;
}

/// `shown` tells by GraphKind which graphs are open: only those can be pinned. The pin entries are in the order CPU,
/// disk, network. `offeredVersion` is the newer version that the user can have, if there is one; it stands at the top.
std::vector<TrayMenuEntry> BuildTrayMenu(const AppSettings& settings, const std::array<bool, GraphCount>& shown,
                                         const std::optional<std::wstring>& offeredVersion);

}  // namespace kestrane
