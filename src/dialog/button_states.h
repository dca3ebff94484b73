#pragma once
// Which controls of the settings dialog are enabled, and the rules of the check boxes that no field of AppSettings
// holds.
#include <array>

#include "dialog/dialog_panels.h"
#include "settings/app_settings.h"
#include "settings/autostart.h"

namespace kestrane {

struct DialogRow;

/// The General page as its controls show it.
struct GeneralPage {
    bool autostart = false;
    bool all_users = false;  // counts only while `autostart` is ticked
    bool check_updates = true;
};

/// The General page as last read or saved.
struct SavedGeneral {
    AutostartMode autostart_mode = AutostartMode::Off;
    bool saved_check_updates = true;
};

/// Each true for enabled.
struct ButtonStates {
    std::array<bool, MetricCount> page{};  // by SettingsTab: the controls that follow the page's switch
    std::array<bool, TabCount> save{};     // by SettingsTab, like `restore`
    std::array<bool, TabCount> restore{};
    bool all_users = false;
};

/// `saved` is what the file holds, `defaults` what MakeDefaultSettings returns.
ButtonStates EvaluateButtons(const AppSettings& settings, const AppSettings& saved, const AppSettings& defaults,
                             const GeneralPage& general, const SavedGeneral& savedGeneral);

/// True if the control is disabled while its page's icon is hidden: all but titles, hardware, the switch itself, the
/// two buttons at the end of the page, and the General page.
bool FollowsSwitch(const DialogRow& row);

/// What the ticked boxes ask for.
AutostartMode WantedAutostart(const GeneralPage& general);

/// Shows or hides the icon of a tab. False, without a change, for the last shown icon and for General.
bool ToggleShown(AppSettings& settings, SettingsTab tab);

}  // namespace kestrane
