#include "hardware/summary_rows.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <limits>
#include <utility>

#include "text/number_text.h"
#include "text/translation.h"

namespace kestrane {
namespace {

HardwareRow MakeRow(std::wstring label, std::wstring value, std::wstring note) {
    HardwareRow row;
    row.label = std::move(label);
    row.value = std::move(value);
    row.note = std::move(note);
    return row;
}

/// "a · b · c", without the empty ones.
std::wstring JoinPieces(std::initializer_list<std::wstring> pieces) {
    std::wstring text;
    for (const std::wstring& piece : pieces) {
        if (piece.empty()) continue;
        if (!text.empty()) text += L" · ";
        text += piece;
    }
    return text;
}

/// The same as a note behind a value: "· a · b · c".
std::wstring JoinNote(std::initializer_list<std::wstring> pieces) {
    const std::wstring text = JoinPieces(pieces);
    return text.empty() ? text : L"· " + text;
}

std::wstring CoresText(const CpuFacts& facts) {
    if (facts.coreCount <= 0) return {};
    std::wstring text =
        FormatText(facts.coreCount == 1 ? L"{0} núcleo" : L"{0} núcleos", {FormatInteger(facts.coreCount)});
    if (facts.efficiencyCores > 0) {
        text += L" (" +
                FormatText(L"{0} de rendimiento + {1} de eficiencia",
                           {FormatInteger(facts.performanceCores), FormatInteger(facts.efficiencyCores)}) +
                L")";
    }
    return text;
}

std::wstring ThreadsText(const CpuFacts& facts) {
    if (facts.threadCount <= 0) return {};
    return FormatText(facts.threadCount == 1 ? L"{0} hilo" : L"{0} hilos", {FormatInteger(facts.threadCount)});
}

std::wstring FrequencyText(const CpuFacts& facts, wchar_t decimal) {
    if (facts.baseMhz == 0) return {};
    return FormatTrimmed(facts.baseMhz / 1000.0, 2, decimal) + L" GHz base";
}

std::wstring CacheText(const CpuFacts& facts) {
    if (facts.l3Megabytes == 0) return {};
    return L"L3 " + FormatInteger(facts.l3Megabytes) + L" MB";
}

HardwareRow DiskRow(const DiskFacts& disk, wchar_t decimal) {
    return MakeRow(L"", !disk.model.empty() ? disk.model : FormatText(L"Disco {0}", {FormatInteger(disk.number)}),
                   JoinNote({disk.bus, disk.sizeBytes != 0 ? FormatDiskSize(disk.sizeBytes, decimal) : L""}));
}

/// Rounded to the nearest. A quota may leave the user more than the total, which counts as all free.
std::int32_t UsedPercent(const VolumeFacts& volume) {
    constexpr std::uint64_t MostBytes = std::numeric_limits<std::uint64_t>::max() / 101;
    std::uint64_t total = volume.totalBytes;
    std::uint64_t used = total - std::min(volume.freeBytes, total);
    // Beyond 180 petabytes the product would overflow, and half of both has the same share.
    for (; total > MostBytes; total /= 2)
        used /= 2;
    return static_cast<std::int32_t>((total / 2 + used * 100) / total);
}

HardwareRow VolumeRow(const VolumeFacts& volume, wchar_t decimal) {
    HardwareRow row = MakeRow(L"", std::wstring{volume.letter, L':'}, L"");
    if (volume.totalBytes == 0) return row;
    row.percent = UsedPercent(volume);
    row.after = FormatText(L"{0} libres de {1}",
                           {FormatDiskSize(volume.freeBytes, decimal), FormatDiskSize(volume.totalBytes, decimal)});
    return row;
}

/// In mebibytes.
std::uint64_t InstalledMemory(const MemoryFacts& facts) {
    std::uint64_t sum = 0;
    for (const MemorySlot& slot : facts.slots) {
        if (slot.populated) sum += slot.sizeMb;
    }
    return facts.hasSlots && sum != 0 ? sum : facts.totalBytes >> 20;
}

std::wstring SlotsText(const std::vector<MemorySlot>& slots) {
    if (slots.size() == 1 && slots.front().formFactor == SolderedFormFactor) return Tr(L"· memoria soldada");
    const auto populated = std::ranges::count(slots, true, &MemorySlot::populated);
    return FormatText(slots.size() == 1 ? L"· {0} de {1} ranura ocupada" : L"· {0} de {1} ranuras ocupadas",
                      {FormatInteger(populated), FormatInteger(slots.size())});
}

std::wstring MemoryNote(const MemoryFacts& facts) {
    if (!facts.hasSlots) return {};
    std::wstring note = SlotsText(facts.slots);
    if (facts.maxCapacityGb != 0) note += FormatText(L" · máximo {0} GB", {FormatInteger(facts.maxCapacityGb)});
    return note;
}

HardwareRow SlotRow(const MemorySlot& slot, std::size_t number) {
    std::wstring label = FormatText(L"Ranura {0}", {FormatInteger(number)});
    if (!slot.populated) return MakeRow(std::move(label), L"", Tr(L"vacía"));
    std::wstring value = slot.sizeMb != 0 ? FormatMemorySize(slot.sizeMb) : L"?";
    if (!slot.type.empty()) value += L' ' + slot.type;
    if (slot.speed != 0) value += L' ' + FormatInteger(slot.speed) + L" MT/s";
    return MakeRow(std::move(label), std::move(value),
                   JoinNote({slot.manufacturer, slot.partNumber, Tr(slot.formFactor.c_str())}));
}

}  // namespace

std::vector<HardwareRow> BuildCpuSummary(const CpuFacts& facts, wchar_t decimal) {
    std::vector<HardwareRow> rows{
        MakeRow(Tr(L"Procesador"), !facts.name.empty() ? facts.name : Tr(L"Desconocido"), L"")};
    std::wstring line =
        JoinPieces({CoresText(facts), ThreadsText(facts), FrequencyText(facts, decimal), CacheText(facts)});
    if (!line.empty()) rows.push_back(MakeRow(L"", L"", std::move(line)));
    return rows;
}

std::vector<HardwareRow> BuildDiskSummary(const std::vector<DiskFacts>& disks, wchar_t decimal) {
    if (disks.empty()) return {MakeRow(Tr(L"Discos fijos"), L"", Tr(L"no se han podido leer"))};
    std::vector<HardwareRow> rows;
    for (const DiskFacts& disk : disks) {
        rows.push_back(DiskRow(disk, decimal));
        for (const VolumeFacts& volume : disk.volumes)
            rows.push_back(VolumeRow(volume, decimal));
    }
    rows.front().label = Tr(L"Discos fijos");
    return rows;
}

std::vector<HardwareRow> BuildMemorySummary(const MemoryFacts& facts) {
    std::vector<HardwareRow> rows{MakeRow(Tr(L"Memoria"), FormatMemorySize(InstalledMemory(facts)), MemoryNote(facts))};
    if (!facts.hasSlots) return rows;
    for (const MemorySlot& slot : facts.slots)
        rows.push_back(SlotRow(slot, rows.size()));
    return rows;
}

std::wstring FormatDiskSize(std::uint64_t bytes, wchar_t decimal) {
    const double gigabytes = static_cast<double>(bytes) / 1e9;
    // From here on it would read 1000 GB.
    if (gigabytes >= 999.5) return FormatTrimmed(gigabytes / 1000.0, 1, decimal) + L" TB";
    return FormatTrimmed(gigabytes, 0, decimal) + L" GB";
}

std::wstring FormatMemorySize(std::uint64_t mebibytes) {
    if (mebibytes < 1024) return FormatInteger(mebibytes) + L" MB";
    return FormatTrimmed(static_cast<double>(mebibytes) / 1024.0, 1, LanguageDecimalChar()) + L" GB";
}

std::wstring FormatTrimmed(double value, int decimals, wchar_t decimal) {
    std::int64_t scale = 1;
    for (int i = 0; i < decimals; ++i)
        scale *= 10;
    const auto scaled = static_cast<std::int64_t>(RoundHalfAway(static_cast<double>(scale) * value));
    std::wstring text = FormatInteger(scaled / scale);
    if (scaled % scale == 0) return text;
    // The scale as the leading 1 keeps the zeros behind the decimal mark.
    std::wstring digits = FormatInteger(scale + scaled % scale);
    digits.front() = decimal;
    digits.erase(digits.find_last_not_of(L'0') + 1);
    return text + digits;
}

}  // namespace kestrane
