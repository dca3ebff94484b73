#include "app/app_win32.h"

#include "app/timers.h"
#include "base/debug_log_win32.h"
#include "base/module_path_win32.h"
#include "hardware/hardware_facts_win32.h"
#include "metrics/samplers_win32.h"
#include "update/self_replacer_win32.h"

namespace kestrane {

App::App() {
    OpenPdhCounters(pdhCounters);
}

void App::OnCreate(HWND created) {
    window = created;
    trayIcons = std::make_shared<TrayIconSet>(window);
    for (const GraphKind kind : GraphKinds) {
        graphs[IndexOf(kind)] = std::make_unique<GraphWindow>(instance, &settings, this, kind);
    }
    DetectHardware();
    BindGraphSources();
    EnsureIconRingSize();
    ApplyIconVisibility();
    HeldIcons()->AddAll();
    TakeFirstReadings();
    OnNetworkTick();
    RefreshAllIcons();
    ApplyTimers();
    ApplyGraphSettings();
    if (shuttingDown) return;  // a message dispatched during a call to the shell has destroyed the window
    RegisterGraphHotkey();
    SetTimer(window, PromotionTimer, PromotionDelayMs, nullptr);
    CleanUpdateLeftovers(ModulePath());
    ApplyUpdateCheckSetting();
}

void OnDestroy(HWND window, App* app) {
    for (const SamplingTimer& timer : SamplingTimers)
        KillTimer(window, timer.id);
    if (app != nullptr) {
        app->shuttingDown = true;
        app->updateChecker.Stop();
        if (app->hotkeyRegistered) UnregisterHotKey(window, GraphHotkeyId);
        for (auto& graph : app->graphs)
            graph.reset();
        app->trayIcons.reset();
    }
    PostQuitMessage(0);
}

void App::OnTaskbarCreated() {
    HeldIcons()->ReAddAll();
    RefreshAllIcons();
    RecoverGraphs();
}

void App::OnSettingsChanged() {
    if (shuttingDown) return;
    ApplyIconVisibility();
    ApplyTimers();
    ApplyGraphSettings();
    RefreshAllIcons();
    ApplyUpdateCheckSetting();
}

std::vector<NetRow> App::ListInterfaces() {
    return kestrane::ListInterfaces(netSampler);
}

/// The facts that samplers and graphs need; all others are read on demand.
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
