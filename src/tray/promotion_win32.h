#pragma once
// The one-time nudge that asks the shell to show our icons on the taskbar itself.

namespace kestrane {

/// Promotes each icon of this program on which nobody has decided yet, and leaves alone what the user or an earlier run
/// has decided, either way. Takes effect on systems that keep such entries; says to the debugger what it did.
void PromoteIcons();

}  // namespace kestrane
