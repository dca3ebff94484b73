#include "base/thread_win32.h"

#include <process.h>

#include <cstdlib>

namespace kestrane {
namespace {

constexpr DWORD RetryMs = 10;

}  // namespace

bool Thread::Start(Body body, void* context) {
    unsigned id = 0;
    // A thread that uses the C runtime is made by it. Its function reports by _doserrno, though not always: what it
    // leaves alone is its own lack of memory.
    _doserrno = ERROR_NOT_ENOUGH_MEMORY;
    const std::uintptr_t handle = _beginthreadex(nullptr, 0, body, context, 0, &id);
    if (handle == 0) {
        SetLastError(_doserrno);
        return false;
    }
    handle_.Reset(reinterpret_cast<HANDLE>(handle));
    id_ = id;
    return true;
}

void Thread::Join() {
    if (!IsJoinable()) return;
    // What the thread uses may be gone after this: no failure of the wait can stand for its end.
    while (WaitForSingleObject(handle_.Get(), INFINITE) != WAIT_OBJECT_0)
        Sleep(RetryMs);
    handle_.Reset();
    id_ = 0;
}

}  // namespace kestrane
