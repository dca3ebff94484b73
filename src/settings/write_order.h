#pragma once
// The order in which a tab's keys are written. The program can be ended between any two writes, and some keys are not
// read on their own: thresholds out of order count as none, and an absent key is filled in from another. So that the
// file reads as old or new after every write, setting by setting, a few keys are written out of their turn, and only
// when it matters. The names of interfaces are not ordered: they go by their place in the list of interfaces.
#include <cstddef>
#include <vector>

#include "settings/app_settings.h"
#include "settings/ini_settings.h"

namespace kestrane {

// `before` is what the file that `read` tells of holds now, as it is loaded.

/// The colours of a tab. Those that a load would fill in from one that changes come first.
std::vector<std::size_t> ColorOrder(const AppSettings& before, const AppSettings& settings, SettingsTab tab,
                                    const ReadValue& read);
/// The rows of a tab. The same holds for `per_core`, whose absence gives the disk the CPU's period. Thresholds that
/// fall come before those that rise, and the last that rises before the others.
std::vector<const SettingRow*> RowOrder(const AppSettings& before, const AppSettings& settings, SettingsTab tab,
                                        const ReadValue& read);

}  // namespace kestrane
