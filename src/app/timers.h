#pragma once
// The timers of the hidden window. The ids are not in icon order, and each metric has its own period.
#include <array>
#include <cstdint>

#include "settings/app_settings.h"

namespace kestrane {

inline constexpr std::uintptr_t CpuTimer = 1;
inline constexpr std::uintptr_t PromotionTimer = 2;
inline constexpr std::uintptr_t MemoryTimer = 3;
inline constexpr std::uintptr_t NetworkTimer = 4;
inline constexpr std::uintptr_t DiskTimer = 5;

/// The icons are promoted once, this long after startup.
inline constexpr std::uint32_t PromotionDelayMs = 2000;

struct SamplingTimer {
    MetricKind metric;
    std::uintptr_t id;
};

/// The four sampling timers, in the order of starting and stopping.
inline constexpr std::array<SamplingTimer, 4> SamplingTimers = {{
    {MetricKind::Cpu, CpuTimer},
    {MetricKind::Disk, DiskTimer},
    {MetricKind::Memory, MemoryTimer},
    {MetricKind::Network, NetworkTimer},
}};

}  // namespace kestrane
