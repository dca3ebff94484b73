#include "dialog/button_states.h"

#include <algorithm>
#include <cstddef>

#include "dialog/control_table.h"
#include "settings/settings_tab.h"

namespace kestrane {
namespace {

// `show` is indexed by tabs here.
static_assert(IndexOf(SettingsTab::Cpu) == IndexOf(MetricKind::Cpu) &&
              IndexOf(SettingsTab::Disk) == IndexOf(MetricKind::Disk) &&
              IndexOf(SettingsTab::Memory) == IndexOf(MetricKind::Memory) &&
              IndexOf(SettingsTab::Network) == IndexOf(MetricKind::Network));

/// Titles and hardware look the same while the icon is hidden, and the switch must be able to show it again.
bool IsAlwaysEnabled(ControlType type) {
    switch (type) {
        case ControlType::TabTitle:
        case ControlType::BoxTitle:
        case ControlType::TabIcon:
        case ControlType::ShowSwitch:
        case ControlType::SectionTitle:
        case ControlType::HardwareText:
            return true;
        default:
            return false;
    }
}

}  // namespace

ButtonStates EvaluateButtons(const AppSettings& settings, const AppSettings& saved, const AppSettings& defaults,
                             const GeneralPage& general, const SavedGeneral& savedGeneral) {
    ButtonStates states;
    states.page = settings.show;
    for (std::size_t i = 0; i < MetricCount; ++i) {
        const auto tab = static_cast<SettingsTab>(i);
        states.save[i] = !SettingsTabEqual(settings, saved, tab);
        states.restore[i] = !SettingsTabEqual(settings, defaults, tab);
    }
    states.save[IndexOf(SettingsTab::General)] = WantedAutostart(general) != savedGeneral.autostart_mode ||
                                                 general.check_updates != savedGeneral.saved_check_updates;
    states.restore[IndexOf(SettingsTab::General)] =
        general.autostart || general.check_updates != defaults.check_updates;
    states.all_users = general.autostart;
    return states;
}

bool FollowsSwitch(const DialogRow& row) {
    const DialogTab& tab = DialogTabs[IndexOf(DialogGroups[static_cast<std::size_t>(row.group)].tab)];
    return tab.show != NoId && row.id != tab.restore && row.id != tab.save && !IsAlwaysEnabled(row.type);
}

AutostartMode WantedAutostart(const GeneralPage& general) {
    if (!general.autostart) return AutostartMode::Off;
    return general.all_users ? AutostartMode::AllUsers : AutostartMode::ThisUser;
}

bool ToggleShown(AppSettings& settings, SettingsTab tab) {
    if (IndexOf(tab) >= settings.show.size()) return false;
    bool& shown = settings.show[IndexOf(tab)];
    if (shown && std::ranges::count(settings.show, true) == 1) return false;
    shown = !shown;
    return true;
}

}  // namespace kestrane
