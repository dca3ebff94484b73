#pragma once
// How a desktop test talks to a program beside the one that it looks at: commands on the standard input, one a line,
// which reach the program's window as messages; and on the standard output lines of JSON.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

constexpr UINT CommandMessage = WM_APP;

/// The command that came with a CommandMessage.
inline std::string TakeCommand(LPARAM lParam) {
    return *std::unique_ptr<std::string>(reinterpret_cast<std::string*>(lParam));
}

inline void Print(const std::string& line) {
    std::fprintf(stdout, "%s\n", line.c_str());
    std::fflush(stdout);
}

/// ASCII as it is, everything else as \uXXXX, unit by unit: any UTF-16, broken or not, becomes valid JSON.
inline std::string JsonText(std::wstring_view text) {
    std::string json = "\"";
    for (const wchar_t unit : text) {
        char escaped[8];
        const bool plain = unit >= 0x20 && unit < 0x7F && unit != L'"' && unit != L'\\';
        std::snprintf(escaped, sizeof escaped, plain ? "%c" : "\\u%04x", static_cast<unsigned>(unit));
        json += escaped;
    }
    return json + '"';
}

/// Hands the lines of the standard input to the window's thread. Its end ends the program.
inline DWORD WINAPI ReadCommands(void* window) {
    std::string line;
    int character = 0;
    while ((character = std::getchar()) != EOF) {
        if (character == '\r') continue;
        if (character != '\n') {
            line += static_cast<char>(character);
            continue;
        }
        auto command = std::make_unique<std::string>(std::exchange(line, {}));
        if (PostMessageW(static_cast<HWND>(window), CommandMessage, 0, reinterpret_cast<LPARAM>(command.get())))
            static_cast<void>(command.release());
    }
    PostMessageW(static_cast<HWND>(window), WM_QUIT, 0, 0);
    return 0;
}

/// Prints a line when commands can come, obeys them until one posts WM_QUIT, and ends the program.
[[noreturn]] inline void ObeyCommands(HWND window, const std::string& readyLine) {
    CloseHandle(CreateThread(nullptr, 0, &ReadCommands, window, 0, nullptr));
    Print(readyLine);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    std::_Exit(0);  // the reading thread may still wait for input
}
