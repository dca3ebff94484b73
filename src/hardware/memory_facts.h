#pragma once
// Facts about the memory and its slots, from the SMBIOS table that the firmware publishes. Firmware is often wrong, so
// the table is untrusted: every length and string number in it is checked before use.
#include <cstdint>
#include <string>
#include <vector>

#include "base/byte_reader.h"

namespace kestrane {

/// The form factor of memory that cannot be removed.
inline constexpr const wchar_t* SolderedFormFactor = L"soldada";

struct MemorySlot {
    bool populated = false;
    std::uint32_t sizeMb = 0;           // in mebibytes; 0 if populated but of unknown size
    std::wstring type;                  // such as "DDR4"; empty if unknown
    std::uint32_t speed = 0;            // in MT/s, as rated; 0 if unknown
    std::uint32_t configuredSpeed = 0;  // in MT/s; 0 if unknown
    std::wstring manufacturer;          // empty if unknown
    std::wstring partNumber;            // empty if unknown
    std::wstring formFactor;            // such as "DIMM", or SolderedFormFactor; empty if unknown
};

struct MemoryFacts {
    bool hasSlots = false;
    std::vector<MemorySlot> slots;    // in the order of the table, empty ones included
    std::uint32_t maxCapacityGb = 0;  // that the machine can take, in gibibytes; 0 if unknown
    std::uint64_t totalBytes = 0;     // installed
};

/// The structure table in the raw data that GetSystemFirmwareTable returns for 'RSMB': a header of 8 bytes, which ends
/// with the table's length, then the table, cut where the data ends. Empty without a whole header.
ByteSpan SmbiosTable(ByteSpan rawData);

/// Adds a slot for each memory device of the table and takes the maximum capacity of its last memory array that gives
/// one. The walk stops at the table's end mark or at the first structure that does not fit; those before it count.
void ParseSmbiosMemory(ByteSpan table, MemoryFacts& facts);

/// String `number`, from 1, of the null-terminated strings of a structure, without blanks around it. Each byte is one
/// character. Empty if there is no such string, or if it is one of the words by which firmware says that it does not
/// know, such as "Not Specified".
std::wstring SmbiosString(ByteSpan strings, std::uint8_t number);

}  // namespace kestrane
