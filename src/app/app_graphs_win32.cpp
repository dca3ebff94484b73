// The graph windows in `App`: their data sources, when each is open, and the host's callbacks.
#include "app/app_win32.h"

#include <windows.h>

#include "app/tray_menu.h"
#include "settings/ini_file_win32.h"

namespace kestrane {
namespace {

/// Only if `from` still has the foreground and `to` can take it.
void HandForegroundOn(HWND from, HWND to) {
    if (GetForegroundWindow() == from && IsWindowVisible(to) && IsWindowEnabled(to)) GraphWindow::GiveForeground(to);
}

}  // namespace

void App::BindGraphSources() {
    GraphSeries& network = graphSources[IndexOf(GraphKind::Network)];
    network.primary.counterRing = &netDownRing;
    network.secondary.counterRing = &netUpRing;
    GraphSeries& cpu = graphSources[IndexOf(GraphKind::Cpu)];
    cpu.primary.valueRing = &cpuRing;
    cpu.cores = &coreRings;
    cpu.coreClasses = &coreClasses;
    GraphSeries& disk = graphSources[IndexOf(GraphKind::Disk)];
    disk.primary.valueRing = &diskReadBytesRing;
    disk.secondary.valueRing = &diskWriteBytesRing;
    disk.activityRead.valueRing = &diskReadPercentRing;
    disk.activityWrite.valueRing = &diskWritePercentRing;
    disk.disks = &diskHistories;
    for (const GraphKind kind : GraphKinds)
        graphs[IndexOf(kind)]->BindSource(&graphSources[IndexOf(kind)]);
}

void App::ApplyGraphSettings() {
    for (const GraphKind kind : GraphKinds)
        ApplyGraph(kind);
}

/// Hiding an icon hides its graph too, but keeps the graph's own setting, so it comes back with the icon.
void App::ApplyGraph(GraphKind kind) {
    const auto& graph = graphs[IndexOf(kind)];
    if (!graph) return;
    graph->ApplyStyle();
    graph->SetShown(GraphSettingsOf(settings, kind).graph && settings.show[IconPosition(kind)]);
}

void App::RecoverGraphs() {
    for (const auto& graph : graphs) {
        if (graph) graph->RecoverIfOffScreen();
    }
}

void App::InvalidateGraph(GraphKind kind) {
    if (const auto& graph = graphs[IndexOf(kind)]) graph->Invalidate();
}

std::array<bool, GraphCount> App::ShownGraphs() const {
    std::array<bool, GraphCount> shown{};
    for (const GraphKind kind : GraphKinds)
        shown[IndexOf(kind)] = graphs[IndexOf(kind)]->IsShown();
    return shown;
}

void App::ShowGraphMenu(GraphKind kind, Point screenPoint) {
    const HWND before = GetForegroundWindow();
    const auto command = RunTrayMenu(IconIdOf(MetricOf(kind)), screenPoint.x, screenPoint.y);
    if (command && !StartsAProgram(*command)) HandForegroundOn(window, before);
}

void App::GraphClicked(GraphKind kind) {
    if (kind != GraphKind::Disk || settingsOpen) return;
    settings.activity = !settings.activity;
    SaveDiskActivity(settings);
    InvalidateGraph(kind);
}

void App::GraphStateChanged(GraphKind /*kind*/) {
    SaveGraphWindows(settings);
}

}  // namespace kestrane
