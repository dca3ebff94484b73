#include "dialog/control_roles_win32.h"

#include "dialog/dialog_panels.h"

namespace kestrane {
namespace {

/// What holds for any control.
LONG StateOfWindow(HWND control) {
    LONG state = IsWindowEnabled(control) ? STATE_SYSTEM_FOCUSABLE : STATE_SYSTEM_UNAVAILABLE;
    if (GetFocus() == control) state |= STATE_SYSTEM_FOCUSED;
    if ((GetWindowLongPtrW(control, GWL_STYLE) & WS_VISIBLE) == 0) state |= STATE_SYSTEM_INVISIBLE;
    return state;
}

}  // namespace

ControlRoles::ControlRoles(HWND dialog) : services_(OpenAccPropServices()) {
    if (!services_) return;
    for (std::size_t i = 0; i < TabCount; ++i) {
        Add(GetDlgItem(dialog, DialogTabs[i].button), ROLE_SYSTEM_PAGETAB, i);
        if (DialogTabs[i].show != NoId) Add(GetDlgItem(dialog, DialogTabs[i].show), ROLE_SYSTEM_CHECKBUTTON, i);
    }
}

ControlRoles::~ControlRoles() {
    const std::array properties{AccRole, AccState};
    for (const Part& part : parts_)
        services_.Get()->ClearHwndProps(part.control, AccControl, CHILDID_SELF, properties.data(), properties.size());
}

void ControlRoles::Update(const std::array<bool, MetricCount>& shown, SettingsTab current) {
    constexpr LONG On = STATE_SYSTEM_CHECKED | STATE_SYSTEM_SELECTED;
    for (Part& part : parts_) {
        LONG state = StateOfWindow(part.control);
        if (part.role == ROLE_SYSTEM_PAGETAB) {
            state |= STATE_SYSTEM_SELECTABLE | (part.tab == IndexOf(current) ? STATE_SYSTEM_SELECTED : 0);
        } else if (shown[part.tab]) {
            state |= STATE_SYSTEM_CHECKED;
        }
        const LONG changed = state ^ part.state;
        if (changed == 0) continue;
        part.state = state;
        SetAccNumber(services_, part.control, AccState, state);
        // The focus has events of its own.
        if ((changed & On) != 0) NotifyWinEvent(EVENT_OBJECT_STATECHANGE, part.control, OBJID_CLIENT, CHILDID_SELF);
    }
}

void ControlRoles::Add(HWND control, LONG role, std::size_t tab) {
    if (control == nullptr) return;
    parts_.push_back({control, role, tab});
    SetAccNumber(services_, control, AccRole, role);
}

}  // namespace kestrane
