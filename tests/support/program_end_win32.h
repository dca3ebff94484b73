#pragma once
// Whether an exception ends the program.
#include <gtest/gtest.h>
#include <windows.h>

#include <exception>
#include <functional>

#include "base/handles_win32.h"

namespace kestrane::test {

/// Runs `life` in a thread of its own and tells whether std::terminate was called in it. To the test that thread has
/// been the program: nothing that it leaves behind is cleaned up.
inline bool EndsTheProgram(std::function<void()> life) {
    static bool terminated;
    terminated = false;
    const std::terminate_handler former = std::set_terminate([] {
        terminated = true;
        ExitThread(0);
    });
    const auto run = [](LPVOID body) -> DWORD {
        (*static_cast<std::function<void()>*>(body))();
        return 0;
    };
    const UniqueKernelHandle thread(CreateThread(nullptr, 0, run, &life, 0, nullptr));
    EXPECT_EQ(WaitForSingleObject(thread.Get(), INFINITE), DWORD{WAIT_OBJECT_0});
    std::set_terminate(former);
    return terminated;
}

}  // namespace kestrane::test
