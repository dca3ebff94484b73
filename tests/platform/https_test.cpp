#include "update/https_win32.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <map>
#include <string>
#include <vector>

#include "base/handles_win32.h"
#include "support/fake_winhttp_win32.h"
#include "text/text_util.h"

namespace kestrane {
namespace {

using test::fakeHttp;
using test::HttpCallCount;
using test::HttpCalls;
using test::OpenHttpHandles;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* Host = "host.example";

/// A text in which no stretch repeats, so that a lost or doubled piece shows.
std::string TextOf(std::size_t bytes) {
    std::string text;
    for (int i = 0; text.size() < bytes; ++i)
        text += std::to_string(i) + " ";
    text.resize(bytes);
    return text;
}

class HttpsTest : public testing::Test {
  protected:
    HttpsTest() {
        fakeHttp = test::FakeWinHttp();
        Answer().body = "the document";
    }
    ~HttpsTest() override {
        EXPECT_THAT(fakeHttp.mistakes, IsEmpty());
        EXPECT_EQ(OpenHttpHandles(), 0u);
    }
    bool Get(std::size_t limit = 100) {
        return HttpGetSmall(Host, L"/path?t=1", L"agent/1", body_, limit, stop_.Get());
    }
    static test::FakeAnswer& Answer() { return fakeHttp.answers[Host]; }

    UniqueKernelHandle stop_{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    std::string body_ = "before";
};

TEST_F(HttpsTest, FetchesADocument) {
    EXPECT_TRUE(Get());
    EXPECT_EQ(body_, "the document");
    EXPECT_THAT(HttpCalls(),
                ElementsAre("open agent/1 access 4 proxy (none) (none) flags 0", "timeouts 1: 5000 5000 15000 15000",
                            "option 1: 7 is 15000", "connect 1: host.example 443",
                            "request 2: GET /path?t=1 version (none) referrer (none) types (none) flags 0x800100",
                            "send 3: headers Cache-Control: no-cache\r\n length -1 body (none) length 0 of 0",
                            "receive 3", "status 3: level 0x20000013 name (none) bytes 4", "available 3", "read 3: 12",
                            "available 3", "close 3", "close 2", "close 1"));
}

TEST_F(HttpsTest, WithoutAutomaticProxyTheDefaultOneIsUsed) {
    fakeHttp.refused["open"] = {1};
    EXPECT_TRUE(Get());
    ASSERT_GE(HttpCalls().size(), 3u);
    EXPECT_EQ(HttpCalls()[0], "open agent/1 access 4 proxy (none) (none) flags 0 refused");
    EXPECT_EQ(HttpCalls()[1], "open agent/1 access 0 proxy (none) (none) flags 0");
    EXPECT_EQ(HttpCalls()[2], "timeouts 1: 5000 5000 15000 15000");
    EXPECT_EQ(HttpCallCount("open"), 2);
}

TEST_F(HttpsTest, WithoutAnySessionNothingElseIsCalled) {
    fakeHttp.refusedAlways = {"open"};
    EXPECT_FALSE(Get());
    EXPECT_THAT(HttpCalls(), ElementsAre("open agent/1 access 4 proxy (none) (none) flags 0 refused",
                                         "open agent/1 access 0 proxy (none) (none) flags 0 refused"));
}

TEST_F(HttpsTest, ASessionThatRefusesTheTimeOutsIsNotUsed) {
    fakeHttp.refused["timeouts"] = {1};
    EXPECT_FALSE(OpenHttpSession(L"agent/1"));
    EXPECT_THAT(HttpCalls(), ElementsAre("open agent/1 access 4 proxy (none) (none) flags 0",
                                         "timeouts 1: 5000 5000 15000 15000 refused", "close 1"));
    fakeHttp = test::FakeWinHttp();
    fakeHttp.refused["option"] = {1};
    EXPECT_FALSE(OpenHttpSession(L"agent/1"));
    EXPECT_THAT(HttpCalls(),
                ElementsAre("open agent/1 access 4 proxy (none) (none) flags 0", "timeouts 1: 5000 5000 15000 15000",
                            "option 1: 7 is 15000 refused", "close 1"));
}

/// A call that fails is the last one but for the handles, which are closed in order.
TEST_F(HttpsTest, EachFailingCallEndsIt) {
    struct Row {
        const char* function;
        int call;
        std::vector<std::string> closed;
    };
    const std::vector<std::string> all{"close 3", "close 2", "close 1"};
    const std::vector<Row> rows{
        {"timeouts", 1, {"close 1"}},
        {"option", 1, {"close 1"}},
        {"connect", 1, {"close 1"}},
        {"request", 1, {"close 2", "close 1"}},
        {"send", 1, all},
        {"receive", 1, all},
        {"status", 1, all},
        {"available", 1, all},
        {"read", 1, all},
        {"available", 2, all},
        {"read", 2, all},
        {"available", 3, all},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.function) + " " + std::to_string(row.call));
        fakeHttp = test::FakeWinHttp();
        Answer().body = "the document";
        Answer().piece = 7;
        fakeHttp.refused[row.function] = {row.call};
        EXPECT_FALSE(Get());
        EXPECT_EQ(HttpCallCount(row.function), row.call);
        const std::vector<std::string> calls = HttpCalls();
        ASSERT_GT(calls.size(), row.closed.size());
        const auto closed = calls.end() - static_cast<std::ptrdiff_t>(row.closed.size());
        EXPECT_THAT(*(closed - 1), testing::EndsWith(" refused"));
        EXPECT_EQ(std::vector<std::string>(closed, calls.end()), row.closed);
        EXPECT_THAT(fakeHttp.mistakes, IsEmpty());
        EXPECT_EQ(OpenHttpHandles(), 0u);
    }
}

TEST_F(HttpsTest, OnlyTheStatus200Counts) {
    for (const DWORD status :
         {0U, 100U, 199U, 201U, 204U, 206U, 301U, 302U, 304U, 403U, 404U, 500U, 503U, 0xFFFFFFFFU}) {
        SCOPED_TRACE(status);
        fakeHttp = test::FakeWinHttp();
        Answer() = {.status = status, .body = "the document"};
        EXPECT_FALSE(Get());
        EXPECT_EQ(HttpCallCount("status"), 1);
        EXPECT_EQ(HttpCallCount("available"), 0);
        EXPECT_EQ(OpenHttpHandles(), 0u);
    }
}

TEST_F(HttpsTest, ABodyArrivesInAnyPieces) {
    const std::string text = TextOf(9000);
    for (const std::size_t piece : {1U, 2U, 100U, 4095U, 4096U, 4097U, 8191U, 8192U, 9000U}) {
        SCOPED_TRACE(piece);
        fakeHttp = test::FakeWinHttp();
        Answer() = {.body = text, .piece = piece};
        EXPECT_TRUE(Get(9000));
        EXPECT_EQ(body_, text);
    }
}

TEST_F(HttpsTest, AReadMayGiveLessThanHasArrived) {
    Answer() = {.body = TextOf(500), .piece = 90, .mostPerRead = 7};
    EXPECT_TRUE(Get(500));
    EXPECT_EQ(body_, TextOf(500));
}

TEST_F(HttpsTest, AReadOfNothingIsTheEnd) {
    Answer().mostPerRead = 0;
    EXPECT_TRUE(Get());
    EXPECT_EQ(body_, "");
}

TEST_F(HttpsTest, AnEmptyBodyIsADocument) {
    Answer().body = "";
    EXPECT_TRUE(Get());
    EXPECT_EQ(body_, "");
    EXPECT_EQ(HttpCallCount("read"), 0);
}

TEST_F(HttpsTest, NulBytesAreBytes) {
    Answer().body = std::string("a\0b\0", 4);
    EXPECT_TRUE(Get());
    EXPECT_EQ(body_, std::string("a\0b\0", 4));
}

TEST_F(HttpsTest, ABodyOfTheLimitIsFine) {
    for (const std::size_t piece : {test::Never, std::size_t{4096}, std::size_t{1000}, std::size_t{1}}) {
        SCOPED_TRACE(piece);
        Answer() = {.body = TextOf(16384), .piece = piece};
        EXPECT_TRUE(Get(16384));
        EXPECT_EQ(body_, TextOf(16384));
    }
}

TEST_F(HttpsTest, OneByteMoreIsRefused) {
    for (const std::size_t piece : {test::Never, std::size_t{4096}, std::size_t{1000}, std::size_t{1}}) {
        SCOPED_TRACE(piece);
        Answer() = {.body = TextOf(16385), .piece = piece};
        EXPECT_FALSE(Get(16384));
    }
}

TEST_F(HttpsTest, ReadingStopsBehindTheLimit) {
    Answer() = {.body = TextOf(1000), .piece = 4096, .isEndless = true};
    EXPECT_FALSE(Get(16384));
    EXPECT_EQ(HttpCallCount("read"), 5);  // four times 4096 are allowed
    EXPECT_EQ(HttpCallCount("available"), 5);
}

TEST_F(HttpsTest, AConnectionThatBreaksOffFails) {
    for (std::size_t bytes = 0; bytes <= 12; ++bytes) {
        SCOPED_TRACE(bytes);
        fakeHttp = test::FakeWinHttp();
        Answer() = {.body = "the document", .piece = 5, .breaksAt = bytes};
        EXPECT_FALSE(Get());
        EXPECT_EQ(OpenHttpHandles(), 0u);
    }
}

/// The server drips, and would drip on for ever.
TEST_F(HttpsTest, TheStopEventEndsTheReading) {
    Answer() = {.body = "x", .piece = 1, .isEndless = true};
    fakeHttp.onCall = [this](const std::string& function) {
        if (function == "read" && fakeHttp.counts["read"] == 2) SetEvent(stop_.Get());
    };
    EXPECT_FALSE(Get());
    EXPECT_EQ(HttpCallCount("read"), 3);
    EXPECT_EQ(HttpCallCount("available"), 3);
}

TEST_F(HttpsTest, AStopAtTheEndIsAStopToo) {
    fakeHttp.onCall = [this](const std::string& function) {
        if (function == "read") SetEvent(stop_.Get());
    };
    EXPECT_FALSE(Get());
    EXPECT_EQ(HttpCallCount("available"), 1);
}

class ReadHttpBodyTest : public HttpsTest {
  protected:
    ReadHttpBodyTest()
        : request_(SendHttpsRequest(session_.Get(), {.host = WidenBytes(Host), .path = L"/"}, connection_)) {
        fakeHttp.calls.clear();
    }
    UniqueHttpHandle session_ = OpenHttpSession(L"agent/1");
    UniqueHttpHandle connection_;
    UniqueHttpHandle request_;
    std::array<char, 16> buffer_{};
    std::size_t read_ = 55;
};

TEST_F(ReadHttpBodyTest, TakesWhatHasArrived) {
    Answer().piece = 5;
    EXPECT_TRUE(ReadHttpBody(request_.Get(), buffer_.data(), buffer_.size(), read_));
    EXPECT_EQ(std::string(buffer_.data(), read_), "the d");
    EXPECT_THAT(HttpCalls(), ElementsAre("available 3", "read 3: 5"));
}

TEST_F(ReadHttpBodyTest, TakesNoMoreThanTheBufferHolds) {
    EXPECT_TRUE(ReadHttpBody(request_.Get(), buffer_.data(), 4, read_));
    EXPECT_EQ(std::string(buffer_.data(), 5), std::string("the \0", 5));
    EXPECT_EQ(read_, 4u);
}

TEST_F(ReadHttpBodyTest, TheEndIsNoFailure) {
    Answer().body = "";
    EXPECT_TRUE(ReadHttpBody(request_.Get(), buffer_.data(), buffer_.size(), read_));
    EXPECT_EQ(read_, 0u);
    EXPECT_THAT(HttpCalls(), ElementsAre("available 3"));
}

TEST_F(ReadHttpBodyTest, AFailureLeavesTheCount) {
    for (const char* function : {"available", "read"}) {
        fakeHttp.refusedAlways = {function};
        EXPECT_FALSE(ReadHttpBody(request_.Get(), buffer_.data(), buffer_.size(), read_)) << function;
        EXPECT_EQ(read_, 55u) << function;
    }
}

TEST_F(HttpsTest, ARequestMayHaveABodyAndNoHeaders) {
    const UniqueHttpHandle session = OpenHttpSession(L"agent/1");
    UniqueHttpHandle connection;
    const std::string body("{\"a\":\"\0\"}", 9);
    EXPECT_TRUE(SendHttpsRequest(session.Get(),
                                 {.host = WidenBytes(Host), .path = L"/x", .verb = L"POST", .body = body}, connection));
    ASSERT_GE(HttpCalls().size(), 6u);
    EXPECT_EQ(HttpCalls()[4], "request 2: POST /x version (none) referrer (none) types (none) flags 0x800100");
    EXPECT_EQ(HttpCalls()[5],
              "send 3: headers (none) length 0 body " + std::string("{\"a\":\"\0\"}", 9) + " length 9 of 9");
}

/// The caller gets the connection as soon as there is one; what it held before is closed.
TEST_F(HttpsTest, TheConnectionOutlivesAFailedRequest) {
    const UniqueHttpHandle session = OpenHttpSession(L"agent/1");
    UniqueHttpHandle connection;
    for (const char* function : {"request", "send", "receive", "status"}) {
        fakeHttp.refusedAlways = {function};
        EXPECT_FALSE(SendHttpsRequest(session.Get(), {.host = WidenBytes(Host), .path = L"/"}, connection)) << function;
        EXPECT_TRUE(connection) << function;
        EXPECT_EQ(OpenHttpHandles(), 2u) << function;
    }
    fakeHttp.refusedAlways = {"connect"};
    EXPECT_FALSE(SendHttpsRequest(session.Get(), {.host = WidenBytes(Host), .path = L"/"}, connection));
    EXPECT_FALSE(connection);
    EXPECT_EQ(OpenHttpHandles(), 1u);
}

}  // namespace
}  // namespace kestrane
