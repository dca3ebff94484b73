#pragma once
// Operations of the settings dialog on one tab. Saving walks the same rows (setting_rows.h). The graphs' window state
// belongs to no tab, so these never move an open graph.
#include "settings/app_settings.h"

namespace kestrane {

/// Copies the fields of `tab` from `source` to `dest` and leaves all others.
void CopySettingsTab(AppSettings& dest, const AppSettings& source, SettingsTab tab);

/// True if all fields of `tab` are equal. Lists compare in order: reordered interfaces are a change.
bool SettingsTabEqual(const AppSettings& a, const AppSettings& b, SettingsTab tab);

}  // namespace kestrane
