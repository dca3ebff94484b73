// Any bytes as Task Manager's settings file: only the two numbers change, and every other byte stays. The first byte is
// the page.
#include <algorithm>
#include <optional>

#include "fuzz/fuzz_target.h"
#include "settings/task_manager.h"

namespace kestrane {
namespace {

using fuzz::Require;

constexpr std::string_view View = "\"CurrentView\":";
constexpr std::string_view Tab = "\"DefaultStartPage\":";

/// A text cut in three, around the number after a key's colon; blanks stay in the first part.
struct Cut {
    std::string_view before;
    std::string_view number;
    std::string_view after;
};

std::optional<Cut> CutAtKey(std::string_view text, std::string_view pattern) {
    const std::size_t found = text.find(pattern);
    if (found == std::string_view::npos) return {};
    std::size_t start = found + pattern.size();
    while (start < text.size() && text[start] == ' ')
        ++start;
    std::size_t end = start;
    while (end < text.size() && (text[end] == '-' || (text[end] >= '0' && text[end] <= '9')))
        ++end;
    return Cut{text.substr(0, start), text.substr(start, end - start), text.substr(end)};
}

bool EqualAround(const Cut& a, const Cut& b) {
    return a.before == b.before && a.after == b.after;
}

/// Checks the result of one edit of one key.
void CheckEdit(const std::string& text, std::string_view key, std::string_view pattern, std::int64_t value) {
    const std::string edited = SetJsonNumber(text, key, value);
    const std::optional<Cut> before = CutAtKey(text, pattern);
    const std::optional<Cut> after = CutAtKey(edited, pattern);
    const std::size_t brace = text.find('{');
    if (!before && brace == std::string::npos) {
        Require(edited == text);
        return;
    }
    Require(after && after->number == std::to_string(value));
    if (before) {
        Require(EqualAround(*before, *after));
    } else {
        // A new first member of the object; without it the text is unchanged.
        const std::size_t next = std::min(text.find_first_not_of(" \t\r\n", brace + 1), text.size());
        const bool alone = text.substr(next, 1) == "}";
        const std::size_t added = pattern.size() + after->number.size() + (alone ? 0 : 1);
        Require(edited.size() == text.size() + added && (alone || after->after.front() == ','));
        Require(edited.substr(0, brace + 1) == text.substr(0, brace + 1));
        Require(edited.substr(brace + 1, pattern.size()) == pattern);
        Require(edited.substr(brace + 1 + added) == text.substr(brace + 1));
    }
    Require(SetJsonNumber(edited, key, value) == edited);
    // There and back: a value leaves nothing behind.
    Require(SetJsonNumber(SetJsonNumber(edited, key, -7), key, value) == edited);
}

/// The size of the text with the key, but without the number.
std::size_t SizeWithout(std::string_view text, std::string_view pattern) {
    const std::optional<Cut> cut = CutAtKey(text, pattern);
    return cut ? text.size() - cut->number.size() : text.size() + pattern.size();
}

void CheckPatch(const std::string& text, std::int64_t page) {
    const std::string patched = PatchTaskManagerSettings(text, page);
    const std::optional<Cut> view = CutAtKey(patched, View);
    const std::optional<Cut> tab = CutAtKey(patched, Tab);
    Require(view && tab && view->number == std::to_string(page) && tab->number == "1");
    Require(PatchTaskManagerSettings(patched, page) == patched);
    const std::string other = PatchTaskManagerSettings(text, page + 1000);
    Require(EqualAround(*view, *CutAtKey(other, View)));
    if (text.find('{') == std::string::npos) {
        Require(patched == PatchTaskManagerSettings("{}", page));
        return;
    }
    // No byte of the text is lost except for its two numbers.
    const std::size_t least = SizeWithout(text, View) + SizeWithout(text, Tab) - text.size() + view->number.size() + 1;
    const std::size_t commas = 2;
    Require(patched.size() >= least && patched.size() <= least + commas);
}

void CheckStartPage(std::wstring_view diskName, std::int64_t diskCount) {
    Require(StartPage(MetricKind::Cpu, diskName, diskCount) == 0);
    Require(StartPage(MetricKind::Memory, diskName, diskCount) == 1);
    Require(StartPage(MetricKind::Network, diskName, diskCount) == 2 + std::max<std::int64_t>(diskCount, 0));
    const std::int64_t page = StartPage(MetricKind::Disk, diskName, diskCount);
    Require(page >= 2 && page <= 101);
    const bool begins = !diskName.empty() && diskName.front() >= L'0' && diskName.front() <= L'9';
    if (!begins) Require(page == 2);
    // The text after the number does not matter.
    const std::size_t end = std::min(diskName.find_first_not_of(L"0123456789"), diskName.size());
    Require(StartPage(MetricKind::Disk, diskName.substr(0, end), 0) == page);
}

}  // namespace
}  // namespace kestrane

FUZZ_TARGET(task_manager_settings) {
    using namespace kestrane;
    const std::int64_t page = input.empty() ? 0 : input.front();
    const fuzz::Bytes rest = input.empty() ? input : input.subspan(1);
    const std::string text(rest.begin(), rest.end());
    CheckEdit(text, "CurrentView", View, page);
    CheckEdit(text, "DefaultStartPage", Tab, page);
    CheckPatch(text, page);
    fuzz::ByteSource source(input);
    CheckStartPage(fuzz::WideText(rest), static_cast<std::int32_t>(source.Bits(4)));
}
