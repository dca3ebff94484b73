#include "tray/add_retry.h"

#include <gtest/gtest.h>

namespace kestrane {
namespace {

TEST(ChooseAddRetry, EachState) {
    EXPECT_EQ(ChooseAddRetry(false, true), AddRetry::DropGuid) << "the first add with a GUID was refused";
    EXPECT_EQ(ChooseAddRetry(true, true), AddRetry::DeleteFirst) << "it was there before: an old entry is in the way";
    EXPECT_EQ(ChooseAddRetry(false, false), AddRetry::None) << "the id alone was refused too";
    EXPECT_EQ(ChooseAddRetry(true, false), AddRetry::DeleteFirst) << "and so for one that is known by its id";
}

}  // namespace
}  // namespace kestrane
