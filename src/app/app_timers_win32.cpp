// The timers of `App` and their ticks: read the counters, store the points, show them. A reading that its sampler
// rejects ends the tick, and the last icon and tooltip stay.
#include "app/app_win32.h"

#include <windows.h>

#include <utility>

#include "app/timers.h"
#include "history/metric_history.h"
#include "metrics/disk_rules.h"
#include "metrics/samplers_win32.h"

namespace kestrane {

void App::ApplyTimers() {
    for (const auto& [metric, id] : SamplingTimers) {
        const std::size_t position = IndexOf(metric);
        const std::uint32_t period = settings.refresh_ms[position];
        if (timerPeriods[position] == period) continue;
        timerPeriods[position] = period;
        SetTimer(window, id, period, nullptr);
    }
    for (const GraphKind kind : GraphKinds)
        graphSources[IndexOf(kind)].periodMs = settings.refresh_ms[IconPosition(kind)];
}

/// Fills `sample` and sets the baselines for the first real tick; adds no points to the rings.
void App::TakeFirstReadings() {
    SampleMemory(sample);
    SampleCpu(pdhCounters, sample);
    SampleDisks(pdhCounters, sample);
}

void App::OnCpuTick() {
    if (!SampleCpu(pdhCounters, sample)) return;
    EnsureIconRingSize();
    PushSample(cpuIconRing, sample.cpuPercent);
    PushSample(cpuRing, static_cast<double>(sample.cpuPercent));
    PushCoreSamples(coreRings, sample.corePercent);
    RefreshCpuIcon();
}

void App::OnDiskTick() {
    if (!SampleDisks(pdhCounters, sample)) return;
    EnsureIconRingSize();
    PushSample(diskReadIconRing, sample.diskReadPercent);
    PushSample(diskWriteIconRing, sample.diskWritePercent);
    diskTotals = SumSelectedDisks(sample.disks, settings.disks, fixedDiskNumbers);
    PushSample(diskReadBytesRing, diskTotals.readBytes);
    PushSample(diskWriteBytesRing, diskTotals.writeBytes);
    PushSample(diskReadPercentRing, static_cast<double>(diskTotals.readPercent));
    PushSample(diskWritePercentRing, static_cast<double>(diskTotals.writePercent));
    diskHistories = NextDiskHistories(std::move(diskHistories), sample.disks, settings.disks, fixedDiskNumbers);
    RefreshDiskIcon();
}

void App::OnMemoryTick() {
    SampleMemory(sample);
    RefreshMemoryIcon();
}

void App::OnNetworkTick() {
    netSample = SampleNetwork(netSampler, settings.interfaces, settings.interface_aliases);
    if (netSample.hasRates) {
        PushSample(netDownRing, netSample.downBitsPerSec);
        PushSample(netUpRing, netSample.upBitsPerSec);
    }
    RefreshNetworkIcon();
}

}  // namespace kestrane
