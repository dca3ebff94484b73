// Writes where nothing can be written, in a window callback. Where the system swallows that, it says "lives on" and
// ends with 0.
#include <windows.h>

#include <cstdint>
#include <cstdio>

namespace {

volatile std::uintptr_t nowhere = 16;

LRESULT CALLBACK CrasherProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) *reinterpret_cast<volatile int*>(nowhere) = 1;
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

int main() {
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = CrasherProc;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = L"crasher";
    RegisterClassExW(&windowClass);
    CreateWindowExW(0, L"crasher", L"", 0, 0, 0, 0, 0, nullptr, nullptr, windowClass.hInstance, nullptr);
    std::puts("lives on");
    return 0;
}
