// The functions loaded at their first call, with a loader of the test's own: where they are loaded from, the arguments
// they get, and the result on a system without them.
#include <winsock2.h>

#include <windows.h>

#include <ws2ipdef.h>

#include <bcrypt.h>
#include <iphlpapi.h>
#include <pdh.h>
#include <winhttp.h>

#include <gmock/gmock.h>

#include <cstdint>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "base/system_function_win32.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct World {
    bool dllIsThere = false;
    FARPROC function = nullptr;
    std::vector<std::string> calls;
};
World world;

template <typename T>
T Handle(std::uintptr_t number) {
    return reinterpret_cast<T>(number);
}

HMODULE WINAPI FakeLoadLibraryExW(LPCWSTR name, HANDLE file, DWORD flags) {
    EXPECT_EQ(file, nullptr);
    EXPECT_EQ(flags, DWORD{LOAD_LIBRARY_SEARCH_SYSTEM32});
    world.calls.push_back("load " + std::string(name, name + std::char_traits<wchar_t>::length(name)));
    return world.dllIsThere ? Handle<HMODULE>(0x5550000) : nullptr;
}

FARPROC WINAPI FakeGetProcAddress(HMODULE module, LPCSTR name) {
    if (module != Handle<HMODULE>(0x5550000)) return nullptr;  // the C runtime asks too
    world.calls.emplace_back(name);
    return world.function;
}

}  // namespace

extern "C" {
decltype(&LoadLibraryExW) __imp_LoadLibraryExW = &FakeLoadLibraryExW;
decltype(&GetProcAddress) __imp_GetProcAddress = &FakeGetProcAddress;
}

namespace kestrane {
namespace {

/// Replaces the system's function and records its arguments.
template <auto Function>
struct StandIn;
template <typename Result, typename... Arguments, Result (*Function)(Arguments...)>
struct StandIn<Function> {
    static inline std::vector<std::tuple<Arguments...>> calls;
    static Result Call(Arguments... arguments) {
        calls.emplace_back(arguments...);
        if constexpr (std::is_pointer_v<Result>)
            return reinterpret_cast<Result>(std::uintptr_t{Answer});
        else
            return Result(Answer);
    }
    static constexpr int Answer = 42;
};

/// Calls a function of `dll` on a system without the DLL, on one whose DLL lacks the function, and twice on one that
/// has it; all but the last call look it up, and the arguments arrive.
template <auto Function, int Missing = ERROR_MOD_NOT_FOUND, typename... Arguments>
void ExpectLoadedAtTheFirstCall(const char* dll, const char* name, Arguments... arguments) {
    using Found = StandIn<Function>;
    constexpr bool HasResult = !std::is_void_v<decltype(Function(arguments...))>;
    const std::string load = std::string("load ") + dll;
    const auto call = [&] {
        world.calls.clear();
        if constexpr (std::is_pointer_v<decltype(Function(arguments...))>)
            return static_cast<int>(reinterpret_cast<std::intptr_t>(Function(arguments...)));
        else if constexpr (HasResult)
            return static_cast<int>(Function(arguments...));
        else
            return Function(arguments...), 0;
    };
    world = {};
    EXPECT_EQ(call(), HasResult ? Missing : 0) << name;
    EXPECT_THAT(world.calls, ElementsAre(load));

    world.dllIsThere = true;
    EXPECT_EQ(call(), HasResult ? Missing : 0) << name;
    EXPECT_THAT(world.calls, ElementsAre(load, name));
    EXPECT_THAT(Found::calls, IsEmpty()) << name;

    world.function = reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&Found::Call));
    EXPECT_EQ(call(), HasResult ? 42 : 0) << name;
    EXPECT_THAT(world.calls, ElementsAre(load, name));
    EXPECT_EQ(call(), HasResult ? 42 : 0) << name;
    EXPECT_THAT(world.calls, IsEmpty()) << name;
    EXPECT_THAT(Found::calls, ElementsAre(std::tuple(arguments...), std::tuple(arguments...))) << name;
}

TEST(SystemDlls, Pdh) {
    const auto query = Handle<PDH_HQUERY>(1);
    const auto counter = Handle<PDH_HCOUNTER>(2);
    PDH_HQUERY newQuery = nullptr;
    PDH_HCOUNTER newCounter = nullptr;
    DWORD type = 0;
    DWORD bytes = 0;
    DWORD count = 0;
    PDH_FMT_COUNTERVALUE value{};
    PDH_FMT_COUNTERVALUE_ITEM_W items{};
    ExpectLoadedAtTheFirstCall<&PdhOpenQueryW>("pdh.dll", "PdhOpenQueryW", L"source", DWORD_PTR{7}, &newQuery);
    ExpectLoadedAtTheFirstCall<&PdhAddEnglishCounterW>("pdh.dll", "PdhAddEnglishCounterW", query, L"path", DWORD_PTR{7},
                                                       &newCounter);
    ExpectLoadedAtTheFirstCall<&PdhCollectQueryData>("pdh.dll", "PdhCollectQueryData", query);
    ExpectLoadedAtTheFirstCall<&PdhGetFormattedCounterValue>("pdh.dll", "PdhGetFormattedCounterValue", counter,
                                                             DWORD{PDH_FMT_DOUBLE}, &type, &value);
    ExpectLoadedAtTheFirstCall<&PdhGetFormattedCounterArrayW>("pdh.dll", "PdhGetFormattedCounterArrayW", counter,
                                                              DWORD{PDH_FMT_DOUBLE}, &bytes, &count, &items);
    ExpectLoadedAtTheFirstCall<&PdhCloseQuery>("pdh.dll", "PdhCloseQuery", query);
}

TEST(SystemDlls, IpHelper) {
    MIB_IF_TABLE2* table = nullptr;
    IP_ADAPTER_ADDRESSES adapters{};
    int reserved = 0;
    ULONG bytes = 0;
    ExpectLoadedAtTheFirstCall<&GetIfTable2>("iphlpapi.dll", "GetIfTable2", &table);
    ExpectLoadedAtTheFirstCall<&FreeMibTable>("iphlpapi.dll", "FreeMibTable", Handle<PVOID>(3));
    ExpectLoadedAtTheFirstCall<&GetAdaptersAddresses>("iphlpapi.dll", "GetAdaptersAddresses", ULONG{AF_INET}, ULONG{5},
                                                      static_cast<PVOID>(&reserved), &adapters, &bytes);
}

/// The functions of bcrypt.dll give a status, of which only a negative one is a failure.
template <auto Function, typename... Arguments>
void ExpectLoadedFromBCrypt(const char* name, Arguments... arguments) {
    constexpr int DllNotFound = -1073741515;  // 0xC0000135
    static_assert(!BCRYPT_SUCCESS(DllNotFound));
    ExpectLoadedAtTheFirstCall<Function, DllNotFound>("bcrypt.dll", name, arguments...);
}

TEST(SystemDlls, BCrypt) {
    const auto algorithm = Handle<BCRYPT_ALG_HANDLE>(1);
    const auto hash = Handle<BCRYPT_HASH_HANDLE>(2);
    const auto key = Handle<BCRYPT_KEY_HANDLE>(3);
    BCRYPT_ALG_HANDLE newAlgorithm = nullptr;
    BCRYPT_HASH_HANDLE newHash = nullptr;
    BCRYPT_KEY_HANDLE newKey = nullptr;
    int padding = 0;
    UCHAR a = 0;
    UCHAR b = 0;
    ExpectLoadedFromBCrypt<&BCryptGenRandom>("BCryptGenRandom", algorithm, &a, ULONG{4}, ULONG{5});
    ExpectLoadedFromBCrypt<&BCryptOpenAlgorithmProvider>("BCryptOpenAlgorithmProvider", &newAlgorithm, L"name",
                                                         L"implementation", ULONG{4});
    ExpectLoadedFromBCrypt<&BCryptCloseAlgorithmProvider>("BCryptCloseAlgorithmProvider", algorithm, ULONG{4});
    ExpectLoadedFromBCrypt<&BCryptCreateHash>("BCryptCreateHash", algorithm, &newHash, &a, ULONG{4}, &b, ULONG{5},
                                              ULONG{6});
    ExpectLoadedFromBCrypt<&BCryptHashData>("BCryptHashData", hash, &a, ULONG{4}, ULONG{5});
    ExpectLoadedFromBCrypt<&BCryptFinishHash>("BCryptFinishHash", hash, &a, ULONG{4}, ULONG{5});
    ExpectLoadedFromBCrypt<&BCryptDestroyHash>("BCryptDestroyHash", hash);
    ExpectLoadedFromBCrypt<&BCryptImportKeyPair>("BCryptImportKeyPair", algorithm, key, L"type", &newKey, &a, ULONG{4},
                                                 ULONG{5});
    ExpectLoadedFromBCrypt<&BCryptDestroyKey>("BCryptDestroyKey", key);
    ExpectLoadedFromBCrypt<&BCryptVerifySignature>("BCryptVerifySignature", key, static_cast<VOID*>(&padding), &a,
                                                   ULONG{4}, &b, ULONG{5}, ULONG{6});
}

/// The functions of winhttp.dll fail with FALSE or null.
template <auto Function, typename... Arguments>
void ExpectLoadedFromWinHttp(const char* name, Arguments... arguments) {
    ExpectLoadedAtTheFirstCall<Function, 0>("winhttp.dll", name, arguments...);
}

TEST(SystemDlls, WinHttp) {
    const auto session = Handle<HINTERNET>(1);
    const auto connection = Handle<HINTERNET>(2);
    const auto request = Handle<HINTERNET>(3);
    int buffer = 0;
    void* const bytes = &buffer;
    DWORD a = 0;
    DWORD b = 0;
    LPCWSTR types = nullptr;
    URL_COMPONENTS parts{};
    ExpectLoadedFromWinHttp<&WinHttpOpen>("WinHttpOpen", L"agent", DWORD{4}, L"proxy", L"bypass", DWORD{5});
    ExpectLoadedFromWinHttp<&WinHttpSetTimeouts>("WinHttpSetTimeouts", session, 1, 2, 3, 4);
    ExpectLoadedFromWinHttp<&WinHttpSetOption>("WinHttpSetOption", session, DWORD{2}, bytes, DWORD{3});
    ExpectLoadedFromWinHttp<&WinHttpConnect>("WinHttpConnect", session, L"host", INTERNET_PORT{443}, DWORD{5});
    ExpectLoadedFromWinHttp<&WinHttpOpenRequest>("WinHttpOpenRequest", connection, L"verb", L"path", L"version",
                                                 L"referrer", &types, DWORD{5});
    ExpectLoadedFromWinHttp<&WinHttpSendRequest>("WinHttpSendRequest", request, L"headers", DWORD{4}, bytes, DWORD{5},
                                                 DWORD{6}, DWORD_PTR{7});
    ExpectLoadedFromWinHttp<&WinHttpReceiveResponse>("WinHttpReceiveResponse", request, bytes);
    ExpectLoadedFromWinHttp<&WinHttpQueryHeaders>("WinHttpQueryHeaders", request, DWORD{4}, L"name", bytes, &a, &b);
    ExpectLoadedFromWinHttp<&WinHttpQueryDataAvailable>("WinHttpQueryDataAvailable", request, &a);
    ExpectLoadedFromWinHttp<&WinHttpReadData>("WinHttpReadData", request, bytes, DWORD{4}, &a);
    ExpectLoadedFromWinHttp<&WinHttpCloseHandle>("WinHttpCloseHandle", request);
    ExpectLoadedFromWinHttp<&WinHttpCrackUrl>("WinHttpCrackUrl", L"url", DWORD{4}, DWORD{5}, &parts);
}

}  // namespace
}  // namespace kestrane
