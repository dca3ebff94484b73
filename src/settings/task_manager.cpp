#include "settings/task_manager.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "text/text_util.h"

namespace kestrane {
namespace {

constexpr std::int64_t MemoryPage = 1;
constexpr std::int64_t FirstDiskPage = 2;
constexpr std::int64_t HighestDisk = 99;
/// The value of DefaultStartPage for the Performance tab, which holds these pages.
constexpr std::int64_t PerformanceTab = 1;

std::int64_t DiskNumber(std::wstring_view diskName) {
    std::int64_t number = 0;
    for (const wchar_t c : diskName) {
        if (!IsDigit(c)) break;
        number = std::min(number * 10 + (c - L'0'), HighestDisk);
    }
    return number;
}

/// Like find_first_not_of, but returns the size of the text instead of npos.
std::size_t SkipAll(std::string_view text, std::string_view characters, std::size_t start) {
    return std::min(text.find_first_not_of(characters, start), text.size());
}

}  // namespace

std::int64_t StartPage(MetricKind metric, std::wstring_view diskName, std::int64_t diskCount) {
    switch (metric) {
        case MetricKind::Disk:
            return FirstDiskPage + DiskNumber(diskName);
        case MetricKind::Memory:
            return MemoryPage;
        case MetricKind::Network:
            return FirstDiskPage + std::max<std::int64_t>(diskCount, 0);
        case MetricKind::Cpu:
            break;
    }
    return 0;
}

std::string SetJsonNumber(std::string text, std::string_view key, std::int64_t value) {
    const std::string pattern = '"' + std::string(key) + "\":";
    const std::string number = std::to_string(value);
    if (const std::size_t found = text.find(pattern); found != std::string::npos) {
        const std::size_t start = SkipAll(text, " ", found + pattern.size());
        const std::size_t end = SkipAll(text, "-0123456789", start);
        return text.replace(start, end - start, number);
    }
    const std::size_t brace = text.find('{');
    if (brace == std::string::npos) return text;
    const std::size_t next = SkipAll(text, " \t\r\n", brace + 1);
    const bool alone = next < text.size() && text[next] == '}';
    return text.insert(brace + 1, pattern + number + (alone ? "" : ","));
}

std::string PatchTaskManagerSettings(std::string text, std::int64_t page) {
    if (text.find('{') == std::string::npos) text = "{}";
    text = SetJsonNumber(std::move(text), "CurrentView", page);
    return SetJsonNumber(std::move(text), "DefaultStartPage", PerformanceTab);
}

}  // namespace kestrane
