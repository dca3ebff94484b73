#pragma once
// Pictures of 32 bits a pixel, top row first, whose pixels can be read and written directly. Direct access and GDI's
// drawing must not overlap: GdiFlush stands between them.
#include <windows.h>

#include <cstdint>

#include "base/handles_win32.h"

namespace kestrane {

/// A picture and its width * height pixels, which live as long as the bitmap does.
struct Dib {
    UniqueBitmap bitmap;
    std::uint32_t* pixels = nullptr;

    explicit operator bool() const { return pixels != nullptr; }
};

/// What the highest byte of a pixel is.
enum class DibFormat {
    Rgb,   // nothing in particular (BI_RGB); menus take it for premultiplied alpha
    Argb,  // alpha, declared by a mask, as an icon's colours have it
};

/// All pixels are zero at first. Empty if the system refuses.
Dib MakeDib(HDC dc, std::int32_t width, std::int32_t height, DibFormat format);

}  // namespace kestrane
