#include "metrics/samplers_win32.h"

#include <winsock2.h>

#include <windows.h>

#include <ws2ipdef.h>

#include <iphlpapi.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <deque>
#include <iterator>
#include <memory>
#include <vector>

#include "support/recorded_log.h"

namespace kestrane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const wchar_t* TableFailed = L"kestrane: GetIfTable2 ha fallado\n";
constexpr const wchar_t* AddressesFailed = L"kestrane: GetAdaptersAddresses ha fallado; interfaces sin IP\n";

MIB_IF_ROW2 Entry(std::uint64_t key, const wchar_t* alias, ULONG64 inOctets, ULONG64 outOctets) {
    MIB_IF_ROW2 entry{};
    entry.InterfaceLuid.Value = key;
    std::copy_n(alias, std::char_traits<wchar_t>::length(alias), entry.Alias);
    entry.InterfaceAndOperStatusFlags.HardwareInterface = 1;
    entry.OperStatus = IfOperStatusUp;
    entry.Type = IF_TYPE_ETHERNET_CSMACD;
    entry.InOctets = inOctets;
    entry.OutOctets = outOctets;
    return entry;
}

/// An adapter as GetAdaptersAddresses lists it.
struct FakeAdapter {
    std::uint64_t key = 0;
    bool hasAddress = true;
    std::vector<std::uint8_t> address{};  // the bytes of the socket address
    bool nullAddress = false;
};

std::vector<std::uint8_t> Ipv4(std::uint8_t a, std::uint8_t b, std::uint8_t c, std::uint8_t d) {
    // sockaddr_in: family, port, address, eight bytes of nothing.
    return {AF_INET, 0, 0x12, 0x34, a, b, c, d, 0, 0, 0, 0, 0, 0, 0, 0};
}

/// The system as set up by the test, and the calls made to it.
struct FakeNetwork {
    std::vector<std::string> calls;
    std::uint64_t now = 1'000'000;
    ULONG tableError = NO_ERROR;
    bool nullTable = false;
    std::vector<MIB_IF_ROW2> entries;
    std::deque<ULONG> addressErrors;  // one per call; when used up, success
    ULONG addressBytes = 15000;       // reported with an overflow
    std::vector<FakeAdapter> adapters;
    std::vector<ULONG> offeredBytes;
    int tables = 0;  // returned and not freed
    std::uint64_t addressDelayMs = 0;
};
FakeNetwork fakeNetwork;

ULONGLONG WINAPI FakeGetTickCount64() {
    fakeNetwork.calls.emplace_back("time");
    return fakeNetwork.now;
}

/// Writes the adapters as a linked list, with everything it points to, into one buffer.
void WriteAdapters(std::byte* buffer) {
    IP_ADAPTER_ADDRESSES* previous = nullptr;
    for (const FakeAdapter& fake : fakeNetwork.adapters) {
        auto* adapter = new (buffer) IP_ADAPTER_ADDRESSES{};
        auto* unicast = new (buffer + sizeof(*adapter)) IP_ADAPTER_UNICAST_ADDRESS{};
        auto* address = buffer + sizeof(*adapter) + sizeof(*unicast);
        std::ranges::transform(fake.address, address, [](std::uint8_t byte) { return std::byte{byte}; });
        adapter->Luid.Value = fake.key;
        if (fake.hasAddress) adapter->FirstUnicastAddress = unicast;
        unicast->Address.lpSockaddr = fake.nullAddress ? nullptr : reinterpret_cast<sockaddr*>(address);
        unicast->Address.iSockaddrLength = static_cast<INT>(fake.address.size());
        if (previous != nullptr) previous->Next = adapter;
        previous = adapter;
        buffer = address + 64;
    }
}

class NetSamplerTest : public testing::Test {
  protected:
    NetSamplerTest() {
        fakeNetwork = FakeNetwork();
        fakeNetwork.entries = {Entry(7, L"Ethernet", 1000, 100)};
        fakeNetwork.adapters = {{.key = 7, .address = Ipv4(192, 168, 1, 20)}};
        debugLines.clear();
    }
    ~NetSamplerTest() override { EXPECT_EQ(fakeNetwork.tables, 0); }

    NetSample Tick(std::uint64_t elapsedMs = 1000) {
        fakeNetwork.now += elapsedMs;
        fakeNetwork.calls.clear();
        return SampleNetwork(sampler, interfaces, aliases);
    }

    NetSampler sampler;
    std::vector<std::uint64_t> interfaces;
    std::vector<std::wstring> aliases;
};

TEST(Layout, IsThatOfTheSystem) {
    EXPECT_EQ(sizeof(MIB_IF_ROW2), 1352u);
    EXPECT_EQ(offsetof(MIB_IF_ROW2, Type), 1128u);
    EXPECT_EQ(offsetof(MIB_IF_ROW2, OperStatus), 1156u);
    EXPECT_EQ(offsetof(MIB_IF_ROW2, InOctets), 1208u);
    EXPECT_EQ(offsetof(MIB_IF_TABLE2, Table), 8u);
    EXPECT_EQ(offsetof(IP_ADAPTER_ADDRESSES, Luid), 224u);
}

TEST_F(NetSamplerTest, TakesTheTimeFirst) {
    Tick();
    EXPECT_THAT(fakeNetwork.calls, ElementsAre("time", "addresses 2 14 16384", "time", "table", "free"));
    Tick();
    EXPECT_THAT(fakeNetwork.calls, ElementsAre("time", "table", "free"));
}

TEST_F(NetSamplerTest, TwoTicksPassBeforeThereAreRates) {
    EXPECT_FALSE(Tick().hasRates);
    fakeNetwork.entries[0].InOctets += 1000;
    EXPECT_FALSE(Tick().hasRates);
    fakeNetwork.entries[0].InOctets += 1000;
    fakeNetwork.entries[0].OutOctets += 500;
    const NetSample sample = Tick();
    EXPECT_TRUE(sample.hasRates);
    EXPECT_TRUE(sample.connected);
    EXPECT_EQ(sample.downBitsPerSec, 8000u);
    EXPECT_EQ(sample.upBitsPerSec, 4000u);
    EXPECT_EQ(sample.label, L"Todas las conexiones");
}

TEST_F(NetSamplerTest, ASlowAddressCallDoesNotStretchTheTick) {
    for (int tick = 0; tick < 3; ++tick)
        Tick();
    fakeNetwork.addressDelayMs = 700;  // between the start of this tick and its reading of the octets
    Tick(60000);
    fakeNetwork.addressDelayMs = 0;
    EXPECT_EQ(sampler.lastTick + 700, fakeNetwork.now);
    EXPECT_EQ(sampler.addressesTick, fakeNetwork.now);
}

TEST_F(NetSamplerTest, SleepGivesAnAverageAndAResetNothing) {
    for (int tick = 0; tick < 3; ++tick)
        Tick();
    fakeNetwork.entries[0].InOctets += 3'600'000;
    EXPECT_EQ(Tick(3'600'000).downBitsPerSec, 8000u);
    fakeNetwork.entries[0] = Entry(7, L"Ethernet", 100, 100);
    EXPECT_EQ(Tick().downBitsPerSec, 0u);
    fakeNetwork.entries[0].InOctets += 1000;
    EXPECT_EQ(Tick().downBitsPerSec, 8000u);
}

TEST_F(NetSamplerTest, ARecreatedInterfaceIsFoundByItsName) {
    interfaces = {7};
    aliases = {L"ethernet"};
    for (int tick = 0; tick < 3; ++tick)
        Tick();
    fakeNetwork.entries = {Entry(99, L"Ethernet", 50000, 0)};
    NetSample sample = Tick();
    EXPECT_TRUE(sample.hasRates);
    EXPECT_TRUE(sample.connected);
    EXPECT_EQ(sample.label, L"Ethernet");
    EXPECT_EQ(sample.downBitsPerSec, 0u);
    fakeNetwork.entries[0].InOctets += 1000;
    EXPECT_EQ(Tick().downBitsPerSec, 8000u);
    fakeNetwork.entries.clear();  // vanished for good: its stored name stays in the label
    sample = Tick();
    EXPECT_FALSE(sample.connected);
    EXPECT_EQ(sample.label, L"ethernet");
    EXPECT_EQ(sample.downBitsPerSec, 0u);
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(NetSamplerTest, WithoutATableTheRatesAreZeroTwice) {
    for (const bool chosen : {false, true}) {
        for (const bool nullTable : {false, true}) {
            SCOPED_TRACE(testing::Message() << chosen << nullTable);
            fakeNetwork.tableError = NO_ERROR;
            fakeNetwork.nullTable = false;
            debugLines.clear();
            sampler = NetSampler();
            interfaces = chosen ? std::vector<std::uint64_t>{7} : std::vector<std::uint64_t>{};
            aliases = {L"My cable"};
            const auto grow = [] { fakeNetwork.entries[0].InOctets += 1000; };
            for (int tick = 0; tick < 3; ++tick)
                Tick();
            grow();
            EXPECT_EQ(Tick().downBitsPerSec, 8000u);
            if (nullTable) fakeNetwork.nullTable = true;
            if (!nullTable) fakeNetwork.tableError = ERROR_NOT_ENOUGH_MEMORY;
            grow();
            const NetSample failed = Tick();
            EXPECT_TRUE(failed.hasRates);
            EXPECT_EQ(failed.downBitsPerSec, 0u);
            EXPECT_EQ(failed.connected, !chosen);
            EXPECT_EQ(failed.label, chosen ? L"My cable" : L"Todas las conexiones");
            EXPECT_THAT(debugLines, ElementsAre(TableFailed));
            EXPECT_THAT(fakeNetwork.calls, testing::Not(testing::Contains("free")));
            fakeNetwork.tableError = NO_ERROR;
            fakeNetwork.nullTable = false;
            grow();
            EXPECT_EQ(Tick().downBitsPerSec, 0u);
            grow();
            EXPECT_EQ(Tick().downBitsPerSec, 8000u);
        }
    }
}

TEST_F(NetSamplerTest, AddressesAreAskedForOnceAMinute) {
    Tick();
    const std::uint64_t asked = fakeNetwork.now;
    fakeNetwork.now = asked + 58'999;
    Tick();
    EXPECT_THAT(fakeNetwork.calls, ElementsAre("time", "table", "free"));  // at 59999 ms
    Tick(1);
    EXPECT_EQ(fakeNetwork.calls.at(1), "addresses 2 14 16384");  // at 60000 ms
    EXPECT_EQ(sampler.addressesTick, asked + 60'000);
}

TEST_F(NetSamplerTest, AFailureOfTheAddressesKeepsTheOldOnesForAMinute) {
    Tick();
    ASSERT_EQ(sampler.addresses.size(), 1u);
    fakeNetwork.addressErrors = {ERROR_NO_DATA};
    for (int tick = 0; tick < 3; ++tick)
        Tick();
    EXPECT_THAT(debugLines, IsEmpty());
    fakeNetwork.entries[0].InOctets += 60'000;
    EXPECT_EQ(Tick(60'000).downBitsPerSec, 8000u);  // the counters go on
    EXPECT_THAT(debugLines, ElementsAre(AddressesFailed));
    EXPECT_EQ(sampler.addresses.at(0).ip, L"192.168.1.20");
    Tick(59'999);
    EXPECT_EQ(debugLines.size(), 1u);
    EXPECT_THAT(fakeNetwork.calls, ElementsAre("time", "table", "free"));
    fakeNetwork.adapters[0].address = Ipv4(10, 0, 0, 1);
    Tick(1);
    EXPECT_EQ(sampler.addresses.at(0).ip, L"10.0.0.1");
}

TEST_F(NetSamplerTest, AFirstFailureLeavesNoAddresses) {
    fakeNetwork.addressErrors = {ERROR_INVALID_PARAMETER};
    const std::vector<NetRow> rows = ListInterfaces(sampler);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].ip, L"");
    EXPECT_NE(sampler.addressesTick, 0u);
    EXPECT_THAT(debugLines, ElementsAre(AddressesFailed));
}

TEST_F(NetSamplerTest, ALargerBufferIsTriedUpToThreeCalls) {
    struct Row {
        std::deque<ULONG> errors;
        std::vector<ULONG> offered;
        bool read;
    };
    for (const Row& row : std::vector<Row>{
             {{}, {16384}, true},
             {{ERROR_BUFFER_OVERFLOW}, {16384, 40000}, true},
             {{ERROR_BUFFER_OVERFLOW, ERROR_BUFFER_OVERFLOW}, {16384, 40000, 40000}, true},
             {{ERROR_BUFFER_OVERFLOW, ERROR_BUFFER_OVERFLOW, ERROR_BUFFER_OVERFLOW}, {16384, 40000, 40000}, false},
             {{ERROR_BUFFER_OVERFLOW, ERROR_NO_DATA}, {16384, 40000}, false},
             {{ERROR_NO_DATA}, {16384}, false},
         }) {
        SCOPED_TRACE(testing::PrintToString(row.errors));
        NetSampler fresh;
        debugLines.clear();
        fakeNetwork.offeredBytes.clear();
        fakeNetwork.addressErrors = row.errors;
        fakeNetwork.addressBytes = 40000;
        RefreshAdapterAddresses(fresh);
        EXPECT_EQ(fakeNetwork.offeredBytes, row.offered);
        EXPECT_EQ(fresh.addresses.size(), row.read ? 1u : 0u);
        EXPECT_EQ(debugLines.size(), row.read ? 0u : 1u);
        EXPECT_EQ(fresh.addressesTick, fakeNetwork.now);
        fakeNetwork.addressErrors.clear();
    }
}

TEST_F(NetSamplerTest, OnlyIpv4BecomesText) {
    std::vector<std::uint8_t> ipv6 = Ipv4(1, 2, 3, 4);
    ipv6[0] = AF_INET6;
    fakeNetwork.adapters = {{.key = 1, .address = Ipv4(255, 0, 10, 9)},
                            {.key = 2, .hasAddress = false},
                            {.key = 3, .address = ipv6},
                            {.key = 4, .address = Ipv4(1, 2, 3, 4), .nullAddress = true},
                            {.key = 5, .address = {AF_INET, 0, 0, 0, 9, 9, 9, 9}}};  // too short for its family
    RefreshAdapterAddresses(sampler);
    std::vector<std::pair<std::uint64_t, std::wstring>> addresses;
    for (const AdapterAddress& address : sampler.addresses)
        addresses.emplace_back(address.key, address.ip);
    EXPECT_THAT(addresses,
                ElementsAre(std::pair(1, L"255.0.10.9"), std::pair(3, L""), std::pair(4, L""), std::pair(5, L"")));
}

TEST_F(NetSamplerTest, AnAdapterThatLostItsAddressLosesItHere) {
    Tick();
    fakeNetwork.adapters.clear();
    const std::vector<NetRow> rows = ListInterfaces(sampler);
    EXPECT_THAT(sampler.addresses, IsEmpty());
    EXPECT_EQ(rows.at(0).ip, L"");
    EXPECT_THAT(debugLines, IsEmpty());
}

TEST_F(NetSamplerTest, ListingRefreshesTheAddressesAtOnce) {
    Tick();
    fakeNetwork.adapters[0].address = Ipv4(10, 1, 2, 3);
    fakeNetwork.calls.clear();
    const std::vector<NetRow> rows = ListInterfaces(sampler);
    EXPECT_THAT(fakeNetwork.calls, ElementsAre("addresses 2 14 16384", "time", "table", "free"));
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].ip, L"10.1.2.3");
    EXPECT_TRUE(IsListableInterface(rows[0]));
}

TEST_F(NetSamplerTest, TakesTheFlagsOfEachEntry) {
    MIB_IF_ROW2 down = Entry(1, L"down", 1, 2);
    down.OperStatus = IfOperStatusDown;
    MIB_IF_ROW2 filter = Entry(2, L"filter", 3, 4);
    filter.InterfaceAndOperStatusFlags.FilterInterface = 1;
    MIB_IF_ROW2 loopback = Entry(3, L"loopback", 5, 6);
    loopback.Type = 24;
    loopback.InterfaceAndOperStatusFlags.HardwareInterface = 0;
    MIB_IF_ROW2 tunnel = Entry(4, L"tunnel", 7, 0xFFFF'FFFF'FFFF'FFFF);
    tunnel.Type = 131;
    tunnel.InterfaceAndOperStatusFlags.ConnectorPresent = 1;  // the flag after the two that count
    MIB_IF_ROW2 dormant = Entry(5, L"dormant", 0, 0);
    dormant.OperStatus = IfOperStatusDormant;
    MIB_IF_ROW2 unended = Entry(6, L"", 0, 0);
    std::ranges::fill(unended.Alias, L'a');
    fakeNetwork.entries = {down, filter, loopback, tunnel, dormant, unended};
    const std::vector<NetRow> rows = ReadInterfaceRows(sampler);
    ASSERT_EQ(rows.size(), 6u);
    std::string flags;
    for (const NetRow& row : rows) {
        flags += row.operUp ? 'U' : '-';
        flags += row.hardware ? 'H' : '-';
        flags += row.filter ? 'F' : '-';
        flags += row.loopback ? 'L' : '-';
        flags += row.tunnel ? "T " : "- ";
    }
    EXPECT_EQ(flags, "-H--- UHF-- U--L- UH--T -H--- UH--- ");
    EXPECT_EQ(rows[1].key, 2u);
    EXPECT_EQ(rows[1].alias, L"filter");
    EXPECT_EQ(rows[3].inOctets, 7u);
    EXPECT_EQ(rows[3].outOctets, 0xFFFF'FFFF'FFFF'FFFFu);
    EXPECT_EQ(rows[5].alias, std::wstring(257, L'a'));  // no further than the end of the field
}

TEST_F(NetSamplerTest, ATableOfSixtyRowsKeepsItsOrder) {
    fakeNetwork.entries.clear();
    for (std::uint64_t key = 100; key < 160; ++key)
        fakeNetwork.entries.push_back(Entry(key, L"x", key, key));
    const std::vector<NetRow> rows = ReadInterfaceRows(sampler);
    ASSERT_EQ(rows.size(), 60u);
    for (std::size_t i = 0; i < rows.size(); ++i)
        EXPECT_EQ(rows[i].key, 100 + i);
    fakeNetwork.entries.clear();
    EXPECT_THAT(ReadInterfaceRows(sampler), IsEmpty());
    EXPECT_THAT(debugLines, IsEmpty());
}

}  // namespace
}  // namespace kestrane

extern "C" {

decltype(&GetTickCount64) __imp_GetTickCount64 = &kestrane::FakeGetTickCount64;

NETIO_STATUS NTAPI GetIfTable2(PMIB_IF_TABLE2* table) {
    using kestrane::fakeNetwork;
    fakeNetwork.calls.emplace_back("table");
    static MIB_IF_TABLE2 leftover{.NumEntries = 1, .Table = {}};
    *table = &leftover;  // what a failing call leaves there must not be used
    if (fakeNetwork.tableError != NO_ERROR) return fakeNetwork.tableError;
    *table = nullptr;
    if (fakeNetwork.nullTable) return NO_ERROR;
    const std::size_t rowBytes = fakeNetwork.entries.size() * sizeof(MIB_IF_ROW2);
    auto* memory = static_cast<std::byte*>(::operator new(offsetof(MIB_IF_TABLE2, Table) + rowBytes));
    *table = reinterpret_cast<MIB_IF_TABLE2*>(memory);
    (*table)->NumEntries = static_cast<ULONG>(fakeNetwork.entries.size());
    if (rowBytes > 0) std::memcpy(memory + offsetof(MIB_IF_TABLE2, Table), fakeNetwork.entries.data(), rowBytes);
    ++fakeNetwork.tables;
    return NO_ERROR;
}

VOID NTAPI FreeMibTable(PVOID memory) {
    kestrane::fakeNetwork.calls.emplace_back("free");
    --kestrane::fakeNetwork.tables;
    ::operator delete(memory);
}

ULONG WINAPI GetAdaptersAddresses(ULONG family, ULONG flags, PVOID, PIP_ADAPTER_ADDRESSES adapters, PULONG bytes) {
    using kestrane::fakeNetwork;
    fakeNetwork.calls.push_back("addresses " + std::to_string(family) + " " + std::to_string(flags) + " " +
                                std::to_string(*bytes));
    fakeNetwork.offeredBytes.push_back(*bytes);
    EXPECT_GE(_msize(adapters), *bytes);
    fakeNetwork.now += fakeNetwork.addressDelayMs;
    ULONG error = ERROR_SUCCESS;
    if (!fakeNetwork.addressErrors.empty()) {
        error = fakeNetwork.addressErrors.front();
        fakeNetwork.addressErrors.pop_front();
    }
    if (error == ERROR_BUFFER_OVERFLOW) *bytes = fakeNetwork.addressBytes;
    if (error == ERROR_SUCCESS) kestrane::WriteAdapters(reinterpret_cast<std::byte*>(adapters));
    return error;
}

}  // extern "C"
