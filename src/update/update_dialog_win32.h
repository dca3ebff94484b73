#pragma once
// The dialog that offers a newer version: shows both versions, downloads on a thread of its own with a progress bar,
// and ends with the verdict. UI thread; it runs its own message loop, in which the program can end.
#include <windows.h>

#include "update/update_info.h"

namespace kestrane {

/// Posted by the download thread to the dialog: the progress in permille, and at the end 1 for success, else 0.
inline constexpr UINT WM_UPDATE_PROGRESS = 0x801E;
inline constexpr UINT WM_UPDATE_DONE = 0x801F;

/// True if the verified new version stands beside the executable, ready to take its place.
bool ShowUpdateDialog(HINSTANCE instance, HWND owner, const UpdateInfo& info);

/// The open dialog's window, or null.
HWND OpenUpdateDialog();

}  // namespace kestrane
