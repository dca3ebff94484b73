// Replays the seeds of every fuzz target as ordinary tests: fuzz_seeds FOLDER, where FOLDER contains one folder per
// target.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>

#include "fuzz/fuzz_target.h"

namespace kestrane::fuzz {
namespace {

namespace fs = std::filesystem;

struct NamedTarget {
    const char* name;
    Target target;
};

std::vector<NamedTarget>& Targets() {
    static std::vector<NamedTarget> targets;
    return targets;
}

class SeedTest : public testing::Test {
  public:
    SeedTest(Target replayed, fs::path seedFile) : target(replayed), file(std::move(seedFile)) {}

    void TestBody() override {
        std::ifstream stream(file, std::ios::binary);
        ASSERT_TRUE(stream.is_open()) << file;
        const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(stream), {}};
        target(bytes);
    }

  private:
    Target target;
    fs::path file;
};

/// Returns the number of seeds, so that a target without any does not go unnoticed.
int RegisterSeeds(const NamedTarget& named, const fs::path& folder) {
    int count = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        testing::RegisterTest(named.name, entry.path().filename().string().c_str(), nullptr, nullptr, __FILE__,
                              __LINE__, [=]() -> SeedTest* { return new SeedTest(named.target, entry.path()); });
        ++count;
    }
    return count;
}

int RegisterAllSeeds(const char* folder) {
    for (const NamedTarget& named : Targets()) {
        if (RegisterSeeds(named, fs::path(folder) / named.name) > 0) continue;
        std::fprintf(stderr, "no seeds for the target %s\n", named.name);
        return 1;
    }
    return 0;
}

}  // namespace

bool RegisterTarget(const char* name, Target target) {
    Targets().push_back({name, target});
    return true;
}

}  // namespace kestrane::fuzz

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: fuzz_seeds FOLDER\n");
        return 2;
    }
    const int failed = kestrane::fuzz::RegisterAllSeeds(argv[1]);
    return failed != 0 ? failed : RUN_ALL_TESTS();
}
