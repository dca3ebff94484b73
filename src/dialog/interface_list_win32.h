#pragma once
// The list of interfaces: a click anywhere on an item, or Space on the one with the caret, toggles it. The list's own
// selection is not used.
#include <windows.h>

namespace kestrane {

/// Subclasses the list box `list`, for as long as it lives. Its parent gets WM_TOGGLE_INTERFACE.
void SubclassInterfaceList(HWND list);

}  // namespace kestrane
