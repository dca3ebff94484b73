#pragma once
// The system function behind a fake import: static const auto real = REAL(L"user32", SetTimer);
#include <windows.h>

namespace kestrane::test {

template <typename Function>
Function RealCall(const wchar_t* library, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(LoadLibraryW(library), name)));
}

}  // namespace kestrane::test

#define REAL(library, name) kestrane::test::RealCall<decltype(&(name))>(library, #name)
