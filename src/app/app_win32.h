#pragma once
// `App` owns everything that lives as long as the program runs, and is what the hidden window's messages act on. All of
// it belongs to the user-interface thread. The window's WM_CREATE starts everything, its WM_DESTROY stops everything.
#include <windows.h>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "graph/graph_window_host.h"
#include "graph/graph_window_win32.h"
#include "hardware/disk_facts.h"
#include "history/metric_ring.h"
#include "history/series.h"
#include "metrics/metric_sample.h"
#include "metrics/net_rules.h"
#include "metrics/pdh_counters_win32.h"
#include "settings/app_settings.h"
#include "tray/tray_icon_set_win32.h"

namespace kestrane {

/// The shortcut Ctrl+Shift+B.
inline constexpr int GraphHotkeyId = 1;
inline constexpr UINT GraphHotkeyModifiers = MOD_CONTROL | MOD_SHIFT | MOD_NOREPEAT;
inline constexpr UINT GraphHotkeyKey = 'B';

inline constexpr std::uint32_t DefaultIconSize = 16;

struct App final : GraphWindowHost {
    App();
    App(const App&) = delete;
    App& operator=(const App&) = delete;

    /// WM_CREATE: brings up icons, first readings, timers and the shortcut, in the one order that works.
    void OnCreate(HWND created);
    /// The shell has restarted: all icons are gone and come back with fresh images.
    void OnTaskbarCreated();
    /// Shows changed settings everywhere. Nothing once the end has begun.
    void OnSettingsChanged();

    // Timers and ticks (app_timers_win32.cpp).

    /// Starts or re-periods the sampling timers whose period differs from the one that runs.
    void ApplyTimers();
    /// One tick of a sampling timer each. A reading that its sampler refuses ends the tick; one of memory or network is
    /// never refused, and without rates the network gives no point.
    void OnCpuTick();
    void OnDiskTick();
    void OnMemoryTick();
    void OnNetworkTick();

    // Icons (app_icons_win32.cpp).

    /// The icons, held for as long as the shell is asked something about them: while it is, a message of its own can
    /// bring the end. Empty before the start and after the end.
    std::shared_ptr<TrayIconSet> HeldIcons() const { return trayIcons; }
    /// Follows the size of a small icon at the taskbar's DPI.
    void EnsureIconRingSize();
    /// Each rebuilds one icon and its text from what is stored, without sampling.
    void RefreshCpuIcon();
    void RefreshDiskIcon();
    void RefreshMemoryIcon();
    void RefreshNetworkIcon();
    void RefreshAllIcons();

    // What the user does to the icons (app_tray_win32.cpp).

    /// An event of one of the icons, as the shell sends it.
    void OnTrayNotify(WPARAM wParam, LPARAM lParam);
    /// Opens, hides or raises a graph.
    void ToggleGraph(GraphKind kind);
    /// The menu at an icon; left without a choice, it gives the keyboard back to that icon.
    void ShowTrayMenu(std::uint32_t iconId, int x, int y);

    // Graphs (app_graphs_win32.cpp).

    /// The screen has changed: graphs that no monitor shows any more come back to the taskbar.
    void RecoverGraphs();
    /// The same menu at a graph; it gives the foreground back to the window that had it before.
    void ShowGraphMenu(GraphKind kind, Point screenPoint) override;
    /// A click on the disk graph switches between speed and activity; the other two have no second view.
    void GraphClicked(GraphKind kind) override;
    void GraphStateChanged(GraphKind kind) override;

    HINSTANCE instance = nullptr;
    HWND window = nullptr;
    UINT taskbarCreatedMessage = 0;
    AppSettings settings;
    /// From the start to the end; reached through HeldIcons.
    std::shared_ptr<TrayIconSet> trayIcons;
    std::array<std::unique_ptr<GraphWindow>, GraphCount> graphs;
    /// What the graphs read, by GraphKind; only `periodMs` changes after the start.
    std::array<GraphSeries, GraphCount> graphSources;
    PdhCounters pdhCounters;
    NetSampler netSampler;
    MetricSample sample;
    NetSample netSample;
    DiskTotals diskTotals;
    /// Edge of a notification icon in pixels, and so the capacity of the three icon rings.
    std::uint32_t iconRingSize = DefaultIconSize;
    MetricRing<std::int32_t> cpuIconRing{DefaultIconSize};
    MetricRing<std::int32_t> diskReadIconRing{DefaultIconSize};
    MetricRing<std::int32_t> diskWriteIconRing{DefaultIconSize};
    MetricRing<double> cpuRing{SeriesCapacity};
    /// One ring per element of `sample.corePercent`.
    std::vector<MetricRing<double>> coreRings;
    /// By logical number: 1 when that processor is of the performance class.
    std::vector<std::uint8_t> coreClasses;
    MetricRing<double> diskReadBytesRing{SeriesCapacity};
    MetricRing<double> diskWriteBytesRing{SeriesCapacity};
    MetricRing<double> diskReadPercentRing{SeriesCapacity};
    MetricRing<double> diskWritePercentRing{SeriesCapacity};
    std::vector<DiskHistory> diskHistories;
    /// The machine's fixed disks as they were at the start, and their numbers in the same order.
    std::vector<DiskFacts> fixedDisks;
    std::vector<std::uint32_t> fixedDiskNumbers;
    MetricRing<std::uint64_t> netDownRing{SeriesCapacity};
    MetricRing<std::uint64_t> netUpRing{SeriesCapacity};
    bool menuOpen = false;
    bool shuttingDown = false;
    bool hotkeyRegistered = false;
    /// Running periods by metric; 0 means not started.
    std::array<std::uint32_t, MetricCount> timerPeriods{};
    /// By icon position: the tick count before which a further click is ignored.
    std::array<std::uint64_t, MetricCount> nextClickTick{};

  private:
    void DetectHardware();
    void RegisterGraphHotkey();

    void TakeFirstReadings();

    void ApplyIconVisibility();
    void ShowIcon(MetricKind metric, UniqueIcon icon, const std::wstring& text);

    void OnIconClick(GraphKind kind, std::uint32_t event);
    /// Builds the menu of an icon, tracks it at a point of the screen and runs what is chosen. One at a time. What was
    /// chosen; none if no menu opened, or if the end has come with it.
    std::optional<std::uint32_t> RunTrayMenu(std::uint32_t iconId, int x, int y);
    std::uint32_t ChooseFromTrayMenu(int x, int y);
    /// `iconId` is that of the icon whose menu it was.
    void RunCommand(std::uint32_t command, std::uint32_t iconId);
    void TogglePin(GraphKind kind);
    void ShowAbout();

    void BindGraphSources();
    void ApplyGraphSettings();
    void ApplyGraph(GraphKind kind);
    void InvalidateGraph(GraphKind kind);
    std::array<bool, GraphCount> ShownGraphs() const;
};

/// WM_DESTROY: stops everything in order and ends the message loop. `app` may be null; then only the timers end.
void OnDestroy(HWND window, App* app);

}  // namespace kestrane
