#include "update/usage_event_win32.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "support/fake_update_hosts.h"
#include "support/fake_winhttp_win32.h"

namespace kestrane {
namespace {

using test::fakeHttp;
using test::HttpCallCount;
using test::HttpCalls;
using test::OpenHttpHandles;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* Identity = "01234567-89ab-4cde-8f01-23456789abcd";

/// A checker that was never started; the test's own thread plays the worker.
class UsageEventTest : public testing::Test {
  protected:
    UsageEventTest() {
        Prepare("W");
        checker_.currentVersion = "0.1.0";
        checker_.installId = Identity;
        checker_.stopEvent.Reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    }
    ~UsageEventTest() override {
        EXPECT_THAT(fakeHttp.mistakes, IsEmpty());
        EXPECT_EQ(OpenHttpHandles(), 0u);
    }
    static void Prepare(const char* websiteId) {
        test::SetHostText(test::websiteId, websiteId);
        fakeHttp = test::FakeWinHttp();
        fakeHttp.answers[StatsHost].body = "thanks";
        fakeHttp.answers[UpdateHost].body = "no manifest";
    }
    UpdateChecker checker_;
};

TEST_F(UsageEventTest, IsOneRequestWhoseAnswerIsNotRead) {
    SendUsageEvent(checker_);
    const std::string body =
        R"({"type":"event","payload":{"website":"W","hostname":"app","url":"/app","title":"kestrane","name":"check",)"
        R"("id":"01234567-89ab-4cde-8f01-23456789abcd","data":{"version":"0.1.0",)"
        R"("install":"01234567-89ab-4cde-8f01-23456789abcd"}}})";
    const std::string length = std::to_string(body.size());
    EXPECT_THAT(
        HttpCalls(),
        ElementsAre(
            "open Mozilla/5.0 (Windows NT 10.0; Win64; x64) kestrane/0.1.0 access 4 proxy (none) (none) flags 0",
            "timeouts 1: 5000 5000 15000 15000", "option 1: 7 is 15000", "connect 1: stats.example 443",
            "request 2: POST /api/send version (none) referrer (none) types (none) flags 0x800100",
            "send 3: headers Content-Type: application/json\r\n length -1 body " + body + " length " + length + " of " +
                length,
            "receive 3", "status 3: level 0x20000013 name (none) bytes 4", "close 3", "close 2", "close 1"));
}

TEST_F(UsageEventTest, WithoutAWebsiteIdNothingIsOpened) {
    Prepare("");
    SendUsageEvent(checker_);
    EXPECT_THAT(HttpCalls(), IsEmpty());
}

TEST_F(UsageEventTest, WithoutAnIdentityNothingIsOpened) {
    checker_.installId = "";
    SendUsageEvent(checker_);
    EXPECT_THAT(HttpCalls(), IsEmpty());
}

/// No second try: each function is called once, except for the session's two kinds of proxy.
TEST_F(UsageEventTest, EachFailingCallEndsItInSilence) {
    for (const char* function : {"open", "timeouts", "option", "connect", "request", "send", "receive", "status"}) {
        SCOPED_TRACE(function);
        Prepare("W");
        fakeHttp.refusedAlways = {function};
        SendUsageEvent(checker_);
        EXPECT_EQ(HttpCallCount(function), std::string(function) == "open" ? 2 : 1);
        const bool hasSession = std::set<std::string>{"open", "timeouts", "option"}.count(function) == 0;
        EXPECT_EQ(HttpCallCount("connect"), hasSession ? 1 : 0);
        EXPECT_THAT(fakeHttp.mistakes, IsEmpty());
        EXPECT_EQ(OpenHttpHandles(), 0u);
    }
}

TEST_F(UsageEventTest, TheStatusDoesNotMatter) {
    for (const DWORD status : {204U, 301U, 404U, 500U}) {
        Prepare("W");
        fakeHttp.answers[StatsHost].status = status;
        SendUsageEvent(checker_);
        EXPECT_EQ(HttpCallCount("send"), 1) << status;
        EXPECT_EQ(HttpCallCount("close"), 3) << status;
    }
}

TEST_F(UsageEventTest, AllThreeTextsAreEscaped) {
    Prepare("a\"b\\");
    checker_.currentVersion = "\"1\"";
    checker_.installId = "i\nd";
    SendUsageEvent(checker_);
    const std::string body =
        R"({"type":"event","payload":{"website":"a\"b\\","hostname":"app","url":"/app","title":"kestrane","name":"check",)"
        R"("id":"i\nd","data":{"version":"\"1\"","install":"i\nd"}}})";
    EXPECT_THAT(HttpCalls(), Contains(testing::HasSubstr(" body " + body + " length ")));
}

/// How often each host was connected to in one cycle.
struct Connections {
    int updates = 0;
    int stats = 0;
    bool operator==(const Connections&) const = default;
};
Connections CountConnections() {
    Connections count;
    for (const std::string& call : HttpCalls()) {
        count.updates += call.starts_with("connect ") && call.ends_with(": updates.example 443") ? 1 : 0;
        count.stats += call.starts_with("connect ") && call.ends_with(": stats.example 443") ? 1 : 0;
    }
    return count;
}

TEST_F(UsageEventTest, EndsEachCheckWhateverItsResult) {
    const std::string good = R"({"version":"0.2.0","url":"https://updates.example/k.exe","size":5,"sha256":")" +
                             std::string(64, 'a') + R"("})";
    const std::vector<test::FakeAnswer> answers{
        {.body = good},
        {.body = "no manifest"},
        {.body = ""},
        {.body = std::string(16385, ' ')},
        {.status = 404, .body = good},
        {.body = good, .breaksAt = 9},
    };
    for (const test::FakeAnswer& answer : answers) {
        SCOPED_TRACE(answer.body);
        Prepare("W");
        fakeHttp.answers[UpdateHost] = answer;
        RunUpdateCheck(checker_);
        EXPECT_EQ(CountConnections(), (Connections{1, 1}));
        EXPECT_EQ(OpenHttpHandles(), 0u);
        const std::vector<std::string> calls = HttpCalls();
        const auto closed = std::find(calls.begin(), calls.end(), "close 1");  // the session of the check
        EXPECT_EQ(std::count(calls.begin(), closed, "connect 4: stats.example 443"), 0);
        EXPECT_EQ(std::count(closed, calls.end(), "connect 4: stats.example 443"), 1);
    }
}

TEST_F(UsageEventTest, ComesThoughTheCheckGotNoSession) {
    fakeHttp.refused["open"] = {1, 2};
    RunUpdateCheck(checker_);
    EXPECT_EQ(CountConnections(), (Connections{0, 1}));
}

TEST_F(UsageEventTest, NeverComesWithoutAWebsiteId) {
    Prepare("");
    for (int i = 0; i < 3; ++i)
        RunUpdateCheck(checker_);
    EXPECT_EQ(HttpCallCount("open"), 3);
    EXPECT_EQ(CountConnections(), (Connections{3, 0}));
}

}  // namespace
}  // namespace kestrane
