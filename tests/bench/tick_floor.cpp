// The minimum cost of a tick of each metric: a window that handles WM_TIMER with only the indispensable platform calls.
// They are reading the counters, creating one icon from a bitmap, and one NIM_MODIFY with an image of the same size;
// for memory, whose icon shows a number, also one font and one text, unless it is the bare tick. Bitmap, mask and DC
// are reused.
#include <winsock2.h>
#include <ws2ipdef.h>
// <winsock2.h> comes before <windows.h>.
#include <windows.h>
// <windows.h> comes before the rest.
#include <iphlpapi.h>
#include <netioapi.h>
#include <pdh.h>
#include <shellapi.h>

#include <array>
#include <cstdint>
#include <vector>

namespace {

enum TimerId : WPARAM { CpuTimer = 1, MemoryTimer = 3, NetworkTimer = 4, DiskTimer = 5, BareMemoryTimer = 6 };

constexpr int IconSize = 16;

struct Counters {
    PDH_HQUERY query = nullptr;
    PDH_HCOUNTER total = nullptr;
    std::vector<PDH_HCOUNTER> arrays;
};

struct Picture {
    HDC dc = nullptr;
    HBITMAP bitmap = nullptr;
    HBITMAP mask = nullptr;
};

Counters cpuCounters;
Counters diskCounters;
Picture picture;
std::array<std::uint64_t, 512> buffer;  // large enough for any answer of the counters

/// If a counter is missing the query is empty, and the tick does without it.
Counters OpenCounters(const wchar_t* total, const std::vector<const wchar_t*>& arrays) {
    Counters counters;
    PdhOpenQueryW(nullptr, 0, &counters.query);
    if (total != nullptr && PdhAddEnglishCounterW(counters.query, total, 0, &counters.total) != ERROR_SUCCESS)
        return {};
    for (const wchar_t* path : arrays) {
        counters.arrays.push_back(nullptr);
        if (PdhAddEnglishCounterW(counters.query, path, 0, &counters.arrays.back()) != ERROR_SUCCESS) return {};
    }
    PdhCollectQueryData(counters.query);
    return counters;
}

void ReadCounters(const Counters& counters) {
    constexpr DWORD Format = PDH_FMT_DOUBLE | PDH_FMT_NOCAP100;
    if (counters.query == nullptr) return;
    PdhCollectQueryData(counters.query);
    PDH_FMT_COUNTERVALUE value;
    if (counters.total != nullptr) PdhGetFormattedCounterValue(counters.total, Format, nullptr, &value);
    for (const PDH_HCOUNTER counter : counters.arrays) {
        // The size must be queried first.
        DWORD size = 0;
        DWORD count = 0;
        auto* const items = reinterpret_cast<PDH_FMT_COUNTERVALUE_ITEM_W*>(buffer.data());
        PdhGetFormattedCounterArrayW(counter, Format, &size, &count, nullptr);
        if (size <= sizeof buffer) PdhGetFormattedCounterArrayW(counter, Format, &size, &count, items);
    }
}

Picture MakePicture() {
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, IconSize, -IconSize, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    Picture made{CreateCompatibleDC(nullptr), CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0),
                 CreateBitmap(IconSize, IconSize, 1, 1, nullptr)};
    for (int i = 0; i < IconSize * IconSize; ++i)
        static_cast<std::uint32_t*>(bits)[i] = 0xFF204080;
    return made;
}

void DrawNumber() {
    const HFONT font = CreateFontW(-13, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                                   CLIP_DEFAULT_PRECIS, ANTIALIASED_QUALITY, DEFAULT_PITCH, L"Segoe UI");
    const HGDIOBJ oldBitmap = SelectObject(picture.dc, picture.bitmap);
    const HGDIOBJ oldFont = SelectObject(picture.dc, font);
    RECT line{0, 0, IconSize, IconSize};
    DrawTextW(picture.dc, L"42", 2, &line, DT_CENTER | DT_SINGLELINE | DT_NOCLIP | DT_NOPREFIX);
    GdiFlush();
    SelectObject(picture.dc, oldFont);
    SelectObject(picture.dc, oldBitmap);
    DeleteObject(font);
}

NOTIFYICONDATAW MakeData(HWND window, UINT id) {
    NOTIFYICONDATAW data{};
    data.cbSize = sizeof data;
    data.hWnd = window;
    data.uID = id;
    data.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP | NIF_SHOWTIP;
    data.uCallbackMessage = WM_APP;
    lstrcpyW(data.szTip, L"CPU: 42 %");
    return data;
}

void ShowIcon(HWND window, UINT id, DWORD message) {
    ICONINFO info{TRUE, 0, 0, picture.mask, picture.bitmap};
    NOTIFYICONDATAW data = MakeData(window, id);
    data.hIcon = CreateIconIndirect(&info);
    Shell_NotifyIconW(message, &data);
    DestroyIcon(data.hIcon);
}

void ReadMemory() {
    MEMORYSTATUSEX memory{};
    memory.dwLength = sizeof memory;
    GlobalMemoryStatusEx(&memory);
}

void ReadMetric(WPARAM timer) {
    FILETIME idle;
    FILETIME kernel;
    FILETIME user;
    MIB_IF_TABLE2* table = nullptr;
    switch (timer) {
        case CpuTimer:
            GetSystemTimes(&idle, &kernel, &user);  // decides whether the tick counts, whatever the counters say
            ReadCounters(cpuCounters);
            break;
        case DiskTimer:
            ReadCounters(diskCounters);
            break;
        case MemoryTimer:
            ReadMemory();
            DrawNumber();
            break;
        case BareMemoryTimer:
            ReadMemory();
            break;
        default:
            if (GetIfTable2(&table) == NO_ERROR) FreeMibTable(table);
    }
}

LRESULT CALLBACK FloorProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_DESTROY) PostQuitMessage(0);
    if (message != WM_TIMER || wParam > BareMemoryTimer) return DefWindowProcW(window, message, wParam, lParam);
    ReadMetric(wParam);
    ShowIcon(window, static_cast<UINT>(wParam == BareMemoryTimer ? MemoryTimer : wParam), NIM_MODIFY);
    return 0;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE /*previous*/, PWSTR /*commandLine*/, int /*show*/) {
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = FloorProc;
    windowClass.hInstance = instance;
    windowClass.lpszClassName = L"kestrane.floor";
    RegisterClassExW(&windowClass);
    const HWND window = CreateWindowExW(0, windowClass.lpszClassName, L"", WS_OVERLAPPED, 0, 0, 0, 0, nullptr, nullptr,
                                        instance, nullptr);
    picture = MakePicture();
    cpuCounters = OpenCounters(L"\\Processor Information(_Total)\\% Processor Utility",
                               {L"\\Processor Information(*)\\% Processor Utility"});
    diskCounters =
        OpenCounters(nullptr, {L"\\PhysicalDisk(*)\\% Idle Time", L"\\PhysicalDisk(*)\\% Disk Read Time",
                               L"\\PhysicalDisk(*)\\% Disk Write Time", L"\\PhysicalDisk(*)\\Disk Read Bytes/sec",
                               L"\\PhysicalDisk(*)\\Disk Write Bytes/sec"});
    for (const UINT id : {CpuTimer, DiskTimer, MemoryTimer, NetworkTimer})
        ShowIcon(window, id, NIM_ADD);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchMessageW(&message);
    return 0;
}
