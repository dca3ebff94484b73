#pragma once
// Opens Task Manager on one of its performance pages, through its own settings file.
#include <cstdint>

namespace kestrane {

/// Opens Task Manager on this page (see StartPage). A running instance comes to the front as it is and its file is left
/// alone; if the file cannot be written, Task Manager opens on its last page. Failures are not reported to the user.
void OpenTaskManager(std::int64_t page);

/// Whether a process with this file name is running, ignoring case. False if the system cannot tell.
bool IsProcessRunning(const wchar_t* exeName);

}  // namespace kestrane
