// Sends messages to a window from outside, as fast as it processes them:
//
//     poster CLASS                                 prints the number of top-level windows of the class
//     poster CLASS COUNT MESSAGE LPARAM WPARAM...  sends MESSAGE COUNT times, cycling through the WPARAMs
//
// The exit code is 0 if the window processed every message, 1 otherwise.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr UINT TimeoutMs = 30000;

struct Message {
    UINT number;
    LPARAM lParam;
    std::vector<WPARAM> wParams;
};

int CountWindows(const wchar_t* className) {
    int count = 0;
    for (HWND window = nullptr; (window = FindWindowExW(nullptr, window, className, nullptr)) != nullptr;)
        ++count;
    return count;
}

bool SendAll(HWND window, long count, const Message& message) {
    for (long i = 0; i < count; ++i) {
        const WPARAM wParam = message.wParams[static_cast<std::size_t>(i) % message.wParams.size()];
        DWORD_PTR result = 0;
        if (SendMessageTimeoutW(window, message.number, wParam, message.lParam, SMTO_NORMAL, TimeoutMs, &result) == 0)
            return false;
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return 1;
    const std::wstring className(argv[1], argv[1] + std::strlen(argv[1]));
    if (argc == 2) {
        std::printf("%d\n", CountWindows(className.c_str()));
        return 0;
    }
    if (argc < 6) return 1;
    Message message{static_cast<UINT>(std::strtoul(argv[3], nullptr, 0)), std::strtol(argv[4], nullptr, 0), {}};
    for (int i = 5; i < argc; ++i)
        message.wParams.push_back(std::strtoul(argv[i], nullptr, 0));
    const HWND window = FindWindowExW(nullptr, nullptr, className.c_str(), nullptr);
    return window != nullptr && SendAll(window, std::strtol(argv[2], nullptr, 0), message) ? 0 : 1;
}
