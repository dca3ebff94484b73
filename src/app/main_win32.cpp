// The entry point. Everything else is in entry_win32.cpp, where tests can reach it.
#include "app/entry_win32.h"

#include <windows.h>

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE /*previous*/, PWSTR commandLine, int /*show*/) {
    return kestrane::Main(instance, commandLine);
}
