#pragma once
// Starting with Windows: the value "kestrane" under the Run key, of this user or of the machine. This state is kept
// only in the registry.
#include <windows.h>

#include "settings/autostart.h"

namespace kestrane {

/// As it is in the registry now. With both values, AllUsers. A value that is not text counts as absent.
AutostartMode GetAutostartMode();

/// Brings the registry to `mode`; in the present mode it changes nothing, not even an outdated path. False if a step
/// failed: then ask GetAutostartMode again, because other steps may have succeeded.
/// A refused machine value is tried again by an elevated process, whose prompt belongs to `owner`. This can block for
/// as long as the prompt is open and for 30 seconds more. The machine value goes first and comes last, so a declined
/// prompt on the way to AllUsers leaves Off.
bool SetAutostart(AutostartMode mode, HWND owner);

/// Writes (the running executable's full path in double quotes) or removes the value for all users of the machine.
/// Fails with a debug line if access is denied or the path is too long; never asks for elevation. Removing a missing
/// value succeeds.
bool SetMachineAutostart(bool enable);

}  // namespace kestrane
