#pragma once
// `App` owns everything that lives as long as the program, and handles the hidden window's messages. UI thread only.
// The window's WM_CREATE starts everything, its WM_DESTROY stops everything.
#include <windows.h>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "dialog/settings_dialog_host.h"
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
#include "update/update_checker_win32.h"

namespace kestrane {

/// The hotkey Ctrl+Shift+B.
inline constexpr int GraphHotkeyId = 1;
inline constexpr UINT GraphHotkeyModifiers = MOD_CONTROL | MOD_SHIFT | MOD_NOREPEAT;
inline constexpr UINT GraphHotkeyKey = 'B';

inline constexpr std::uint32_t DefaultIconSize = 16;

struct App final : SettingsDialogHost, GraphWindowHost {
    App();
    App(const App&) = delete;
    App& operator=(const App&) = delete;

    /// WM_CREATE: starts icons, first readings, timers, graphs and the hotkey, in an order that matters.
    void OnCreate(HWND created);
    /// The shell has restarted and lost all icons: adds them again with fresh images.
    void OnTaskbarCreated();
    /// Applies changed settings everywhere. Does nothing during shutdown.
    void OnSettingsChanged() override;

    // What the settings dialog asks for.

    std::vector<NetRow> ListInterfaces() override;
    const std::vector<DiskFacts>& FixedDisks() override { return fixedDisks; }
    const std::vector<std::uint8_t>& ProcessorClasses() override { return coreClasses; }

    // Timers and ticks (app_timers_win32.cpp).

    /// Starts each sampling timer that is not running with its configured period.
    void ApplyTimers();
    /// One tick of a sampling timer. A reading that its sampler rejects ends the tick. Memory and network readings are
    /// never rejected, but a network reading without rates adds no point.
    void OnCpuTick();
    void OnDiskTick();
    void OnMemoryTick();
    void OnNetworkTick();

    // Icons (app_icons_win32.cpp).

    /// The icons, kept alive by the caller during calls to the shell, which can dispatch a message that ends the
    /// program. Empty before startup and after shutdown.
    std::shared_ptr<TrayIconSet> HeldIcons() const { return trayIcons; }
    /// Resizes the icon rings to the small icon size at the taskbar's DPI.
    void EnsureIconRingSize();
    /// Each rebuilds one icon and its text from stored data, without sampling.
    void RefreshCpuIcon();
    void RefreshDiskIcon();
    void RefreshMemoryIcon();
    void RefreshNetworkIcon();
    void RefreshAllIcons();

    // User actions on the icons (app_tray_win32.cpp).

    /// WM_TRAY_NOTIFY: an event of one of the icons.
    void OnTrayNotify(WPARAM wParam, LPARAM lParam);
    /// Opens, hides or raises a graph.
    void ToggleGraph(GraphKind kind);
    /// True if the settings dialog is open; then it is in front now.
    bool FocusSettingsDialog() const;
    /// The menu of an icon, or the settings dialog to the front if that is open; dismissed without a choice, it returns
    /// the keyboard focus to the icon, unless the user has clicked another window.
    void ShowTrayMenu(std::uint32_t iconId, int x, int y);

    // Updates (app_update_win32.cpp).

    /// Starts or stops the update check as the settings say. The first start ever makes this installation's identity.
    /// Without a thread for it the program ends here, because above are the frames of the window manager, through which
    /// no exception finds its way.
    void ApplyUpdateCheckSetting() noexcept;
    /// WM_UPDATE_STATE: tells the user about a newer version, once for each.
    void OnUpdateState();
    /// Opens the update dialog for the newer version, if there is one, or the settings dialog to the front if that is
    /// open. If the user has the new version downloaded, it takes this one's place, and the program ends.
    void OnUpdateRequested();

    // Graphs (app_graphs_win32.cpp).

    /// The screens have changed: moves graphs that are off every monitor back to the taskbar.
    void RecoverGraphs();
    /// The same menu on a graph; afterwards it returns the foreground to the window that had it.
    void ShowGraphMenu(GraphKind kind, Point screenPoint) override;
    /// A click switches the disk graph between speed and activity; the others have no second view. Not while the
    /// settings dialog, which edits the same setting, is open.
    void GraphClicked(GraphKind kind) override;
    void GraphStateChanged(GraphKind kind) override;

    HINSTANCE instance = nullptr;
    HWND window = nullptr;
    UINT taskbarCreatedMessage = 0;
    AppSettings settings;
    /// Set from startup to shutdown; use HeldIcons to access it.
    std::shared_ptr<TrayIconSet> trayIcons;
    std::array<std::unique_ptr<GraphWindow>, GraphCount> graphs;
    /// The graphs' data, by GraphKind; only `periodMs` changes after startup.
    std::array<GraphSeries, GraphCount> graphSources;
    PdhCounters pdhCounters;
    NetSampler netSampler;
    MetricSample sample;
    NetSample netSample;
    DiskTotals diskTotals;
    /// Edge of a notification icon in pixels, and the capacity of the three icon rings.
    std::uint32_t iconRingSize = DefaultIconSize;
    MetricRing<std::int32_t> cpuIconRing{DefaultIconSize};
    MetricRing<std::int32_t> diskReadIconRing{DefaultIconSize};
    MetricRing<std::int32_t> diskWriteIconRing{DefaultIconSize};
    MetricRing<double> cpuRing{SeriesCapacity};
    /// One ring per element of `sample.corePercent`.
    std::vector<MetricRing<double>> coreRings;
    /// By logical number: 1 for a performance processor.
    std::vector<std::uint8_t> coreClasses;
    MetricRing<double> diskReadBytesRing{SeriesCapacity};
    MetricRing<double> diskWriteBytesRing{SeriesCapacity};
    MetricRing<double> diskReadPercentRing{SeriesCapacity};
    MetricRing<double> diskWritePercentRing{SeriesCapacity};
    std::vector<DiskHistory> diskHistories;
    /// The machine's fixed disks as found at startup, and their numbers in the same order.
    std::vector<DiskFacts> fixedDisks;
    std::vector<std::uint32_t> fixedDiskNumbers;
    MetricRing<std::uint64_t> netDownRing{SeriesCapacity};
    MetricRing<std::uint64_t> netUpRing{SeriesCapacity};
    bool menuOpen = false;
    bool shuttingDown = false;
    bool settingsOpen = false;
    bool updateDialogOpen = false;
    bool hotkeyRegistered = false;
    UpdateChecker updateChecker;
    /// The version that the last notification was about.
    std::string lastNotifiedVersion;
    /// Running periods by metric; 0 means not started.
    std::array<std::uint32_t, MetricCount> timerPeriods{};
    /// By icon position: the tick count until which clicks are ignored.
    std::array<std::uint64_t, MetricCount> nextClickTick{};

  private:
    void DetectHardware();
    void RegisterGraphHotkey();

    void TakeFirstReadings();

    void ApplyIconVisibility();
    void ShowIcon(MetricKind metric, UniqueIcon icon, const std::wstring& text);

    void OnIconClick(GraphKind kind, std::uint32_t event);
    /// Builds the menu of an icon, tracks it at a screen point and runs the chosen command, which it returns. None if a
    /// menu or the settings dialog is already open, or if the program has ended meanwhile.
    std::optional<std::uint32_t> RunTrayMenu(std::uint32_t iconId, int x, int y);
    std::uint32_t ChooseFromTrayMenu(int x, int y);
    /// `iconId` is the icon whose menu was used, at `point` of the screen.
    void RunCommand(std::uint32_t command, std::uint32_t iconId, const Point& point);
    /// The settings dialog, near the point at which the user asked for it; returns when it has been closed.
    void ShowSettings(const Point& anchor);
    void TogglePin(GraphKind kind);
    void ShowAbout();

    /// The newer version that the user can have.
    std::optional<std::wstring> OfferedVersion() const;
    void EnsureInstallId();
    void FinishSelfUpdate();

    void BindGraphSources();
    void ApplyGraphSettings();
    void ApplyGraph(GraphKind kind);
    void InvalidateGraph(GraphKind kind);
    std::array<bool, GraphCount> ShownGraphs() const;
};

/// WM_DESTROY: stops everything in order and ends the message loop. `app` may be null; then it only stops the timers
/// and ends the loop.
void OnDestroy(HWND window, App* app);

}  // namespace kestrane
