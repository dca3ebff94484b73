#include "hardware/disk_facts.h"

#include <algorithm>
#include <array>

#include "text/text_util.h"

namespace kestrane {
namespace {

// The documented layout of STORAGE_DEVICE_DESCRIPTOR.
constexpr std::size_t DescriptorBytes = 40;
constexpr std::size_t RemovableMediaOffset = 10;
constexpr std::size_t VendorIdOffsetOffset = 12;
constexpr std::size_t ProductIdOffsetOffset = 16;
constexpr std::size_t BusTypeOffset = 28;
// DISK_GEOMETRY_EX and VOLUME_DISK_EXTENTS.
constexpr std::size_t DiskSizeOffset = 24;
constexpr std::size_t ExtentCountOffset = 0;
constexpr std::size_t FirstExtentDiskOffset = 8;

struct BusRow {
    std::uint32_t type;
    std::wstring_view name;
};
constexpr std::array<BusRow, 8> BusRows{{
    {1, L"SCSI"},
    {3, L"ATA"},
    {8, L"RAID"},
    {10, L"SAS"},
    {11, L"SATA"},
    {14, L"virtual"},
    {15, L"virtual"},  // backed by a file
    {17, L"NVMe"},
}};

constexpr std::uint32_t BusUsb = 7;
constexpr std::uint32_t BusSd = 12;
constexpr std::uint32_t BusMmc = 13;

/// The text whose offset is stored at `field`; none if the offset is 0 or beyond the returned bytes.
std::wstring TextAt(ByteSpan buffer, std::size_t field, std::size_t returnedBytes) {
    const std::size_t offset = U32At(buffer, field);
    if (offset == 0 || offset >= std::min(returnedBytes, buffer.size())) return {};
    const ByteSpan rest = buffer.subspan(offset);
    const ByteSpan text(rest.begin(), std::ranges::find(rest, std::uint8_t{0}));
    return TrimBlanks(std::wstring(text.begin(), text.end()));
}

}  // namespace

std::wstring_view BusName(std::uint32_t busType) {
    const auto* const row = std::ranges::find(BusRows, busType, &BusRow::type);
    return row != BusRows.end() ? row->name : std::wstring_view();
}

std::wstring ComposeModel(const std::wstring& vendor, const std::wstring& product) {
    if (vendor.empty() || product.find(vendor) != std::wstring::npos) return product;
    return vendor + L' ' + product;
}

StorageFacts ParseStorageDescriptor(ByteSpan buffer, std::size_t returnedBytes) {
    StorageFacts facts;
    if (returnedBytes < DescriptorBytes) return facts;
    const std::uint32_t busType = U32At(buffer, BusTypeOffset);
    const bool isRemovable = U8At(buffer, RemovableMediaOffset) != 0;
    facts.isFixed = !isRemovable && busType != BusUsb && busType != BusSd && busType != BusMmc;
    facts.model = ComposeModel(TextAt(buffer, VendorIdOffsetOffset, returnedBytes),
                               TextAt(buffer, ProductIdOffsetOffset, returnedBytes));
    facts.bus = BusName(busType);
    return facts;
}

std::uint64_t ParseDiskSize(ByteSpan geometry) {
    return U64At(geometry, DiskSizeOffset);
}

std::optional<std::uint32_t> ParseFirstExtentDisk(ByteSpan extents) {
    if (U32At(extents, ExtentCountOffset) == 0) return std::nullopt;
    return U32At(extents, FirstExtentDiskOffset);
}

std::vector<std::wstring> SplitDriveStrings(std::span<const wchar_t> buffer) {
    std::vector<std::wstring> roots;
    while (!buffer.empty() && buffer.front() != L'\0') {
        const auto end = std::ranges::find(buffer, L'\0');
        roots.emplace_back(buffer.begin(), end);
        const bool hasMore = end != buffer.end();
        buffer = buffer.subspan(roots.back().size() + (hasMore ? 1 : 0));
    }
    return roots;
}

DiskFacts* FindDisk(std::vector<DiskFacts>& disks, std::uint32_t number) {
    const auto found = std::ranges::find(disks, number, &DiskFacts::number);
    return found != disks.end() ? &*found : nullptr;
}

}  // namespace kestrane
