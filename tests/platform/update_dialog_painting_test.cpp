// The progress bar of the update dialog, pixel by pixel, and the objects of the system that the dialog uses.
#include <process.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <vector>

#include "base/dib_win32.h"
#include "support/update_dialog_world_win32.h"

namespace kestrane {
namespace {

// Each object is released by the call that fits it, and no more than once.
std::multiset<const void*> fonts, icons, brushes, handles;
std::map<std::string, int> created;

template <typename Handle>
Handle Created(const char* kind, std::multiset<const void*>& live, Handle handle) {
    if (handle == nullptr) return handle;
    live.insert(handle);
    ++created[kind];
    return handle;
}

void Released(std::multiset<const void*>& live, const void* handle) {
    if (const auto found = live.find(handle); found != live.end()) live.erase(found);
}

HFONT WINAPI WatchCreateFontIndirect(const LOGFONTW* font) {
    static const auto real = REAL(L"gdi32", CreateFontIndirectW);
    return Created("font", fonts, real(font));
}
HBRUSH WINAPI WatchCreateSolidBrush(COLORREF color) {
    static const auto real = REAL(L"gdi32", CreateSolidBrush);
    return Created("brush", brushes, real(color));
}
BOOL WINAPI WatchDeleteObject(HGDIOBJ object) {
    static const auto real = REAL(L"gdi32", DeleteObject);
    EXPECT_TRUE(!fonts.contains(object) || OpenUpdateDialog() == nullptr) << "a control still has it";
    Released(fonts, object);
    Released(brushes, object);
    return real(object);
}
HANDLE WINAPI WatchLoadImage(HINSTANCE instance, LPCWSTR name, UINT type, int width, int height, UINT flags) {
    static const auto real = REAL(L"user32", LoadImageW);
    return Created("icon", icons, real(instance, name, type, width, height, flags));
}
BOOL WINAPI WatchDestroyIcon(HICON icon) {
    static const auto real = REAL(L"user32", DestroyIcon);
    EXPECT_TRUE(!icons.contains(icon) || OpenUpdateDialog() == nullptr) << "the button still has it";
    Released(icons, icon);
    return real(icon);
}
std::uintptr_t __cdecl WatchBeginThread(void* security, unsigned stack, _beginthreadex_proc_type body, void* context,
                                        unsigned flags, unsigned* id) {
    static const auto real = REAL(kestrane::test::CRuntime, _beginthreadex);
    const std::uintptr_t thread = real(security, stack, body, context, flags, id);
    Created("thread", handles, reinterpret_cast<HANDLE>(thread));
    return thread;
}
BOOL WINAPI WatchCloseHandle(HANDLE handle) {
    static const auto real = REAL(L"kernel32", CloseHandle);
    Released(handles, handle);
    return real(handle);
}

/// A bar's pixels on a surface that is otherwise of one colour.
class BarPicture {
  public:
    static constexpr int Width = 207, Height = 15;
    static constexpr RECT Place{3, 2, 203, 13};
    static constexpr std::uint32_t Untouched = 0x123456;

    BarPicture() : dc_(CreateCompatibleDC(nullptr)), dib_(MakeDib(dc_.Get(), Width, Height, DibFormat::Rgb)) {
        previous_ = SelectObject(dc_.Get(), dib_.bitmap.Get());
        std::fill_n(dib_.pixels, Width * Height, Untouched);
        SetDCBrushColor(dc_.Get(), RGB(7, 8, 9));
    }
    BarPicture(const BarPicture&) = delete;
    BarPicture& operator=(const BarPicture&) = delete;
    ~BarPicture() { SelectObject(dc_.Get(), previous_); }

    /// Has the dialog paint a control.
    void Paint(HWND dialog, int id) const {
        DRAWITEMSTRUCT item{};
        item.CtlType = ODT_STATIC;
        item.CtlID = static_cast<UINT>(id);
        item.itemAction = ODA_DRAWENTIRE;
        item.hwndItem = GetDlgItem(dialog, id);
        item.hDC = dc_.Get();
        item.rcItem = Place;
        SendMessageW(dialog, WM_DRAWITEM, static_cast<WPARAM>(id), reinterpret_cast<LPARAM>(&item));
        GdiFlush();
        EXPECT_EQ(GetDCBrushColor(dc_.Get()), RGB(7, 8, 9)) << "the device context is left as it was";
    }
    std::uint32_t At(int x, int y) const { return dib_.pixels[y * Width + x] & 0xFFFFFF; }
    bool IsUntouched() const {
        return std::all_of(dib_.pixels, dib_.pixels + Width * Height,
                           [](std::uint32_t pixel) { return (pixel & 0xFFFFFF) == Untouched; });
    }

  private:
    UniqueMemoryDc dc_;
    Dib dib_;
    HGDIOBJ previous_ = nullptr;
};

std::uint32_t SystemPixel(int index) {
    const COLORREF color = GetSysColor(index);
    return static_cast<std::uint32_t>(GetRValue(color)) << 16 | static_cast<std::uint32_t>(GetGValue(color)) << 8 |
           GetBValue(color);
}

/// The pixel of a bar 200 wide at this place, with so many columns filled.
std::uint32_t ExpectedPixel(int x, int y, int filled) {
    constexpr std::uint32_t Blue = 0x2F7DE1;
    const RECT place = BarPicture::Place;
    if (x < place.left || x >= place.right || y < place.top || y >= place.bottom) return BarPicture::Untouched;
    const bool edge = x == place.left || x == place.right - 1 || y == place.top || y == place.bottom - 1;
    if (edge) return SystemPixel(COLOR_GRAYTEXT);
    return x < place.left + filled ? Blue : SystemPixel(COLOR_WINDOW);
}

void ExpectBar(const BarPicture& picture, int filled) {
    for (int y = 0; y < BarPicture::Height; ++y) {
        for (int x = 0; x < BarPicture::Width; ++x)
            ASSERT_EQ(picture.At(x, y), ExpectedPixel(x, y, filled)) << "at " << x << ", " << y;
    }
}

class UpdateDialogPainting : public UpdateDialogTest {};

TEST_F(UpdateDialogPainting, FillsTheBarFromTheLeft) {
    struct Row {
        const char* reason;
        std::uint64_t done, total;
        int filled;  // of 200 columns
    };
    const std::vector<Row> rows = {
        {"nothing", 0, 1000, 0},
        {"less than a column", 4, 1000, 0},
        {"a permille", 1, 1000, 0},
        {"the first column is behind the frame", 5, 1000, 1},
        {"two columns", 10, 1000, 2},
        {"the second is not full", 14, 1000, 2},
        {"half", 500, 1000, 100},
        {"almost", 999, 1000, 199},
        {"all", 1000, 1000, 200},
        {"more than there is", 5000, 1000, 200},
        {"nobody knows how much", 77, 0, 0},
        {"a large file", 3ULL << 40, 4ULL << 40, 150},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.reason);
        HeldDownload held;
        world->download = [&](const DownloadCall& call) {
            call.Report(row.done, row.total);
            held.Wait();
            return true;
        };
        WithDialog([&] {
            Click(Update);
            PumpUntil([&] { return held.IsWaiting(); });
            const BarPicture picture;
            picture.Paint(Dialog(), Bar);
            ExpectBar(picture, row.filled);
            held.Release();
            PumpUntil([] { return !IsOpen(); });
        });
    }
}

TEST_F(UpdateDialogPainting, TheMessageDoesNotMoveTheBar) {
    WithDialog([] {
        SendMessageW(Dialog(), WM_UPDATE_PROGRESS, 500, 0);
        const BarPicture picture;
        picture.Paint(Dialog(), Bar);
        ExpectBar(picture, 0);
    });
}

TEST_F(UpdateDialogPainting, TheSecondTryBeginsWithAnEmptyBar) {
    HeldDownload held;
    world->download = [&](const DownloadCall& call) {
        if (world->downloads == 2) {
            held.Wait();
            return true;
        }
        call.Report(700, 1000);
        return call.Fail(DownloadStep::Connection);
    };
    WithDialog([&] {
        Click(Update);
        PumpUntil([] { return IsEnabled(Update); });
        Click(Update);
        PumpUntil([&] { return held.IsWaiting(); });
        const BarPicture picture;
        picture.Paint(Dialog(), Bar);
        ExpectBar(picture, 0);
        held.Release();
        PumpUntil([] { return !IsOpen(); });
    });
}

TEST_F(UpdateDialogPainting, PaintsNoOtherControl) {
    WithDialog([] {
        const BarPicture picture;
        picture.Paint(Dialog(), Update);
        EXPECT_TRUE(picture.IsUntouched());
    });
}

TEST_F(UpdateDialogPainting, KeepsNoObjectAfterFiftyOpenings) {
    fonts.clear();
    icons.clear();
    brushes.clear();
    handles.clear();
    created.clear();
    constexpr int Openings = 50;
    for (int i = 0; i < Openings; ++i) {
        world->download = [i](const DownloadCall& call) {
            call.Report(1, 2);
            return i % 2 == 0 || call.Fail(DownloadStep::Answer);
        };
        WithDialog([] {
            Click(Update);
            PumpUntil([] { return !IsOpen() || IsEnabled(Update); });
            RedrawWindow(Dialog(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        });
        EXPECT_EQ(fonts.size() + icons.size() + brushes.size() + handles.size(), 0U) << "after opening " << i;
    }
    EXPECT_EQ(created["font"], 2 * Openings);
    EXPECT_EQ(created["icon"], Openings);
    EXPECT_EQ(created["thread"], Openings);
}

}  // namespace
}  // namespace kestrane

extern "C" {
decltype(&CreateFontIndirectW) __imp_CreateFontIndirectW = &kestrane::WatchCreateFontIndirect;
decltype(&CreateSolidBrush) __imp_CreateSolidBrush = &kestrane::WatchCreateSolidBrush;
decltype(&DeleteObject) __imp_DeleteObject = &kestrane::WatchDeleteObject;
decltype(&LoadImageW) __imp_LoadImageW = &kestrane::WatchLoadImage;
decltype(&DestroyIcon) __imp_DestroyIcon = &kestrane::WatchDestroyIcon;
decltype(&_beginthreadex) __imp__beginthreadex = &kestrane::WatchBeginThread;
decltype(&CloseHandle) __imp_CloseHandle = &kestrane::WatchCloseHandle;
}
