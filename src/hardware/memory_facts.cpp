#include "hardware/memory_facts.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "text/text_util.h"

namespace kestrane {
namespace {

// The raw data: four bytes of versions, then the length of the table that follows.
constexpr std::size_t TableLengthOffset = 4;
constexpr std::size_t RawHeaderBytes = 8;

// The published layout. Each structure is a formatted area, which starts with type and length, and then its strings,
// which end with two zero bytes, also if there are none.
constexpr std::uint8_t PhysicalMemoryArray = 16;
constexpr std::uint8_t MemoryDevice = 17;
constexpr std::uint8_t EndOfTable = 127;
constexpr std::size_t TypeOffset = 0;
constexpr std::size_t LengthOffset = 1;
constexpr std::size_t HeaderBytes = 4;

// Physical Memory Array. Later versions of SMBIOS added fields, so an array or a device may be too short for some.
constexpr std::size_t MaximumCapacityOffset = 7;  // in KiB
constexpr std::size_t ExtendedCapacityOffset = 15;
constexpr std::size_t ArrayBytes = 15;
constexpr std::size_t ExtendedArrayBytes = 23;
constexpr std::uint32_t CapacityIsExtended = 0x80000000;

// Memory Device.
constexpr std::size_t SizeOffset = 12;
constexpr std::size_t FormFactorOffset = 14;
constexpr std::size_t MemoryTypeOffset = 18;
constexpr std::size_t DeviceBytes = 21;
constexpr std::size_t SpeedOffset = 21;
constexpr std::size_t ManufacturerOffset = 23;
constexpr std::size_t PartNumberOffset = 26;
constexpr std::size_t DeviceWithStringsBytes = 27;
constexpr std::size_t ExtendedSizeOffset = 28;
constexpr std::size_t ExtendedDeviceBytes = 32;
constexpr std::size_t ConfiguredSpeedOffset = 32;
constexpr std::uint16_t SizeIsExtended = 0x7FFF;
constexpr std::uint16_t SizeInKilobytes = 0x8000;  // a flag
constexpr std::uint16_t SizeUnknown = 0xFFFF;
constexpr std::uint16_t SpeedUnknown = 0xFFFF;

struct NameRow {
    std::uint8_t value;
    std::wstring_view name;
};
constexpr std::array<NameRow, 5> FormFactorRows{{
    {9, L"DIMM"},
    {11, SolderedFormFactor},  // row of chips
    {13, L"SODIMM"},
    {15, L"FB-DIMM"},
    {16, SolderedFormFactor},  // die
}};
constexpr std::array<NameRow, 10> MemoryTypeRows{{
    {18, L"DDR"},
    {19, L"DDR2"},
    {24, L"DDR3"},
    {26, L"DDR4"},
    {27, L"LPDDR"},
    {28, L"LPDDR2"},
    {29, L"LPDDR3"},
    {30, L"LPDDR4"},
    {34, L"DDR5"},
    {35, L"LPDDR5"},
}};

std::wstring NameOf(std::span<const NameRow> rows, std::uint8_t value) {
    const auto row = std::ranges::find(rows, value, &NameRow::value);
    return row != rows.end() ? std::wstring(row->name) : std::wstring();
}

/// What firmware writes into a string for which it has nothing.
constexpr std::array<std::string_view, 6> FillerWords{
    "Unknown", "Not Specified", "NO DIMM", "Undefined", "None", "To be filled by O.E.M.",
};

bool IsFiller(std::wstring_view text) {
    return std::ranges::any_of(FillerWords,
                               [text](std::string_view word) { return EqualIgnoringCase(text, WidenBytes(word)); });
}

struct Structure {
    ByteSpan fields;   // the formatted area
    ByteSpan strings;  // up to the next structure
};

/// Cuts the first structure off `table`; none if its length does not fit. Without the two zero bytes its strings go up
/// to the table's end.
std::optional<Structure> TakeStructure(ByteSpan& table) {
    const std::size_t length = U8At(table, LengthOffset);
    if (length < HeaderBytes || length > table.size()) return std::nullopt;
    const ByteSpan rest = table.subspan(length);
    const auto zeros =
        std::ranges::adjacent_find(rest, [](std::uint8_t a, std::uint8_t b) { return a == 0 && b == 0; });
    const auto next = zeros != rest.end() ? zeros + 2 : zeros;
    const Structure structure{table.first(length), ByteSpan(rest.begin(), next)};
    table = ByteSpan(next, rest.end());
    return structure;
}

void ReadCapacity(ByteSpan array, MemoryFacts& facts) {
    if (array.size() < ArrayBytes) return;
    const std::uint32_t kilobytes = U32At(array, MaximumCapacityOffset);
    if (kilobytes != CapacityIsExtended) {
        facts.maxCapacityGb = kilobytes >> 20;
    } else if (array.size() >= ExtendedArrayBytes) {
        facts.maxCapacityGb = static_cast<std::uint32_t>(U64At(array, ExtendedCapacityOffset) >> 30);
    }
}

/// In mebibytes.
std::uint32_t SizeOf(ByteSpan device) {
    const std::uint16_t size = U16At(device, SizeOffset);
    if (size == SizeUnknown) return 0;
    if (size == SizeIsExtended && device.size() >= ExtendedDeviceBytes) {
        return U32At(device, ExtendedSizeOffset) & 0x7FFFFFFF;  // the top bit is reserved
    }
    if ((size & SizeInKilobytes) != 0) return (size & ~SizeInKilobytes) >> 10;
    return size;
}

/// A device that ends before the speed has none: reading past its end gives 0.
std::uint32_t SpeedAt(ByteSpan device, std::size_t offset) {
    const std::uint16_t speed = U16At(device, offset);
    return speed != SpeedUnknown ? speed : 0;
}

MemorySlot ReadSlot(const Structure& structure) {
    const ByteSpan device = structure.fields;
    MemorySlot slot;
    slot.populated = U16At(device, SizeOffset) != 0;
    slot.sizeMb = SizeOf(device);
    slot.type = NameOf(MemoryTypeRows, U8At(device, MemoryTypeOffset));
    slot.speed = SpeedAt(device, SpeedOffset);
    slot.configuredSpeed = SpeedAt(device, ConfiguredSpeedOffset);
    if (device.size() >= DeviceWithStringsBytes) {
        slot.manufacturer = SmbiosString(structure.strings, U8At(device, ManufacturerOffset));
        slot.partNumber = SmbiosString(structure.strings, U8At(device, PartNumberOffset));
    }
    slot.formFactor = NameOf(FormFactorRows, U8At(device, FormFactorOffset));
    return slot;
}

}  // namespace

ByteSpan SmbiosTable(ByteSpan rawData) {
    if (rawData.size() < RawHeaderBytes) return {};
    const ByteSpan rest = rawData.subspan(RawHeaderBytes);
    return rest.first(std::min<std::size_t>(U32At(rawData, TableLengthOffset), rest.size()));
}

void ParseSmbiosMemory(ByteSpan table, MemoryFacts& facts) {
    while (const std::optional<Structure> structure = TakeStructure(table)) {
        const std::uint8_t type = U8At(structure->fields, TypeOffset);
        if (type == EndOfTable) return;
        if (type == PhysicalMemoryArray) ReadCapacity(structure->fields, facts);
        if (type == MemoryDevice && structure->fields.size() >= DeviceBytes) {
            facts.slots.push_back(ReadSlot(*structure));
            facts.hasSlots = true;
        }
    }
}

std::wstring SmbiosString(ByteSpan strings, std::uint8_t number) {
    if (number == 0) return {};
    for (; number > 1; --number) {
        const auto end = std::ranges::find(strings, std::uint8_t{0});
        if (end == strings.end()) return {};
        strings = ByteSpan(end + 1, strings.end());
    }
    const ByteSpan bytes(strings.begin(), std::ranges::find(strings, std::uint8_t{0}));
    const std::wstring text = TrimBlanks(std::wstring(bytes.begin(), bytes.end()));
    return IsFiller(text) ? std::wstring() : text;
}

}  // namespace kestrane
