#include "metrics/counter_items.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <string>
#include <string_view>
#include <vector>

#include "support/record_bytes.h"

namespace kestrane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint64_t Address = 0x7FF612345678;
constexpr std::uint32_t InvalidData = 0xC0000BBA;  // PDH_CSTATUS_INVALID_DATA

/// An answer under construction: items with one name each, followed by the names.
class Answer {
  public:
    explicit Answer(std::size_t items) : bytes_(items * CounterItemBytes) {}

    void Put(std::size_t item, std::uint64_t name, std::uint32_t status, double value) {
        PutAt(bytes_, item * CounterItemBytes, name, 8);
        PutAt(bytes_, item * CounterItemBytes + CounterItemStatus, status, 4);
        PutAt(bytes_, item * CounterItemBytes + CounterItemValue, std::bit_cast<std::uint64_t>(value), 8);
    }

    /// The address of the appended name, as the system would write it.
    std::uint64_t Append(std::wstring_view name) {
        const std::uint64_t place = Address + bytes_.size();
        for (const wchar_t c : name)
            kestrane::Put(bytes_, static_cast<std::uint64_t>(c), 2);
        return place;
    }

    std::vector<CounterValue> Read(std::size_t count) const {
        return ReadCounterItems(ExactCopy(bytes_).Span(), Address, count);
    }

  private:
    Bytes bytes_;
};

std::vector<std::wstring> NamesOf(const std::vector<CounterValue>& values) {
    std::vector<std::wstring> names;
    for (const CounterValue& value : values)
        names.push_back(value.name);
    return names;
}

TEST(CounterItems, AreReadInTheirOrder) {
    Answer answer(2);
    answer.Put(0, answer.Append({L"1 D:\0", 5}), 0, 12.5);
    answer.Put(1, answer.Append({L"0 C: \x00F1\0", 7}), 1, -3);
    const std::vector<CounterValue> values = answer.Read(2);
    EXPECT_THAT(NamesOf(values), ElementsAre(L"1 D:", L"0 C: \x00F1"));
    EXPECT_EQ(values[0].value, 12.5);
    EXPECT_EQ(values[1].value, -3);
}

TEST(CounterItems, OfBadStatusAreLeftOut) {
    Answer answer(3);
    const std::uint64_t name = answer.Append({L"0 C:\0", 5});
    answer.Put(0, name, InvalidData, 1);
    answer.Put(1, name, 2, 2);
    answer.Put(2, name, 0, 3);
    const std::vector<CounterValue> values = answer.Read(3);
    ASSERT_EQ(values.size(), 1u);
    EXPECT_EQ(values[0].value, 3);
}

TEST(CounterItems, WithANameElsewhereAreLeftOut) {
    Answer answer(5);
    const std::uint64_t name = answer.Append({L"0 C:\0", 5});
    answer.Put(0, 0, 0, 1);
    answer.Put(1, Address - 2, 0, 2);
    answer.Put(2, name + 10, 0, 3);  // past the last byte
    answer.Put(3, name + 1, 0, 4);   // between two characters
    answer.Put(4, name + 2, 0, 5);
    EXPECT_THAT(NamesOf(answer.Read(5)), ElementsAre(L" C:"));
}

TEST(CounterItems, ANameWithoutItsZeroEndsWithTheBuffer) {
    Answer answer(1);
    answer.Put(0, answer.Append(L"0,_Total"), 0, 1);
    EXPECT_THAT(NamesOf(answer.Read(1)), ElementsAre(L"0,_Total"));
}

TEST(CounterItems, AreNoMoreThanFit) {
    Answer answer(2);
    const std::uint64_t name = answer.Append({L"a\0", 2});
    answer.Put(0, name, 0, 1);
    answer.Put(1, name, 0, 2);
    EXPECT_EQ(answer.Read(4'000'000'000).size(), 2u);
    EXPECT_EQ(answer.Read(1).size(), 1u);
    EXPECT_THAT(answer.Read(0), IsEmpty());
    EXPECT_THAT(ReadCounterItems({}, Address, 3), IsEmpty());
}

TEST(IsUsableStatus, TakesValidAndNewDataOnly) {
    EXPECT_TRUE(IsUsableStatus(0));
    EXPECT_TRUE(IsUsableStatus(1));
    EXPECT_FALSE(IsUsableStatus(2));
    EXPECT_FALSE(IsUsableStatus(InvalidData));
}

}  // namespace
}  // namespace kestrane
