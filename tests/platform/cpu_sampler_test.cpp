#include "metrics/samplers_win32.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "support/fake_pdh.h"
#include "support/recorded_log.h"

namespace kestrane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The clock of GetSystemTimes. As there, kernel time includes idle time.
struct FakeTimes {
    bool works = true;
    std::uint64_t idle = 0;
    std::uint64_t kernel = 0;
    std::uint64_t user = 0;
};
FakeTimes fakeTimes;

FILETIME FileTime(std::uint64_t value) {
    return {static_cast<DWORD>(value), static_cast<DWORD>(value >> 32)};
}

class CpuSamplerTest : public testing::Test {
  protected:
    CpuSamplerTest() {
        fakePdh = FakePdh();
        fakeTimes = {true, 0x1'0000'0000, 0x2'0000'0000, 0x3'0000'0000};  // beyond 32 bits, as after minutes
        debugLines.clear();
        Total().instances = {{L"", 42.4}};
        Cores().instances = {{L"0,0", 30}, {L"0,1", 55.5}, {L"0,_Total", 42}, {L"_Total", 42}};
    }
    ~CpuSamplerTest() override {
        EXPECT_THAT(debugLines, IsEmpty());  // sampling never logs
        for (const DWORD format : fakePdh.formats)
            EXPECT_EQ(format, 0x8200u);
    }

    static FakeCounter& Total() { return fakePdh.counters[cpu_paths::Total]; }
    static FakeCounter& Cores() { return fakePdh.counters[cpu_paths::Cores]; }

    /// One tick later: 100 units of time, 75 of them busy.
    static void Pass() {
        fakeTimes.idle += 25;
        fakeTimes.kernel += 60;
        fakeTimes.user += 40;
    }

    /// Opens the counters, takes the first sample, passes one tick, and fills the sample with values to be replaced.
    void Prime() {
        OpenPdhCounters(counters);
        SampleCpu(counters, sample);
        Pass();
        fakePdh.calls.clear();
        sample.cpuPercent = 99;
        sample.corePercent = {1, 2, 3};
    }

    PdhCounters counters;
    MetricSample sample;
};

TEST_F(CpuSamplerTest, TheFirstCallDoesNotCountThoughItAnswers) {
    OpenPdhCounters(counters);
    EXPECT_FALSE(SampleCpu(counters, sample));
    EXPECT_EQ(sample.cpuPercent, 42);
    EXPECT_THAT(sample.corePercent, ElementsAre(30, 56));
    EXPECT_TRUE(SampleCpu(counters, sample));
}

TEST_F(CpuSamplerTest, OneCollectionServesBothCounters) {
    Prime();
    EXPECT_TRUE(SampleCpu(counters, sample));
    EXPECT_EQ(sample.cpuPercent, 42);
    EXPECT_THAT(sample.corePercent, ElementsAre(30, 56));
    EXPECT_THAT(fakePdh.calls,
                ElementsAre(L"collect 1", std::wstring(L"value ") + cpu_paths::Total,
                            std::wstring(L"size ") + cpu_paths::Cores, std::wstring(L"array ") + cpu_paths::Cores));
}

TEST_F(CpuSamplerTest, EachFailureHasItsOutcome) {
    struct Row {
        const char* what;
        void (*breakIt)(PdhCounters& counters);
        bool counts;
        std::int32_t percent;
        std::vector<std::int32_t> cores;
    };
    constexpr auto Bad = static_cast<PDH_STATUS>(PDH_INVALID_DATA);
    for (const Row& row : std::vector<Row>{
             {"nothing", [](PdhCounters&) {}, true, 42, {30, 56}},
             {"GetSystemTimes", [](PdhCounters&) { fakeTimes.works = false; }, false, 42, {30, 56}},
             {"no query", [](PdhCounters& c) { c.cpuQuery.Reset(); }, true, 75, {}},
             {"the collection", [](PdhCounters&) { fakePdh.collectStatus = Bad; }, true, 75, {}},
             {"the value", [](PdhCounters&) { Total().valueStatus = Bad; }, true, 75, {}},
             {"status 2", [](PdhCounters&) { Total().instances[0].status = 2; }, true, 75, {}},
             {"invalid data", [](PdhCounters&) { Total().instances[0].status = PDH_INVALID_DATA; }, true, 75, {}},
             {"no core counter", [](PdhCounters& c) { c.cpuCoreCounter = nullptr; }, true, 42, {}},
             {"the array's size", [](PdhCounters&) { Cores().sizeStatus = Bad; }, true, 42, {}},
             {"the array", [](PdhCounters&) { Cores().arrayStatus = Bad; }, true, 42, {}},
             {"no instances", [](PdhCounters&) { Cores().instances.clear(); }, true, 42, {}},
             {"everything",
              [](PdhCounters&) {
                  fakeTimes.works = false;
                  fakePdh.collectStatus = Bad;
              },
              false,
              0,
              {}},
         }) {
        SCOPED_TRACE(row.what);
        fakePdh = FakePdh();
        fakeTimes.works = true;
        Total().instances = {{L"", 42.4}};
        Cores().instances = {{L"0,0", 30}, {L"0,1", 55.5}};
        counters = PdhCounters();
        Prime();
        row.breakIt(counters);
        EXPECT_EQ(SampleCpu(counters, sample), row.counts);
        EXPECT_EQ(sample.cpuPercent, row.percent);
        EXPECT_EQ(sample.corePercent, row.cores);
    }
}

TEST_F(CpuSamplerTest, NewDataIsAsGoodAsValidData) {
    Total().instances[0].status = PDH_CSTATUS_NEW_DATA;
    Prime();
    EXPECT_TRUE(SampleCpu(counters, sample));
    EXPECT_EQ(sample.cpuPercent, 42);
}

TEST_F(CpuSamplerTest, BrokenFiguresBecomePercentages) {
    struct Row {
        double value;
        std::int32_t percent;
    };
    Prime();
    for (const Row& row : std::vector<Row>{{137.2, 100},
                                           {0.4, 0},
                                           {0.5, 1},
                                           {-7, 0},
                                           {1e300, 100},
                                           {std::numeric_limits<double>::quiet_NaN(), 0},
                                           {std::numeric_limits<double>::infinity(), 100}}) {
        Total().instances[0].value = row.value;
        Cores().instances = {{L"0,0", row.value}};
        EXPECT_TRUE(SampleCpu(counters, sample));
        EXPECT_EQ(sample.cpuPercent, row.percent) << row.value;
        EXPECT_THAT(sample.corePercent, ElementsAre(row.percent)) << row.value;
    }
}

TEST_F(CpuSamplerTest, SeveralGroupsLeaveHoles) {
    Prime();
    Cores().instances = {{L"0,0", 1}, {L"0,2", 2}, {L"1,1", 3}};
    SampleCpu(counters, sample);
    ASSERT_EQ(sample.corePercent.size(), 66u);
    EXPECT_EQ(sample.corePercent[2], 2);
    EXPECT_EQ(sample.corePercent[3], 0);
    EXPECT_EQ(sample.corePercent[65], 3);
}

TEST_F(CpuSamplerTest, WithoutCountersTheRhythmIsTheSame) {
    fakePdh.refusedQueries = {1};
    OpenPdhCounters(counters);
    fakePdh.calls.clear();
    EXPECT_FALSE(SampleCpu(counters, sample));
    EXPECT_EQ(sample.cpuPercent, 0);
    for (int tick = 0; tick < 3; ++tick) {
        Pass();
        EXPECT_TRUE(SampleCpu(counters, sample));
        EXPECT_EQ(sample.cpuPercent, 75);
        EXPECT_THAT(sample.corePercent, IsEmpty());
    }
    EXPECT_THAT(fakePdh.calls, IsEmpty());
}

TEST_F(CpuSamplerTest, AFailureOfTheTimesKeepsTheBaseline) {
    std::int32_t percent = 7;
    fakeTimes.works = false;
    EXPECT_FALSE(SampleCpuTimes(counters, percent));
    EXPECT_FALSE(counters.cpuTimes.cpuBaseline);
    fakeTimes.works = true;
    EXPECT_FALSE(SampleCpuTimes(counters, percent));
    EXPECT_EQ(percent, 7);
    EXPECT_TRUE(counters.cpuTimes.cpuBaseline);
    Pass();
    fakeTimes.works = false;
    EXPECT_FALSE(SampleCpuTimes(counters, percent));
    EXPECT_EQ(percent, 7);
    fakeTimes = {true, fakeTimes.idle + 75, fakeTimes.kernel + 100, fakeTimes.user};
    EXPECT_TRUE(SampleCpuTimes(counters, percent));
    EXPECT_EQ(percent, 50);  // 100 idle of 200 since the last good reading
}

TEST_F(CpuSamplerTest, StoresTheReading) {
    std::int32_t percent = 0;
    SampleCpuTimes(counters, percent);
    EXPECT_EQ(counters.cpuTimes.prevIdleTime, 0x1'0000'0000u);
    EXPECT_EQ(counters.cpuTimes.prevTotalTime, 0x5'0000'0000u);
}

}  // namespace
}  // namespace kestrane

// mingw declares this one without dllimport, so the function itself is replaced.
extern "C" BOOL WINAPI GetSystemTimes(FILETIME* idle, FILETIME* kernel, FILETIME* user) {
    using kestrane::fakeTimes;
    using kestrane::FileTime;
    if (!fakeTimes.works) return FALSE;
    *idle = FileTime(fakeTimes.idle);
    *kernel = FileTime(fakeTimes.kernel);
    *user = FileTime(fakeTimes.user);
    return TRUE;
}
