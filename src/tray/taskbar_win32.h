#pragma once
#include <windows.h>

namespace kestrane {

/// The taskbar's window, or null while no shell runs: at logon before it is there, and between its end and its restart.
inline HWND FindTaskbar() {
    return FindWindowW(L"Shell_TrayWnd", nullptr);
}

}  // namespace kestrane
