#include "update/update_checker_win32.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <process.h>

#include <array>
#include <atomic>
#include <functional>
#include <optional>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/fake_update_hosts.h"
#include "support/fake_winhttp_win32.h"
#include "support/real_call_win32.h"
#include "update/manifest_signature_win32.h"

namespace kestrane {
namespace {

using test::fakeHttp;
using test::HttpCallCount;
using test::HttpCalls;
using test::HttpGate;
using test::OpenHttpHandles;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr DWORD LongMs = 10000;  // by then every thread has done what it should
constexpr DWORD ShortMs = 60;    // by then a thread that should wait would have gone on

HANDLE NewEvent(BOOL manual) {
    static const auto real = REAL(L"kernel32", CreateEventW);
    return real(nullptr, manual, FALSE, nullptr);
}

/// The system around the worker. The worker's sleep ends when the test says so.
struct World {
    const UpdateChecker* checker = nullptr;
    Lock lock;
    std::vector<DWORD> sleeps;       // the time-outs of the worker's waits
    std::vector<std::string> posts;  // to whom, and what
    std::vector<std::string> events;
    std::set<HANDLE> openEvents;
    std::function<void()> onPost;  // on the thread that posts
    bool sleepsFail = false;
    bool sleepsAreShort = false;  // each ends at once, as if its time were over
    bool refusesEvents = false;
    bool refusesThreads = false;
    HANDLE asleep = NewEvent(FALSE);
    HANDLE timeOver = NewEvent(FALSE);
    int refusedStops = 0;  // how many of the next calls that would signal the stop event fail
};
World world;

/// The worker's sleep. True, with its answer, if it is one.
std::optional<DWORD> Sleeping(HANDLE handle, DWORD time) {
    if (world.checker == nullptr || handle != world.checker->stopEvent.Get() || time == 0) return std::nullopt;
    {
        const LockGuard guard(world.lock);
        world.sleeps.push_back(time);
    }
    SetEvent(world.asleep);
    if (world.sleepsFail) return DWORD{WAIT_FAILED};
    const std::array<HANDLE, 2> handles{handle, world.timeOver};
    const DWORD ended = WaitForMultipleObjects(2, handles.data(), FALSE, world.sleepsAreShort ? 0 : INFINITE);
    return ended == WAIT_OBJECT_0 ? DWORD{WAIT_OBJECT_0} : DWORD{WAIT_TIMEOUT};
}

DWORD WINAPI FakeWaitForSingleObject(HANDLE handle, DWORD time) {
    static const auto real = REAL(L"kernel32", WaitForSingleObject);
    const std::optional<DWORD> answer = Sleeping(handle, time);
    return answer ? *answer : real(handle, time);
}

HANDLE WINAPI FakeCreateEventW(LPSECURITY_ATTRIBUTES security, BOOL manual, BOOL signalled, LPCWSTR name) {
    static const auto real = REAL(L"kernel32", CreateEventW);
    const LockGuard guard(world.lock);
    world.events.push_back(std::string("manual ") + (manual != FALSE ? "yes" : "no") + " signalled " +
                           (signalled != FALSE ? "yes" : "no") + (name != nullptr ? " with a name" : "") +
                           (security != nullptr ? " with attributes" : ""));
    if (world.refusesEvents) return nullptr;
    const HANDLE event = real(security, manual, signalled, name);
    world.openEvents.insert(event);
    return event;
}

BOOL WINAPI FakeCloseHandle(HANDLE handle) {
    static const auto real = REAL(L"kernel32", CloseHandle);
    {
        const LockGuard guard(world.lock);
        world.openEvents.erase(handle);
    }
    return real(handle);
}

std::uintptr_t __cdecl FakeBeginThread(void* security, unsigned stack, _beginthreadex_proc_type body, void* context,
                                       unsigned flags, unsigned* id) {
    static const auto real = REAL(kestrane::test::CRuntime, _beginthreadex);
    return world.refusesThreads ? 0 : real(security, stack, body, context, flags, id);
}

BOOL WINAPI FakeSetEvent(HANDLE event) {
    static const auto real = REAL(L"kernel32", SetEvent);
    const bool isStop = world.checker != nullptr && event == world.checker->stopEvent.Get();
    if (isStop && world.refusedStops-- > 0) return FALSE;
    return real(event);
}

BOOL WINAPI FakePostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    {
        const LockGuard guard(world.lock);
        world.posts.push_back(std::to_string(reinterpret_cast<std::uintptr_t>(window)) + ": " + test::HexOf(message) +
                              " " + std::to_string(wParam) + " " + std::to_string(lParam));
    }
    if (world.onPost) world.onPost();
    return TRUE;
}

ULONGLONG WINAPI FakeGetTickCount64() {
    return 123456;
}

/// What the signature of a manifest was checked over, and the verdict.
struct Signature {
    bool isValid = false;
    std::vector<std::string> checks;
};
Signature signature;

}  // namespace

bool IsSignedManifest(const UpdateInfo& info, std::string_view text) {
    signature.checks.push_back(info.version + " " + std::string(text));
    return signature.isValid;
}

}  // namespace kestrane

extern "C" {
decltype(&WaitForSingleObject) __imp_WaitForSingleObject = &kestrane::FakeWaitForSingleObject;
decltype(&SetEvent) __imp_SetEvent = &kestrane::FakeSetEvent;
decltype(&CreateEventW) __imp_CreateEventW = &kestrane::FakeCreateEventW;
decltype(&CloseHandle) __imp_CloseHandle = &kestrane::FakeCloseHandle;
decltype(&_beginthreadex) __imp__beginthreadex = &kestrane::FakeBeginThread;
decltype(&PostMessageW) __imp_PostMessageW = &kestrane::FakePostMessageW;
decltype(&GetTickCount64) __imp_GetTickCount64 = &kestrane::FakeGetTickCount64;
}

namespace kestrane {
namespace {

const HWND Window = reinterpret_cast<HWND>(std::uintptr_t{7});
constexpr const char* Posted = "7: 0x8014 0 0";

std::string Manifest(const std::string& version, const std::string& minutes = "60", char hashDigit = 'a') {
    return R"({"version":")" + version + R"(","url":"https://updates.example/)" + version +
           R"(","size":5,"published":"today","checkMinutes":)" + minutes + R"(,"signature":"signed","sha256":")" +
           std::string(64, hashDigit) + R"("})";
}

/// Runs a call on a thread of its own.
class Elsewhere {
  public:
    explicit Elsewhere(std::function<void()> call) : call_(std::move(call)) { thread_.Start(&Run, this); }
    Elsewhere(const Elsewhere&) = delete;
    Elsewhere& operator=(const Elsewhere&) = delete;
    ~Elsewhere() {
        thread_.Join();
        CloseHandle(done_);
    }
    bool IsDoneWithin(DWORD time) { return WaitForSingleObject(done_, time) == WAIT_OBJECT_0; }

  private:
    static unsigned __stdcall Run(void* context) noexcept {
        auto& self = *static_cast<Elsewhere*>(context);
        self.call_();
        SetEvent(self.done_);
        return 0;
    }
    std::function<void()> call_;
    HANDLE done_ = NewEvent(TRUE);
    Thread thread_;
};

class UpdateCheckerTest : public testing::Test {
  protected:
    UpdateCheckerTest() {
        Reset();
        Publish(Manifest("0.2.0"));
    }
    ~UpdateCheckerTest() override {
        checker_.Stop();
        world.checker = nullptr;
        EXPECT_THAT(fakeHttp.mistakes, IsEmpty());
        EXPECT_EQ(OpenHttpHandles(), 0u);
        EXPECT_THAT(world.openEvents, IsEmpty());
    }
    void Reset() {
        world.checker = &checker_;
        world.sleeps.clear();
        world.posts.clear();
        world.events.clear();
        world.openEvents.clear();
        world.onPost = nullptr;
        world.sleepsFail = world.sleepsAreShort = world.refusesEvents = world.refusesThreads = false;
        ResetEvent(world.asleep);
        ResetEvent(world.timeOver);
        test::SetHostText(test::websiteId, "");
        test::SetHostText(test::manifestKey, "");
        signature = {};
        fakeHttp = test::FakeWinHttp();
    }
    /// While the worker sleeps.
    static void PublishAnswer(const test::FakeAnswer& answer) {
        const LockGuard guard(test::fakeHttpLock);
        fakeHttp.answers[UpdateHost] = answer;
    }
    static void Publish(const std::string& body) { PublishAnswer({.body = body}); }

    void Start() { checker_.Start(Window, "0.1.0", "identity"); }
    /// The time-out of the worker's next sleep; 0 if it does not fall asleep.
    static DWORD AwaitSleep() {
        if (WaitForSingleObject(world.asleep, LongMs) != WAIT_OBJECT_0) return 0;
        const LockGuard guard(world.lock);
        return world.sleeps.back();
    }
    /// The sleeping worker's time is over: it checks, and goes to sleep again for the time that is returned.
    static DWORD Check() {
        SetEvent(world.timeOver);
        return AwaitSleep();
    }
    static DWORD Check(const std::string& manifest) {
        Publish(manifest);
        return Check();
    }
    static std::vector<std::string> Posts() {
        const LockGuard guard(world.lock);
        return world.posts;
    }
    /// The version on offer, or "none".
    std::string Offered() const {
        UpdateInfo info;
        return checker_.GetAvailable(info) ? info.version : "none";
    }

    UpdateChecker checker_;
};

constexpr DWORD HourMs = 3600000;

TEST_F(UpdateCheckerTest, SleepsEightSecondsThenChecks) {
    Start();
    EXPECT_TRUE(checker_.IsRunning());
    EXPECT_EQ(AwaitSleep(), 8000u);
    EXPECT_THAT(HttpCalls(), IsEmpty());
    EXPECT_EQ(Offered(), "none");

    EXPECT_EQ(Check(), HourMs);
    EXPECT_THAT(HttpCalls(), Contains("open kestrane/0.1.0 access 4 proxy (none) (none) flags 0"));
    EXPECT_THAT(HttpCalls(), Contains("connect 1: updates.example 443"));
    EXPECT_THAT(HttpCalls(), Contains("request 2: GET /latest.json?t=123456 version (none) referrer (none) types "
                                      "(none) flags 0x800100"));
    EXPECT_THAT(Posts(), ElementsAre(Posted));
    UpdateInfo info;
    ASSERT_TRUE(checker_.GetAvailable(info));
    const UpdateInfo published{"0.2.0", "https://updates.example/0.2.0", std::string(64, 'a'), 5, "today", 60};
    EXPECT_EQ(info, published);
}

TEST_F(UpdateCheckerTest, TheEventIsUnnamedAndResetByHand) {
    Start();
    EXPECT_THAT(world.events, ElementsAre("manual yes signalled no"));
    checker_.Stop();
    EXPECT_FALSE(checker_.stopEvent);
}

TEST_F(UpdateCheckerTest, WithoutAnOfferTheInfoStays) {
    const UpdateInfo before{"before", "url", "hash", 9, "then", 7};
    UpdateInfo info = before;
    EXPECT_FALSE(checker_.GetAvailable(info));
    EXPECT_EQ(info, before);
}

TEST_F(UpdateCheckerTest, ASecondStartChangesNothing) {
    Start();
    AwaitSleep();
    checker_.Start(nullptr, "9.9.9", "another");
    EXPECT_EQ(checker_.notifyWindow, Window);
    EXPECT_EQ(checker_.currentVersion, "0.1.0");
    EXPECT_EQ(checker_.installId, "identity");
    EXPECT_THAT(world.events, SizeIs(1));
    EXPECT_THAT(world.sleeps, ElementsAre(8000u));
    Check();
    EXPECT_THAT(Posts(), ElementsAre(Posted));
}

TEST_F(UpdateCheckerTest, StopWithoutAStartDoesNothing) {
    checker_.Stop();
    checker_.Stop();
    EXPECT_FALSE(checker_.IsRunning());
    EXPECT_THAT(Posts(), IsEmpty());
    EXPECT_THAT(world.events, IsEmpty());
}

TEST_F(UpdateCheckerTest, StopBeforeTheFirstCheckSendsNothing) {
    Start();
    AwaitSleep();
    checker_.Stop();
    EXPECT_FALSE(checker_.IsRunning());
    EXPECT_THAT(HttpCalls(), IsEmpty());
    EXPECT_THAT(Posts(), IsEmpty());
    EXPECT_THAT(world.openEvents, IsEmpty());
}

TEST_F(UpdateCheckerTest, StopRightAfterStartEnds) {
    for (int i = 0; i < 50; ++i) {
        Start();
        checker_.Stop();
    }
    EXPECT_THAT(HttpCalls(), IsEmpty());
    EXPECT_THAT(world.openEvents, IsEmpty());
}

TEST_F(UpdateCheckerTest, StopEndsTheWorkerThatCannotBeToldAtOnce) {
    Start();
    AwaitSleep();
    world.refusedStops = 2;
    Elsewhere stop([this] { checker_.Stop(); });
    EXPECT_TRUE(stop.IsDoneWithin(LongMs));
    world.refusedStops = 0;
    SetEvent(checker_.stopEvent.Get());  // so that it ends in any case
}

TEST_F(UpdateCheckerTest, StopTakesTheOfferBackAndTellsItOnce) {
    Start();
    AwaitSleep();
    Check();
    checker_.Stop();
    EXPECT_EQ(Offered(), "none");
    EXPECT_THAT(Posts(), ElementsAre(Posted, Posted));
    checker_.Stop();
    EXPECT_THAT(Posts(), SizeIs(2));
}

TEST_F(UpdateCheckerTest, StopWithoutAnOfferTellsNothing) {
    Start();
    AwaitSleep();
    Check(Manifest("0.1.0"));
    checker_.Stop();
    EXPECT_THAT(Posts(), IsEmpty());
}

TEST_F(UpdateCheckerTest, TheOwnersEndStopsIt) {
    {
        UpdateChecker checker;
        world.checker = &checker;
        checker.Start(Window, "0.1.0", "identity");
        EXPECT_EQ(AwaitSleep(), 8000u);
        Check();
    }
    world.checker = &checker_;
    EXPECT_THAT(Posts(), ElementsAre(Posted, Posted));
    EXPECT_THAT(world.openEvents, IsEmpty());
}

TEST_F(UpdateCheckerTest, WithoutAWindowNobodyIsTold) {
    checker_.Start(nullptr, "0.1.0", "identity");
    AwaitSleep();
    Check();
    EXPECT_EQ(Offered(), "0.2.0");
    Check(Manifest("0.3.0"));
    Check(Manifest("0.1.0"));
    Check(Manifest("0.2.0"));
    checker_.Stop();
    EXPECT_THAT(Posts(), IsEmpty());
}

TEST_F(UpdateCheckerTest, TheSleepFollowsTheManifest) {
    struct Row {
        const char* minutes;
        DWORD sleepMs;
    };
    const std::vector<Row> rows{{"15", 15 * 60000U},    {"1", 15 * 60000U},      {"10080", 604800000U},
                                {"999999", 604800000U}, {"\"30\"", 30 * 60000U}, {"0", INFINITE},
                                {"-5", INFINITE},       {"1000000", INFINITE},   {"null", INFINITE}};
    Start();
    AwaitSleep();
    for (const Row& row : rows) {
        EXPECT_EQ(Check(Manifest("0.2.0", row.minutes)), row.sleepMs) << row.minutes;
        EXPECT_EQ(Check(Manifest("0.1.0", row.minutes)), row.sleepMs) << row.minutes << ", not newer";
    }
}

TEST_F(UpdateCheckerTest, AManifestWithoutMinutesIsTheLast) {
    Start();
    AwaitSleep();
    EXPECT_EQ(Check(), HourMs);
    EXPECT_EQ(Check(R"({"version":"0.3","url":"https://updates.example/k","size":5,"sha256":")" + std::string(64, 'A') +
                    R"("})"),
              DWORD{INFINITE});
    EXPECT_EQ(Offered(), "0.3.0");
}

/// The ways in which a check can fail without the manifest being at fault.
std::vector<test::FakeAnswer> BadAnswers() {
    const std::string good = Manifest("0.5.0", "99");
    std::vector<test::FakeAnswer> answers{{.body = good, .breaksAt = 0}, {.body = good, .breaksAt = good.size()}};
    for (const DWORD status : {199U, 201U, 204U, 206U, 301U, 304U, 404U, 500U})
        answers.push_back({.status = status, .body = good});
    answers.push_back({.body = good + std::string(16385 - good.size(), ' ')});
    answers.push_back({.body = good, .isEndless = true});
    const std::string hash = std::string(64, 'a');
    for (const std::string& body :
         {std::string(), good.substr(0, good.size() - 1), std::string("<html>"), "\xEF\xBB\xBF" + good,
          Manifest("1.2.3-beta"), Manifest(""), Manifest("0.5.0", "60", 'g'),
          R"({"version":"0.5","size":5,"sha256":")" + hash + R"("})",
          R"({"version":"0.5","url":"https://other.example/k","size":5,"sha256":")" + hash + R"("})",
          R"({"version":"0.5","url":"https://updates.example/k","size":0,"sha256":")" + hash + R"("})",
          R"({"version":"0.5","url":"https://updates.example/k","size":"5","sha256":")" + hash + R"("})",
          R"({"version":"0.5","url":"https://updates.example/k","size":5,"sha256":")" + hash + R"(a"})"})
        answers.push_back({.body = body});
    return answers;
}

TEST_F(UpdateCheckerTest, AFirstCheckThatFailsIsTheLast) {
    for (const test::FakeAnswer& answer : BadAnswers()) {
        SCOPED_TRACE(std::to_string(answer.status) + " " + answer.body.substr(0, 200));
        Start();
        EXPECT_EQ(AwaitSleep(), 8000u);
        PublishAnswer(answer);
        EXPECT_EQ(Check(), DWORD{INFINITE});
        EXPECT_EQ(Offered(), "none");
        checker_.Stop();
    }
    EXPECT_THAT(Posts(), IsEmpty());
}

TEST_F(UpdateCheckerTest, ALaterCheckThatFailsChangesNothing) {
    Start();
    AwaitSleep();
    EXPECT_EQ(Check(), HourMs);
    UpdateInfo before;
    checker_.GetAvailable(before);
    for (const test::FakeAnswer& answer : BadAnswers()) {
        SCOPED_TRACE(std::to_string(answer.status) + " " + answer.body.substr(0, 200));
        PublishAnswer(answer);
        EXPECT_EQ(Check(), HourMs);
        UpdateInfo after;
        EXPECT_TRUE(checker_.GetAvailable(after));
        EXPECT_EQ(after, before);
    }
    EXPECT_THAT(Posts(), ElementsAre(Posted));
}

TEST_F(UpdateCheckerTest, EachRefusedCallFailsTheCheckInSilence) {
    Start();
    AwaitSleep();
    EXPECT_EQ(Check(), HourMs);
    for (const char* function :
         {"open", "timeouts", "option", "connect", "request", "send", "receive", "status", "available", "read"}) {
        SCOPED_TRACE(function);
        {
            const LockGuard guard(test::fakeHttpLock);
            fakeHttp.refusedAlways = {function};
        }
        EXPECT_EQ(Check(Manifest("0.9.0", "99")), HourMs);
        EXPECT_EQ(Offered(), "0.2.0");
        EXPECT_EQ(OpenHttpHandles(), 0u);
    }
    EXPECT_THAT(Posts(), ElementsAre(Posted));
}

TEST_F(UpdateCheckerTest, AManifestOfTheLimitIsRead) {
    const std::string good = Manifest("0.2.0");
    Start();
    AwaitSleep();
    EXPECT_EQ(Check(good + std::string(16385 - good.size(), ' ')), DWORD{INFINITE});
    EXPECT_EQ(Offered(), "none");
    EXPECT_EQ(Check(good + std::string(16384 - good.size(), ' ')), HourMs);
    EXPECT_EQ(Offered(), "0.2.0");
}

TEST_F(UpdateCheckerTest, TellsWhatHasChanged) {
    struct Row {
        std::string manifest;
        const char* offered;
        std::size_t posts;
    };
    const std::vector<Row> rows{
        {Manifest("0.1.0"), "none", 0},        // equal
        {Manifest("0.1"), "none", 0},          // equal
        {Manifest("0.0.9"), "none", 0},        // older
        {Manifest("0.1.0.1"), "0.1.0.1", 1},   // newer
        {Manifest("0.1.0.1"), "0.1.0.1", 0},   // the same
        {Manifest("0.2+build7"), "0.2.0", 1},  // newer still
        {Manifest("0.2.0.0"), "0.2.0", 0},     // the same in other words
        {Manifest("0.1.5"), "0.1.5", 1},       // a step back is another version too
        {Manifest("1.2.3-beta"), "0.1.5", 0},  // malformed
        {Manifest("0.1.0"), "none", 1},        // withdrawn
        {Manifest("0.1.0"), "none", 0},        //
        {Manifest("0.1.5"), "0.1.5", 1},       // the version that was withdrawn
        {Manifest("10.0"), "10.0.0", 1},       // numbers, not letters
        {Manifest("0.0.0"), "none", 1},
    };
    Start();
    AwaitSleep();
    std::size_t posts = 0;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.manifest);
        Check(row.manifest);
        posts += row.posts;
        EXPECT_EQ(Offered(), row.offered);
        EXPECT_THAT(Posts(), SizeIs(posts));
    }
}

TEST_F(UpdateCheckerTest, TheSameVersionWithAnotherHashIsStoredInSilence) {
    Start();
    AwaitSleep();
    Check(Manifest("0.2.0", "60", 'a'));
    EXPECT_EQ(Check(Manifest("0.2.0", "20", 'B')), 20 * 60000U);
    UpdateInfo info;
    ASSERT_TRUE(checker_.GetAvailable(info));
    EXPECT_EQ(info.sha256, std::string(64, 'b'));
    EXPECT_EQ(info.checkMinutes, 20u);
    EXPECT_THAT(Posts(), ElementsAre(Posted));
}

TEST_F(UpdateCheckerTest, AStartAfterAStopKeepsTheInterval) {
    Start();
    AwaitSleep();
    Check();
    checker_.Stop();
    Publish("no manifest");
    Start();
    EXPECT_EQ(AwaitSleep(), 8000u);
    EXPECT_EQ(Offered(), "none");
    EXPECT_EQ(Check(), HourMs);
    checker_.Stop();
    checker_.Start(Window, "0.3.0", "identity");  // as the next version
    EXPECT_EQ(AwaitSleep(), 8000u);
    EXPECT_EQ(Check(Manifest("0.2.0", "30")), HourMs / 2);
    EXPECT_EQ(Offered(), "none");
}

TEST_F(UpdateCheckerTest, AWaitThatFailsEndsTheThread) {
    world.sleepsFail = true;
    Start();
    EXPECT_EQ(AwaitSleep(), 8000u);
    Sleep(ShortMs);
    EXPECT_THAT(world.sleeps, SizeIs(1));
    EXPECT_TRUE(checker_.IsRunning());  // until it is joined
    world.sleepsFail = false;
    Start();
    EXPECT_THAT(world.sleeps, SizeIs(1));
    checker_.Stop();
    EXPECT_FALSE(checker_.IsRunning());
    EXPECT_THAT(HttpCalls(), IsEmpty());
    Start();
    EXPECT_EQ(AwaitSleep(), 8000u);
}

TEST_F(UpdateCheckerTest, WithoutAnEventThereIsNoWorker) {
    world.refusesEvents = true;
    Start();
    EXPECT_FALSE(checker_.IsRunning());
    EXPECT_THAT(world.sleeps, IsEmpty());
    checker_.Stop();
    EXPECT_THAT(Posts(), IsEmpty());
    world.refusesEvents = false;
    Start();
    EXPECT_EQ(AwaitSleep(), 8000u);
    EXPECT_EQ(Check(), HourMs);
}

TEST_F(UpdateCheckerTest, WithoutAThreadStartThrowsAndLeavesNothing) {
    world.refusesThreads = true;
    EXPECT_THROW(Start(), std::runtime_error);
    EXPECT_FALSE(checker_.IsRunning());
    EXPECT_FALSE(checker_.stopEvent);
    EXPECT_THAT(world.openEvents, IsEmpty());
    EXPECT_THAT(world.events, SizeIs(1));
    checker_.Stop();
    EXPECT_THAT(Posts(), IsEmpty());
    world.refusesThreads = false;
    Start();
    EXPECT_EQ(AwaitSleep(), 8000u);
}

/// Stop waits for the call that is held, whichever it is, and leaves no offer behind.
TEST_F(UpdateCheckerTest, StopWaitsForTheCheckUnderWay) {
    for (const char* function : {"open", "timeouts", "option", "connect", "request", "send", "receive", "status",
                                 "available", "read", "close"}) {
        SCOPED_TRACE(function);
        Reset();
        Publish(Manifest("0.2.0"));
        HttpGate gate(function);
        Start();
        AwaitSleep();
        SetEvent(world.timeOver);
        ASSERT_TRUE(gate.AwaitCall());
        {
            Elsewhere stop([this] { checker_.Stop(); });
            EXPECT_FALSE(stop.IsDoneWithin(ShortMs));
            EXPECT_EQ(Offered(), "none");  // asking does not wait
            gate.Open();
            EXPECT_TRUE(stop.IsDoneWithin(LongMs));
        }
        EXPECT_FALSE(checker_.IsRunning());
        EXPECT_EQ(Offered(), "none");
        EXPECT_EQ(OpenHttpHandles(), 0u);
    }
}

TEST_F(UpdateCheckerTest, StopEndsADrippingManifest) {
    PublishAnswer({.body = "x", .piece = 1, .isEndless = true});
    HttpGate gate("read", 100);
    Start();
    AwaitSleep();
    SetEvent(world.timeOver);
    ASSERT_TRUE(gate.AwaitCall());
    Elsewhere stop([this] { checker_.Stop(); });
    EXPECT_FALSE(stop.IsDoneWithin(ShortMs));
    gate.Open();
    EXPECT_TRUE(stop.IsDoneWithin(LongMs));
    EXPECT_EQ(HttpCallCount("read"), 100);
}

/// The event is seen too late: the check is taken over and told, then taken back and told.
TEST_F(UpdateCheckerTest, StopDuringTheLastReadTakesBackWhatIsTakenOver) {
    HttpGate gate("available", 2);
    Start();
    AwaitSleep();
    SetEvent(world.timeOver);
    ASSERT_TRUE(gate.AwaitCall());
    Elsewhere stop([this] { checker_.Stop(); });
    EXPECT_FALSE(stop.IsDoneWithin(ShortMs));
    gate.Open();
    EXPECT_TRUE(stop.IsDoneWithin(LongMs));
    EXPECT_THAT(Posts(), ElementsAre(Posted, Posted));
    EXPECT_EQ(Offered(), "none");
}

TEST_F(UpdateCheckerTest, StopDuringALaterCheckTakesTheOfferBack) {
    Start();
    AwaitSleep();
    Check();
    Publish(Manifest("0.3.0"));
    HttpGate gate("read", 2);
    SetEvent(world.timeOver);
    ASSERT_TRUE(gate.AwaitCall());
    EXPECT_EQ(Offered(), "0.2.0");
    Elsewhere stop([this] { checker_.Stop(); });
    EXPECT_FALSE(stop.IsDoneWithin(ShortMs));
    EXPECT_EQ(Offered(), "0.2.0");
    gate.Open();
    EXPECT_TRUE(stop.IsDoneWithin(LongMs));
    EXPECT_THAT(Posts(), ElementsAre(Posted, Posted));
    EXPECT_EQ(Offered(), "none");
}

/// Whoever is told asks at once, on whatever thread: the offer must not be locked then, nor during a call of WinHTTP.
TEST_F(UpdateCheckerTest, TheOfferCanBeAskedForAtAnyTime) {
    std::atomic<int> asked = 0;
    std::atomic<int> answered = 0;
    const auto ask = [&] {
        ++asked;
        Elsewhere question([this] { Offered(); });
        answered += question.IsDoneWithin(LongMs) ? 1 : 0;
    };
    world.onPost = ask;
    fakeHttp.onCall = [&ask](const std::string&) { ask(); };
    Start();
    AwaitSleep();
    Check();
    checker_.Stop();
    EXPECT_EQ(asked, 16);  // 14 calls and 2 posts
    EXPECT_EQ(answered, asked);
}

TEST_F(UpdateCheckerTest, WhoeverTouchesTheOfferWaitsForItsLock) {
    Start();
    AwaitSleep();
    std::optional<LockGuard> guard(checker_.lock);
    SetEvent(world.timeOver);
    EXPECT_NE(WaitForSingleObject(world.asleep, ShortMs), WAIT_OBJECT_0);  // all calls are done by then
    EXPECT_EQ(HttpCallCount("close"), 3);
    EXPECT_FALSE(checker_.offer.available);
    EXPECT_THAT(Posts(), IsEmpty());
    {
        Elsewhere question([this] { Offered(); });
        EXPECT_FALSE(question.IsDoneWithin(ShortMs));
        guard.reset();
        EXPECT_EQ(AwaitSleep(), HourMs);
    }
    guard.emplace(checker_.lock);
    Elsewhere stop([this] { checker_.Stop(); });
    EXPECT_FALSE(stop.IsDoneWithin(ShortMs));
    EXPECT_TRUE(checker_.offer.available);
    guard.reset();
}

TEST_F(UpdateCheckerTest, WithAKeyOnlyASignedManifestCounts) {
    Start();
    AwaitSleep();
    Check();
    EXPECT_THAT(signature.checks, IsEmpty());

    test::SetHostText(test::manifestKey, "key");
    Check(Manifest("0.3.0"));
    EXPECT_THAT(signature.checks, ElementsAre("0.3.0 signed"));
    EXPECT_EQ(Offered(), "0.2.0");
    Check(Manifest("0.1.0"));
    EXPECT_EQ(Offered(), "0.2.0");
    signature.isValid = true;
    Check(Manifest("0.3.0"));
    EXPECT_EQ(Offered(), "0.3.0");
    EXPECT_THAT(Posts(), SizeIs(2));
}

TEST_F(UpdateCheckerTest, EachCheckEndsWithTheUsageEvent) {
    test::SetHostText(test::websiteId, "W");
    {
        const LockGuard guard(test::fakeHttpLock);
        fakeHttp.answers[StatsHost] = {};
    }
    HttpGate gate("connect", 2);
    Start();
    AwaitSleep();
    SetEvent(world.timeOver);
    ASSERT_TRUE(gate.AwaitCall());
    EXPECT_THAT(Posts(), ElementsAre(Posted));  // the user does not wait for it
    gate.Open();
    EXPECT_EQ(AwaitSleep(), HourMs);
    EXPECT_THAT(HttpCalls(), Contains("connect 4: stats.example 443"));
    Check("no manifest");
    EXPECT_THAT(HttpCalls(), Contains("connect 10: stats.example 443"));
}

/// What the worker and its owner can do next, and what must come of it.
class OrdersTest : public UpdateCheckerTest {
  protected:
    enum class Step : std::uint8_t { Start, Stop, Newer, NewerStill, NotNewer, Broken };
    static constexpr std::size_t StepCount = 6;

    void Begin() {
        Reset();
        checker_.offer = {};
        model_ = {};
    }
    void Take(Step step) {
        switch (step) {
            case Step::Start:
                return TakeStart();
            case Step::Stop:
                return TakeStop();
            case Step::Newer:
                return TakeCheck("0.2.0", Manifest("0.2.0", "60"), HourMs);
            case Step::NewerStill:
                return TakeCheck("0.3.0", Manifest("0.3.0", "0"), INFINITE);
            case Step::NotNewer:
                return TakeCheck("none", Manifest("0.1.0", "30"), HourMs / 2);
            case Step::Broken:
                return TakeCheck(model_.offered, "no manifest", model_.sleepMs);
        }
    }
    void ExpectModel() {
        EXPECT_EQ(checker_.IsRunning(), model_.isRunning);
        EXPECT_EQ(Offered(), model_.offered);
        EXPECT_THAT(Posts(), SizeIs(model_.posts));
        EXPECT_EQ(HttpCallCount("open"), model_.checks);
        EXPECT_EQ(checker_.stopEvent.Get() != nullptr, model_.isRunning);
    }

  private:
    void TakeStart() {
        Start();
        if (!model_.isRunning) {
            EXPECT_EQ(AwaitSleep(), 8000u);
        }
        model_.isRunning = true;
    }
    void TakeStop() {
        checker_.Stop();
        model_.isRunning = false;
        Expect("none");
    }
    void TakeCheck(const std::string& offered, const std::string& manifest, DWORD sleepMs) {
        if (!model_.isRunning) return;
        EXPECT_EQ(Check(manifest), sleepMs);
        ++model_.checks;
        model_.sleepMs = sleepMs;
        Expect(offered);
    }
    void Expect(const std::string& offered) {
        model_.posts += offered != model_.offered ? 1U : 0U;
        model_.offered = offered;
    }

    struct Model {
        bool isRunning = false;
        std::string offered = "none";
        std::size_t posts = 0;
        int checks = 0;
        DWORD sleepMs = INFINITE;  // outlives a stop
    };
    Model model_;
};

TEST_F(OrdersTest, EveryOrderOfFourSteps) {
    constexpr std::size_t Orders = StepCount * StepCount * StepCount * StepCount;
    for (std::size_t order = 0; order < Orders && !HasFailure(); ++order) {
        SCOPED_TRACE(order);
        Begin();
        std::size_t rest = order;
        for (int i = 0; i < 4; ++i, rest /= StepCount) {
            Take(static_cast<Step>(rest % StepCount));
            ExpectModel();
        }
        checker_.Stop();
    }
}

TEST_F(OrdersTest, ALongWalk) {
    std::minstd_rand random(1);
    Begin();
    for (int i = 0; i < 2000 && !HasFailure(); ++i) {
        const std::size_t step = random() / 7 % StepCount;
        SCOPED_TRACE(std::to_string(i) + ": step " + std::to_string(step));
        Take(static_cast<Step>(step));
        ExpectModel();
    }
}

/// Real threads and no pauses: the worker checks without a rest, others ask, the owner starts and stops.
TEST_F(UpdateCheckerTest, StandsAHundredStartsUnderQuestions) {
    world.sleepsAreShort = true;
    std::atomic<int> version = 0;
    fakeHttp.onCall = [&version](const std::string& function) {
        if (function != "open") return;
        const LockGuard guard(test::fakeHttpLock);
        fakeHttp.calls.clear();
        fakeHttp.handles.clear();
        const std::string number = std::to_string(version++ % 7);
        fakeHttp.answers[UpdateHost].body = Manifest("0." + number + ".0", "60", number[0]);
    };
    std::atomic<bool> isOver = false;
    std::atomic<int> offers = 0;
    std::atomic<int> torn = 0;
    const auto ask = [&] {
        std::minstd_rand random(GetCurrentThreadId());
        UpdateInfo info;
        while (!isOver) {
            if (checker_.GetAvailable(info)) {
                ++offers;
                const std::string& text = info.version;
                torn +=
                    info.url == "https://updates.example/" + text && info.sha256 == std::string(64, text[2]) ? 0 : 1;
            }
            if (random() / 8 % 4 == 0) Sleep(random() / 8 % 2);
        }
    };
    {
        Elsewhere first(ask);
        Elsewhere second(ask);
        Elsewhere third(ask);
        std::minstd_rand random(3);
        for (int i = 0; i < 100; ++i) {
            Start();
            Sleep(random() / 8 % 12);
            checker_.Stop();
            EXPECT_EQ(Offered(), "none");
            if (random() / 8 % 2 == 0) checker_.Stop();
        }
        isOver = true;
    }
    EXPECT_EQ(torn, 0);
    EXPECT_GT(offers, 0);
    EXPECT_GT(version, 100);
    EXPECT_GE(Posts().size(), 2u);
}

}  // namespace
}  // namespace kestrane
