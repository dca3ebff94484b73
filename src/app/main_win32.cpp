// The system's way in. Everything else is in entry_win32.cpp, where tests can reach it.
#include <windows.h>

#include <cstdlib>

#include "app/entry_win32.h"
#include "base/debug_log_win32.h"

// What the C++ runtime calls for an exception that nobody catches. Its own version, in whose place this one is linked,
// prints the exception's name on a console that is not there, and brings 70 KB for that: a demangler and all of printf.
namespace __gnu_cxx {
[[noreturn]] void __verbose_terminate_handler();

void __verbose_terminate_handler() {
    kestrane::LogDebug(L"kestrane: excepcion no capturada\n");
    std::abort();
}
}  // namespace __gnu_cxx

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE /*previous*/, PWSTR commandLine, int /*show*/) {
    return kestrane::Main(instance, commandLine);
}
