#pragma once
// Functions of system DLLs, loaded at their first call and from System32 only. Windows always loads a few DLLs from
// there; any other imported DLL it looks for in the program's folder first, where someone may have planted one. So the
// program imports none of these: each function that it calls is defined in src/base/system_dlls, one file per DLL,
// under its own name:
//
//     NTSTATUS WINAPI BCryptDestroyHash(BCRYPT_HASH_HANDLE hash) {
//         const auto call = kestrane::SystemFunction<&BCryptDestroyHash>(Dll, __func__);
//         return call != nullptr ? call(hash) : Missing;
//     }
//
// The rest of the code calls it as if it were imported. The linker's own delay-loading will not do: it raises an
// exception for a missing DLL. A function declared dllimport is called through a pointer, so its file defines that
// pointer instead: decltype(&SetWindowTheme) __imp_SetWindowTheme.
#include <windows.h>

#include <atomic>
#include <bit>

namespace kestrane {

/// The address of a function of a DLL in System32; null if either is missing. The DLL stays loaded.
FARPROC LoadSystemFunction(const wchar_t* dll, const char* name);

/// The same with the function's own type, cached once it has been found.
template <auto Function>
decltype(Function) SystemFunction(const wchar_t* dll, const char* name) {
    static constinit std::atomic<decltype(Function)> found = nullptr;
    if (found == nullptr) {
        found = std::bit_cast<decltype(Function)>(LoadSystemFunction(dll, name));
    }
    return found;
}

}  // namespace kestrane
