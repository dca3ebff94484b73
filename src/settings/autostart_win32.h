#pragma once
// Starting with Windows: the value "kestrane" under the Run key, of this user or of the machine. This state is kept
// only in the registry.
#include <windows.h>

#include "settings/autostart.h"

namespace kestrane {

/// Below HKEY_CURRENT_USER or HKEY_LOCAL_MACHINE.
inline constexpr const wchar_t* RunKey = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";

/// As it is in the registry now. With both values, AllUsers. A value that is not text counts as absent.
AutostartMode GetAutostartMode();

/// Brings the registry to `mode`; in the present mode it changes nothing, not even an outdated path. False if a step
/// failed: then ask GetAutostartMode again, because other steps may have succeeded.
/// A refused machine value is tried again by an elevated process, whose prompt belongs to `owner`. This can block for
/// as long as the prompt is open and for 30 seconds more. The machine value goes first and comes last, so a declined
/// prompt on the way to AllUsers leaves Off.
bool SetAutostart(AutostartMode mode, HWND owner);

/// Writes (the running executable's full path in double quotes) or removes the value in one root. Removing a missing
/// value succeeds. 0 on success, else the system's error, also if the path is too long.
LSTATUS WriteRunValue(HKEY root, bool enable);

/// The same for all users of the machine. On failure false with a debug line; never asks for elevation.
bool SetMachineAutostart(bool enable);

}  // namespace kestrane
