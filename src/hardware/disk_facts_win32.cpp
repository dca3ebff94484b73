#include "hardware/hardware_facts_win32.h"

#include <windows.h>

#include <winioctl.h>

#include <array>
#include <cstddef>
#include <utility>

#include "base/handles_win32.h"
#include "text/number_text.h"

namespace kestrane {
namespace {

constexpr std::uint32_t DriveNumbers = 32;
constexpr DWORD DriveStringsLength = 127;

/// Opens a disk or volume for queries only, which needs no access rights.
UniqueFile OpenDevice(const std::wstring& path) {
    return UniqueFile(
        CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
}

/// A reply in a zeroed buffer.
template <std::size_t Bytes>
struct DeviceAnswer {
    bool succeeded = false;
    DWORD returnedBytes = 0;
    std::array<std::uint8_t, Bytes> buffer{};
};

template <std::size_t Bytes>
void AskDevice(const UniqueFile& device, DWORD code, void* question, DWORD questionBytes, DeviceAnswer<Bytes>& answer) {
    answer.succeeded = DeviceIoControl(device.Get(), code, question, questionBytes, answer.buffer.data(), DWORD{Bytes},
                                       &answer.returnedBytes, nullptr) != FALSE;
}

StorageFacts ReadStorageFacts(const UniqueFile& device) {
    STORAGE_PROPERTY_QUERY query{};
    query.PropertyId = StorageDeviceProperty;
    query.QueryType = PropertyStandardQuery;
    DeviceAnswer<1024> answer;
    AskDevice(device, IOCTL_STORAGE_QUERY_PROPERTY, &query, sizeof(query), answer);
    if (!answer.succeeded) return {};
    answer.buffer.back() = 0;
    return ParseStorageDescriptor(answer.buffer, answer.returnedBytes);
}

std::uint64_t ReadDiskSize(const UniqueFile& device) {
    DeviceAnswer<256> answer;
    AskDevice(device, IOCTL_DISK_GET_DRIVE_GEOMETRY_EX, nullptr, 0, answer);
    return answer.succeeded ? ParseDiskSize(answer.buffer) : 0;
}

std::vector<DiskFacts> ReadDisks() {
    std::vector<DiskFacts> disks;
    for (std::uint32_t number = 0; number < DriveNumbers; ++number) {
        const UniqueFile device = OpenDevice(L"\\\\.\\PhysicalDrive" + FormatInteger(number));
        if (!device) continue;  // gaps in the numbering are normal
        StorageFacts storage = ReadStorageFacts(device);
        const std::uint64_t sizeBytes = ReadDiskSize(device);
        if (!storage.isFixed) continue;
        disks.push_back({.number = number,
                         .model = std::move(storage.model),
                         .bus = std::move(storage.bus),
                         .sizeBytes = sizeBytes,
                         .volumes = {}});
    }
    return disks;
}

std::optional<std::uint32_t> ReadDiskOfVolume(wchar_t letter) {
    const UniqueFile device = OpenDevice(std::wstring(L"\\\\.\\") + letter + L':');
    if (!device) return std::nullopt;
    DeviceAnswer<512> answer;
    AskDevice(device, IOCTL_VOLUME_GET_VOLUME_DISK_EXTENTS, nullptr, 0, answer);
    if (!answer.succeeded) return std::nullopt;
    return ParseFirstExtentDisk(answer.buffer);
}

VolumeFacts ReadVolume(const std::wstring& root) {
    ULARGE_INTEGER freeBytes{};
    ULARGE_INTEGER totalBytes{};
    const bool read = GetDiskFreeSpaceExW(root.c_str(), &freeBytes, &totalBytes, nullptr) != FALSE;
    return {.letter = root.front(),
            .totalBytes = read ? totalBytes.QuadPart : 0,
            .freeBytes = read ? freeBytes.QuadPart : 0};
}

/// Empty if the strings do not fit.
std::vector<std::wstring> ReadDriveRoots() {
    std::array<wchar_t, DriveStringsLength + 1> buffer{};
    const DWORD length = GetLogicalDriveStringsW(DriveStringsLength, buffer.data());
    if (length == 0 || length > DriveStringsLength) return {};
    return SplitDriveStrings(buffer);
}

void AddVolumes(std::vector<DiskFacts>& disks) {
    for (const std::wstring& root : ReadDriveRoots()) {
        if (GetDriveTypeW(root.c_str()) != DRIVE_FIXED) continue;
        const std::optional<std::uint32_t> number = ReadDiskOfVolume(root.front());
        DiskFacts* disk = number ? FindDisk(disks, *number) : nullptr;
        if (disk != nullptr) disk->volumes.push_back(ReadVolume(root));
    }
}

}  // namespace

std::vector<DiskFacts> ReadDiskFacts() {
    std::vector<DiskFacts> disks = ReadDisks();
    AddVolumes(disks);
    return disks;
}

}  // namespace kestrane
