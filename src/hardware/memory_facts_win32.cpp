#include "hardware/hardware_facts_win32.h"

#include <windows.h>

namespace kestrane {
namespace {

constexpr DWORD RawSmbios = 0x52534D42;  // 'RSMB'
constexpr UINT RawHeaderBytes = 8;

/// Empty on failure, or if the data has changed its size in between.
std::vector<std::uint8_t> ReadRawSmbios() {
    const UINT bytes = GetSystemFirmwareTable(RawSmbios, 0, nullptr, 0);
    if (bytes <= RawHeaderBytes) return {};
    std::vector<std::uint8_t> data(bytes);
    if (GetSystemFirmwareTable(RawSmbios, 0, data.data(), bytes) != bytes) return {};
    return data;
}

/// The installed memory, or else what Windows can use of it; 0 if neither can be read.
std::uint64_t ReadTotalBytes() {
    ULONGLONG installedKilobytes = 0;
    if (GetPhysicallyInstalledSystemMemory(&installedKilobytes) != FALSE) return installedKilobytes << 10;
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof(status);
    return GlobalMemoryStatusEx(&status) != FALSE ? status.ullTotalPhys : 0;
}

}  // namespace

MemoryFacts ReadMemoryFacts() {
    MemoryFacts facts;
    const std::vector<std::uint8_t> rawSmbios = ReadRawSmbios();
    ParseSmbiosMemory(SmbiosTable(rawSmbios), facts);
    facts.totalBytes = ReadTotalBytes();
    return facts;
}

}  // namespace kestrane
