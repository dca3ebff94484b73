#include "hardware/summary_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "text/number_text.h"
#include "text/translation.h"

namespace kestrane {
namespace {

using testing::ElementsAre;

constexpr std::uint64_t Greatest = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint64_t Gigabyte = 1'000'000'000;
constexpr std::uint64_t Gibibyte = std::uint64_t{1} << 30;

class SummaryRowsTest : public testing::Test {
  protected:
    ~SummaryRowsTest() override { SetLanguage(ActiveSpanish); }
};
using CpuSummary = SummaryRowsTest;
using DiskSummary = SummaryRowsTest;
using MemorySummary = SummaryRowsTest;
using SizeText = SummaryRowsTest;

/// "label | value | note", and " | percent % after" behind it if there is a bar.
std::vector<std::wstring> Lines(const std::vector<HardwareRow>& rows) {
    std::vector<std::wstring> lines;
    for (const HardwareRow& row : rows) {
        lines.push_back(row.label + L" | " + row.value + L" | " + row.note);
        if (row.percent >= 0) lines.back() += L" | " + FormatInteger(row.percent) + L" % " + row.after;
        EXPECT_EQ(row.badge, -1);
        EXPECT_GE(row.percent, -1);
        EXPECT_EQ(row.percent < 0, row.after.empty());
    }
    return lines;
}

TEST(HardwareRow, StartsEmpty) {
    const HardwareRow row;
    EXPECT_EQ(row.label + row.value + row.note + row.after, L"");
    EXPECT_EQ(row.badge, -1);
    EXPECT_EQ(row.percent, -1);
}

TEST(FormatTrimmed, DropsZerosAtTheEnd) {
    struct Row {
        double value;
        int decimals;
        std::wstring text;
    };
    for (const Row& row : std::vector<Row>{
             {3.6, 2, L"3,6"},
             {2.904, 2, L"2,9"},
             {3.0, 2, L"3"},
             {3.05, 2, L"3,05"},
             {3.004, 2, L"3"},
             {3.996, 2, L"4"},
             {0.25, 1, L"0,3"},  // an exact half goes up
             {0.04, 1, L"0"},
             {0, 3, L"0"},
             {0.001, 3, L"0,001"},
             {10.01, 3, L"10,01"},
             {999.5, 0, L"1000"},
             {2.5, 0, L"3"},
             {2.5, -1, L"3"},
             {9e15, 1, L"9000000000000000"},
         }) {
        EXPECT_EQ(FormatTrimmed(row.value, row.decimals, L','), row.text) << row.value;
    }
    EXPECT_EQ(FormatTrimmed(3.6, 2, L'.'), L"3.6");
    EXPECT_EQ(FormatTrimmed(3.6, 2, L'\u066B'), L"3\u066B6");
}

TEST_F(SizeText, DisksCountInThousands) {
    struct Row {
        std::uint64_t bytes;
        std::wstring text;
    };
    for (const Row& row : std::vector<Row>{
             {0, L"0 GB"},
             {499'999'999, L"0 GB"},
             {500'000'000, L"1 GB"},
             {500'107'862'016, L"500 GB"},
             {999'499'999'999, L"999 GB"},
             {999'500'000'000, L"1 TB"},
             {1'000'204'886'016, L"1 TB"},
             {1'049'999'999'999, L"1 TB"},
             {1'050'000'000'001, L"1,1 TB"},
             {1'500'000'000'000, L"1,5 TB"},
             {2'000'398'934'016, L"2 TB"},
             {20'000'588'955'648, L"20 TB"},
             {Greatest, L"18446744,1 TB"},
         }) {
        EXPECT_EQ(FormatDiskSize(row.bytes, L','), row.text) << row.bytes;
    }
}

TEST_F(SizeText, MemoryCountsIn1024) {
    struct Row {
        std::uint64_t mebibytes;
        std::wstring text;
    };
    for (const Row& row : std::vector<Row>{
             {0, L"0 MB"},
             {1, L"1 MB"},
             {512, L"512 MB"},
             {1023, L"1023 MB"},
             {1024, L"1 GB"},
             {1075, L"1 GB"},
             {1076, L"1,1 GB"},
             {1536, L"1,5 GB"},
             {8000, L"7,8 GB"},
             {16384, L"16 GB"},
             {4194304, L"4096 GB"},  // there is no greater unit
             {0xFFFFFFFF, L"4194304 GB"},
             {Greatest >> 20, L"17179869184 GB"},
         }) {
        EXPECT_EQ(FormatMemorySize(row.mebibytes), row.text) << row.mebibytes;
    }
}

TEST_F(SizeText, MemoryTakesTheMarkOfTheLanguageAndDisksThatOfTheUser) {
    SetLanguage(ActiveEnglish);
    EXPECT_EQ(FormatMemorySize(1536), L"1.5 GB");
    EXPECT_EQ(FormatDiskSize(1500 * Gigabyte, L','), L"1,5 TB");
    SetLanguage(ActiveSpanish);
    EXPECT_EQ(FormatMemorySize(1536), L"1,5 GB");
    EXPECT_EQ(FormatDiskSize(1500 * Gigabyte, L'.'), L"1.5 TB");
}

CpuFacts HybridProcessor() {
    CpuFacts facts;
    facts.name = L"ACME Core 9000";
    facts.baseMhz = 2600;
    facts.coreCount = 14;
    facts.performanceCores = 6;
    facts.efficiencyCores = 8;
    facts.threadCount = 20;
    facts.l3Megabytes = 24;
    return facts;
}

TEST_F(CpuSummary, SaysAllInTwoRows) {
    EXPECT_THAT(Lines(BuildCpuSummary(HybridProcessor(), L',')),
                ElementsAre(L"Procesador | ACME Core 9000 | ",
                            L" |  | 14 núcleos (6 de rendimiento + 8 de eficiencia) · 20 hilos · 2,6 GHz base · "
                            L"L3 24 MB"));
    SetLanguage(ActiveEnglish);
    EXPECT_THAT(Lines(BuildCpuSummary(HybridProcessor(), L',')),
                ElementsAre(L"Processor | ACME Core 9000 | ",
                            L" |  | 14 cores (6 performance + 8 efficiency) · 20 threads · 2,6 GHz base · L3 24 MB"));
}

TEST_F(CpuSummary, LeavesOutWhatIsUnknown) {
    struct Row {
        const char* what;
        CpuFacts facts;
        std::vector<std::wstring> lines;
    };
    CpuFacts uniform = HybridProcessor();
    uniform.baseMhz = 3000;
    uniform.coreCount = uniform.performanceCores = 8;
    uniform.efficiencyCores = 0;
    CpuFacts single;
    single.coreCount = single.performanceCores = single.threadCount = 1;
    CpuFacts pair;
    pair.coreCount = pair.performanceCores = 2;
    CpuFacts threadsAlone;
    threadsAlone.threadCount = 2;
    CpuFacts frequencyAlone;
    frequencyAlone.name = L"X";
    frequencyAlone.baseMhz = 2964;
    CpuFacts cacheAlone;
    cacheAlone.l3Megabytes = 4;
    const std::wstring unknown = L"Procesador | Desconocido | ";
    for (const Row& row : std::vector<Row>{
             {"one kind of core",
              uniform,
              {L"Procesador | ACME Core 9000 | ", L" |  | 8 núcleos · 20 hilos · 3 GHz base · L3 24 MB"}},
             {"one of each", single, {unknown, L" |  | 1 núcleo · 1 hilo"}},
             {"no threads", pair, {unknown, L" |  | 2 núcleos"}},
             {"no cores", threadsAlone, {unknown, L" |  | 2 hilos"}},
             {"no counts", frequencyAlone, {L"Procesador | X | ", L" |  | 2,96 GHz base"}},
             {"the cache alone", cacheAlone, {unknown, L" |  | L3 4 MB"}},
             {"nothing", CpuFacts(), {unknown}},
         }) {
        EXPECT_EQ(Lines(BuildCpuSummary(row.facts, L',')), row.lines) << row.what;
    }
    SetLanguage(ActiveEnglish);
    EXPECT_THAT(Lines(BuildCpuSummary(single, L',')),
                ElementsAre(L"Processor | Unknown | ", L" |  | 1 core · 1 thread"));
}

DiskFacts Disk(std::uint32_t number, const std::wstring& model, const std::wstring& bus, std::uint64_t sizeBytes) {
    DiskFacts disk;
    disk.number = number;
    disk.model = model;
    disk.bus = bus;
    disk.sizeBytes = sizeBytes;
    return disk;
}

TEST_F(DiskSummary, ListsVolumesUnderTheirDisk) {
    std::vector<DiskFacts> disks{Disk(0, L"ACME SSD 970", L"NVMe", 1000 * Gigabyte),
                                 Disk(1, L"ACME HD 3", L"SATA", 1500 * Gigabyte)};
    disks[0].volumes = {{L'C', 476 * Gigabyte, 180 * Gigabyte}, {L'E', 500 * Gigabyte, 0}};
    disks[1].volumes = {{L'D', 1500 * Gigabyte, 1500 * Gigabyte}};
    EXPECT_THAT(Lines(BuildDiskSummary(disks, L',')), ElementsAre(L"Discos fijos | ACME SSD 970 | · NVMe · 1 TB",
                                                                  L" | C: |  | 62 % 180 GB libres de 476 GB",  //
                                                                  L" | E: |  | 100 % 0 GB libres de 500 GB",   //
                                                                  L" | ACME HD 3 | · SATA · 1,5 TB",           //
                                                                  L" | D: |  | 0 % 1,5 TB libres de 1,5 TB"));
    SetLanguage(ActiveEnglish);
    disks.pop_back();
    disks[0].volumes.pop_back();
    EXPECT_THAT(Lines(BuildDiskSummary(disks, L',')),
                ElementsAre(L"Fixed disks | ACME SSD 970 | · NVMe · 1 TB", L" | C: |  | 62 % 180 GB free of 476 GB"));
}

TEST_F(DiskSummary, SaysWhenThereIsNone) {
    EXPECT_THAT(Lines(BuildDiskSummary({}, L',')), ElementsAre(L"Discos fijos |  | no se han podido leer"));
    SetLanguage(ActiveEnglish);
    EXPECT_THAT(Lines(BuildDiskSummary({}, L',')), ElementsAre(L"Fixed disks |  | could not be read"));
}

TEST_F(DiskSummary, LeavesOutWhatIsUnknown) {
    struct Row {
        DiskFacts disk;
        std::wstring line;
    };
    for (const Row& row : std::vector<Row>{
             {Disk(2, L"", L"", 500 * Gigabyte), L"Discos fijos | Disco 2 | · 500 GB"},
             {Disk(2, L"", L"", 0), L"Discos fijos | Disco 2 | "},
             {Disk(31, L"", L"SAS", 0), L"Discos fijos | Disco 31 | · SAS"},
             {Disk(2, L"X", L"SAS", 1), L"Discos fijos | X | · SAS · 0 GB"},
         }) {
        EXPECT_THAT(Lines(BuildDiskSummary({row.disk}, L',')), ElementsAre(row.line));
    }
    SetLanguage(ActiveEnglish);
    EXPECT_THAT(Lines(BuildDiskSummary({Disk(2, L"", L"", 0)}, L',')), ElementsAre(L"Fixed disks | Disk 2 | "));
}

TEST_F(DiskSummary, AVolumeShowsTheShareInUse) {
    struct Row {
        const char* what;
        std::uint64_t total;
        std::uint64_t free;
        std::wstring line;
    };
    for (const Row& row : std::vector<Row>{
             {"unreadable", 0, 0, L" | C: | "},
             {"unreadable but for the free bytes", 0, 5, L" | C: | "},
             {"a quota above the total", 100 * Gigabyte, 200 * Gigabyte, L" | C: |  | 0 % 200 GB libres de 100 GB"},
             {"a half goes up", 1000 * Gigabyte, 995 * Gigabyte, L" | C: |  | 1 % 995 GB libres de 1 TB"},
             {"just below it", 1000 * Gigabyte, 995 * Gigabyte + 1, L" | C: |  | 0 % 995 GB libres de 1 TB"},
             {"84.5", 1000 * Gigabyte, 155 * Gigabyte, L" | C: |  | 85 % 155 GB libres de 1 TB"},
             {"one byte, used", 1, 0, L" | C: |  | 100 % 0 GB libres de 0 GB"},
             {"one byte, free", 1, 1, L" | C: |  | 0 % 0 GB libres de 0 GB"},
             {"one of three", 3, 2, L" | C: |  | 33 % 0 GB libres de 0 GB"},
             {"a hundred times it just fits", Greatest / 100, 0, L" | C: |  | 100 % 0 GB libres de 184467,4 TB"},
             {"the greatest, used", Greatest, 0, L" | C: |  | 100 % 0 GB libres de 18446744,1 TB"},
             {"the greatest, half used", Greatest, Greatest / 2, L" | C: |  | 50 % 9223372 TB libres de 18446744,1 TB"},
             {"the greatest, free", Greatest, Greatest, L" | C: |  | 0 % 18446744,1 TB libres de 18446744,1 TB"},
         }) {
        DiskFacts disk = Disk(0, L"X", L"", 0);
        disk.volumes = {{L'C', row.total, row.free}};
        EXPECT_THAT(Lines(BuildDiskSummary({disk}, L',')), ElementsAre(L"Discos fijos | X | ", row.line)) << row.what;
    }
}

MemorySlot Module(std::uint32_t sizeMb, const std::wstring& formFactor = L"DIMM") {
    MemorySlot slot;
    slot.populated = true;
    slot.sizeMb = sizeMb;
    slot.type = L"DDR4";
    slot.speed = 3200;
    slot.configuredSpeed = 2933;
    slot.manufacturer = L"ACME";
    slot.partNumber = L"X432-16";
    slot.formFactor = formFactor;
    return slot;
}

MemoryFacts Memory(const std::vector<MemorySlot>& slots, std::uint32_t maxCapacityGb, std::uint64_t totalBytes) {
    return {.hasSlots = !slots.empty(), .slots = slots, .maxCapacityGb = maxCapacityGb, .totalBytes = totalBytes};
}

TEST_F(MemorySummary, ListsEverySlot) {
    const MemoryFacts facts = Memory({Module(16384), {}, Module(16384), {}}, 128, 64 * Gibibyte);
    EXPECT_THAT(Lines(BuildMemorySummary(facts)),
                ElementsAre(L"Memoria | 32 GB | · 2 de 4 ranuras ocupadas · máximo 128 GB",
                            L"Ranura 1 | 16 GB DDR4 3200 MT/s | · ACME · X432-16 · DIMM",
                            L"Ranura 2 |  | vacía",  //
                            L"Ranura 3 | 16 GB DDR4 3200 MT/s | · ACME · X432-16 · DIMM", L"Ranura 4 |  | vacía"));
    SetLanguage(ActiveEnglish);
    EXPECT_THAT(Lines(BuildMemorySummary(facts)),
                ElementsAre(L"Memory | 32 GB | · 2 of 4 slots in use · up to 128 GB",
                            L"Slot 1 | 16 GB DDR4 3200 MT/s | · ACME · X432-16 · DIMM",
                            L"Slot 2 |  | empty",  //
                            L"Slot 3 | 16 GB DDR4 3200 MT/s | · ACME · X432-16 · DIMM", L"Slot 4 |  | empty"));
}

TEST_F(MemorySummary, TheFirstRowFollowsTheSlots) {
    struct Row {
        const char* what;
        MemoryFacts facts;
        std::wstring line;
    };
    const MemorySlot soldered = Module(8192, SolderedFormFactor);
    MemorySlot ghost = Module(8192);
    ghost.populated = false;
    for (const Row& row : std::vector<Row>{
             {"no table", Memory({}, 0, 16 * Gibibyte), L"Memoria | 16 GB | "},
             {"no table, but a capacity", Memory({}, 64, 16 * Gibibyte), L"Memoria | 16 GB | "},
             {"nothing", Memory({}, 0, 0), L"Memoria | 0 MB | "},
             {"the total is cut to mebibytes", Memory({}, 0, 512 * 1024 * 1024 - 1), L"Memoria | 511 MB | "},
             {"the greatest total", Memory({}, 0, Greatest), L"Memoria | 17179869184 GB | "},
             {"one slot", Memory({Module(8192)}, 0, 0), L"Memoria | 8 GB | · 1 de 1 ranura ocupada"},
             {"one empty slot", Memory({{}}, 0, 4 * Gibibyte), L"Memoria | 4 GB | · 0 de 1 ranura ocupada"},
             {"soldered", Memory({soldered}, 0, 0), L"Memoria | 8 GB | · memoria soldada"},
             {"soldered with a capacity", Memory({soldered}, 64, 0),
              L"Memoria | 8 GB | · memoria soldada · máximo 64 GB"},
             {"two soldered", Memory({soldered, soldered}, 0, 0), L"Memoria | 16 GB | · 2 de 2 ranuras ocupadas"},
             {"unknown sizes", Memory({Module(0), Module(0)}, 0, 12 * Gibibyte),
              L"Memoria | 12 GB | · 2 de 2 ranuras ocupadas"},
             {"some unknown", Memory({Module(0), Module(4096)}, 0, 12 * Gibibyte),
              L"Memoria | 4 GB | · 2 de 2 ranuras ocupadas"},
             {"an empty slot adds nothing", Memory({Module(1536), ghost}, 0, 0),
              L"Memoria | 1,5 GB | · 1 de 2 ranuras ocupadas"},
             {"beyond 32 bits", Memory({Module(0x7FFFFFFF), Module(0x7FFFFFFF), Module(2)}, 0, 0),
              L"Memoria | 4194304 GB | · 3 de 3 ranuras ocupadas"},
         }) {
        const std::vector<std::wstring> lines = Lines(BuildMemorySummary(row.facts));
        EXPECT_EQ(lines.front(), row.line) << row.what;
        EXPECT_EQ(lines.size(), 1 + row.facts.slots.size()) << row.what;
    }
}

TEST_F(MemorySummary, WithoutSlotsThereIsOneRow) {
    MemoryFacts facts = Memory({Module(8192)}, 64, 16 * Gibibyte);
    facts.hasSlots = false;
    EXPECT_THAT(Lines(BuildMemorySummary(facts)), ElementsAre(L"Memoria | 16 GB | "));
}

TEST_F(MemorySummary, ASlotShowsWhatIsKnown) {
    struct Row {
        const char* what;
        MemorySlot slot;
        std::wstring spanish;
        std::wstring english;
    };
    MemorySlot bare;
    bare.populated = true;
    MemorySlot typeAlone = bare;
    typeAlone.type = L"DDR5";
    MemorySlot speedAlone = bare;
    speedAlone.sizeMb = 512;
    speedAlone.speed = 400;
    MemorySlot partAlone = bare;
    partAlone.partNumber = L"X432-16";
    MemorySlot placeholders = bare;
    placeholders.manufacturer = L"{0}";
    placeholders.partNumber = L"Salir";
    for (const Row& row : std::vector<Row>{
             {"nothing", bare, L"Ranura 1 | ? | ", L"Slot 1 | ? | "},
             {"the type", typeAlone, L"Ranura 1 | ? DDR5 | ", L"Slot 1 | ? DDR5 | "},
             {"size and speed", speedAlone, L"Ranura 1 | 512 MB 400 MT/s | ", L"Slot 1 | 512 MB 400 MT/s | "},
             {"the part", partAlone, L"Ranura 1 | ? | · X432-16", L"Slot 1 | ? | · X432-16"},
             {"firmware's text is no text of ours", placeholders, L"Ranura 1 | ? | · {0} · Salir",
              L"Slot 1 | ? | · {0} · Salir"},
             {"soldered", Module(1536, SolderedFormFactor),
              L"Ranura 1 | 1,5 GB DDR4 3200 MT/s | · ACME · X432-16 · soldada",
              L"Slot 1 | 1.5 GB DDR4 3200 MT/s | · ACME · X432-16 · soldered"},
         }) {
        SetLanguage(ActiveSpanish);
        EXPECT_EQ(Lines(BuildMemorySummary(Memory({row.slot}, 0, 0))).at(1), row.spanish) << row.what;
        SetLanguage(ActiveEnglish);
        EXPECT_EQ(Lines(BuildMemorySummary(Memory({row.slot}, 0, 0))).at(1), row.english) << row.what;
    }
}

TEST_F(MemorySummary, SpeaksEnglishInTheFirstRow) {
    SetLanguage(ActiveEnglish);
    EXPECT_EQ(Lines(BuildMemorySummary(Memory({Module(1536)}, 0, 0))).front(),
              L"Memory | 1.5 GB | · 1 of 1 slot in use");
    EXPECT_EQ(Lines(BuildMemorySummary(Memory({Module(1536, SolderedFormFactor)}, 4, 0))).front(),
              L"Memory | 1.5 GB | · soldered memory · up to 4 GB");
}

}  // namespace
}  // namespace kestrane
