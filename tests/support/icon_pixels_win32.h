#pragma once
// Reads an icon handle back as pixels.
#include <windows.h>

#include <cstdint>
#include <utility>
#include <vector>

namespace kestrane {

/// The pixels of an icon's colour bitmap, 0xAARRGGBB, top row first.
struct IconPixels {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<std::uint32_t> pixels;
};

inline IconPixels BitmapPixels(HBITMAP bitmap) {
    BITMAP shape{};
    GetObjectW(bitmap, sizeof shape, &shape);
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, shape.bmWidth, -shape.bmHeight, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    IconPixels read{shape.bmWidth, shape.bmHeight, {}};
    read.pixels.resize(static_cast<std::size_t>(shape.bmWidth) * static_cast<std::size_t>(shape.bmHeight));
    const HDC screen = GetDC(nullptr);
    GetDIBits(screen, bitmap, 0, static_cast<UINT>(shape.bmHeight), read.pixels.data(), &info, DIB_RGB_COLORS);
    ReleaseDC(nullptr, screen);
    return read;
}

/// Empty if `icon` is not an icon.
inline IconPixels ReadIconPixels(HICON icon) {
    ICONINFO info{};
    if (GetIconInfo(icon, &info) == FALSE) return {};
    IconPixels read = BitmapPixels(info.hbmColor);
    DeleteObject(info.hbmColor);
    DeleteObject(info.hbmMask);
    return read;
}

}  // namespace kestrane
