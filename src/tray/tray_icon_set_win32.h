#pragma once
// The program's four notification icons, and recovery from the shell's failures: a refused GUID, an icon lost in a
// restart of the shell, and one that the shell still holds when it is added again.
//
//     wanted  added
//       yes    no     wanted but missing: at the start, after a failed add, after a restart of the shell
//       yes    yes    on the taskbar
//       no     no     hidden by the settings
#include <windows.h>

#include <shellapi.h>

#include <array>
#include <cstdint>
#include <string>

#include "base/handles_win32.h"

namespace kestrane {

/// The callback message of the icons.
inline constexpr UINT WM_TRAY_NOTIFY = 0x8001;

struct TrayIconSlot {
    NOTIFYICONDATAW data{};  // template; each call works on a copy
    UniqueIcon icon;         // the image shown now, or none
    bool added = false;      // the shell has this icon
    bool wanted = true;      // the icon is to be shown
    bool useGuid = true;     // calls identify the icon by its GUID; once false, it stays false
    bool everAdded = false;  // an add has succeeded in this process, with the GUID or without
    bool overdue = false;    // the last add had no answer in time, so a busy shell may still carry it out
    bool adding = false;     // NIM_ADD has not returned yet
    bool addAgain = false;   // a new taskbar has appeared since, so the result of that call is not its own
};

/// Ids are 1 to 4: CPU, disk, memory, network. Failures of the shell cause at most a debug line.
struct TrayIconSet {
    HWND window;
    std::array<TrayIconSlot, 4> slots;

    /// Prepares the four icons and adds none. `owner` receives WM_TRAY_NOTIFY.
    explicit TrayIconSet(HWND owner);
    TrayIconSet(const TrayIconSet&) = delete;
    TrayIconSet& operator=(const TrayIconSet&) = delete;
    ~TrayIconSet();

    /// Adds or deletes the icon at once if this changes `wanted`.
    void SetVisible(std::uint32_t id, bool visible);

    /// Tries to add all four; returns how many are on the taskbar.
    std::uint32_t AddAll();

    /// For use after a restart of the shell, which has forgotten all icons.
    void ReAddAll();

    /// Takes the image, which may be empty, and shows it with the text, cut to 127 characters. An icon that the shell
    /// has lost is added again; a hidden one keeps both for later.
    void Update(std::uint32_t id, UniqueIcon icon, const std::wstring& text);

    /// Shows a notification (63 characters of title, 255 of text) on the first icon that accepts it; false if none
    /// does.
    bool ShowBalloon(const std::wstring& title, const std::wstring& text);

    /// Returns the keyboard focus to an icon after its menu closes. The id comes from outside and may be anything;
    /// unknown ids are ignored.
    void GiveFocus(std::uint32_t id);

    /// Deletes the icons and destroys their images. `wanted` stays, so a later Update adds its icon again.
    void RemoveAll();
};

}  // namespace kestrane
