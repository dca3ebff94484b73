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
    constexpr bool HadTaskbar = true, EverAdded = true, UseGuid = true;
    const std::vector<Row> rows = {
        {{HadTaskbar, !EverAdded, UseGuid}, AddRetry::DropGuid, "the first add with a GUID"},
        {{HadTaskbar, EverAdded, UseGuid}, AddRetry::DeleteFirst, "it was there before: an old entry is in the way"},
        {{HadTaskbar, EverAdded, !UseGuid}, AddRetry::DeleteFirst, "and so for one that is known by its id"},
        {{HadTaskbar, !EverAdded, !UseGuid}, AddRetry::None, "the id alone was refused too"},
        {{!HadTaskbar, !EverAdded, UseGuid}, AddRetry::None, "nobody was there to refuse the GUID"},
        {{!HadTaskbar, EverAdded, UseGuid}, AddRetry::None, "nobody holds an old entry"},
        {{!HadTaskbar, EverAdded, !UseGuid}, AddRetry::None, "nobody holds an old entry"},
        {{!HadTaskbar, !EverAdded, !UseGuid}, AddRetry::None, "nobody was there"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(ChooseAddRetry(row.refused), row.retry) << row.why;
}

}  // namespace
}  // namespace kestrane
