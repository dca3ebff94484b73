#pragma once
// A one-time request to the shell to show our icons on the taskbar itself.

namespace kestrane {

/// Promotes each icon of this program that is still undecided, and respects what the user or an earlier run has
/// decided, either way. Works on systems that keep such entries; logs a debug line with the result.
void PromoteIcons();

}  // namespace kestrane
