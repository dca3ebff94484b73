#pragma once
// The few drawing operations of which the dialog's painters are made. Each one sets what it needs in the device context
// and leaves it there, so the painters begin with a SavedDc. Nothing is drawn for an empty rectangle.
#include <windows.h>

#include <string>

#include "base/geometry.h"
#include "settings/color.h"

namespace kestrane {

/// GetSysColor as a ColorValue.
ColorValue SystemColor(int index);

void FillSolid(HDC dc, const Rect& rect, ColorValue color);

/// The outermost pixels of `rect`.
void FrameSolid(HDC dc, const Rect& rect, ColorValue color);

/// Drawing it twice restores what was there.
void DrawFocus(HDC dc, const Rect& rect);

/// Scaled to the size of `rect`; nothing without an icon.
void DrawIconIn(HDC dc, const Rect& rect, HICON icon);

/// With the flags of DrawTextW, without a background.
void DrawTextIn(HDC dc, const Rect& rect, const std::wstring& text, ColorValue color, UINT flags);

}  // namespace kestrane
