#pragma once
// Whole files as bytes, past the imports that a test replaces.
#include <windows.h>

#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>

namespace kestrane::test {

inline void WriteBytes(const std::wstring& path, const std::string& bytes) {
    std::FILE* file = _wfopen(path.c_str(), L"wb");
    if (file == nullptr) return;
    std::fwrite(bytes.data(), 1, bytes.size(), file);
    std::fclose(file);
}

/// None if there is no such file.
inline std::optional<std::string> ReadBytes(const std::wstring& path) {
    std::FILE* file = _wfopen(path.c_str(), L"rb");
    if (file == nullptr) return std::nullopt;
    std::string bytes;
    std::string part(65536, '\0');
    while (const std::size_t read = std::fread(part.data(), 1, part.size(), file))
        bytes.append(part, 0, read);
    std::fclose(file);
    return bytes;
}

/// Bytes that do not repeat at any block's length.
inline std::string PatternBytes(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(i % 251);
    return bytes;
}

}  // namespace kestrane::test
