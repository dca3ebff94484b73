#include "hardware/hardware_facts_win32.h"
#include "support/real_call_win32.h"

#include <windows.h>

#include <winioctl.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kestrane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Bytes = std::vector<std::uint8_t>;

/// The replies of a disk or volume; an empty one is a failing call.
struct FakeDevice {
    Bytes descriptor;
    Bytes geometry;
    Bytes extents;
    DWORD returnedBytes = 0;  // the claimed size; 0: that of the reply
    bool answersAndFails = false;
};

struct FakeVolume {
    UINT type = DRIVE_FIXED;
    bool hasSpace = true;
    std::uint64_t freeBytes = 0;
    std::uint64_t totalBytes = 0;
};

struct FakeMachine {
    std::map<std::wstring, FakeDevice> devices;  // by path
    std::vector<std::pair<std::wstring, FakeVolume>> volumes;
    DWORD driveStringsLength = 0;  // 0: that of the volumes' roots
    bool driveStringsWork = true;
    std::vector<std::wstring> opened;  // every path asked for
    std::vector<std::wstring> handles;
    std::size_t openHandles = 0;
    std::vector<std::wstring> spaceAsked;
};
FakeMachine fakeMachine;

/// The function of the real system behind a replaced import.
constexpr std::uintptr_t FirstHandle = 0x0FAC'0000;

bool IsFakeHandle(HANDLE handle) {
    const auto number = reinterpret_cast<std::uintptr_t>(handle);
    return number >= FirstHandle && number < FirstHandle + fakeMachine.handles.size();
}

// The test framework opens files too; those go to the real system.
HANDLE WINAPI FakeCreateFileW(const wchar_t* path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                              DWORD disposition, DWORD flags, HANDLE pattern) {
    if (!std::wstring_view(path).starts_with(L"\\\\.\\")) {
        return REAL(L"kernel32", CreateFileW)(path, access, share, security, disposition, flags, pattern);
    }
    EXPECT_EQ(access, 0u);
    EXPECT_EQ(share, DWORD{FILE_SHARE_READ | FILE_SHARE_WRITE});
    EXPECT_EQ(disposition, DWORD{OPEN_EXISTING});
    fakeMachine.opened.emplace_back(path);
    if (!fakeMachine.devices.contains(path)) return INVALID_HANDLE_VALUE;
    fakeMachine.handles.emplace_back(path);
    ++fakeMachine.openHandles;
    return reinterpret_cast<HANDLE>(FirstHandle + fakeMachine.handles.size() - 1);
}

BOOL WINAPI FakeCloseHandle(HANDLE handle) {
    if (!IsFakeHandle(handle)) return REAL(L"kernel32", CloseHandle)(handle);
    --fakeMachine.openHandles;
    return TRUE;
}

bool IsZeroed(const void* buffer, DWORD bytes) {
    const auto* first = static_cast<const std::uint8_t*>(buffer);
    return std::all_of(first, first + bytes, [](std::uint8_t byte) { return byte == 0; });
}

void ExpectStorageQuery(const void* in, DWORD inBytes) {
    ASSERT_GE(inBytes, 8u);
    std::uint32_t fields[2];
    std::memcpy(fields, in, sizeof(fields));
    EXPECT_EQ(fields[0], 0u);  // StorageDeviceProperty
    EXPECT_EQ(fields[1], 0u);  // PropertyStandardQuery
}

BOOL WINAPI FakeDeviceIoControl(HANDLE handle, DWORD code, void* in, DWORD inBytes, void* out, DWORD outBytes,
                                DWORD* returned, OVERLAPPED* overlapped) {
    EXPECT_NE(handle, INVALID_HANDLE_VALUE);
    if (!IsFakeHandle(handle)) {
        return REAL(L"kernel32", DeviceIoControl)(handle, code, in, inBytes, out, outBytes, returned, overlapped);
    }
    const auto index = reinterpret_cast<std::uintptr_t>(handle) - FirstHandle;
    const FakeDevice& device = fakeMachine.devices[fakeMachine.handles.at(index)];
    const Bytes* answer = nullptr;
    if (code == 0x2D1400) {
        ExpectStorageQuery(in, inBytes);
        EXPECT_EQ(outBytes, 1024u);
        answer = &device.descriptor;
    } else if (code == 0x700A0) {
        EXPECT_EQ(outBytes, 256u);
        answer = &device.geometry;
    } else if (code == 0x560000) {
        EXPECT_EQ(outBytes, 512u);
        answer = &device.extents;
    }
    EXPECT_NE(answer, nullptr) << code;
    EXPECT_TRUE(IsZeroed(out, outBytes));
    if (answer == nullptr || answer->empty()) {
        std::memset(out, 'x', outBytes);  // a failing call may scribble
        return FALSE;
    }
    std::memcpy(out, answer->data(), std::min<std::size_t>(answer->size(), outBytes));
    *returned = device.returnedBytes != 0 ? device.returnedBytes : static_cast<DWORD>(answer->size());
    return device.answersAndFails ? FALSE : TRUE;
}

DWORD WINAPI FakeGetLogicalDriveStringsW(DWORD length, wchar_t* buffer) {
    EXPECT_EQ(length, 127u);
    std::wstring strings;
    for (const auto& [root, volume] : fakeMachine.volumes)
        strings += root + L'\0';
    if (strings.size() + 1 > length) return static_cast<DWORD>(strings.size() + 1);
    std::ranges::copy(strings, buffer);
    if (!fakeMachine.driveStringsWork) return 0;  // after writing, as a failing call may
    return fakeMachine.driveStringsLength != 0 ? fakeMachine.driveStringsLength : static_cast<DWORD>(strings.size());
}

FakeVolume& VolumeOf(const wchar_t* root) {
    const auto found = std::ranges::find(fakeMachine.volumes, root, [](const auto& pair) { return pair.first; });
    EXPECT_NE(found, fakeMachine.volumes.end()) << "unknown root";
    return found->second;
}

UINT WINAPI FakeGetDriveTypeW(const wchar_t* root) {
    return VolumeOf(root).type;
}

BOOL WINAPI FakeGetDiskFreeSpaceExW(const wchar_t* root, ULARGE_INTEGER* available, ULARGE_INTEGER* total,
                                    ULARGE_INTEGER* free) {
    EXPECT_EQ(free, nullptr);
    fakeMachine.spaceAsked.emplace_back(root);
    available->QuadPart = VolumeOf(root).freeBytes;
    total->QuadPart = VolumeOf(root).totalBytes;
    return VolumeOf(root).hasSpace ? TRUE : FALSE;
}

template <typename Record>
Bytes BytesOf(const Record& record) {
    Bytes bytes(sizeof(record));
    std::memcpy(bytes.data(), &record, sizeof(record));
    return bytes;
}

/// Built with the headers' own structures, to check the parser's offsets against them.
Bytes Descriptor(STORAGE_BUS_TYPE bus, const char* vendor, const char* product, bool removable = false) {
    STORAGE_DEVICE_DESCRIPTOR record{};
    record.Version = sizeof(record);
    record.BusType = bus;
    record.RemovableMedia = removable ? TRUE : FALSE;
    record.VendorIdOffset = sizeof(record);
    record.ProductIdOffset = static_cast<DWORD>(sizeof(record) + std::strlen(vendor) + 1);
    Bytes bytes = BytesOf(record);
    for (const char* text : {vendor, product})
        bytes.insert(bytes.end(), text, text + std::strlen(text) + 1);
    return bytes;
}

Bytes Geometry(std::uint64_t size) {
    DISK_GEOMETRY_EX record{};
    record.DiskSize.QuadPart = static_cast<LONGLONG>(size);
    record.Geometry.BytesPerSector = 512;
    return BytesOf(record);
}

Bytes Extents(const std::vector<DWORD>& disks) {
    Bytes bytes{static_cast<std::uint8_t>(disks.size()), 0, 0, 0, 0, 0, 0, 0};
    for (const DWORD disk : disks) {
        DISK_EXTENT extent{};
        extent.DiskNumber = disk;
        extent.ExtentLength.QuadPart = -1;
        const Bytes one = BytesOf(extent);
        bytes.insert(bytes.end(), one.begin(), one.end());
    }
    return bytes;
}

std::wstring Disk(int number) {
    return L"\\\\.\\PhysicalDrive" + std::to_wstring(number);
}

class DiskFactsTest : public testing::Test {
  protected:
    DiskFactsTest() {
        fakeMachine = FakeMachine();
        fakeMachine.devices[Disk(0)] = {.descriptor = Descriptor(BusTypeNvme, "", "ACME SSD 970"),
                                        .geometry = Geometry(1'000'204'886'016),
                                        .extents = {}};
        AddVolume(L'C', {0}, 100, 400);
    }
    ~DiskFactsTest() override { EXPECT_EQ(fakeMachine.openHandles, 0u); }

    static void AddDisk(int number, const Bytes& descriptor) {
        fakeMachine.devices[Disk(number)] = {.descriptor = descriptor, .geometry = Geometry(500), .extents = {}};
    }

    static FakeVolume& AddVolume(wchar_t letter, const std::vector<DWORD>& disks, std::uint64_t freeBytes,
                                 std::uint64_t totalBytes) {
        const std::wstring name{letter, L':'};
        fakeMachine.devices[L"\\\\.\\" + name] = {.descriptor = {}, .geometry = {}, .extents = Extents(disks)};
        fakeMachine.volumes.emplace_back(
            name + L'\\', FakeVolume{.type = DRIVE_FIXED, .freeBytes = freeBytes, .totalBytes = totalBytes});
        return fakeMachine.volumes.back().second;
    }

    static std::vector<std::uint32_t> Numbers(const std::vector<DiskFacts>& disks) {
        std::vector<std::uint32_t> numbers;
        for (const DiskFacts& disk : disks)
            numbers.push_back(disk.number);
        return numbers;
    }

    static std::wstring Letters(const DiskFacts& disk) {
        std::wstring letters;
        for (const VolumeFacts& volume : disk.volumes)
            letters += volume.letter;
        return letters;
    }
};

TEST_F(DiskFactsTest, ReadsADiskAndItsVolume) {
    const std::vector<DiskFacts> disks = ReadDiskFacts();
    ASSERT_EQ(disks.size(), 1u);
    EXPECT_EQ(disks[0].number, 0u);
    EXPECT_EQ(disks[0].model, L"ACME SSD 970");
    EXPECT_EQ(disks[0].bus, L"NVMe");
    EXPECT_EQ(disks[0].sizeBytes, 1'000'204'886'016u);
    ASSERT_EQ(disks[0].volumes.size(), 1u);
    EXPECT_EQ(disks[0].volumes[0].letter, L'C');
    EXPECT_EQ(disks[0].volumes[0].freeBytes, 100u);
    EXPECT_EQ(disks[0].volumes[0].totalBytes, 400u);
}

TEST_F(DiskFactsTest, AsksForThirtyTwoNumbersAndListsThemInOrder) {
    for (const int number : {31, 32, 3})
        AddDisk(number, Descriptor(BusTypeSata, "ATA", "ST1000"));
    EXPECT_THAT(Numbers(ReadDiskFacts()), ElementsAre(0, 3, 31));
    ASSERT_EQ(fakeMachine.opened.size(), 33u);
    for (int number = 0; number < 32; ++number) {
        EXPECT_EQ(fakeMachine.opened[static_cast<std::size_t>(number)], Disk(number));
    }
    EXPECT_EQ(fakeMachine.opened[32], L"\\\\.\\C:");
}

TEST_F(DiskFactsTest, AMachineWithoutDisksIsEmpty) {
    fakeMachine.devices.clear();
    EXPECT_THAT(ReadDiskFacts(), IsEmpty());
}

TEST_F(DiskFactsTest, UsbAndOtherRemovableDisksAreLeftOutWithTheirVolumes) {
    AddDisk(1, Descriptor(BusTypeUsb, "ACME", "Stick"));
    AddDisk(2, Descriptor(BusTypeSd, "", "Card"));
    AddDisk(3, Descriptor(BusTypeMmc, "", "Card"));
    AddDisk(4, Descriptor(BusTypeSata, "", "Tray", true));
    AddVolume(L'D', {1}, 1, 2);
    AddVolume(L'E', {4}, 1, 2);
    const std::vector<DiskFacts> disks = ReadDiskFacts();
    EXPECT_THAT(Numbers(disks), ElementsAre(0));
    EXPECT_EQ(Letters(disks[0]), L"C");
    EXPECT_THAT(fakeMachine.spaceAsked, ElementsAre(L"C:\\"));
}

TEST_F(DiskFactsTest, AFailedStorageQueryKeepsTheDisk) {
    fakeMachine.devices[Disk(0)].descriptor.clear();
    const std::vector<DiskFacts> disks = ReadDiskFacts();
    ASSERT_EQ(disks.size(), 1u);
    EXPECT_EQ(disks[0].model, L"");
    EXPECT_EQ(disks[0].bus, L"");
    EXPECT_EQ(disks[0].sizeBytes, 1'000'204'886'016u);
    EXPECT_EQ(Letters(disks[0]), L"C");
}

/// As with ERROR_MORE_DATA, where what fits has been written.
TEST_F(DiskFactsTest, WhatAFailingCallHasWrittenIsNotUsed) {
    fakeMachine.devices[Disk(0)].descriptor = Descriptor(BusTypeUsb, "ACME", "Stick");
    fakeMachine.devices[Disk(0)].answersAndFails = true;
    AddVolume(L'D', {0}, 1, 2);
    fakeMachine.devices[L"\\\\.\\D:"].answersAndFails = true;
    const std::vector<DiskFacts> disks = ReadDiskFacts();
    ASSERT_EQ(disks.size(), 1u);
    EXPECT_EQ(disks[0].model, L"");
    EXPECT_EQ(disks[0].bus, L"");
    EXPECT_EQ(disks[0].sizeBytes, 0u);
    EXPECT_EQ(Letters(disks[0]), L"C");
}

TEST_F(DiskFactsTest, AShortStorageAnswerKeepsTheDisk) {
    fakeMachine.devices[Disk(0)].descriptor = Descriptor(BusTypeUsb, "ACME", "Stick");
    fakeMachine.devices[Disk(0)].returnedBytes = 39;
    const std::vector<DiskFacts> disks = ReadDiskFacts();
    ASSERT_EQ(disks.size(), 1u);
    EXPECT_EQ(disks[0].model, L"");
    EXPECT_EQ(disks[0].bus, L"");
}

TEST_F(DiskFactsTest, AFailedGeometryQueryLeavesTheSizeAtZero) {
    fakeMachine.devices[Disk(0)].geometry.clear();
    const std::vector<DiskFacts> disks = ReadDiskFacts();
    ASSERT_EQ(disks.size(), 1u);
    EXPECT_EQ(disks[0].sizeBytes, 0u);
    EXPECT_EQ(disks[0].model, L"ACME SSD 970");
}

TEST_F(DiskFactsTest, ModelAndBusFollowTheirRules) {
    AddDisk(1, Descriptor(BusTypeSata, "ACME", "ACME SSD 970"));
    AddDisk(2, Descriptor(BusTypeAta, " ATA ", "ST1000   "));
    AddDisk(3, Descriptor(static_cast<STORAGE_BUS_TYPE>(16), "", "Pool"));  // Storage Spaces
    AddDisk(4, Descriptor(BusTypeAtapi, "", "Old"));
    const std::vector<DiskFacts> disks = ReadDiskFacts();
    ASSERT_EQ(disks.size(), 5u);
    EXPECT_EQ(disks[1].model, L"ACME SSD 970");
    EXPECT_EQ(disks[1].bus, L"SATA");
    EXPECT_EQ(disks[2].model, L"ATA ST1000");
    EXPECT_EQ(disks[2].bus, L"ATA");
    EXPECT_EQ(disks[3].model, L"Pool");
    EXPECT_EQ(disks[3].bus, L"");
    EXPECT_EQ(disks[4].bus, L"");
}

TEST_F(DiskFactsTest, ATextThatFillsTheBufferIsEndedInItsLastByte) {
    Bytes bytes = Descriptor(BusTypeSata, "", "");
    bytes.pop_back();  // the product's zero
    bytes.resize(1024, 'x');
    fakeMachine.devices[Disk(0)].descriptor = bytes;
    const std::vector<DiskFacts> disks = ReadDiskFacts();
    ASSERT_EQ(disks.size(), 1u);
    EXPECT_EQ(disks[0].model, std::wstring(1023 - 41, L'x'));
}

TEST_F(DiskFactsTest, OnlyFixedVolumesAreAsked) {
    // All the other types: unknown, without root, removable, remote, CD, RAM disk.
    for (const UINT type : {0u, 1u, 2u, 4u, 5u, 6u}) {
        AddVolume(static_cast<wchar_t>(L'D' + type), {0}, 1, 2).type = type;
    }
    EXPECT_EQ(Letters(ReadDiskFacts().at(0)), L"C");
    EXPECT_EQ(fakeMachine.opened.size(), 33u);
}

TEST_F(DiskFactsTest, AVolumeIsListedUnderItsFirstExtentsDisk) {
    AddDisk(5, Descriptor(BusTypeSata, "", "Second"));
    AddVolume(L'S', {5, 0}, 1, 2);
    AddVolume(L'D', {0}, 3, 4);
    const std::vector<DiskFacts> disks = ReadDiskFacts();
    ASSERT_EQ(disks.size(), 2u);
    EXPECT_EQ(Letters(disks[0]), L"CD");  // in string order
    EXPECT_EQ(Letters(disks[1]), L"S");
}

TEST_F(DiskFactsTest, AVolumeThatDoesNotSayItsDiskIsDropped) {
    AddVolume(L'D', {0}, 1, 2);
    fakeMachine.devices.erase(L"\\\\.\\D:");  // cannot be opened
    AddVolume(L'E', {0}, 1, 2);
    fakeMachine.devices[L"\\\\.\\E:"].extents.clear();  // does not answer
    AddVolume(L'F', {}, 1, 2);                          // no extent
    AddVolume(L'G', {9}, 1, 2);                         // a disk that is not there
    AddVolume(L'H', {0}, 1, 2);
    EXPECT_EQ(Letters(ReadDiskFacts().at(0)), L"CH");
    EXPECT_THAT(fakeMachine.spaceAsked, ElementsAre(L"C:\\", L"H:\\"));
}

TEST_F(DiskFactsTest, AVolumeWithoutKnownSpaceIsListed) {
    fakeMachine.volumes[0].second.hasSpace = false;
    const std::vector<DiskFacts> disks = ReadDiskFacts();
    ASSERT_EQ(disks.at(0).volumes.size(), 1u);
    EXPECT_EQ(disks[0].volumes[0].freeBytes, 0u);
    EXPECT_EQ(disks[0].volumes[0].totalBytes, 0u);
}

TEST_F(DiskFactsTest, WithoutDriveStringsThereAreDisksWithoutVolumes) {
    fakeMachine.driveStringsWork = false;
    EXPECT_EQ(Letters(ReadDiskFacts().at(0)), L"");
}

TEST_F(DiskFactsTest, DriveStringsThatDoNotFitYieldNoVolumes) {
    for (int i = 0; i < 40; ++i)
        AddVolume(static_cast<wchar_t>(0x100 + i), {0}, 1, 2);
    EXPECT_EQ(Letters(ReadDiskFacts().at(0)), L"");
    fakeMachine.volumes.resize(1);
    fakeMachine.driveStringsLength = 128;  // and anything written is ignored
    EXPECT_EQ(Letters(ReadDiskFacts().at(0)), L"");
}

TEST_F(DiskFactsTest, TwentySixDrivesFit) {
    fakeMachine.volumes.clear();
    for (wchar_t letter = L'A'; letter <= L'Z'; ++letter)
        AddVolume(letter, {0}, 1, 2);
    EXPECT_EQ(Letters(ReadDiskFacts().at(0)), L"ABCDEFGHIJKLMNOPQRSTUVWXYZ");
}

}  // namespace
}  // namespace kestrane

extern "C" {
decltype(&CreateFileW) __imp_CreateFileW = &kestrane::FakeCreateFileW;
decltype(&CloseHandle) __imp_CloseHandle = &kestrane::FakeCloseHandle;
decltype(&DeviceIoControl) __imp_DeviceIoControl = &kestrane::FakeDeviceIoControl;
decltype(&GetLogicalDriveStringsW) __imp_GetLogicalDriveStringsW = &kestrane::FakeGetLogicalDriveStringsW;
decltype(&GetDriveTypeW) __imp_GetDriveTypeW = &kestrane::FakeGetDriveTypeW;
decltype(&GetDiskFreeSpaceExW) __imp_GetDiskFreeSpaceExW = &kestrane::FakeGetDiskFreeSpaceExW;
}
