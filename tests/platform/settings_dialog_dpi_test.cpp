// The settings dialog on a monitor of another DPI. What the system does for a dialog there, the test does: it resizes
// the dialog, gives every control the plain font, and counts dialog units in the new pixels.
#include <gmock/gmock.h>

#include <map>

#include "base/geometry_win32.h"
#include "base/handles_win32.h"
#include "dialog/item_layout.h"
#include "support/geometry_print.h"
#include "support/settings_dialog_world_win32.h"

namespace kestrane {
namespace {

using testing::IsEmpty;

constexpr Rect WorkArea{0, 0, 4000, 3000};

struct Screen {
    UINT dpi = 96;
    UINT dpiOfMonitor = 96;           // which a window has from its first move on
    std::vector<Rect> frames;         // that the dialog has painted
    std::map<HICON, int> iconWidths;  // those that live
};
Screen screen;

UINT WINAPI TellDpi(HWND) {
    return screen.dpi;
}

BOOL WINAPI MapUnits(HWND dialog, LPRECT rect) {
    static const auto real = REAL(L"user32", MapDialogRect);
    const BOOL mapped = real(dialog, rect);
    for (LONG* side : {&rect->left, &rect->top, &rect->right, &rect->bottom})
        *side = *side * static_cast<LONG>(screen.dpi) / 96;
    return mapped;
}

/// A window that comes to a monitor of another DPI is resized by the system.
BOOL WINAPI MoveWindowTo(HWND window, HWND after, int x, int y, int width, int height, UINT flags) {
    static const auto real = REAL(L"user32", SetWindowPos);
    const BOOL done = real(window, after, x, y, width, height, flags);
    if (window != OpenSettingsDialog() || (flags & SWP_NOSIZE) == 0 || screen.dpi == screen.dpiOfMonitor) return done;
    RECT rect{};
    GetWindowRect(window, &rect);
    const auto scaled = [](LONG size) { return MulDiv(size, static_cast<int>(screen.dpiOfMonitor), 96); };
    screen.dpi = screen.dpiOfMonitor;
    return real(window, nullptr, 0, 0, scaled(rect.right - rect.left), scaled(rect.bottom - rect.top), SWP_NOMOVE);
}

HMONITOR WINAPI FindMonitorOfPoint(POINT, DWORD) {
    return reinterpret_cast<HMONITOR>(1);
}

HMONITOR WINAPI FindMonitorOfWindow(HWND, DWORD) {
    return reinterpret_cast<HMONITOR>(1);
}

BOOL WINAPI TellMonitor(HMONITOR, LPMONITORINFO info) {
    info->rcWork = ToPlatform(WorkArea);
    return TRUE;
}

int WINAPI RecordFrame(HDC dc, const RECT* rect, HBRUSH brush) {
    static const auto real = REAL(L"user32", FrameRect);
    if (WindowFromDC(dc) == OpenSettingsDialog() && rect->right > rect->left)
        screen.frames.push_back(FromPlatform(*rect));
    return real(dc, rect, brush);
}

HANDLE WINAPI LoadMeasuredImage(HINSTANCE instance, LPCWSTR name, UINT type, int width, int height, UINT flags) {
    static const auto real = REAL(L"user32", LoadImageW);
    const HANDLE image = real(instance, name, type, width, height, flags);
    screen.iconWidths[static_cast<HICON>(image)] = width;
    return image;
}

BOOL WINAPI ForgetIcon(HICON icon) {
    static const auto real = REAL(L"user32", DestroyIcon);
    screen.iconWidths.erase(icon);
    return real(icon);
}

class SettingsDialogDpi : public SettingsDialogTest {
  protected:
    SettingsDialogDpi() { screen = {}; }

    static void ComeToMonitorOf(UINT dpi) {
        screen.dpi = screen.dpiOfMonitor = dpi;
        RECT place{};
        GetWindowRect(Dialog(), &place);
        SendMessageW(Dialog(), WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&place));
        const LRESULT plain = SendMessageW(Dialog(), WM_GETFONT, 0, 0);
        for (HWND control = GetWindow(Dialog(), GW_CHILD); control != nullptr;
             control = GetWindow(control, GW_HWNDNEXT))
            SendMessageW(control, WM_SETFONT, static_cast<WPARAM>(plain), FALSE);
        Pump();
    }
    static HFONT FontOf(HWND window) { return reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)); }
    static LONG WeightOf(HWND control) {
        LOGFONTW font{};
        EXPECT_NE(GetObjectW(FontOf(control), sizeof font, &font), 0) << "its font is gone";
        return font.lfWeight;
    }
    static Rect WindowRectOf(HWND window) {
        RECT rect{};
        GetWindowRect(window, &rect);
        return FromPlatform(rect);
    }
    static Rect PlaceOf(std::int32_t id) {
        RECT rect = ToPlatform(WindowRectOf(Control(id)));
        MapWindowPoints(nullptr, Dialog(), reinterpret_cast<POINT*>(&rect), 2);
        return FromPlatform(rect);
    }
    static std::vector<Rect> Frames() {
        screen.frames.clear();
        RedrawWindow(Dialog(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
        return screen.frames;
    }
    /// Of a live icon; 0 for none.
    static int IconWidth(std::int32_t button) {
        const auto icon = reinterpret_cast<HICON>(SendMessageW(Control(button), BM_GETIMAGE, IMAGE_ICON, 0));
        return screen.iconWidths.contains(icon) ? screen.iconWidths[icon] : 0;
    }
};

TEST_F(SettingsDialogDpi, ControlsAreLaidOutAnew) {
    WithDialog([] {
        const Rect before = PlaceOf(IdCpuShow);
        const Rect fieldBefore = PlaceOf(IdCpuPerCore);
        ComeToMonitorOf(192);
        EXPECT_EQ(PlaceOf(IdCpuShow), (Rect{2 * before.left, 2 * before.top, 2 * before.right, 2 * before.bottom}));
        EXPECT_EQ(RectWidth(PlaceOf(IdCpuPerCore)), 2 * RectWidth(fieldBefore));
    });
}

/// The dialog may come back before it is dressed, and what the system has moved twice is not quite where it was.
TEST_F(SettingsDialogDpi, ControlsComeBackToTheirPlaces) {
    WithDialog([] {
        const Rect before = PlaceOf(IdCpuShow);
        SetWindowPos(Control(IdCpuShow), nullptr, 1, 2, 3, 4, SWP_NOZORDER | SWP_NOACTIVATE);
        ComeToMonitorOf(96);
        EXPECT_EQ(PlaceOf(IdCpuShow), before);
    });
}

TEST_F(SettingsDialogDpi, TitlesStayBold) {
    WithDialog([] {
        const HFONT before = FontOf(Control(IdCpuTitle));
        ComeToMonitorOf(144);
        EXPECT_EQ(WeightOf(Control(IdCpuTitle)), FW_BOLD);
        EXPECT_NE(FontOf(Control(IdCpuTitle)), before);
        EXPECT_NE(WeightOf(Control(IdCpuPerCore)), FW_BOLD);
    });
}

TEST_F(SettingsDialogDpi, IconsGetItsSize) {
    WithDialog([] {
        EXPECT_EQ(IconWidth(IdCpuSave), GetSystemMetricsForDpi(SM_CXSMICON, 96));
        const std::size_t icons = screen.iconWidths.size();
        ComeToMonitorOf(192);
        EXPECT_EQ(IconWidth(IdCpuSave), GetSystemMetricsForDpi(SM_CXSMICON, 192));
        EXPECT_EQ(IconWidth(IdMemRestore), GetSystemMetricsForDpi(SM_CXSMICON, 192));
        EXPECT_EQ(screen.iconWidths.size(), icons) << "the old ones are gone";
        for (const auto& [icon, width] : screen.iconWidths)
            EXPECT_EQ(width, 32);
    });
    EXPECT_THAT(screen.iconWidths, IsEmpty());
}

TEST_F(SettingsDialogDpi, TheListsRowsGetItsHeight) {
    WithDialog([] {
        ComeToMonitorOf(144);
        EXPECT_EQ(SendMessageW(Control(IdInterfaces), LB_GETITEMHEIGHT, 0, 0), InterfaceItemHeight(144));
    });
}

TEST_F(SettingsDialogDpi, BoxesStandAroundTheirControls) {
    WithDialog([] {
        const std::vector<Rect> before = Frames();
        ASSERT_EQ(before.size(), 2U) << "hardware and graph";
        ComeToMonitorOf(192);
        const std::vector<Rect> after = Frames();
        ASSERT_EQ(after.size(), 2U);
        for (std::size_t i = 0; i < 2; ++i) {
            EXPECT_EQ(after[i].left, 2 * before[i].left);
            EXPECT_EQ(after[i].right, 2 * before[i].right);
        }
        // Each title is just below the top of its box.
        EXPECT_EQ(after[0].top, 2 * before[0].top);
        EXPECT_NEAR(after[0].top, PlaceOf(IdCpuHardwareTitle).top, 8);
        EXPECT_GT(after[0].bottom, PlaceOf(HardwarePanels[0].text).bottom);
        EXPECT_NEAR(after[1].top, PlaceOf(IdCpuGraphTitle).top, 8);
        EXPECT_GT(after[1].bottom, PlaceOf(IdCpuGraphSample).bottom);
    });
}

TEST_F(SettingsDialogDpi, OpensWithItsCornerAtTheClickInTheSizeOfThatMonitor) {
    anchor = {2000, 2900};
    int width = 0;
    WithDialog([&] {
        width = RectWidth(WindowRectOf(Dialog()));
        EXPECT_EQ(WindowRectOf(Dialog()).right, 2000);
        EXPECT_EQ(WindowRectOf(Dialog()).bottom, 2900);
    });
    std::filesystem::remove(IniFile());
    screen = {};
    screen.dpiOfMonitor = 192;
    WithDialog([&] {
        const Rect window = WindowRectOf(Dialog());
        EXPECT_GT(RectWidth(window), width * 3 / 2);
        EXPECT_EQ(window.right, 2000);
        EXPECT_EQ(window.bottom, 2900);
    });
}

}  // namespace
}  // namespace kestrane

extern "C" {
decltype(&GetDpiForWindow) __imp_GetDpiForWindow = &kestrane::TellDpi;
decltype(&MapDialogRect) __imp_MapDialogRect = &kestrane::MapUnits;
decltype(&SetWindowPos) __imp_SetWindowPos = &kestrane::MoveWindowTo;
decltype(&MonitorFromPoint) __imp_MonitorFromPoint = &kestrane::FindMonitorOfPoint;
decltype(&MonitorFromWindow) __imp_MonitorFromWindow = &kestrane::FindMonitorOfWindow;
decltype(&GetMonitorInfoW) __imp_GetMonitorInfoW = &kestrane::TellMonitor;
decltype(&FrameRect) __imp_FrameRect = &kestrane::RecordFrame;
decltype(&LoadImageW) __imp_LoadImageW = &kestrane::LoadMeasuredImage;
decltype(&DestroyIcon) __imp_DestroyIcon = &kestrane::ForgetIcon;
}
