#include "app/app_win32.h"

#include "app/ticks_win32.h"
#include "app/timers.h"
#include "base/debug_log_win32.h"
#include "hardware/cpu_facts_win32.h"
#include "hardware/disk_facts_win32.h"
#include "metrics/cpu_sampler_win32.h"
#include "metrics/disk_sampler_win32.h"
#include "metrics/memory_sampler_win32.h"

namespace kestrane {

App::App() {
    OpenPdhCounters(pdhCounters);
}

App::~App() {
    ClosePdhCounters(pdhCounters);
}

void App::OnCreate(HWND created) {
    window = created;
    trayIcons = std::make_shared<TrayIconSet>(window);
    for (const GraphKind kind : GraphKinds) {
        graphs[IndexOf(kind)] = std::make_unique<GraphWindow>(instance, &settings, this, kind);
    }
    DetectHardware();
    BindGraphSources();
    EnsureIconRingSize(*this);
    ApplyIconVisibility();
    std::shared_ptr(trayIcons)->AddAll();
    TakeFirstReadings();
    OnNetworkTick(*this);
    RefreshAllIcons();
    ApplyTimers();
    ApplyGraphSettings();
    if (shuttingDown) return;  // the window is gone again, by a message that came while the shell was asked
    RegisterGraphHotkey();
    SetTimer(window, PromotionTimer, PromotionDelayMs, nullptr);
}

void OnDestroy(HWND window, App* app) {
    for (const SamplingTimer& timer : SamplingTimers)
        KillTimer(window, timer.id);
    if (app != nullptr) {
        app->shuttingDown = true;
        if (app->hotkeyRegistered) UnregisterHotKey(window, GraphHotkeyId);
        for (auto& graph : app->graphs)
            graph.reset();
        app->trayIcons.reset();
    }
    PostQuitMessage(0);
}

void App::OnTaskbarCreated() {
    std::shared_ptr(trayIcons)->ReAddAll();
    RefreshAllIcons();
    RecoverGraphs();
}

void App::RecoverGraphs() {
    for (const auto& graph : graphs) {
        if (graph) graph->RecoverIfOffScreen();
    }
}

void App::OnSettingsChanged() {
    if (shuttingDown) return;
    ApplyIconVisibility();
    ApplyTimers();
    ApplyGraphSettings();
    RefreshAllIcons();
}

void App::ApplyIconVisibility() {
    const auto icons = trayIcons;
    for (std::uint32_t position = 0; position < settings.show.size(); ++position) {
        icons->SetVisible(position + 1, settings.show[position]);
    }
}

/// They fill `sample` and lay the baselines for the first real tick; no ring gets a point from them.
void App::TakeFirstReadings() {
    SampleMemory(sample);
    SampleCpu(pdhCounters, sample);
    SampleDisks(pdhCounters, sample);
}

/// What the samplers and the graphs need to know of the machine; all other facts are read when somebody asks.
void App::DetectHardware() {
    coreClasses = ReadCpuFacts().isPerformanceThread;
    fixedDisks = ReadDiskFacts();
    for (const DiskFacts& disk : fixedDisks)
        fixedDiskNumbers.push_back(disk.number);
}

void App::RegisterGraphHotkey() {
    hotkeyRegistered = RegisterHotKey(window, GraphHotkeyId, GraphHotkeyModifiers, GraphHotkeyKey) != FALSE;
    if (!hotkeyRegistered) LogDebug(L"kestrane: Ctrl+Shift+B ya lo usa otro programa; sin atajo para la grafica\n");
}

}  // namespace kestrane
