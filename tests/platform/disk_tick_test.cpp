// The disk tick of the real `App` with scripted counters: which disks reach the icon, the totals, the rings and the
// tooltip, and what a refused reading leaves standing.
#include <windows.h>

#include <pdh.h>
#include <pdhmsg.h>

#include <gmock/gmock.h>

#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/app_win32.h"
#include "app/hidden_window_win32.h"
#include "app/ticks_win32.h"
#include "text/translation.h"

namespace {

struct Value {
    std::wstring instance;
    double value;
};

struct World {
    bool collects = true;
    std::map<std::wstring, std::vector<Value>> arrays;  // by the counter's path
    std::vector<std::wstring> paths;                    // a counter's handle is its place in this list plus 1
    std::wstring diskTip;
    int diskUpdates = 0;
};
World world;

BOOL WINAPI FakeShell_NotifyIconW(DWORD message, PNOTIFYICONDATAW data) {
    if (data->uID == 2 && message == NIM_MODIFY) {
        world.diskTip = data->szTip;
        ++world.diskUpdates;
    }
    return TRUE;
}

const std::vector<Value>& ArrayOf(PDH_HCOUNTER counter) {
    return world.arrays[world.paths[reinterpret_cast<std::uintptr_t>(counter) - 1]];
}

DWORD BytesOf(const std::vector<Value>& values) {
    std::size_t bytes = values.size() * sizeof(PDH_FMT_COUNTERVALUE_ITEM_W);
    for (const Value& value : values)
        bytes += (value.instance.size() + 1) * sizeof(wchar_t);
    return static_cast<DWORD>(bytes);
}

}  // namespace

extern "C" {
decltype(&Shell_NotifyIconW) __imp_Shell_NotifyIconW = &FakeShell_NotifyIconW;

PDH_STATUS WINAPI PdhOpenQueryW(LPCWSTR, DWORD_PTR, PDH_HQUERY* query) {
    *query = reinterpret_cast<PDH_HQUERY>(std::uintptr_t{0x77});
    return ERROR_SUCCESS;
}
PDH_STATUS WINAPI PdhAddEnglishCounterW(PDH_HQUERY, LPCWSTR path, DWORD_PTR, PDH_HCOUNTER* counter) {
    if (std::wcsstr(path, L"PhysicalDisk") == nullptr) return static_cast<PDH_STATUS>(PDH_CSTATUS_NO_OBJECT);
    world.paths.emplace_back(path);
    *counter = reinterpret_cast<PDH_HCOUNTER>(world.paths.size());
    return ERROR_SUCCESS;
}
PDH_STATUS WINAPI PdhCollectQueryData(PDH_HQUERY) {
    return world.collects ? ERROR_SUCCESS : static_cast<PDH_STATUS>(PDH_NO_DATA);
}
PDH_STATUS WINAPI PdhCloseQuery(PDH_HQUERY) {
    return ERROR_SUCCESS;
}
PDH_STATUS WINAPI PdhGetFormattedCounterArrayW(PDH_HCOUNTER counter, DWORD, LPDWORD size, LPDWORD count,
                                               PPDH_FMT_COUNTERVALUE_ITEM_W items) {
    const std::vector<Value>& values = ArrayOf(counter);
    const DWORD needed = BytesOf(values);
    *count = static_cast<DWORD>(values.size());
    if (items == nullptr || *size < needed) {
        *size = needed;
        return static_cast<PDH_STATUS>(PDH_MORE_DATA);
    }
    auto* text = reinterpret_cast<wchar_t*>(items + values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        items[i].FmtValue.CStatus = PDH_CSTATUS_VALID_DATA;
        items[i].FmtValue.doubleValue = values[i].value;
        items[i].szName = text;
        std::wcscpy(text, values[i].instance.c_str());
        text += values[i].instance.size() + 1;
    }
    return ERROR_SUCCESS;
}
}

namespace kestrane {
namespace {

constexpr const wchar_t* Idle = L"\\PhysicalDisk(*)\\% Idle Time";
constexpr const wchar_t* ReadTime = L"\\PhysicalDisk(*)\\% Disk Read Time";
constexpr const wchar_t* WriteTime = L"\\PhysicalDisk(*)\\% Disk Write Time";
constexpr const wchar_t* ReadBytes = L"\\PhysicalDisk(*)\\Disk Read Bytes/sec";
constexpr const wchar_t* WriteBytes = L"\\PhysicalDisk(*)\\Disk Write Bytes/sec";

class DiskTickTest : public testing::Test {
  protected:
    DiskTickTest() {
        world = World{};
        SetLanguage(1);
        TwoDisks();
        app = std::make_unique<App>();
        app->settings = MakeDefaultSettings();
        app->instance = GetModuleHandleW(nullptr);
    }
    ~DiskTickTest() override {
        if (app->window != nullptr) DestroyWindow(app->window);
        UnregisterClassW(HiddenWindowClass, app->instance);
        SetLanguage(0);
    }

    /// Disk 0 is idle for 40 %, disk 1 rests.
    static void TwoDisks() {
        world.arrays[Idle] = {{L"0 C:", 40}, {L"1 D:", 100}, {L"_Total", 70}};
        world.arrays[ReadTime] = {{L"1 D:", 0}, {L"0 C:", 300}, {L"_Total", 150}};
        world.arrays[WriteTime] = {{L"0 C:", 100}, {L"1 D:", 0}, {L"_Total", 50}};
        world.arrays[ReadBytes] = {{L"0 C:", 1048576}, {L"1 D:", 2048}, {L"_Total", 1050624}};
        world.arrays[WriteBytes] = {{L"0 C:", 512}, {L"1 D:", 512}, {L"_Total", 1024}};
    }

    void Start() {
        ASSERT_TRUE(CreateHiddenWindow(*app));
        app->fixedDiskNumbers.clear();  // this machine's own disks are not what is tested
        world.diskUpdates = 0;
    }

    std::unique_ptr<App> app;
};

TEST_F(DiskTickTest, ATickReachesIconTotalsHistoriesAndTooltip) {
    Start();
    OnDiskTick(*app);
    EXPECT_EQ(world.diskTip, L"Disk  R: 45 % · 1 MB/s  W: 15 % · 1 KB/s");
    EXPECT_EQ(SampleAtAge(app->diskReadIconRing, 0), 45);
    EXPECT_EQ(SampleAtAge(app->diskWriteIconRing, 0), 15);
    EXPECT_EQ(SampleAtAge(app->diskReadBytesRing, 0), 1050624.0);
    EXPECT_EQ(SampleAtAge(app->diskWriteBytesRing, 0), 1024.0);
    EXPECT_EQ(SampleAtAge(app->diskReadPercentRing, 0), 45.0);
    EXPECT_EQ(SampleAtAge(app->diskWritePercentRing, 0), 15.0);
    ASSERT_EQ(app->diskHistories.size(), 2U);
    EXPECT_EQ(app->diskHistories[1].label, L"Disk 1 (D:)");
    EXPECT_EQ(world.diskUpdates, 1);
}

TEST_F(DiskTickTest, TheReadingAtTheStartGivesATooltipAndNoPoint) {
    Start();
    EXPECT_EQ(world.diskTip, L"Disk  R: 45 % · 0 KB/s  W: 15 % · 0 KB/s");
    EXPECT_EQ(app->diskReadIconRing.count, 0U);
    EXPECT_EQ(app->diskReadBytesRing.count, 0U);
}

TEST_F(DiskTickTest, TheIconShowsTheBusiestDiskAndTheSpeedsThoseChosen) {
    app->settings.disks = {1};
    Start();
    OnDiskTick(*app);
    EXPECT_EQ(world.diskTip, L"Disk  R: 45 % · 2 KB/s  W: 15 % · 0.5 KB/s");
    EXPECT_EQ(app->diskTotals.diskCount, 1);
    EXPECT_EQ(app->diskTotals.readPercent, 0);
    ASSERT_EQ(app->diskHistories.size(), 1U);
    EXPECT_EQ(app->diskHistories[0].number, 1);
}

TEST_F(DiskTickTest, ARefusedReadingLeavesEverythingStanding) {
    Start();
    OnDiskTick(*app);
    world.collects = false;
    OnDiskTick(*app);
    EXPECT_EQ(world.diskUpdates, 1);
    EXPECT_EQ(app->diskHistories.size(), 2U);
    EXPECT_EQ(app->diskReadIconRing.count, 1U);
    world.collects = true;
    OnDiskTick(*app);
    EXPECT_EQ(app->diskHistories[0].read.count, 2U);
}

TEST_F(DiskTickTest, OnlyTheTotalMeansNoDisk) {
    Start();
    OnDiskTick(*app);
    world.arrays[Idle] = {{L"_Total", 70}};
    OnDiskTick(*app);
    EXPECT_EQ(world.diskUpdates, 1);
    app->RefreshDiskIcon();
    EXPECT_EQ(world.diskTip, L"Disk: no data (PDH)");
}

TEST_F(DiskTickTest, ADiskThatVanishesForOneTickLosesItsHistory) {
    Start();
    OnDiskTick(*app);
    world.arrays[Idle] = {{L"0 C:", 40}};
    OnDiskTick(*app);
    ASSERT_EQ(app->diskHistories.size(), 1U);
    TwoDisks();
    OnDiskTick(*app);
    ASSERT_EQ(app->diskHistories.size(), 2U);
    EXPECT_EQ(app->diskHistories[0].read.count, 3U);
    EXPECT_EQ(app->diskHistories[1].read.count, 1U);
}

}  // namespace
}  // namespace kestrane
