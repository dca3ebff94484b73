#include "metrics/pdh_counters_win32.h"

#include <pdhmsg.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "base/debug_log_win32.h"
#include "metrics/counter_items.h"

namespace kestrane {
namespace {

// English names, so that the system's language does not matter.
constexpr const wchar_t* CpuTotalPath = L"\\Processor Information(_Total)\\% Processor Utility";
constexpr const wchar_t* CpuCorePath = L"\\Processor Information(*)\\% Processor Utility";

struct DiskCounterRow {
    const wchar_t* path;
    PDH_HCOUNTER PdhCounters::*counter;
};
constexpr std::array<DiskCounterRow, 5> DiskCounterRows{{
    {L"\\PhysicalDisk(*)\\% Idle Time", &PdhCounters::diskIdleCounter},
    {L"\\PhysicalDisk(*)\\% Disk Read Time", &PdhCounters::diskReadTimeCounter},
    {L"\\PhysicalDisk(*)\\% Disk Write Time", &PdhCounters::diskWriteTimeCounter},
    {L"\\PhysicalDisk(*)\\Disk Read Bytes/sec", &PdhCounters::diskReadBytesCounter},
    {L"\\PhysicalDisk(*)\\Disk Write Bytes/sec", &PdhCounters::diskWriteBytesCounter},
}};

using Item = PDH_FMT_COUNTERVALUE_ITEM_W;
static_assert(sizeof(Item) == CounterItemBytes && offsetof(Item, FmtValue.CStatus) == CounterItemStatus &&
              offsetof(Item, FmtValue.doubleValue) == CounterItemValue);

UniqueQuery OpenQuery() {
    PDH_HQUERY query = nullptr;
    if (PdhOpenQueryW(nullptr, 0, &query) != ERROR_SUCCESS) return UniqueQuery();
    return UniqueQuery(query);
}

/// Null if the counter cannot be added.
PDH_HCOUNTER AddCounter(const UniqueQuery& query, const wchar_t* path) {
    PDH_HCOUNTER counter = nullptr;
    return PdhAddEnglishCounterW(query.Get(), path, 0, &counter) == ERROR_SUCCESS ? counter : nullptr;
}

void OpenCpuCounters(PdhCounters& counters) {
    UniqueQuery query = OpenQuery();
    if (!query) return;
    PDH_HCOUNTER total = AddCounter(query, CpuTotalPath);
    if (total == nullptr) {
        LogDebug(L"kestrane: sin contador % Processor Utility; CPU con GetSystemTimes\n");
        return;
    }
    counters.cpuTotalCounter = total;
    counters.cpuCoreCounter = AddCounter(query, CpuCorePath);
    PdhCollectQueryData(query.Get());  // a rate needs two collections; this is the first
    counters.cpuQuery = std::move(query);
}

void OpenDiskCounters(PdhCounters& counters) {
    UniqueQuery query = OpenQuery();
    if (!query) {
        LogDebug(L"kestrane: PdhOpenQuery ha fallado; disco sin datos\n");
        return;
    }
    PdhCounters added;
    for (const DiskCounterRow& row : DiskCounterRows) {
        added.*row.counter = AddCounter(query, row.path);
        if (added.*row.counter == nullptr) {
            LogDebug(L"kestrane: no se pudieron anadir los contadores de disco\n");
            return;
        }
    }
    for (const DiskCounterRow& row : DiskCounterRows)
        counters.*row.counter = added.*row.counter;
    PdhCollectQueryData(query.Get());
    counters.diskQuery = std::move(query);
    counters.diskReady = true;
}

}  // namespace

void OpenPdhCounters(PdhCounters& counters) {
    OpenCpuCounters(counters);
    OpenDiskCounters(counters);
}

bool ReadCounterArray(PDH_HCOUNTER counter, std::vector<CounterValue>& values) {
    DWORD bytes = 0;
    DWORD count = 0;
    const PDH_STATUS status = PdhGetFormattedCounterArrayW(counter, CounterFormat, &bytes, &count, nullptr);
    if (static_cast<DWORD>(status) != PDH_MORE_DATA) return false;
    std::vector<Item> items(std::max<std::size_t>((bytes + sizeof(Item) - 1) / sizeof(Item), 1));
    const ByteSpan answer(reinterpret_cast<const std::uint8_t*>(items.data()), bytes);
    if (PdhGetFormattedCounterArrayW(counter, CounterFormat, &bytes, &count, items.data()) != ERROR_SUCCESS)
        return false;
    values = ReadCounterItems(answer, reinterpret_cast<std::uintptr_t>(items.data()), count);
    return true;
}

}  // namespace kestrane
