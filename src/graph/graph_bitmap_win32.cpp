#include "graph/graph_bitmap_win32.h"

namespace kestrane {
namespace {

BITMAPINFO TopDownInfo(std::int32_t width, std::int32_t height) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    return info;
}

}  // namespace

GraphBitmap::GraphBitmap(HDC target, std::int32_t width, std::int32_t height) {
    if (width < 1 || height < 1) return;
    dc_.Reset(CreateCompatibleDC(target));
    if (!dc_) return;
    const BITMAPINFO info = TopDownInfo(width, height);
    void* bits = nullptr;
    bitmap_.Reset(CreateDIBSection(dc_.Get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (!bitmap_ || bits == nullptr) return;
    buffer_ = {width, height, dc_.Get(), bitmap_.Get(), nullptr, static_cast<std::uint32_t*>(bits)};
    buffer_.previousBitmap = static_cast<HBITMAP>(SelectObject(dc_.Get(), bitmap_.Get()));
}

GraphBitmap::~GraphBitmap() {
    if (buffer_.previousBitmap != nullptr) SelectObject(dc_.Get(), buffer_.previousBitmap);
}

}  // namespace kestrane
