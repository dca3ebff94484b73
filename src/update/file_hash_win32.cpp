#include "update/file_hash_win32.h"

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "base/handles_win32.h"
#include "text/text_util.h"
#include "update/sha256_win32.h"

namespace kestrane {
namespace {

constexpr std::size_t BlockBytes = 65536;

bool AddFile(const UniqueFile& file, Sha256& hash) {
    std::vector<std::uint8_t> block(BlockBytes);
    for (;;) {
        DWORD read = 0;
        if (!ReadFile(file.Get(), block.data(), static_cast<DWORD>(block.size()), &read, nullptr)) return false;
        if (read == 0) return true;
        if (!hash.Add(block.data(), read)) return false;
    }
}

}  // namespace

bool HashFileSha256(const std::wstring& path, std::string& digest) {
    // Without FILE_SHARE_WRITE: nobody changes the file while it is read.
    const UniqueFile file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file) return false;
    Sha256 hash;
    Sha256Digest bytes{};
    if (!AddFile(file, hash) || !hash.Finish(bytes)) return false;
    digest = HexText(bytes);
    return true;
}

}  // namespace kestrane
