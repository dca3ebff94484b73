#pragma once
// Numbers drawn without a font, for when the system cannot create one.
#include <array>
#include <cstdint>
#include <string>

#include "settings/color.h"
#include "tray/canvas.h"

namespace kestrane {

/// Ten digits, five rows each, three bits per row; the highest bit is the leftmost column.
inline constexpr std::array<std::array<std::uint8_t, 5>, 10> DigitFont{{
    {0b111, 0b101, 0b101, 0b101, 0b111},
    {0b010, 0b110, 0b010, 0b010, 0b111},
    {0b111, 0b001, 0b111, 0b100, 0b111},
    {0b111, 0b001, 0b111, 0b001, 0b111},
    {0b101, 0b101, 0b111, 0b001, 0b001},
    {0b111, 0b100, 0b111, 0b001, 0b111},
    {0b111, 0b100, 0b111, 0b101, 0b111},
    {0b111, 0b001, 0b001, 0b001, 0b001},
    {0b111, 0b101, 0b111, 0b101, 0b111},
    {0b111, 0b101, 0b111, 0b001, 0b111},
}};

/// The pixel size of a DigitFont cell at which `digits` digits fill the canvas, at least 1. At 1 the number may still
/// overflow.
std::int32_t BitmapDigitScale(const Canvas& canvas, std::int32_t digits);

/// The number in DigitFont, centred and clipped; a negative value counts as 0.
void DrawBitmapNumber(Canvas& canvas, std::int32_t value, ColorValue color);

}  // namespace kestrane
