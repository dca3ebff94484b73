#include "hardware/hardware_facts_win32.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstddef>

#include "text/text_util.h"

namespace kestrane {
namespace {

/// Processor 0 represents the whole machine.
constexpr const wchar_t* ProcessorKey = L"HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0";

std::wstring ReadProcessorName() {
    std::array<wchar_t, 256> name{};
    DWORD bytes = (name.size() - 1) * sizeof(wchar_t);  // the last character stays zero
    const LSTATUS status = RegGetValueW(HKEY_LOCAL_MACHINE, ProcessorKey, L"ProcessorNameString", RRF_RT_REG_SZ,
                                        nullptr, name.data(), &bytes);
    return status == ERROR_SUCCESS ? TrimBlanks(name.data()) : std::wstring();
}

std::uint32_t ReadBaseMhz() {
    DWORD mhz = 0;
    DWORD bytes = sizeof(mhz);
    const LSTATUS status =
        RegGetValueW(HKEY_LOCAL_MACHINE, ProcessorKey, L"~MHz", RRF_RT_REG_DWORD, nullptr, &mhz, &bytes);
    return status == ERROR_SUCCESS ? mhz : 0;
}

/// Empty on failure.
std::vector<std::uint8_t> ReadProcessorRecords() {
    DWORD bytes = 0;
    GetLogicalProcessorInformationEx(RelationAll, nullptr, &bytes);
    if (bytes == 0) return {};
    std::vector<std::uint8_t> records(bytes);
    auto* first = reinterpret_cast<SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX*>(records.data());
    if (GetLogicalProcessorInformationEx(RelationAll, first, &bytes) == FALSE) return {};
    records.resize(std::min<std::size_t>(bytes, records.size()));
    return records;
}

}  // namespace

CpuFacts ReadCpuFacts() {
    CpuFacts facts;
    facts.name = ReadProcessorName();
    facts.baseMhz = ReadBaseMhz();
    ParseProcessorRecords(ReadProcessorRecords(), facts);
    return facts;
}

}  // namespace kestrane
