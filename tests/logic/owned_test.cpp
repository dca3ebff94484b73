#include "base/owned.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>
#include <vector>

namespace kestrane {
namespace {

std::vector<int>& Closed() {
    static std::vector<int> closed;
    return closed;
}

struct CountedTraits {
    using Handle = int;
    static constexpr Handle None() { return -1; }
    static void Close(Handle handle) { Closed().push_back(handle); }
};
using Counted = Owned<CountedTraits>;

class OwnedTest : public testing::Test {
  protected:
    OwnedTest() { Closed().clear(); }
};

TEST_F(OwnedTest, ClosesOnceAtTheEnd) {
    {
        const Counted owner(7);
        EXPECT_EQ(owner.Get(), 7);
        EXPECT_TRUE(owner);
    }
    EXPECT_EQ(Closed(), std::vector<int>{7});
}

TEST_F(OwnedTest, NoneIsNeverClosed) {
    {
        const Counted empty;
        EXPECT_FALSE(empty);
        const Counted none(-1);
        EXPECT_FALSE(none);
    }
    EXPECT_TRUE(Closed().empty());
}

TEST_F(OwnedTest, AMoveEmptiesTheSource) {
    Counted first(7);
    const Counted second(std::move(first));
    EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move,clang-analyzer-cplusplus.Move): what this test is about
    EXPECT_EQ(second.Get(), 7);
    EXPECT_TRUE(Closed().empty());
}

TEST_F(OwnedTest, AMoveAssignmentClosesWhatWasHeld) {
    Counted first(7);
    Counted second(8);
    second = std::move(first);
    EXPECT_EQ(second.Get(), 7);
    EXPECT_EQ(Closed(), std::vector<int>{8});
}

TEST_F(OwnedTest, MovingToItselfIsSafe) {
    Counted owner(7);
    Counted& same = owner;
    owner = std::move(same);
    EXPECT_EQ(owner.Get(), 7);
    EXPECT_TRUE(Closed().empty());
}

TEST_F(OwnedTest, ReleaseGivesTheHandleAway) {
    Counted owner(7);
    EXPECT_EQ(owner.Release(), 7);
    EXPECT_FALSE(owner);
    owner.Reset(9);
    owner.Reset();
    EXPECT_EQ(Closed(), std::vector<int>{9});
}

TEST(OwnedTraits, IsMoveOnlyAndConvertsToNothing) {
    EXPECT_FALSE(std::is_copy_constructible_v<Counted>);
    EXPECT_FALSE(std::is_copy_assignable_v<Counted>);
    EXPECT_TRUE(std::is_nothrow_move_constructible_v<Counted>);
    EXPECT_FALSE((std::is_convertible_v<Counted, int>));
    EXPECT_FALSE((std::is_convertible_v<int, Counted>));
}

}  // namespace
}  // namespace kestrane
