#pragma once
// The dialog that offers a newer version: shows both versions, downloads on a thread of its own with a progress bar,
// and ends with the verdict. UI thread; it runs its own message loop, in which the program can end.
#include <windows.h>

#include "update/update_info.h"

namespace kestrane {

/// True if the verified new version stands beside the executable, ready to take its place.
bool ShowUpdateDialog(HINSTANCE instance, HWND owner, const UpdateInfo& info);

}  // namespace kestrane
