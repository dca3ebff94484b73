#include "desktop/notify_record.h"

#include "support/record_bytes.h"

#include <gtest/gtest.h>

#include <array>
#include <cwchar>

namespace kestrane {
namespace {

constexpr GUID IconGuid = {0x6D809377, 0x6AF0, 0x444B, {0x89, 0x57, 0xA3, 0x77, 0x3F, 0x02, 0x20, 0x0E}};
constexpr std::size_t MaskOf16 = 16 * 16 / 8;
constexpr std::size_t ColorsOf16 = 16 * 16 * 4;

void PutHead(Bytes& bytes) {
    for (const std::uint32_t field : {0x10052U, 3U, 0x27U, 0x8001U})  // window, id, flags, callback
        Put(bytes, field, 4);
}

void PutIcon(Bytes& bytes, std::uint32_t side, std::uint32_t bitsPerPixel = 32) {
    for (const std::uint32_t field : {side, side, side == 0 ? 0U : 1U, side == 0 ? 0U : bitsPerPixel})
        Put(bytes, field, 4);
}

void PutTexts(Bytes& bytes) {
    const auto putText = [&](std::wstring_view text, std::size_t units) {
        for (std::size_t i = 0; i < units; ++i)
            Put(bytes, i < text.size() ? text[i] : 0, 2);
    };
    putText(L"CPU 12 %", 128);
    Put(bytes, 5, 4);  // state
    Put(bytes, 6, 4);  // its mask
    putText(L"Info", 256);
    Put(bytes, 4, 4);  // version
    putText(L"Title", 64);
    Put(bytes, 7, 4);  // flags of the info
    Put(bytes, IconGuid.Data1, 4);
    Put(bytes, IconGuid.Data2, 2);
    Put(bytes, IconGuid.Data3, 2);
    for (const std::uint8_t byte : IconGuid.Data4)
        Put(bytes, byte, 1);
}

Bytes Wine8Record(std::uint32_t side) {
    Bytes bytes;
    PutHead(bytes);
    PutTexts(bytes);
    PutIcon(bytes, side);
    return bytes;
}

Bytes Wine10Record(std::uint32_t side, std::uint32_t balloonSide) {
    Bytes bytes;
    PutHead(bytes);
    PutIcon(bytes, side);
    PutTexts(bytes);
    PutIcon(bytes, balloonSide);
    return bytes;
}

void PutBits(Bytes& bytes, std::size_t maskSize, std::size_t colorSize) {
    bytes.insert(bytes.end(), maskSize, 0x4D);
    bytes.insert(bytes.end(), colorSize, 0xC0);
}

void ExpectFields(const std::optional<NotifyRecord>& record) {
    ASSERT_TRUE(record);
    EXPECT_EQ(record->window, 0x10052);
    EXPECT_EQ(record->id, 3U);
    EXPECT_EQ(record->flags, 0x27U);
    EXPECT_EQ(record->callbackMessage, 0x8001U);
    EXPECT_STREQ(record->tip, L"CPU 12 %");
    EXPECT_EQ(record->state, 5U);
    EXPECT_EQ(record->stateMask, 6U);
    EXPECT_STREQ(record->info, L"Info");
    EXPECT_EQ(record->version, 4U);
    EXPECT_STREQ(record->infoTitle, L"Title");
    EXPECT_EQ(record->infoFlags, 7U);
    EXPECT_TRUE(IsEqualGUID(record->guid, IconGuid));
}

void ExpectIconOf16(const std::optional<NotifyRecord>& record) {
    ASSERT_TRUE(record);
    EXPECT_EQ(record->width, 16U);
    EXPECT_EQ(record->height, 16U);
    EXPECT_EQ(record->bitsPerPixel, 32U);
    ASSERT_EQ(record->bits.size(), MaskOf16 + ColorsOf16);
    EXPECT_EQ(record->bits.front(), 0x4D);
    EXPECT_EQ(record->bits[MaskOf16 - 1], 0x4D);
    EXPECT_EQ(record->bits[MaskOf16], 0xC0);
    EXPECT_EQ(record->bits.back(), 0xC0);
}

TEST(NotifyRecord, OfWine8IsReadWithAndWithoutAnIcon) {
    const ExactCopy bare(Wine8Record(0));
    ASSERT_EQ(bare.Span().size(), 960U);
    const auto record = ReadNotifyRecord(bare.Span());
    ExpectFields(record);
    EXPECT_EQ(record->width, 0U);
    EXPECT_TRUE(record->bits.empty());

    Bytes bytes = Wine8Record(16);
    PutBits(bytes, MaskOf16, ColorsOf16);
    const ExactCopy withIcon(bytes);
    ExpectFields(ReadNotifyRecord(withIcon.Span()));
    ExpectIconOf16(ReadNotifyRecord(withIcon.Span()));
}

TEST(NotifyRecord, OfWine10IsReadWithAndWithoutAnIcon) {
    const ExactCopy bare(Wine10Record(0, 0));
    ASSERT_EQ(bare.Span().size(), 976U);
    const auto record = ReadNotifyRecord(bare.Span());
    ExpectFields(record);
    EXPECT_EQ(record->width, 0U);
    EXPECT_TRUE(record->bits.empty());

    Bytes bytes = Wine10Record(16, 0);
    PutBits(bytes, MaskOf16, ColorsOf16);
    const ExactCopy withIcon(bytes);
    ExpectFields(ReadNotifyRecord(withIcon.Span()));
    ExpectIconOf16(ReadNotifyRecord(withIcon.Span()));
}

TEST(NotifyRecord, LeavesTheBalloonsIconAside) {
    Bytes bytes = Wine10Record(16, 32);
    PutBits(bytes, MaskOf16, ColorsOf16);
    bytes.insert(bytes.end(), 32 * 32 / 8 + 32 * 32 * 4, 0xBB);
    const ExactCopy copy(bytes);
    ExpectIconOf16(ReadNotifyRecord(copy.Span()));
}

TEST(NotifyRecord, KeepsAMaskWithoutPaddedRows) {
    Bytes bytes = Wine8Record(24);  // a row of 24 pixels is no multiple of 16 bits
    PutBits(bytes, 24 * 24 / 8, 24 * 24 * 4);
    const ExactCopy copy(bytes);
    const auto record = ReadNotifyRecord(copy.Span());
    ASSERT_TRUE(record);
    EXPECT_EQ(MaskBytes(*record), 24U * 24 / 8);
    EXPECT_EQ(record->bits[MaskBytes(*record)], 0xC0);
}

TEST(NotifyRecord, OfAnotherLengthIsNotTakenForOneOfThese) {
    for (const std::size_t size : {0U, 16U, 959U, 961U, 975U, 977U, 2000U, 2032U}) {
        Bytes bytes = Wine8Record(0);
        bytes.resize(size);
        EXPECT_FALSE(ReadNotifyRecord(ExactCopy(bytes).Span())) << size;
    }
    Bytes missesOne = Wine10Record(16, 0);
    PutBits(missesOne, MaskOf16, ColorsOf16 - 1);
    EXPECT_FALSE(ReadNotifyRecord(ExactCopy(missesOne).Span()));
}

}  // namespace
}  // namespace kestrane
