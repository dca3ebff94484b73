#pragma once
// The machine's fixed disks and their volumes, parsed from the replies of disk drivers. A reply is untrusted: every
// offset in it is checked before use.
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
    wchar_t letter = 0;            // as in the root string
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

/// The result of a storage query for a disk.
struct StorageFacts {
    bool isFixed = true;  // not a USB, SD or MMC disk, and not removable
    std::wstring model;
    std::wstring bus;
};

/// The name of a STORAGE_BUS_TYPE, empty for those without one.
std::wstring_view BusName(std::uint32_t busType);

/// The product, preceded by the vendor if there is one and the product does not contain it already.
std::wstring ComposeModel(const std::wstring& vendor, const std::wstring& product);

/// Reads a STORAGE_DEVICE_DESCRIPTOR of which `returnedBytes` were returned in `buffer`. With fewer than 40 the disk
/// counts as fixed and unknown. A text ends at its terminator or with the buffer.
StorageFacts ParseStorageDescriptor(ByteSpan buffer, std::size_t returnedBytes);

/// `DiskSize` of a DISK_GEOMETRY_EX, in bytes; 0 if `geometry` is too short.
std::uint64_t ParseDiskSize(ByteSpan geometry);

/// The disk of the first extent in VOLUME_DISK_EXTENTS; none without extents. A volume that spans several disks is
/// listed under this one.
std::optional<std::uint32_t> ParseFirstExtentDisk(ByteSpan extents);

/// The roots, such as "C:\", in a list of null-terminated strings, which ends at an empty string or with the buffer.
std::vector<std::wstring> SplitDriveStrings(std::span<const wchar_t> buffer);

/// The disk with that number, or null.
DiskFacts* FindDisk(std::vector<DiskFacts>& disks, std::uint32_t number);

}  // namespace kestrane
