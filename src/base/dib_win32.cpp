#include "base/dib_win32.h"

#include <utility>

namespace kestrane {
namespace {

/// A longer header begins with the fields of the shorter one; its size field says which of the two it is.
BITMAPV5HEADER MakeHeader(std::int32_t width, std::int32_t height, DibFormat format) {
    BITMAPV5HEADER header{};
    header.bV5Size = sizeof(BITMAPINFOHEADER);
    header.bV5Width = width;
    header.bV5Height = -height;  // top row first
    header.bV5Planes = 1;
    header.bV5BitCount = 32;
    header.bV5Compression = BI_RGB;
    if (format == DibFormat::Argb) {
        header.bV5Size = sizeof header;
        header.bV5Compression = BI_BITFIELDS;
        header.bV5RedMask = 0x00FF0000;
        header.bV5GreenMask = 0x0000FF00;
        header.bV5BlueMask = 0x000000FF;
        header.bV5AlphaMask = 0xFF000000;
    }
    return header;
}

}  // namespace

Dib MakeDib(HDC dc, std::int32_t width, std::int32_t height, DibFormat format) {
    const BITMAPV5HEADER header = MakeHeader(width, height, format);
    void* bits = nullptr;
    UniqueBitmap bitmap(
        CreateDIBSection(dc, reinterpret_cast<const BITMAPINFO*>(&header), DIB_RGB_COLORS, &bits, nullptr, 0));
    if (!bitmap || bits == nullptr) return {};
    return {std::move(bitmap), static_cast<std::uint32_t*>(bits)};
}

}  // namespace kestrane
