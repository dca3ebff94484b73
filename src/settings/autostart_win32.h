#pragma once
// Starting with Windows: the value "kestrane" under the Run key. This state is kept only in the registry.

namespace kestrane {

/// Writes (the running executable's full path in double quotes) or removes the value for all users of the machine.
/// Fails with a debug line if access is denied or the path is too long; never asks for elevation. Removing a missing
/// value succeeds.
bool SetMachineAutostart(bool enable);

}  // namespace kestrane
