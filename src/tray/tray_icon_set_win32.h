#pragma once
// The program's four entries in the notification area, and the ways in which the shell fails with them: a GUID it
// refuses, an icon that is gone with the shell's restart, and one that it still holds when it is to be added again.
//
//     wanted  added
//       yes    no     to be shown and not there: at the start, after a failed add, after a restart of the shell
//       yes    yes    on the taskbar
//       no     no     hidden by the settings
#include <windows.h>

#include <shellapi.h>

#include <array>
#include <cstdint>
#include <string>

#include "base/handles_win32.h"

namespace kestrane {

/// The message by which the shell reports what happens to an icon.
inline constexpr UINT WM_TRAY_NOTIFY = 0x8001;

struct TrayIconSlot {
    NOTIFYICONDATAW data{};  // prepared for all calls, which work on copies of it
    UniqueIcon icon;         // the image shown now, or none
    bool added = false;      // the shell has this icon
    bool wanted = true;      // the icon is to be shown
    bool useGuid = true;     // calls identify the icon by its GUID; once false, false for good
    bool everAdded = false;  // an add has worked once in this process, with the GUID or without
};

/// Ids go from 1 to 4: CPU, disk, memory, network. Failures of the shell are written to the debugger at the most.
struct TrayIconSet {
    HWND window;
    std::array<TrayIconSlot, 4> slots;

    /// Prepares the four icons and adds none. `owner` receives WM_TRAY_NOTIFY.
    explicit TrayIconSet(HWND owner);
    TrayIconSet(const TrayIconSet&) = delete;
    TrayIconSet& operator=(const TrayIconSet&) = delete;
    ~TrayIconSet();

    /// Adds or deletes the icon at once if this changes what is wanted.
    void SetVisible(std::uint32_t id, bool visible);

    /// Tries to add all four; returns how many are on the taskbar.
    std::uint32_t AddAll();

    /// For after a restart of the shell, which then knows of no icon.
    void ReAddAll();

    /// Takes over the image, which may be empty, and shows it with the text, of which 127 characters count. An icon
    /// that the shell has lost is added again; a hidden one keeps both for later.
    void Update(std::uint32_t id, UniqueIcon icon, const std::wstring& text);

    /// Shows a notification (63 characters of title, 255 of text) on the first icon that can; true if one took it.
    bool ShowBalloon(const std::wstring& title, const std::wstring& text);

    /// Gives the keyboard to an icon that is on the taskbar, when what was opened there is left again. The id can be
    /// any number, as it comes from outside; one that is no icon's does nothing.
    void GiveFocus(std::uint32_t id);

    /// Deletes the icons and destroys their images. What is wanted stays, so a later Update adds its icon again.
    void RemoveAll();
};

}  // namespace kestrane
