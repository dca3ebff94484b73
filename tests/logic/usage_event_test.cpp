#include "update/usage_event.h"

#include <gtest/gtest.h>

namespace kestrane {
namespace {

TEST(BuildUsageEvent, NamesTheProgramTheVersionAndTheInstallation) {
    EXPECT_EQ(BuildUsageEvent("W", "0.1.0", "01234567-89ab-4def-8edc-ba9876543210"),
              R"({"type":"event","payload":{"website":"W","hostname":"app","url":"/app","title":"kestrane",)"
              R"("name":"check","id":"01234567-89ab-4def-8edc-ba9876543210","data":{"version":"0.1.0",)"
              R"("install":"01234567-89ab-4def-8edc-ba9876543210"}}})");
}

TEST(BuildUsageEvent, EscapesAllThree) {
    EXPECT_EQ(BuildUsageEvent("\"w", "1\\2", "i\n"),
              R"({"type":"event","payload":{"website":"\"w","hostname":"app","url":"/app","title":"kestrane",)"
              R"("name":"check","id":"i\n","data":{"version":"1\\2","install":"i\n"}}})");
}

TEST(UsageUserAgent, EndsInTheVersion) {
    EXPECT_EQ(UsageUserAgent("0.1.0"), L"Mozilla/5.0 (Windows NT 10.0; Win64; x64) kestrane/0.1.0");
}

}  // namespace
}  // namespace kestrane
