#include "dialog/well_names_win32.h"

#include "dialog/dialog_panels.h"
#include "dialog/well_names.h"

namespace kestrane {
WellNames::WellNames(HWND dialog) : services_(OpenAccPropServices()), dialog_(dialog) {}

WellNames::~WellNames() {
    for (std::size_t i = 0; i < names_.size(); ++i) {
        if (!names_[i].empty()) services_.Get()->ClearHwndProps(Well(i), AccControl, CHILDID_SELF, &AccName, 1);
    }
}

void WellNames::Update(const std::array<std::int32_t, 3>& thresholds) {
    if (!services_) return;
    for (std::size_t i = 0; i < names_.size(); ++i) {
        std::wstring name = WellName(static_cast<ColorKey>(i), thresholds);
        const HWND well = Well(i);
        if (well == nullptr || name == names_[i]) continue;
        if (SUCCEEDED(services_.Get()->SetHwndPropStr(well, AccControl, CHILDID_SELF, AccName, name.c_str())))
            names_[i] = std::move(name);
    }
}

HWND WellNames::Well(std::size_t key) const {
    return GetDlgItem(dialog_, ColorWells[key]);
}

}  // namespace kestrane
