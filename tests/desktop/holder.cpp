// Holds a file open exclusively, like a virus scanner or a backup, until the standard input ends:
//
//     holder FILE    prints a line once it holds the file; the exit code is 1 if it cannot
#include <windows.h>

#include <shellapi.h>

#include <cstdio>

int main() {
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    if (words == nullptr || count != 2) return 1;
    const HANDLE file = CreateFileW(words[1], GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return 1;
    std::puts("held");
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    CloseHandle(file);
    return 0;
}
