#pragma once
#include <windows.h>

#include <cstdint>
#include <string>

#include "base/handles_win32.h"

namespace kestrane {

/// A font of this face, its characters `height` pixels high. `quality` is a GDI quality such as CLEARTYPE_QUALITY. The
/// system substitutes a face that is not installed; empty on failure.
inline UniqueFont MakeFont(const std::wstring& face, std::int32_t height, bool bold, DWORD quality) {
    return UniqueFont(CreateFontW(-height, 0, 0, 0, bold ? FW_BOLD : FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                                  OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, quality, DEFAULT_PITCH | FF_DONTCARE,
                                  face.c_str()));
}

}  // namespace kestrane
