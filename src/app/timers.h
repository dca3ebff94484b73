#pragma once
// The timers of the hidden window. The ids are not in the order of the icons, and each sampling period is its own.
#include <array>
#include <cstdint>

#include "settings/app_settings.h"

namespace kestrane {

inline constexpr std::uintptr_t CpuTimer = 1;
inline constexpr std::uintptr_t PromotionTimer = 2;
inline constexpr std::uintptr_t MemoryTimer = 3;
inline constexpr std::uintptr_t NetworkTimer = 4;
inline constexpr std::uintptr_t DiskTimer = 5;

/// The promotion of the icons comes once, so long after the start.
inline constexpr std::uint32_t PromotionDelayMs = 2000;

struct SamplingTimer {
    MetricKind metric;
    std::uintptr_t id;
};

/// The four sampling timers, in the order in which they are started and ended.
inline constexpr std::array<SamplingTimer, 4> SamplingTimers = {{
    {MetricKind::Cpu, CpuTimer},
    {MetricKind::Disk, DiskTimer},
    {MetricKind::Memory, MemoryTimer},
    {MetricKind::Network, NetworkTimer},
}};

}  // namespace kestrane
