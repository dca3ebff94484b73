#pragma once
// What the machine says of itself, asked afresh by each call.
#include <vector>

#include "hardware/cpu_facts.h"
#include "hardware/disk_facts.h"

namespace kestrane {

/// The processor's facts, from the registry and from the system's own records. What cannot be read stays 0 or empty.
CpuFacts ReadCpuFacts();

/// The fixed internal disks by ascending number, each with the fixed volumes on it. Asks the drivers of disks and
/// volumes, so it may take a while; without administrator rights it works too. Empty when there is none.
std::vector<DiskFacts> ReadDiskFacts();

}  // namespace kestrane
