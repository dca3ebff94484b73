#include "metrics/samplers_win32.h"

#include <windows.h>

#include <gtest/gtest.h>

#include "support/recorded_log.h"

namespace kestrane {
namespace {

struct FakeMemory {
    bool works = true;
    DWORD load = 0;
    DWORDLONG total = 0;
    DWORDLONG available = 0;
};
FakeMemory fakeMemory;

BOOL WINAPI FakeGlobalMemoryStatusEx(MEMORYSTATUSEX* status) {
    EXPECT_EQ(status->dwLength, 64u);
    EXPECT_EQ(status->ullTotalVirtual, 0u);
    // A failing call may scribble.
    status->dwMemoryLoad = fakeMemory.load;
    status->ullTotalPhys = fakeMemory.total;
    status->ullAvailPhys = fakeMemory.available;
    return fakeMemory.works ? TRUE : FALSE;
}

TEST(MemorySampler, TakesTheThreeFigures) {
    MetricSample sample;
    fakeMemory = {true, 37, 0x7'FFFF'F000, 0x5'0000'0123};
    SampleMemory(sample);
    EXPECT_EQ(sample.memoryPercent, 37u);
    EXPECT_EQ(sample.memoryTotalBytes, 0x7'FFFF'F000u);
    EXPECT_EQ(sample.memoryAvailableBytes, 0x5'0000'0123u);
}

TEST(MemorySampler, CapsThePercentage) {
    struct Row {
        DWORD load;
        std::uint32_t percent;
    };
    for (const Row& row : {Row{0, 0}, Row{1, 1}, Row{99, 99}, Row{100, 100}, Row{101, 100}, Row{0xFFFFFFFF, 100}}) {
        MetricSample sample;
        fakeMemory = {true, row.load, 1, 1};
        SampleMemory(sample);
        EXPECT_EQ(sample.memoryPercent, row.percent) << row.load;
    }
}

TEST(MemorySampler, AFailureLeavesTheLastFiguresAndSaysNothing) {
    MetricSample sample;
    fakeMemory = {false, 55, 66, 77};
    SampleMemory(sample);
    EXPECT_EQ(sample.memoryTotalBytes, 0u);
    fakeMemory.works = true;
    SampleMemory(sample);
    fakeMemory = {false, 1, 2, 3};
    SampleMemory(sample);
    EXPECT_EQ(sample.memoryPercent, 55u);
    EXPECT_EQ(sample.memoryTotalBytes, 66u);
    EXPECT_EQ(sample.memoryAvailableBytes, 77u);
    EXPECT_TRUE(debugLines.empty());
}

}  // namespace
}  // namespace kestrane

extern "C" {
decltype(&GlobalMemoryStatusEx) __imp_GlobalMemoryStatusEx = &kestrane::FakeGlobalMemoryStatusEx;
}
