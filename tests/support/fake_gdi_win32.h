#pragma once
// Fakes of the calls that create icons: counted, failed on demand and, where a font would decide, answered with made-up
// metrics and ink. Include in one file of a test program only.
#include <windows.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "support/real_call_win32.h"
#include "tray/icon_text.h"

namespace kestrane {

struct FontCall {
    std::int32_t height, width, escapement, orientation, weight;
    DWORD italic, underline, strikeOut, charSet, outPrecision, clipPrecision, quality, pitch;
    std::wstring name;
};

struct TextCall {
    std::wstring text;
    RECT where;
    UINT format;
    COLORREF color;
    int backgroundMode;
};

/// What the fake calls recorded, and how they respond.
struct World {
    std::multiset<std::string> live;     // one entry per live object, by kind
    std::map<void*, std::string> kinds;  // of the live objects
    int strayCloses = 0;                 // closed objects that were not live
    std::set<int> refusedDibs;           // which CreateDIBSection calls fail, from 1
    std::set<int> refusedIcons;          // the same for CreateIconIndirect
    bool refuseDc = false;
    bool refuseSelectedBitmap = false;
    bool refuseFont = false;
    bool refuseMaskBitmap = false;
    bool refuseScreenDc = false;
    int dibs = 0;
    int icons = 0;
    int flushes = 0;
    BITMAPV5HEADER lastHeader{};
    std::vector<FontCall> fonts;
    std::vector<TextCall> texts;
    std::function<TextExtent(std::int32_t height)> metrics;  // by font height; none: the real ones
    std::function<void(HDC)> ink;                            // instead of DrawTextW; none: the real one
    std::optional<HWND> taskbar;                             // what FindWindowW finds
    HWND dpiOf = nullptr;
    UINT metricDpi = 0;
    int smallIcon = 16;
};
inline World world;

template <typename Handle>
Handle Born(const char* kind, Handle handle) {
    if (handle == nullptr) return handle;
    world.live.insert(kind);
    world.kinds[handle] = kind;
    return handle;
}

inline void Closed(void* handle) {
    const auto found = world.kinds.find(handle);
    if (found == world.kinds.end()) {
        ++world.strayCloses;
        return;
    }
    world.live.erase(world.live.find(found->second));
    world.kinds.erase(found);
}

inline HBITMAP WINAPI FakeCreateDIBSection(HDC dc, const BITMAPINFO* info, UINT usage, void** bits, HANDLE section,
                                           DWORD offset) {
    std::memcpy(&world.lastHeader, info, sizeof world.lastHeader);
    if (world.refusedDibs.contains(++world.dibs)) return nullptr;
    static const auto real = REAL(L"gdi32", CreateDIBSection);
    return Born("bitmap", real(dc, info, usage, bits, section, offset));
}

inline HBITMAP WINAPI FakeCreateBitmap(int width, int height, UINT planes, UINT bits, const void* data) {
    if (world.refuseMaskBitmap) return nullptr;
    EXPECT_EQ(planes, 1U);
    EXPECT_EQ(bits, 1U);
    EXPECT_EQ(width, height);
    const auto bytes = static_cast<std::size_t>((width + 15) / 16 * 2 * height);
    EXPECT_EQ(std::string(static_cast<const char*>(data), bytes), std::string(bytes, '\xFF')) << "all transparent";
    static const auto real = REAL(L"gdi32", CreateBitmap);
    return Born("mask", real(width, height, planes, bits, data));
}

inline HICON WINAPI FakeCreateIconIndirect(PICONINFO info) {
    EXPECT_TRUE(info->fIcon);
    EXPECT_EQ(info->xHotspot, 0U);
    EXPECT_EQ(info->yHotspot, 0U);
    if (world.refusedIcons.contains(++world.icons)) return nullptr;
    static const auto real = REAL(L"user32", CreateIconIndirect);
    return Born("icon", real(info));
}

inline HDC WINAPI FakeCreateCompatibleDC(HDC dc) {
    EXPECT_EQ(dc, nullptr) << "compatible with the screen";
    static const auto real = REAL(L"gdi32", CreateCompatibleDC);
    return world.refuseDc ? nullptr : Born("memory dc", real(dc));
}

inline HGDIOBJ WINAPI FakeSelectObject(HDC dc, HGDIOBJ object) {
    static const auto real = REAL(L"gdi32", SelectObject);
    return world.refuseSelectedBitmap && GetObjectType(object) == OBJ_BITMAP ? nullptr : real(dc, object);
}

inline HFONT WINAPI FakeCreateFontW(int height, int width, int escapement, int orientation, int weight, DWORD italic,
                                    DWORD underline, DWORD strikeOut, DWORD charSet, DWORD outPrecision,
                                    DWORD clipPrecision, DWORD quality, DWORD pitch, LPCWSTR name) {
    world.fonts.push_back({height, width, escapement, orientation, weight, italic, underline, strikeOut, charSet,
                           outPrecision, clipPrecision, quality, pitch, name});
    static const auto real = REAL(L"gdi32", CreateFontW);
    if (world.refuseFont) return nullptr;
    return Born("font", real(height, width, escapement, orientation, weight, italic, underline, strikeOut, charSet,
                             outPrecision, clipPrecision, quality, pitch, name));
}

inline BOOL WINAPI FakeDeleteObject(HGDIOBJ object) {
    Closed(object);
    static const auto real = REAL(L"gdi32", DeleteObject);
    const BOOL deleted = real(object);
    EXPECT_TRUE(deleted) << "an object must not be deleted while selected";
    return deleted;
}

inline BOOL WINAPI FakeDeleteDC(HDC dc) {
    Closed(dc);
    static const auto real = REAL(L"gdi32", DeleteDC);
    return real(dc);
}

inline BOOL WINAPI FakeDestroyIcon(HICON icon) {
    Closed(icon);
    static const auto real = REAL(L"user32", DestroyIcon);
    return real(icon);
}

inline HDC WINAPI FakeGetDC(HWND window) {
    EXPECT_EQ(window, nullptr);
    static const auto real = REAL(L"user32", GetDC);
    if (world.refuseScreenDc) return nullptr;
    world.live.insert("screen dc");
    return real(window);
}

inline int WINAPI FakeReleaseDC(HWND window, HDC dc) {
    static const auto real = REAL(L"user32", ReleaseDC);
    world.live.erase(world.live.find("screen dc"));
    return real(window, dc);
}

inline BOOL WINAPI FakeGetTextExtentPoint32W(HDC dc, LPCWSTR text, int length, LPSIZE size) {
    static const auto real = REAL(L"gdi32", GetTextExtentPoint32W);
    if (!world.metrics) return real(dc, text, length, size);
    *size = {world.metrics(-world.fonts.back().height).width, 0};
    return TRUE;
}

inline BOOL WINAPI FakeGetTextMetricsW(HDC dc, LPTEXTMETRICW metrics) {
    static const auto real = REAL(L"gdi32", GetTextMetricsW);
    if (!world.metrics) return real(dc, metrics);
    const TextExtent extent = world.metrics(-world.fonts.back().height);
    metrics->tmHeight = extent.height;
    metrics->tmAscent = extent.ascent;
    metrics->tmInternalLeading = extent.internalLeading;
    return TRUE;
}

inline int WINAPI FakeDrawTextW(HDC dc, LPCWSTR text, int length, LPRECT where, UINT format) {
    world.texts.push_back({std::wstring(text, length < 0 ? std::wcslen(text) : static_cast<std::size_t>(length)),
                           *where, format, GetTextColor(dc), GetBkMode(dc)});
    static const auto real = REAL(L"user32", DrawTextW);
    if (!world.ink) return real(dc, text, length, where, format);
    world.ink(dc);
    return 1;
}

inline BOOL WINAPI FakeGdiFlush() {
    static const auto real = REAL(L"gdi32", GdiFlush);
    EXPECT_EQ(world.live.count("memory dc"), 0U) << "the mask is deselected before it is read";
    ++world.flushes;
    return real();
}

inline HWND WINAPI FakeFindWindowW(LPCWSTR className, LPCWSTR title) {
    EXPECT_STREQ(className, L"Shell_TrayWnd");
    EXPECT_EQ(title, nullptr);
    return world.taskbar.value_or(nullptr);
}

inline UINT WINAPI FakeGetDpiForWindow(HWND window) {
    world.dpiOf = window;
    return 144;
}

inline int WINAPI FakeGetSystemMetricsForDpi(int index, UINT dpi) {
    EXPECT_EQ(index, 49);
    world.metricDpi = dpi;
    return world.smallIcon;
}

}  // namespace kestrane

extern "C" {
decltype(&CreateDIBSection) __imp_CreateDIBSection = &kestrane::FakeCreateDIBSection;
decltype(&CreateBitmap) __imp_CreateBitmap = &kestrane::FakeCreateBitmap;
decltype(&CreateIconIndirect) __imp_CreateIconIndirect = &kestrane::FakeCreateIconIndirect;
decltype(&CreateCompatibleDC) __imp_CreateCompatibleDC = &kestrane::FakeCreateCompatibleDC;
decltype(&SelectObject) __imp_SelectObject = &kestrane::FakeSelectObject;
decltype(&CreateFontW) __imp_CreateFontW = &kestrane::FakeCreateFontW;
decltype(&DeleteObject) __imp_DeleteObject = &kestrane::FakeDeleteObject;
decltype(&DeleteDC) __imp_DeleteDC = &kestrane::FakeDeleteDC;
decltype(&DestroyIcon) __imp_DestroyIcon = &kestrane::FakeDestroyIcon;
decltype(&GetDC) __imp_GetDC = &kestrane::FakeGetDC;
decltype(&ReleaseDC) __imp_ReleaseDC = &kestrane::FakeReleaseDC;
decltype(&GetTextExtentPoint32W) __imp_GetTextExtentPoint32W = &kestrane::FakeGetTextExtentPoint32W;
decltype(&GetTextMetricsW) __imp_GetTextMetricsW = &kestrane::FakeGetTextMetricsW;
decltype(&DrawTextW) __imp_DrawTextW = &kestrane::FakeDrawTextW;
decltype(&GdiFlush) __imp_GdiFlush = &kestrane::FakeGdiFlush;
decltype(&FindWindowW) __imp_FindWindowW = &kestrane::FakeFindWindowW;
decltype(&GetDpiForWindow) __imp_GetDpiForWindow = &kestrane::FakeGetDpiForWindow;
decltype(&GetSystemMetricsForDpi) __imp_GetSystemMetricsForDpi = &kestrane::FakeGetSystemMetricsForDpi;
}
