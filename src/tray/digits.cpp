#include "tray/digits.h"

#include <algorithm>
#include <cstddef>

#include "text/number_text.h"

namespace kestrane {
namespace {

constexpr std::int32_t DigitRows = 5;
constexpr std::int32_t DigitColumns = 3;
constexpr std::int32_t DigitPitch = 4;  // cells from one digit to the next, including one empty

/// The width of `digits` digits in cells.
constexpr std::int32_t CellsAcross(std::int32_t digits) {
    return DigitPitch * digits - 1;
}

void DrawDigit(Canvas& canvas, std::size_t digit, std::int32_t left, std::int32_t top, std::int32_t scale,
               ColorValue color) {
    for (std::int32_t row = 0; row < DigitRows; ++row) {
        const std::uint32_t bits = DigitFont.at(digit).at(static_cast<std::size_t>(row));
        for (std::int32_t column = 0; column < DigitColumns; ++column) {
            if ((bits >> static_cast<std::uint32_t>(DigitColumns - 1 - column) & 1U) == 0) continue;
            FillRectangle(canvas, RectOf(left + column * scale, top + row * scale, scale, scale), color);
        }
    }
}

}  // namespace

std::int32_t BitmapDigitScale(const Canvas& canvas, std::int32_t digits) {
    if (digits * 8 - 2 > canvas.size) return 1;
    return std::max(std::min(canvas.size / DigitRows, canvas.size / CellsAcross(digits)), 1);
}

void DrawBitmapNumber(Canvas& canvas, std::int32_t value, ColorValue color) {
    const std::wstring text = FormatInteger(std::max(value, 0));
    const auto digits = static_cast<std::int32_t>(text.size());
    const std::int32_t scale = BitmapDigitScale(canvas, digits);
    std::int32_t left = (canvas.size - CellsAcross(digits) * scale) / 2;
    const std::int32_t top = (canvas.size - DigitRows * scale) / 2;
    for (const wchar_t digit : text) {
        DrawDigit(canvas, static_cast<std::size_t>(digit - L'0'), left, top, scale, color);
        left += DigitPitch * scale;
    }
}

}  // namespace kestrane
