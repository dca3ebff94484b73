#include "update/update_dialog_roles_win32.h"

#include <string>

#include "text/number_text.h"

namespace kestrane {

UpdateDialogRoles::UpdateDialogRoles(const std::array<HWND, 2>& links, HWND bar, const wchar_t* nameOfBar)
    : services_(OpenAccPropServices()), links_(links), bar_(bar) {
    if (!services_) return;
    for (const HWND link : links_)
        SetAccNumber(services_, link, AccRole, ROLE_SYSTEM_LINK);
    SetAccNumber(services_, bar_, AccRole, ROLE_SYSTEM_PROGRESSBAR);
    SetText(AccName, nameOfBar);
    ShowProgress(0);
}

UpdateDialogRoles::~UpdateDialogRoles() {
    if (!services_) return;
    for (const HWND link : links_)
        services_.Get()->ClearHwndProps(link, AccControl, CHILDID_SELF, &AccRole, 1);
    const std::array properties{AccRole, AccName, AccValue};
    services_.Get()->ClearHwndProps(bar_, AccControl, CHILDID_SELF, properties.data(), properties.size());
}

void UpdateDialogRoles::ShowProgress(std::int32_t permille) {
    const std::int32_t percent = permille / 10;
    if (!services_ || percent == percent_) return;
    percent_ = percent;
    SetText(AccValue, (FormatUnsigned(static_cast<std::uint64_t>(percent)) + L"%").c_str());
    NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, bar_, OBJID_CLIENT, CHILDID_SELF);
}

void UpdateDialogRoles::SetText(const GUID& property, const wchar_t* text) {
    services_.Get()->SetHwndPropStr(bar_, AccControl, CHILDID_SELF, property, text);
}

}  // namespace kestrane
