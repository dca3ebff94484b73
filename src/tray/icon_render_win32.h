#pragma once
// From a painted canvas to an icon handle, with the memory icon's text put on it by a font. Nothing is kept between two
// icons: every refresh makes its bitmaps, font and icon anew and gives back all but the icon.
#include <windows.h>

#include <cstdint>
#include <string>

#include "base/dib_win32.h"
#include "base/handles_win32.h"
#include "history/metric_ring.h"
#include "settings/app_settings.h"
#include "tray/canvas.h"
#include "tray/icon_text.h"

namespace kestrane {

/// The edge in pixels of a small icon at the taskbar's DPI, or at that of `window` when there is no taskbar.
std::uint32_t IconPixelSize(HWND window);

/// A picture with alpha. Empty if it cannot be made.
Dib CanvasToBitmap(const Canvas& canvas);

/// An icon from a colour bitmap with alpha, `size` pixels wide and high; empty if it cannot be made.
UniqueIcon BitmapToIcon(HBITMAP bitmap, std::int32_t size);

/// Empty if a step fails.
UniqueIcon CanvasToIcon(const Canvas& canvas);

/// The canvas as an icon, with `text` in the rows from `top` to below `bottom`, centred across the whole width. The
/// font shrinks until the text fits. Without a font the icon has no text; empty if a bitmap, the device context or the
/// icon cannot be made.
UniqueIcon DrawIconText(const Canvas& canvas, const std::wstring& text, const TextFont& font, ColorValue textColor,
                        std::int32_t top, std::int32_t bottom, bool alignBottom);

// The four icons of the notification area, as described at the Paint operations; empty if the icon cannot be made.
UniqueIcon RenderCpuIcon(const AppSettings& settings, const MetricRing<std::int32_t>& ring, std::uint32_t size);
UniqueIcon RenderDiskIcon(const AppSettings& settings, const MetricRing<std::int32_t>& readRing,
                          const MetricRing<std::int32_t>& writeRing, bool valid, std::uint32_t size);
UniqueIcon RenderMemoryIcon(const AppSettings& settings, std::int32_t percent, std::uint32_t size);
UniqueIcon RenderNetworkIcon(const AppSettings& settings, const MetricRing<std::uint64_t>& downRing,
                             const MetricRing<std::uint64_t>& upRing, std::uint32_t size);

}  // namespace kestrane
