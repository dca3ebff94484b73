#pragma once
// The ids of the program's resources, which kestrane.rc defines. A test compares the two.
#include <cstdint>

namespace kestrane {

/// The empty dialog template.
inline constexpr std::uint32_t ResourceSettingsDialog = 200;
/// The dialog that offers a newer version.
inline constexpr std::uint32_t ResourceUpdateDialog = 300;

// Icons.
inline constexpr std::uint32_t ResourceProgram = 1;  // the shell shows the lowest id for the file
inline constexpr std::uint32_t ResourcePerformance = 201;
inline constexpr std::uint32_t ResourceSettings = 202;
inline constexpr std::uint32_t ResourceAbout = 203;
inline constexpr std::uint32_t ResourceExit = 204;
inline constexpr std::uint32_t ResourceRestore = 206;
inline constexpr std::uint32_t ResourceSave = 207;
inline constexpr std::uint32_t ResourceCpu = 210;
inline constexpr std::uint32_t ResourceMemory = 211;
inline constexpr std::uint32_t ResourceNetwork = 212;
inline constexpr std::uint32_t ResourceDisk = 213;
inline constexpr std::uint32_t ResourceGraph = 214;
inline constexpr std::uint32_t ResourceUpdate = 215;

}  // namespace kestrane
