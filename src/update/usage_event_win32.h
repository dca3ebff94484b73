#pragma once
#include "update/update_checker_win32.h"

namespace kestrane {

/// Tells the statistics host that this installation has looked for an update, in a build with a WebsiteId and with a
/// known installation; fails silently. On the worker.
void SendUsageEvent(const UpdateChecker& checker);

}  // namespace kestrane
