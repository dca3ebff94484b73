#pragma once
// Messages that the settings dialog posts to itself.
#include <windows.h>

namespace kestrane {

/// The list of interfaces asks to tick or untick the item whose index is the WPARAM.
inline constexpr UINT WM_TOGGLE_INTERFACE = 0x800A;
/// The language has changed: all texts are to be set again.
inline constexpr UINT WM_RETRANSLATE = 0x800B;
/// The dialog has moved to a monitor of another DPI, for which the system has resized it and all controls.
inline constexpr UINT WM_SETTINGS_DRESS = 0x800C;

}  // namespace kestrane
