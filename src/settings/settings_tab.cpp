#include "settings/settings_tab.h"

#include <algorithm>

#include "settings/setting_rows.h"

namespace kestrane {

void CopySettingsTab(AppSettings& dest, const AppSettings& source, SettingsTab tab) {
    const ColorRange range = TabColors(tab);
    for (std::size_t i = range.first; i < range.end; ++i)
        dest.colors[i] = source.colors[i];
    for (const SettingRow& row : TabRows(tab))
        row.copy(dest, source);
}

bool SettingsTabEqual(const AppSettings& a, const AppSettings& b, SettingsTab tab) {
    const ColorRange range = TabColors(tab);
    for (std::size_t i = range.first; i < range.end; ++i) {
        if (a.colors[i] != b.colors[i]) return false;
    }
    const SettingRows rows = TabRows(tab);
    return std::all_of(rows.begin(), rows.end(), [&](const SettingRow& row) { return row.equal(a, b); });
}

}  // namespace kestrane
