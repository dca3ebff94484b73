// The icons in `App`: text and image are built from the stored data and given to the shell in one call.
#include "app/app_win32.h"

#include <windows.h>

#include <utility>

#include "metrics/value_text.h"
#include "metrics/value_text_win32.h"
#include "text/translation.h"
#include "tray/icon_render_win32.h"

namespace kestrane {

void App::ApplyIconVisibility() {
    const auto icons = HeldIcons();
    for (const MetricKind metric : MetricKinds)
        icons->SetVisible(IconIdOf(metric), settings.show[IndexOf(metric)]);
}

/// An icon has one point per pixel column.
void App::EnsureIconRingSize() {
    const std::uint32_t size = IconPixelSize(window);
    if (size == iconRingSize) return;
    iconRingSize = size;
    for (auto* ring : {&cpuIconRing, &diskReadIconRing, &diskWriteIconRing})
        ResizeKeepNewest(*ring, size);
}

void App::ShowIcon(MetricKind metric, UniqueIcon icon, const std::wstring& text) {
    if (const auto icons = HeldIcons()) icons->Update(IconIdOf(metric), std::move(icon), text);
}

void App::RefreshCpuIcon() {
    EnsureIconRingSize();
    const std::wstring text = CpuTooltipText(sample);
    ShowIcon(MetricKind::Cpu, RenderCpuIcon(settings, cpuIconRing, iconRingSize), text);
    InvalidateGraph(GraphKind::Cpu);
}

void App::RefreshDiskIcon() {
    EnsureIconRingSize();
    const std::wstring text = DiskTooltipText(sample, diskTotals, DecimalSeparatorChar());
    ShowIcon(MetricKind::Disk,
             RenderDiskIcon(settings, diskReadIconRing, diskWriteIconRing, sample.diskValid, iconRingSize), text);
    InvalidateGraph(GraphKind::Disk);
}

void App::RefreshMemoryIcon() {
    EnsureIconRingSize();
    const std::wstring text = MemoryTooltipText(sample);
    const auto percent = static_cast<std::int32_t>(sample.memoryPercent);
    ShowIcon(MetricKind::Memory, RenderMemoryIcon(settings, percent, iconRingSize), text);
}

void App::RefreshNetworkIcon() {
    EnsureIconRingSize();
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
