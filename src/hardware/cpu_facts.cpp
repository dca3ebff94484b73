#include "hardware/cpu_facts.h"

#include <algorithm>
#include <cstddef>

namespace kestrane {
namespace {

// The documented layout on x64. Each record starts with Relationship and Size; the rest depends on the relationship.
constexpr std::uint32_t RelationProcessorCore = 0;
constexpr std::uint32_t RelationCache = 2;
constexpr std::size_t RelationshipOffset = 0;
constexpr std::size_t SizeOffset = 4;
constexpr std::size_t HeaderBytes = 8;
constexpr std::size_t EfficiencyClassOffset = 9;
constexpr std::size_t GroupCountOffset = 30;
constexpr std::size_t GroupMasksOffset = 32;
constexpr std::size_t GroupMaskBytes = 16;  // GROUP_AFFINITY: Mask, Group, three reserved words
constexpr std::size_t GroupInMaskOffset = 8;
constexpr std::size_t ThreadsPerMask = 64;
constexpr std::size_t CacheLevelOffset = 8;
constexpr std::size_t CacheSizeOffset = 12;
constexpr std::size_t CacheFieldsBytes = 16;

std::uint32_t RelationshipOf(ByteSpan record) {
    return U32At(record, RelationshipOffset);
}

/// The bytes needed for the first record's fields, at least those of its header.
std::size_t NeededBytes(ByteSpan records) {
    switch (RelationshipOf(records)) {
        case RelationProcessorCore:
            return GroupMasksOffset + U16At(records, GroupCountOffset) * GroupMaskBytes;
        case RelationCache:
            return CacheFieldsBytes;
        default:
            return HeaderBytes;
    }
}

/// The records up to the first damaged one.
std::vector<ByteSpan> SplitRecords(ByteSpan records) {
    std::vector<ByteSpan> split;
    while (records.size() >= HeaderBytes) {
        const std::size_t size = U32At(records, SizeOffset);
        if (size < NeededBytes(records) || size > records.size()) break;
        split.push_back(records.first(size));
        records = records.subspan(size);
    }
    return split;
}

std::uint8_t HighestClass(const std::vector<ByteSpan>& records) {
    std::uint8_t highest = 0;
    for (const ByteSpan record : records) {
        if (RelationshipOf(record) != RelationProcessorCore) continue;
        highest = std::max(highest, U8At(record, EfficiencyClassOffset));
    }
    return highest;
}

void AddThread(std::size_t group, std::size_t bit, bool isPerformance, CpuFacts& facts) {
    ++facts.threadCount;
    const std::size_t index = group * ThreadsPerMask + bit;
    if (facts.isPerformanceThread.size() <= index) facts.isPerformanceThread.resize(index + 1, 1);
    facts.isPerformanceThread[index] = isPerformance ? 1 : 0;
}

void AddCore(ByteSpan record, bool isPerformance, CpuFacts& facts) {
    ++facts.coreCount;
    ++(isPerformance ? facts.performanceCores : facts.efficiencyCores);
    const std::size_t groups = U16At(record, GroupCountOffset);
    for (std::size_t i = 0; i < groups; ++i) {
        const std::size_t offset = GroupMasksOffset + i * GroupMaskBytes;
        const std::uint64_t mask = U64At(record, offset);
        const std::size_t group = U16At(record, offset + GroupInMaskOffset);
        for (std::size_t bit = 0; bit < ThreadsPerMask; ++bit) {
            if ((mask >> bit & 1) != 0) AddThread(group, bit, isPerformance, facts);
        }
    }
}

void AddCache(ByteSpan record, CpuFacts& facts) {
    if (U8At(record, CacheLevelOffset) != 3) return;
    facts.l3Megabytes = std::max(facts.l3Megabytes, U32At(record, CacheSizeOffset) >> 20);
}

}  // namespace

void ParseProcessorRecords(ByteSpan records, CpuFacts& facts) {
    const std::vector<ByteSpan> split = SplitRecords(records);
    const std::uint8_t highest = HighestClass(split);
    for (const ByteSpan record : split) {
        const std::uint32_t relationship = RelationshipOf(record);
        if (relationship == RelationProcessorCore) {
            AddCore(record, U8At(record, EfficiencyClassOffset) == highest, facts);
        } else if (relationship == RelationCache) {
            AddCache(record, facts);
        }
    }
}

}  // namespace kestrane
