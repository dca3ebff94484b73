#pragma once
// The off-screen surface of one paint: a memory DC with a 32-bit DIB selected, whose pixels can be written directly.
// Call GdiFlush between GDI drawing and direct access.
#include <windows.h>

#include <cstdint>

#include "base/dib_win32.h"
#include "base/handles_win32.h"
#include "graph/pixel_buffer.h"

namespace kestrane {

class GraphBitmap {
  public:
    /// Compatible with `target`. Converts to false if creation failed or the size is empty.
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
