#pragma once
// The off-screen surface of one paint: a memory context with a 32-bit picture selected, whose pixels can be written
// directly. Direct writes and GDI drawing must not overlap: GdiFlush stands between them.
#include <windows.h>

#include <cstdint>

#include "base/dib_win32.h"
#include "base/handles_win32.h"
#include "graph/pixel_buffer.h"

namespace kestrane {

class GraphBitmap {
  public:
    /// `target` is what the picture is meant for. False afterwards if the system refused any part of it, or if there
    /// are no pixels to hold.
    GraphBitmap(HDC target, std::int32_t width, std::int32_t height);
    GraphBitmap(const GraphBitmap&) = delete;
    GraphBitmap& operator=(const GraphBitmap&) = delete;
    ~GraphBitmap();

    explicit operator bool() const { return buffer_.previousBitmap != nullptr; }
    const PixelBuffer& Pixels() const { return buffer_; }

  private:
    UniqueMemoryDc dc_;
    Dib dib_;
    PixelBuffer buffer_;
};

}  // namespace kestrane
