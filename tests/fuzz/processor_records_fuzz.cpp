// Any bytes as the system's processor records: the counts are consistent and parsing ends.
#include <algorithm>

#include "fuzz/fuzz_target.h"
#include "hardware/cpu_facts.h"

FUZZ_TARGET(processor_records) {
    using kestrane::fuzz::Require;
    kestrane::CpuFacts facts;
    ParseProcessorRecords(input, facts);
    Require(facts.coreCount >= 0 && facts.threadCount >= 0);
    Require(facts.performanceCores + facts.efficiencyCores == facts.coreCount);
    Require((facts.performanceCores > 0) == (facts.coreCount > 0));
    Require((facts.threadCount > 0) == !facts.isPerformanceThread.empty());
    Require(facts.l3Megabytes < 4096);
    Require(facts.isPerformanceThread.size() <= 65536 * 64);
    // A table may have four million flags; checking each would be most of the work.
    const kestrane::ByteSpan table = facts.isPerformanceThread;
    const kestrane::ByteSpan flags = table.first(std::min<std::size_t>(table.size(), 4096));
    Require(std::ranges::all_of(flags, [](std::uint8_t flag) { return flag <= 1; }));
}
