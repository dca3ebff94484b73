#pragma once
// Functions of the system's DLLs that are loaded at their first call, and from System32 alone. A few DLLs Windows takes
// from there in any case. For any other that a program imports it looks beside the program first, where somebody may
// have put one of his own. So the program imports none of these. Each function of theirs that it calls is defined in
// src/base/system_dlls, one file a DLL, under its own name:
//
//     NTSTATUS WINAPI BCryptDestroyHash(BCRYPT_HASH_HANDLE hash) {
//         const auto call = kestrane::SystemFunction<&BCryptDestroyHash>(Dll, __func__);
//         return call != nullptr ? call(hash) : Missing;
//     }
//
// The rest of the code calls it as if it were imported. The linker's own delay-loading would not do: it answers a
// missing DLL with an exception. What a header declares with dllimport is called through a pointer, and that is what
// its file defines: decltype(&SetWindowTheme) __imp_SetWindowTheme.
#include <windows.h>

#include <atomic>

namespace kestrane {

/// The address of a function of a DLL in System32; null without the function or the DLL. The DLL stays loaded.
FARPROC LoadSystemFunction(const wchar_t* dll, const char* name);

/// The same with the function's own type, and remembered as soon as there is one.
template <auto Function>
decltype(Function) SystemFunction(const wchar_t* dll, const char* name) {
    static constinit std::atomic<decltype(Function)> found = nullptr;
    if (found == nullptr) {
        // By way of void*, because the compiler compares the types of functions.
        found = reinterpret_cast<decltype(Function)>(reinterpret_cast<void*>(LoadSystemFunction(dll, name)));
    }
    return found;
}

}  // namespace kestrane
