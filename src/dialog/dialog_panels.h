#pragma once
// What the controls of the settings dialog are for: the tabs, the panels of detected hardware and of the three graphs,
// and the well of each colour.
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "dialog/control_ids.h"
#include "settings/app_settings.h"

namespace kestrane {

struct DialogTab {
    ControlId button;
    const wchar_t* text;  // Spanish
    ColorValue accent;
    ControlId icon;
    std::int32_t show;  // switch of the tray icon, NoId on the General tab
    ControlId restore;
    ControlId save;
};

/// By SettingsTab.
// clang-format off
inline constexpr std::array<DialogTab, 5> DialogTabs{{
    {IdCpuTab,     L"CPU",     0x1B75BC, IdCpuTabIcon,     IdCpuShow,  IdCpuRestore,     IdCpuSave},
    {IdDiskTab,    L"Disco",   0x4CAF50, IdDiskTabIcon,    IdDiskShow, IdDiskRestore,    IdDiskSave},
    {IdMemTab,     L"Memoria", 0xE0A820, IdMemTabIcon,     IdMemShow,  IdMemRestore,     IdMemSave},
    {IdNetTab,     L"Red",     0xE14B4B, IdNetTabIcon,     IdNetShow,  IdNetRestore,     IdNetSave},
    {IdGeneralTab, L"General", 0x808080, IdGeneralTabIcon, NoId,       IdGeneralRestore, IdGeneralSave},
}};
// clang-format on
inline constexpr std::size_t TabCount = DialogTabs.size();

constexpr std::size_t IndexOf(SettingsTab tab) {
    return static_cast<std::size_t>(tab);
}
static_assert(IndexOf(SettingsTab::Cpu) == 0 && IndexOf(SettingsTab::General) == TabCount - 1);

/// The tab with this number in a DialogState; CPU if there is none.
constexpr SettingsTab TabOfNumber(std::uint32_t number) {
    return number < TabCount ? static_cast<SettingsTab>(number) : SettingsTab::Cpu;
}

/// The box of detected hardware, which spans `first_group` to `last_group`.
struct HardwarePanel {
    ControlId title;
    ControlId text;
    std::size_t first_group;
    std::size_t last_group;
};

/// By SettingsTab: CPU, disk, memory.
// clang-format off
inline constexpr std::array<HardwarePanel, 3> HardwarePanels{{
    {IdCpuHardwareTitle,  IdCpuHardware,   1,  2},
    {IdDiskHardwareTitle, IdDiskHardware, 10, 11},
    {IdMemHardwareTitle,  IdMemHardware,  21, 22},
}};
// clang-format on
inline constexpr std::size_t HardwareCount = HardwarePanels.size();

/// The box of a graph's settings, which spans `first_group` to `last_group`. The three graphs have the same controls.
struct GraphPanel {
    SettingsTab tab;
    ControlId title;
    ControlId background;
    ControlId opacity;
    ControlId margin;
    ControlId lines;
    ControlId smoothing;
    ControlId fill;
    ControlId topmost;
    ControlId font;
    ControlId size;
    ControlId bold;
    ControlId sample;
    std::size_t first_group;
    std::size_t last_group;
};

/// By GraphKind.
inline constexpr std::array<GraphPanel, GraphCount> GraphPanels{{
    {SettingsTab::Network, IdNetGraphTitle, IdNetGraphBg, IdNetOpacity, IdNetMargin, IdNetLines, IdNetSmoothing,
     IdNetFill, IdNetTopmost, IdNetFont, IdNetFontSize, IdNetFontBold, IdNetGraphSample, 27, 30},
    {SettingsTab::Cpu, IdCpuGraphTitle, IdCpuGraphBg, IdCpuOpacity, IdCpuMargin, IdCpuLines, IdCpuSmoothing, IdCpuFill,
     IdCpuTopmost, IdCpuFont, IdCpuFontSize, IdCpuFontBold, IdCpuGraphSample, 4, 7},
    {SettingsTab::Disk, IdDiskGraphTitle, IdDiskGraphBg, IdDiskOpacity, IdDiskMargin, IdDiskLines, IdDiskSmoothing,
     IdDiskFill, IdDiskTopmost, IdDiskFont, IdDiskFontSize, IdDiskFontBold, IdDiskGraphSample, 13, 18},
}};

/// By ColorKey.
inline constexpr std::array<ControlId, ColorCount> ColorWells{
    // CPU
    IdCpuBg, IdCpuFg, IdCpuGraphBg, IdCpuBorder, IdCpuGraphFg, IdCpuGraphPerf, IdCpuGraphEff,
    // Disk
    IdDiskBg, IdDiskRead, IdDiskWrite, IdDiskGraphBg, IdDiskBorder, IdDiskGraphRead, IdDiskGraphWrite,
    // Memory
    IdMemBg, IdMemText, IdMem1Bg, IdMem1Text, IdMem2Bg, IdMem2Text, IdMem3Bg, IdMem3Text, IdMemBorder, IdMem1Border,
    IdMem2Border, IdMem3Border,
    // Network
    IdNetBg, IdNetDown, IdNetUp, IdNetBoth, IdNetGraphBg, IdNetBorder, IdNetGraphDown, IdNetGraphUp, IdNetGraphBoth};

/// The colour of a well; none for any other control.
constexpr std::optional<ColorKey> ColorOfWell(std::int32_t id) {
    for (std::size_t i = 0; i < ColorWells.size(); ++i) {
        if (ColorWells[i] == id) return static_cast<ColorKey>(i);
    }
    return std::nullopt;
}

/// The sampling periods, by MetricKind.
inline constexpr std::array<ControlId, MetricCount> RefreshCombos{IdCpuRefresh, IdDiskRefresh, IdMemRefresh,
                                                                  IdNetRefresh};

/// The number fields of the memory icon's levels, in ascending order.
inline constexpr std::array<ControlId, 3> ThresholdFields{IdThreshold1, IdThreshold2, IdThreshold3};

/// The window's title, in Spanish.
inline constexpr const wchar_t* SettingsDialogTitle = L"Ajustes de kestrane";

/// A note below the pages, seen from every tab.
struct PageNote {
    ControlId id;
    const wchar_t* text;  // Spanish
};
inline constexpr std::array<PageNote, 2> PageNotes{{
    {IdColorNote, L"Clic izquierdo en un cuadro: elegir color. Clic derecho: transparente."},
    {IdSavingNote,
     L"Cada pestaña se guarda por separado. Cerrar la ventana descarta lo que no se haya guardado. Se vuelve a abrir "
     L"donde y como se dejó."},
}};

}  // namespace kestrane
