#include "metrics/samplers_win32.h"

#include <windows.h>

#include <algorithm>

namespace kestrane {

void SampleMemory(MetricSample& sample) {
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof(status);
    if (GlobalMemoryStatusEx(&status) == FALSE) return;
    sample.memoryPercent = std::min<std::uint32_t>(status.dwMemoryLoad, 100);
    sample.memoryTotalBytes = status.ullTotalPhys;
    sample.memoryAvailableBytes = status.ullAvailPhys;
}

}  // namespace kestrane
