#pragma once
// The worker of the update check, replaced by something that never runs: an `App` under test asks nobody. Its start and
// end are recorded. Include in one file of a test program only.
#include <windows.h>

#include <process.h>

#include <cstdint>

#include "support/call_log.h"
#include "support/real_call_win32.h"

namespace kestrane {

/// The handle is that of an event, which is set: joining such a thread takes no time.
inline std::uintptr_t __cdecl StartNoThread(void*, unsigned, _beginthreadex_proc_type, void*, unsigned, unsigned* id) {
    test::NoteCall("worker starts");
    *id = 1;
    return reinterpret_cast<std::uintptr_t>(CreateEventW(nullptr, TRUE, TRUE, nullptr));
}

/// No other part of the program sets an event.
inline BOOL WINAPI NoteStopEvent(HANDLE event) {
    static const auto real = REAL(L"kernel32", SetEvent);
    test::NoteCall("worker stops");
    return real(event);
}

}  // namespace kestrane

extern "C" {
decltype(&_beginthreadex) __imp__beginthreadex = &kestrane::StartNoThread;
decltype(&SetEvent) __imp_SetEvent = &kestrane::NoteStopEvent;
}
