#pragma once
// Measured values as text: the formats that tooltips and graphs share, and the tooltips themselves. The units differ on
// purpose: network rates are bits in steps of 1000, disk rates bytes in steps of 1024, and memory is shown in units of
// 2^30 bytes under the label "GB".
#include <cstdint>
#include <string>

#include "metrics/metric_sample.h"

namespace kestrane {

/// "0.0 kbps", "1.0 Mbps", "1.00 Gbps", with `decimal` for the point. kbps is the smallest unit.
std::wstring FormatBitRate(std::uint64_t bitsPerSec, wchar_t decimal);

/// "0 KB/s", "9.9 KB/s", "10 MB/s", "2 GB/s", with `decimal` for the point: one decimal below ten, unless it is zero.
/// Anything not above zero, including NaN, is 0; infinity is "inf GB/s".
std::wstring FormatByteRate(double bytesPerSec, wchar_t decimal);

/// A whole percentage, clamped to 0..100, halves rounded up, with " %". NaN is 0.
std::wstring FormatPercentText(double value);

/// `bytes` in units of 2^30, with one decimal and no unit name, `separator` for the point.
std::wstring FormatGigabytesWith(std::uint64_t bytes, const std::wstring& separator);

/// The load of the whole machine: "CPU: 12 %".
std::wstring CpuTooltipText(const MetricSample& sample);

/// The percentages are those of the busiest disk in the machine, the speeds those of the chosen disks. Says so if there
/// are no valid figures.
std::wstring DiskTooltipText(const MetricSample& sample, const DiskTotals& totals, wchar_t decimal);

/// The percentage in use, then used and total gigabytes, `separator` for the point.
std::wstring MemoryTooltipTextWith(const MetricSample& sample, const std::wstring& separator);

/// `down` and `up` are bits per second, shown if `connected` and `hasRates`. Connected without rates shows only the
/// label. `label` is the name of the connection and must not be empty.
std::wstring NetTooltipText(const std::wstring& label, bool hasRates, bool connected, std::uint64_t down,
                            std::uint64_t up, wchar_t decimal);

}  // namespace kestrane
