#pragma once
// The fonts of the machine, as a test tells them. Include in one file of a test program only.
#include <windows.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

namespace kestrane {

struct FontWorld {
    std::vector<std::wstring> names{L"Arial", L"Segoe UI", L"Tahoma"};
    int enumerations = 0;
    std::vector<LOGFONTW> asked;
    std::function<void()> onEnumeration;
};
inline FontWorld fontWorld;

inline int WINAPI EnumerateToldFonts(HDC, LPLOGFONTW asked, FONTENUMPROCW take, LPARAM parameter, DWORD) {
    ++fontWorld.enumerations;
    fontWorld.asked.push_back(*asked);
    if (fontWorld.onEnumeration) fontWorld.onEnumeration();
    for (const std::wstring& name : fontWorld.names) {
        LOGFONTW font{};
        std::copy_n(name.c_str(), std::min<std::size_t>(name.size(), LF_FACESIZE - 1), font.lfFaceName);
        const TEXTMETRICW metrics{};
        if (take(&font, &metrics, TRUETYPE_FONTTYPE, parameter) == 0) return 0;
    }
    return 1;
}

}  // namespace kestrane

extern "C" {
decltype(&EnumFontFamiliesExW) __imp_EnumFontFamiliesExW = &kestrane::EnumerateToldFonts;
}
