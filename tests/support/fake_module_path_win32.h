#pragma once
// The path of the running file, as a test tells it. To be included by one file of a test program.
#include <windows.h>

#include <algorithm>
#include <optional>
#include <string>

#include "support/real_call_win32.h"

namespace kestrane {

/// None: the real path.
inline std::optional<std::wstring> toldPath;

/// Of a path that does not fit, the system gives as much as does, and the buffer's size for an answer.
inline DWORD WINAPI FakeGetModuleFileNameW(HMODULE module, LPWSTR path, DWORD size) {
    static const auto real = REAL(L"kernel32", GetModuleFileNameW);
    if (module != nullptr || !toldPath) return real(module, path, size);
    const std::size_t copied = std::min<std::size_t>(toldPath->size(), size - 1);
    std::copy_n(toldPath->c_str(), copied, path);
    path[copied] = 0;
    return copied < toldPath->size() ? size : static_cast<DWORD>(copied);
}

}  // namespace kestrane

extern "C" {
decltype(&GetModuleFileNameW) __imp_GetModuleFileNameW = &kestrane::FakeGetModuleFileNameW;
}
