#pragma once
// The download thread of the update dialog, and what the two share.
#include <windows.h>

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>

#include "base/handles_win32.h"
#include "base/thread_win32.h"
#include "update/download_failure.h"
#include "update/update_dialog_roles_win32.h"
#include "update/update_info.h"

namespace kestrane {

/// Posted by the download thread to the dialog: the progress in permille, and at the end 1 for success, else 0.
inline constexpr UINT WM_UPDATE_PROGRESS = 0x801E;
inline constexpr UINT WM_UPDATE_DONE = 0x801F;

/// On the stack of ShowUpdateDialog. The download thread has always been joined before it goes.
struct UpdateDialogState {
    const UpdateInfo* info = nullptr;  // the caller's
    std::wstring exePath;
    HWND dialog = nullptr;
    UniqueFont boldFont;
    UniqueFont linkFont;
    UniqueIcon buttonIcon;
    Thread downloadThread;
    std::atomic<bool> cancel = false;
    std::atomic<bool> ended = false;  // set by the download thread when only its end is left to wait for
    bool downloading = false;
    bool blocked = false;                    // the executable may not be replaced
    std::atomic<std::int32_t> permille = 0;  // 0 to 1000
    std::wstring errorText;                  // of the last download
    std::optional<UpdateDialogRoles> roles;  // while there is a window

    // Set by the download thread, read once it has been joined.
    DownloadFailure failure;
    bool downloaded = false;  // the verified file stands there
};

/// The body of the download thread, with an UpdateDialogState: downloads, and tells the dialog how far it is and how
/// it has ended. It only notes a failure, because translated text belongs to the UI thread.
unsigned __stdcall RunUpdateDownload(void* state) noexcept;

}  // namespace kestrane
