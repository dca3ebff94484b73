// The linker is told to drop the functions that nobody calls, which leaves holes in the table by which Windows unwinds
// the stack. What is kept must still unwind: through our own frames, the C++ runtime's and the system's.
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace kestrane {
namespace {

struct UnwindEntry {
    std::uint32_t begin;
    std::uint32_t end;
    std::uint32_t data;
};

/// The running program's own table, as it lies in memory.
std::span<const UnwindEntry> OwnUnwindTable() {
    const auto* base = reinterpret_cast<const std::uint8_t*>(GetModuleHandleW(nullptr));
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS64*>(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXCEPTION];
    return {reinterpret_cast<const UnwindEntry*>(base + directory.VirtualAddress),
            directory.Size / sizeof(UnwindEntry)};
}

TEST(UnwindTable, IsSortedSoThatTheSystemCanSearchIt) {
    const std::span<const UnwindEntry> table = OwnUnwindTable();
    ASSERT_GT(table.size(), 100U);
    for (std::size_t i = 1; i < table.size(); ++i) {
        ASSERT_LE(table[i - 1].begin, table[i].begin) << "entry " << i;
        if (table[i].begin == 0) continue;  // of a function that was dropped: matches no address
        ASSERT_LE(table[i - 1].end, table[i].begin) << "entry " << i;
        ASSERT_LT(table[i].begin, table[i].end) << "entry " << i;
    }
}

int ThrowThroughAFrame(int depth) {
    const std::string held(static_cast<std::size_t>(depth) + 20, 'x');
    if (depth == 0) return static_cast<int>(std::vector<int>(2).at(7));
    return ThrowThroughAFrame(depth - 1) + static_cast<int>(held.size());
}

TEST(UnwindTable, KnowsTheFunctionsThatAreThere) {
    DWORD64 imageBase = 0;
    const auto address = reinterpret_cast<DWORD64>(&ThrowThroughAFrame);
    EXPECT_NE(RtlLookupFunctionEntry(address, &imageBase, nullptr), nullptr);
}

TEST(Unwinding, AnExceptionPassesThroughOurFrames) {
    EXPECT_THROW(ThrowThroughAFrame(5), std::out_of_range);
}

TEST(Unwinding, AnExceptionPassesThroughTheRuntime) {
    SetEnvironmentVariableW(L"TMP", L"C:\\no such folder\\at all");
    EXPECT_THROW(std::filesystem::temp_directory_path(), std::filesystem::filesystem_error);
}

int CompareByThrowing(const void*, const void*) {
    throw 7;
}

TEST(Unwinding, AnExceptionPassesThroughTheSystemsFrames) {
    int numbers[] = {3, 1, 2};
    EXPECT_THROW(std::qsort(numbers, 3, sizeof numbers[0], &CompareByThrowing), int);
}

}  // namespace
}  // namespace kestrane
