#pragma once
// The icons of the settings dialog by use, as resource ids.
#include <array>
#include <cstdint>

#include "base/resource_ids.h"
#include "dialog/dialog_panels.h"

namespace kestrane {

/// By SettingsTab.
inline constexpr std::array<std::uint32_t, TabCount> TabIcons{ResourceCpu, ResourceDisk, ResourceMemory,
                                                              ResourceNetwork, ResourceSettings};

/// Beside the titles of sections.
inline constexpr std::uint32_t HardwareSectionIcon = ResourceAbout;
inline constexpr std::uint32_t GraphSectionIcon = ResourceGraph;

/// On push buttons.
inline constexpr std::uint32_t RestoreButtonIcon = ResourceRestore;
inline constexpr std::uint32_t SaveButtonIcon = ResourceSave;

}  // namespace kestrane
