// A shell that records its calls, for observing the real program from outside.
//
// Wine's Shell_NotifyIconW sends each call as WM_COPYDATA to the topmost window of class "Shell_TrayWnd": the message
// as `dwData`, with a record that notify_record.h can read. This program owns such a window. Each call becomes one line
// of JSON on the standard output, and the answer given here is the call's result. A record that cannot be read becomes
// a line {"unknown": ITS LENGTH}.
//
// An argument names the desktop to run in, if not the default one. There it can be in front of a real taskbar.
//
// It behaves like a shell (adding an icon that it has or changing one that it lacks fails) and takes commands on the
// standard input, one per line, each confirmed by a line {"done": COMMAND}:
//
//     refuse guid on|off     NIM_ADD with a GUID fails
//     refuse all on|off      every call fails
//     refuse add N           the next N adds fail, `refuse modify N` the next N changes
//     hold delete on|off     a NIM_DELETE is noted, and its answer waits until this is off
//     forget                 all icons are forgotten, as if the shell had crashed
//     broadcast              every window gets "TaskbarCreated", as after a screen change
//     restart                forget and broadcast: a new shell that has never seen an icon
//     forward on|off         calls are passed on to the next taskbar window, whose answer is the result
//     callback ID EVENT X Y  the icon's window gets its callback message, in version 4 layout
//     tick TIMER             sends WM_TIMER to the program's hidden window and waits for it
//     report                 does nothing, but its confirmation follows the lines of all calls so far
//     quit
#include <windows.h>

#include <shellapi.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "commands.h"
#include "notify_record.h"

namespace {

constexpr UINT ShellTimeoutMs = 60000;
constexpr DWORD PollMs = 50;

struct Image {
    UINT width = 0;
    UINT height = 0;
    std::vector<std::uint32_t> pixels;  // 0xAARRGGBB, top row first
};

struct ShownIcon {
    HWND window;
    UINT id;
    GUID guid;  // all zero for an icon identified by window and id
    UINT callbackMessage;
};

struct Rules {
    bool refuseGuid = false;
    bool refuseAll = false;
    int refuseAdds = 0;
    int refuseChanges = 0;
    bool forward = false;
    bool holdDeletes = false;
};

Rules rules;
std::vector<ShownIcon> icons;

HWND WindowOf(const NotifyRecord& record) {
    return static_cast<HWND>(LongToHandle(record.window));
}

bool HasGuid(const NotifyRecord& record) {
    return (record.flags & NIF_GUID) != 0;
}

std::string GuidText(const GUID& guid) {
    char text[40];
    std::snprintf(text, sizeof text, "{%08lX-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}", guid.Data1, guid.Data2,
                  guid.Data3, guid.Data4[0], guid.Data4[1], guid.Data4[2], guid.Data4[3], guid.Data4[4], guid.Data4[5],
                  guid.Data4[6], guid.Data4[7]);
    return text;
}

/// The rows of the mask have one bit per pixel, padded to 16 bits. An image whose alpha is all zero has no alpha: then
/// the mask decides what is transparent.
Image ReadImage(const NotifyRecord& record) {
    if (record.bitsPerPixel != 32) return {};
    const auto mask = record.bits.first(MaskBytes(record));
    const auto colors = record.bits.subspan(mask.size());
    Image image{record.width, record.height, std::vector<std::uint32_t>(colors.size() / sizeof(std::uint32_t))};
    std::memcpy(image.pixels.data(), colors.data(), colors.size());
    if (std::any_of(image.pixels.begin(), image.pixels.end(), [](auto pixel) { return (pixel >> 24) != 0; }))
        return image;
    const std::size_t maskStride = (record.width + 15) / 16 * 2;
    for (std::size_t i = 0; i < image.pixels.size(); ++i) {
        const std::size_t x = i % record.width;
        const std::size_t at = i / record.width * maskStride + x / 8;
        // If rows are padded, Wine's byte count is too small for the last ones.
        const bool transparent = at < mask.size() && (mask[at] & (0x80 >> (x % 8))) != 0;
        if (!transparent) image.pixels[i] |= 0xFF000000U;
    }
    return image;
}

std::string PixelRows(const Image& image) {
    std::string json;
    for (std::size_t i = 0; i < image.pixels.size(); ++i) {
        const bool rowStarts = i % image.width == 0;
        if (rowStarts) json += i == 0 ? "\"" : "\",\"";
        char hex[12];
        std::snprintf(hex, sizeof hex, rowStarts ? "%08x" : " %08x", image.pixels[i]);
        json += hex;
    }
    return '[' + json + (json.empty() ? "]" : "\"]");
}

/// A text of a record: it ends with its first zero, or with its room.
template <std::size_t Room>
std::wstring_view TextOf(const WCHAR (&text)[Room]) {
    return {text, wcsnlen(text, Room)};
}

void PrintCall(ULONG_PTR message, const NotifyRecord& record, const Image& image, bool answer) {
    std::ostringstream json;
    json << "{\"message\":" << message << ",\"answer\":" << answer << ",\"ms\":" << GetTickCount64()
         << ",\"window\":" << record.window << ",\"id\":" << record.id << ",\"flags\":" << record.flags
         << ",\"callback\":" << record.callbackMessage << ",\"version\":" << record.version << ",\"guid\":\""
         << GuidText(record.guid) << "\",\"tip\":" << JsonText(TextOf(record.tip))
         << ",\"info\":" << JsonText(TextOf(record.info)) << ",\"infoTitle\":" << JsonText(TextOf(record.infoTitle))
         << ",\"infoFlags\":" << record.infoFlags << ",\"width\":" << image.width << ",\"height\":" << image.height
         << ",\"pixels\":" << PixelRows(image) << '}';
    Print(json.str());
}

bool IsSameIcon(const ShownIcon& icon, const NotifyRecord& record) {
    if (HasGuid(record)) return IsEqualGUID(icon.guid, record.guid);
    return IsEqualGUID(icon.guid, GUID{}) && icon.window == WindowOf(record) && icon.id == record.id;
}

bool TakesOneOff(int& count) {
    if (count == 0) return false;
    --count;
    return true;
}

bool Add(const NotifyRecord& record, bool known) {
    if (TakesOneOff(rules.refuseAdds) || (rules.refuseGuid && HasGuid(record)) || known) return false;
    icons.push_back({WindowOf(record), record.id, HasGuid(record) ? record.guid : GUID{}, record.callbackMessage});
    return true;
}

/// The shell's answer, according to its icons and the refusals set by commands.
bool Answer(ULONG_PTR message, const NotifyRecord& record) {
    if (rules.refuseAll) return false;
    const auto found =
        std::find_if(icons.begin(), icons.end(), [&](const ShownIcon& icon) { return IsSameIcon(icon, record); });
    const bool known = found != icons.end();
    switch (message) {
        case NIM_ADD:
            return Add(record, known);
        case NIM_MODIFY:
            return !TakesOneOff(rules.refuseChanges) && known;
        case NIM_DELETE:
            if (known) icons.erase(found);
            return known;
        default:
            return known;
    }
}

bool ForwardCall(HWND own, WPARAM sender, const COPYDATASTRUCT& copy) {
    HWND other = nullptr;
    while ((other = FindWindowExW(nullptr, other, L"Shell_TrayWnd", nullptr)) == own) {
    }
    DWORD_PTR answer = 0;
    SendMessageTimeoutW(other, WM_COPYDATA, sender, reinterpret_cast<LPARAM>(&copy), SMTO_NORMAL, ShellTimeoutMs,
                        &answer);
    return answer != 0;
}

/// The caller waits meanwhile; commands and other programs' calls go on.
void ObeyWhileDeletesAreHeld() {
    MSG message;
    while (rules.holdDeletes && GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchMessageW(&message);
}

bool OnCall(HWND own, WPARAM sender, const COPYDATASTRUCT& copy) {
    const auto record = ReadNotifyRecord({static_cast<const BYTE*>(copy.lpData), copy.cbData});
    if (!record) {
        Print("{\"unknown\":" + std::to_string(copy.cbData) + '}');
        return false;
    }
    bool answer = Answer(copy.dwData, *record);
    if (answer && rules.forward) answer = ForwardCall(own, sender, copy);
    PrintCall(copy.dwData, *record, ReadImage(*record), answer);
    if (copy.dwData == NIM_DELETE) ObeyWhileDeletesAreHeld();
    return answer;
}

void SendCallback(UINT id, unsigned event, int x, int y) {
    for (const ShownIcon& icon : icons) {
        if (icon.id != id) continue;
        PostMessageW(icon.window, icon.callbackMessage, static_cast<WPARAM>(MAKELONG(x, y)),
                     static_cast<LPARAM>(MAKELONG(event, id)));
    }
}

/// The program's calls are handled while this waits.
void SendTick(WPARAM timer) {
    const HWND window = FindWindowW(L"kestrane.hidden", nullptr);
    DWORD_PTR result = 0;
    SendMessageTimeoutW(window, WM_TIMER, timer, 0, SMTO_NORMAL, ShellTimeoutMs, &result);
}

void SetRule(const std::string& rule, const std::string& value) {
    if (rule == "guid") rules.refuseGuid = value == "on";
    if (rule == "all") rules.refuseAll = value == "on";
    if (rule == "add") rules.refuseAdds = std::stoi(value);
    if (rule == "modify") rules.refuseChanges = std::stoi(value);
}

void BroadcastTaskbarCreated() {
    PostMessageW(HWND_BROADCAST, RegisterWindowMessageW(L"TaskbarCreated"), 0, 0);
}

void Obey(const std::string& command) {
    std::istringstream words(command);
    std::string verb;
    std::string first;
    std::string second;
    words >> verb >> first >> second;
    if (verb == "refuse") SetRule(first, second);
    if (verb == "hold") rules.holdDeletes = second == "on";
    if (verb == "forward") rules.forward = first == "on";
    if (verb == "forget" || verb == "restart") icons.clear();
    if (verb == "broadcast" || verb == "restart") BroadcastTaskbarCreated();
    if (verb == "tick") SendTick(std::stoul(first));
    if (verb == "quit") PostQuitMessage(0);
    if (verb == "callback") {
        int x = 0;
        int y = 0;
        words >> x >> y;
        SendCallback(static_cast<UINT>(std::stoi(first)), static_cast<unsigned>(std::stoul(second, nullptr, 0)), x, y);
    }
    Print("{\"done\":\"" + command + "\"}");
}

LRESULT CALLBACK RecorderProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COPYDATA:
            return OnCall(window, wParam, *reinterpret_cast<const COPYDATASTRUCT*>(lParam));
        case CommandMessage:
            Obey(TakeCommand(lParam));
            return 0;
        default:
            return DefWindowProcW(window, message, wParam, lParam);
    }
}

/// Windows are found only within their own desktop. Waits until that desktop exists and has its taskbar.
bool EnterDesktop(const std::string& name) {
    for (DWORD waited = 0; waited < ShellTimeoutMs; waited += PollMs) {
        const HDESK desktop = OpenDesktopW(std::wstring(name.begin(), name.end()).c_str(), 0, FALSE, GENERIC_ALL);
        if (desktop != nullptr && SetThreadDesktop(desktop) && FindWindowW(L"Shell_TrayWnd", nullptr) != nullptr)
            return true;
        Sleep(PollMs);
    }
    return false;
}

HWND CreateRecorderWindow() {
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = RecorderProc;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = L"Shell_TrayWnd";
    RegisterClassExW(&windowClass);
    const HWND window = CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW, windowClass.lpszClassName, L"recorder",
                                        WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, windowClass.hInstance, nullptr);
    SetWindowPos(window, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    return window;
}

}  // namespace

int main(int argc, char** argv) {
    // Like the real taskbar, this window has the screen's DPI, from which programs derive their icon size.
    SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);
    if (argc == 2 && !EnterDesktop(argv[1])) return 1;
    const HWND window = CreateRecorderWindow();
    if (window == nullptr) return 1;
    ObeyCommands(window, "{\"ready\":true}");
}
