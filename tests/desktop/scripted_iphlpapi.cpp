// An iphlpapi.dll that answers from a text file, so that a test can simulate any network for the real program.
//
// The environment variable KESTRANE_NETWORK_SCRIPT names the file. It is read again at every call. Statuses and LUIDs
// are hexadecimal:
//
//     row|LUID|ALIAS|TYPE|STATE|FLAGS|IN|OUT   one interface: TYPE as in ifType, STATE 1 for up, FLAGS the first
//                                              byte of InterfaceAndOperStatusFlags (1 hardware, 2 filter), IN and OUT
//                                              octets
//     table|STATUS                             GetIfTable2 fails; with 0 it succeeds and gives no table
//     address|LUID|IP                          the first IPv4 address of an interface: A.B.C.D
//     addresses|STATUS                         GetAdaptersAddresses fails, with 6F (overflow) by asking for one more
//                                              byte at each call. Without either line there are no adapters.
#include <winsock2.h>

#include <windows.h>

#include <ws2ipdef.h>

#include <iphlpapi.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>
#include <vector>

#include "script_file.h"

namespace {

constexpr const wchar_t* ScriptVariable = L"KESTRANE_NETWORK_SCRIPT";

/// The first status that the script sets for this call, or `otherwise`.
NETIO_STATUS ScriptedStatus(const Script& script, const char* call, NETIO_STATUS otherwise) {
    for (const Line& line : script) {
        if (line.size() == 2 && line[0] == call) return ParseStatus(line[1]);
    }
    return otherwise;
}

bool HasLine(const Script& script, const char* call) {
    return std::any_of(script.begin(), script.end(),
                       [&](const Line& line) { return !line.empty() && line[0] == call; });
}

void FillRow(const Line& line, MIB_IF_ROW2& row) {
    row.InterfaceLuid.Value = std::strtoull(line[1].c_str(), nullptr, 16);
    const std::wstring alias = Widen(line[2]);
    std::copy_n(alias.begin(), std::min(alias.size(), std::size(row.Alias)), row.Alias);  // no terminator if full
    row.Type = std::strtoul(line[3].c_str(), nullptr, 10);
    row.OperStatus = static_cast<IF_OPER_STATUS>(std::strtoul(line[4].c_str(), nullptr, 10));
    const auto flags = static_cast<unsigned char>(std::strtoul(line[5].c_str(), nullptr, 10));
    std::memcpy(&row.InterfaceAndOperStatusFlags, &flags, 1);
    row.InOctets = std::strtoull(line[6].c_str(), nullptr, 10);
    row.OutOctets = std::strtoull(line[7].c_str(), nullptr, 10);
}

MIB_IF_TABLE2* BuildTable(const Script& script) {
    const std::size_t bytes = offsetof(MIB_IF_TABLE2, Table) + (script.size() + 1) * sizeof(MIB_IF_ROW2);
    auto* table = static_cast<MIB_IF_TABLE2*>(std::calloc(1, bytes));
    for (const Line& line : script) {
        if (line.size() == 8 && line[0] == "row") FillRow(line, table->Table[table->NumEntries++]);
    }
    return table;
}

/// An adapter with its one address, both in the caller's buffer.
struct Adapter {
    IP_ADAPTER_ADDRESSES head;
    IP_ADAPTER_UNICAST_ADDRESS unicast;
    sockaddr_in address;
};

void FillAdapters(const std::vector<Line>& lines, Adapter* adapters) {
    std::memset(adapters, 0, lines.size() * sizeof(Adapter));
    for (std::size_t i = 0; i < lines.size(); ++i) {
        Adapter& adapter = adapters[i];
        unsigned bytes[4] = {};
        std::sscanf(lines[i][2].c_str(), "%u.%u.%u.%u", &bytes[0], &bytes[1], &bytes[2], &bytes[3]);
        for (int at = 0; at < 4; ++at)
            reinterpret_cast<unsigned char*>(&adapter.address.sin_addr)[at] = static_cast<unsigned char>(bytes[at]);
        adapter.address.sin_family = AF_INET;
        adapter.unicast.Address = {reinterpret_cast<sockaddr*>(&adapter.address), sizeof adapter.address};
        adapter.head.FirstUnicastAddress = &adapter.unicast;
        adapter.head.Luid.Value = std::strtoull(lines[i][1].c_str(), nullptr, 16);
        if (i + 1 < lines.size()) adapter.head.Next = &adapters[i + 1].head;
    }
}

}  // namespace

extern "C" {

NETIO_STATUS WINAPI GetIfTable2(PMIB_IF_TABLE2* table) {
    const Script script = ReadScript(ScriptVariable);
    *table = HasLine(script, "table") ? nullptr : BuildTable(script);
    return ScriptedStatus(script, "table", NO_ERROR);
}

void WINAPI FreeMibTable(void* table) {
    std::free(table);
}

ULONG WINAPI GetAdaptersAddresses(ULONG, ULONG, void*, PIP_ADAPTER_ADDRESSES addresses, PULONG size) {
    const Script script = ReadScript(ScriptVariable);
    std::vector<Line> lines;
    std::copy_if(script.begin(), script.end(), std::back_inserter(lines),
                 [](const Line& line) { return line.size() == 3 && line[0] == "address"; });
    const ULONG status = ScriptedStatus(script, "addresses", lines.empty() ? ERROR_NO_DATA : NO_ERROR);
    if (status == ERROR_BUFFER_OVERFLOW) ++*size;
    if (status != NO_ERROR || lines.empty()) return status;
    const auto room = static_cast<ULONG>(lines.size() * sizeof(Adapter));
    const bool fits = addresses != nullptr && *size >= room;
    *size = room;
    if (!fits) return ERROR_BUFFER_OVERFLOW;
    FillAdapters(lines, reinterpret_cast<Adapter*>(addresses));
    return NO_ERROR;
}

}  // extern "C"
