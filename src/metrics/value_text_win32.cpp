#include "metrics/value_text_win32.h"

#include <windows.h>

#include <array>

#include "metrics/value_text.h"

namespace kestrane {
namespace {

// Never empty: falls back to a point.
std::wstring ReadDecimalSeparator() {
    std::array<wchar_t, 4> buffer{};  // the longest separator that Windows allows is three characters
    const int size = static_cast<int>(buffer.size());
    if (GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, LOCALE_SDECIMAL, buffer.data(), size) <= 0) return L".";
    return buffer.front() == L'\0' ? L"." : buffer.data();
}

}  // namespace

wchar_t DecimalSeparatorChar() {
    return ReadDecimalSeparator().front();
}

std::wstring FormatGigabytes(std::uint64_t bytes) {
    return FormatGigabytesWith(bytes, ReadDecimalSeparator());
}

std::wstring MemoryTooltipText(const MetricSample& sample) {
    return MemoryTooltipTextWith(sample, ReadDecimalSeparator());
}

}  // namespace kestrane
