// The functions of iphlpapi.dll that the program calls; see base/system_function_win32.h.
#include "base/system_function_win32.h"

#include <windows.h>

#include <winsock2.h>

#include <ws2ipdef.h>

#include <iphlpapi.h>

namespace {

constexpr const wchar_t* Dll = L"iphlpapi.dll";
constexpr NETIO_STATUS Missing = ERROR_MOD_NOT_FOUND;

}  // namespace

extern "C" {

NETIO_STATUS WINAPI GetIfTable2(PMIB_IF_TABLE2* table) {
    const auto call = kestrane::SystemFunction<&GetIfTable2>(Dll, __func__);
    return call != nullptr ? call(table) : Missing;
}

VOID WINAPI FreeMibTable(PVOID table) {
    if (const auto call = kestrane::SystemFunction<&FreeMibTable>(Dll, __func__)) call(table);
}

ULONG WINAPI GetAdaptersAddresses(ULONG family, ULONG flags, PVOID reserved, PIP_ADAPTER_ADDRESSES addresses,
                                  PULONG bytes) {
    const auto call = kestrane::SystemFunction<&GetAdaptersAddresses>(Dll, __func__);
    return call != nullptr ? call(family, flags, reserved, addresses, bytes) : Missing;
}

}  // extern "C"
