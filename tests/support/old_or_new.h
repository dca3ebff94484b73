#pragma once
#include <set>
#include <string>

#include "settings/app_settings.h"
#include "settings/setting_rows.h"

namespace kestrane {

/// The settings that are neither as before nor as after, by their keys. The names of interfaces go by their place in
/// the list of interfaces, which is another key, and are left out.
inline std::set<std::wstring> NeitherOldNorNew(const AppSettings& now, const AppSettings& before,
                                               const AppSettings& after) {
    std::set<std::wstring> lost;
    for (const SettingRow& row : AllRows()) {
        if (row.group == LoadGroup::Aliases || row.equal(now, before) || row.equal(now, after)) continue;
        lost.insert(std::wstring(row.section) + L"." + row.key);
    }
    for (std::size_t i = 0; i < ColorCount; ++i) {
        if (now.colors[i] != before.colors[i] && now.colors[i] != after.colors[i]) lost.insert(IconColors[i].key);
    }
    return lost;
}

}  // namespace kestrane
