#pragma once
#include <windows.h>

#include <cstdint>

#include "base/handles_win32.h"

namespace kestrane {

/// A thread that is always joined: at the latest by the destructor, so its owner must have told it to end by then.
class Thread {
  public:
    /// An exception that left it would meet the frames of the runtime, which know nothing of it.
    using Body = unsigned(__stdcall*)(void* context) noexcept;

    Thread() = default;
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;
    ~Thread() { Join(); }

    /// Runs `body(context)` on a new thread. False if it could not be created; GetLastError then has the reason. A
    /// previous one must have been joined.
    bool Start(Body body, void* context);
    /// Started and not joined yet, whether or not it has ended.
    bool IsJoinable() const { return id_ != 0; }
    /// Waits for its end; does nothing if there is none.
    void Join();

  private:
    UniqueKernelHandle handle_;
    std::uint32_t id_ = 0;
};

}  // namespace kestrane
