// Any bytes as the firmware's raw SMBIOS data: every slot is well-formed and has its row, and a table that ends early
// loses slots only at its end.
#include <algorithm>
#include <array>

#include "fuzz/fuzz_target.h"
#include "hardware/memory_facts.h"
#include "hardware/summary_rows.h"

namespace kestrane {
namespace {

using fuzz::Require;

constexpr std::size_t ShortestDevice = 21;

MemoryFacts Parse(ByteSpan table) {
    MemoryFacts facts;
    ParseSmbiosMemory(table, facts);
    return facts;
}

void CheckString(const std::wstring& text, std::size_t tableBytes) {
    Require(text.size() <= tableBytes);
    Require(std::ranges::all_of(text, [](wchar_t c) { return c > 0 && c <= 0xFF; }));
    Require(text.empty() || (text.front() != L' ' && text.front() != L'\t'));
    Require(text.empty() || (text.back() != L' ' && text.back() != L'\t'));
    Require(text != L"Unknown" && text != L"NO DIMM");
}

void CheckFacts(const MemoryFacts& facts, ByteSpan table) {
    Require(facts.hasSlots == !facts.slots.empty());
    Require(facts.slots.size() <= table.size() / ShortestDevice);
    Require(facts.totalBytes == 0);
    for (const MemorySlot& slot : facts.slots) {
        Require(slot.populated || slot.sizeMb == 0);
        Require(slot.sizeMb <= 0x7FFFFFFF);
        Require(slot.speed < 0xFFFF && slot.configuredSpeed < 0xFFFF);
        CheckString(slot.manufacturer, table.size());
        CheckString(slot.partNumber, table.size());
    }
}

/// Only the strings of its last slot may differ from those of the whole table.
void CheckCut(const MemoryFacts& cut, const MemoryFacts& whole) {
    Require(cut.slots.size() <= whole.slots.size());
    for (std::size_t i = 0; i < cut.slots.size(); ++i) {
        const MemorySlot& slot = cut.slots[i];
        const MemorySlot& same = whole.slots[i];
        Require(slot.populated == same.populated && slot.sizeMb == same.sizeMb && slot.speed == same.speed);
        Require(slot.configuredSpeed == same.configuredSpeed);
        Require(slot.type == same.type && slot.formFactor == same.formFactor);
        if (i + 1 < cut.slots.size()) {
            Require(slot.manufacturer == same.manufacturer && slot.partNumber == same.partNumber);
        }
    }
}

void CheckRows(const std::vector<HardwareRow>& rows, const MemoryFacts& facts) {
    Require(rows.size() == 1 + facts.slots.size());
    Require(rows.front().label == L"Memoria" && !rows.front().value.empty());
    Require(rows.front().note.empty() == !facts.hasSlots);
    for (std::size_t i = 0; i < facts.slots.size(); ++i) {
        const HardwareRow& row = rows[i + 1];
        Require(row.label.starts_with(L"Ranura "));
        Require(row.value.empty() == !facts.slots[i].populated);
        Require(row.note.empty() || row.note.starts_with(L"· ") || row.note == L"vacía");
    }
}

}  // namespace
}  // namespace kestrane

FUZZ_TARGET(smbios) {
    using namespace kestrane;
    const ByteSpan table = SmbiosTable(input);
    Require(table.size() <= input.size());
    const MemoryFacts facts = Parse(table);
    CheckFacts(facts, table);
    CheckRows(BuildMemorySummary(facts), facts);
    for (const std::size_t size : std::array{table.size() / 3, table.size() / 2, table.size() - table.size() / 16})
        CheckCut(Parse(table.first(size)), facts);
}
