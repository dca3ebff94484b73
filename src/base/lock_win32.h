#pragma once
// The one lock of the program. (The standard library of this compiler's variant has no std::mutex.)
#include <windows.h>

namespace kestrane {

class Lock {
  public:
    Lock() = default;
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

  private:
    friend class LockGuard;
    SRWLOCK lock_ = SRWLOCK_INIT;
};

/// Holds a lock for the guard's life.
class LockGuard {
  public:
    explicit LockGuard(Lock& lock) : lock_(lock.lock_) { AcquireSRWLockExclusive(&lock_); }
    LockGuard(const LockGuard&) = delete;
    LockGuard& operator=(const LockGuard&) = delete;
    ~LockGuard() { ReleaseSRWLockExclusive(&lock_); }

  private:
    SRWLOCK& lock_;
};

}  // namespace kestrane
