#include "base/system_function_win32.h"

namespace kestrane {

FARPROC LoadSystemFunction(const wchar_t* dll, const char* name) {
    const HMODULE module = LoadLibraryExW(dll, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    return module != nullptr ? GetProcAddress(module, name) : nullptr;
}

}  // namespace kestrane
