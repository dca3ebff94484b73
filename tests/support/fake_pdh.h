#pragma once
// A scripted PDH: replaces the system's at link time, records each call, and answers as the test has set up for a
// counter's path. Include in one file of a test program only.
#include <windows.h>

#include <pdh.h>
#include <pdhmsg.h>

#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace kestrane {

/// Disk counter paths.
namespace disk_paths {
inline constexpr const wchar_t* Idle = L"\\PhysicalDisk(*)\\% Idle Time";
inline constexpr const wchar_t* ReadTime = L"\\PhysicalDisk(*)\\% Disk Read Time";
inline constexpr const wchar_t* WriteTime = L"\\PhysicalDisk(*)\\% Disk Write Time";
inline constexpr const wchar_t* ReadBytes = L"\\PhysicalDisk(*)\\Disk Read Bytes/sec";
inline constexpr const wchar_t* WriteBytes = L"\\PhysicalDisk(*)\\Disk Write Bytes/sec";
}  // namespace disk_paths

/// Processor counter paths: the whole machine, and each processor.
namespace cpu_paths {
inline constexpr const wchar_t* Total = L"\\Processor Information(_Total)\\% Processor Utility";
inline constexpr const wchar_t* Cores = L"\\Processor Information(*)\\% Processor Utility";
}  // namespace cpu_paths

struct FakeInstance {
    std::wstring name;
    double value = 0;
    DWORD status = PDH_CSTATUS_VALID_DATA;
};

/// The result of reading one counter.
struct FakeCounter {
    PDH_STATUS valueStatus = ERROR_SUCCESS;  // of the single value, which is the first instance's
    PDH_STATUS sizeStatus = static_cast<PDH_STATUS>(PDH_MORE_DATA);
    PDH_STATUS arrayStatus = ERROR_SUCCESS;
    std::vector<FakeInstance> instances;
    /// If set, handles the array call instead, with and without buffer.
    std::function<PDH_STATUS(DWORD* bytes, DWORD* count, PDH_FMT_COUNTERVALUE_ITEM_W* items)> array;
};

struct FakePdh {
    std::vector<std::wstring> calls;
    std::set<int> refusedQueries;    // by number, from 1
    std::set<std::wstring> missing;  // paths that cannot be added
    std::map<std::wstring, FakeCounter> counters;
    PDH_STATUS collectStatus = ERROR_SUCCESS;
    std::set<DWORD> formats;  // all requested formats
    int queries = 0;
    std::vector<std::wstring> added;  // counter handles are indices into this, from 1
};

inline FakePdh fakePdh;

inline std::wstring HandleName(HANDLE handle) {
    return std::to_wstring(reinterpret_cast<std::uintptr_t>(handle));
}

inline HANDLE HandleOf(std::size_t number) {
    return reinterpret_cast<HANDLE>(number);
}

inline FakeCounter& CounterOf(PDH_HCOUNTER handle) {
    return fakePdh.counters[fakePdh.added.at(reinterpret_cast<std::uintptr_t>(handle) - 1)];
}

/// The size of an answer as PDH lays it out: the items, then their names.
inline DWORD AnswerBytes(const std::vector<FakeInstance>& instances) {
    std::size_t bytes = 0;
    for (const FakeInstance& instance : instances) {
        bytes += sizeof(PDH_FMT_COUNTERVALUE_ITEM_W) + (instance.name.size() + 1) * sizeof(wchar_t);
    }
    return static_cast<DWORD>(bytes);
}

inline void WriteAnswer(const std::vector<FakeInstance>& instances, PDH_FMT_COUNTERVALUE_ITEM_W* items) {
    auto* text = reinterpret_cast<wchar_t*>(items + instances.size());
    for (std::size_t i = 0; i < instances.size(); ++i) {
        items[i].szName = text;
        items[i].FmtValue.CStatus = instances[i].status;
        items[i].FmtValue.doubleValue = instances[i].value;
        text = std::copy_n(instances[i].name.c_str(), instances[i].name.size() + 1, text);
    }
}

}  // namespace kestrane

extern "C" {

PDH_STATUS WINAPI PdhOpenQueryW(LPCWSTR source, DWORD_PTR user, PDH_HQUERY* query) {
    using namespace kestrane;
    const int number = ++fakePdh.queries;
    fakePdh.calls.push_back(L"open" + std::wstring(source != nullptr || user != 0 ? L" with arguments" : L""));
    *query = HandleOf(static_cast<std::size_t>(number));  // written on failure too, when it must not be closed
    return fakePdh.refusedQueries.contains(number) ? static_cast<PDH_STATUS>(PDH_INVALID_DATASOURCE) : ERROR_SUCCESS;
}

PDH_STATUS WINAPI PdhAddEnglishCounterW(PDH_HQUERY query, LPCWSTR path, DWORD_PTR user, PDH_HCOUNTER* counter) {
    using namespace kestrane;
    fakePdh.calls.push_back(L"add " + HandleName(query) + L" " + path + (user != 0 ? L" with user value" : L""));
    if (query == nullptr) return static_cast<PDH_STATUS>(PDH_INVALID_HANDLE);
    if (fakePdh.missing.contains(path)) return static_cast<PDH_STATUS>(PDH_CSTATUS_NO_OBJECT);
    fakePdh.added.emplace_back(path);
    *counter = HandleOf(fakePdh.added.size());
    return ERROR_SUCCESS;
}

PDH_STATUS WINAPI PdhCollectQueryData(PDH_HQUERY query) {
    kestrane::fakePdh.calls.push_back(L"collect " + kestrane::HandleName(query));
    return kestrane::fakePdh.collectStatus;
}

PDH_STATUS WINAPI PdhGetFormattedCounterValue(PDH_HCOUNTER counter, DWORD format, LPDWORD,
                                              PPDH_FMT_COUNTERVALUE value) {
    using namespace kestrane;
    fakePdh.formats.insert(format);
    const FakeCounter& fake = CounterOf(counter);
    fakePdh.calls.push_back(L"value " + fakePdh.added.at(reinterpret_cast<std::uintptr_t>(counter) - 1));
    if (!fake.instances.empty()) {
        value->CStatus = fake.instances[0].status;
        value->doubleValue = fake.instances[0].value;
    }
    return fake.valueStatus;
}

PDH_STATUS WINAPI PdhGetFormattedCounterArrayW(PDH_HCOUNTER counter, DWORD format, LPDWORD bytes, LPDWORD count,
                                               PPDH_FMT_COUNTERVALUE_ITEM_W items) {
    using namespace kestrane;
    fakePdh.formats.insert(format);
    const FakeCounter& fake = CounterOf(counter);
    fakePdh.calls.push_back((items == nullptr ? L"size " : L"array ") +
                            fakePdh.added.at(reinterpret_cast<std::uintptr_t>(counter) - 1));
    EXPECT_TRUE(items == nullptr || _msize(items) >= *bytes);
    if (fake.array) return fake.array(bytes, count, items);
    const DWORD needed = AnswerBytes(fake.instances);
    const bool fits = items != nullptr && *bytes >= needed;
    if (fits && fake.arrayStatus == ERROR_SUCCESS) WriteAnswer(fake.instances, items);
    *bytes = needed;
    *count = static_cast<DWORD>(fake.instances.size());
    if (items == nullptr) return fake.sizeStatus;
    return fits ? fake.arrayStatus : static_cast<PDH_STATUS>(PDH_MORE_DATA);
}

PDH_STATUS WINAPI PdhCloseQuery(PDH_HQUERY query) {
    kestrane::fakePdh.calls.push_back(L"close " + kestrane::HandleName(query));
    return ERROR_SUCCESS;
}

}  // extern "C"
