#pragma once
// What keeps the settings file readable while a tab is saved. The program can be ended between any two writes, and some
// keys are not read on their own: an absent one is filled in from another, and thresholds out of order count as none.
// Two rules keep each setting old or new after every write of a file that the program has written. No rule
// protects the names of interfaces: they go by their place in the list of interfaces.
#include <vector>

#include "settings/app_settings.h"
#include "settings/ini_settings.h"

namespace kestrane {

// `before` is what the file that `read` tells of holds now, as it is loaded.

/// Whether the save changes a key from which an absent one of the tab is filled in: a colour, or the CPU's period,
/// which is also the disk's without `per_core`. Then the absent keys are first written as they are read.
bool FillsInAbsentKeys(const AppSettings& before, const AppSettings& settings, SettingsTab tab, const ReadValue& read);

/// The rows of a tab in the order of writing, which is the table's but for thresholds that are all there: those that
/// fall come before those that rise, and of these the last comes first.
std::vector<const SettingRow*> RowOrder(const AppSettings& before, const AppSettings& settings, SettingsTab tab,
                                        const ReadValue& read);

}  // namespace kestrane
