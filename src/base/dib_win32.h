#pragma once
// 32-bit top-down bitmaps whose pixels can be read and written directly. Call GdiFlush between GDI drawing and direct
// access.
#include <windows.h>

#include <cstdint>

#include "base/handles_win32.h"

namespace kestrane {

/// A bitmap and its width * height pixels, which live as long as the bitmap does.
struct Dib {
    UniqueBitmap bitmap;
    std::uint32_t* pixels = nullptr;

    explicit operator bool() const { return pixels != nullptr; }
};

/// The meaning of a pixel's highest byte.
enum class DibFormat {
    Rgb,   // unspecified (BI_RGB); menus read it as premultiplied alpha
    Argb,  // alpha, declared by a mask, as icons need it
};

/// All pixels start at zero. Empty on failure.
Dib MakeDib(HDC dc, std::int32_t width, std::int32_t height, DibFormat format);

}  // namespace kestrane
