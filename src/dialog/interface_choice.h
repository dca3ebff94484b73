#pragma once
// The list in which the user chooses the network interfaces to count. Its first item stands for all connections; while
// it is ticked, the list shows nothing else.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "metrics/net_rules.h"
#include "settings/app_settings.h"

namespace kestrane {

struct InterfaceRow {
    std::uint64_t id = 0;
    std::wstring name;
    std::wstring ip;
    bool chosen = false;
};

/// A chosen interface that is not listed now. It stays chosen until the user asks for all connections.
struct MissingInterface {
    std::uint64_t id = 0;
    std::wstring alias;
};

struct InterfaceChoice {
    bool all_connections = true;
    std::vector<InterfaceRow> interface_rows;
    std::vector<MissingInterface> missing_interfaces;
};

/// The choice in `settings` over those of `present` that are listable. A chosen interface is the first row with its id
/// or, ignoring case, its name.
InterfaceChoice BuildInterfaceChoice(const AppSettings& settings, const std::vector<NetRow>& present);

/// How many items the list shows.
std::size_t ListedItems(const InterfaceChoice& choice);

/// Ticks or unticks an item. False, without a change, for an item that is not listed. Ticking all connections forgets
/// the missing interfaces.
bool ToggleItem(InterfaceChoice& choice, std::size_t item);

/// Writes the choice into the settings: the chosen rows, then the missing interfaces. Nothing chosen is stored like all
/// connections.
void StoreInterfaceChoice(const InterfaceChoice& choice, AppSettings& settings);

/// An item as the list shows it.
struct InterfaceItem {
    bool checked = false;
    std::wstring number;  // counted from 1
    std::wstring name;
    std::wstring ip;

    bool operator==(const InterfaceItem&) const = default;
};

/// In the active language. `item` must be below ListedItems.
InterfaceItem InterfaceItemAt(const InterfaceChoice& choice, std::size_t item);

}  // namespace kestrane
