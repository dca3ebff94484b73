#pragma once
// Where GoogleTest lets its users supply what their system lacks. Over Windows' own threads GCC has std::mutex from
// release 13 on; before, GoogleTest needs another Notification, which it uses for the tests of itself alone.
#include <atomic>
#include <cstddef>

#ifndef _GLIBCXX_HAS_GTHREADS
#define GTEST_HAS_NOTIFICATION_ 1

namespace testing::internal {

class Notification {
  public:
    void Notify() { notified_ = true; }
    void WaitForNotification() const {
        while (!notified_)
            __builtin_ia32_pause();
    }

  private:
    std::atomic<bool> notified_{false};
};

}  // namespace testing::internal
#endif
