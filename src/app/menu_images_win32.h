#pragma once
// Images of menu entries: icon resources painted into bitmaps that a menu can show.
#include <windows.h>

#include <cstdint>
#include <vector>

#include "base/handles_win32.h"

namespace kestrane {

/// Gives the entry `id` of `menu` the icon `resource` of the module at `size` by `size` pixels, and keeps the bitmap in
/// `bitmaps`, which must outlive the menu. An icon that cannot be loaded or painted leaves the entry without an image.
void AddMenuIcon(HMENU menu, std::uint32_t id, std::uint32_t resource, int size, std::vector<UniqueBitmap>& bitmaps);

}  // namespace kestrane
