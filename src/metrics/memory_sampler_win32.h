#pragma once
// The memory's reading. It has no history, so every reading counts.
#include "metrics/metric_sample.h"

namespace kestrane {

/// Fills the three memory fields. When the system does not answer, the last figures stay.
void SampleMemory(MetricSample& sample);

}  // namespace kestrane
