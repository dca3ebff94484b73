#pragma once
// Messages that the settings dialog posts to itself.
#include <windows.h>

namespace kestrane {

/// The list of interfaces asks to tick or untick the item whose index is the WPARAM.
inline constexpr UINT WM_TOGGLE_INTERFACE = 0x800A;
/// The language has changed: all texts are to be set again.
inline constexpr UINT WM_RETRANSLATE = 0x800B;

}  // namespace kestrane
