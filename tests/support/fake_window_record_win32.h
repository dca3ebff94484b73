#pragma once
// A window may not take the record that is to be stored with it. Include in one file of a test program only.
#include <windows.h>

#include "support/real_call_win32.h"

namespace kestrane {

inline bool keepsNoRecord = false;

inline LONG_PTR WINAPI StoreOrNot(HWND window, int index, LONG_PTR value) {
    static const auto real = REAL(L"user32", SetWindowLongPtrW);
    const bool isRecord = index == GWLP_USERDATA || index == DWLP_USER;
    return keepsNoRecord && isRecord ? 0 : real(window, index, value);
}

}  // namespace kestrane

extern "C" {
decltype(&SetWindowLongPtrW) __imp_SetWindowLongPtrW = &kestrane::StoreOrNot;
}
