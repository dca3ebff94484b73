#pragma once
#include <windows.h>

#include <cstdint>

#include "base/handles_win32.h"

namespace kestrane {

/// An icon of the program in this size in pixels; empty on failure.
inline UniqueIcon LoadIconResource(std::uint32_t resource, int size) {
    const HANDLE icon =
        LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(resource), IMAGE_ICON, size, size, LR_DEFAULTCOLOR);
    return UniqueIcon(static_cast<HICON>(icon));
}

}  // namespace kestrane
