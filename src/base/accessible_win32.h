#pragma once
// What screen readers are told about a control instead of what they would find by themselves.
#include <windows.h>
// <windows.h> comes first.
#include <ole2.h>

#include <oleacc.h>

#include "base/owned.h"

namespace kestrane {

struct AccPropServicesTraits {
    using Handle = IAccPropServices*;
    static constexpr Handle None() { return nullptr; }
    static void Close(Handle services) { services->Release(); }
};
using UniqueAccPropServices = Owned<AccPropServicesTraits>;

/// The system's service for it, within the life of a COM apartment; empty where the system has none. What is set for a
/// window must be cleared while the window exists.
UniqueAccPropServices OpenAccPropServices();

/// The object of a window that is the control itself.
inline constexpr auto AccControl = static_cast<DWORD>(OBJID_CLIENT);

// The system's ids of the properties.
inline constexpr GUID AccName{0x608d3df8, 0x8128, 0x4aa7, {0xa4, 0x28, 0xf5, 0x5e, 0x49, 0x26, 0x72, 0x91}};
inline constexpr GUID AccRole{0xcb905ff2, 0x7bd1, 0x4c05, {0xb3, 0xc8, 0xe6, 0xc2, 0x41, 0x36, 0x4d, 0x70}};
inline constexpr GUID AccState{0xa8d4d5b0, 0x0a21, 0x42d0, {0xa5, 0xc0, 0x51, 0x4e, 0x98, 0x4f, 0x45, 0x7b}};
inline constexpr GUID AccValue{0x123fe443, 0x211a, 0x4615, {0x95, 0x27, 0xc4, 0x5a, 0x7e, 0x93, 0x71, 0x7a}};

/// Sets a property that is a number: a role or a state.
void SetAccNumber(const UniqueAccPropServices& services, HWND control, const GUID& property, LONG value);

}  // namespace kestrane
