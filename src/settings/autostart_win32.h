#pragma once
// Starting with Windows: the value "kestrane" under the Run key. The registry alone holds this state.

namespace kestrane {

/// Writes (the running file's full path in double quotes) or removes the value for all users of the machine. Without
/// the rights to do so, or with a path that does not fit, it fails, says so to the debugger and never asks for
/// elevation. Removing a missing value succeeds.
bool SetMachineAutostart(bool enable);

}  // namespace kestrane
