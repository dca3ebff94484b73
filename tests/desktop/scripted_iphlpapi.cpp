// An iphlpapi.dll that answers from a text file, so that a test can simulate any network for the real program.
//
// The environment variable KESTRANE_NETWORK_SCRIPT names the file. It is read again at every call. Statuses and LUIDs
// are hexadecimal:
//
//     row|LUID|ALIAS|TYPE|STATE|FLAGS|IN|OUT   one interface: TYPE as in ifType, STATE 1 for up, FLAGS the first
//                                              byte of InterfaceAndOperStatusFlags (1 hardware, 2 filter), IN and OUT
//                                              octets
//     table|STATUS                             GetIfTable2 fails; with 0 it succeeds and gives no table
//     addresses|STATUS                         GetAdaptersAddresses fails, with 6F (overflow) by asking for one more
//                                              byte at each call. Without this line there are no adapters.
#include <winsock2.h>

#include <windows.h>

#include <ws2ipdef.h>

#include <iphlpapi.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string>

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

ULONG WINAPI GetAdaptersAddresses(ULONG, ULONG, void*, PIP_ADAPTER_ADDRESSES, PULONG size) {
    const ULONG status = ScriptedStatus(ReadScript(ScriptVariable), "addresses", ERROR_NO_DATA);
    if (status == ERROR_BUFFER_OVERFLOW) ++*size;
    return status;
}

}  // extern "C"
