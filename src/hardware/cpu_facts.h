#pragma once
// What the machine says about its processor. On a hybrid processor the cores of the highest efficiency class are the
// fast ones, all others are the saving ones.
#include <cstdint>
#include <string>
#include <vector>

#include "base/byte_reader.h"

namespace kestrane {

/// What cannot be read is 0 or empty.
struct CpuFacts {
    std::wstring name;
    std::uint32_t baseMhz = 0;
    std::int32_t coreCount = 0;         // physical cores
    std::int32_t performanceCores = 0;  // all of them when there is one kind of core
    std::int32_t efficiencyCores = 0;
    std::int32_t threadCount = 0;                   // logical processors
    std::uint32_t l3Megabytes = 0;                  // largest single L3 cache, in whole mebibytes
    std::vector<std::uint8_t> isPerformanceThread;  // 1 or 0 by logical number, group * 64 + bit; gaps are 1
};

/// Fills the counts, the cache and the table of threads from the SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX records that
/// GetLogicalProcessorInformationEx gives for RelationAll on x64. The first record that does not fit its own size or
/// the buffer ends the walk, and what stands before it counts.
void ParseProcessorRecords(ByteSpan records, CpuFacts& facts);

}  // namespace kestrane
