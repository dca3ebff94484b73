#pragma once
// The disks' facts, from the drivers of the disks and volumes.
#include <vector>

#include "hardware/disk_facts.h"

namespace kestrane {

/// The fixed internal disks by ascending number, each with the fixed volumes on it. Asks the drivers, so it may take a
/// while; without administrator rights it works too. Empty when there is none.
std::vector<DiskFacts> ReadDiskFacts();

}  // namespace kestrane
