#pragma once
// Facts about the machine, read again by each call.
#include <vector>

#include "hardware/cpu_facts.h"
#include "hardware/disk_facts.h"
#include "hardware/memory_facts.h"

namespace kestrane {

/// Processor facts from the registry and GetLogicalProcessorInformationEx. Anything that cannot be read stays 0 or
/// empty.
CpuFacts ReadCpuFacts();

/// Memory facts from the firmware's SMBIOS table, and the installed size from Windows. Anything that cannot be read
/// stays 0 or empty.
MemoryFacts ReadMemoryFacts();

/// The fixed internal disks in ascending order, each with its fixed volumes. Queries the disk and volume drivers, so it
/// may take a while; needs no administrator rights. Empty if there are none.
std::vector<DiskFacts> ReadDiskFacts();

}  // namespace kestrane
