#include "update/own_version.h"

#include <gtest/gtest.h>

#include "base/version.h"
#include "text/text_util.h"
#include "update/version_rules.h"

namespace kestrane {
namespace {

TEST(OwnVersion, IsTheProgramsVersionInCanonicalForm) {
    const std::string version = OwnVersion();
    EXPECT_FALSE(version.empty());
    EXPECT_EQ(version, NormalizeVersion(version));
    EXPECT_FALSE(IsNewerVersion(version, version));
    // The three numbers of CMakeLists.txt are canonical already.
    EXPECT_EQ(WidenBytes(version), ProgramVersion);
}

}  // namespace
}  // namespace kestrane
