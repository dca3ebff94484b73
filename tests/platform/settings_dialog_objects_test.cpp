// The settings dialog releases every system object that it and the painters of its samples have created. Windows allows
// a process 10,000 of each sort, so one that stayed per tick of the samples would show within hours.
#include "support/settings_dialog_world_win32.h"
// It includes <windows.h> first.
#include <map>
#include <set>

namespace kestrane {
namespace {

/// The live objects by kind. A system can give the same handle again after its release.
std::map<std::string, std::multiset<const void*>> live;
std::map<std::string, int> created;

template <typename Handle>
Handle Created(const char* kind, Handle handle) {
    if (handle == nullptr) return handle;
    live[kind].insert(handle);
    ++created[kind];
    return handle;
}

/// An object that the system made, such as a stock font, is in no set.
void Released(const char* kind, const void* handle) {
    auto& handles = live[kind];
    if (const auto found = handles.find(handle); found != handles.end()) handles.erase(found);
}

std::map<std::string, std::size_t> CountLive() {
    std::map<std::string, std::size_t> counts;
    for (const auto& [kind, handles] : live)
        counts[kind] = handles.size();
    return counts;
}

HFONT WINAPI WatchCreateFontIndirect(const LOGFONTW* font) {
    static const auto real = REAL(L"gdi32", CreateFontIndirectW);
    return Created("font", real(font));
}
HFONT WINAPI WatchCreateFont(int height, int width, int escapement, int orientation, int weight, DWORD italic,
                             DWORD underline, DWORD strike, DWORD charset, DWORD out, DWORD clip, DWORD quality,
                             DWORD pitch, LPCWSTR face) {
    static const auto real = REAL(L"gdi32", CreateFontW);
    return Created("font", real(height, width, escapement, orientation, weight, italic, underline, strike, charset, out,
                                clip, quality, pitch, face));
}
HBRUSH WINAPI WatchCreateSolidBrush(COLORREF color) {
    static const auto real = REAL(L"gdi32", CreateSolidBrush);
    return Created("brush", real(color));
}
HPEN WINAPI WatchCreatePen(int style, int width, COLORREF color) {
    static const auto real = REAL(L"gdi32", CreatePen);
    return Created("pen", real(style, width, color));
}
HBITMAP WINAPI WatchCreateBitmap(int width, int height, UINT planes, UINT bits, const void* data) {
    static const auto real = REAL(L"gdi32", CreateBitmap);
    return Created("bitmap", real(width, height, planes, bits, data));
}
HBITMAP WINAPI WatchCreateDIBSection(HDC dc, const BITMAPINFO* info, UINT usage, void** bits, HANDLE section,
                                     DWORD offset) {
    static const auto real = REAL(L"gdi32", CreateDIBSection);
    return Created("bitmap", real(dc, info, usage, bits, section, offset));
}
BOOL WINAPI WatchDeleteObject(HGDIOBJ object) {
    static const auto real = REAL(L"gdi32", DeleteObject);
    for (const char* kind : {"font", "brush", "pen", "bitmap"})
        Released(kind, object);
    return real(object);
}
HDC WINAPI WatchCreateCompatibleDC(HDC dc) {
    static const auto real = REAL(L"gdi32", CreateCompatibleDC);
    return Created("memory DC", real(dc));
}
BOOL WINAPI WatchDeleteDC(HDC dc) {
    static const auto real = REAL(L"gdi32", DeleteDC);
    Released("memory DC", dc);
    return real(dc);
}
HDC WINAPI WatchGetDC(HWND window) {
    static const auto real = REAL(L"user32", GetDC);
    return Created("window DC", real(window));
}
int WINAPI WatchReleaseDC(HWND window, HDC dc) {
    static const auto real = REAL(L"user32", ReleaseDC);
    Released("window DC", dc);
    return real(window, dc);
}
HICON WINAPI WatchCreateIconIndirect(PICONINFO info) {
    static const auto real = REAL(L"user32", CreateIconIndirect);
    return Created("icon", real(info));
}
HANDLE WINAPI WatchLoadImage(HINSTANCE instance, LPCWSTR name, UINT type, int width, int height, UINT flags) {
    static const auto real = REAL(L"user32", LoadImageW);
    return Created("icon", real(instance, name, type, width, height, flags));
}
BOOL WINAPI WatchDestroyIcon(HICON icon) {
    static const auto real = REAL(L"user32", DestroyIcon);
    Released("icon", icon);
    return real(icon);
}

class DialogObjects : public SettingsDialogTest {
  protected:
    static void PaintAll() {
        RedrawWindow(Dialog(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    }

    static void ShowEveryPage() {
        constexpr WPARAM SampleTimer = 1;
        for (const DialogTab& tab : DialogTabs) {
            Click(tab.button);
            PaintAll();
            SendMessageW(Dialog(), WM_TIMER, SampleTimer, 0);
            PaintAll();
        }
    }
};

TEST_F(DialogObjects, AreAllReleasedWhenItCloses) {
    live.clear();
    created.clear();
    constexpr int Openings = 5;
    for (int i = 0; i < Openings; ++i)
        WithDialog(ShowEveryPage);
    for (const auto& [kind, count] : CountLive())
        EXPECT_EQ(count, 0U) << kind << ", of " << created[kind];
    for (const char* kind : {"font", "brush", "bitmap", "memory DC", "window DC", "icon"})
        EXPECT_GE(created[kind], Openings) << kind;
}

TEST_F(DialogObjects, DoNotGatherWhileItIsOpen) {
    WithDialog([] {
        ShowEveryPage();
        const auto before = CountLive();
        for (int i = 0; i < 5; ++i)
            ShowEveryPage();
        EXPECT_EQ(CountLive(), before);
    });
}

}  // namespace
}  // namespace kestrane

extern "C" {
decltype(&CreateFontIndirectW) __imp_CreateFontIndirectW = &kestrane::WatchCreateFontIndirect;
decltype(&CreateFontW) __imp_CreateFontW = &kestrane::WatchCreateFont;
decltype(&CreateSolidBrush) __imp_CreateSolidBrush = &kestrane::WatchCreateSolidBrush;
decltype(&CreatePen) __imp_CreatePen = &kestrane::WatchCreatePen;
decltype(&CreateBitmap) __imp_CreateBitmap = &kestrane::WatchCreateBitmap;
decltype(&CreateDIBSection) __imp_CreateDIBSection = &kestrane::WatchCreateDIBSection;
decltype(&DeleteObject) __imp_DeleteObject = &kestrane::WatchDeleteObject;
decltype(&CreateCompatibleDC) __imp_CreateCompatibleDC = &kestrane::WatchCreateCompatibleDC;
decltype(&DeleteDC) __imp_DeleteDC = &kestrane::WatchDeleteDC;
decltype(&GetDC) __imp_GetDC = &kestrane::WatchGetDC;
decltype(&ReleaseDC) __imp_ReleaseDC = &kestrane::WatchReleaseDC;
decltype(&CreateIconIndirect) __imp_CreateIconIndirect = &kestrane::WatchCreateIconIndirect;
decltype(&LoadImageW) __imp_LoadImageW = &kestrane::WatchLoadImage;
decltype(&DestroyIcon) __imp_DestroyIcon = &kestrane::WatchDestroyIcon;
}
