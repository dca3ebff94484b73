#include "app/menu_images_win32.h"

namespace kestrane {
namespace {

UniqueIcon LoadIconResource(std::uint32_t resource, int size) {
    const HANDLE icon =
        LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(resource), IMAGE_ICON, size, size, LR_DEFAULTCOLOR);
    return UniqueIcon(static_cast<HICON>(icon));
}

/// Top row first, and every pixel transparent at first, so that the icon's own alpha is what the menu blends.
UniqueBitmap MakeTransparentBitmap(int size) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = size;
    info.bmiHeader.biHeight = -size;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    const ScreenDc screen;
    return UniqueBitmap(CreateDIBSection(screen.Get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
}

UniqueBitmap PaintIcon(HICON icon, int size) {
    UniqueBitmap bitmap = MakeTransparentBitmap(size);
    const UniqueMemoryDc dc(CreateCompatibleDC(nullptr));
    if (!bitmap || !dc) return UniqueBitmap();
    const SelectedObject selected(dc.Get(), bitmap.Get());
    DrawIconEx(dc.Get(), 0, 0, icon, size, size, 0, nullptr, DI_NORMAL);
    return bitmap;
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
