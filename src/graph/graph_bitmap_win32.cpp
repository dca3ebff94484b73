#include "graph/graph_bitmap_win32.h"

namespace kestrane {
GraphBitmap::GraphBitmap(HDC target, std::int32_t width, std::int32_t height) {
    if (width < 1 || height < 1) return;
    dc_.Reset(CreateCompatibleDC(target));
    if (!dc_) return;
    dib_ = MakeDib(dc_.Get(), width, height, DibFormat::Rgb);
    if (!dib_) return;
    buffer_ = {width, height, dc_.Get(), dib_.bitmap.Get(), nullptr, dib_.pixels};
    buffer_.previousBitmap = static_cast<HBITMAP>(SelectObject(dc_.Get(), dib_.bitmap.Get()));
}

GraphBitmap::~GraphBitmap() {
    if (buffer_.previousBitmap != nullptr) SelectObject(dc_.Get(), buffer_.previousBitmap);
}

}  // namespace kestrane
