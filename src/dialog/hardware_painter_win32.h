#pragma once
// Paints the rows of a hardware box.
#include <windows.h>

#include <cstdint>
#include <vector>

#include "base/geometry.h"
#include "dialog/owner_drawn_win32.h"
#include "hardware/summary_rows.h"

namespace kestrane {

/// Paints `rows` from the top of `rect` and returns their total height. Without `draw` it only measures.
std::int32_t PaintHardwareRows(HDC dc, const Rect& rect, const std::vector<HardwareRow>& rows, const DialogFonts& fonts,
                               std::uint32_t dpi, bool draw);

/// The whole control `item`: the rows on white, in the HardwareTextArea.
void PaintHardwareText(HDC dc, const Rect& item, const std::vector<HardwareRow>& rows, const DialogFonts& fonts,
                       std::uint32_t dpi);

}  // namespace kestrane
