// The disk tick of the real `App` with scripted counters and a scripted inventory: which disks reach the icon, the
// totals, the rings and the tooltip, and what a rejected reading leaves unchanged.
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "app/app_win32.h"
#include "app/hidden_window_win32.h"
#include "hardware/hardware_facts_win32.h"
#include "support/fake_pdh.h"
#include "text/translation.h"

namespace {

std::vector<kestrane::DiskFacts> machineDisks;
std::wstring diskTip;
int diskUpdates = 0;

BOOL WINAPI FakeShell_NotifyIconW(DWORD message, PNOTIFYICONDATAW data) {
    if (data->uID == 2 && message == NIM_MODIFY) {
        diskTip = data->szTip;
        ++diskUpdates;
    }
    return TRUE;
}

}  // namespace

extern "C" {
decltype(&Shell_NotifyIconW) __imp_Shell_NotifyIconW = &FakeShell_NotifyIconW;
}

namespace kestrane {

// Replaces the core library's function, which queries this machine.
std::vector<DiskFacts> ReadDiskFacts() {
    return machineDisks;
}

CpuFacts ReadCpuFacts() {
    CpuFacts facts;
    facts.isPerformanceThread = {1, 0, 1};
    return facts;
}

namespace {

using namespace disk_paths;

class DiskTickTest : public testing::Test {
  protected:
    DiskTickTest() {
        fakePdh = FakePdh{};
        machineDisks.clear();
        SetLanguage(1);
        TwoDisks();
        app = std::make_unique<App>();
        app->settings = MakeDefaultSettings();
        app->settings.check_updates = false;
        app->instance = GetModuleHandleW(nullptr);
    }
    ~DiskTickTest() override {
        if (app->window != nullptr) DestroyWindow(app->window);
        UnregisterClassW(HiddenWindowClass, app->instance);
        SetLanguage(0);
    }

    static DiskFacts DiskNumbered(std::uint32_t number) {
        DiskFacts disk;
        disk.number = number;
        return disk;
    }

    /// Disk 0 is idle for 40 %, disk 1 all the time.
    static void TwoDisks() {
        fakePdh.counters[Idle].instances = {{L"0 C:", 40}, {L"1 D:", 100}, {L"_Total", 70}};
        fakePdh.counters[ReadTime].instances = {{L"1 D:", 0}, {L"0 C:", 300}, {L"_Total", 150}};
        fakePdh.counters[WriteTime].instances = {{L"0 C:", 100}, {L"1 D:", 0}, {L"_Total", 50}};
        fakePdh.counters[ReadBytes].instances = {{L"0 C:", 1048576}, {L"1 D:", 2048}, {L"_Total", 1050624}};
        fakePdh.counters[WriteBytes].instances = {{L"0 C:", 512}, {L"1 D:", 512}, {L"_Total", 1024}};
    }

    void Start() {
        ASSERT_TRUE(CreateHiddenWindow(*app));
        diskUpdates = 0;
    }

    std::unique_ptr<App> app;
};

TEST_F(DiskTickTest, ATickReachesIconTotalsHistoriesAndTooltip) {
    Start();
    app->OnDiskTick();
    EXPECT_EQ(diskTip, L"Disk  R: 45 % · 1 MB/s  W: 15 % · 1 KB/s");
    EXPECT_EQ(SampleAtAge(app->diskReadIconRing, 0), 45);
    EXPECT_EQ(SampleAtAge(app->diskWriteIconRing, 0), 15);
    EXPECT_EQ(SampleAtAge(app->diskReadBytesRing, 0), 1050624.0);
    EXPECT_EQ(SampleAtAge(app->diskWriteBytesRing, 0), 1024.0);
    EXPECT_EQ(SampleAtAge(app->diskReadPercentRing, 0), 45.0);
    EXPECT_EQ(SampleAtAge(app->diskWritePercentRing, 0), 15.0);
    ASSERT_EQ(app->diskHistories.size(), 2U);
    EXPECT_EQ(app->diskHistories[1].label, L"Disk 1 (D:)");
    EXPECT_EQ(diskUpdates, 1);
}

TEST_F(DiskTickTest, TheReadingAtTheStartGivesATooltipAndNoPoint) {
    Start();
    EXPECT_EQ(diskTip, L"Disk  R: 45 % · 0 KB/s  W: 15 % · 0 KB/s");
    EXPECT_EQ(app->diskReadIconRing.count, 0U);
    EXPECT_EQ(app->diskReadBytesRing.count, 0U);
}

TEST_F(DiskTickTest, TheIconShowsTheBusiestDiskAndTheSpeedsThoseChosen) {
    app->settings.disks = {1};
    Start();
    app->OnDiskTick();
    EXPECT_EQ(diskTip, L"Disk  R: 45 % · 2 KB/s  W: 15 % · 0.5 KB/s");
    EXPECT_EQ(app->diskTotals.diskCount, 1);
    EXPECT_EQ(app->diskTotals.readPercent, 0);
    ASSERT_EQ(app->diskHistories.size(), 1U);
    EXPECT_EQ(app->diskHistories[0].number, 1);
}

TEST_F(DiskTickTest, TheStartKeepsWhatTheSamplersNeedOfTheMachine) {
    machineDisks = {DiskNumbered(7), DiskNumbered(2)};
    Start();
    EXPECT_EQ(app->fixedDiskNumbers, (std::vector<std::uint32_t>{7, 2}));
    ASSERT_EQ(app->fixedDisks.size(), 2U);
    EXPECT_EQ(app->fixedDisks[0].number, 7U);
    EXPECT_EQ(app->coreClasses, (std::vector<std::uint8_t>{1, 0, 1}));
}

TEST_F(DiskTickTest, AnExternalDiskReachesTheIconAlone) {
    machineDisks = {DiskNumbered(1)};
    app->settings.disks = {0, 1};
    Start();
    machineDisks.push_back(DiskNumbered(0));  // plugged in later: the list is that of the start
    app->OnDiskTick();
    EXPECT_EQ(SampleAtAge(app->diskReadIconRing, 0), 45);
    EXPECT_EQ(SampleAtAge(app->diskWriteIconRing, 0), 15);
    EXPECT_EQ(SampleAtAge(app->diskReadBytesRing, 0), 2048.0);
    EXPECT_EQ(SampleAtAge(app->diskReadPercentRing, 0), 0.0);
    EXPECT_EQ(SampleAtAge(app->diskWritePercentRing, 0), 0.0);
    EXPECT_EQ(app->diskTotals.diskCount, 1);
    ASSERT_EQ(app->diskHistories.size(), 1U);
    EXPECT_EQ(app->diskHistories[0].number, 1);
}

TEST_F(DiskTickTest, ARefusedReadingLeavesEverythingStanding) {
    Start();
    app->OnDiskTick();
    fakePdh.collectStatus = static_cast<PDH_STATUS>(PDH_NO_DATA);
    app->OnDiskTick();
    EXPECT_EQ(diskUpdates, 1);
    EXPECT_EQ(app->diskHistories.size(), 2U);
    EXPECT_EQ(app->diskReadIconRing.count, 1U);
    fakePdh.collectStatus = ERROR_SUCCESS;
    app->OnDiskTick();
    EXPECT_EQ(app->diskHistories[0].read.count, 2U);
}

TEST_F(DiskTickTest, ATickGrowsTheRingsBeforeItPushes) {
    Start();
    const std::uint64_t size = app->iconRingSize;
    app->iconRingSize = 4;
    for (auto* ring : {&app->diskReadIconRing, &app->diskWriteIconRing}) {
        ResizeKeepNewest(*ring, 4);
        for (std::int32_t percent = 0; percent < 4; ++percent)
            PushSample(*ring, percent);
    }
    app->OnDiskTick();
    for (const auto* ring : {&app->diskReadIconRing, &app->diskWriteIconRing}) {
        EXPECT_EQ(ring->data.size(), size);
        EXPECT_EQ(ring->count, 5U);  // nothing was pushed out of the smaller ring
    }
}

TEST_F(DiskTickTest, TheCountersAreClosedWithTheProgram) {
    Start();
    DestroyWindow(app->window);
    fakePdh.calls.clear();
    app = std::make_unique<App>();
    EXPECT_EQ(std::count(fakePdh.calls.begin(), fakePdh.calls.end(), L"close 1"), 1);
    EXPECT_EQ(std::count(fakePdh.calls.begin(), fakePdh.calls.end(), L"close 2"), 1);
}

TEST_F(DiskTickTest, OnlyTheTotalMeansNoDisk) {
    Start();
    app->OnDiskTick();
    fakePdh.counters[Idle].instances = {{L"_Total", 70}};
    app->OnDiskTick();
    EXPECT_EQ(diskUpdates, 1);
    app->RefreshDiskIcon();
    EXPECT_EQ(diskTip, L"Disk: no data (PDH)");
}

TEST_F(DiskTickTest, ADiskThatVanishesForOneTickLosesItsHistory) {
    Start();
    app->OnDiskTick();
    fakePdh.counters[Idle].instances = {{L"0 C:", 40}};
    app->OnDiskTick();
    ASSERT_EQ(app->diskHistories.size(), 1U);
    TwoDisks();
    app->OnDiskTick();
    ASSERT_EQ(app->diskHistories.size(), 2U);
    EXPECT_EQ(app->diskHistories[0].read.count, 3U);
    EXPECT_EQ(app->diskHistories[1].read.count, 1U);
}

}  // namespace
}  // namespace kestrane
