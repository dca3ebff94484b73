#include "metrics/pdh_counters_win32.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "support/fake_pdh.h"
#include "support/recorded_log.h"

namespace kestrane {
namespace {

using namespace disk_paths;
using testing::ElementsAre;
using testing::IsEmpty;

class PdhCountersTest : public testing::Test {
  protected:
    PdhCountersTest() {
        fakePdh = FakePdh();
        debugLines.clear();
    }

    PdhCounters counters;
};

TEST_F(PdhCountersTest, OpensBothQueriesAndPrimesThem) {
    OpenPdhCounters(counters);
    EXPECT_THAT(fakePdh.calls, ElementsAre(L"open", std::wstring(L"add 1 ") + cpu_paths::Total,
                                           std::wstring(L"add 1 ") + cpu_paths::Cores, L"collect 1", L"open",
                                           std::wstring(L"add 2 ") + Idle, std::wstring(L"add 2 ") + ReadTime,
                                           std::wstring(L"add 2 ") + WriteTime, std::wstring(L"add 2 ") + ReadBytes,
                                           std::wstring(L"add 2 ") + WriteBytes, L"collect 2"));
    EXPECT_THAT(debugLines, IsEmpty());
    EXPECT_EQ(counters.cpuQuery.Get(), HandleOf(1));
    EXPECT_EQ(counters.cpuTotalCounter, HandleOf(1));
    EXPECT_EQ(counters.cpuCoreCounter, HandleOf(2));
    EXPECT_EQ(counters.diskQuery.Get(), HandleOf(2));
    EXPECT_EQ(counters.diskIdleCounter, HandleOf(3));
    EXPECT_EQ(counters.diskReadTimeCounter, HandleOf(4));
    EXPECT_EQ(counters.diskWriteTimeCounter, HandleOf(5));
    EXPECT_EQ(counters.diskReadBytesCounter, HandleOf(6));
    EXPECT_EQ(counters.diskWriteBytesCounter, HandleOf(7));
    EXPECT_TRUE(counters.diskReady);
    EXPECT_FALSE(counters.cpuTimes.cpuBaseline);
    EXPECT_FALSE(counters.diskPrimed);
}

TEST_F(PdhCountersTest, AFailedFirstCollectionIsIgnored) {
    fakePdh.collectStatus = static_cast<PDH_STATUS>(PDH_NO_DATA);
    OpenPdhCounters(counters);
    EXPECT_TRUE(counters.cpuQuery);
    EXPECT_TRUE(counters.diskReady);
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(PdhCountersTest, WithoutACpuQueryNothingIsSaid) {
    fakePdh.refusedQueries = {1};
    OpenPdhCounters(counters);
    EXPECT_FALSE(counters.cpuQuery);
    EXPECT_EQ(counters.diskQuery.Get(), HandleOf(2));
    EXPECT_THAT(debugLines, IsEmpty());
    counters = PdhCounters();
    EXPECT_THAT(fakePdh.calls, testing::Not(testing::Contains(L"close 1")));
}

TEST_F(PdhCountersTest, WithoutTheMachineCounterTheCpuFallsBack) {
    fakePdh.missing = {cpu_paths::Total};
    OpenPdhCounters(counters);
    EXPECT_FALSE(counters.cpuQuery);
    EXPECT_EQ(counters.cpuTotalCounter, nullptr);
    EXPECT_EQ(counters.cpuCoreCounter, nullptr);
    EXPECT_THAT(debugLines, ElementsAre(L"kestrane: sin contador % Processor Utility; CPU con GetSystemTimes\n"));
    ASSERT_GE(fakePdh.calls.size(), 4u);
    EXPECT_EQ(fakePdh.calls[2], L"close 1");  // at once, without adding the other counter
    EXPECT_TRUE(counters.diskReady);
}

TEST_F(PdhCountersTest, WithoutTheCoreCounterTheMachineFigureStays) {
    fakePdh.missing = {cpu_paths::Cores};
    OpenPdhCounters(counters);
    EXPECT_EQ(counters.cpuQuery.Get(), HandleOf(1));
    EXPECT_NE(counters.cpuTotalCounter, nullptr);
    EXPECT_EQ(counters.cpuCoreCounter, nullptr);
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(PdhCountersTest, WithoutADiskQueryThereIsNoDisk) {
    fakePdh.refusedQueries = {2};
    OpenPdhCounters(counters);
    EXPECT_TRUE(counters.cpuQuery);
    EXPECT_FALSE(counters.diskQuery);
    EXPECT_FALSE(counters.diskReady);
    EXPECT_THAT(debugLines, ElementsAre(L"kestrane: PdhOpenQuery ha fallado; disco sin datos\n"));
    EXPECT_EQ(fakePdh.calls.back(), L"open");
}

TEST_F(PdhCountersTest, OneMissingDiskCounterIsAllOfThem) {
    const std::vector<const wchar_t*> paths{Idle, ReadTime, WriteTime, ReadBytes, WriteBytes};
    for (std::size_t i = 0; i < paths.size(); ++i) {
        SCOPED_TRACE(i);
        fakePdh = FakePdh();
        debugLines.clear();
        fakePdh.missing = {paths[i]};
        PdhCounters opened;
        OpenPdhCounters(opened);
        EXPECT_FALSE(opened.diskReady);
        EXPECT_FALSE(opened.diskQuery);
        EXPECT_EQ(opened.diskIdleCounter, nullptr);
        EXPECT_TRUE(opened.cpuQuery);
        EXPECT_THAT(debugLines, ElementsAre(L"kestrane: no se pudieron anadir los contadores de disco\n"));
        ASSERT_EQ(fakePdh.calls.size(), 4 + 1 + (i + 1) + 1);  // stops at the first failure
        EXPECT_EQ(fakePdh.calls.back(), L"close 2");
    }
}

TEST_F(PdhCountersTest, EachOpenQueryClosesOnceWithItsOwner) {
    {
        PdhCounters opened;
        OpenPdhCounters(opened);
        fakePdh.calls.clear();
        const PdhCounters taken = std::move(opened);
        EXPECT_THAT(fakePdh.calls, IsEmpty());
    }
    EXPECT_THAT(fakePdh.calls, testing::UnorderedElementsAre(L"close 1", L"close 2"));
    fakePdh.calls.clear();
    { const PdhCounters never; }
    EXPECT_THAT(fakePdh.calls, IsEmpty());
}

class ReadCounterArrayTest : public PdhCountersTest {
  protected:
    ReadCounterArrayTest() {
        fakePdh.added = {cpu_paths::Cores};
        values = {{L"before", 1}};
    }

    bool Read() { return ReadCounterArray(HandleOf(1), values); }
    FakeCounter& Counter() { return fakePdh.counters[cpu_paths::Cores]; }
    std::vector<std::wstring> Names() const {
        std::vector<std::wstring> names;
        for (const CounterValue& value : values)
            names.push_back(value.name);
        return names;
    }

    std::vector<CounterValue> values;
};

TEST_F(ReadCounterArrayTest, GivesTheInstancesInTheirOrder) {
    Counter().instances = {{L"0,1", 12.5}, {L"0,0", 137.2}, {L"_Total", -3}, {L"", 4}};
    ASSERT_TRUE(Read());
    EXPECT_THAT(Names(), ElementsAre(L"0,1", L"0,0", L"_Total", L""));
    EXPECT_EQ(values[0].value, 12.5);
    EXPECT_EQ(values[1].value, 137.2);
    EXPECT_EQ(values[2].value, -3);
    EXPECT_THAT(fakePdh.formats, ElementsAre(0x8200));
    EXPECT_THAT(fakePdh.calls,
                ElementsAre(std::wstring(L"size ") + cpu_paths::Cores, std::wstring(L"array ") + cpu_paths::Cores));
}

TEST_F(ReadCounterArrayTest, LeavesOutBadStatusAlone) {
    Counter().instances = {{L"new", 1, PDH_CSTATUS_NEW_DATA},
                           {L"two", 2, 2},
                           {L"gone", 3, PDH_CSTATUS_NO_INSTANCE},
                           {L"bad", 4, PDH_INVALID_DATA},
                           {L"valid", 5, PDH_CSTATUS_VALID_DATA}};
    ASSERT_TRUE(Read());
    EXPECT_THAT(Names(), ElementsAre(L"new", L"valid"));
}

TEST_F(ReadCounterArrayTest, NothingToReadIsASuccess) {
    ASSERT_TRUE(Read());
    EXPECT_THAT(values, IsEmpty());
}

TEST_F(ReadCounterArrayTest, AFailureLeavesTheValues) {
    for (const DWORD sizeStatus : {DWORD{ERROR_SUCCESS}, PDH_INVALID_DATA, PDH_NO_DATA}) {
        fakePdh.calls.clear();
        Counter().instances = {{L"0,0", 1}};
        Counter().sizeStatus = static_cast<PDH_STATUS>(sizeStatus);
        EXPECT_FALSE(Read()) << sizeStatus;
        EXPECT_THAT(Names(), ElementsAre(L"before"));
        EXPECT_EQ(fakePdh.calls.size(), 1u);
    }
    Counter().sizeStatus = static_cast<PDH_STATUS>(PDH_MORE_DATA);
    Counter().arrayStatus = static_cast<PDH_STATUS>(PDH_INVALID_DATA);
    EXPECT_FALSE(Read());
    EXPECT_THAT(Names(), ElementsAre(L"before"));
}

TEST_F(ReadCounterArrayTest, AnArrayThatGrowsBetweenTheCallsFails) {
    Counter().instances = {{L"0,0", 1}};
    Counter().array = [grown = std::vector<FakeInstance>{{L"0,0", 1}, {L"0,1", 2}}](DWORD* bytes, DWORD*, auto* items) {
        const DWORD offered = *bytes;
        *bytes = AnswerBytes(grown);
        if (items == nullptr) *bytes = AnswerBytes({grown[0]});
        EXPECT_TRUE(items == nullptr || offered == AnswerBytes({grown[0]}));
        return static_cast<PDH_STATUS>(PDH_MORE_DATA);
    };
    EXPECT_FALSE(Read());
    EXPECT_THAT(Names(), ElementsAre(L"before"));
}

/// Answers with size `bytes` and with the items that `fill` writes; `fill` returns their count.
template <typename Fill>
auto RawAnswer(DWORD size, Fill fill) {
    return [size, fill](DWORD* bytes, DWORD* count, PDH_FMT_COUNTERVALUE_ITEM_W* items) {
        *bytes = size;
        if (items == nullptr) return static_cast<PDH_STATUS>(PDH_MORE_DATA);
        *count = fill(items);
        return PDH_STATUS{ERROR_SUCCESS};
    };
}

TEST_F(ReadCounterArrayTest, AnItemCountBeyondTheBufferIsCutToIt) {
    const std::vector<FakeInstance> two{{L"0,0", 1}, {L"0,1", 2}};
    for (const DWORD claimed : {DWORD{3}, DWORD{1000}, DWORD{0xFFFFFFFF}}) {
        Counter().array = RawAnswer(AnswerBytes(two), [&](auto* items) {
            WriteAnswer(two, items);
            return claimed;
        });
        ASSERT_TRUE(Read()) << claimed;
        ASSERT_EQ(values.size(), 2u) << claimed;  // the names' bytes are too few for a third item
        EXPECT_EQ(values[1].name, L"0,1");
    }
}

TEST_F(ReadCounterArrayTest, AnItemThatIsCutInTheMiddleIsNotRead) {
    constexpr DWORD Size = sizeof(PDH_FMT_COUNTERVALUE_ITEM_W) + offsetof(PDH_FMT_COUNTERVALUE_ITEM_W, FmtValue) + 8;
    Counter().array = RawAnswer(Size, [](PDH_FMT_COUNTERVALUE_ITEM_W* items) {
        auto* text = reinterpret_cast<wchar_t*>(reinterpret_cast<std::byte*>(items) + Size) - 2;
        std::copy_n(L"a", 2, text);
        items[0].szName = text;
        items[1].szName = text;  // its name and status are within the size, its value is not
        return DWORD{2};
    });
    ASSERT_TRUE(Read());
    EXPECT_THAT(Names(), ElementsAre(L"a"));
}

TEST_F(ReadCounterArrayTest, ASizeWithoutRoomForAnItemGivesNone) {
    for (DWORD size = 0; size < sizeof(PDH_FMT_COUNTERVALUE_ITEM_W); ++size) {
        Counter().array = RawAnswer(size, [](auto*) { return DWORD{1}; });
        ASSERT_TRUE(Read()) << size;
        EXPECT_THAT(values, IsEmpty()) << size;
    }
}

TEST_F(ReadCounterArrayTest, NamesOutsideTheBufferAreNotFollowed) {
    constexpr DWORD Size = 4 * sizeof(PDH_FMT_COUNTERVALUE_ITEM_W);
    Counter().array = RawAnswer(Size, [](PDH_FMT_COUNTERVALUE_ITEM_W* items) {
        auto* text = reinterpret_cast<wchar_t*>(items + 3);
        std::copy_n(L"in", 3, text);
        items[0] = {nullptr, {}};
        items[1] = {reinterpret_cast<wchar_t*>(items + 4), {}};  // just past the end
        items[2] = {text, {}};
        return DWORD{3};
    });
    ASSERT_TRUE(Read());
    EXPECT_THAT(Names(), ElementsAre(L"in"));
}

TEST_F(ReadCounterArrayTest, ANameWithoutAnEndStopsWithTheBuffer) {
    for (const DWORD slack : {DWORD{0}, DWORD{1}}) {  // an odd byte at the end is not a character
        Counter().array = RawAnswer(sizeof(PDH_FMT_COUNTERVALUE_ITEM_W) + 6 + slack, [](auto* items) {
            auto* text = reinterpret_cast<wchar_t*>(items + 1);
            std::fill_n(text, 3, L'x');
            items[0] = {text, {}};
            return DWORD{1};
        });
        ASSERT_TRUE(Read());
        EXPECT_THAT(Names(), ElementsAre(L"xxx"));
    }
}

TEST_F(ReadCounterArrayTest, ANameAtAnOddAddressIsNone) {
    Counter().array = RawAnswer(sizeof(PDH_FMT_COUNTERVALUE_ITEM_W) + 8, [](auto* items) {
        items[0] = {reinterpret_cast<wchar_t*>(reinterpret_cast<std::uintptr_t>(items + 1) + 1), {}};
        return DWORD{1};
    });
    ASSERT_TRUE(Read());
    EXPECT_THAT(values, IsEmpty());
}

TEST_F(ReadCounterArrayTest, ThousandsOfInstancesAreRead) {
    for (int i = 0; i < 5000; ++i)
        Counter().instances.push_back({std::to_wstring(i), i / 2.0});
    ASSERT_TRUE(Read());
    ASSERT_EQ(values.size(), 5000u);
    EXPECT_EQ(values[4999].name, L"4999");
    EXPECT_EQ(values[4999].value, 2499.5);
}

}  // namespace
}  // namespace kestrane
