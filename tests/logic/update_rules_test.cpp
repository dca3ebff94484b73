#include "update/update_rules.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace kestrane {
namespace {

UpdateInfo InfoOf(std::string version, std::uint32_t checkMinutes = 60) {
    return {std::move(version), "https://kestrane.example/a", std::string(64, 'a'), 100, "today", checkMinutes};
}

UpdateOffer Offering(const std::string& version) {
    return {true, InfoOf(version), 60};
}

TEST(UpdateOffer, IsNoneAtFirst) {
    const UpdateOffer offer;
    EXPECT_FALSE(offer.available);
    EXPECT_EQ(offer.nextCheckMinutes, 0);
}

TEST(ApplyManifest, TellsOfAnotherOfferAndOfNoneAnyMore) {
    struct {
        const char* offered;  // before, or null
        const char* manifest;
        bool available;
        bool changed;
    } const cases[] = {
        {nullptr, "0.0.9", false, false}, {nullptr, "0.1.0", false, false}, {nullptr, "0.1.0.1", true, true},
        {nullptr, "0.2.0", true, true},   {"0.2.0", "0.2.0", true, false},  {"0.2.0", "0.3.0", true, true},
        {"0.3.0", "0.2.0", true, true},   // taken back, but still newer than the running one
        {"0.3.0", "0.1.0", false, true},  // taken back
        {"0.3.0", "0.0.9", false, true},  {"0.1.0", "0.1.0", false, true},  {nullptr, "", false, false},
        {"0.2.0", "", false, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << (c.offered != nullptr ? c.offered : "none") << ", then " << c.manifest);
        UpdateOffer offer = c.offered != nullptr ? Offering(c.offered) : UpdateOffer{};
        const UpdateInfo before = offer.info;
        const UpdateInfo info = InfoOf(c.manifest);
        EXPECT_EQ(ApplyManifest(offer, info, "0.1.0"), c.changed);
        EXPECT_EQ(offer.available, c.available);
        EXPECT_EQ(offer.info, c.available ? info : before);
        EXPECT_EQ(offer.nextCheckMinutes, 60);
    }
}

TEST(ApplyManifest, OffersNothingToAProgramWithoutAVersion) {
    UpdateOffer offer;
    EXPECT_FALSE(ApplyManifest(offer, InfoOf("0.2.0"), ""));
    EXPECT_FALSE(offer.available);
}

TEST(ApplyManifest, TakesEverythingElseOverWithoutAWord) {
    void (*const changes[])(UpdateInfo&) = {
        [](UpdateInfo& info) { info.url += "b"; }, [](UpdateInfo& info) { info.sha256[0] = 'b'; },
        [](UpdateInfo& info) { ++info.size; }, [](UpdateInfo& info) { info.published = "tomorrow"; },
        [](UpdateInfo& info) { info.checkMinutes = 10080; }};
    for (const auto change : changes) {
        UpdateOffer offer = Offering("0.2.0");
        UpdateInfo info = offer.info;
        change(info);
        EXPECT_FALSE(ApplyManifest(offer, info, "0.1.0"));
        EXPECT_TRUE(offer.available);
        EXPECT_EQ(offer.info, info);
        EXPECT_EQ(offer.nextCheckMinutes, static_cast<std::int32_t>(info.checkMinutes));
    }
}

TEST(ApplyManifest, TakesTheNextCheckFromAnyManifest) {
    for (const char* version : {"0.0.9", "0.1.0", "0.2.0"}) {
        for (const std::uint32_t minutes : {0U, 15U, 10080U}) {
            UpdateOffer offer = Offering("0.2.0");
            ApplyManifest(offer, InfoOf(version, minutes), "0.1.0");
            EXPECT_EQ(offer.nextCheckMinutes, static_cast<std::int32_t>(minutes)) << version;
        }
    }
}

// An old manifest still bears its valid signature, so only the version protects from its replay.
TEST(ApplyManifest, TakesTheOfferBackForWhatAnOldManifestPublished) {
    for (const char* old : {"0.1.0", "0.1.9.9", "0.2.0"}) {
        UpdateOffer offer;
        EXPECT_TRUE(ApplyManifest(offer, InfoOf("0.3.0"), "0.2.0"));
        EXPECT_TRUE(ApplyManifest(offer, InfoOf(old), "0.2.0")) << old;
        EXPECT_FALSE(offer.available) << old;
        EXPECT_FALSE(ApplyManifest(offer, InfoOf(old), "0.2.0")) << old;
    }
}

TEST(NextWaitMs, IsInMilliseconds) {
    struct {
        std::int32_t minutes;
        std::uint32_t expected;
    } const cases[] = {
        {1, 60'000}, {15, 900'000}, {16, 960'000}, {60, 3'600'000}, {10079, 604'740'000}, {10080, 604'800'000},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(NextWaitMs(c.minutes), c.expected);
    }
    EXPECT_EQ(FirstCheckMs, 8000U);
}

TEST(NextWaitMs, HasNoEndWithoutMinutes) {
    EXPECT_EQ(NeverAgainMs, 0xFFFFFFFFU);  // INFINITE
    for (const std::int32_t minutes : {0, -1, -15, std::numeric_limits<std::int32_t>::min()}) {
        EXPECT_EQ(NextWaitMs(minutes), NeverAgainMs) << minutes;
    }
}

TEST(UserAgent, NamesTheProgramAndItsVersion) {
    EXPECT_EQ(UserAgent("0.1.0"), L"kestrane/0.1.0");
}

TEST(ManifestPath, DiffersForEachTick) {
    EXPECT_EQ(ManifestPath(0), L"/latest.json?t=0");
    EXPECT_EQ(ManifestPath(123456789), L"/latest.json?t=123456789");
    EXPECT_EQ(ManifestPath(std::numeric_limits<std::uint64_t>::max()), L"/latest.json?t=18446744073709551615");
}

TEST(UpdatePage, IsOnTheUpdateHost) {
    EXPECT_EQ(UpdatePage(L"/"), L"https://kestrane.example/");
    EXPECT_EQ(UpdatePage(L"/changelog.html"), L"https://kestrane.example/changelog.html");
}

TEST(Permille, IsTheWholePartOfTheShare) {
    struct {
        std::uint64_t done;
        std::uint64_t total;
        std::int32_t expected;
    } const cases[] = {
        {0, 0, 0},
        {5, 0, 0},
        {0, 100, 0},
        {1, 1001, 0},
        {1, 1000, 1},
        {1999, 1'000'000, 1},
        {1, 3, 333},
        {2, 3, 666},
        {999, 1000, 999},
        {9999, 10000, 999},
        {1000, 1000, 1000},
        {1, 1, 1000},
        {1001, 1000, 1000},  // more than published
        {1'000'000, 1, 1000},
        {81920, 600'000, 136},
        {5'000'000'000, 10'000'000'000, 500},  // beyond 32 bits
        {1, std::numeric_limits<std::uint64_t>::max(), 0},
        {18'446'744'073'709'551, 18'446'744'073'709'551, 1000},  // the last whose thousandfold fits
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Permille(c.done, c.total), c.expected) << c.done << " of " << c.total;
    }
}

TEST(Permille, NeverFalls) {
    for (const std::uint64_t total : {1U, 7U, 999U, 1000U, 1001U, 4096U}) {
        std::int32_t last = 0;
        for (std::uint64_t done = 0; done <= total + 10; ++done) {
            const std::int32_t now = Permille(done, total);
            EXPECT_GE(now, last);
            EXPECT_LE(now, 1000);
            last = now;
        }
        EXPECT_EQ(last, 1000);
    }
}

}  // namespace
}  // namespace kestrane
