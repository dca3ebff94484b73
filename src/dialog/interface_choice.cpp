#include "dialog/interface_choice.h"

#include <algorithm>

#include "text/number_text.h"
#include "text/text_util.h"
#include "text/translation.h"

namespace kestrane {
namespace {

/// Chooses the row of an interface in the settings, or keeps the interface as missing.
void TakeChosen(InterfaceChoice& choice, std::uint64_t id, const std::wstring& alias) {
    const auto row = std::ranges::find_if(choice.interface_rows, [&](const InterfaceRow& candidate) {
        return candidate.id == id || (!alias.empty() && EqualIgnoringCase(candidate.name, alias));
    });
    if (row != choice.interface_rows.end()) {
        row->chosen = true;
    } else {
        choice.missing_interfaces.push_back({id, alias});
    }
}

}  // namespace

InterfaceChoice BuildInterfaceChoice(const AppSettings& settings, const std::vector<NetRow>& present) {
    InterfaceChoice choice;
    choice.all_connections = settings.interfaces.empty();
    for (const NetRow& row : present) {
        if (IsListableInterface(row)) choice.interface_rows.push_back({row.key, row.alias, row.ip, false});
    }
    const std::vector<std::wstring>& aliases = settings.interface_aliases;
    for (std::size_t i = 0; i < settings.interfaces.size(); ++i)
        TakeChosen(choice, settings.interfaces[i], i < aliases.size() ? aliases[i] : std::wstring());
    return choice;
}

std::size_t ListedItems(const InterfaceChoice& choice) {
    return choice.all_connections ? 1 : 1 + choice.interface_rows.size();
}

bool ToggleItem(InterfaceChoice& choice, std::size_t item) {
    if (item >= ListedItems(choice)) return false;
    bool& ticked = item == 0 ? choice.all_connections : choice.interface_rows[item - 1].chosen;
    ticked = !ticked;
    if (choice.all_connections) choice.missing_interfaces.clear();
    return true;
}

void StoreInterfaceChoice(const InterfaceChoice& choice, AppSettings& settings) {
    settings.interfaces.clear();
    settings.interface_aliases.clear();
    if (choice.all_connections) return;
    const auto store = [&settings](std::uint64_t id, const std::wstring& alias) {
        settings.interfaces.push_back(id);
        settings.interface_aliases.push_back(alias);
    };
    for (const InterfaceRow& row : choice.interface_rows) {
        if (row.chosen) store(row.id, row.name);
    }
    for (const MissingInterface& missing : choice.missing_interfaces)
        store(missing.id, missing.alias);
}

InterfaceItem InterfaceItemAt(const InterfaceChoice& choice, std::size_t item) {
    const std::wstring number = FormatInteger(item + 1);
    if (item == 0) return {choice.all_connections, number, Tr(L"Todas las conexiones"), {}};
    const InterfaceRow& row = choice.interface_rows[item - 1];
    return {row.chosen, number, row.name, row.ip};
}

}  // namespace kestrane
