#include "update/https_win32.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/handles_win32.h"
#include "support/fake_winhttp_win32.h"

namespace kestrane {
namespace {

using test::FakeAnswer;
using test::fakeHttp;
using test::FakeWinHttp;
using test::HttpCalls;
using test::OpenHttpHandles;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* Host = "host.example";

class HttpsTest : public testing::Test {
  protected:
    HttpsTest() {
        fakeHttp = FakeWinHttp();
        fakeHttp.answers[Host].body = "the document";
    }
    ~HttpsTest() override {
        EXPECT_THAT(fakeHttp.mistakes, IsEmpty());
        EXPECT_EQ(OpenHttpHandles(), 0u);
    }
    bool Get(std::size_t limit = 100) {
        return HttpGetSmall(Host, L"/path?t=1", L"agent/1", body_, limit, stop_.Get());
    }
    FakeAnswer& Answer() { return fakeHttp.answers[Host]; }

    UniqueKernelHandle stop_{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    std::string body_ = "before";
};

TEST_F(HttpsTest, FetchesADocument) {
    EXPECT_TRUE(Get());
    EXPECT_EQ(body_, "the document");
    EXPECT_THAT(HttpCalls(),
                ElementsAre("open agent/1 access 4 proxy (none) (none) flags 0", "timeouts 1: 5000 5000 15000 15000",
                            "connect 1: host.example 443",
                            "request 2: GET /path?t=1 version (none) referrer (none) types (none) flags 0x800100",
                            "send 3: headers Cache-Control: no-cache\r\n length -1 body (none) length 0 of 0",
                            "receive 3", "status 3: level 0x20000013 name (none) bytes 4", "available 3", "read 3: 12",
                            "available 3", "close 3", "close 2", "close 1"));
}

}  // namespace
}  // namespace kestrane
