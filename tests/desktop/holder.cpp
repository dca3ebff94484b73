// Holds a file open exclusively, like a virus scanner or a backup, until the standard input ends:
//
//     holder FILE    prints a line once it holds the file; the exit code is 1 if it cannot
#include <windows.h>

#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 2) return 1;
    const HANDLE file = CreateFileA(argv[1], GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return 1;
    std::puts("held");
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    CloseHandle(file);
    return 0;
}
