#include "base/thread_win32.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <process.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <string>

#include "base/handles_win32.h"
#include "support/call_log.h"
#include "support/real_call_win32.h"

namespace kestrane {
namespace {

using test::Calls;
using test::CountCalls;
using test::NoteCall;
using testing::ElementsAre;
using testing::IsEmpty;

struct World {
    bool refusesThreads = false;
    unsigned long refusal = 0;  // what the refusing runtime writes to _doserrno; 0 for nothing
    HANDLE thread = nullptr;    // the one created last
    int failingWaits = 0;       // how many of the next waits for it fail
};
World world;

std::uintptr_t __cdecl FakeBeginThread(void* security, unsigned stack, _beginthreadex_proc_type body, void* context,
                                       unsigned flags, unsigned* id) {
    static const auto real = REAL(kestrane::test::CRuntime, _beginthreadex);
    EXPECT_EQ(security, nullptr);
    EXPECT_EQ(stack, 0u);
    EXPECT_EQ(flags, 0u);
    NoteCall("begin");
    if (world.refusesThreads) {
        if (world.refusal != 0) _doserrno = world.refusal;
        errno = EAGAIN;
        return 0;
    }
    const std::uintptr_t handle = real(security, stack, body, context, flags, id);
    world.thread = reinterpret_cast<HANDLE>(handle);
    return handle;
}

BOOL WINAPI FakeCloseHandle(HANDLE handle) {
    static const auto real = REAL(L"kernel32", CloseHandle);
    if (handle == world.thread) NoteCall("close");
    return real(handle);
}

DWORD WINAPI FakeWaitForSingleObject(HANDLE handle, DWORD time) {
    static const auto real = REAL(L"kernel32", WaitForSingleObject);
    if (handle != world.thread) return real(handle, time);
    NoteCall("wait " + std::to_string(static_cast<int>(time)));
    return world.failingWaits-- > 0 ? DWORD{WAIT_FAILED} : real(handle, time);
}

}  // namespace
}  // namespace kestrane

extern "C" {
decltype(&_beginthreadex) __imp__beginthreadex = &kestrane::FakeBeginThread;
decltype(&CloseHandle) __imp_CloseHandle = &kestrane::FakeCloseHandle;
decltype(&WaitForSingleObject) __imp_WaitForSingleObject = &kestrane::FakeWaitForSingleObject;
}

namespace kestrane {
namespace {

struct Work {
    UniqueKernelHandle begun{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    UniqueKernelHandle release{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    std::atomic<DWORD> threadId = 0;
    std::atomic<bool> isDone = false;
};

unsigned __stdcall RunWork(void* context) noexcept {
    auto& work = *static_cast<Work*>(context);
    work.threadId = GetCurrentThreadId();
    SetEvent(work.begun.Get());
    WaitForSingleObject(work.release.Get(), INFINITE);
    Sleep(20);  // whoever does not wait for the end is seen to have gone on
    work.isDone = true;
    return 0;
}

class ThreadTest : public testing::Test {
  protected:
    ThreadTest() {
        world = {};
        Calls().clear();
    }
    Work work_;
};

TEST_F(ThreadTest, RunsItsBodyElsewhereAndIsJoined) {
    Thread thread;
    EXPECT_FALSE(thread.IsJoinable());
    ASSERT_TRUE(thread.Start(&RunWork, &work_));
    EXPECT_TRUE(thread.IsJoinable());
    ASSERT_EQ(WaitForSingleObject(work_.begun.Get(), 10000), WAIT_OBJECT_0);
    EXPECT_NE(work_.threadId, GetCurrentThreadId());
    SetEvent(work_.release.Get());
    thread.Join();
    EXPECT_TRUE(work_.isDone);
    EXPECT_FALSE(thread.IsJoinable());
    EXPECT_THAT(Calls(), ElementsAre("begin", "wait -1", "close"));
}

TEST_F(ThreadTest, IsJoinableUntilItIsJoined) {
    Thread thread;
    SetEvent(work_.release.Get());
    ASSERT_TRUE(thread.Start(&RunWork, &work_));
    const HANDLE handle = world.thread;
    world.thread = nullptr;
    ASSERT_EQ(WaitForSingleObject(handle, 10000), WAIT_OBJECT_0);
    EXPECT_TRUE(thread.IsJoinable());
}

TEST_F(ThreadTest, TheDestructorJoins) {
    {
        Thread thread;
        ASSERT_TRUE(thread.Start(&RunWork, &work_));
        SetEvent(work_.release.Get());
    }
    EXPECT_TRUE(work_.isDone);
    EXPECT_THAT(Calls(), ElementsAre("begin", "wait -1", "close"));
}

TEST_F(ThreadTest, AWaitThatFailsIsNotTheEnd) {
    Thread thread;
    ASSERT_TRUE(thread.Start(&RunWork, &work_));
    SetEvent(work_.release.Get());
    world.failingWaits = 2;
    thread.Join();
    EXPECT_TRUE(work_.isDone);
    EXPECT_THAT(Calls(), ElementsAre("begin", "wait -1", "wait -1", "wait -1", "close"));
}

TEST_F(ThreadTest, JoiningWithoutAThreadDoesNothing) {
    Thread thread;
    thread.Join();
    thread.Join();
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(ThreadTest, StartsAgainAfterItsEnd) {
    Thread thread;
    SetEvent(work_.release.Get());
    for (int i = 0; i < 3; ++i) {
        work_.isDone = false;
        ASSERT_TRUE(thread.Start(&RunWork, &work_));
        thread.Join();
        EXPECT_TRUE(work_.isDone);
        thread.Join();
    }
    EXPECT_EQ(CountCalls("begin"), 3);
    EXPECT_EQ(CountCalls("close"), 3);
}

TEST_F(ThreadTest, ARefusalIsToldAsTheSystemsError) {
    world = {.refusesThreads = true, .refusal = ERROR_MAX_THRDS_REACHED};
    Thread thread;
    SetLastError(ERROR_SUCCESS);
    EXPECT_FALSE(thread.Start(&RunWork, &work_));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_MAX_THRDS_REACHED});
    EXPECT_FALSE(thread.IsJoinable());
    thread.Join();
    EXPECT_THAT(Calls(), ElementsAre("begin"));
}

TEST_F(ThreadTest, ARefusalWithoutAReasonIsALackOfMemory) {
    world = {.refusesThreads = true};
    Thread thread;
    SetLastError(ERROR_SUCCESS);
    _doserrno = ERROR_FILE_NOT_FOUND;  // of some earlier call
    EXPECT_FALSE(thread.Start(&RunWork, &work_));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NOT_ENOUGH_MEMORY});
}

TEST_F(ThreadTest, StartsAfterARefusal) {
    world = {.refusesThreads = true};
    Thread thread;
    EXPECT_FALSE(thread.Start(&RunWork, &work_));
    world = {};
    SetEvent(work_.release.Get());
    EXPECT_TRUE(thread.Start(&RunWork, &work_));
    thread.Join();
    EXPECT_TRUE(work_.isDone);
}

}  // namespace
}  // namespace kestrane
