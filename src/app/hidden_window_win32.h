#pragma once
// The hidden top-level window that receives everything: timers, the icons' events, the shortcut and the system's
// broadcasts. It is no message-only window, because those get no broadcasts and FindWindowW does not see them.
#include <windows.h>

namespace kestrane {

struct App;

inline constexpr const wchar_t* HiddenWindowClass = L"kestrane.hidden";
inline constexpr const wchar_t* HiddenWindowTitle = L"kestrane";
/// Registered name of the message that the shell broadcasts after a restart and after a change of DPI.
inline constexpr const wchar_t* TaskbarCreatedName = L"TaskbarCreated";

/// Registers the class and creates the window, whose WM_CREATE starts everything. False when either is refused.
bool CreateHiddenWindow(App& app);

/// The window procedure. The creation parameter of the window is the pointer to `App`.
LRESULT CALLBACK HiddenWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace kestrane
