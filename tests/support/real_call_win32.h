#pragma once
// The system function behind a fake import: static const auto real = REAL(L"user32", SetTimer);
#include <windows.h>

namespace kestrane::test {

template <typename Function>
Function RealCall(const wchar_t* library, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(LoadLibraryW(library), name)));
}

/// The C runtime with which the program is linked. A stream or a thread of one runtime is none of the other's.
#ifdef _UCRT
inline constexpr const wchar_t* CRuntime = L"ucrtbase";
#else
inline constexpr const wchar_t* CRuntime = L"msvcrt";
#endif

}  // namespace kestrane::test

#define REAL(library, name) kestrane::test::RealCall<decltype(&(name))>(library, #name)
