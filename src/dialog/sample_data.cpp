#include "dialog/sample_data.h"

#include <algorithm>

namespace kestrane {
namespace {

// The minimal standard generator of Park and Miller, with their later multiplier.
constexpr std::uint64_t Multiplier = 48271;
constexpr std::uint64_t Modulus = 2147483647;
constexpr std::uint64_t GeneratorValues = Modulus - 1;  // 1 to Modulus - 1

constexpr double BytesPerMegabyte = 1048576.0;

/// From 0 to GeneratorValues - 1.
std::uint64_t Draw(std::uint32_t& random_state) {
    random_state = static_cast<std::uint32_t>(random_state * Multiplier % Modulus);
    return random_state - 1U;
}

/// From `low` to `high`, both included.
double SampleReal(std::uint32_t& random_state, double low, double high) {
    const double part = static_cast<double>(Draw(random_state)) / static_cast<double>(GeneratorValues - 1);
    return low + (high - low) * part;
}

void GenerateIconSamples(SampleData& data) {
    std::uint32_t& random = data.random_state;
    const auto percent = [&random](std::int64_t low, std::int64_t high) {
        return static_cast<std::int32_t>(SampleInt(random, low, high));
    };
    for (std::uint64_t i = 0; i < SampleIconPoints; ++i) {
        PushSample(data.sampleCpuIcon, percent(5, 90));
        PushSample(data.sampleDiskReadIcon, percent(0, 60));
        PushSample(data.sampleDiskWriteIcon, percent(0, 40));
        PushSample(data.sampleNetDownIcon, SampleRate(random, 400000));
        PushSample(data.sampleNetUpIcon, SampleRate(random, 200000));
    }
}

/// The activity follows the rate: `fullRate` would keep the disk busy all the time, and `idlePercent` it always is.
void PushDiskSample(MetricRing<double>& rates, MetricRing<double>& percents, double rate, double fullRate,
                    double idlePercent) {
    PushSample(rates, rate);
    PushSample(percents, std::min(rate / (fullRate / 100) + idlePercent, 100.0));
}

void GenerateGraphSamples(SampleData& data) {
    std::uint32_t& random = data.random_state;
    for (std::uint64_t i = 0; i < SampleGraphPoints; ++i) {
        PushSample(data.sampleNetDown, SampleRate(random, 450000));
        PushSample(data.sampleNetUp, SampleRate(random, 250000));
        const double read = static_cast<double>(SampleRate(random, 400)) * BytesPerMegabyte;
        const double write = static_cast<double>(SampleRate(random, 120)) * BytesPerMegabyte;
        PushDiskSample(data.sampleDiskRead, data.sampleDiskReadPercent, read, 500 * BytesPerMegabyte, 3);
        PushDiskSample(data.sampleDiskWrite, data.sampleDiskWritePercent, write, 300 * BytesPerMegabyte, 2);
    }
    SampleWalk(random, data.sampleCpu, SampleGraphPoints, 10, 90);
    for (MetricRing<double>& core : data.sampleCores)
        SampleWalk(random, core, SampleCorePoints, 0, 100);
}

}  // namespace

void ResizeIconSamples(SampleData& data, std::uint32_t iconSize) {
    ResizeKeepNewest(data.sampleCpuIcon, iconSize);
    ResizeKeepNewest(data.sampleDiskReadIcon, iconSize);
    ResizeKeepNewest(data.sampleDiskWriteIcon, iconSize);
    ResizeKeepNewest(data.sampleNetDownIcon, iconSize);
    ResizeKeepNewest(data.sampleNetUpIcon, iconSize);
}

void BindSampleSeries(SampleData& data, const std::vector<std::uint8_t>& processorClasses) {
    const std::size_t cores = std::max(processorClasses.size(), MinSampleCores);
    data.sampleCores.assign(cores, MetricRing<double>(SampleCorePoints));
    GraphSeries& network = data.sampleSeries[IndexOf(GraphKind::Network)];
    network.primary.counterRing = &data.sampleNetDown;
    network.secondary.counterRing = &data.sampleNetUp;
    GraphSeries& cpu = data.sampleSeries[IndexOf(GraphKind::Cpu)];
    cpu.primary.valueRing = &data.sampleCpu;
    cpu.cores = &data.sampleCores;
    cpu.coreClasses = &processorClasses;
    GraphSeries& disk = data.sampleSeries[IndexOf(GraphKind::Disk)];
    disk.primary.valueRing = &data.sampleDiskRead;
    disk.secondary.valueRing = &data.sampleDiskWrite;
    disk.activityRead.valueRing = &data.sampleDiskReadPercent;
    disk.activityWrite.valueRing = &data.sampleDiskWritePercent;
}

void GenerateSamples(SampleData& data, const std::array<std::int32_t, 3>& thresholds) {
    GenerateIconSamples(data);
    GenerateGraphSamples(data);
    const auto [first, second, third] = thresholds;
    const std::array<std::array<std::int32_t, 2>, 4> levels{
        {{std::max(first - 30, 0), std::max(first - 1, 0)}, {first, second - 1}, {second, third - 1}, {third, 100}}};
    for (std::size_t i = 0; i < levels.size(); ++i)
        data.sampleMemory[i] = static_cast<std::int32_t>(SampleInt(data.random_state, levels[i][0], levels[i][1]));
}

std::int64_t SampleInt(std::uint32_t& random_state, std::int64_t low, std::int64_t high) {
    // Every result gets an equal share of the generator's values, and the few values left over are drawn again.
    // std::uniform_int_distribution would do, but each library has its own.
    const std::uint64_t results = static_cast<std::uint64_t>(std::max<std::int64_t>(high - low, 0)) + 1;
    const std::uint64_t share = GeneratorValues / results;
    std::uint64_t result = Draw(random_state) / share;
    while (result >= results)
        result = Draw(random_state) / share;
    return low + static_cast<std::int64_t>(result);
}

std::uint64_t SampleRate(std::uint32_t& random_state, std::uint32_t maximum) {
    const bool burst = SampleInt(random_state, 0, 99) < 15;
    const std::uint32_t low = burst ? maximum / 2 : 0;
    const std::uint32_t high = burst ? maximum : maximum / 4;
    return static_cast<std::uint64_t>(SampleInt(random_state, low, high));
}

void SampleWalk(std::uint32_t& random_state, MetricRing<double>& ring, std::size_t count, double low, double high) {
    const double reach = 0.08 * (high - low);
    double value = SampleReal(random_state, low, high);
    for (std::size_t i = 0; i < count; ++i) {
        value = std::clamp(value + SampleReal(random_state, -reach, reach), low, high);
        PushSample(ring, value);
    }
}

}  // namespace kestrane
