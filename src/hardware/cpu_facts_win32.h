#pragma once
#include "hardware/cpu_facts.h"

namespace kestrane {

/// Reads the facts afresh. What cannot be read stays 0 or empty.
CpuFacts ReadCpuFacts();

}  // namespace kestrane
