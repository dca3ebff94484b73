#include "tray/add_retry.h"

#include <gtest/gtest.h>

#include <vector>

namespace kestrane {
namespace {

TEST(ChooseAddRetry, EachState) {
    struct Row {
        RefusedAdd refused;
        AddRetry retry;
        const char* why;
    };
    constexpr bool Answered = true, MayBeThere = true, MayDropGuid = true;
    const std::vector<Row> rows = {
        {{Answered, !MayBeThere, MayDropGuid}, AddRetry::DropGuid, "the first add with a GUID"},
        {{Answered, MayBeThere, MayDropGuid}, AddRetry::DeleteFirst, "an add that had no answer may be in the way"},
        {{Answered, MayBeThere, !MayDropGuid}, AddRetry::DeleteFirst, "it was there before, or is known by its id"},
        {{Answered, !MayBeThere, !MayDropGuid}, AddRetry::None, "the id alone was refused too"},
        {{!Answered, !MayBeThere, MayDropGuid}, AddRetry::None, "nobody has refused the GUID"},
        {{!Answered, MayBeThere, MayDropGuid}, AddRetry::None, "nobody holds an old entry for certain"},
        {{!Answered, MayBeThere, !MayDropGuid}, AddRetry::None, "nobody holds an old entry for certain"},
        {{!Answered, !MayBeThere, !MayDropGuid}, AddRetry::None, "nobody was there"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(ChooseAddRetry(row.refused), row.retry) << row.why;
}

}  // namespace
}  // namespace kestrane
