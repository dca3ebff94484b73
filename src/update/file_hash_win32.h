#pragma once
#include <string>

namespace kestrane {

/// The SHA-256 of a file as 64 lower-case hexadecimal digits. False on any failure, with `digest` unchanged.
bool HashFileSha256(const std::wstring& path, std::string& digest);

}  // namespace kestrane
