#include "app/ticks_win32.h"

#include <utility>

#include "app/app_win32.h"
#include "graph/metric_history.h"
#include "metrics/cpu_sampler_win32.h"
#include "metrics/disk_rules.h"
#include "metrics/disk_sampler_win32.h"
#include "metrics/memory_sampler_win32.h"
#include "metrics/net_sampler_win32.h"
#include "tray/icon_render_win32.h"

namespace kestrane {

void EnsureIconRingSize(App& app) {
    const std::uint32_t size = IconPixelSize(app.window);
    if (size == app.iconRingSize) return;
    app.iconRingSize = size;
    for (auto* ring : {&app.cpuIconRing, &app.diskReadIconRing, &app.diskWriteIconRing})
        ResizeKeepNewest(*ring, size);
}

void OnCpuTick(App& app) {
    if (!SampleCpu(app.pdhCounters, app.sample)) return;
    EnsureIconRingSize(app);
    PushSample(app.cpuIconRing, app.sample.cpuPercent);
    PushSample(app.cpuRing, static_cast<double>(app.sample.cpuPercent));
    PushCoreSamples(app.coreRings, app.sample.corePercent);
    app.RefreshCpuIcon();
}

void OnDiskTick(App& app) {
    if (!SampleDisks(app.pdhCounters, app.sample)) return;
    EnsureIconRingSize(app);
    PushSample(app.diskReadIconRing, app.sample.diskReadPercent);
    PushSample(app.diskWriteIconRing, app.sample.diskWritePercent);
    app.diskTotals = SumSelectedDisks(app.sample.disks, app.settings.disks, app.fixedDiskNumbers);
    PushSample(app.diskReadBytesRing, app.diskTotals.readBytes);
    PushSample(app.diskWriteBytesRing, app.diskTotals.writeBytes);
    PushSample(app.diskReadPercentRing, static_cast<double>(app.diskTotals.readPercent));
    PushSample(app.diskWritePercentRing, static_cast<double>(app.diskTotals.writePercent));
    app.diskHistories =
        NextDiskHistories(std::move(app.diskHistories), app.sample.disks, app.settings.disks, app.fixedDiskNumbers);
    app.RefreshDiskIcon();
}

void OnNetworkTick(App& app) {
    app.netSample = SampleNetwork(app.netSampler, app.settings.interfaces, app.settings.interface_aliases);
    if (app.netSample.hasRates) {
        PushSample(app.netDownRing, app.netSample.downBitsPerSec);
        PushSample(app.netUpRing, app.netSample.upBitsPerSec);
    }
    app.RefreshNetworkIcon();
}

void App::OnMemoryTick() {
    SampleMemory(sample);
    RefreshMemoryIcon();
}

}  // namespace kestrane
