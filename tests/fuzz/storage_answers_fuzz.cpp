// Any bytes as disk drivers' replies. The first byte is the size that the driver claims to have returned.
#include <algorithm>

#include "fuzz/fuzz_target.h"
#include "hardware/disk_facts.h"

FUZZ_TARGET(storage_answers) {
    using namespace kestrane;
    using fuzz::Require;
    if (input.empty()) return;
    const std::size_t claimed = std::size_t{input.front()} * 8;
    const fuzz::Bytes answer = input.subspan(1);

    const StorageFacts facts = ParseStorageDescriptor(answer, claimed);
    Require(facts.model.size() <= 2 * answer.size() + 1);
    Require(facts.model.empty() || (facts.model.front() != L' ' && facts.model.back() != L'\t'));
    Require(claimed >= 40 || (facts.isFixed && facts.model.empty() && facts.bus.empty()));
    // A text that would begin beyond the returned bytes does not exist.
    const auto begins = [&](std::size_t field) { return U32At(answer, field) > 0 && U32At(answer, field) < claimed; };
    Require(begins(12) || begins(16) || facts.model.empty());
    Require(answer.size() >= 32 || ParseDiskSize(answer) == 0);
    Require(answer.size() >= 4 || !ParseFirstExtentDisk(answer));

    const std::wstring text(answer.begin(), answer.end());
    const std::vector<std::wstring> roots = SplitDriveStrings(text);
    Require(roots.size() <= text.size());
    Require(std::ranges::none_of(roots, [](const std::wstring& root) { return root.empty(); }));
}
