#pragma once
// Turns a painted canvas into an icon handle and draws the memory icon's text. Nothing is cached between icons: every
// refresh creates its bitmaps, font and icon and releases all but the icon.
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

/// The edge of a small icon in pixels at the taskbar's DPI, or at that of `window` if there is no taskbar.
std::uint32_t IconPixelSize(HWND window);

/// A bitmap with alpha; empty on failure.
Dib CanvasToBitmap(const Canvas& canvas);

/// An icon from a bitmap with alpha, `size` pixels wide and high; empty on failure.
UniqueIcon BitmapToIcon(HBITMAP bitmap, std::int32_t size);

/// Empty on failure.
UniqueIcon CanvasToIcon(const Canvas& canvas);

/// The canvas as an icon, with `text` in the rows from `top` to `bottom`, exclusive, centred horizontally. The font
/// shrinks until the text fits. Without a font the icon has no text; empty if a bitmap, the DC or the icon cannot be
/// created.
UniqueIcon DrawIconText(const Canvas& canvas, const std::wstring& text, const TextFont& font, ColorValue textColor,
                        std::int32_t top, std::int32_t bottom, bool alignBottom);

// The four notification icons, as described in icon_painting.h; empty on failure.
UniqueIcon RenderCpuIcon(const AppSettings& settings, const MetricRing<std::int32_t>& ring, std::uint32_t size);
UniqueIcon RenderDiskIcon(const AppSettings& settings, const MetricRing<std::int32_t>& readRing,
                          const MetricRing<std::int32_t>& writeRing, bool valid, std::uint32_t size);
UniqueIcon RenderMemoryIcon(const AppSettings& settings, std::int32_t percent, std::uint32_t size);
UniqueIcon RenderNetworkIcon(const AppSettings& settings, const MetricRing<std::uint64_t>& downRing,
                             const MetricRing<std::uint64_t>& upRing, std::uint32_t size);

}  // namespace kestrane
