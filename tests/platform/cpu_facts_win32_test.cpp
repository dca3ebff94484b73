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

namespace kestrane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct FakeProcessor {
    LSTATUS nameStatus = ERROR_SUCCESS;
    std::wstring name = L"Some Processor";
    LSTATUS mhzStatus = ERROR_SUCCESS;
    DWORD mhz = 3200;
    std::vector<std::uint8_t> records;
    DWORD reportedSize = 0;  // 0: that of the records
    bool secondCallWorks = true;
    DWORD returnedSize = 0;  // by the second call; 0: that of the records
    std::vector<std::string> calls;
};
FakeProcessor fakeProcessor;

LSTATUS WINAPI FakeRegGetValueW(HKEY root, const wchar_t* key, const wchar_t* value, DWORD flags, DWORD*, void* data,
                                DWORD* bytes) {
    EXPECT_EQ(root, HKEY_LOCAL_MACHINE);
    EXPECT_STREQ(key, L"HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0");
    if (std::wstring(value) == L"~MHz") {
        fakeProcessor.calls.emplace_back("mhz");
        EXPECT_EQ(flags, DWORD{RRF_RT_REG_DWORD});
        EXPECT_EQ(*bytes, 4u);
        std::memcpy(data, &fakeProcessor.mhz, 4);
        return fakeProcessor.mhzStatus;
    }
    fakeProcessor.calls.emplace_back("name");
    EXPECT_STREQ(value, L"ProcessorNameString");
    EXPECT_EQ(flags, DWORD{RRF_RT_REG_SZ});
    EXPECT_EQ(*bytes, 510u);
    const std::size_t characters = std::min<std::size_t>(fakeProcessor.name.size(), *bytes / sizeof(wchar_t));
    std::memcpy(data, fakeProcessor.name.data(), characters * sizeof(wchar_t));
    return fakeProcessor.nameStatus;
}

BOOL WINAPI FakeGetLogicalProcessorInformationEx(LOGICAL_PROCESSOR_RELATIONSHIP relationship,
                                                 SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX* buffer, DWORD* bytes) {
    EXPECT_EQ(static_cast<int>(relationship), 65535);
    const auto size = static_cast<DWORD>(fakeProcessor.records.size());
    if (buffer == nullptr) {
        fakeProcessor.calls.emplace_back("size");
        *bytes = fakeProcessor.reportedSize != 0 ? fakeProcessor.reportedSize : size;
        return FALSE;
    }
    fakeProcessor.calls.emplace_back("records");
    EXPECT_GE(_msize(buffer), *bytes);
    std::memcpy(buffer, fakeProcessor.records.data(), std::min(*bytes, size));
    *bytes = fakeProcessor.returnedSize != 0 ? fakeProcessor.returnedSize : size;
    return fakeProcessor.secondCallWorks ? TRUE : FALSE;
}

/// A record of a core with one group mask.
std::vector<std::uint8_t> Core(std::uint8_t efficiencyClass, std::uint8_t group, std::uint8_t mask) {
    std::vector<std::uint8_t> record(48);
    record[4] = 48;
    record[9] = efficiencyClass;
    record[30] = 1;
    record[32] = mask;
    record[40] = group;
    return record;
}

class CpuFactsTest : public testing::Test {
  protected:
    CpuFactsTest() {
        fakeProcessor = FakeProcessor();
        Add(Core(1, 0, 0b11));
        Add(Core(0, 1, 0b1000));
        std::vector<std::uint8_t> cache(52);
        cache[0] = 2;
        cache[4] = 52;
        cache[8] = 3;
        cache[15] = 2;  // 32 MiB
        Add(cache);
        Add(cache);
    }

    static void Add(const std::vector<std::uint8_t>& record) {
        fakeProcessor.records.insert(fakeProcessor.records.end(), record.begin(), record.end());
    }
};

/// The parser's offsets, checked against the headers where these have the field.
TEST(Layout, IsThatOfTheSystem) {
    EXPECT_EQ(offsetof(SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX, Size), 4u);
    EXPECT_EQ(offsetof(SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX, Processor), 8u);
    EXPECT_EQ(8 + offsetof(PROCESSOR_RELATIONSHIP, GroupCount), 30u);
    EXPECT_EQ(8 + offsetof(PROCESSOR_RELATIONSHIP, GroupMask), 32u);
    EXPECT_EQ(sizeof(GROUP_AFFINITY), 16u);
    EXPECT_EQ(offsetof(GROUP_AFFINITY, Group), 8u);
    EXPECT_EQ(8 + offsetof(CACHE_RELATIONSHIP, Level), 8u);
    EXPECT_EQ(8 + offsetof(CACHE_RELATIONSHIP, CacheSize), 12u);
}

TEST_F(CpuFactsTest, ReadsEverything) {
    const CpuFacts facts = ReadCpuFacts();
    EXPECT_THAT(fakeProcessor.calls, ElementsAre("name", "mhz", "size", "records"));
    EXPECT_EQ(facts.name, L"Some Processor");
    EXPECT_EQ(facts.baseMhz, 3200u);
    EXPECT_EQ(facts.coreCount, 2);
    EXPECT_EQ(facts.performanceCores, 1);
    EXPECT_EQ(facts.efficiencyCores, 1);
    EXPECT_EQ(facts.threadCount, 3);
    EXPECT_EQ(facts.l3Megabytes, 32u);
    ASSERT_EQ(facts.isPerformanceThread.size(), 68u);
    EXPECT_EQ(facts.isPerformanceThread[0], 1);
    EXPECT_EQ(facts.isPerformanceThread[67], 0);
}

TEST_F(CpuFactsTest, TheNameIsTrimmed) {
    struct Row {
        std::wstring stored;
        std::wstring name;
    };
    for (const Row& row : std::vector<Row>{
             {L"  \t Some Processor @ 3.20GHz \t ", L"Some Processor @ 3.20GHz"},
             {L"   ", L""},
             {L"", L""},
             {L"\r\nX\n", L"\r\nX\n"},                            // only spaces and tabs go
             {std::wstring(300, L'x'), std::wstring(255, L'x')},  // no terminator in the part to be filled
         }) {
        fakeProcessor.name = row.stored;
        EXPECT_EQ(ReadCpuFacts().name, row.name);
    }
}

TEST_F(CpuFactsTest, EachRegistryValueFailsAlone) {
    fakeProcessor.nameStatus = ERROR_FILE_NOT_FOUND;
    EXPECT_EQ(ReadCpuFacts().name, L"");
    EXPECT_EQ(ReadCpuFacts().baseMhz, 3200u);
    fakeProcessor.nameStatus = ERROR_MORE_DATA;
    EXPECT_EQ(ReadCpuFacts().name, L"");
    fakeProcessor.nameStatus = ERROR_SUCCESS;
    fakeProcessor.mhzStatus = ERROR_UNSUPPORTED_TYPE;
    EXPECT_EQ(ReadCpuFacts().baseMhz, 0u);
    EXPECT_EQ(ReadCpuFacts().name, L"Some Processor");
    EXPECT_EQ(ReadCpuFacts().coreCount, 2);
}

TEST_F(CpuFactsTest, WithoutASizeNothingMoreIsAsked) {
    fakeProcessor.records.clear();
    const CpuFacts facts = ReadCpuFacts();
    EXPECT_THAT(fakeProcessor.calls, ElementsAre("name", "mhz", "size"));
    EXPECT_EQ(facts.name, L"Some Processor");
    EXPECT_EQ(facts.coreCount, 0);
}

TEST_F(CpuFactsTest, AFailedSecondCallLeavesTheCountsAtZero) {
    fakeProcessor.secondCallWorks = false;
    const CpuFacts facts = ReadCpuFacts();
    EXPECT_EQ(facts.name, L"Some Processor");
    EXPECT_EQ(facts.baseMhz, 3200u);
    EXPECT_EQ(facts.coreCount, 0);
    EXPECT_EQ(facts.performanceCores, 0);
    EXPECT_EQ(facts.threadCount, 0);
    EXPECT_EQ(facts.l3Megabytes, 0u);
    EXPECT_THAT(facts.isPerformanceThread, IsEmpty());
}

TEST_F(CpuFactsTest, OnlyWhatWasReturnedIsRead) {
    fakeProcessor.returnedSize = 48;
    EXPECT_EQ(ReadCpuFacts().coreCount, 1);
    fakeProcessor.returnedSize = 0xFFFFFFFF;  // more than the buffer
    EXPECT_EQ(ReadCpuFacts().coreCount, 2);
    fakeProcessor.returnedSize = 0;
    fakeProcessor.reportedSize = 48;  // the buffer is too small for the system's records
    EXPECT_EQ(ReadCpuFacts().coreCount, 1);
}

}  // namespace
}  // namespace kestrane

extern "C" {
decltype(&RegGetValueW) __imp_RegGetValueW = &kestrane::FakeRegGetValueW;
decltype(&GetLogicalProcessorInformationEx) __imp_GetLogicalProcessorInformationEx =
    &kestrane::FakeGetLogicalProcessorInformationEx;
}
