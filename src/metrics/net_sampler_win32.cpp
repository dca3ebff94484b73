#include "metrics/samplers_win32.h"

#include <winsock2.h>

#include <windows.h>

#include <ws2ipdef.h>

#include <iphlpapi.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <memory>
#include <utility>

#include "base/debug_log_win32.h"

namespace kestrane {
namespace {

constexpr ULONG FirstAddressBytes = 16384;
constexpr int AddressCalls = 3;
constexpr ULONG AddressFlags = GAA_FLAG_SKIP_ANYCAST | GAA_FLAG_SKIP_MULTICAST | GAA_FLAG_SKIP_DNS_SERVER;

NetRow RowOf(const MIB_IF_ROW2& entry) {
    NetRow row;
    row.key = entry.InterfaceLuid.Value;
    row.alias.assign(std::begin(entry.Alias), std::ranges::find(entry.Alias, L'\0'));
    row.operUp = entry.OperStatus == IfOperStatusUp;
    row.hardware = entry.InterfaceAndOperStatusFlags.HardwareInterface != 0;
    row.filter = entry.InterfaceAndOperStatusFlags.FilterInterface != 0;
    row.loopback = entry.Type == IF_TYPE_SOFTWARE_LOOPBACK;
    row.tunnel = entry.Type == IF_TYPE_TUNNEL;
    row.inOctets = entry.InOctets;
    row.outOctets = entry.OutOctets;
    return row;
}

/// Empty unless it is an IPv4 address.
std::wstring Ipv4Text(const SOCKET_ADDRESS& address) {
    sockaddr_in ipv4{};
    if (address.lpSockaddr == nullptr || address.iSockaddrLength < static_cast<INT>(sizeof(ipv4))) return {};
    std::memcpy(&ipv4, address.lpSockaddr, sizeof(ipv4));
    if (ipv4.sin_family != AF_INET) return {};
    std::array<std::uint8_t, 4> bytes{};
    std::memcpy(bytes.data(), &ipv4.sin_addr, bytes.size());
    return FormatIpv4(bytes);
}

std::vector<AdapterAddress> AddressesOf(const IP_ADAPTER_ADDRESSES* adapters) {
    std::vector<AdapterAddress> addresses;
    for (const IP_ADAPTER_ADDRESSES* adapter = adapters; adapter != nullptr; adapter = adapter->Next) {
        if (adapter->FirstUnicastAddress == nullptr) continue;
        addresses.push_back({.key = adapter->Luid.Value, .ip = Ipv4Text(adapter->FirstUnicastAddress->Address)});
    }
    return addresses;
}

/// False if the call fails or asks for a larger buffer every time.
bool ReadAddresses(std::vector<AdapterAddress>& addresses) {
    ULONG bytes = FirstAddressBytes;
    for (int call = 0; call < AddressCalls; ++call) {
        const std::size_t count = bytes / sizeof(IP_ADAPTER_ADDRESSES) + 1;  // at least the bytes asked for
        const auto buffer = std::make_unique<IP_ADAPTER_ADDRESSES[]>(count);
        const ULONG error = GetAdaptersAddresses(AF_INET, AddressFlags, nullptr, buffer.get(), &bytes);
        if (error == ERROR_SUCCESS) addresses = AddressesOf(buffer.get());
        if (error != ERROR_BUFFER_OVERFLOW) return error == ERROR_SUCCESS;
    }
    return false;
}

}  // namespace

NetSample SampleNetwork(NetSampler& sampler, const std::vector<std::uint64_t>& interfaces,
                        const std::vector<std::wstring>& aliases) {
    const std::uint64_t now = GetTickCount64();  // before the work, which takes a varying time
    if (AreAddressesDue(sampler, now)) RefreshAdapterAddresses(sampler);
    const NetView view = SelectInterfaces(ReadInterfaceRows(sampler), interfaces, aliases);
    return AdvanceNetSampler(sampler, view, interfaces, now);
}

std::vector<NetRow> ListInterfaces(NetSampler& sampler) {
    RefreshAdapterAddresses(sampler);
    return ReadInterfaceRows(sampler);
}

std::vector<NetRow> ReadInterfaceRows(const NetSampler& sampler) {
    MIB_IF_TABLE2* table = nullptr;
    if (GetIfTable2(&table) != NO_ERROR || table == nullptr) {
        LogDebug(L"kestrane: GetIfTable2 ha fallado\n");
        return {};
    }
    std::vector<NetRow> rows;
    rows.reserve(table->NumEntries);
    for (ULONG i = 0; i < table->NumEntries; ++i)
        rows.push_back(RowOf(table->Table[i]));
    FreeMibTable(table);
    FillAddresses(rows, sampler.addresses);
    return rows;
}

void RefreshAdapterAddresses(NetSampler& sampler) {
    std::vector<AdapterAddress> addresses;
    const bool read = ReadAddresses(addresses);
    sampler.addressesTick = GetTickCount64();
    if (!read) {
        LogDebug(L"kestrane: GetAdaptersAddresses ha fallado; interfaces sin IP\n");
        return;
    }
    sampler.addresses = std::move(addresses);
}

}  // namespace kestrane
