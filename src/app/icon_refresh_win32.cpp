// The last step of a tick: text and image of one icon from what is stored, handed to the shell together.
#include <windows.h>

#include <utility>

#include "app/app_win32.h"
#include "app/ticks_win32.h"
#include "app/timers.h"
#include "metrics/value_text.h"
#include "metrics/value_text_win32.h"
#include "text/translation.h"
#include "tray/icon_render_win32.h"

namespace kestrane {

void App::ApplyTimers() {
    for (const auto& [metric, id] : SamplingTimers) {
        const auto position = static_cast<std::size_t>(metric);
        const std::uint32_t period = settings.refresh_ms[position];
        if (timerPeriods[position] == period) continue;
        timerPeriods[position] = period;
        SetTimer(window, id, period, nullptr);
    }
    for (const GraphKind kind : GraphKinds)
        graphSources[IndexOf(kind)].periodMs = settings.refresh_ms[IconPosition(kind)];
}

void App::ShowIcon(MetricKind metric, UniqueIcon icon, const std::wstring& text) {
    const auto id = static_cast<std::uint32_t>(metric) + 1;
    if (const auto icons = trayIcons) icons->Update(id, std::move(icon), text);
}

void App::RefreshCpuIcon() {
    EnsureIconRingSize(*this);
    const std::wstring text = CpuTooltipText(sample);
    ShowIcon(MetricKind::Cpu, RenderCpuIcon(settings, cpuIconRing, iconRingSize), text);
    InvalidateGraph(GraphKind::Cpu);
}

void App::RefreshDiskIcon() {
    EnsureIconRingSize(*this);
    const std::wstring text = DiskTooltipText(sample, diskTotals, DecimalSeparatorChar());
    ShowIcon(MetricKind::Disk,
             RenderDiskIcon(settings, diskReadIconRing, diskWriteIconRing, sample.diskValid, iconRingSize), text);
    InvalidateGraph(GraphKind::Disk);
}

void App::RefreshMemoryIcon() {
    EnsureIconRingSize(*this);
    const std::wstring text = MemoryTooltipText(sample);
    const auto percent = static_cast<std::int32_t>(sample.memoryPercent);
    ShowIcon(MetricKind::Memory, RenderMemoryIcon(settings, percent, iconRingSize), text);
}

void App::RefreshNetworkIcon() {
    EnsureIconRingSize(*this);
    const std::wstring label = netSample.label.empty() ? Tr(L"Red") : netSample.label;
    const std::wstring text = NetTooltipText(label, netSample.hasRates, netSample.connected, netSample.downBitsPerSec,
                                             netSample.upBitsPerSec, DecimalSeparatorChar());
    ShowIcon(MetricKind::Network, RenderNetworkIcon(settings, netDownRing, netUpRing, iconRingSize), text);
    InvalidateGraph(GraphKind::Network);
}

void App::RefreshAllIcons() {
    RefreshCpuIcon();
    RefreshDiskIcon();
    RefreshMemoryIcon();
    RefreshNetworkIcon();
}

}  // namespace kestrane
