#include "app/ticks_win32.h"

#include "app/app_win32.h"
#include "graph/metric_history.h"
#include "metrics/cpu_sampler_win32.h"
#include "metrics/memory_sampler_win32.h"
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

void App::OnMemoryTick() {
    SampleMemory(sample);
    RefreshMemoryIcon();
}

}  // namespace kestrane
