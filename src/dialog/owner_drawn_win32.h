#pragma once
// Paints the owner-drawn controls of the settings dialog from what they are to show. `item` is the control's rectangle
// or that of the list item; the device context is left as it was.
#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "base/geometry.h"
#include "dialog/interface_choice.h"
#include "dialog/page_background.h"
#include "settings/color.h"

namespace kestrane {

struct DialogFonts {
    HFONT regular;
    HFONT bold;
};

struct ItemState {
    bool enabled = true;
    bool focus = false;  // draws the focus rectangle
};

inline constexpr std::size_t LongestTabText = 63;
/// At most LongestTabText characters of `text`. Without an icon its place stays empty.
void PaintTabButton(HDC dc, const Rect& item, const std::wstring& text, HICON icon, ColorValue accent, bool selected,
                    bool focus, const DialogFonts& fonts, std::uint32_t dpi);

/// ColorNone shows as a chequer.
void PaintColorWell(HDC dc, const Rect& item, ColorValue color, ItemState state);

/// Nothing if `item` is empty.
void PaintSwitch(HDC dc, const Rect& item, const std::wstring& text, bool on, bool focus, HFONT font,
                 std::uint32_t dpi);

inline constexpr std::size_t LongestSectionText = 95;
/// At most LongestSectionText characters of `text`. Without an icon its place stays empty.
void PaintSectionTitle(HDC dc, const Rect& item, const std::wstring& text, HICON icon, HBRUSH background,
                       ColorValue color, HFONT boldFont, std::uint32_t dpi);

/// The colour of a section title's text, on white or on the page.
ColorValue SectionTextColor(bool onWhite, bool enabled);

/// `nameLeft` and `ipLeft` are the distances of the two columns from the item's left.
void PaintInterfaceItem(HDC dc, const Rect& item, const InterfaceItem& shown, ItemState state, HFONT font,
                        std::int32_t nameLeft, std::int32_t ipLeft, std::uint32_t dpi);

/// The dialog's own background, behind all controls.
void PaintPageBackground(HDC dc, const PageBackground& background, std::uint32_t dpi);

}  // namespace kestrane
