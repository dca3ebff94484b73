#pragma once
// What the settings dialog does to one tab of the settings. Saving walks the same rows (setting_rows.h). The window
// state of the graphs belongs to no tab, so nothing done to a tab ever moves an open graph.
#include "settings/app_settings.h"

namespace kestrane {

/// Gives `dest` the fields of `tab` in `source` and leaves all others.
void CopySettingsTab(AppSettings& dest, const AppSettings& source, SettingsTab tab);

/// True when all fields of `tab` are equal. Lists compare in order: the same interfaces in another order are a change.
bool SettingsTabEqual(const AppSettings& a, const AppSettings& b, SettingsTab tab);

}  // namespace kestrane
