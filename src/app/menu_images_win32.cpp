#include "app/menu_images_win32.h"

#include <utility>

#include "base/dib_win32.h"
#include "base/icon_win32.h"

namespace kestrane {
namespace {

/// All pixels start transparent, so the menu blends with the icon's own alpha.
UniqueBitmap PaintIcon(HICON icon, int size) {
    const ScreenDc screen;
    Dib dib = MakeDib(screen.Get(), size, size, DibFormat::Rgb);
    const UniqueMemoryDc dc(CreateCompatibleDC(nullptr));
    if (!dib || !dc) return UniqueBitmap();
    const SelectedObject selected(dc.Get(), dib.bitmap.Get());
    DrawIconEx(dc.Get(), 0, 0, icon, size, size, 0, nullptr, DI_NORMAL);
    return std::move(dib.bitmap);
}

}  // namespace

void AddMenuIcon(HMENU menu, std::uint32_t id, std::uint32_t resource, int size, std::vector<UniqueBitmap>& bitmaps) {
    const UniqueIcon icon = LoadIconResource(resource, size);
    if (!icon) return;
    UniqueBitmap bitmap = PaintIcon(icon.Get(), size);
    if (!bitmap) return;
    MENUITEMINFOW item{};
    item.cbSize = sizeof item;
    item.fMask = MIIM_BITMAP;
    item.hbmpItem = bitmap.Get();
    SetMenuItemInfoW(menu, id, FALSE, &item);
    bitmaps.push_back(std::move(bitmap));
}

}  // namespace kestrane
