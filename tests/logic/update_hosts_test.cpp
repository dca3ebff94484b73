#include "update/update_hosts.h"

#include <gtest/gtest.h>

namespace kestrane {
namespace {

TEST(UpdateHosts, ReachNobodyInTheDefaultBuild) {
    EXPECT_STREQ(UpdateHost, "kestrane.example");
    EXPECT_STREQ(StatsHost, "stats.kestrane.example");
    EXPECT_STREQ(WebsiteId, "");
    EXPECT_STREQ(ManifestKey, "");
}

}  // namespace
}  // namespace kestrane
