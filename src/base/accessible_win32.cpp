#include "base/accessible_win32.h"

namespace kestrane {
namespace {

// The system's ids of its service and of the service's interface.
constexpr GUID ServicesClass{0xb5f8350b, 0x0548, 0x48b1, {0xa6, 0xee, 0x88, 0xbd, 0x00, 0xb4, 0xa5, 0xe7}};
constexpr GUID ServicesInterface{0x6e26e776, 0x04f0, 0x495d, {0x80, 0xe4, 0x33, 0x30, 0x35, 0x2e, 0x31, 0x69}};

}  // namespace

UniqueAccPropServices OpenAccPropServices() {
    void* services = nullptr;
    if (FAILED(CoCreateInstance(ServicesClass, nullptr, CLSCTX_INPROC_SERVER, ServicesInterface, &services))) return {};
    return UniqueAccPropServices(static_cast<IAccPropServices*>(services));
}

void SetAccNumber(const UniqueAccPropServices& services, HWND control, const GUID& property, LONG value) {
    VARIANT variant{};
    variant.vt = VT_I4;
    variant.lVal = value;
    services.Get()->SetHwndProp(control, AccControl, CHILDID_SELF, property, variant);
}

}  // namespace kestrane
