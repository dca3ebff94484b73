// A minimal program of this kind: a notification icon, a window with a text, a menu, and then it exits. DLLs that the
// system loads for this it loads for every such program. The arguments are further DLLs to load by bare name.
#include <windows.h>
// <windows.h> comes first.
#include <shellapi.h>

#include <cstring>
#include <string>

namespace {

constexpr UINT_PTR MenuTimer = 1;
constexpr UINT MenuMs = 500;

void Paint(HWND window) {
    PAINTSTRUCT paint;
    const HDC dc = BeginPaint(window, &paint);
    TextOutW(dc, 10, 10, L"bare", 4);
    EndPaint(window, &paint);
}

void ShowMenu(HWND window) {
    const HMENU menu = CreatePopupMenu();
    AppendMenuW(menu, MF_STRING, 1, L"bare");
    SetForegroundWindow(window);
    SetTimer(window, MenuTimer, MenuMs, nullptr);
    TrackPopupMenuEx(menu, TPM_RETURNCMD, 100, 100, window, nullptr);
    DestroyMenu(menu);
}

LRESULT CALLBACK BareProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_PAINT) return Paint(window), 0;
    if (message == WM_TIMER) return EndMenu();
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        LoadLibraryW(std::wstring(argv[i], argv[i] + std::strlen(argv[i])).c_str());
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = BareProc;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = L"bare";
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    RegisterClassExW(&windowClass);
    const HWND window = CreateWindowExW(0, L"bare", L"bare", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, 300, 200,
                                        nullptr, nullptr, windowClass.hInstance, nullptr);
    UpdateWindow(window);
    NOTIFYICONDATAW icon{};
    icon.cbSize = sizeof icon;
    icon.hWnd = window;
    icon.uID = 1;
    icon.uFlags = NIF_ICON;
    icon.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
    Shell_NotifyIconW(NIM_ADD, &icon);
    ShowMenu(window);
    Shell_NotifyIconW(NIM_DELETE, &icon);
    return 0;
}
