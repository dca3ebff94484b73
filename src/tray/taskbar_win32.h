#pragma once
#include <windows.h>

namespace kestrane {

/// The taskbar's window, or null while no shell is running: early at logon, and while Explorer restarts.
inline HWND FindTaskbar() {
    return FindWindowW(L"Shell_TrayWnd", nullptr);
}

}  // namespace kestrane
