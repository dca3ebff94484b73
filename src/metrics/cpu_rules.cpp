#include "metrics/cpu_rules.h"

#include <algorithm>
#include <cstddef>

#include "text/text_util.h"

namespace kestrane {
namespace {

/// `digits` as a decimal number; -1 if it is empty, contains anything else, or is `limit` or more.
std::int32_t ParseBelow(std::wstring_view digits, std::int32_t limit) {
    if (digits.empty()) return -1;
    std::int32_t number = 0;
    for (const wchar_t c : digits) {
        if (!IsDigit(c)) return -1;
        // Clamped to the limit, so that no number of digits overflows.
        number = std::min(number * 10 + static_cast<std::int32_t>(c - L'0'), limit);
    }
    return number < limit ? number : -1;
}

}  // namespace

bool AdvanceCpuTimes(CpuTimes& times, std::uint64_t idleTime, std::uint64_t totalTime, std::int32_t& percent) {
    const bool counts = times.cpuBaseline;
    if (counts) percent = BusyPercent(idleTime - times.prevIdleTime, totalTime - times.prevTotalTime);
    times = {true, idleTime, totalTime};
    return counts;
}

std::int32_t BusyPercent(std::uint64_t idleDelta, std::uint64_t totalDelta) {
    if (totalDelta == 0) return 0;
    const std::uint64_t busy = totalDelta > idleDelta ? totalDelta - idleDelta : 0;
    return static_cast<std::int32_t>(std::min<std::uint64_t>((busy * 100 + totalDelta / 2) / totalDelta, 100));
}

std::int32_t RoundPercent(double value) {
    // Written so that NaN, which compares false with everything, returns here.
    if (!(value > 0)) return 0;
    const double raised = std::min(value, 100.0) + 0.5;
    return static_cast<std::int32_t>(raised);
}

std::int32_t ParseProcessorInstance(std::wstring_view name) {
    const std::size_t comma = name.find(L',');
    if (comma == std::wstring_view::npos) return -1;
    const std::int32_t group = ParseBelow(name.substr(0, comma), ProcessorGroups);
    const std::int32_t number = ParseBelow(name.substr(comma + 1), ProcessorsPerGroup);
    if (group < 0 || number < 0) return -1;
    return group * ProcessorsPerGroup + number;
}

std::vector<std::int32_t> CoresFromInstances(const std::vector<CounterValue>& values) {
    std::vector<std::int32_t> cores;
    for (const CounterValue& value : values) {
        const std::int32_t number = ParseProcessorInstance(value.name);
        if (number < 0) continue;
        const auto index = static_cast<std::size_t>(number);
        if (cores.size() <= index) cores.resize(index + 1);
        cores[index] = RoundPercent(value.value);
    }
    return cores;
}

}  // namespace kestrane
