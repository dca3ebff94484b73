#pragma once
// The processor's facts, from the registry and from the system's own records.
#include "hardware/cpu_facts.h"

namespace kestrane {

/// Reads the facts afresh. What cannot be read stays 0 or empty.
CpuFacts ReadCpuFacts();

}  // namespace kestrane
