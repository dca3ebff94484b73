// The functions of pdh.dll that the program calls; see base/system_function_win32.h.
#include "base/system_function_win32.h"

#include <windows.h>

#include <pdh.h>

namespace {

constexpr const wchar_t* Dll = L"pdh.dll";
constexpr PDH_STATUS Missing = ERROR_MOD_NOT_FOUND;

}  // namespace

extern "C" {

PDH_STATUS WINAPI PdhOpenQueryW(LPCWSTR source, DWORD_PTR user, PDH_HQUERY* query) {
    const auto call = kestrane::SystemFunction<&PdhOpenQueryW>(Dll, __func__);
    return call != nullptr ? call(source, user, query) : Missing;
}

PDH_STATUS WINAPI PdhAddEnglishCounterW(PDH_HQUERY query, LPCWSTR path, DWORD_PTR user, PDH_HCOUNTER* counter) {
    const auto call = kestrane::SystemFunction<&PdhAddEnglishCounterW>(Dll, __func__);
    return call != nullptr ? call(query, path, user, counter) : Missing;
}

PDH_STATUS WINAPI PdhCollectQueryData(PDH_HQUERY query) {
    const auto call = kestrane::SystemFunction<&PdhCollectQueryData>(Dll, __func__);
    return call != nullptr ? call(query) : Missing;
}

PDH_STATUS WINAPI PdhGetFormattedCounterValue(PDH_HCOUNTER counter, DWORD format, LPDWORD type,
                                              PPDH_FMT_COUNTERVALUE value) {
    const auto call = kestrane::SystemFunction<&PdhGetFormattedCounterValue>(Dll, __func__);
    return call != nullptr ? call(counter, format, type, value) : Missing;
}

PDH_STATUS WINAPI PdhGetFormattedCounterArrayW(PDH_HCOUNTER counter, DWORD format, LPDWORD bytes, LPDWORD count,
                                               PPDH_FMT_COUNTERVALUE_ITEM_W items) {
    const auto call = kestrane::SystemFunction<&PdhGetFormattedCounterArrayW>(Dll, __func__);
    return call != nullptr ? call(counter, format, bytes, count, items) : Missing;
}

PDH_STATUS WINAPI PdhCloseQuery(PDH_HQUERY query) {
    const auto call = kestrane::SystemFunction<&PdhCloseQuery>(Dll, __func__);
    return call != nullptr ? call(query) : Missing;
}

}  // extern "C"
