#include "app/tray_menu.h"

#include "base/resource_ids.h"
#include "text/translation.h"

namespace kestrane {
namespace {

struct PinEntry {
    GraphKind kind;
    const wchar_t* text;
};
constexpr std::array<PinEntry, GraphCount> PinEntries{{{GraphKind::Cpu, L"Fijar gráfica de CPU"},
                                                       {GraphKind::Disk, L"Fijar gráfica de disco"},
                                                       {GraphKind::Network, L"Fijar gráfica de red"}}};

void AppendPinEntries(std::vector<TrayMenuEntry>& menu, const AppSettings& settings,
                      const std::array<bool, GraphCount>& shown) {
    bool any = false;
    for (const auto& [kind, text] : PinEntries) {
        if (!shown[IndexOf(kind)]) continue;
        const auto id = static_cast<std::uint32_t>(CommandPinFirst + IndexOf(kind));
        menu.push_back({id, Tr(text), 0, GraphSettingsOf(settings, kind).pinned});
        any = true;
    }
    if (any) menu.emplace_back();
}

}  // namespace

std::vector<TrayMenuEntry> BuildTrayMenu(const AppSettings& settings, const std::array<bool, GraphCount>& shown,
                                         const std::optional<std::wstring>& offeredVersion) {
    std::vector<TrayMenuEntry> menu;
    if (offeredVersion) {
        menu.push_back(
            {CommandUpdate, FormatText(L"Nueva versión {0} disponible...", {*offeredVersion}), ResourceUpdate});
        menu.emplace_back();
    }
    menu.push_back({CommandPerformance, Tr(L"Rendimiento"), ResourcePerformance});
    menu.emplace_back();
    AppendPinEntries(menu, settings, shown);
    menu.push_back({CommandSettings, Tr(L"Ajustes..."), ResourceSettings});
    menu.emplace_back();
    menu.push_back({CommandAbout, Tr(L"Acerca de kestrane..."), ResourceAbout});
    menu.push_back({CommandExit, Tr(L"Salir"), ResourceExit});
    return menu;
}

}  // namespace kestrane
