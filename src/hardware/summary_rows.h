#pragma once
// Facts about the machine as the rows of text that the settings dialog lists, in the language of the program.
//
// The decimal marks differ on purpose: figures of processors and disks take the user's, which the caller passes as
// `decimal`, and memory sizes that of the language.
#include <cstdint>
#include <string>
#include <vector>

#include "hardware/cpu_facts.h"
#include "hardware/disk_facts.h"
#include "hardware/memory_facts.h"

namespace kestrane {

/// One line of the list, from left to right. What is empty or -1 is not shown.
struct HardwareRow {
    std::wstring label;         // first column; empty on rows that continue the one above
    std::int32_t badge = -1;    // a number in a small pill
    std::wstring value;         // main text
    std::wstring note;          // secondary text, behind everything else
    std::int32_t percent = -1;  // filled share of a bar, 0 to 100
    std::wstring after;         // text behind the bar, shown only with a bar
};

/// The name, then a row with the counts, frequency and cache that are known.
std::vector<HardwareRow> BuildCpuSummary(const CpuFacts& facts, wchar_t decimal);

/// A row for each disk, followed by one for each of its volumes with the used share as a bar. Without disks, one row
/// that says so.
std::vector<HardwareRow> BuildDiskSummary(const std::vector<DiskFacts>& disks, wchar_t decimal);

/// The size of all modules, or the total if they do not give theirs; then a row for each slot.
std::vector<HardwareRow> BuildMemorySummary(const MemoryFacts& facts);

/// "500 GB" or "1.5 TB", in steps of 1000 as disks are sold: whole gigabytes, and terabytes with one decimal unless it
/// is zero.
std::wstring FormatDiskSize(std::uint64_t bytes, wchar_t decimal);

/// "512 MB" or "1.5 GB", in steps of 1024: whole megabytes, and gigabytes with one decimal unless it is zero.
std::wstring FormatMemorySize(std::uint64_t mebibytes);

/// `value` with at most `decimals` decimals, halves rounded up, without zeros at the end. `value` is not negative, and
/// with its decimals fits 64 bits.
std::wstring FormatTrimmed(double value, int decimals, wchar_t decimal);

}  // namespace kestrane
