#include "hardware/hardware_facts_win32.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "support/smbios_bytes.h"

namespace kestrane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint64_t Gibibyte = std::uint64_t{1} << 30;

struct FakeMachine {
    Bytes rawData;
    UINT firstAnswer = 0;   // 0: the size of the data
    UINT secondAnswer = 0;  // 0: the size of the data
    bool secondCallWorks = true;
    bool installedWorks = true;
    ULONGLONG installedKilobytes = 16 << 20;
    bool statusWorks = true;
    DWORDLONG usableBytes = 15 * Gibibyte;
    std::vector<std::string> calls;
};
FakeMachine fakeMachine;

UINT WINAPI FakeGetSystemFirmwareTable(DWORD provider, DWORD table, void* buffer, DWORD bytes) {
    EXPECT_EQ(provider, DWORD{'R'} << 24 | DWORD{'S'} << 16 | DWORD{'M'} << 8 | DWORD{'B'});
    EXPECT_EQ(table, 0U);
    const auto size = static_cast<UINT>(fakeMachine.rawData.size());
    if (buffer == nullptr) {
        fakeMachine.calls.emplace_back("size");
        EXPECT_EQ(bytes, 0U);
        return fakeMachine.firstAnswer != 0 ? fakeMachine.firstAnswer : size;
    }
    fakeMachine.calls.emplace_back("data");
    EXPECT_GE(_msize(buffer), bytes);
    std::memcpy(buffer, fakeMachine.rawData.data(), std::min<std::size_t>(bytes, size));  // a failing call may scribble
    if (!fakeMachine.secondCallWorks) return 0;
    return fakeMachine.secondAnswer != 0 ? fakeMachine.secondAnswer : size;
}

BOOL WINAPI FakeGetPhysicallyInstalledSystemMemory(ULONGLONG* kilobytes) {
    fakeMachine.calls.emplace_back("installed");
    *kilobytes = fakeMachine.installedKilobytes;
    return fakeMachine.installedWorks ? TRUE : FALSE;
}

BOOL WINAPI FakeGlobalMemoryStatusEx(MEMORYSTATUSEX* status) {
    fakeMachine.calls.emplace_back("status");
    EXPECT_EQ(status->dwLength, 64U);
    status->ullTotalPhys = fakeMachine.usableBytes;
    return fakeMachine.statusWorks ? TRUE : FALSE;
}

class MemoryFactsTest : public testing::Test {
  protected:
    MemoryFactsTest() {
        fakeMachine = FakeMachine();
        const Bytes table = JoinBytes({SmbiosArray(0x02000000), SmbiosDevice().Build(), SmbiosDevice().Build(),
                                       WithStrings(SmbiosStructure(127, 4), {})});
        Put(fakeMachine.rawData, 0x00030300, 4);
        Put(fakeMachine.rawData, table.size(), 4);
        fakeMachine.rawData.insert(fakeMachine.rawData.end(), table.begin(), table.end());
    }
};

TEST_F(MemoryFactsTest, ReadsEverything) {
    const MemoryFacts facts = ReadMemoryFacts();
    EXPECT_TRUE(facts.hasSlots);
    ASSERT_EQ(facts.slots.size(), 2U);
    EXPECT_EQ(facts.slots[1].sizeMb, 16384U);
    EXPECT_EQ(facts.slots[1].partNumber, L"X432-16");
    EXPECT_EQ(facts.maxCapacityGb, 32U);
    EXPECT_EQ(facts.totalBytes, 16 * Gibibyte);
}

TEST_F(MemoryFactsTest, TheInstalledSizeWins) {
    struct Row {
        bool installedWorks;
        bool statusWorks;
        std::uint64_t totalBytes;
    };
    for (const Row& row : {Row{true, true, 16 * Gibibyte}, Row{true, false, 16 * Gibibyte},
                           Row{false, true, 15 * Gibibyte}, Row{false, false, 0}}) {
        fakeMachine.installedWorks = row.installedWorks;
        fakeMachine.statusWorks = row.statusWorks;
        const MemoryFacts facts = ReadMemoryFacts();
        EXPECT_EQ(facts.totalBytes, row.totalBytes);
        EXPECT_EQ(facts.slots.size(), 2U);
    }
}

TEST_F(MemoryFactsTest, WithoutMoreThanAHeaderNothingMoreIsAsked) {
    for (const UINT size : {UINT{0}, UINT{1}, UINT{8}}) {
        fakeMachine.calls.clear();
        fakeMachine.rawData.resize(size);
        const MemoryFacts facts = ReadMemoryFacts();
        EXPECT_FALSE(facts.hasSlots);
        EXPECT_THAT(facts.slots, IsEmpty());
        EXPECT_EQ(facts.maxCapacityGb, 0U);
        EXPECT_EQ(facts.totalBytes, 16 * Gibibyte);
        EXPECT_THAT(fakeMachine.calls, ElementsAre("size", "installed"));
    }
}

TEST_F(MemoryFactsTest, ASizeThatChangesBetweenTheCallsGivesNoSlots) {
    const auto size = static_cast<UINT>(fakeMachine.rawData.size());
    struct Row {
        const char* what;
        UINT firstAnswer;
        UINT secondAnswer;
        bool secondCallWorks;
    };
    for (const Row& row : {
             Row{"a failure", size, size, false},
             Row{"less than told", size, size - 1, true},
             Row{"a header alone", size, 8, true},
             Row{"more than told", size, size + 1, true},
             Row{"it has grown: the buffer is too small", size - 1, size, true},
             Row{"it has shrunk: the buffer is too large", size + 100, size, true},
             Row{"the greatest", size, 0xFFFFFFFF, true},
         }) {
        fakeMachine.calls.clear();
        fakeMachine.firstAnswer = row.firstAnswer;
        fakeMachine.secondAnswer = row.secondAnswer;
        fakeMachine.secondCallWorks = row.secondCallWorks;
        const MemoryFacts facts = ReadMemoryFacts();
        EXPECT_FALSE(facts.hasSlots) << row.what;
        EXPECT_THAT(facts.slots, IsEmpty()) << row.what;
        EXPECT_EQ(facts.maxCapacityGb, 0U) << row.what;
        EXPECT_EQ(facts.totalBytes, 16 * Gibibyte) << row.what;
        EXPECT_THAT(fakeMachine.calls, ElementsAre("size", "data", "installed")) << row.what;
    }
}

TEST_F(MemoryFactsTest, TheHeaderLimitsTheTable) {
    const std::size_t first = SmbiosArray(0).size() + SmbiosDevice().Build().size();
    PutAt(fakeMachine.rawData, 4, first, 4);
    EXPECT_EQ(ReadMemoryFacts().slots.size(), 1U);
    PutAt(fakeMachine.rawData, 4, 0xFFFFFFFF, 4);
    EXPECT_EQ(ReadMemoryFacts().slots.size(), 2U);
}

}  // namespace
}  // namespace kestrane

extern "C" {
decltype(&GetSystemFirmwareTable) __imp_GetSystemFirmwareTable = &kestrane::FakeGetSystemFirmwareTable;
decltype(&GetPhysicallyInstalledSystemMemory) __imp_GetPhysicallyInstalledSystemMemory =
    &kestrane::FakeGetPhysicallyInstalledSystemMemory;
decltype(&GlobalMemoryStatusEx) __imp_GlobalMemoryStatusEx = &kestrane::FakeGlobalMemoryStatusEx;
}
