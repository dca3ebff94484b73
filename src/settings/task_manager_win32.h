#pragma once
// Opens the system's Task Manager on one of its performance pages, by way of its own settings file.
#include <cstdint>

namespace kestrane {

/// Opens Task Manager on this page (see StartPage). One that already runs comes to the front as it is, with its file
/// left alone; one whose settings cannot be written opens on its remembered page. Never fails visibly.
void OpenTaskManager(std::int64_t page);

/// Whether a program of this file name runs, in capitals or not. False when the system does not tell.
bool IsProcessRunning(const wchar_t* exeName);

}  // namespace kestrane
