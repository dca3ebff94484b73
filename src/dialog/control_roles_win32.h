#pragma once
// Tells screen readers what the painted buttons of the settings dialog are: tabs, one of them selected, and switches
// that are on or off.
#include <windows.h>

#include <array>
#include <cstddef>
#include <vector>

#include "base/accessible_win32.h"
#include "settings/app_settings.h"

namespace kestrane {

/// The roles live as long as this, within the life of the dialog's windows and of a COM apartment. Where the system
/// does not offer them, the controls stay what they look like to it: plain buttons.
class ControlRoles {
  public:
    explicit ControlRoles(HWND dialog);
    ControlRoles(const ControlRoles&) = delete;
    ControlRoles& operator=(const ControlRoles&) = delete;
    ~ControlRoles();

    /// Tells what has changed: which icons are shown, which tab is the current one, and which control has the focus,
    /// because what is told replaces all that the system knows of a control's state.
    void Update(const std::array<bool, MetricCount>& shown, SettingsTab current);

  private:
    struct Part {
        HWND control;
        LONG role;
        std::size_t tab;
        LONG state = 0;  // as told last
    };
    void Add(HWND control, LONG role, std::size_t tab);

    UniqueAccPropServices services_;
    std::vector<Part> parts_;
};

}  // namespace kestrane
