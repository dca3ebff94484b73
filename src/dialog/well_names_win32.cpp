#include "dialog/well_names_win32.h"

#include "dialog/dialog_panels.h"
#include "dialog/well_names.h"

namespace kestrane {
namespace {

// The system's ids of its service, of the service's interface, and of the property that is a control's name.
constexpr GUID ServicesClass{0xb5f8350b, 0x0548, 0x48b1, {0xa6, 0xee, 0x88, 0xbd, 0x00, 0xb4, 0xa5, 0xe7}};
constexpr GUID ServicesInterface{0x6e26e776, 0x04f0, 0x495d, {0x80, 0xe4, 0x33, 0x30, 0x35, 0x2e, 0x31, 0x69}};
constexpr GUID NameProperty{0x608d3df8, 0x8128, 0x4aa7, {0xa4, 0x28, 0xf5, 0x5e, 0x49, 0x26, 0x72, 0x91}};

constexpr auto ClientObject = static_cast<DWORD>(OBJID_CLIENT);

}  // namespace

WellNames::WellNames(HWND dialog) : dialog_(dialog) {
    void* services = nullptr;
    if (SUCCEEDED(CoCreateInstance(ServicesClass, nullptr, CLSCTX_INPROC_SERVER, ServicesInterface, &services)))
        services_.Reset(static_cast<IAccPropServices*>(services));
}

WellNames::~WellNames() {
    for (std::size_t i = 0; i < names_.size(); ++i) {
        if (!names_[i].empty()) services_.Get()->ClearHwndProps(Well(i), ClientObject, CHILDID_SELF, &NameProperty, 1);
    }
}

void WellNames::Update(const std::array<std::int32_t, 3>& thresholds) {
    if (!services_) return;
    for (std::size_t i = 0; i < names_.size(); ++i) {
        std::wstring name = WellName(static_cast<ColorKey>(i), thresholds);
        const HWND well = Well(i);
        if (well == nullptr || name == names_[i]) continue;
        if (SUCCEEDED(services_.Get()->SetHwndPropStr(well, ClientObject, CHILDID_SELF, NameProperty, name.c_str())))
            names_[i] = std::move(name);
    }
}

HWND WellNames::Well(std::size_t key) const {
    return GetDlgItem(dialog_, ColorWells[key]);
}

}  // namespace kestrane
