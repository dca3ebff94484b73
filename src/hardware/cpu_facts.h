#pragma once
// Facts about the processor. On a hybrid processor the cores of the highest efficiency class are performance cores, all
// others efficiency cores.
#include <cstdint>
#include <string>
#include <vector>

#include "base/byte_reader.h"

namespace kestrane {

/// Anything that cannot be read is 0 or empty.
struct CpuFacts {
    std::wstring name;
    std::uint32_t baseMhz = 0;
    std::int32_t coreCount = 0;         // physical cores
    std::int32_t performanceCores = 0;  // all of them if there is only one kind
    std::int32_t efficiencyCores = 0;
    std::int32_t threadCount = 0;                   // logical processors
    std::uint32_t l3Megabytes = 0;                  // largest single L3 cache, in whole mebibytes
    std::vector<std::uint8_t> isPerformanceThread;  // 1 or 0 by logical number, group * 64 + bit; gaps are 1
};

/// Fills the counts, the cache size and the thread table from the SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX records that
/// GetLogicalProcessorInformationEx returns for RelationAll on x64. Parsing stops at the first record that does not fit
/// its own size or the buffer; those before it count.
void ParseProcessorRecords(ByteSpan records, CpuFacts& facts);

}  // namespace kestrane
