#pragma once
// The machine's fixed disks and the volumes on them, out of the answers that the disk drivers give. A driver's answer
// is bytes: every offset in it is checked before it is followed.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/byte_reader.h"

namespace kestrane {

struct VolumeFacts {
    wchar_t letter = 0;            // as the root string has it
    std::uint64_t totalBytes = 0;  // 0 if unreadable
    std::uint64_t freeBytes = 0;   // available to the caller; 0 if unreadable
};

struct DiskFacts {
    std::uint32_t number = 0;          // the N of PhysicalDriveN
    std::wstring model;                // vendor and product; empty if unknown
    std::wstring bus;                  // empty if unknown
    std::uint64_t sizeBytes = 0;       // 0 if unknown
    std::vector<VolumeFacts> volumes;  // in the order of the drive letters
};

/// What a storage query says about a disk.
struct StorageFacts {
    bool isFixed = true;  // no USB, SD or MMC disk, and no removable medium
    std::wstring model;
    std::wstring bus;
};

/// The text for a STORAGE_BUS_TYPE, empty for those without one.
std::wstring_view BusName(std::uint32_t busType);

/// The product, with the vendor before it if there is one and the product does not name it already.
std::wstring ComposeModel(const std::wstring& vendor, const std::wstring& product);

/// Reads a STORAGE_DEVICE_DESCRIPTOR of which `returnedBytes` came back into `buffer`. Fewer than 40 say nothing: the
/// disk is taken as fixed and unknown. A text ends at its zero or with the buffer.
StorageFacts ParseStorageDescriptor(ByteSpan buffer, std::size_t returnedBytes);

/// `DiskSize` of a DISK_GEOMETRY_EX, in bytes; 0 if it does not lie within the bytes.
std::uint64_t ParseDiskSize(ByteSpan geometry);

/// The disk of the first of the VOLUME_DISK_EXTENTS; none if there is no extent. A volume that spans several disks is
/// shown under this one.
std::optional<std::uint32_t> ParseFirstExtentDisk(ByteSpan extents);

/// The roots, such as "C:\", in a list of texts that each end in a zero; an empty text or the end of the buffer ends
/// it.
std::vector<std::wstring> SplitDriveStrings(std::span<const wchar_t> buffer);

/// The disk of that number, or null.
DiskFacts* FindDisk(std::vector<DiskFacts>& disks, std::uint32_t number);

}  // namespace kestrane
