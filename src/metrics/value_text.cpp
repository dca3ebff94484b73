#include "metrics/value_text.h"

#include <algorithm>
#include <cstddef>

#include "text/number_text.h"
#include "text/translation.h"

namespace kestrane {
namespace {

// From here a figure with one decimal would read 1000.0, so use the next unit.
constexpr double NextUnitFrom = 999.95;

/// `text` contains a point.
std::wstring ReplacePoint(std::wstring text, const std::wstring& separator) {
    text.replace(text.find(L'.'), 1, separator);
    return text;
}

std::wstring FormatBitRateWithPoint(std::uint64_t bitsPerSec) {
    const auto bits = static_cast<double>(bitsPerSec);
    if (bits / 1e3 < NextUnitFrom) return FormatFixed(bits / 1e3, 1) + L" kbps";
    if (bits / 1e6 < NextUnitFrom) return FormatFixed(bits / 1e6, 1) + L" Mbps";
    return FormatFixed(bits / 1e9, 2) + L" Gbps";
}

// One decimal below ten, unless it is zero; `value` is not negative.
std::wstring FormatShort(double value, wchar_t decimal) {
    if (value >= 9.95) return FormatFixed(RoundHalfAway(value), 0);
    const auto tenths = static_cast<unsigned>(RoundHalfAway(value * 10));
    std::wstring text = FormatInteger(tenths / 10);
    if (tenths % 10 != 0) text += decimal + FormatInteger(tenths % 10);
    return text;
}

}  // namespace

std::wstring FormatBitRate(std::uint64_t bitsPerSec, wchar_t decimal) {
    return ReplacePoint(FormatBitRateWithPoint(bitsPerSec), std::wstring(1, decimal));
}

std::wstring FormatByteRate(double bytesPerSec, wchar_t decimal) {
    double value = bytesPerSec > 0 ? bytesPerSec / 1024 : 0;
    const wchar_t* unit = L" KB/s";
    if (value >= NextUnitFrom) {
        value /= 1024;
        unit = L" MB/s";
    }
    if (value >= NextUnitFrom) {
        value /= 1024;
        unit = L" GB/s";
    }
    return FormatShort(value, decimal) + unit;
}

std::wstring FormatPercentText(double value) {
    const double percent = value > 0 ? std::min(value, 100.0) : 0;
    return FormatInteger(static_cast<int>(RoundHalfAway(percent))) + L" %";
}

std::wstring FormatGigabytesWith(std::uint64_t bytes, const std::wstring& separator) {
    constexpr double BytesPerGigabyte = 1024.0 * 1024.0 * 1024.0;
    return ReplacePoint(FormatFixed(static_cast<double>(bytes) / BytesPerGigabyte, 1), separator);
}

std::wstring CpuTooltipText(const MetricSample& sample) {
    return L"CPU: " + FormatInteger(sample.cpuPercent) + L" %";
}

std::wstring DiskTooltipText(const MetricSample& sample, const DiskTotals& totals, wchar_t decimal) {
    if (!sample.diskValid) return Tr(L"Disco: sin datos (PDH)");
    return FormatText(L"Disco  L: {0} % · {1}  E: {2} % · {3}",
                      {FormatInteger(sample.diskReadPercent), FormatByteRate(totals.readBytes, decimal),
                       FormatInteger(sample.diskWritePercent), FormatByteRate(totals.writeBytes, decimal)});
}

std::wstring MemoryTooltipTextWith(const MetricSample& sample, const std::wstring& separator) {
    const std::uint64_t total = sample.memoryTotalBytes;
    const std::uint64_t used = total - std::min(sample.memoryAvailableBytes, total);
    return FormatText(L"Memoria: {0} % ({1} / {2} GB)",
                      {FormatInteger(sample.memoryPercent), FormatGigabytesWith(used, separator),
                       FormatGigabytesWith(total, separator)});
}

std::wstring NetTooltipText(const std::wstring& label, bool hasRates, bool connected, std::uint64_t down,
                            std::uint64_t up, wchar_t decimal) {
    if (!connected) return FormatText(L"{0}: desconectada", {label});
    if (!hasRates) return label;
    return FormatText(L"{0}\nBajada: {1}  Subida: {2}",
                      {label, FormatBitRate(down, decimal), FormatBitRate(up, decimal)});
}

}  // namespace kestrane
