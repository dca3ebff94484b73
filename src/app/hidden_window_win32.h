#pragma once
// The hidden top-level window that receives everything: timers, icon events, the hotkey and broadcasts. Not a
// message-only window, because those get no broadcasts and FindWindowW does not find them.
#include <windows.h>

namespace kestrane {

struct App;

inline constexpr const wchar_t* HiddenWindowClass = L"kestrane.hidden";
inline constexpr const wchar_t* HiddenWindowTitle = L"kestrane";
/// Registered name of the message that the shell broadcasts after a restart or a DPI change.
inline constexpr const wchar_t* TaskbarCreatedName = L"TaskbarCreated";

/// Registers the class and creates the window, whose WM_CREATE starts everything. False if either fails.
bool CreateHiddenWindow(App& app);

/// The window procedure. The window's creation parameter is the pointer to `App`.
LRESULT CALLBACK HiddenWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

}  // namespace kestrane
