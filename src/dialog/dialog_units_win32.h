#pragma once
#include <windows.h>

#include "base/geometry_win32.h"

namespace kestrane {

/// A rectangle in dialog units as pixels of this dialog.
inline Rect DialogUnitsToPixels(HWND dialog, const Rect& units) {
    RECT rect = ToPlatform(units);
    MapDialogRect(dialog, &rect);
    return FromPlatform(rect);
}

}  // namespace kestrane
