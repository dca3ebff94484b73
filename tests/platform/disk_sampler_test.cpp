#include "metrics/samplers_win32.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "metrics/disk_rules.h"
#include "support/fake_pdh.h"
#include "support/recorded_log.h"

namespace kestrane {
namespace {

using namespace disk_paths;
using testing::IsEmpty;

constexpr auto Bad = static_cast<PDH_STATUS>(PDH_INVALID_DATA);

class DiskSamplerTest : public testing::Test {
  protected:
    DiskSamplerTest() {
        debugLines.clear();
        Reset();
    }
    ~DiskSamplerTest() override {
        EXPECT_THAT(debugLines, IsEmpty());  // sampling never logs
        for (const DWORD format : fakePdh.formats)
            EXPECT_EQ(format, 0x8200u);
    }

    /// Two disks, open counters, and no sample yet.
    void Reset() {
        fakePdh = FakePdh();
        fakePdh.counters[Idle].instances = {{L"0 C:", 40}, {L"1 D:", 80}, {L"_Total", 60}};
        fakePdh.counters[ReadTime].instances = {{L"0 C:", 300}, {L"1 D:", 0}, {L"_Total", 150}};
        fakePdh.counters[WriteTime].instances = {{L"_Total", 100}, {L"1 D:", 50}, {L"0 C:", 100}};
        fakePdh.counters[ReadBytes].instances = {{L"0 C:", 1000}, {L"1 D:", 0}, {L"_Total", 1000}};
        fakePdh.counters[WriteBytes].instances = {{L"0 C:", 500}, {L"1 D:", 2000}, {L"_Total", 2500}};
        counters = PdhCounters();
        sample = MetricSample();
        OpenPdhCounters(counters);
        fakePdh.calls.clear();
    }

    PdhCounters counters;
    MetricSample sample;
};

TEST_F(DiskSamplerTest, ReadsTheFiveCountersInOrder) {
    EXPECT_FALSE(SampleDisks(counters, sample));  // the first call only primes, but its figures are there
    EXPECT_TRUE(sample.diskValid);
    EXPECT_EQ(sample.disks.size(), 2u);
    fakePdh.calls.clear();
    EXPECT_TRUE(SampleDisks(counters, sample));
    std::vector<std::wstring> expected{L"collect 2"};
    for (const wchar_t* path : {Idle, ReadTime, WriteTime, ReadBytes, WriteBytes}) {
        expected.push_back(std::wstring(L"size ") + path);
        expected.push_back(std::wstring(L"array ") + path);
    }
    EXPECT_EQ(fakePdh.calls, expected);
}

TEST_F(DiskSamplerTest, FillsTheSample) {
    SampleDisks(counters, sample);
    EXPECT_EQ(sample.diskReadPercent, 45);
    EXPECT_EQ(sample.busiestReadDisk, L"0 C:");
    EXPECT_EQ(sample.diskWritePercent, 20);
    EXPECT_EQ(sample.busiestWriteDisk, L"1 D:");
    EXPECT_EQ(sample.diskInstanceCount, 2u);
    ASSERT_EQ(sample.disks.size(), 2u);  // "_Total" is not a disk
    EXPECT_EQ(sample.disks[0].number, 0);
    EXPECT_EQ(sample.disks[0].readBytes, 1000);
    EXPECT_EQ(sample.disks[0].writeBytes, 500);
    EXPECT_EQ(sample.disks[0].readPercent, 45);
    EXPECT_EQ(sample.disks[0].writePercent, 15);
    EXPECT_EQ(sample.disks[1].name, L"1 D:");
    EXPECT_EQ(sample.disks[1].readPercent, 0);
    EXPECT_EQ(sample.disks[1].writePercent, 20);
}

TEST_F(DiskSamplerTest, TheIconSeesADiskThatTheUserLeftOut) {
    SampleDisks(counters, sample);
    const DiskTotals totals = SumSelectedDisks(sample.disks, {1}, {0, 1});
    EXPECT_EQ(totals.diskCount, 1);
    EXPECT_EQ(totals.readBytes, 0);
    EXPECT_EQ(totals.writeBytes, 2000);
    EXPECT_EQ(totals.readPercent, 0);
    EXPECT_EQ(sample.diskReadPercent, 45);
}

TEST_F(DiskSamplerTest, WithoutCountersNothingIsEvenAsked) {
    for (const bool noQuery : {true, false}) {
        fakePdh = FakePdh();
        if (noQuery) fakePdh.refusedQueries = {2};
        if (!noQuery) fakePdh.missing = {WriteBytes};
        PdhCounters opened;
        OpenPdhCounters(opened);
        EXPECT_EQ(debugLines.size(), 1u);
        debugLines.clear();
        fakePdh.calls.clear();
        for (int tick = 0; tick < 3; ++tick)
            EXPECT_FALSE(SampleDisks(opened, sample));
        EXPECT_FALSE(sample.diskValid);
        EXPECT_FALSE(opened.diskPrimed);
        EXPECT_THAT(fakePdh.calls, IsEmpty());
    }
}

TEST_F(DiskSamplerTest, AFailureDropsTheTickAndTheNextGoodOneCounts) {
    struct Row {
        const char* what;
        void (*breakIt)();
        std::uint32_t instanceCount;  // the fields that are not cleared
    };
    for (const Row& row : std::vector<Row>{
             {"the collection", [] { fakePdh.collectStatus = Bad; }, 2},
             {"idle size", [] { fakePdh.counters[Idle].sizeStatus = Bad; }, 2},
             {"idle array", [] { fakePdh.counters[Idle].arrayStatus = Bad; }, 2},
             {"read time", [] { fakePdh.counters[ReadTime].arrayStatus = Bad; }, 2},
             {"write time", [] { fakePdh.counters[WriteTime].arrayStatus = Bad; }, 2},
             {"only the total",
              [] {
                  fakePdh.counters[Idle].instances = {{L"_Total", 60}};
              },
              0},
             {"no instances", [] { fakePdh.counters[Idle].instances.clear(); }, 0},
         }) {
        SCOPED_TRACE(row.what);
        Reset();
        SampleDisks(counters, sample);
        const auto good = fakePdh.counters;
        row.breakIt();
        EXPECT_FALSE(SampleDisks(counters, sample));
        EXPECT_FALSE(sample.diskValid);
        EXPECT_THAT(sample.disks, IsEmpty());
        EXPECT_EQ(sample.diskInstanceCount, row.instanceCount);
        EXPECT_EQ(sample.busiestReadDisk, row.instanceCount > 0 ? L"0 C:" : L"");
        fakePdh.counters = good;
        fakePdh.collectStatus = ERROR_SUCCESS;
        EXPECT_TRUE(SampleDisks(counters, sample));
        EXPECT_EQ(sample.disks.size(), 2u);
    }
}

TEST_F(DiskSamplerTest, AFailedCollectionDoesNotPrimeButAFailedArrayDoes) {
    fakePdh.collectStatus = Bad;
    EXPECT_FALSE(SampleDisks(counters, sample));
    EXPECT_FALSE(counters.diskPrimed);
    fakePdh.collectStatus = ERROR_SUCCESS;
    fakePdh.counters[Idle].arrayStatus = Bad;
    EXPECT_FALSE(SampleDisks(counters, sample));
    EXPECT_TRUE(counters.diskPrimed);
    fakePdh.counters[Idle].arrayStatus = ERROR_SUCCESS;
    EXPECT_TRUE(SampleDisks(counters, sample));
}

TEST_F(DiskSamplerTest, WithoutBytesTheTickCountsAtSpeedZero) {
    SampleDisks(counters, sample);
    fakePdh.counters[ReadBytes].arrayStatus = Bad;
    EXPECT_TRUE(SampleDisks(counters, sample));
    EXPECT_EQ(sample.disks[0].readBytes, 0);
    EXPECT_EQ(sample.disks[0].writeBytes, 500);
    fakePdh.counters[WriteBytes].sizeStatus = Bad;
    EXPECT_TRUE(SampleDisks(counters, sample));
    EXPECT_EQ(sample.disks[0].writeBytes, 0);
    EXPECT_EQ(sample.disks[0].readPercent, 45);
}

TEST_F(DiskSamplerTest, ABadInstanceIsMissingFromItsArrayAlone) {
    SampleDisks(counters, sample);
    fakePdh.counters[ReadTime].instances[0].status = PDH_CSTATUS_INVALID_DATA;
    EXPECT_TRUE(SampleDisks(counters, sample));
    EXPECT_EQ(sample.disks[0].readPercent, 0);
    EXPECT_EQ(sample.disks[0].writePercent, 60);
    fakePdh.counters[Idle].instances[0].status = PDH_CSTATUS_INVALID_DATA;
    EXPECT_TRUE(SampleDisks(counters, sample));
    ASSERT_EQ(sample.disks.size(), 1u);
    EXPECT_EQ(sample.disks[0].number, 1);
}

TEST_F(DiskSamplerTest, DisksComeAndGo) {
    SampleDisks(counters, sample);
    fakePdh.counters[Idle].instances = {{L"5 Z:", 0}};
    EXPECT_TRUE(SampleDisks(counters, sample));
    ASSERT_EQ(sample.disks.size(), 1u);
    EXPECT_EQ(sample.disks[0].number, 5);
    EXPECT_EQ(sample.disks[0].readPercent, 100);
    EXPECT_EQ(sample.disks[0].readBytes, 0);
    EXPECT_EQ(sample.busiestReadDisk, L"5 Z:");
}

TEST_F(DiskSamplerTest, BrokenFiguresStayWithinBounds) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    SampleDisks(counters, sample);
    fakePdh.counters[Idle].instances[0].value = nan;
    fakePdh.counters[Idle].instances[1].value = -1e300;
    fakePdh.counters[ReadTime].instances[1].value = 1e300;
    fakePdh.counters[ReadBytes].instances[0].value = nan;
    fakePdh.counters[WriteBytes].instances[0].value = -1;
    EXPECT_TRUE(SampleDisks(counters, sample));
    EXPECT_EQ(sample.disks[0].readPercent, 0);
    EXPECT_EQ(sample.disks[0].readBytes, 0);
    EXPECT_EQ(sample.disks[0].writeBytes, 0);
    EXPECT_EQ(sample.disks[1].readPercent, 100);
    EXPECT_EQ(sample.disks[1].writePercent, 0);
    EXPECT_EQ(sample.busiestReadDisk, L"1 D:");
}

}  // namespace
}  // namespace kestrane
