#pragma once
#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <string>

#include "base/handles_win32.h"

namespace kestrane {

/// A font of this face, its characters `height` pixels high. `quality` is a GDI quality such as CLEARTYPE_QUALITY. The
/// system substitutes a face that is not installed; empty on failure.
inline UniqueFont MakeFont(const std::wstring& face, std::int32_t height, bool bold, DWORD quality) {
    return UniqueFont(CreateFontW(-height, 0, 0, 0, bold ? FW_BOLD : FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                                  OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, quality, DEFAULT_PITCH | FF_DONTCARE,
                                  face.c_str()));
}

/// `font` with some attributes changed by `change(LOGFONTW&)`; empty on failure.
template <typename Change>
UniqueFont MakeVariant(HFONT font, const Change& change) {
    LOGFONTW description{};
    if (GetObjectW(font, sizeof description, &description) == 0) return {};
    change(description);
    return UniqueFont(CreateFontIndirectW(&description));
}

inline UniqueFont MakeBold(HFONT font) {
    return MakeVariant(font, [](LOGFONTW& description) { description.lfWeight = FW_BOLD; });
}

inline UniqueFont MakeUnderlined(HFONT font) {
    return MakeVariant(font, [](LOGFONTW& description) { description.lfUnderline = TRUE; });
}

/// The height of a line of text in the selected font, in pixels, at least 1.
inline std::int32_t TextHeight(HDC dc) {
    TEXTMETRICW metrics = {};
    GetTextMetricsW(dc, &metrics);
    return std::max<std::int32_t>(1, metrics.tmHeight);
}

/// The width of a line of text in the selected font, in pixels; 0 on failure.
inline std::int32_t TextWidth(HDC dc, const std::wstring& text) {
    SIZE size = {};
    GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size);
    return size.cx;
}

/// The same in `font`.
inline std::int32_t TextWidth(HDC dc, HFONT font, const std::wstring& text) {
    const SelectedObject selected(dc, font);
    return TextWidth(dc, text);
}

/// The same on the screen.
inline std::int32_t TextWidth(HFONT font, const std::wstring& text) {
    const ScreenDc screen;
    return TextWidth(screen.Get(), font, text);
}

}  // namespace kestrane
