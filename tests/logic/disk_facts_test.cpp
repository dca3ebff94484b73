#include "hardware/disk_facts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "support/record_bytes.h"

namespace kestrane {
namespace {

/// A descriptor as drivers return it: the fields, then the null-terminated texts.
Bytes Descriptor(std::uint32_t busType, std::string_view vendor, std::string_view product) {
    Bytes bytes(40);
    PutAt(bytes, 0, 40, 4);
    PutAt(bytes, 28, busType, 4);
    for (const auto& [field, text] : {std::pair(12, vendor), std::pair(16, product)}) {
        if (text.empty()) continue;
        PutAt(bytes, static_cast<std::size_t>(field), bytes.size(), 4);
        bytes.insert(bytes.end(), text.begin(), text.end());
        bytes.push_back(0);
    }
    PutAt(bytes, 4, bytes.size(), 4);
    return bytes;
}

StorageFacts Parse(const Bytes& bytes, std::size_t returnedBytes) {
    return ParseStorageDescriptor(ExactCopy(bytes).Span(), returnedBytes);
}

StorageFacts Parse(const Bytes& bytes) {
    return Parse(bytes, bytes.size());
}

TEST(BusName, NamesTheBusesOfTheTable) {
    const std::vector<std::wstring> names{L"",        L"SCSI",    L"", L"ATA",  L"",     L"", L"",
                                          L"",        L"RAID",    L"", L"SAS",  L"SATA", L"", L"",
                                          L"virtual", L"virtual", L"", L"NVMe", L"",     L""};
    for (std::uint32_t type = 0; type < names.size(); ++type)
        EXPECT_EQ(BusName(type), names[type]) << type;
    EXPECT_EQ(BusName(0x10000001), L"");
    EXPECT_EQ(BusName(0xFFFFFFFF), L"");
}

TEST(ComposeModel, AddsTheVendorThatTheProductLacks) {
    struct Row {
        const wchar_t* vendor;
        const wchar_t* product;
        const wchar_t* model;
    };
    for (const Row& row : std::vector<Row>{
             {L"ACME", L"ACME SSD 970", L"ACME SSD 970"},
             {L"ATA", L"ST1000", L"ATA ST1000"},
             {L"", L"ST1000", L"ST1000"},
             {L"", L"", L""},
             {L"Acme", L"ACME SSD", L"Acme ACME SSD"},  // the search is case-sensitive
             {L"ACME", L"SSD by ACME", L"SSD by ACME"},
             {L"ACME", L"", L"ACME "},
         }) {
        EXPECT_EQ(ComposeModel(row.vendor, row.product), row.model);
    }
}

TEST(StorageDescriptor, GivesModelAndBus) {
    const StorageFacts facts = Parse(Descriptor(17, "  ACME\t", " \t SSD 970  "));
    EXPECT_TRUE(facts.isFixed);
    EXPECT_EQ(facts.model, L"ACME SSD 970");
    EXPECT_EQ(facts.bus, L"NVMe");
}

TEST(StorageDescriptor, KeepsOnlyFixedInternalDisks) {
    for (std::uint32_t busType = 0; busType < 24; ++busType) {
        const bool isFixed = busType != 7 && busType != 12 && busType != 13;
        EXPECT_EQ(Parse(Descriptor(busType, "", "X")).isFixed, isFixed) << busType;
    }
    for (const std::uint8_t removable : {std::uint8_t{1}, std::uint8_t{2}, std::uint8_t{255}}) {
        Bytes bytes = Descriptor(11, "", "X");
        bytes[10] = removable;
        EXPECT_FALSE(Parse(bytes).isFixed);
    }
}

TEST(StorageDescriptor, SomeBusesHaveNoText) {
    for (const std::uint32_t busType : {2u, 16u}) {
        const StorageFacts facts = Parse(Descriptor(busType, "", "X"));
        EXPECT_TRUE(facts.isFixed);
        EXPECT_EQ(facts.model, L"X");
        EXPECT_EQ(facts.bus, L"");
    }
}

TEST(StorageDescriptor, FewerThanFortyBytesSayNothing) {
    for (std::size_t returned = 0; returned < 40; ++returned) {
        const StorageFacts facts = Parse(Descriptor(7, "ACME", "SSD"), returned);
        EXPECT_TRUE(facts.isFixed) << returned;  // even the bus type of a USB stick is ignored
        EXPECT_EQ(facts.model, L"") << returned;
        EXPECT_EQ(facts.bus, L"") << returned;
    }
    EXPECT_FALSE(Parse(Descriptor(7, "", ""), 40).isFixed);
}

TEST(StorageDescriptor, OffsetsAreUsedOnlyWithinWhatWasReturned) {
    struct Row {
        const char* what;
        std::uint32_t offset;
        std::size_t returned;
        const wchar_t* model;
    };
    // 40 bytes of fields, "SSD" and its terminator, and four more bytes of buffer that the call did not return.
    Bytes bytes = Descriptor(11, "", "SSD");
    bytes.insert(bytes.end(), {'o', 'l', 'd', 0});
    for (const Row& row : std::vector<Row>{
             {"none", 0, 44, L""},
             {"the text", 40, 44, L"SSD"},
             {"inside the text", 42, 44, L"D"},
             {"its zero", 43, 44, L""},
             {"the returned end", 44, 44, L""},
             {"behind it", 45, 44, L""},
             {"there, if more was returned", 44, 45, L"old"},
             {"the buffer's end", 48, 1000, L""},  // more returned than the buffer holds
             {"far away", 0xFFFFFFFF, 0xFFFFFFFF, L""},
             {"into the fields", 4, 44, L","},  // 44, the size of the descriptor
         }) {
        PutAt(bytes, 16, row.offset, 4);
        EXPECT_EQ(Parse(bytes, row.returned).model, row.model) << row.what;
    }
}

TEST(StorageDescriptor, ATextWithoutAnEndStopsWithTheBuffer) {
    Bytes bytes = Descriptor(11, "", "SSD");
    bytes.pop_back();
    EXPECT_EQ(Parse(bytes).model, L"SSD");
}

TEST(StorageDescriptor, BytesWidenToTheCharacterOfTheSameNumber) {
    EXPECT_EQ(Parse(Descriptor(11, "", "A\xE9\xFF")).model, L"A\u00E9\u00FF");
}

TEST(StorageDescriptor, RandomBytesAreReadWithinTheirBounds) {
    std::mt19937 random(20240608);
    for (int round = 0; round < 5000; ++round) {
        Bytes bytes = Descriptor(static_cast<std::uint32_t>(random() % 20), "ACME", "SSD");
        for (auto wrong = random() % 6; wrong > 0; --wrong) {
            bytes[random() % bytes.size()] = static_cast<std::uint8_t>(random());
        }
        bytes.resize(random() % 4 == 0 ? random() % (bytes.size() + 1) : bytes.size());
        const StorageFacts facts = Parse(bytes, random() % 4 == 0 ? random() : bytes.size());
        ASSERT_LE(facts.model.size(), 2 * bytes.size() + 1);
    }
}

TEST(DiskSize, StandsBehindTheGeometry) {
    Bytes bytes(256);
    PutAt(bytes, 24, 1'000'204'886'016, 8);
    EXPECT_EQ(ParseDiskSize(bytes), 1'000'204'886'016u);
    EXPECT_EQ(ParseDiskSize(ByteSpan(bytes).first(32)), 1'000'204'886'016u);
    EXPECT_EQ(ParseDiskSize(ByteSpan(bytes).first(31)), 0u);
    EXPECT_EQ(ParseDiskSize({}), 0u);
}

TEST(FirstExtentDisk, IsThatOfTheFirstExtent) {
    Bytes bytes(512);
    EXPECT_EQ(ParseFirstExtentDisk(bytes), std::nullopt);
    PutAt(bytes, 0, 1, 4);
    EXPECT_EQ(ParseFirstExtentDisk(bytes), 0u);
    PutAt(bytes, 0, 2, 4);
    PutAt(bytes, 8, 3, 4);
    PutAt(bytes, 32, 5, 4);  // the second extent
    EXPECT_EQ(ParseFirstExtentDisk(bytes), 3u);
    PutAt(bytes, 0, 0xFFFFFFFF, 4);
    EXPECT_EQ(ParseFirstExtentDisk(bytes), 3u);
    EXPECT_EQ(ParseFirstExtentDisk({}), std::nullopt);
}

TEST(DriveStrings, AreSplitAtTheirZeros) {
    struct Row {
        const char* what;
        std::wstring_view buffer;
        std::vector<std::wstring> roots;
    };
    using namespace std::string_view_literals;
    for (const Row& row : std::vector<Row>{
             {"three", L"A:\\\0C:\\\0D:\\\0\0\0"sv, {L"A:\\", L"C:\\", L"D:\\"}},
             {"none", L"\0\0"sv, {}},
             {"no buffer", L""sv, {}},
             {"nothing behind the end", L"C:\\\0\0D:\\\0\0"sv, {L"C:\\"}},
             {"no second zero", L"C:\\\0D:\\\0"sv, {L"C:\\", L"D:\\"}},
             {"no zero at all", L"C:\\\0D:\\"sv, {L"C:\\", L"D:\\"}},
             {"one character", L"C"sv, {L"C"}},
         }) {
        const std::vector<wchar_t> exact(row.buffer.begin(), row.buffer.end());
        EXPECT_EQ(SplitDriveStrings(exact), row.roots) << row.what;
    }
}

TEST(FindDisk, FindsByNumber) {
    std::vector<DiskFacts> disks(2);
    disks[1].number = 2;
    EXPECT_EQ(FindDisk(disks, 2), &disks[1]);
    EXPECT_EQ(FindDisk(disks, 1), nullptr);
    disks.clear();
    EXPECT_EQ(FindDisk(disks, 0), nullptr);
}

}  // namespace
}  // namespace kestrane
